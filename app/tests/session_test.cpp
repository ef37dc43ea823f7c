// app/tests/session_test.cpp: whole runs of kestrometry-console in a child process, with the
// answers on standard input: screen transcripts, results files, and the ends of input.
#include <gtest/gtest.h>

#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <regex>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

namespace {

namespace fs = std::filesystem;

struct Outcome
{
    int status = -1; // exit status, or 128 + signal
    std::string out;
    std::string err;
};

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

std::vector<std::string> lines(const std::string& text)
{
    std::vector<std::string> result;
    for (std::size_t start = 0, end = 0; start < text.size(); start = end + 1) {
        end = std::min(text.find('\n', start), text.size());
        result.push_back(text.substr(start, end - start));
    }
    return result;
}

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

    // Runs the program in `work`, with no results file left from a run before, and with `answers`
    // as its standard input.
    Outcome run(const std::string& answers) const
    {
        fs::remove(work / "kestro_out.txt");
        writeFile(dir / "answers", answers);
        const pid_t pid = fork();
        if (pid == 0) {
            if (chdir(work.c_str()) != 0) _exit(126);
            dup2(open((dir / "answers").c_str(), O_RDONLY), 0);
            dup2(open((dir / "stdout").c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600), 1);
            dup2(open((dir / "stderr").c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600), 2);
            unsetenv("TARNIX_RT_FLAGS");
            execl(KESTRO_CONSOLE, KESTRO_CONSOLE, static_cast<char*>(nullptr));
            _exit(127);
        }
        int status = 0;
        const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(120);
        while (waitpid(pid, &status, WNOHANG) == 0) {
            if (std::chrono::steady_clock::now() > deadline) {
                kill(pid, SIGKILL);
                waitpid(pid, &status, 0);
                ADD_FAILURE() << "the program did not end within 120 seconds";
                break;
            }
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        }
        return {WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status), readFile(dir / "stdout"),
                readFile(dir / "stderr")};
    }

    // A run that must end with status 0 and nothing on standard error.
    Outcome runCleanly(const std::string& answers) const
    {
        Outcome r = run(answers);
        EXPECT_EQ(r.status, 0);
        EXPECT_EQ(r.err, "");
        return r;
    }

    fs::path dir;
    fs::path work;
};

// Expected screens. A line that begins with '~' is a pattern, for dates, times and host facts.
using Screen = std::vector<std::string>;

void add(Screen& screen, const Screen& more)
{
    screen.insert(screen.end(), more.begin(), more.end());
}

Screen joined(std::initializer_list<Screen> parts)
{
    Screen s;
    for (const Screen& part : parts)
        add(s, part);
    return s;
}

std::string ljust(std::string_view s, std::size_t n)
{
    return std::string(s) + std::string(n - s.size(), ' ');
}
std::string rjust(std::string_view s, std::size_t n)
{
    return std::string(n - s.size(), ' ') + std::string(s);
}
std::string blanks(std::size_t n)
{
    return std::string(n, ' ');
}

const std::string dashes = " " + std::string(43, '-') + " ";
const std::string dots = " " + std::string(42, '.') + " ";
const std::string atBorder = " " + std::string(50, '@');
const std::string atEmpty = " @" + blanks(48) + "@";
const std::string atDashes = " @" + std::string(48, '-') + "@";
const std::string dateTime = "\\d{4}-\\d\\d-\\d\\d at \\d\\d:\\d\\d:\\d\\d";
const std::string columnTitles = "'dipa1'\t'dipdir1'\t'dipa2'\t'dipdir2'\t'strike'\t'dip'\t'comment'";
const std::string result16E50N = "  16.0\t'E'\t  50.0\t'N'\t 283.5\t  50.8\t ";
const std::string result30E60S = "  30.0\t'E'\t  60.0\t'S'\t  71.6\t  61.3\t ";

