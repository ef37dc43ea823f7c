// support/tests/sio_test.cpp: initsio2 fills iocom and announces itself; writesio reports it.
#include "support/sio.h"

#include "support_console.h"

namespace kestro {
namespace {

class StandardUnits : public SupportConsole
{
protected:
    void SetUp() override
    {
        SupportConsole::SetUp();
        iocom = Iocom{};
        iocom.CMDUNIT = 7; // initsio2 leaves the command file fields alone
        iocom.CMDINDEX = 8;
    }

    static std::vector<std::string> initsioHead()
    {
        std::vector<std::string> lines =
            menuHeadLines("@ subroutine initsio2            ", " v4.1", "2024-10-25");
        lines.push_back(" INITIALIZING INPUT/OUTPUT|");
        return lines;
    }

    static std::vector<std::string> writesioHead()
    {
        return menuHeadLines("@ subroutine writesio            ", " v2.1", "2024-10-25");
    }

    // The report's lines up to the command file, for the units that initsio2 sets.
    static std::vector<std::string> reportStart()
    {
        return {
            " INPUT/OUTPUT SET UP:|",
            " standard  input unit        =  5|",
            " standard output unit        =  6|",
            " error     input unit        =  5|",
            " error    output unit        =  6|",
            " minimum output enabled      :  T|",
            " more    output enabled      :  T|",
            " maximum output enabled      :  F|",
        };
    }
};

TEST_F(StandardUnits, QuietSetUpFillsTheRecordAndLeavesThePanelOpen)
{
    initsio2(5);
    EXPECT_EQ(screen(), initsioHead());

    EXPECT_EQ(iocom.SIN, 5);
    EXPECT_EQ(iocom.SOUT, 6);
    EXPECT_EQ(iocom.EIN, 5);
    EXPECT_EQ(iocom.EOUT, 6);
    EXPECT_EQ(iocom.CMDUNIT, 7);
    EXPECT_EQ(iocom.CMDINDEX, 8);
    EXPECT_FALSE(iocom.LPLOT);
    EXPECT_FALSE(iocom.LCMD);
    EXPECT_TRUE(iocom.LPAUSE);
    EXPECT_TRUE(iocom.LWITO[0]);
    EXPECT_TRUE(iocom.LWITO[1]);
    EXPECT_FALSE(iocom.LWITO[2]);
}

TEST_F(StandardUnits, SetUpWithZeroAddsTheFullReport)
{
    initsio2(0);
    std::vector<std::string> expected = initsioHead();
    add(expected, writesioHead());
    add(expected, reportStart());
    add(expected, {" command file open status    :  F|", " plot    file open status    :  F|",
                   " pause after warning or error:  T|", menuTailLine()});
    EXPECT_EQ(screen(), expected);
}

TEST_F(StandardUnits, ReportShowsTheCommandFileOnlyWhenOpen)
{
    initsio2(5);
    iocom.LCMD = true;
    iocom.CMDUNIT = 12;
    iocom.CMDINDEX = 3;
    iocom.LPAUSE = false;
    console = ScriptedConsole{};

    // The lines go to the unit asked for; head and tail stay on SOUT.
    writesio(0);
    std::vector<std::string> onScreen = writesioHead();
    onScreen.push_back(menuTailLine());
    std::vector<std::string> onUnit = reportStart();
    add(onUnit, {" command file open status    :  T|", " command file input unit     = 12|",
                 " command file input index    =  3|", " plot    file open status    :  F|",
                 " pause after warning or error:  F|"});
    screen();
    EXPECT_EQ(markedLines(console.errors), onUnit);
    EXPECT_EQ(markedLines(console.output), onScreen);
}

} // namespace
} // namespace kestro
