// runtime/tests/startup_test.cpp: start-up options, the error table, the fatal path and the orderly stop.
#include "scratch.h"

#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

#include <unistd.h>

namespace {

long announceStop(long*)
{
    ::write(2, "stop hook\n", 10);
    return 0;
}

int refuseWindow(long*, char*, char*, int, long)
{
    return 3;
}

// What `step` writes on descriptor 2, the error unit of the console stubs.
template <typename Step> std::string stderrOf(Step step)
{
    std::fflush(stderr);
    char path[] = "/tmp/kestro_stderr_XXXXXX";
    const int file = mkstemp(path);
    const int saved = dup(2);
    dup2(file, 2);
    step();
    std::fflush(stderr);
    dup2(saved, 2);
    ::close(saved);
    ::close(file);
    const std::string text = slurp(path);
    std::remove(path);
    return text;
}

template <typename Item> std::string formatted(std::string_view format, const Item& value)
{
    Text<20> record;
    rt::writeInternal(record.ref(), format, value);
    return trimmed(record.view());
}

// A file both the test and its death-test child can name: the child's parent is the test.
std::string sharedPath(pid_t testProcess)
{
    return "/tmp/kestro_startup_" + std::to_string(testProcess) + ".txt";
}

// What one option changes, seen from outside.
enum class Probe { recordEnd, implicitName, leadZero, hex, unit9 };

class StartupTest : public InScratchFolder
{
protected:
    void SetUp() override
    {
        InScratchFolder::SetUp();
        rt::testing::resetRuntime();
    }
    void TearDown() override
    {
        unsetenv("TARNIX_RT_FLAGS");
        rt::testing::resetRuntime();
        InScratchFolder::TearDown();
    }

    // A fresh start-up with these options; returns what it wrote on the error unit.
    static std::string startWith(const char* flags)
    {
        setenv("TARNIX_RT_FLAGS", flags, 1);
        return stderrOf([] {
            rt::testing::resetRuntime();
            rt::startRuntime();
        });
    }