void expectScreen(const std::vector<std::string>& actual, const Screen& expected)
{
    int mismatches = 0;
    for (std::size_t i = 0; i < std::max(actual.size(), expected.size()) && mismatches < 5; ++i) {
        const std::string got = i < actual.size() ? actual[i] : "<no line>";
        const std::string want = i < expected.size() ? expected[i] : "<no line>";
        const bool ok =
            !want.empty() && want[0] == '~' ? std::regex_match(got, std::regex(want.substr(1))) : got == want;
        if (!ok) {
            ADD_FAILURE() << "screen line " << i + 1 << "\n expected: \"" << want << "\"\n   actual: \""
                          << got << "\"";
            ++mismatches;
        }
    }
}

Screen subHead(std::string_view name, std::string_view version5, std::string_view date)
{
    return {atBorder,
            " " + ljust("@ subroutine " + std::string(name), 33) + " " + std::string(version5) + " " +
                std::string(date),
            " @" + std::string(49, '=')};
}

Screen mainHead()
{
    return {atBorder, " @ main program kestrometry         v5.1 2025-04-11", " @" + std::string(49, '=')};
}

Screen menu(std::string_view title, std::string_view first, std::string_view second)
{
    Screen s = mainHead();
    for (std::string_view line : {title, first, second})
        s.push_back(" " + std::string(line) + " ");
    s.push_back(atBorder);
    return s;
}

Screen heading(std::string_view title)
{
    return {dashes, " " + std::string(title) + " ", dashes};
}

const std::string rule = "~ \\.{42} ?"; // the format of the rule is the dialogues' own

Screen choice(int value)
{
    return {rule,
            " Enter your choice ",
            " inside  [1,2]",
            "~ or return for default value ?",
            " Default =            1",
            " New value = " + rjust(std::to_string(value), 13),
            rule};
}

Screen textQuestion(std::string_view name, std::string_view def, const std::string& field, bool defaulted)
{
    Screen s{rule, " Enter " + std::string(name) + " ", " or return for default value ",
             " Default = " + std::string(def) + " "};
    if (defaulted) s.push_back(" ichar =  32 => use default value");
    add(s, {" New value = " + field + " ", rule});
    return s;
}

Screen endQuestion(bool yes)
{
    return {rule,
            " End input and exit ? ",
            " Enter (0/1)(n/y)(N/Y) to answer ",
            " or return for default value or h for help ",
            " Default = No  ",
            yes ? " New value =  Yes " : " New value =  No  ",
            rule};
}

Screen opening(std::string_view label, std::string_view file)
{
    Screen s = subHead("opef2", " v5.3", "2024-10-22");
    add(s, {" OPENING " + std::string(label) + " FILE", atBorder});
    add(s, textQuestion(std::string(label) + " file name", file, ljust(file, 250), true));
    return s;
}

const Screen inputMenu = menu("INPUT IS FROM:", "File ...................................1",
                              "Keyboard ...............................2");
const Screen formatMenu = menu("DATA FORMAT:", "Alphanumerical : 30  'E'  60  'S' ......1",
                               "Numerical :      30   90  60  180 ......2");
const Screen outputMenu = menu("OUTPUT IS TO:", "File ...................................1",
                               "Screen .................................2");

// A warning or error panel of the program with its pause, around the body lines.
Screen warningPanel(const Screen& body)
{
    const std::string slashes = " " + std::string(50, '/');
    Screen s{slashes, " ///          subroutine   kestrometry          ///",
             " ///                  WARNING                   ///", slashes};
    add(s, body);
    add(s, {" ===> HIT RETURN TO CONTINUE ", slashes, " ///                WARNING END                 ///",
            slashes});
    return s;
}

Screen errorPanel(const Screen& body)
{
    const std::string stars = " " + std::string(50, '*');
    const std::string empty = " ***" + blanks(44) + "***";
    Screen s{stars,
             stars,
             empty,
             " ***          subroutine   kestrometry          ***",
             " ***                   ERROR                    ***",
             empty,
             stars,
             stars};
    add(s, body);
    add(s, {" ===> HIT RETURN TO CONTINUE ", stars, " ***                 ERROR END                  ***",
            stars});
    return s;
}

