// app/kestrometry.cpp: the main program: dialogue, record loop and closing report.
#include "app/kestrometry.h"

#include "app/records.h"
#include "app/results.h"
#include "app/solver.h"
#include "support/banner.h"
#include "support/fileopen.h"
#include "support/math.h"
#include "support/panels.h"
#include "support/prompts.h"
#include "support/runinfo.h"
#include "support/sio.h"

namespace kestro::app {

namespace {

constexpr rt::Unit inputFileUnit = 25;
constexpr rt::Unit outputFileUnit = 26;
constexpr rt::Unit keyboard = 5;
constexpr rt::Unit screen = 6;
constexpr std::string_view rule = "-------------------------------------------";
constexpr std::string_view dots = "..........................................";

void say(std::string_view a, std::string_view b = {}, std::string_view c = {})
{
    if (!c.empty())
        rt::write(iocom.SOUT, "(3(1x,a))", a, b, c);
    else if (!b.empty())
        rt::write(iocom.SOUT, "(3(1x,a))", a, b);
    else
        rt::write(iocom.SOUT, "(3(1x,a))", a);
}

void banner(std::string_view title)
{
    say(rule);
    say(title);
    say(rule);
}

void menu(std::string_view title, std::string_view first, std::string_view second)
{
    mainmenuhead(programName, programVersion, programDate);
    say(title);
    say(first);
    say(second);
    menutail();
}

std::int32_t askChoice()
{
    std::int32_t choice = 1;
    std::int32_t status = 0;
    inintegvindef(choice, "your choice", choice, 1, 2, status);
    return choice;
}

} // namespace

void convertRecords(const RecordLoop& loop, std::int32_t& readCount, std::int32_t& convertedCount)
{
    Fracture fracture;
    bool endFlag = false;
    std::int32_t status = 0;
    for (;;) {
        if (loop.keyboard) {
            if (inputHasEnded()) return;
            inlogicdef(endFlag, "End input and exit", endFlag, status);
            if (endFlag) return;
            mainmenuhead(programName, programVersion, programDate);
            writeReminder(loop.form);
            menutail();
            say(dots);
            say("Enter data :");
        }
        const ReadOutcome read = readRecord(loop.input, loop.form, fracture);
        if (read == ReadOutcome::endOfInput) return;
        if (read == ReadOutcome::failure) {
            errorhead(programName, programVersion, programDate);
            rt::write(iocom.SOUT, "(1x,a,1x,i5,1x,a)", "when trying to read", readCount + 1, "th data");
            errortail00();
            return;
        }
        if (loop.keyboard) say(dots);
        ++readCount;
        fracture.comment = "";
        const Verdict checked = checkRecord(loop.form, fracture);
        const Verdict verdict = checked.accepted ? solve(loop.form, fracture) : checked;
        if (verdict.noticeCount != 0) writeNotices(verdict, readCount);
        if (verdict.accepted) ++convertedCount;
        writeResults(loop.output, loop.form, fracture, verdict.accepted, loop.bothInteractive);
    }
}

void kestrometry()
{
    initsio2(5);
    smaininfo2(programName, programVersion, programDate);
    progheadzr2();
    std::int32_t runCode = 3;
    swpinfo(runCode, 1);
    trigoset();

    std::int32_t inputChoice = 1;
    std::int32_t formatChoice = 1;
    std::int32_t outputChoice = 1;
    Text<50> inputName = "kestro_in.txt";
    Text<50> outputName = "kestro_out.txt";
    Text<40> title;
    rt::Unit inputUnit = keyboard;
    rt::Unit outputUnit = screen;
    std::int32_t readCount = 0;
    std::int32_t convertedCount = 0;
    bool outputOpened = false;
    std::int32_t status = 0;

    // Where the data come from.
    menu("INPUT IS FROM:", "File ...................................1",
         "Keyboard ...............................2");
    inputChoice = askChoice();
    bool headerRead = true;
    if (inputChoice == 1) {
        inputUnit = inputFileUnit;
        opef2(inputName.ref(), "fracture data input ", inputFileUnit, "old", 0);
        banner("READING INPUT HEADER");
        headerRead = readHeader(inputUnit, title) == ReadOutcome::record;
    } else {
        inputUnit = keyboard;
        inputName = "keyboard";
        inchardef(title.ref(), "data title", "keyboard input", status);
    }

    if (!headerRead) {
        errorhead(programName, programVersion, programDate);
        say("when trying to read header");
        errortail00();
    } else {
        menu("DATA FORMAT:", "Alphanumerical : 30  'E'  60  'S' ......1",
             "Numerical :      30   90  60  180 ......2");
        formatChoice = askChoice();
        const DataForm form = formatChoice == 1 ? DataForm::alphanumerical : DataForm::numerical;

        menu("OUTPUT IS TO:", "File ...................................1",
             "Screen .................................2");
        outputChoice = askChoice();
        if (outputChoice == 1) {
            outputUnit = outputFileUnit;
            opef2(outputName.ref(), "fracture data output ", outputFileUnit, "new", 0);
            outputOpened = true;
        } else {
            outputUnit = screen;
        }
        const bool bothInteractive = inputChoice == 2 && outputChoice == 2;
        if (!bothInteractive) {
            banner("WRITING OUTPUT HEADER");
            writeOutputHeader(outputUnit, title, inputName);
        }
        banner("READING INPUT DATA");

        RecordLoop loop{inputChoice == 2, form, inputUnit, outputUnit, bothInteractive};
        convertRecords(loop, readCount, convertedCount);
    }

    // Closing report.
    submenuhead(programName, programVersion, programDate);
    say(rule);
    rt::write(iocom.SOUT, "(1x,a,1x,i5,1x,a)", "Read     ", readCount, "DATA");
    rt::write(iocom.SOUT, "(1x,a,1x,i5,1x,a)", "Converted", convertedCount, "DATA");
    if (inputChoice == 1) {
        rt::close(inputUnit);
        say("input  file", significantPart(inputName.view()), "closed");
    }
    if (outputOpened) {
        rt::close(outputUnit);
        say("output file", significantPart(outputName.view()), "closed");
    }
    say(rule);
    progtail2();
}

} // namespace kestro::app
