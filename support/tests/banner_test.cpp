// support/tests/banner_test.cpp: the banner and the closing report, line for line.
#include "support/banner.h"

#include "support/art.h"
#include "support/runinfo.h"
#include "support_console.h"

#include <regex>

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

// The banner with code 0; lines 10 and 11 (indices 9 and 10) are user and host.
const std::vector<std::string> bannerLines{
    " @@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@|",
    " @                                                @|",
    " @          MAIN PROGRAM: kestrometry             @|",
    " @               Version: 5.1                     @|",
    " @                  Date: 2025-04-11              @|",
    " @                                                @|",
    " @------------------------------------------------@|",
    " @                                                @|",
    " @       Starting on 2025-04-11 at 09:05:07       @|",
    " @      User: geologist                           @|",
    " @      Host: fieldstation.vorlane.example        @|",
    " @    System: Linux_6.1.0-1                       @|",
    " @       CPU: Core i7-8700B CPU @ 3.20GHz         @|",
    " @                                                @|",
    " @------------------------------------------------@|",
    " @                                                @|",
    " @                   Written by:                  @|",
    " @                Anselm VORTIGERN                @|",
    " @                                                @|",
    " @                   Hosted by:                   @|",
    " @             Vorlane Earth Institute            @|",
    " @        Vorlane University - Lithos Unit        @|",
    " @               Vorlane, Ruritania               @|",
    " @             https://kestrometry.org            @|",
    " @                                                @|",
    " @      Report of any problem is appreciated      @|",
    " @                                                @|",
    " @------------------------------------------------@|",
    " @             HIT RETURN TO CONTINUE             @|",
    " @@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@|",
};

TEST_F(Banner, BannerShowsUserAndHostOnlyForCodesZeroAndOne)
{
    std::vector<std::string> withoutUser = bannerLines;
    withoutUser.erase(withoutUser.begin() + 9, withoutUser.begin() + 11);
    std::vector<std::string> fullHost = bannerLines;
    fullHost[10] = " @      Host: abcdefghijklmnopqrstuvwxyz012345678 @|";

    struct Case
    {
        std::int32_t runcode;
        std::string_view host;
        const std::vector<std::string>& expected;
    };
    const Case cases[]{
        {0, "fieldstation.vorlane.example", bannerLines},
        {1, "abcdefghijklmnopqrstuvwxyz012345678", fullHost},  // 35 characters fill the field
        {2, "fieldstation.vorlane.example", withoutUser},
        {3, "fieldstation.vorlane.example", withoutUser},
    };
    for (const Case& c : cases) {
        console.screen.clear();
        runinfo3com.RUNCODE = c.runcode;
        runinfo3com.HOSTTEXT = c.host;
        type({"", "next answer"});
        progheadzr2();
        EXPECT_EQ(screen(), c.expected) << "code " << c.runcode;
        EXPECT_EQ(console.input, "next answer\n") << "the pause reads one line";
        console.input.clear();
    }
}

TEST_F(Banner, VersionStandsLeftInItsFourColumns)
{
    runinfo3com.ROUTVERS[0] = " 1.5";
    type({""});
    progheadzr2();
    EXPECT_EQ(screen().at(3), " @               Version: 1.5                     @|");
}

TEST_F(Banner, ClosingReport)
{
    RunEnd end;
    end.date = "2025-04-11";
    end.time = "09:47:13";
    end.count = 2500000;
    end.rate = 1000000;
    end.countMax = 2147483647;
    end.cpu = 1.25f;

    std::vector<std::string> expected{
        " @@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@|",
        " @ MAIN PROGRAM kestrometry          Version: 5.1 @|",
        " @ STARTED    ON 2025-04-11 AT 09:05:07           @|",
        " @ TERMINATED ON 2025-04-11 AT 09:47:13           @|",
        " @ ELAPSED TIME =     2.500 seconds               @|",
        " @         modulo    35.791 minutes               @|",
        " @ CPU TIME     =     0.250 seconds               @|",
        " @------------------------------------------------@|",
    };
    add(expected, drawn(endfun1));  // the seconds end in 3
    expected.push_back(" @@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@|");
    console.screen.clear();
    writeClosingReport(end);
    EXPECT_EQ(screen(), expected);
}