// initsio2, the run information and the banner, up to its pause.
Screen start()
{
    Screen s = subHead("initsio2", " v4.1", "2024-10-25");
    s.push_back(" INITIALIZING INPUT/OUTPUT");
    add(s, subHead("swpinfo", " v1.1", "2021-02-27"));
    add(s, {" INITIALISING RUN INFO",
            atBorder,
            atEmpty,
            " @" + rjust("MAIN PROGRAM:", 23) + " " + ljust("kestrometry", 20) + "    @",
            " @" + rjust("Version:", 23) + " 5.1 " + blanks(20) + "@",
            " @" + rjust("Date:", 23) + " 2025-04-11" + blanks(14) + "@",
            atEmpty,
            atDashes,
            atEmpty,
            "~ @       Starting on " + dateTime + "       @",
            "~ @      User: .{10} {26}@",
            "~ @      Host: .{35} @",
            "~ @    System: .{13} {23}@",
            "~ @       CPU: .{30} {6}@",
            atEmpty,
            atDashes,
            atEmpty,
            " @                   Written by:                  @",
            " @                Anselm VORTIGERN                @",
            atEmpty,
            " @                   Hosted by:                   @",
            " @             Vorlane Earth Institute            @",
            " @        Vorlane University - Lithos Unit        @",
            " @               Vorlane, Ruritania               @",
            "~(?=.{51}$) @ +\\S+ +@", // the author's web address, centred
            atEmpty,
            " @      Report of any problem is appreciated      @",
            atEmpty,
            atDashes,
            " @             HIT RETURN TO CONTINUE             @",
            atBorder});
    return s;
}

Screen setUp()
{
    return joined({start(), subHead("trigoset", " v8.0", "2017-03-10"), {" Initializing /anglerad/ block"}});
}

// From the start to the heading over the reading of kestro_in.txt's header.
Screen fileInputStart()
{
    return joined({setUp(), inputMenu, choice(1), opening("fracture data input", "kestro_in.txt"),
                   heading("READING INPUT HEADER")});
}

// Lines of the picture of each units digit of the end time; art_test and banner_test check the
// pictures themselves.
std::size_t pictureHeight(char digit)
{
    // happyface, sator, carmag33, endfun1, tetrakis, tetratemple1, tetratemple2, graben, horst, tetrakis
    constexpr std::size_t heights[]{18, 5, 7, 8, 4, 12, 16, 8, 8, 4};
    return digit >= '0' && digit <= '9' ? heights[digit - '0'] : 4;
}

// The closing report; the picture follows the end time that the screen shows.
Screen closing(const std::vector<std::string>& actual, int read, int converted, std::string_view input,
               std::string_view output)
{
    Screen s = subHead("kestrometry", " v5.1", "2025-04-11");
    add(s, {dashes, " Read      " + rjust(std::to_string(read), 5) + " DATA",
            " Converted " + rjust(std::to_string(converted), 5) + " DATA"});
    if (!input.empty()) s.push_back(" input  file " + std::string(input) + " closed");
    if (!output.empty()) s.push_back(" output file " + std::string(output) + " closed");
    const std::string time = "[ \\d]{5}\\.\\d{3} (seconds|minutes|hours  ) {15}@";
    add(s,
        {dashes, atBorder, " @ MAIN PROGRAM " + ljust("kestrometry", 20) + rjust("Version: 5.1", 13) + " @",
         "~ @ STARTED    ON \\d{4}-\\d\\d-\\d\\d AT \\d\\d:\\d\\d:\\d\\d {11}@",
         "~ @ TERMINATED ON \\d{4}-\\d\\d-\\d\\d AT \\d\\d:\\d\\d:\\d\\d {11}@", "~ @ ELAPSED TIME = " + time,
         " @         modulo    35.791 minutes               @", "~ @ CPU TIME     = " + time, atDashes});
    char digit = '?';
    const std::regex end(" @ TERMINATED ON .{10} AT .{7}(\\d) {11}@");
    for (const std::string& line : actual) {
        std::smatch m;
        if (std::regex_match(line, m, end)) digit = m[1].str()[0];
    }
    s.push_back("  ");
    s.insert(s.end(), pictureHeight(digit), "~ *\\S.*");
    add(s, {"  ", atBorder});
    return s;
}

