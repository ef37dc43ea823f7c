// support/tests/runinfo_test.cpp: the run information code, the two run strings and the start of
// the run information.
#include "support/runinfo.h"

#include "support_console.h"

#include <regex>

namespace kestro {
namespace {

using RunInfo = RunInfoConsole;

// data/runinfo.txt: the code that swpinfo leaves, and its panels.
TEST_F(RunInfo, SwpinfoWithoutDialogue)
{
    for (const Case& c : casesOf("runinfo.txt", "swpinfo")) {
        SCOPED_TRACE(testing::Message() << c.fields[1] << " " << c.fields[2]);
        console.screen.clear();
        runinfo3com.RUNCODE = c.number(3);
        std::int32_t code = c.number(1);
        swpinfo(code, c.number(2));
        EXPECT_EQ(std::make_pair(code, runinfo3com.RUNCODE), std::make_pair(c.number(4), c.number(5)));
        EXPECT_EQ(screen(), screenOf(c.fields[6]));
    }
}

// data/runinfo.txt: the dialogue shows and offers the code of its inter, then takes the answer.
TEST_F(RunInfo, SwpinfoDialogueStartsFromTheCodeOfItsInter)
{
    for (const Case& c : casesOf("runinfo.txt", "dialogue")) {
        SCOPED_TRACE(c.fields[2]);
        console.screen.clear();
        type({c.fields[4]});
        runinfo3com.RUNCODE = c.number(3);
        std::int32_t code = c.number(1);
        swpinfo(code, c.number(2));
        std::vector<std::string> table = screenOf("swpinfo table, current 2");
        table[6] = " run info code current value =     " + c.fields[5] + "|";
        EXPECT_EQ(linesFrom(screen(), 0, table), table); // the question of inintegvindef follows
        EXPECT_EQ(std::make_pair(code, runinfo3com.RUNCODE), std::make_pair(c.number(6), c.number(6)));
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
    EXPECT_EQ(linesFrom(screen(), 0, expected), expected);
    EXPECT_EQ(runinfo3com.RUNCODE, 0);
}

// data/runinfo.txt: the system and program strings by level and code, cut to their fields.
TEST_F(RunInfo, RunStringsByLevelAndCode)
{
    for (const Case& c : casesOf("runinfo.txt", "strings")) {
        SCOPED_TRACE(c.fields[7]);
        console.screen.clear();
        runinfo3com.ROUTLEVEL = c.number(1);
        runinfo3com.RUNCODE = c.number(2);
        runinfo3com.CMDNUM = c.number(3);
        std::string sys(c.number(4), ' '), prog(c.number(5), ' ');
        getruninfo0(TextRef(sys.data(), sys.size()), TextRef(prog.data(), prog.size()));
        EXPECT_EQ(sys + prog, padded(c.fields[6], sys.size()) + padded(c.fields[7], prog.size()));
        EXPECT_EQ(screen(), screenOf(c.fields[8]));
    }
}

TEST_F(RunInfo, Smaininfo2FillsTheRecordAndAnnouncesCodeZero)
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

    const std::vector<std::string> announcement = screenOf("swpinfo announcement");
    EXPECT_EQ(linesFrom(screen(), 0, announcement), announcement);
}

} // namespace
} // namespace kestro
