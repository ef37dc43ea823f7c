// support/tests/hostfacts_test.cpp: host facts through their temporary files, fallbacks and the
// clock and shell services.
#include "support/hostfacts.h"

#include "support_console.h"

#include <chrono>
#include <cstdlib>
#include <ctime>
#include <sys/utsname.h>
#include <thread>
#include <unistd.h>

namespace kestro {
namespace {

// Each test works in a folder of its own: the temporary files have fixed names.
using HostFacts = ScratchConsole;

// A source like `base` whose command writes `output` into the temporary file.
HostFactSource writing(const HostFactSource& base, std::string& command, std::string_view output)
{
    command = "printf '" + std::string(output) + "' > " + std::string(base.file);
    HostFactSource source = base;
    source.command = command;
    return source;
}

// data/hostfacts.txt: what a command writes, shaped into the field, or the fallback and its panel.
TEST_F(HostFacts, CommandOutputIsShapedIntoTheFieldOrGivesTheFallback)
{
    for (const Case& c : casesOf("hostfacts.txt", "fact")) {
        SCOPED_TRACE(c.fields[2]);
        console.screen.clear();
        std::string command;
        const HostFactSource source =
            writing(c.fields[1] == "cpu" ? cpuSource : systemSource, command, c.fields[2]);
        std::string field(c.number(3), '?');
        readHostFact(source, TextRef(field.data(), field.size()));
        EXPECT_EQ(field, padded(c.fields[4], field.size()));
        EXPECT_EQ(screen(), c.lines);
        EXPECT_FALSE(std::filesystem::exists(source.file));
    }
}

TEST_F(HostFacts, FactsReadTogetherKeepTheirOwnTextsAndPanelsInOrder)
{
    // The system's file cannot be opened, the CPU's stays empty, and a third fact succeeds: the
    // panels come in the order of the facts, and only the files that were opened are removed (the
    // scratch folder must be empty at the end).
    HostFactSource system = systemSource; // its removal command leaves a trace if it runs
    system.command = "true";
    system.file = "no_such_folder/sys_version_tmp_001.txt";
    system.removeCommand = "touch system_removal_ran";
    std::string emptyCommand;
    const HostFactSource cpu = writing(cpuSource, emptyCommand, "");
    std::string goodCommand;
    const HostFactSource other = writing(systemSource, goodCommand, "6.1.0\\n");

    Text<13> systemField, cpuField, otherField;
    readHostFacts({{system, systemField.ref()}, {cpu, cpuField.ref()}, {other, otherField.ref()}});

    EXPECT_EQ(systemField.str() + cpuField.str() + otherField.str(),
              padded("Linux", 13) + padded("unknown CPU", 13) + padded("Linux_6.1.0", 13));
    EXPECT_EQ(screen(), screenOf("system file unopened, cpu file empty"));
}

TEST_F(HostFacts, FactsOfThisHostLeaveNoTemporaryFiles)
{
    Text<30> cpu;
    Text<13> system;
    Text<3> host;
    hardinfo(cpu.ref());
    osversion(system.ref());
    hostname(host.ref());
    EXPECT_NE(cpu, "");
    utsname names{};
    ASSERT_EQ(uname(&names), 0);
    // "Linux_" and the first 8 characters of the release, in 13 columns; the node name cut.
    EXPECT_EQ(system.str(), padded(("Linux_" + std::string(names.release).substr(0, 8)).substr(0, 13), 13));
    EXPECT_EQ(host.str(), padded(std::string(names.nodename).substr(0, 3), 3));
}

TEST_F(HostFacts, UserWithoutLoginNameComesFromTheEnvironmentCutToTheField)
{
    char login[256];
    if (getlogin_r(login, sizeof login) == 0) GTEST_SKIP() << "this process has a login name";
    const char* saved = std::getenv("USER");
    const std::string savedUser = saved ? saved : "";
    ASSERT_EQ(setenv("USER", "kestrometrician", 1), 0);
    Text<10> user;
    username(user.ref());
    if (saved)
        setenv("USER", savedUser.c_str(), 1);
    else
        unsetenv("USER");
    EXPECT_EQ(user.str(), "kestrometr");
}

TEST_F(HostFacts, DateAndTimeAreTheLocalClockWithoutFraction)
{
    const auto text = [](std::time_t when) {
        std::tm local{};
        char buffer[32];
        std::strftime(buffer, sizeof buffer, "%Y-%m-%d %H:%M:%S", localtime_r(&when, &local));
        return std::string(buffer);
    };
    const std::time_t before = std::time(nullptr);
    Text<10> date;
    Text<8> time;
    date10_time8(date.ref(), time.ref());
    const std::time_t after = std::time(nullptr);

    const std::string shown = date.str() + " " + time.str();
    EXPECT_TRUE(shown == text(before) || shown == text(after)) << shown;
}

TEST_F(HostFacts, SystemClockCountsMicroseconds)
{
    std::int32_t count0 = 0, rate = 0, countMax = 0;
    systemClock(count0, rate, countMax);
    EXPECT_EQ(std::make_pair(rate, countMax), std::make_pair(1000000, 2147483647));
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    std::int32_t count1 = 0;
    systemClock(count1, rate, countMax);
    EXPECT_GE(count1 - count0, 20000);
    EXPECT_LT(count1 - count0, 20000000);
}

TEST_F(HostFacts, CommandRunsThroughTheShellWithTrailingBlanksCut)
{
    std::int32_t exitstat = -1, cmdstat = -1;
    Text<120> message;
    executeCommand("echo ran > shell_ran; exit 3        ", true, exitstat, cmdstat, message.ref());
    EXPECT_EQ(std::make_pair(cmdstat, exitstat), std::make_pair(0, 3));
    EXPECT_EQ(message, "");
    EXPECT_TRUE(std::filesystem::remove("shell_ran")) << "the command did not run";
}

} // namespace
} // namespace kestro