// Line 1 of a results file: the fixed part, then the date and time.
void expectOutputHeader(const std::string& line, const std::string& title, const std::string& input,
                        const std::vector<std::string>& screen)
{
    // The system text is the banner's system and CPU fields, trimmed and joined by a blank.
    std::string system, cpu;
    for (const std::string& s : screen) {
        auto field = [&](std::size_t width) {
            std::string f = s.substr(14, width);
            return f.substr(0, f.find_last_not_of(' ') + 1);
        };
        if (s.rfind(" @    System: ", 0) == 0) system = field(13);
        if (s.rfind(" @       CPU: ", 0) == 0) cpu = field(30);
    }
    const std::string fixed = "'" + title + "'\tinput file = " + input + "   kestrometry 5.1   " + system +
                              " " + cpu + "   Run on ";
    EXPECT_EQ(line.substr(0, fixed.size()), fixed);
    EXPECT_TRUE(std::regex_match(line.substr(std::min(fixed.size(), line.size())), std::regex(dateTime)))
        << line;
}

// The results file: the header line for `title` and `input`, the column titles, then `rows`.
void expectResults(const fs::path& file, const std::string& title, const std::string& input,
                   const std::vector<std::string>& screen, const std::vector<std::string>& rows)
{
    const std::vector<std::string> results = lines(readFile(file));
    ASSERT_EQ(results.size(), rows.size() + 2);
    expectOutputHeader(results[0], title, input, screen);
    EXPECT_EQ(results[1], columnTitles);
    EXPECT_EQ(std::vector<std::string>(results.begin() + 2, results.end()), rows);
}

TEST_F(Session, FileToFileWithAllDefaults)
{
    writeFile(work / "kestro_in.txt", "'Fault zone A'\n'dipa1' 'dipdir1' 'dipa2' 'dipdir2'\n"
                                      "16 'E' 50 'N'\n16 'W' 200 'A'\n90 'W' 0 'A'\n16 'E' 50 'E'\n");
    // Return for the banner, the six questions and the two panels.
    const std::vector<std::string> out = lines(runCleanly(std::string(8, '\n')).out);
    expectScreen(
        out, joined({fileInputStart(), formatMenu, choice(1), outputMenu, choice(1),
                     opening("fracture data output", "kestro_out.txt"), heading("WRITING OUTPUT HEADER"),
                     heading("READING INPUT DATA"),
                     warningPanel({" while reading data nb     3 ", " input  strike with dip to the LEFT ",
                                   " output strike with dip to the RIGHT ", " strike =     0.0",
                                   " ==> strike reset to :   180.0"}),
                     errorPanel({" while reading data nb     4 ", " 1st dip direction = E ",
                                 " 2nd dip direction = E ", " => Same directions modulo 180 deg ",
                                 " ===> NO CONVERSION "}),
                     closing(out, 4, 3, "kestro_in.txt", "kestro_out.txt")}));
    expectResults(work / "kestro_out.txt", "Fault zone A", "kestro_in.txt", out,
                  {result16E50N, "  16.0\t'W'\t 200.0\t'A'\t 200.0\t  17.0\t ",
                   "  90.0\t'W'\t   0.0\t'A'\t 180.0\t  90.0\tvertical plane",
                   "  16.0\t'E'\t  50.0\t'E'\t      \t      \terror: same dip direction [modulo 180], early "
                   "detection"});

    // The banner's start is the closing report's start.
    const std::regex banner(" @       Starting on (.{10}) at (.{8})       @");
    const std::regex report(" @ STARTED    ON (.{10}) AT (.{8}) {11}@");
    std::string started, reported;
    for (const std::string& line : out) {
        std::smatch m;
        if (std::regex_match(line, m, banner)) started = m[1].str() + m[2].str();
        if (std::regex_match(line, m, report)) reported = m[1].str() + m[2].str();
    }
    EXPECT_EQ(started, reported);
}

