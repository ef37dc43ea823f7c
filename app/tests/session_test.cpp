// app/tests/session_test.cpp: whole runs of kestrometry-console in a child process, with the
// answers on standard input: screen transcripts, results files, and the ends of input.
//
// The expected screens are in data/*.txt, one line per screen line. A line that begins with '~'
// is a regular expression (dates, times, host facts); a line "*" stands for any lines up to the
// next expected one (the closing picture, which follows the end time).
#include <gtest/gtest.h>

#include <sys/wait.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <regex>
#include <string>
#include <tuple>
#include <vector>

namespace {

namespace fs = std::filesystem;
using Lines = std::vector<std::string>;

std::string readFile(const fs::path& path)
{
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

void writeFile(const fs::path& path, const std::string& contents)
{
    std::ofstream(path, std::ios::binary) << contents;
}

Lines lines(const std::string& text)
{
    Lines result;
    for (std::size_t start = 0, end = 0; start < text.size(); start = end + 1) {
        end = std::min(text.find('\n', start), text.size());
        result.push_back(text.substr(start, end - start));
    }
    return result;
}

Lines expected(const char* name)
{
    return lines(readFile(fs::path(KESTRO_TEST_DATA) / name));
}

bool lineMatches(const std::string& got, const std::string& want)
{
    return !want.empty() && want[0] == '~' ? std::regex_match(got, std::regex(want.substr(1))) : got == want;
}

void expectScreen(const Lines& actual, const Lines& want)
{
    std::size_t a = 0;
    for (std::size_t w = 0; w < want.size(); ++w) {
        if (want[w] == "*") {
            while (a < actual.size() && (w + 1 == want.size() || !lineMatches(actual[a], want[w + 1])))
                ++a;
            continue;
        }
        const std::string got = a < actual.size() ? actual[a] : "<no line>";
        ASSERT_TRUE(lineMatches(got, want[w]))
            << "screen line " << a + 1 << "\n expected: \"" << want[w] << "\"\n   actual: \"" << got << "\"";
        ++a;
    }
    EXPECT_EQ(a, actual.size()) << "lines beyond the expected screen";
}

struct Outcome
{
    int status = -1; // exit status; 124 after two minutes
    std::string out;
    std::string err;
};

class Session : public ::testing::Test
{
protected:
    void SetUp() override
    {
        std::string pattern = (fs::temp_directory_path() / "kestro_session_XXXXXX").string();
        ASSERT_NE(mkdtemp(pattern.data()), nullptr);
        dir = pattern;
        work = dir / "work";
        fs::create_directory(work);
    }
    void TearDown() override { fs::remove_all(dir); }

    // Runs the program in `work` with `answers` as its standard input, no results file left over;
    // a clean run ends with status 0 and says nothing on standard error.
    Outcome run(const std::string& answers, bool clean = true) const
    {
        fs::remove(work / "kestro_out.txt");
        writeFile(dir / "answers", answers);
        const std::string command = "cd '" + work.string() +
                                    "' && TARNIX_RT_FLAGS= timeout 120 " KESTRO_CONSOLE
                                    " < ../answers > ../stdout 2> ../stderr";
        const int status = std::system(command.c_str());
        const Outcome r{WIFEXITED(status) ? WEXITSTATUS(status) : -1, readFile(dir / "stdout"),
                        readFile(dir / "stderr")};
        if (clean) {
            EXPECT_EQ(r.status, 0);
            EXPECT_EQ(r.err, "");
        }
        return r;
    }

    // The results file: its header line for `title` and `input`, whose system text is the banner's
    // system and CPU fields, trimmed and joined by a blank; the column titles; then `rows`.
    void expectResults(const std::string& title, const std::string& input, const std::string& screen,
                       const Lines& rows) const
    {
        std::smatch system;
        std::regex_search(screen, system, std::regex(" @    System: (.*?) *@\n @       CPU: (.*?) *@\n"));
        const Lines results = lines(readFile(work / "kestro_out.txt"));
        ASSERT_EQ(results.size(), rows.size() + 2);
        EXPECT_EQ(
            std::regex_replace(results[0], std::regex(R"(\d{4}-\d\d-\d\d at \d\d:\d\d:\d\d$)"), "<date>"),
            "'" + title + "'\tinput file = " + input + "   kestrometry 5.1   " + system[1].str() + " " +
                system[2].str() + "   Run on <date>");
        EXPECT_EQ(results[1], "'dipa1'\t'dipdir1'\t'dipa2'\t'dipdir2'\t'strike'\t'dip'\t'comment'");
        EXPECT_EQ(Lines(results.begin() + 2, results.end()), rows);
    }

    fs::path dir;
    fs::path work;
};

const std::string result16E50N = "  16.0\t'E'\t  50.0\t'N'\t 283.5\t  50.8\t ";
const std::string result30E60S = "  30.0\t'E'\t  60.0\t'S'\t  71.6\t  61.3\t ";
const std::string keyboardToScreen = "\n2\nField day\n\n2\n";
const std::string keyboardToFile = "\n2\nField day\n\n1\n\n";
const std::string lastLine = " " + std::string(50, '@');

// Copies data/`name` to the input file of the run.
void useInput(const fs::path& work, const char* name)
{
    fs::copy_file(fs::path(KESTRO_TEST_DATA) / name, work / "kestro_in.txt",
                  fs::copy_options::overwrite_existing);
}

TEST_F(Session, TranscriptsAndResultsOfWholeRuns)
{
    // the input file of data/ (none: the keyboard), the answers, the screen of data/, the results
    // behind the header of the results file (none: no file)
    const std::tuple<const char*, std::string, const char*, Lines> runs[]{
        // Return for the banner, the six questions and the two panels
        {"fault_zone_a.txt",
         std::string(8, '\n'),
         "file_to_file.txt",
         {result16E50N, "  16.0\t'W'\t 200.0\t'A'\t 200.0\t  17.0\t ",
          "  90.0\t'W'\t   0.0\t'A'\t 180.0\t  90.0\tvertical plane",
          "  16.0\t'E'\t  50.0\t'E'\t      \t      \terror: same dip direction [modulo 180], early "
          "detection"}},
        {"", keyboardToScreen + "\n16 'E' 50 'N'\ny\n", "keyboard_to_screen.txt", {}},
        // Return for the banner, the input choice, the file name and the panel
        {"title_only.txt", std::string(4, '\n'), "header_failure.txt", {}},
        {"empty.txt", std::string(4, '\n'), "header_failure.txt", {}},
    };
    for (const auto& [input, answers, screen, results] : runs) {
        SCOPED_TRACE(std::string(input) + " " + screen);
        if (*input) useInput(work, input);
        const Outcome r = run(answers);
        expectScreen(lines(r.out), expected(screen));
        EXPECT_EQ(fs::exists(work / "kestro_out.txt"), !results.empty());
        if (!results.empty()) expectResults("Fault zone A", "kestro_in.txt", r.out, results);
        // The banner's start is the closing report's start.
        const std::size_t start = r.out.find("Starting on ");
        ASSERT_NE(start, std::string::npos);
        const std::string date = r.out.substr(start + 12, 10);
        const std::string time = r.out.substr(start + 26, 8);
        EXPECT_NE(r.out.find("STARTED    ON " + date + " AT " + time, start), std::string::npos);
    }
}

TEST_F(Session, InputEndingInTheDialogues)
{
    // At the banner: the runtime's fatal error, after the screen up to the banner's pause.
    Outcome r = run("", false);
    EXPECT_EQ(r.status, 255);
    for (const std::string& line : lines(r.err))
        EXPECT_EQ(line.substr(0, 2), "? ") << line;
    EXPECT_NE(r.err.find("? Attempt to read past end of file\n"), std::string::npos) << r.err;
    expectScreen(lines(r.out), expected("ended_at_banner.txt"));

    // Twice: the end counts once as Return (input choice 1); the file name question meets it again.
    r = run("\n", false);
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(lines(r.err).size(), 1u) << r.err;
    EXPECT_NE(r.out.find(" New value =             1\n"), std::string::npos);
    EXPECT_FALSE(fs::exists(work / "kestro_out.txt"));
}

TEST_F(Session, InputEndingAtTheEndQuestionOrTheRecordEndsNormally)
{
    // answers, the count of the data read and converted, the results behind the header (a file only)
    const std::tuple<std::string, const char*, Lines> cases[]{
        {keyboardToScreen + "\n16 'E' 50 'N'\n", "    1 DATA\n Converted     1", {}},
        {keyboardToScreen + "\n", "    0 DATA\n Converted     0", {}},
        {keyboardToScreen + "\n16 'E'\n", "    0 DATA\n Converted     0", {}},
        {keyboardToFile + "\n16 'E' 50 'N'\nn\n30 'E' 60 'S'\n",
         "    2 DATA\n Converted     2",
         {result16E50N, result30E60S}},
        {"\n2\nField day\n\n1\n", "    0 DATA\n Converted     0", {}},
    };
    for (const auto& [answers, counts, results] : cases) {
        SCOPED_TRACE(answers);
        const Outcome r = run(answers);
        EXPECT_NE(r.out.find(" Read      " + std::string(counts) + " DATA\n"), std::string::npos);
        EXPECT_EQ(lines(r.out).back(), lastLine);
        EXPECT_EQ(r.out.find(" input  file"), std::string::npos);
        const bool toFile = r.out.find(" output file kestro_out.txt closed\n") != std::string::npos;
        EXPECT_EQ(toFile, fs::exists(work / "kestro_out.txt"));
        if (toFile) expectResults("Field day", "keyboard", r.out, results);
    }
}

// Answers for a file-to-file run in the given form, with Return for any panel.
std::string fileAnswers(int form)
{
    return "\n\n\n" + std::to_string(form) + "\n\n\n" + std::string(40, '\n');
}

TEST_F(Session, CarriageReturnLineEndsConvertAsLineFeeds)
{
    for (const char* sample : {"kestro_in.txt", "kestro_in_numerical.txt"}) {
        const std::string lf = readFile(fs::path(KESTRO_EXAMPLES) / sample);
        ASSERT_FALSE(lf.empty()) << sample;
        const std::string crlf = std::regex_replace(lf, std::regex("\n"), "\r\n");
        Lines results[2];
        for (int i = 0; i < 2; ++i) {
            writeFile(work / "kestro_in.txt", i == 0 ? lf : crlf);
            run(fileAnswers(sample == std::string("kestro_in.txt") ? 1 : 2));
            results[i] = lines(readFile(work / "kestro_out.txt"));
            ASSERT_GE(results[i].size(), 3u) << sample;
            results[i][0].erase(results[i][0].find("   Run on ")); // the time of the run
        }
        EXPECT_EQ(results[1], results[0]) << sample;
    }
}

TEST_F(Session, BrokenInputFilesKeepTheResultsBeforeTheFailure)
{
    const std::string header = "'Broken'\n'dipa1' 'dipdir1' 'dipa2' 'dipdir2'\n16 'E' 50 'N'\n30 'E' 60 'S'";
    const char withNul[] = "\n16\0 'E' 50 'N'\n\0\0\0\n16 'W' 200 'A'\n";
    const std::string readFailure = "\n when trying to read     3 th data\n";
    // the tail of the file, the lines of the results file (0: a refusal or a read failure may do), a line
    // the screen must show
    const std::tuple<std::string, std::size_t, std::string> cases[]{
        {"", 4, ""}, // no newline at the end
        {"\n\x01\x02\xff\xfe\x80 'E' 50 'N'\n16 'W' 200 'A'\n", 4, readFailure},
        {std::string(withNul, sizeof withNul - 1), 4, readFailure},
        {"\nnan 'E' 50 'N'\n16 'W' 200 'A'\n", 4, readFailure},
        {"\n16 'W' 200 'A' " + std::string(10 << 20, 'x') + "\n16 'W' 200 'A'\n", 6, ""},
        {"\n" + std::string(10 << 20, '7') + " 'E' 50 'N'\n16 'W' 200 'A'\n", 0, ""},
        {"\n1e999 'E' 50 'N'\n16 'W' 200 'A'\n", 0, ""},
    };
    for (const auto& [tail, count, panel] : cases) {
        SCOPED_TRACE(tail.substr(0, 20));
        writeFile(work / "kestro_in.txt", header + tail);
        const Outcome r = run(fileAnswers(1), false);
        EXPECT_EQ(r.status, 0);
        EXPECT_EQ(r.err.find("? "), std::string::npos) << r.err;
        EXPECT_NE(r.out.find(" output file kestro_out.txt closed\n"), std::string::npos);
        EXPECT_NE(r.out.find(panel), std::string::npos);
        EXPECT_EQ(lines(r.out).back(), lastLine);
        const Lines results = lines(readFile(work / "kestro_out.txt"));
        ASSERT_GE(results.size(), 4u);
        EXPECT_EQ(Lines(results.begin() + 2, results.begin() + 4), (Lines{result16E50N, result30E60S}));
        if (count) EXPECT_EQ(results.size(), count); // nothing lost behind the failure
    }
}

} // namespace
