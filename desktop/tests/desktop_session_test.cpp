// desktop/tests/desktop_session_test.cpp: whole desktop sessions in a child process, typed into
// the default text window by the driver: the window's lines, the results file, and the exit
// status of every way the process ends.
#include <gtest/gtest.h>

#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;

std::string readFile(const fs::path& path)
{
    std::ifstream in(path, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

std::vector<std::string> lines(const std::string& text)
{
    std::vector<std::string> result;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);)
        result.push_back(line);
    return result;
}

const std::string columnTitles = "'dipa1'\t'dipdir1'\t'dipa2'\t'dipdir2'\t'strike'\t'dip'\t'comment'";
const std::string firstResult = "  16.0\t'E'\t  50.0\t'N'\t 283.5\t  50.8\t ";
const std::string atBorder = " " + std::string(50, '@');

class DesktopSession : public ::testing::Test
{
protected:
    void SetUp() override
    {
        std::string pattern = (fs::temp_directory_path() / "kestro_desktop_XXXXXX").string();
        ASSERT_NE(mkdtemp(pattern.data()), nullptr);
        work = pattern;
    }
    void TearDown() override { fs::remove_all(work); }

    // Runs the driver in `work` with no input of its own; the exit status, 124 after 90 seconds.
    int run(const std::string& mode, const std::string& answers, const std::string& saveAs,
            const std::string& delay = "0")
    {
        std::ofstream(work / "answers") << answers;
        const std::string command =
            "cd '" + work.string() +
            "' && QT_QPA_PLATFORM=offscreen TARNIX_RT_FLAGS= timeout 90 " KESTRO_DRIVER " " + mode +
            " answers '" + saveAs + "' " + delay + " < /dev/null 2> stderr";
        const int status = std::system(command.c_str());
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

    // Expects `wanted` among `actual` in this order; a line that begins with '~' is a pattern.
    static void expectInOrder(const std::vector<std::string>& actual, const std::vector<std::string>& wanted)
    {
        std::size_t at = 0;
        for (const std::string& want : wanted) {
            const bool pattern = !want.empty() && want[0] == '~';
            while (at < actual.size() &&
                   !(pattern ? std::regex_match(actual[at], std::regex(want.substr(1))) : actual[at] == want))
                ++at;
            if (at == actual.size()) {
                ADD_FAILURE() << "missing, or out of order: \"" << want << "\"";
                return;
            }
            ++at;
        }
    }

    void writeData(const std::string& records)
    {
        std::ofstream(work / "kestro_in.txt") << "'Fault zone A'\n'dipa1' 'dipdir1' 'dipa2' 'dipdir2'\n"
                                              << records;
    }

    fs::path work;
};

TEST_F(DesktopSession, FileToFileWithEveryDefaultTypedInTheWindow)
{
    writeData("16 'E' 50 'N'\n16 'W' 200 'A'\n90 'W' 0 'A'\n16 'E' 50 'E'\n");
    // The banner's pause, six answers, the pauses of a warning and an error panel.
    EXPECT_EQ(run("session", std::string(8, '\n'), "window.txt"), 0);

    const std::vector<std::string> window = lines(readFile(work / "window.txt"));
    ASSERT_FALSE(window.empty()) << "the save prompt at the end did not save the window";
    EXPECT_EQ(window.front(), atBorder);
    expectInOrder(window,
                  {"~ @ +Starting on \\d{4}-\\d\\d-\\d\\d at \\d\\d:\\d\\d:\\d\\d +@", " Enter your choice ",
                   " READING INPUT HEADER ", " READING INPUT DATA ", " while reading data nb     3 ",
                   " ==> strike reset to :   180.0", " while reading data nb     4 ", " ===> NO CONVERSION ",
                   "~ @ STARTED    ON \\d{4}-\\d\\d-\\d\\d AT \\d\\d:\\d\\d:\\d\\d {11}@"});

    const std::vector<std::string> results = lines(readFile(work / "kestro_out.txt"));
    ASSERT_EQ(results.size(), 6u);
    EXPECT_EQ(results[0].substr(0, 15), "'Fault zone A'\t");
    const std::vector<std::string> table{
        columnTitles, firstResult, "  16.0\t'W'\t 200.0\t'A'\t 200.0\t  17.0\t ",
        "  90.0\t'W'\t   0.0\t'A'\t 180.0\t  90.0\tvertical plane",
        "  16.0\t'E'\t  50.0\t'E'\t      \t      \terror: same dip direction [modulo 180], early detection"};
    EXPECT_EQ(std::vector<std::string>(results.begin() + 1, results.end()), table);
}

TEST_F(DesktopSession, KeyboardToScreenShowsTheTypedAnswersBesideTheirPrompts)
{
    EXPECT_EQ(run("session", "\n2\nField day\n\n2\n\n16 'E' 50 'N'\ny\n", "window.txt"), 0);
    const std::vector<std::string> window = lines(readFile(work / "window.txt"));
    expectInOrder(window, {"~.*2", "~.*Field day", " READING INPUT DATA ", "~.*16 'E' 50 'N'", " RESULTS ",
                           columnTitles, firstResult, "~.*y"});
    EXPECT_FALSE(fs::exists(work / "kestro_out.txt"));
}

// Keyboard data into the results file; the user leaves while the program asks for more.
const std::string oneRecordIntoAFile = "\n2\nField day\n\n1\n\n\n16 'E' 50 'N'\n";

TEST_F(DesktopSession, QuitWhileTheProgramWaitsForInputKeepsEveryResult)
{
    EXPECT_EQ(run("quit-at-read", oneRecordIntoAFile, "-"), 0);
    const std::vector<std::string> results = lines(readFile(work / "kestro_out.txt"));
    ASSERT_EQ(results.size(), 3u);
    EXPECT_EQ(results[1], columnTitles);
    EXPECT_EQ(results[2], firstResult);
    EXPECT_FALSE(fs::exists(work / "-"));
}

TEST_F(DesktopSession, ClosingTheLastWindowDuringAReadEndsQuietly)
{
    EXPECT_EQ(run("close-at-read", oneRecordIntoAFile, "window.txt"), 0);
    const std::vector<std::string> results = lines(readFile(work / "kestro_out.txt"));
    ASSERT_EQ(results.size(), 3u);
    EXPECT_EQ(results[2], firstResult);
    // The window was saved as it stood: the last question without an answer.
    EXPECT_NE(readFile(work / "window.txt").find("16 'E' 50 'N'"), std::string::npos);
}

TEST_F(DesktopSession, QuitDuringALongRunCutsNoRecord)
{
    std::string records;
    for (int i = 0; i < 400000; ++i)
        records += "16 'E' 50 'N'\n";
    writeData(records);
    EXPECT_EQ(run("quit-running", std::string(7, '\n'), "-", "150"), 0);

    const std::string text = readFile(work / "kestro_out.txt");
    ASSERT_FALSE(text.empty());
    EXPECT_EQ(text.back(), '\n');
    const std::vector<std::string> results = lines(text);
    ASSERT_GE(results.size(), 2u);
    EXPECT_EQ(results[1], columnTitles);
    for (std::size_t i = 2; i < results.size(); ++i)
        ASSERT_EQ(results[i], firstResult) << "line " << i + 1;
}

TEST_F(DesktopSession, ARuntimeErrorIsReportedInTheWindowAndEndsAsAStop)
{
    EXPECT_EQ(run("fatal", "abc\n", "window.txt"), 0);
    const std::vector<std::string> window = lines(readFile(work / "window.txt"));
    expectInOrder(window,
                  {"Number of records:", "abc", "~\\? .+", "~\\? .+", "~\\? READ\\(UNIT=5,\\.\\.\\."});
    for (const std::string& line : window)
        EXPECT_NE(line, "not reached");
}

} // namespace