TEST_F(Session, KeyboardToScreen)
{
    const std::vector<std::string> out = lines(runCleanly("\n2\nField day\n\n2\n\n16 'E' 50 'N'\ny\n").out);
    Screen s = joined({setUp(), inputMenu, choice(2),
                       textQuestion("data title", "keyboard input", ljust("Field day", 40), false),
                       formatMenu, choice(1), outputMenu, choice(2), heading("READING INPUT DATA"),
                       endQuestion(false), mainHead()});
    for (const char* line :
         {"Alphanumerical format :", "case 2 dips :", " (1) 1st apparent dip  [0, 90]",
          " (2) 1st dip direction ('E','W','N','S')", " (3) 2nd apparent dip  [0, 90]",
          " (4) 2nd dip direction ('E','W','N','S')",
          "case 1 dip and 1 strike :", " (1) 1st apparent dip  [0, 90]",
          " (2) 1st dip direction ('E','W','N','S')", " (3) strike            [-360, +360]",
          " (4) strike indicator  ('A')", "-----------------------------------------",
          "Examples :", "  2 dips:              16 'E'  50 'N' ", "  1 dip and 1 strike:  16 'W' 200 'A' "})
        s.push_back(" " + std::string(line) + " ");
    add(s, {atBorder, dots, " Enter data : ", dots});
    add(s, joined({heading("RESULTS"), Screen{columnTitles, result16E50N}, endQuestion(true),
                   closing(out, 1, 1, "", "")}));
    expectScreen(out, s);
    EXPECT_FALSE(fs::exists(work / "kestro_out.txt"));
}

TEST_F(Session, HeaderFailureGoesStraightToTheClosingReport)
{
    for (const char* contents : {"", "'Title only'\n"}) {
        writeFile(work / "kestro_in.txt", contents);
        const Outcome r = run(std::string(4, '\n')); // banner, choice, file name, panel
        EXPECT_EQ(r.status, 0) << contents;
        const std::vector<std::string> out = lines(r.out);
        expectScreen(out, joined({fileInputStart(), errorPanel({" when trying to read header "}),
                                  closing(out, 0, 0, "kestro_in.txt", "")}));
        EXPECT_FALSE(fs::exists(work / "kestro_out.txt"));
    }
}

TEST_F(Session, InputEndingAtTheBannerIsTheRuntimesFatalError)
{
    const Outcome r = run("");
    EXPECT_EQ(r.status, 255);
    const std::vector<std::string> err = lines(r.err);
    ASSERT_FALSE(err.empty());
    for (const std::string& line : err)
        EXPECT_EQ(line.substr(0, 2), "? ") << line;
    EXPECT_NE(r.err.find("? Attempt to read past end of file\n"), std::string::npos) << r.err;
    expectScreen(lines(r.out), start());
}

TEST_F(Session, InputEndingTwiceInTheDialoguesEndsWithStatus1)
{
    // The end counts once as Return (input choice 1); the file name question meets it again.
    const Outcome r = run("\n");
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(lines(r.err).size(), 1u) << r.err;
    EXPECT_EQ(r.err.back(), '\n');
    EXPECT_NE(r.out.find(" New value =             1\n"), std::string::npos);
    EXPECT_FALSE(fs::exists(work / "kestro_out.txt"));
}

TEST_F(Session, InputEndingAtTheOutputNameThenAtTheEndQuestionEndsNormally)
{
    // The output file name takes the default at the end of input; at "End input and exit" the
    // ended input ends the run as the answer Yes would, with the closing report.
    const Outcome r = runCleanly("\n2\nField day\n\n1\n");
    EXPECT_NE(r.out.find(" output file kestro_out.txt closed"), std::string::npos);
    expectResults(work / "kestro_out.txt", "Field day", "keyboard", lines(r.out), {});
}

