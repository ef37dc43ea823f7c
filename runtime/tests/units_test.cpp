// runtime/tests/units_test.cpp: standard units, implicit and explicit OPEN, CLOSE, window units, record ends.
#include "scratch.h"

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include <sys/stat.h>

namespace {

// What the hooks saw: units asked for input, windows made and closed.
std::vector<long> askedUnits;
std::string windowName, windowAccess;
std::vector<long> windowUnits, closedWindows;
std::string offeredFileName;

long readLine(char* buffer, long size, long* unit)
{
    askedUnits.push_back(*unit);
    return typedLine(buffer, size, unit);
}

int makeWindow(long* unit, char* name, char* access, int nameLength, long accessLength)
{
    windowUnits.push_back(*unit);
    windowName.assign(name, nameLength);
    windowAccess.assign(access, accessLength);
    return 0;
}

int closeWindow(long* unit, long*)
{
    closedWindows.push_back(*unit);
    return 0;
}

long giveFileName(char* buffer, long* length, long*, bool*)
{
    const long n = std::min<long>(*length, static_cast<long>(offeredFileName.size()));
    std::memcpy(buffer, offeredFileName.data(), n);
    return n;
}

class UnitsTest : public InScratchFolder
{
protected:
    void SetUp() override
    {
        InScratchFolder::SetUp();
        shown.clear();
        askedUnits.clear();
        keyboard.clear();
        keyboardAt = 0;
        windowUnits.clear();
        closedWindows.clear();
        restart();
    }
    void TearDown() override
    {
        for (const char* name : {"TARNIX_RT_FLAGS", "TMPDIR", "UMASK", "TABSIZE"})
            unsetenv(name);
        rt::testing::resetRuntime();
        InScratchFolder::TearDown();
    }