    std::string observe(Probe what)
    {
        switch (what) {
        case Probe::recordEnd: {
            rt::open(46, fileSpec("eol.txt", "replace"));
            rt::write(46, "(a)", "x");
            rt::close(46);
            const std::string bytes = slurp("eol.txt");
            fs::remove("eol.txt");
            return bytes;
        }
        case Probe::implicitName: { // the name that an implicit open chose
            rt::write(30, "(a)", "x");
            rt::close(30);
            std::string names;
            for (const auto& entry : fs::directory_iterator(dir_))
                names += entry.path().filename().string();
            for (const auto& entry : fs::directory_iterator(dir_))
                fs::remove(entry.path());
            return names;
        }
        case Probe::leadZero:
            return formatted("(f5.2,';')", 0.5f);
        case Probe::hex:
            return formatted("(z4,';')", 255);
        case Probe::unit9: { // the text that reached standard output
            shown.clear();
            quor_f_init(nullptr, showText, nullptr, nullptr, nullptr, nullptr, nullptr);
            rt::write(9, "(a)", "x");
            rt::flush(rt::stdOut);
            rt::close(rt::onError, 9);
            fs::remove("FOR009.DAT");
            quor_f_init(nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr);
            return shown[-3];
        }
        }
        return {};
    }
};

TEST_F(StartupTest, EveryOptionHasItsEffectOrIsAcceptedSilently)
{
    struct Case
    {
        const char* flags;
        Probe what;
        const char* expected;
        const char* warning;
    };
    const Case cases[]{
        {"", Probe::recordEnd, "x\n", ""},
        {"-doseol", Probe::recordEnd, "x\r\n", ""},
        {"-maceol", Probe::recordEnd, "x\r", ""},
        {"-maceol -unixeol", Probe::recordEnd, "x\n", ""},
        {"", Probe::implicitName, "FOR030.DAT", ""},
        {"-unixnames", Probe::implicitName, "fort.30", ""},
        {"-doseol\t-unixnames", Probe::implicitName, "fort.30", ""},
        {"-doseol-unixnames", Probe::implicitName, "fort.30", ""},
        {"", Probe::leadZero, " 0.50;", ""},
        {"-noleadzero", Probe::leadZero, "  .50;", ""},
        {"", Probe::hex, "  ff;", ""},
        {"-hex_uppercase", Probe::hex, "  FF;", ""},
        {"", Probe::unit9, "", ""},
        {"-nounit9", Probe::unit9, "", ""},
        {"-connectunit9", Probe::unit9, "x\n", ""},
        {"-connectunit9 -nounit9", Probe::unit9, "", ""},
        {"-defaultcarriage -fileprompt -vaxnames -reclen32 -f90nlexts -printstop -relaxed_input "
         "-strict_nan_input -doseol",
         Probe::recordEnd, "x\r\n", ""},
        {"-bigendian -doseol", Probe::recordEnd, "x\r\n",
         "Warning: compile time option overrides -bigendian"},
        {"-littleendian", Probe::recordEnd, "x\n", "Warning: compile time option overrides -littleendian"},
    };
    for (const Case& c : cases) {
        const std::string warning = startWith(c.flags);
        if (*c.warning)
            EXPECT_NE(warning.find(c.warning), std::string::npos) << c.flags << ": " << warning;
        else
            EXPECT_EQ(warning, "") << c.flags;
        EXPECT_EQ(warning.find("unknown"), std::string::npos) << c.flags;
        EXPECT_EQ(observe(c.what), c.expected) << "TARNIX_RT_FLAGS=" << c.flags;
    }
}

TEST_F(StartupTest, UnknownWordWarnsAndEndsTheScan)
{
    EXPECT_EQ(startWith("-doseol -bogus -unixnames"), "Warning: unknown runtime option -bogus -unixnames\n");
    EXPECT_EQ(observe(Probe::recordEnd), "x\r\n");
    EXPECT_EQ(observe(Probe::implicitName), "FOR030.DAT");

    EXPECT_EQ(startWith("-unixnamesx -doseol"), "Warning: unknown runtime option x -doseol\n");
    EXPECT_EQ(observe(Probe::implicitName), "fort.30");
    EXPECT_EQ(observe(Probe::recordEnd), "x\n");
}

TEST_F(StartupTest, ProgramSetsOptionsAndTheirNegativeForms)
{
    startWith("-noleadzero -hex_uppercase");
    EXPECT_EQ(observe(Probe::leadZero), "  .50;");
    EXPECT_EQ(observe(Probe::hex), "  FF;");
    rt::setRuntimeFlags("-leadzero -hex_lowercase");
    EXPECT_EQ(observe(Probe::leadZero), " 0.50;");
    EXPECT_EQ(observe(Probe::hex), "  ff;");

    TARNIX_SET_RT_FLAGS("-noleadzero", -1);
    EXPECT_EQ(observe(Probe::leadZero), "  .50;");
    TARNIX_SET_RT_FLAGS("-hex_uppercase -doseol", 14); // only the first 14 characters count
    EXPECT_EQ(observe(Probe::hex), "  FF;");
    EXPECT_EQ(observe(Probe::recordEnd), "x\n");

    rt::setRuntimeFlags("-fileprompt");
    rt::setRuntimeFlags("-nofileprompt");
    EXPECT_EQ(observe(Probe::implicitName), "FOR030.DAT"); // no name asked for

    EXPECT_EQ(stderrOf([] {
                  rt::setRuntimeFlags("-nodefaultcarriage -nofileprompt -leadzero -noreclen32 -nof90nlexts "
                                      "-noprintstop -hex_lowercase -norelaxed_input -nostrict_nan_input");
              }),
              "");
}

// Checks the status and the message that a failing statement leaves in its variables.
template <typename Provoke> void expectMessage(int code, std::string_view text, Provoke provoke)
{
    rt::testing::resetRuntime();
    Text<100> message;
    message.ref().fill('#');
    int status = 0;
    const rt::Iostat ios = provoke(rt::withStatus(status) | rt::withMessage(message.ref()));
    EXPECT_EQ(status, rt::statusFor(code)) << code;
    EXPECT_NE(ios.outcome, rt::Outcome::ok) << code;
    EXPECT_EQ(trimmed(message.view()), text) << code;
}

TEST_F(StartupTest, MessagesOfFormatErrors)
{
    std::string deep = "(";
    for (int group = 0; group < 21; ++group)
        deep += "1(";
    deep += "i2" + std::string(22, ')');
    const struct
    {
        int code;
        std::string format;
        const char* text;
    } cases[]{
        {10006, "(k3)", "Error in format string"},
        {10007, "(0i5)", "Illegal repeat count"},
        {10008, "(5hab)", "Hollerith count exceeds remaining format string"},
        {10009, "i5)", "Format string missing opening ("},
        {10010, "(i5", "Format string has unmatched parens"},
        {10011, "('abc)", "Format string has unmatched quotes"},
        {10012, "(2sp,i2)", "Non-repeatable format descriptor"},
        {10015, deep, "Format group table overflow"},
    };
    for (const auto& c : cases) {
        expectMessage(c.code, c.text, [&](const rt::Control& control) {
            Text<80> record;
            return rt::writeInternal(control, record.ref(), c.format, 1);
        });
    }
}

TEST_F(StartupTest, MessagesOfOpenSpecifiers)
{
    const struct
    {
        int code;
        std::string_view rt::OpenSpec::*specifier;
        const char* value;
        const char* text;
    } cases[]{
        {10034, &rt::OpenSpec::access, "WINDOW", "QUOR is required for that feature"},
        {10036, &rt::OpenSpec::endian, "MIDDLE", "Endian specifier not BIG_ENDIAN or LITTLE_ENDIAN"},
        {10041, &rt::OpenSpec::delim, "SLASH", "Illegal specifier for DELIM="},
        {10042, &rt::OpenSpec::pad, "MAYBE", "Illegal specifier for PAD="},
        {10080, &rt::OpenSpec::decimal, "SEMICOLON", "DECIMAL= value must be 'COMMA' or 'POINT'"},
        {10081, &rt::OpenSpec::encoding, "EBCDIC", "ENCODING= value is unsupported"},
        {10082, &rt::OpenSpec::sign, "MINUS",
         "SIGN= value must be 'PLUS','SUPPRESS', or 'PROCESSOR_DEFINED'"},
    };
    for (const auto& c : cases) {
        rt::OpenSpec specifiers = fileSpec("specifiers.txt");
        specifiers.*c.specifier = c.value;
        expectMessage(c.code, c.text,
                      [&](const rt::Control& control) { return rt::open(control, 47, specifiers); });
    }

    rt::OpenSpec specifiers = fileSpec("specifiers.txt");
    specifiers.access = "window";
    expectMessage(10035, "Bad specification for window", [&](const rt::Control& c) {
        quor_f_init(nullptr, nullptr, nullptr, nullptr, refuseWindow, nullptr, nullptr);
        return rt::open(c, 47, specifiers);
    });
}

TEST_F(StartupTest, MessagesOfTransfersAndUnits)
{
    std::int32_t n = 0;
    expectMessage(10013, "Attempt to read past end of file",
                  [&](const rt::Control& c) { return rt::readListInternal(c, "", n); });
    expectMessage(10016, "Illegal character in numeric input",
                  [&](const rt::Control& c) { return rt::readListInternal(c, "x", n); });
    expectMessage(10029, "Unconnected or illegal unit specified",
                  [](const rt::Control& c) { return rt::write(c, -7, "(a)", "x"); });
    expectMessage(10030, "Specifications in OPEN statement must match currently open file",
                  [](const rt::Control& c) {
                      rt::open(47, fileSpec("first.txt"));
                      return rt::open(c, 47, fileSpec("second.txt"));
                  });
    std::ofstream("old.txt") << "x\n";
    expectMessage(10032, "Status 'NEW' specified for an existing file",
                  [](const rt::Control& c) { return rt::open(c, 47, fileSpec("old.txt", "new")); });
    expectMessage(10060, "Attempt to write a record longer than specified record length",
                  [](const rt::Control& c) {
                      Text<3> record;
                      return rt::writeInternal(c, record.ref(), "(a)", "abcdef");
                  });
    expectMessage(10076, "Data tranfer format descriptor was not found during format reversion",
                  [](const rt::Control& c) {
                      rt::open(47, fileSpec("reversion.txt"));
                      return rt::write(c, 47, "('abc')", 1);
                  });
    expectMessage(ENOENT, std::strerror(ENOENT),
                  [](const rt::Control& c) { return rt::open(c, 40, fileSpec("missing.txt", "old")); });

    Text<12> cut;
    int status = 0;
    rt::readListInternal(rt::withStatus(status) | rt::withMessage(cut.ref()), "x", n);
    EXPECT_EQ(cut.view(), "Illegal char");
}

TEST_F(StartupTest, BranchTakenAtEndOfFileAndOnError)
{
    struct Case
    {
        rt::Control control;
        const char* source;
        rt::Outcome outcome;
        int code;
    };
    const Case cases[]{
        {rt::onEnd, "", rt::Outcome::end, -1},
        {rt::onError, "", rt::Outcome::error, 10013}, // no end branch: the error branch
        {rt::onEnd | rt::onError, "", rt::Outcome::end, -1},
        {rt::onEnd | rt::onError, "x", rt::Outcome::error, 10016},
        {rt::onEnd, "5", rt::Outcome::ok, 0},
    };
    for (const Case& c : cases) {
        std::int32_t n = 0;
        const rt::Iostat ios = rt::readListInternal(c.control, c.source, n);
        EXPECT_EQ(ios.outcome, c.outcome) << '"' << c.source << '"';
        EXPECT_EQ(ios.code, c.code) << '"' << c.source << '"';
    }
}

// Tests whose statement ends the process. No folder of their own: the child would leave it behind.
class StopTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        GTEST_FLAG_SET(death_test_style, "threadsafe");
        rt::testing::resetRuntime();
    }
    void TearDown() override
    {
        unsetenv("TARNIX_RT_FLAGS");
        rt::testing::resetRuntime();
    }
    static void startWith(const char* flags)
    {
        setenv("TARNIX_RT_FLAGS", flags, 1);
        rt::testing::resetRuntime();
    }
};