TEST_F(Banner, ElapsedTimeAroundTheClockAndWithoutAClock)
{
    struct Case
    {
        const char* what;
        std::int32_t clock0, count, rate;
        std::vector<std::string> timeLines;
    };
    const Case cases[]{
        {"count equal to the start: one full round",
         0,
         0,
         1000000,
         {" @ ELAPSED TIME =    35.791 minutes               @|",
          " @         modulo    35.791 minutes               @|"}},
        {"count below the start: gone round",
         1000000,
         500000,
         1000000,
         {" @ ELAPSED TIME =    35.783 minutes               @|",
          " @         modulo    35.791 minutes               @|"}},
        {"no clock", 0, 123, 0, {" @ Could not compute elapsed system clock time    @|"}},
    };
    for (const Case& c : cases) {
        console.screen.clear();
        runinfo3com.CLOCK0 = c.clock0;
        RunEnd end;
        end.date = "2025-04-11";
        end.time = "10:00:00";
        end.count = c.count;
        end.rate = c.rate;
        end.countMax = 2147483647;
        end.cpu = 3.5f;
        writeClosingReport(end);

        std::vector<std::string> expected = c.timeLines;
        expected.push_back(" @ CPU TIME     =     2.500 seconds               @|");
        const std::vector<std::string> shown = screen();
        ASSERT_GE(shown.size(), 4 + expected.size()) << c.what;
        EXPECT_EQ(std::vector<std::string>(shown.begin() + 4, shown.begin() + 4 + expected.size()), expected)
            << c.what;
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
        {0.25f, " @ CPU TIME     =     0.250 seconds               @|"},
        {120.0f, " @ CPU TIME     =   120.000 seconds               @|"},
        {121.0f, " @ CPU TIME     =     2.017 minutes               @|"},
        {7200.0f, " @ CPU TIME     =   120.000 minutes               @|"},
        {7201.0f, " @ CPU TIME     =     2.000 hours                 @|"},
        {360000.0f, " @ CPU TIME     =   100.000 hours                 @|"},
        {5.0e7f, " @ CPU TIME     = 13888.889 hours                 @|"},
        {1.0e9f, " @ CPU TIME     = ********* hours                 @|"},  // too wide for f9.3
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
        {'0', happyface},    {'1', sator},  {'2', carmag33}, {'3', endfun1}, {'4', tetrakis},
        {'5', tetratemple1}, {'6', tetratemple2}, {'7', graben}, {'8', horst},  {'9', tetrakis},
    };
    for (const Case& c : cases) {
        const std::vector<std::string> picture = drawn(c.picture);
        console.screen.clear();
        RunEnd end;
        end.date = "2025-04-11";
        end.time = std::string("12:34:5") + c.digit;
        end.count = 1;
        end.rate = 1000000;
        end.countMax = 2147483647;
        writeClosingReport(end);
        const std::vector<std::string> shown = screen();
        ASSERT_EQ(shown.size(), 8 + picture.size() + 1) << c.digit;
        EXPECT_EQ(std::vector<std::string>(shown.begin() + 8, shown.end() - 1), picture) << c.digit;
    }
}

TEST_F(Banner, ProgtailMeasuresTheEndOfTheRun)
{
    progtail2();
    const std::vector<std::string> shown = screen();
    ASSERT_GE(shown.size(), 8u);
    EXPECT_EQ(shown[2], " @ STARTED    ON 2025-04-11 AT 09:05:07           @|");
    EXPECT_TRUE(std::regex_match(
        shown[3], std::regex(R"( @ TERMINATED ON \d{4}-\d{2}-\d{2} AT \d{2}:\d{2}:\d{2}           @\|)")))
        << shown[3];
    EXPECT_TRUE(std::regex_match(
        shown[4], std::regex(R"( @ ELAPSED TIME = [ \d]{4}\d\.\d{3} (seconds|minutes) {15}@\|)")))
        << shown[4];
    EXPECT_EQ(shown[5], " @         modulo    35.791 minutes               @|");
}

}  // namespace
}  // namespace kestro