    static void restart(const char* flags = "")
    {
        setenv("TARNIX_RT_FLAGS", flags, 1);
        rt::testing::resetRuntime();
        quor_f_init(readLine, showText, nullptr, nullptr, nullptr, nullptr, nullptr);
    }
    // Output of the standard units so far.
    static std::string screen(rt::Unit unit)
    {
        rt::flush(rt::stdOut);
        rt::flush(rt::stdErr);
        return shown[unit];
    }
    std::vector<std::string> files() const
    {
        std::vector<std::string> names;
        for (const auto& entry : fs::directory_iterator(dir_))
            names.push_back(entry.path().filename());
        std::sort(names.begin(), names.end());
        return names;
    }
};

TEST_F(UnitsTest, StandardUnitMapping)
{
    rt::write(6, "(a)", "six");
    rt::write(rt::defaultUnit, "(a)", "star");
    rt::write(rt::stdOut, "(a)", "out");
    rt::write(0, "(a)", "zero");
    rt::write(rt::stdErr, "(a)", "err");
    EXPECT_EQ(screen(-3), "six\nstar\nout\n");
    EXPECT_EQ(screen(-4), "zero\nerr\n");
    EXPECT_TRUE(files().empty());
}

TEST_F(UnitsTest, UnitSixAndStarShareOneRecord)
{
    rt::write(6, "(a,$)", "abc");
    rt::write(rt::defaultUnit, "(a)", "def");
    EXPECT_EQ(screen(-3), "abcdef\n");
}

TEST_F(UnitsTest, UnitFiveAndStarReadStandardInput)
{
    keyboard = "1\n2\n3\n";
    std::int32_t a = 0, b = 0, c = 0;
    EXPECT_TRUE(rt::readList(5, a).ok());
    EXPECT_TRUE(rt::readList(rt::defaultUnit, b).ok());
    EXPECT_TRUE(rt::readList(rt::stdIn, c).ok());
    EXPECT_EQ(a * 100 + b * 10 + c, 123);
    EXPECT_EQ(askedUnits, (std::vector<long>{-2, -2, -2}));
    int status = 0;
    rt::readList(rt::withStatus(status), 5, a); // a read result of 0 is the end of the file
    EXPECT_EQ(status, -1);
}

TEST_F(UnitsTest, UnitNineIsOrdinaryUnlessConnected)
{
    rt::write(9, "(a)", "nine");
    rt::close(9);
    EXPECT_EQ(slurp("FOR009.DAT"), "nine\n");
    EXPECT_EQ(screen(-3), "");

    fs::remove("FOR009.DAT");
    restart("-connectunit9");
    rt::write(9, "(a)", "nine");
    EXPECT_EQ(screen(-3), "nine\n");
    keyboard = "4\n";
    std::int32_t n = 0;
    EXPECT_TRUE(rt::readList(9, n).ok());
    EXPECT_EQ(n, 4);
    EXPECT_TRUE(files().empty());
}

TEST_F(UnitsTest, ImplicitOpenNames)
{
    struct Case
    {
        const char* flags;
        rt::Unit unit;
        const char* name;
    };
    // Two-digit units: startup_test.cpp.
    const Case cases[]{{"", 7, "FOR007.DAT"}, {"-unixnames", 7, "fort.7"}};
    for (const Case& c : cases) {
        restart(c.flags);
        EXPECT_TRUE(rt::write(c.unit, "(a)", "x").ok());
        rt::close(c.unit);
        EXPECT_EQ(files(), std::vector<std::string>{c.name}) << c.flags;
        EXPECT_EQ(slurp(c.name), "x\n");
        fs::remove(c.name);
    }
}

TEST_F(UnitsTest, ImplicitOpenReadsAnExistingFile)
{
    std::ofstream("FOR031.DAT") << "42\n";
    std::int32_t n = 0;
    EXPECT_TRUE(rt::readList(31, n).ok());
    EXPECT_EQ(n, 42);
}

TEST_F(UnitsTest, FileNameIsAskedForWithFilePrompt)
{
    restart("-fileprompt");
    keyboard = "typed.txt\n";
    EXPECT_TRUE(rt::write(33, "(a)", "x").ok());
    rt::close(33);
    EXPECT_EQ(screen(-3), "Enter file name for OPEN on UNIT 33: ");
    EXPECT_EQ(slurp("typed.txt"), "x\n");

    quor_f_init(readLine, showText, nullptr, nullptr, nullptr, nullptr, giveFileName);
    offeredFileName = "offered.txt";
    EXPECT_TRUE(rt::write(34, "(a)", "y").ok());
    rt::close(34);
    EXPECT_EQ(slurp("offered.txt"), "y\n");
    EXPECT_EQ(files(), (std::vector<std::string>{"offered.txt", "typed.txt"}));
}

TEST_F(UnitsTest, OpenStatus)
{
    std::ofstream("there.txt") << "old\n";
    rt::open(rt::onError, 40, fileSpec("there.txt", "NEW")); // its status and message: startup_test.cpp
    EXPECT_EQ(slurp("there.txt"), "old\n");

    EXPECT_TRUE(rt::open(40, fileSpec("there.txt", "Replace")).ok());
    rt::write(40, "(a)", "new");
    rt::close(40);
    EXPECT_EQ(slurp("there.txt"), "new\n");

    EXPECT_TRUE(rt::open(40, fileSpec("fresh.txt", "new")).ok());
    rt::close(40);
    EXPECT_TRUE(fs::exists("fresh.txt"));

    EXPECT_TRUE(rt::open(40, fileSpec("there.txt", "old")).ok());
    std::int32_t n = 0;
    int status = 0;
    rt::readList(rt::withStatus(status), 40, n);
    EXPECT_EQ(status, 10016); // "new" is no number
}

TEST_F(UnitsTest, ScratchFileLivesInTmpdirUntilClose)
{
    const fs::path scratch = dir_ / "scratch";
    fs::create_directory(scratch);
    setenv("TMPDIR", scratch.c_str(), 1);
    restart();
    EXPECT_TRUE(rt::open(40, fileSpec({}, "SCRATCH")).ok());
    EXPECT_TRUE(rt::write(40, "(a)", "temp").ok());
    std::vector<fs::path> made(fs::directory_iterator(scratch), fs::directory_iterator{});
    ASSERT_EQ(made.size(), 1u);
    const std::string name = made[0].filename();
    EXPECT_EQ(name.size(), 14u);
    EXPECT_EQ(name.substr(0, 3), "tnx");
    struct stat info
    {
    };
    ASSERT_EQ(stat(made[0].c_str(), &info), 0);
    EXPECT_EQ(info.st_mode & 0777, 0600u);
    rt::close(40);
    EXPECT_TRUE(fs::is_empty(scratch));

    // TMPDIR that is no folder: the current folder.
    setenv("TMPDIR", (dir_ / "nothing").c_str(), 1);
    restart();
    EXPECT_TRUE(rt::open(41, fileSpec({}, "scratch")).ok());
    EXPECT_EQ(files().size(), 2u); // "scratch" and the new file
    rt::close(41);
    EXPECT_EQ(files(), std::vector<std::string>{"scratch"});
}

TEST_F(UnitsTest, ReopenMustMatchEverySpecifierGiven)
{
    rt::OpenSpec first = fileSpec("a.txt", "replace");
    first.access = "sequential", first.form = "formatted", first.action = "readwrite";
    first.position = "asis", first.blank = "null", first.delim = "none", first.pad = "yes";
    first.endian = "native", first.decimal = "point", first.encoding = "default";
    first.sign = "processor_defined", first.round = "nearest";
    ASSERT_TRUE(rt::open(41, first).ok());
    EXPECT_TRUE(rt::open(41, first).ok());
    EXPECT_TRUE(rt::open(41, fileSpec({}, {})).ok()); // nothing given, nothing differs

    using S = std::string_view rt::OpenSpec::*;
    const std::pair<S, const char*> differing[]{
        {&rt::OpenSpec::file, "b.txt"},      {&rt::OpenSpec::status, "old"},
        {&rt::OpenSpec::access, "stream"},   {&rt::OpenSpec::form, "unformatted"},
        {&rt::OpenSpec::action, "read"},     {&rt::OpenSpec::action, "write"},
        {&rt::OpenSpec::position, "append"}, {&rt::OpenSpec::blank, "zero"},
        {&rt::OpenSpec::delim, "quote"},     {&rt::OpenSpec::endian, "big_endian"},
        {&rt::OpenSpec::decimal, "comma"},   {&rt::OpenSpec::encoding, "utf-8"},
        {&rt::OpenSpec::sign, "plus"},       {&rt::OpenSpec::round, "up"},
        {&rt::OpenSpec::pad, "no"},
    };
    for (const auto& [specifier, value] : differing) {
        rt::OpenSpec again = fileSpec("a.txt");
        again.*specifier = value;
        EXPECT_EQ(rt::open(rt::onError, 41, again).code, rt::code::openMismatch) << value;
    }
    rt::OpenSpec direct = first;
    direct.access = "DIRECT", direct.recl = 80;
    EXPECT_EQ(rt::open(rt::onError, 41, direct).code, rt::code::openMismatch);

    // The connection is as it was: sequential, formatted, read and write.
    EXPECT_TRUE(rt::write(41, "(a)", "still").ok());
    rt::close(41);
    EXPECT_EQ(slurp("a.txt"), "still\n");
}

TEST_F(UnitsTest, WriteAfterRewindOrBackspaceIsTheLastRecord)
{
    enum Step { rewind, backspace, read, write };
    const struct
    {
        std::vector<Step> steps;
        const char* file;
    } cases[]{
        {{rewind, write}, "X\n"},
        {{backspace, write}, "one\ntwo\nX\n"},
        {{backspace, backspace, write}, "one\nX\n"},
        {{rewind, read, write}, "one\nX\n"},
        {{rewind, backspace, write}, "X\n"},
        {{rewind, write, write}, "X\nX\n"},
    };
    for (const auto& c : cases) {
        ASSERT_TRUE(rt::open(45, fileSpec("seq.txt", "replace")).ok());
        rt::write(45, "(a)", "one");
        rt::write(45, "(a)", "two");
        rt::write(45, "(a)", "three");
        Text<8> record;
        for (Step step : c.steps) {
            const rt::Iostat done = step == rewind      ? rt::rewind(45)
                                    : step == backspace ? rt::backspace(45)
                                    : step == read      ? rt::read(45, "(a)", record)
                                                        : rt::write(45, "(a)", "X");
            EXPECT_TRUE(done.ok());
        }
        rt::close(45);
        EXPECT_EQ(slurp("seq.txt"), c.file);
    }

    // A file that cannot be cut: the write reports it.
    ASSERT_TRUE(rt::open(46, fileSpec("/dev/null")).ok());
    rt::write(46, "(a)", "one");
    rt::rewind(46);
    EXPECT_EQ(rt::write(rt::onError, 46, "(a)", "X").code, rt::code::cannotTruncate);
}

TEST_F(UnitsTest, RecordLoopOnOneUnitSeesEveryOutcome)
{
    std::ofstream("loop.txt") << "16 'E' 50 'N'\n30,'W',60,'S'\nx 'E' 1 'N'\n45 'S' 20 'W'\n";
    ASSERT_TRUE(rt::open(25, fileSpec("loop.txt", "old")).ok());
    const struct
    {
        int status;
        float dip;
        char letter;
    } reads[]{{0, 16, 'E'}, {0, 30, 'W'}, {10016, 30, 'W'}, {0, 45, 'S'}, {-1, 45, 'S'}, {-1, 45, 'S'}};
    float dip = 0, other = 0;
    Text<1> letter, otherLetter;
    for (const auto& r : reads) {
        int status = 99;
        rt::readList(rt::withStatus(status), 25, dip, letter, other, otherLetter);
        EXPECT_EQ(status, r.status);
        EXPECT_EQ(dip, r.dip);
        EXPECT_EQ(letter[0], r.letter);
    }
    // Another file under the same number is read from its start.
    rt::close(25);
    std::ofstream("next.txt") << "7 'N' 8 'S'\n";
    ASSERT_TRUE(rt::open(25, fileSpec("next.txt", "old")).ok());
    EXPECT_TRUE(rt::readList(25, dip, letter, other, otherLetter).ok());
    EXPECT_EQ(dip, 7);

    // A write that fails is reported by the statement whose record fills the buffer.
    ASSERT_TRUE(rt::open(26, fileSpec("/dev/full")).ok());
    int status = 0, written = 0;
    while (status == 0 && written < 100000) {
        rt::write(rt::withStatus(status), 26, "(f6.1,a1,a)", dip, letter, "a results line");
        ++written;
    }
    EXPECT_EQ(status, ENOSPC);
    EXPECT_GT(written, 1);
}

TEST_F(UnitsTest, NegativeUnitIsIllegal)
{
    std::int32_t n = 0;
    EXPECT_EQ(rt::read(rt::onError, -9, "(i2)", n).code, rt::code::badUnit);
    EXPECT_EQ(rt::readList(rt::onError, -5, n).code, rt::code::badUnit);
    EXPECT_EQ(rt::write(rt::onError, -7, "(a)", "x").code, rt::code::badUnit);
}

TEST_F(UnitsTest, WindowUnits)
{
    // Windows that cannot be made: startup_test.cpp.
    quor_f_init(readLine, showText, nullptr, nullptr, makeWindow, closeWindow, nullptr);
    rt::OpenSpec specifiers = fileSpec("Results");
    specifiers.access = "Window,300,200";
    ASSERT_TRUE(rt::open(60, specifiers).ok());
    EXPECT_EQ(windowUnits.back(), 60);
    EXPECT_EQ(windowName, "Results");
    EXPECT_EQ(windowAccess, "Window,300,200");
    EXPECT_TRUE(rt::write(60, "(a)", "in the window").ok());
    rt::close(60);
    EXPECT_EQ(shown[60], "in the window\n");
    EXPECT_EQ(closedWindows, std::vector<long>{60});
    EXPECT_TRUE(files().empty());
}

TEST_F(UnitsTest, CloseStatus)
{
    EXPECT_TRUE(rt::open(42, fileSpec("gone.txt", "new")).ok());
    rt::write(42, "(a)", "x");
    EXPECT_TRUE(rt::close(42, "DELETE").ok());
    EXPECT_FALSE(fs::exists("gone.txt"));

    EXPECT_TRUE(rt::open(42, fileSpec("kept.txt", "new")).ok());
    rt::write(42, "(a)", "x");
    EXPECT_TRUE(rt::close(42, "keep").ok());
    EXPECT_EQ(slurp("kept.txt"), "x\n");
}

TEST_F(UnitsTest, TabsPassThroughWhateverTheTabSize)
{
    setenv("TABSIZE", "4", 1);
    restart();
    ASSERT_TRUE(rt::open(43, fileSpec("tabs.txt", "replace")).ok());
    rt::write(43, "(a,a1,a)", "x", "\t", "y");
    rt::close(43);
    EXPECT_EQ(slurp("tabs.txt"), "x\ty\n");
}

TEST_F(UnitsTest, NewFilesTakeTheMaskOfUmask)
{
    setenv("UMASK", "077", 1);
    restart();
    ASSERT_TRUE(rt::open(44, fileSpec("private.txt", "new")).ok());
    rt::close(44);
    struct stat info
    {
    };
    ASSERT_EQ(stat("private.txt", &info), 0);
    EXPECT_EQ(info.st_mode & 077, 0u);
}

} // namespace