TEST_F(StopTest, FailureWithoutHandlersReportsAndExits)
{
    EXPECT_EXIT(
        {
            rt::open(25, fileSpec("/dev/null", "old"));
            float x = 0.0f;
            rt::readList(25, x);
        },
        ::testing::ExitedWithCode(255),
        "\\? FORTRAN Runtime Error:\n\\? Attempt to read past end of file\n\\? READ\\(UNIT=25,\\.\\.\\.");
    EXPECT_EXIT(
        {
            std::int32_t n = 0;
            rt::readListInternal("abc", n);
        },
        ::testing::ExitedWithCode(255),
        "\\? FORTRAN Runtime Error:\n\\? Illegal character in numeric input\n\\? "
        "READ\\(UNIT=INTERNAL,\\.\\.\\.");
    EXPECT_EXIT(
        rt::write(rt::defaultUnit, "(i2", 5), ::testing::ExitedWithCode(255),
        "\\? FORTRAN Runtime Error:\n\\? Format string has unmatched parens\n\\? WRITE\\(UNIT=\\*,\\.\\.\\.");
    EXPECT_EXIT(rt::open(40, fileSpec("/nonexistent/missing.txt", "old")), ::testing::ExitedWithCode(255),
                std::string("\\? System Error:\n\\? ") + std::strerror(ENOENT) +
                    "\n\\? OPEN\\(UNIT=40,\\.\\.\\.");
}

