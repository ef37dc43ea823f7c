// support/tests/banner_test.cpp: the banner and the closing report, line for line.
#include "support/banner.h"

#include "support/art.h"
#include "support/runinfo.h"
#include "support_console.h"

namespace kestro {
namespace {

using Banner = RunInfoConsole;

// data/banner.txt: the facts of the run in the banner by run code.
TEST_F(Banner, BannerShowsUserAndHostOnlyForCodesZeroAndOne)
{
    for (const Case& c : casesOf("banner.txt", "facts")) {
        SCOPED_TRACE(c.fields[1]);
        console = ScriptedConsole{};
        runinfo3com.RUNCODE = c.number(1);
        runinfo3com.HOSTTEXT = c.fields[2];
        runinfo3com.ROUTVERS[0] = c.fields[3];
        type({"", "next answer"});
        progheadzr2();
        const std::vector<std::string> shown = screen();
        ASSERT_EQ(shown.size(), 20 + c.lines.size());
        EXPECT_EQ(linesFrom(shown, 3, c.lines), c.lines);
        EXPECT_EQ(shown[shown.size() - 7], " @             https://kestrometry.org            @|");
        EXPECT_EQ(console.input, "next answer\n") << "the pause reads one line";
    }
}

// The end of a run at `time`, with the system clock at `count` of `rate` per second.
RunEnd endAt(std::string_view time, std::int32_t count = 1, std::int32_t rate = 1000000, float cpu = 0)
{
    return RunEnd{"2025-04-11", time, count, rate, 2147483647, cpu};
}

// data/banner.txt: the elapsed time around the clock, and without one.
TEST_F(Banner, ClosingReportAndItsElapsedTimeAroundTheClock)
{
    writeClosingReport(endAt("09:47:13", 2500000, 1000000, 1.25f));
    EXPECT_EQ(screen(), screenOf("closing report, seconds ending in 3"));
    for (const Case& c : casesOf("banner.txt", "elapsed")) {
        SCOPED_TRACE(c.fields[1] + " " + c.fields[2]);
        console.screen.clear();
        runinfo3com.CLOCK0 = c.number(1);
        writeClosingReport(endAt("10:00:00", c.number(2), c.number(3), 3.5f));
        EXPECT_EQ(linesFrom(screen(), 4, c.lines), c.lines);
    }
}

// data/banner.txt: seconds up to 120, then minutes up to 120, then hours.
TEST_F(Banner, TimeUnitsAreChosenBySize)
{
    for (const Case& c : casesOf("banner.txt", "time")) {
        console.screen.clear();
        writeTimeLine("CPU TIME     =", std::stof(c.fields[1]));
        EXPECT_EQ(screen(), c.lines) << c.fields[1];
    }
}

TEST_F(Banner, PictureFollowsTheUnitsDigitOfTheEndSeconds)
{
    const std::pair<char, void (*)()> cases[]{
        {'0', happyface},    {'1', sator},        {'2', carmag33}, {'3', endfun1}, {'4', tetrakis},
        {'5', tetratemple1}, {'6', tetratemple2}, {'7', graben},   {'8', horst},   {'9', tetrakis},
    };
    for (const auto& [digit, draw] : cases) {
        console.screen.clear();
        draw();
        const std::vector<std::string> picture = screen();
        console.screen.clear();
        writeClosingReport(endAt(std::string("12:34:5") + digit));
        const std::vector<std::string> shown = screen();
        ASSERT_EQ(shown.size(), 8 + picture.size() + 1) << digit;
        EXPECT_EQ(linesFrom(shown, 8, picture), picture) << digit;
    }
}

} // namespace
} // namespace kestro