TEST_F(Session, InputEndingAtTheEndQuestionOrTheRecordEndsNormally)
{
    struct Case
    {
        const char* what;
        std::string answers;
        int read, converted;
        std::vector<std::string> results; // of kestro_out.txt behind its header; none for the screen
    };
    const std::string toScreen = "\n2\nField day\n\n2\n";
    const std::string toFile = "\n2\nField day\n\n1\n\n";
    const Case cases[]{
        {"at the end question", toScreen + "\n16 'E' 50 'N'\n", 1, 1, {}},
        {"at the record", toScreen + "\n", 0, 0, {}},
        {"inside the record", toScreen + "\n16 'E'\n", 0, 0, {}},
        {"to a file", toFile + "\n16 'E' 50 'N'\nn\n30 'E' 60 'S'\n", 2, 2, {result16E50N, result30E60S}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        const Outcome r = runCleanly(c.answers);
        const std::string counts = " Read      " + rjust(std::to_string(c.read), 5) + " DATA\n Converted " +
                                   rjust(std::to_string(c.converted), 5) + " DATA\n";
        EXPECT_NE(r.out.find(counts), std::string::npos);
        EXPECT_EQ(lines(r.out).back(), atBorder);
        if (c.results.empty()) {
            EXPECT_FALSE(fs::exists(work / "kestro_out.txt"));
            continue;
        }
        EXPECT_NE(r.out.find(" output file kestro_out.txt closed\n"), std::string::npos);
        EXPECT_EQ(r.out.find(" input  file"), std::string::npos);
        expectResults(work / "kestro_out.txt", "Field day", "keyboard", lines(r.out), c.results);
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
        std::string crlf;
        for (char c : lf)
            crlf += c == '\n' ? std::string("\r\n") : std::string(1, c);

        std::vector<std::string> results[2];
        std::string counts[2];
        for (int i = 0; i < 2; ++i) {
            writeFile(work / "kestro_in.txt", i == 0 ? lf : crlf);
            const Outcome r = run(fileAnswers(sample == std::string("kestro_in.txt") ? 1 : 2));
            EXPECT_EQ(r.status, 0) << sample;
            results[i] = lines(readFile(work / "kestro_out.txt"));
            counts[i] = r.out.substr(std::min(r.out.find(" Read     "), r.out.size()), 44);
        }
        ASSERT_GE(results[0].size(), 3u) << sample;
        ASSERT_EQ(results[1].size(), results[0].size()) << sample;
        const std::size_t fixed = results[0][0].find("   Run on ");
        EXPECT_EQ(results[1][0].substr(0, fixed), results[0][0].substr(0, fixed)) << sample;
        for (std::size_t i = 1; i < results[0].size(); ++i)
            EXPECT_EQ(results[1][i], results[0][i]) << sample;
        EXPECT_FALSE(counts[0].empty());
        EXPECT_EQ(counts[1], counts[0]) << sample;
    }
}

TEST_F(Session, BrokenInputFilesKeepTheResultsBeforeTheFailure)
{
    const std::string header = "'Broken'\n'dipa1' 'dipdir1' 'dipa2' 'dipdir2'\n16 'E' 50 'N'\n30 'E' 60 'S'";
    const std::vector<std::string> before{result16E50N, result30E60S};
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
        EXPECT_NE(r.out.find(" Read     "), std::string::npos);
        EXPECT_NE(r.out.find(" output file kestro_out.txt closed\n"), std::string::npos);
        EXPECT_NE(r.out.find(c.panel), std::string::npos);
        EXPECT_EQ(lines(r.out).back(), atBorder);
        const std::vector<std::string> results = lines(readFile(work / "kestro_out.txt"));
        ASSERT_GE(results.size(), 4u);
        EXPECT_EQ(std::vector<std::string>(results.begin() + 2, results.begin() + 4), before);
        if (c.results) {
            EXPECT_EQ(results.size(), c.results); // nothing lost behind the failure
        }
    }
}

} // namespace
