// support/tests/runinfo_test.cpp: the run information code, the two run strings and the start of
// the run information.
#include "support/runinfo.h"

#include "support_console.h"

#include <regex>

namespace kestro {
namespace {

class RunInfo : public SupportConsole
{
protected:
    void SetUp() override
    {
        SupportConsole::SetUp();
        iocom.LPAUSE = false;
        runinfo3com = Runinfo3com{};
        runinfo3com.ROUTLEVEL = 1;
        runinfo3com.ROUTNAME[0] = "kestrometry";
        runinfo3com.ROUTVERS[0] = "5.1";
        runinfo3com.ROUTDATE[0] = "2025-04-11";
        runinfo3com.ROUTNAME[1] = "opef2";
        runinfo3com.ROUTVERS[1] = "5.3 ";
        runinfo3com.ROUTNAME[2] = "inchardef  ";
        runinfo3com.ROUTVERS[2] = " 1.5";
        runinfo3com.OSNAME = "Linux_6.1.0-1";
        runinfo3com.CPUNAME = "AMD EPYC 7B13";
        runinfo3com.RUNCODE = 3;
    }

    // The screen so far begins with `expected`; the question of a dialogue may follow.
    static void expectScreenBegins(const std::vector<std::string>& expected)
    {
        std::vector<std::string> shown = screen();
        ASSERT_GE(shown.size(), expected.size());
        shown.resize(expected.size());
        EXPECT_EQ(shown, expected);
    }
};

struct RunStrings
{
    std::string sysinfo, proginfo;
};

// getruninfo0 into blank fields of these widths.
RunStrings runStrings(std::size_t sysWidth, std::size_t progWidth)
{
    RunStrings run{std::string(sysWidth, ' '), std::string(progWidth, ' ')};
    getruninfo0(TextRef(run.sysinfo.data(), sysWidth), TextRef(run.proginfo.data(), progWidth));
    return run;
}

TEST_F(RunInfo, SwpinfoWithoutDialogue)
{
    struct Case
    {
        const char* what;
        std::int32_t code, inter, runcodeBefore;
        std::int32_t codeAfter, runcodeAfter;
        const char* screen; // a section of the screens, or none
    };
    const Case cases[]{
        {"code in range", 2, 1, 0, 2, 2, nullptr},
        {"code above range", 7, 1, 2, 0, 0, "swpinfo code 7"},
        {"code below range", -1, 1, 2, 0, 0, "swpinfo code -1"},
        {"stored code returned", 9, 3, 1, 1, 1, nullptr},
        {"announcement", 3, 5, 2, 0, 0, "swpinfo announcement"},
        {"unknown inter", 2, 9, 1, 2, 1, "swpinfo inter 9"},
    };
    for (const Case& c : cases) {
        console.screen.clear();
        runinfo3com.RUNCODE = c.runcodeBefore;
        std::int32_t code = c.code;
        swpinfo(code, c.inter);
        EXPECT_EQ(code, c.codeAfter) << c.what;
        EXPECT_EQ(runinfo3com.RUNCODE, c.runcodeAfter) << c.what;
        EXPECT_EQ(screen(), c.screen ? screenOf(c.screen) : std::vector<std::string>{}) << c.what;
    }
}

TEST_F(RunInfo, SwpinfoDialogueStartsFromTheCodeOfItsInter)
{
    struct Case
    {
        const char* what;
        std::int32_t code, inter, runcodeBefore;
        std::string_view answer;
        std::string_view currentLine; // the value that the dialogue shows and offers
        std::int32_t runcodeAfter;
    };
    const Case cases[]{
        {"checked code, typed answer", 2, 0, 0, "3", " run info code current value =     2|", 3},
        {"stored code as default", 9, 2, 1, "", " run info code current value =     1|", 1},
        {"zero as default", 2, 4, 3, "", " run info code current value =     0|", 0},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        console.screen.clear();
        type({c.answer});
        runinfo3com.RUNCODE = c.runcodeBefore;
        std::int32_t code = c.code;
        swpinfo(code, c.inter);

        std::vector<std::string> table = screenOf("swpinfo table, current 2");
        table[6] = c.currentLine;
        expectScreenBegins(table); // the question of inintegvindef follows
        EXPECT_EQ(code, c.runcodeAfter);
        EXPECT_EQ(runinfo3com.RUNCODE, c.runcodeAfter);
    }
}

TEST_F(RunInfo, SwpinfoResetsACodeOutOfRangeBeforeItsDialogue)
{
    type({""});
    std::int32_t code = 5;
    swpinfo(code, 0);
    std::vector<std::string> expected = screenOf("swpinfo code 7");
    expected[5] = "  run info code =     5|";
    const std::vector<std::string> table = screenOf("swpinfo table, current 2");
    expected.insert(expected.end(), table.begin(), table.begin() + 3);
    expectScreenBegins(expected);
    EXPECT_EQ(runinfo3com.RUNCODE, 0);
}

TEST_F(RunInfo, RunStringsByLevelAndCode)
{
    const std::string system = "Linux_6.1.0-1 AMD EPYC 7B13";
    const struct
    {
        std::int32_t level, runcode, command;
        std::size_t sysWidth, progWidth;
        std::string sysinfo, proginfo;
        const char* screen; // a warning or error panel; none
    } cases[]{
        {1, 3, 0, 50, 60, system, "kestrometry 5.1", nullptr},
        {1, 2, 42, 50, 60, system, "kestrometry 5.1 Command = 42", nullptr},
        {2, 3, 0, 50, 60, system, "kestrometry 5.1 -> opef2 5.3", nullptr},
        {3, 0, 1, 50, 60, system, "kestrometry 5.1 -> opef2 5.3 -> inchardef 1.5 Command = 1", nullptr},
        {4, 3, 0, 50, 55, system, "kestrometry 5.1 -> opef2 5.3 -> inchardef 1.5 -> x",
         "getruninfo0 level 4"},
        {1, 3, 0, 10, 55, "Linux_6.1.", "kestrometry 5.1", "getruninfo0 short system field"},
        // The command would follow, but the string is cut before.
        {2, 0, 0, 50, 20, system, "kestrometry 5.1 -> o", "getruninfo0 short program field"},
        {0, 3, 0, 50, 55, system, "*** ERROR in program info: routine level < 1 ***", "getruninfo0 level 0"},
    };
    for (const auto& c : cases) {
        console.screen.clear();
        runinfo3com.ROUTLEVEL = c.level;
        runinfo3com.RUNCODE = c.runcode;
        runinfo3com.CMDNUM = c.command;
        const RunStrings run = runStrings(c.sysWidth, c.progWidth);
        EXPECT_EQ(run.sysinfo, padded(c.sysinfo, c.sysWidth)) << c.proginfo;
        EXPECT_EQ(run.proginfo, padded(c.proginfo, c.progWidth)) << c.proginfo;
        EXPECT_EQ(screen(), c.screen ? screenOf(c.screen) : std::vector<std::string>{}) << c.proginfo;
    }
}

// smaininfo2 runs the host fact commands, whose temporary files live in the current folder.
class RunStart : public RunInfo
{
protected:
    void SetUp() override
    {
        RunInfo::SetUp();
        scratch.enter("kestro_runinfo");
    }
    void TearDown() override
    {
        scratch.leave();
        RunInfo::TearDown();
    }

