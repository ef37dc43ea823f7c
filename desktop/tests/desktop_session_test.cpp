// desktop/tests/desktop_session_test.cpp: whole desktop sessions in a child process, typed into
// the default text window by the driver: the window's lines, the results file, and the exit
// status of every way the process ends.
#include <gtest/gtest.h>

#include <sys/wait.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <regex>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;
using Lines = std::vector<std::string>;

// The lines of a file; a last line without its line end is marked, so that no comparison passes it.
Lines lines(const fs::path& path)
{
    std::ifstream in(path, std::ios::binary);
    Lines result;
    for (std::string line; std::getline(in, line);)
        result.push_back(in.eof() ? line + "<no line end>" : line);
    return result;
}

const std::string columnTitles = "'dipa1'\t'dipdir1'\t'dipa2'\t'dipdir2'\t'strike'\t'dip'\t'comment'";
const std::string firstResult = "  16.0\t'E'\t  50.0\t'N'\t 283.5\t  50.8\t ";
const std::string border = " " + std::string(50, '@');
const std::string dataHeader = "'Fault zone A'\n'dipa1' 'dipdir1' 'dipa2' 'dipdir2'\n";

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

    // Runs the driver in `work` with no input of its own and no results file left over; the exit
    // status, 124 after 90 seconds.
    int run(const std::string& mode, const std::string& answers, const std::string& saveAs,
            const std::string& delay = "0")
    {
        fs::remove(work / "kestro_out.txt");
        std::ofstream(work / "answers") << answers;
        const std::string command =
            "cd '" + work.string() +
            "' && QT_QPA_PLATFORM=offscreen TARNIX_RT_FLAGS= timeout 90 " KESTRO_DRIVER " " + mode +
            " answers '" + saveAs + "' " + delay + " < /dev/null 2> stderr";
        const int status = std::system(command.c_str());
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

    // Expects the lines of `file` to begin with the first of `wanted` and to hold the others after
    // it in this order; a line that begins with '~' is a pattern.
    void expectInOrder(const char* file, const Lines& wanted) const
    {
        const Lines actual = lines(work / file);
        std::size_t at = 0;
        for (const std::string& want : wanted) {
            const auto matches = [&] {
                return want[0] == '~' ? std::regex_match(actual[at], std::regex(want.substr(1)))
                                      : actual[at] == want;
            };
            while (at > 0 && at < actual.size() && !matches())
                ++at;
            if (at == actual.size() || !matches()) {
                ADD_FAILURE() << file << ": missing, or out of order: \"" << want << "\"";
                return;
            }
            ++at;
        }
    }

    // The results file below its title line.
    Lines resultTable() const
    {
        const Lines all = lines(work / "kestro_out.txt");
        return all.empty() ? all : Lines(all.begin() + 1, all.end());
    }

    fs::path work;
};

TEST_F(DesktopSession, FileToFileWithEveryDefaultTypedInTheWindow)
{
    std::ofstream(work / "kestro_in.txt")
        << dataHeader << "16 'E' 50 'N'\n16 'W' 200 'A'\n90 'W' 0 'A'\n16 'E' 50 'E'\n";
    // The banner's pause, six answers, the pauses of a warning and an error panel.
    EXPECT_EQ(run("session", std::string(8, '\n'), "window.txt"), 0);
    // The save prompt at the end saved the window, from its first line on.
    expectInOrder("window.txt", {border, "~ @ +Starting on \\d{4}-\\d\\d-\\d\\d at \\d\\d:\\d\\d:\\d\\d +@",
                                 " Enter your choice ", " READING INPUT HEADER ", " READING INPUT DATA ",
                                 " while reading data nb     3 ", " ==> strike reset to :   180.0",
                                 " while reading data nb     4 ", " ===> NO CONVERSION ",
                                 "~ @ STARTED    ON \\d{4}-\\d\\d-\\d\\d AT \\d\\d:\\d\\d:\\d\\d {11}@"});
    // The conversions themselves are the console's; here every record reaches the file.
    EXPECT_EQ(resultTable().size(), 5u);
}

TEST_F(DesktopSession, KeyboardToScreenShowsTheTypedAnswersBesideTheirPrompts)
{
    EXPECT_EQ(run("session", "\n2\nField day\n\n2\n\n16 'E' 50 'N'\ny\n", "window.txt"), 0);
    expectInOrder("window.txt", {border, "~.*2", "~.*Field day", " READING INPUT DATA ", "~.*16 'E' 50 'N'",
                                 " RESULTS ", columnTitles, firstResult, "~.*y"});
    EXPECT_FALSE(fs::exists(work / "kestro_out.txt"));
}

// Keyboard data into the results file; the user leaves at the next read. Quit cancels the save
// prompt; the window closed is saved as it stood, the last question without an answer.
TEST_F(DesktopSession, LeavingWhileTheProgramWaitsForInputKeepsEveryResult)
{
    for (const std::string mode : {"quit-at-read", "close-at-read"}) {
        SCOPED_TRACE(mode);
        const std::string saveAs = mode == "quit-at-read" ? "-" : "window.txt";
        EXPECT_EQ(run(mode, "\n2\nField day\n\n1\n\n\n16 'E' 50 'N'\n", saveAs), 0);
        EXPECT_EQ(resultTable(), (Lines{columnTitles, firstResult}));
        EXPECT_FALSE(fs::exists(work / "-"));
        if (saveAs != "-") expectInOrder("window.txt", {border, "~.*16 'E' 50 'N'"});
    }
}

TEST_F(DesktopSession, QuitDuringALongRunCutsNoRecord)
{
    std::string data = dataHeader;
    for (int i = 0; i < 400000; ++i)
        data += "16 'E' 50 'N'\n";
    std::ofstream(work / "kestro_in.txt") << data;
    EXPECT_EQ(run("quit-running", std::string(7, '\n'), "-", "150"), 0);
    const Lines table = resultTable();
    ASSERT_FALSE(table.empty());
    for (std::size_t i = 0; i < table.size(); ++i)
        ASSERT_EQ(table[i], i ? firstResult : columnTitles) << "line " << i + 2;
}

TEST_F(DesktopSession, ARuntimeErrorIsReportedInTheWindowAndEndsAsAStop)
{
    EXPECT_EQ(run("fatal", "abc\n", "window.txt"), 0);
    expectInOrder("window.txt",
                  {"Number of records:", "abc", "~\\? .+", "~\\? .+", "~\\? READ\\(UNIT=5,\\.\\.\\."});
    const Lines window = lines(work / "window.txt");
    EXPECT_EQ(std::find(window.begin(), window.end(), "not reached"), window.end());
}

} // namespace