TEST_F(StopTest, MessageVariableAloneDoesNotHandleTheFailure)
{
    EXPECT_EXIT(
        {
            Text<60> message;
            std::int32_t n = 0;
            rt::readListInternal(rt::withMessage(message.ref()), "abc", n);
        },
        ::testing::ExitedWithCode(255), "\\? Illegal character in numeric input");
}

TEST_F(StopTest, FatalFailureClosesEveryUnitFirst)
{
    const std::string path = sharedPath(getpid());
    EXPECT_EXIT(
        {
            const std::string mine = sharedPath(getppid());
            rt::open(48, fileSpec(mine, "replace"));
            rt::write(48, "(a)", "kept");
            rt::write(-7, "(a)", "lost");
        },
        ::testing::ExitedWithCode(255), "Unconnected or illegal unit specified");
    EXPECT_EQ(slurp(path), "kept\n");
    std::remove(path.c_str());
}

TEST_F(StopTest, StopTextsAndPrintStop)
{
    EXPECT_EXIT(rt::_STOP("done"), ::testing::ExitedWithCode(0), "^done\n$");
    EXPECT_EXIT(rt::_STOP(" "), ::testing::ExitedWithCode(0), "^$");
    EXPECT_EXIT(rt::_STOP(""), ::testing::ExitedWithCode(0), "^$");
    EXPECT_EXIT(rt::_END(), ::testing::ExitedWithCode(0), "^$");

    startWith("-printstop");
    EXPECT_EXIT(rt::_STOP("done"), ::testing::ExitedWithCode(0), "^ STOP done\n$");
    rt::setRuntimeFlags("-noprintstop");
    EXPECT_EXIT(rt::_STOP("done"), ::testing::ExitedWithCode(0), "^done\n$");
}

TEST_F(StopTest, AStopRequestEndsTheProgramAtItsNextStatementWithEveryUnitWritten)
{
    // The child of a threadsafe death test runs this body again: a fixed name for both.
    const bool inChild = !GTEST_FLAG_GET(internal_run_death_test).empty();
    const std::string name = "/tmp/kestro_stop_" + std::to_string(inChild ? ::getppid() : ::getpid());
    const char* path = name.c_str();
    EXPECT_EXIT(
        {
            quor_f_init(nullptr, nullptr, announceStop, nullptr, nullptr, nullptr, nullptr);
            rt::OpenSpec connection;
            connection.file = path;
            rt::open(31, connection);
            rt::write(31, "(a)", "kept");
            rt::requestStop();
            rt::write(31, "(a)", "never written");
            std::_Exit(3);
        },
        ::testing::ExitedWithCode(0), "^stop hook\n$");
    EXPECT_EQ(slurp(path), "kept\n");
    ::unlink(path);
}

TEST_F(StopTest, StopAndEndCallTheStopHookLast)
{
    quor_f_init(nullptr, nullptr, announceStop, nullptr, nullptr, nullptr, nullptr);
    EXPECT_EXIT(rt::_STOP("done"), ::testing::ExitedWithCode(0), "^done\nstop hook\n$");
    EXPECT_EXIT(rt::_END(), ::testing::ExitedWithCode(0), "^stop hook\n$");
}

} // namespace