    ScratchFolder scratch;
};

TEST_F(RunStart, Smaininfo2FillsTheRecordAndAnnouncesCodeZero)
{
    runinfo3com = Runinfo3com{};
    runinfo3com.RUNCODE = 3;
    runinfo3com.CMDNUM = 5;
    smaininfo2("kestrometry", "5.1", "2025-04-11");

    const Runinfo3com& info = runinfo3com;
    EXPECT_EQ(std::make_tuple(info.ROUTLEVEL, info.CMDNUM, info.RUNCODE), std::make_tuple(1, 0, 0));
    EXPECT_EQ(info.ROUTNAME[0].str() + info.ROUTVERS[0].str() + info.ROUTDATE[0].str(),
              padded("kestrometry", 20) + "5.1 2025-04-11");
    const std::string facts = info.DATE0.str() + " " + info.TIME0.str() + " " + info.OSNAME.str();
    EXPECT_TRUE(std::regex_match(facts, std::regex(R"(\d{4}-\d\d-\d\d \d\d:\d\d:\d\d Linux(_\S.*)?\s*)")))
        << facts;
    EXPECT_TRUE(info.CPUNAME != "" && info.USERTEXT != "" && info.HOSTTEXT != "");
    EXPECT_GE(info.CLOCK0, 0);

    expectScreenBegins(screenOf("swpinfo announcement"));
}

} // namespace
} // namespace kestro
