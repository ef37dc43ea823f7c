// support/tests/banner_test.cpp: the banner and the closing report, line for line.
#include "support/banner.h"

#include "support/art.h"
#include "support/runinfo.h"
#include "support_console.h"

namespace kestro {
namespace {

class Banner : public SupportConsole
{
protected:
    void SetUp() override
    {
        SupportConsole::SetUp();
        runinfo3com = Runinfo3com{};
        runinfo3com.ROUTLEVEL = 1;
        runinfo3com.ROUTNAME[0] = "kestrometry";
        runinfo3com.ROUTVERS[0] = "5.1";
        runinfo3com.ROUTDATE[0] = "2025-04-11";
        runinfo3com.DATE0 = "2025-04-11";
        runinfo3com.TIME0 = "09:05:07";
        runinfo3com.USERTEXT = "geologist";
        runinfo3com.HOSTTEXT = "fieldstation.vorlane.example";
        runinfo3com.OSNAME = "Linux_6.1.0-1";
        runinfo3com.CPUNAME = "Core i7-8700B CPU @ 3.20GHz";
        runinfo3com.CPU0 = 1.0f;
        runinfo3com.CLOCK0 = 0;
    }

    static std::vector<std::string> drawn(void (*picture)())
    {
        console.screen.clear();
        picture();
        return screen();
    }
};

// Lines 9 to 13 of the banner with code 0, from the run information; app/tests/session_test.cpp
// checks the fixed lines around them.
const std::string starting = " @       Starting on 2025-04-11 at 09:05:07       @|";
const std::string user = " @      User: geologist                           @|";
const std::string host = " @      Host: fieldstation.vorlane.example        @|";
const std::string system = " @    System: Linux_6.1.0-1                       @|";
const std::string cpu = " @       CPU: Core i7-8700B CPU @ 3.20GHz         @|";

TEST_F(Banner, BannerShowsUserAndHostOnlyForCodesZeroAndOne)
{
    struct Case
    {
        std::int32_t runcode;
        std::string_view host;
        std::vector<std::string> facts;
    };
    const std::string fullHost = " @      Host: abcdefghijklmnopqrstuvwxyz012345678 @|"; // 35 characters
    const Case cases[]{
        {0, "fieldstation.vorlane.example", {starting, user, host, system, cpu}},
        {1, "abcdefghijklmnopqrstuvwxyz012345678", {starting, user, fullHost, system, cpu}},
        {2, "fieldstation.vorlane.example", {starting, system, cpu}},
        {3, "fieldstation.vorlane.example", {starting, system, cpu}},
    };
    for (const Case& c : cases) {
        console.screen.clear();
        runinfo3com.RUNCODE = c.runcode;
        runinfo3com.HOSTTEXT = c.host;
        type({"", "next answer"});
        progheadzr2();
        const std::vector<std::string> shown = screen();
        ASSERT_EQ(shown.size(), 25 + c.facts.size()) << "code " << c.runcode;
        EXPECT_EQ(std::vector<std::string>(shown.begin() + 8, shown.begin() + 8 + c.facts.size()), c.facts)
            << "code " << c.runcode;
        EXPECT_EQ(shown[shown.size() - 7], " @             https://kestrometry.org            @|");
        EXPECT_EQ(console.input, "next answer\n") << "the pause reads one line";
        console.input.clear();
    }
    runinfo3com.ROUTVERS[0] = " 1.5"; // stands left in its four columns
    console.screen.clear();
    type({""});
    progheadzr2();
    EXPECT_EQ(screen().at(3), " @               Version: 1.5                     @|");
}

// The end of a run at `time`, with the system clock at `count` of `rate` per second.
RunEnd endAt(std::string_view time, std::int32_t count = 1, std::int32_t rate = 1000000, float cpu = 0)
{
    RunEnd end;
    end.date = "2025-04-11";
    end.time = time;
    end.count = count;
    end.rate = rate;
    end.countMax = 2147483647;
    end.cpu = cpu;
    return end;
}

TEST_F(Banner, ClosingReportAndItsElapsedTimeAroundTheClock)
{
    writeClosingReport(endAt("09:47:13", 2500000, 1000000, 1.25f));
    EXPECT_EQ(screen(), screenOf("closing report, seconds ending in 3"));
    const struct
    {
        std::int32_t clock0, count, rate;
        std::string lines; // from the fifth line on
    } cases[]{
        {0, 0, 1000000, // count equal to the start: one full round
         " @ ELAPSED TIME =    35.791 minutes               @|\n @         modulo    35.791 minutes          "
         "     @|"},
        {1000000, 500000, 1000000, // count below the start: gone round
         " @ ELAPSED TIME =    35.783 minutes               @|\n @         modulo    35.791 minutes          "
         "     @|"},
        {0, 123, 0, " @ Could not compute elapsed system clock time    @|"}, // no clock
    };
    for (const auto& c : cases) {
        console.screen.clear();
        runinfo3com.CLOCK0 = c.clock0;
        writeClosingReport(endAt("10:00:00", c.count, c.rate, 3.5f));
        std::string shown;
        for (const std::string& line : screen())
            shown += line + "\n";
        const std::string expected = c.lines + "\n @ CPU TIME     =     2.500 seconds               @|\n";
        EXPECT_EQ(shown.substr(4 * 53, expected.size()), expected); // 4 lines of 51 columns before
    }
}

TEST_F(Banner, TimeUnitsAreChosenBySize)
{
    struct Case
    {
        float seconds;
        std::string_view line;
    };
    const Case cases[]{
        {120.0f, " @ CPU TIME     =   120.000 seconds               @|"},
        {121.0f, " @ CPU TIME     =     2.017 minutes               @|"},
        {7200.0f, " @ CPU TIME     =   120.000 minutes               @|"},
        {7201.0f, " @ CPU TIME     =     2.000 hours                 @|"},
        {1.0e9f, " @ CPU TIME     = ********* hours                 @|"}, // too wide for f9.3
    };
    for (const Case& c : cases) {
        console.screen.clear();
        writeTimeLine("CPU TIME     =", c.seconds);
        EXPECT_EQ(screen(), std::vector<std::string>{std::string(c.line)}) << c.seconds;
    }
}

TEST_F(Banner, PictureFollowsTheUnitsDigitOfTheEndSeconds)
{
    struct Case
    {
        char digit;
        void (*picture)();
    };
    const Case cases[]{
        {'0', happyface},    {'1', sator},        {'2', carmag33}, {'3', endfun1}, {'4', tetrakis},
        {'5', tetratemple1}, {'6', tetratemple2}, {'7', graben},   {'8', horst},   {'9', tetrakis},
    };
    for (const Case& c : cases) {
        const std::vector<std::string> picture = drawn(c.picture);
        console.screen.clear();
        writeClosingReport(endAt(std::string("12:34:5") + c.digit));
        const std::vector<std::string> shown = screen();
        ASSERT_EQ(shown.size(), 8 + picture.size() + 1) << c.digit;
        EXPECT_EQ(std::vector<std::string>(shown.begin() + 8, shown.end() - 1), picture) << c.digit;
    }
}

} // namespace
} // namespace kestro
