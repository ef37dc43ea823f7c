// support/tests/runinfo_test.cpp: the run information code, the two run strings and the start of
// the run information.
#include "support/runinfo.h"

#include "support_console.h"

#include <regex>
#include <tuple>

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

TEST_F(RunInfo, SwpinfoWithoutDialogue)
{
    // code, inter, RUNCODE before; code and RUNCODE after; the screen of data/screens.txt, or none
    const std::tuple<std::int32_t, std::int32_t, std::int32_t, std::int32_t, std::int32_t, const char*>
        cases[]{
            {2, 1, 0, 2, 2, nullptr},
            {7, 1, 2, 0, 0, "swpinfo code 7"},
            {-1, 1, 2, 0, 0, "swpinfo code -1"},
            {9, 3, 1, 1, 1, nullptr},
            {3, 5, 2, 0, 0, "swpinfo announcement"},
            {2, 9, 1, 2, 1, "swpinfo inter 9"},
        };
    for (const auto& [codeBefore, inter, runcodeBefore, codeAfter, runcodeAfter, shown] : cases) {
        SCOPED_TRACE(testing::Message() << codeBefore << " " << inter);
        console.screen.clear();
        runinfo3com.RUNCODE = runcodeBefore;
        std::int32_t code = codeBefore;
        swpinfo(code, inter);
        EXPECT_EQ(std::make_pair(code, runinfo3com.RUNCODE), std::make_pair(codeAfter, runcodeAfter));
        EXPECT_EQ(screen(), shown ? screenOf(shown) : std::vector<std::string>{});
    }
}

TEST_F(RunInfo, SwpinfoDialogueStartsFromTheCodeOfItsInter)
{
    // code, inter, RUNCODE before, the answer; the value that the dialogue shows and offers; the result
    const std::tuple<std::int32_t, std::int32_t, std::int32_t, std::string_view, std::int32_t, std::int32_t>
        cases[]{{2, 0, 0, "3", 2, 3}, {9, 2, 1, "", 1, 1}, {2, 4, 3, "", 0, 0}};
    for (const auto& [codeBefore, inter, runcodeBefore, answer, offered, after] : cases) {
        SCOPED_TRACE(inter);
        console.screen.clear();
        type({answer});
        runinfo3com.RUNCODE = runcodeBefore;
        std::int32_t code = codeBefore;
        swpinfo(code, inter);
        std::vector<std::string> table = screenOf("swpinfo table, current 2");
        table[6] = " run info code current value =     " + std::to_string(offered) + "|";
        expectScreenBegins(table); // the question of inintegvindef follows
        EXPECT_EQ(std::make_pair(code, runinfo3com.RUNCODE), std::make_pair(after, after));
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
    // ROUTLEVEL, RUNCODE, CMDNUM, the widths of the fields, the two strings, a panel or none
    const std::tuple<std::int32_t, std::int32_t, std::int32_t, std::size_t, std::size_t, std::string,
                     std::string, const char*>
        cases[]{
            {1, 3, 0, 50, 60, system, "kestrometry 5.1", nullptr},
            {1, 2, 42, 50, 60, system, "kestrometry 5.1 Command = 42", nullptr},
            {2, 3, 0, 50, 60, system, "kestrometry 5.1 -> opef2 5.3", nullptr},
            {3, 0, 1, 50, 60, system, "kestrometry 5.1 -> opef2 5.3 -> inchardef 1.5 Command = 1", nullptr},
            {4, 3, 0, 50, 55, system, "kestrometry 5.1 -> opef2 5.3 -> inchardef 1.5 -> x",
             "getruninfo0 level 4"},
            {1, 3, 0, 10, 55, "Linux_6.1.", "kestrometry 5.1", "getruninfo0 short system field"},
            // The command would follow, but the string is cut before.
            {2, 0, 0, 50, 20, system, "kestrometry 5.1 -> o", "getruninfo0 short program field"},
            {0, 3, 0, 50, 55, system, "*** ERROR in program info: routine level < 1 ***",
             "getruninfo0 level 0"},
        };
    for (const auto& [level, runcode, command, sysWidth, progWidth, sysinfo, proginfo, panel] : cases) {
        SCOPED_TRACE(proginfo);
        console.screen.clear();
        runinfo3com.ROUTLEVEL = level;
        runinfo3com.RUNCODE = runcode;
        runinfo3com.CMDNUM = command;
        std::string sys(sysWidth, ' '), prog(progWidth, ' ');
        getruninfo0(TextRef(sys.data(), sysWidth), TextRef(prog.data(), progWidth));
        EXPECT_EQ(sys + prog, padded(sysinfo, sysWidth) + padded(proginfo, progWidth));
        EXPECT_EQ(screen(), panel ? screenOf(panel) : std::vector<std::string>{});
    }
}

// smaininfo2 runs the host fact commands, whose temporary files live in the current folder.
TEST_F(RunInfo, Smaininfo2FillsTheRecordAndAnnouncesCodeZero)
{
    ScratchFolder scratch;
    scratch.enter("kestro_runinfo");
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
    scratch.leave();
}

} // namespace
} // namespace kestro
