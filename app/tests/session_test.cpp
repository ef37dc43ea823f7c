// app/tests/session_test.cpp: whole runs of kestrometry-console in a child process, with the
// answers on standard input: screen transcripts, results files, and the ends of input.
//
// The expected screens are in data/*.txt, one line per screen line. A line that begins with '~'
// is a regular expression (dates, times, host facts); a line "*" stands for any lines up to the
// next expected one (the closing picture, which follows the end time).
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
using Lines = std::vector<std::string>;

std::string readFile(const fs::path& path)
{
    std::ifstream in(path, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
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

    // Runs the program in `work` with `answers` as its standard input, no results file left over.
    Outcome run(const std::string& answers) const
    {
        fs::remove(work / "kestro_out.txt");
        writeFile(dir / "answers", answers);
        const std::string command = "cd '" + work.string() +
                                    "' && TARNIX_RT_FLAGS= timeout 120 " KESTRO_CONSOLE
                                    " < ../answers > ../stdout 2> ../stderr";
        const int status = std::system(command.c_str());
        return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, readFile(dir / "stdout"),
                readFile(dir / "stderr")};
    }

    Outcome runCleanly(const std::string& answers) const
    {
        Outcome r = run(answers);
        EXPECT_EQ(r.status, 0);
        EXPECT_EQ(r.err, "");
        return r;
    }

    // The results file: its header line for `title` and `input`, the column titles, then `rows`.
    void expectResults(const std::string& title, const std::string& input, const std::string& screen,
                       const Lines& rows) const
    {
        const Lines results = lines(readFile(work / "kestro_out.txt"));
        ASSERT_EQ(results.size(), rows.size() + 2);
        // The system text is the banner's system and CPU fields, trimmed and joined by a blank.
        auto field = [&](const std::string& label, std::size_t width) {
            const std::string f =
                screen.substr(std::min(screen.find(label) + label.size(), screen.size()), width);
            return f.substr(0, f.find_last_not_of(' ') + 1);
        };
        const std::string fixed = "'" + title + "'\tinput file = " + input + "   kestrometry 5.1   " +
                                  field(" @    System: ", 13) + " " + field(" @       CPU: ", 30) +
                                  "   Run on ";
        EXPECT_EQ(results[0].substr(0, fixed.size()), fixed);
        EXPECT_TRUE(std::regex_match(results[0].substr(std::min(fixed.size(), results[0].size())),
                                     std::regex(R"(\d{4}-\d\d-\d\d at \d\d:\d\d:\d\d)")))
            << results[0];
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

TEST_F(Session, FileToFileWithAllDefaults)
{
    writeFile(work / "kestro_in.txt", "'Fault zone A'\n'dipa1' 'dipdir1' 'dipa2' 'dipdir2'\n"
                                      "16 'E' 50 'N'\n16 'W' 200 'A'\n90 'W' 0 'A'\n16 'E' 50 'E'\n");
    // Return for the banner, the six questions and the two panels.
    const Outcome r = runCleanly(std::string(8, '\n'));
    expectScreen(lines(r.out), expected("file_to_file.txt"));
    expectResults("Fault zone A", "kestro_in.txt", r.out,
                  {result16E50N, "  16.0\t'W'\t 200.0\t'A'\t 200.0\t  17.0\t ",
                   "  90.0\t'W'\t   0.0\t'A'\t 180.0\t  90.0\tvertical plane",
                   "  16.0\t'E'\t  50.0\t'E'\t      \t      \terror: same dip direction [modulo 180], early "
                   "detection"});
    // The banner's start is the closing report's start.
    std::smatch banner, report;
    std::regex_search(r.out, banner, std::regex(" @       Starting on (.{10}) at (.{8})"));
    std::regex_search(r.out, report, std::regex(" @ STARTED    ON (.{10}) AT (.{8})"));
    EXPECT_EQ(banner[1].str() + banner[2].str(), report[1].str() + report[2].str());
}

TEST_F(Session, KeyboardToScreen)
{
    expectScreen(lines(runCleanly(keyboardToScreen + "\n16 'E' 50 'N'\ny\n").out),
                 expected("keyboard_to_screen.txt"));
    EXPECT_FALSE(fs::exists(work / "kestro_out.txt"));
}

TEST_F(Session, HeaderFailureGoesStraightToTheClosingReport)
{
    for (const char* contents : {"", "'Title only'\n"}) {
        writeFile(work / "kestro_in.txt", contents);
        const Outcome r = run(std::string(4, '\n')); // banner, choice, file name, panel
        EXPECT_EQ(r.status, 0) << contents;
        expectScreen(lines(r.out), expected("header_failure.txt"));
        EXPECT_FALSE(fs::exists(work / "kestro_out.txt"));
    }
}

TEST_F(Session, InputEndingInTheDialogues)
{
    // At the banner: the runtime's fatal error, after the screen up to the banner's pause.
    Outcome r = run("");
    EXPECT_EQ(r.status, 255);
    for (const std::string& line : lines(r.err))
        EXPECT_EQ(line.substr(0, 2), "? ") << line;
    EXPECT_NE(r.err.find("? Attempt to read past end of file\n"), std::string::npos) << r.err;
    Lines banner = expected("header_failure.txt");
    const auto pause =
        std::find(banner.begin(), banner.end(), " @             HIT RETURN TO CONTINUE             @");
    banner.erase(pause + std::min<std::ptrdiff_t>(2, banner.end() - pause), banner.end());
    expectScreen(lines(r.out), banner);

    // Twice: the end counts once as Return (input choice 1); the file name question meets it again.
    r = run("\n");
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(lines(r.err).size(), 1u) << r.err;
    EXPECT_NE(r.out.find(" New value =             1\n"), std::string::npos);
    EXPECT_FALSE(fs::exists(work / "kestro_out.txt"));
}

TEST_F(Session, InputEndingAtTheEndQuestionOrTheRecordEndsNormally)
{
    const struct
    {
        const char* what;
        std::string answers;
        const char* counts;
        Lines results; // of kestro_out.txt behind its header; none for the screen
    } cases[]{
        {"at the end question", keyboardToScreen + "\n16 'E' 50 'N'\n", "    1 DATA\n Converted     1", {}},
        {"at the record", keyboardToScreen + "\n", "    0 DATA\n Converted     0", {}},
        {"inside the record", keyboardToScreen + "\n16 'E'\n", "    0 DATA\n Converted     0", {}},
        {"to a file",
         keyboardToFile + "\n16 'E' 50 'N'\nn\n30 'E' 60 'S'\n",
         "    2 DATA\n Converted     2",
         {result16E50N, result30E60S}},
        {"at the output name", "\n2\nField day\n\n1\n", "    0 DATA\n Converted     0", {}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        const Outcome r = runCleanly(c.answers);
        EXPECT_NE(r.out.find(" Read      " + std::string(c.counts) + " DATA\n"), std::string::npos);
        EXPECT_EQ(lines(r.out).back(), lastLine);
        EXPECT_EQ(r.out.find(" input  file"), std::string::npos);
        const bool toFile = r.out.find(" output file kestro_out.txt closed\n") != std::string::npos;
        EXPECT_EQ(toFile, fs::exists(work / "kestro_out.txt"));
        if (toFile) expectResults("Field day", "keyboard", r.out, c.results);
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
            EXPECT_EQ(run(fileAnswers(sample == std::string("kestro_in.txt") ? 1 : 2)).status, 0) << sample;
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
    const struct
    {
        const char* what;
        std::string tail;
        std::size_t results; // lines of the results file; 0: a refusal or a read failure may do
        std::string panel;   // a line the screen must show
    } cases[]{
        {"no newline at the end", "", 4, ""},
        {"binary bytes", "\n\x01\x02\xff\xfe\x80 'E' 50 'N'\n16 'W' 200 'A'\n", 4, readFailure},
        {"NUL bytes", std::string(withNul, sizeof withNul - 1), 4, readFailure},
        {"nan", "\nnan 'E' 50 'N'\n16 'W' 200 'A'\n", 4, readFailure},
        {"a 10 MB line", "\n16 'W' 200 'A' " + std::string(10 << 20, 'x') + "\n16 'W' 200 'A'\n", 6, ""},
        {"a 10 MB number", "\n" + std::string(10 << 20, '7') + " 'E' 50 'N'\n16 'W' 200 'A'\n", 0, ""},
        {"1e999", "\n1e999 'E' 50 'N'\n16 'W' 200 'A'\n", 0, ""},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        writeFile(work / "kestro_in.txt", header + c.tail);
        const Outcome r = run(fileAnswers(1));
        EXPECT_EQ(r.status, 0);
        EXPECT_EQ(r.err.find("? "), std::string::npos) << r.err;
        EXPECT_NE(r.out.find(" output file kestro_out.txt closed\n"), std::string::npos);
        EXPECT_NE(r.out.find(c.panel), std::string::npos);
        EXPECT_EQ(lines(r.out).back(), lastLine);
        const Lines results = lines(readFile(work / "kestro_out.txt"));
        ASSERT_GE(results.size(), 4u);
        EXPECT_EQ(Lines(results.begin() + 2, results.begin() + 4), (Lines{result16E50N, result30E60S}));
        if (c.results) EXPECT_EQ(results.size(), c.results); // nothing lost behind the failure
    }
}

} // namespace
