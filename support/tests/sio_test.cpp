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
};

TEST_F(StandardUnits, QuietSetUpFillsTheRecordAndLeavesThePanelOpen)
{
    initsio2(5);
    EXPECT_EQ(screen(), screenOf("initsio2 head"));
    const Iocom& u = iocom;
    EXPECT_EQ(std::make_tuple(u.SIN, u.SOUT, u.EIN, u.EOUT, u.CMDUNIT, u.CMDINDEX),
              std::make_tuple(5, 6, 5, 6, 7, 8));
    EXPECT_EQ(std::make_tuple(u.LPLOT, u.LCMD, u.LPAUSE, u.LWITO[0], u.LWITO[1], u.LWITO[2]),
              std::make_tuple(false, false, true, true, true, false));
}

TEST_F(StandardUnits, SetUpWithZeroAddsTheFullReport)
{
    initsio2(0);
    EXPECT_EQ(screen(), screenOf("initsio2 report"));
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
    screen();
    std::vector<std::string> report = screenOf("initsio2 report");
    std::vector<std::string> onUnit(report.begin() + 7, report.begin() + 15);
    onUnit.insert(onUnit.end(), {" command file open status    :  T|", " command file input unit     = 12|",
                                 " command file input index    =  3|", " plot    file open status    :  F|",
                                 " pause after warning or error:  F|"});
    EXPECT_EQ(markedLines(console.errors), onUnit);
    EXPECT_EQ(markedLines(console.output),
              (std::vector<std::string>{report[4], report[5], report[6], report.back()}));
}

} // namespace
} // namespace kestro
