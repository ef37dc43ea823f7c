// support/tests/hostfacts_test.cpp: host facts through their temporary files, fallbacks and the
// clock and shell services.
#include "support/hostfacts.h"

#include "support_console.h"

#include <chrono>
#include <cstdlib>
#include <ctime>
#include <sys/stat.h>
#include <sys/utsname.h>
#include <thread>
#include <unistd.h>

namespace kestro {
namespace {

// Each test works in a folder of its own: the temporary files have fixed names.
class HostFacts : public SupportConsole
{
protected:
    void SetUp() override
    {
        SupportConsole::SetUp();
        scratch.enter("kestro_hostfacts");
    }
    void TearDown() override
    {
        scratch.leave();
        SupportConsole::TearDown();
    }

    static bool exists(const std::string& file)
    {
        struct stat info
        {
        };
        return stat(file.c_str(), &info) == 0;
    }

    ScratchFolder scratch;
};

// A source like `base` whose command writes `output` into the temporary file.
HostFactSource writing(const HostFactSource& base, std::string& command, std::string_view output)
{
    command = "printf '" + std::string(output) + "' > " + std::string(base.file);
    HostFactSource source = base;
    source.command = command;
    return source;
}

TEST_F(HostFacts, CommandOutputIsShapedIntoTheFieldOrGivesTheFallback)
{
    const struct
    {
        const HostFactSource& base;
        std::string_view output;
        std::size_t field;
        std::string_view expected;
        const char* screen; // the panel of a fallback; none on success
    } cases[]{
        {cpuSource, "Intel(R) Core(TM) i7-8700B CPU @ 3.20GHz\\n", 30, "Core i7-8700B CPU @ 3.20GHz",
         nullptr},
        {cpuSource, "AMD Ryzen 9 7950X 16-Core Processor\\n", 30, "AMD Ryzen 9 7950X 16-Core Proc", nullptr},
        {cpuSource, "AMD EPYC 7B13", 30, "AMD EPYC 7B13", nullptr}, // no line end
        {cpuSource, "   Intel(R) Xeon(R) CPU\\n", 30, "Intel(R) Xeon(R) CPU", nullptr},
        {systemSource, "6.1.0\\n", 13, "Linux_6.1.0", nullptr},
        {systemSource, "6.1.0-18-amd64\\n", 13, "Linux_6.1.0-1", nullptr}, // 8 characters of a release
        {systemSource, "6.1.0-18-amd64\\n", 20, "Linux_6.1.0-18", nullptr},
        // Nothing written, and a line of blanks, both count as no answer.
        {cpuSource, "", 13, "unknown CPU", "cpu file empty"},
        {cpuSource, "   \\n", 13, "unknown CPU", "cpu file blank"},
        {systemSource, "", 13, "Linux", "system file empty"},
        {systemSource, "   \\n", 13, "Linux", "system file blank"},
    };
    for (const auto& c : cases) {
        console.screen.clear();
        std::string command;
        const HostFactSource source = writing(c.base, command, c.output);
        std::string field(c.field, '?');
        readHostFact(source, TextRef(field.data(), field.size()));
        EXPECT_EQ(field, padded(c.expected, c.field)) << c.output;
        EXPECT_EQ(screen(), c.screen ? screenOf(c.screen) : std::vector<std::string>{}) << c.output;
        EXPECT_FALSE(exists(std::string(source.file))) << c.output;
    }
}

// The system fact with a temporary file that cannot be opened, and the panel that this gives.
// `removeCommand` leaves a trace if it runs.
HostFactSource unopenableSystem(std::string_view removeCommand)
{
    HostFactSource source = systemSource;
    source.command = "true";
    source.file = "no_such_folder/sys_version_tmp_001.txt";
    source.removeCommand = removeCommand;
    return source;
}

TEST_F(HostFacts, FactsReadTogetherKeepTheirOwnTextsAndPanelsInOrder)
{
    // The system's file cannot be opened, the CPU's stays empty, and a third fact succeeds: the
    // panels come in the order of the facts, and only the files that were opened are removed.
    const HostFactSource system = unopenableSystem("touch system_removal_ran");
    std::string emptyCommand;
    const HostFactSource cpu = writing(cpuSource, emptyCommand, "");
    std::string goodCommand;
    const HostFactSource other = writing(systemSource, goodCommand, "6.1.0\\n");

    Text<13> systemField, cpuField, otherField;
    readHostFacts({{system, systemField.ref()}, {cpu, cpuField.ref()}, {other, otherField.ref()}});

    EXPECT_EQ(systemField.str(), padded("Linux", 13));
    EXPECT_EQ(cpuField.str(), padded("unknown CPU", 13));
    EXPECT_EQ(otherField.str(), padded("Linux_6.1.0", 13));
    EXPECT_EQ(screen(), screenOf("system file unopened, cpu file empty"));
    EXPECT_FALSE(exists("system_removal_ran"));
    EXPECT_FALSE(exists(std::string(cpuSource.file)));
    EXPECT_FALSE(exists(std::string(systemSource.file)));
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
    EXPECT_FALSE(exists("cpu_info_tmp_001.txt"));
    EXPECT_FALSE(exists("sys_version_tmp_001.txt"));
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
    const auto text = [](const char* format, std::time_t when) {
        std::tm local{};
        localtime_r(&when, &local);
        char buffer[32];
        std::strftime(buffer, sizeof buffer, format, &local);
        return std::string(buffer);
    };
    const std::time_t before = std::time(nullptr);
    Text<10> date;
    Text<8> time;
    date10_time8(date.ref(), time.ref());
    const std::time_t after = std::time(nullptr);

    const std::string shown = date.str() + " " + time.str();
    EXPECT_TRUE(shown == text("%Y-%m-%d %H:%M:%S", before) || shown == text("%Y-%m-%d %H:%M:%S", after))
        << shown;
}

TEST_F(HostFacts, SystemClockCountsMicroseconds)
{
    std::int32_t count0 = 0, rate = 0, countMax = 0;
    systemClock(count0, rate, countMax);
    EXPECT_EQ(rate, 1000000);
    EXPECT_EQ(countMax, 2147483647);
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
    EXPECT_EQ(cmdstat, 0);
    EXPECT_EQ(exitstat, 3);
    EXPECT_EQ(message, "");
    EXPECT_TRUE(exists("shell_ran"));
    unlink("shell_ran");
}

} // namespace
} // namespace kestro
