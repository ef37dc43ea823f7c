// app/records.cpp: reading fracture data records and checking them before the solver sees them.
#include "app/records.h"

#include "support/math.h"
#include "support/panels.h"
#include "support/sio.h"

#include <cmath>

namespace kestro::app {

namespace {

ReadOutcome outcomeOf(const rt::Iostat& status)
{
    switch (status.outcome) {
    case rt::Outcome::ok:
        return ReadOutcome::record;
    case rt::Outcome::end:
        return ReadOutcome::endOfInput;
    default:
        return ReadOutcome::failure;
    }
}

bool isOneOf(const Text<1>& letter, std::string_view letters)
{
    for (char c : letters) {
        if (letter[0] == c) return true;
    }
    return false;
}

void openErrorPanel(std::int32_t readCount)
{
    errorhead(programName, programVersion, programDate);
    writeRecordLine(readCount);
}

} // namespace

void writeRecordLine(std::int32_t readCount)
{
    rt::write(iocom.SOUT, "(1x,a,1x,i5,1x,a)", "while reading data nb", readCount);
}

void writeTextLine(std::string_view text, std::string_view more)
{
    if (more.empty())
        rt::write(iocom.SOUT, "(3(1x,a))", text);
    else
        rt::write(iocom.SOUT, "(3(1x,a))", text, more);
}

void writeValueLine(std::string_view label, float value)
{
    rt::write(iocom.SOUT, "(1x,a,1x,f7.1)", label, value);
}

ReadOutcome readHeader(rt::Unit unit, Text<40>& title)
{
    if (outcomeOf(rt::readList(rt::onEnd | rt::onError, unit, title)) != ReadOutcome::record)
        return ReadOutcome::failure;
    Text<1> columns;
    if (outcomeOf(rt::readList(rt::onEnd | rt::onError, unit, columns)) != ReadOutcome::record)
        return ReadOutcome::failure;
    return ReadOutcome::record;
}

ReadOutcome readRecord(rt::Unit unit, DataForm form, Fracture& f)
{
    if (form == DataForm::alphanumerical)
        return outcomeOf(
            rt::readList(rt::onEnd | rt::onError, unit, f.dipa1, f.DIPDA[0], f.dipa2, f.DIPDA[1]));
    return outcomeOf(rt::readList(rt::onEnd | rt::onError, unit, f.dipa1, f.DDIR[0], f.dipa2, f.DDIR[1]));
}

void writeReminder(DataForm form)
{
    static constexpr std::string_view alphanumerical[] = {
        "Alphanumerical format :",
        "case 2 dips :",
        " (1) 1st apparent dip  [0, 90]",
        " (2) 1st dip direction ('E','W','N','S')",
        " (3) 2nd apparent dip  [0, 90]",
        " (4) 2nd dip direction ('E','W','N','S')",
        "case 1 dip and 1 strike :",
        " (1) 1st apparent dip  [0, 90]",
        " (2) 1st dip direction ('E','W','N','S')",
        " (3) strike            [-360, +360]",
        " (4) strike indicator  ('A')",
        "-----------------------------------------",
        "Examples :",
        "  2 dips:              16 'E'  50 'N' ",
        "  1 dip and 1 strike:  16 'W' 200 'A' ",
    };
    static constexpr std::string_view numerical[] = {
        "Numerical format :",
        " (1) 1st apparent dip  [0, 90]",
        " (2) 1st dip direction [-360, +360]",
        " (3) 2nd apparent dip  [0, 90]",
        " (4) 2nd dip direction [-360, +360]",
        "-----------------------------------------",
        "Examples :",
        "  2 dips :              16  90 50   0",
        "  1 dip and 1 strike :  16 180  0 200",
    };
    if (form == DataForm::alphanumerical) {
        for (std::string_view line : alphanumerical)
            writeTextLine(line);
    } else {
        for (std::string_view line : numerical)
            writeTextLine(line);
    }
}

bool checkRecord(DataForm form, Fracture& f, std::int32_t readCount)
{
    auto refuse = [&](std::string_view comment) {
        f.comment = comment;
        openErrorPanel(readCount);
    };
    auto secondDipOutOfRange = [&] {
        refuse("error: 2nd app dip out of [0,90]");
        writeTextLine("2nd dip out of [0,90]");
        writeValueLine("2nd dip =", f.dipa2);
        return false;
    };

    if (form == DataForm::alphanumerical) {
        const Text<1>& first = f.DIPDA[0];
        const Text<1>& second = f.DIPDA[1];
        if (!isOneOf(first, "EWSN")) {
            refuse("error: 1st direction should be E,W,N,S");
            writeTextLine("1st dip direction =", first);
            writeTextLine("=> 1st dip direction should be E,W,N,S");
            return false;
        }
        if (!isOneOf(second, "EWSNA")) {
            refuse("error: 2nd direction should be E,W,N,S,A");
            writeTextLine("2nd dip direction =", second);
            writeTextLine("=> 2nd dip direction should be E,W,N,S,A");
            return false;
        }
        const bool sameAxis = (isOneOf(second, "EW") && !isOneOf(first, "SN")) ||
                              (isOneOf(second, "SN") && !isOneOf(first, "EW"));
        if (sameAxis) {
            refuse("error: same dip direction [modulo 180], early detection");
            writeTextLine("1st dip direction =", first);
            writeTextLine("2nd dip direction =", second);
            writeTextLine("=> Same directions modulo 180 deg");
            return false;
        }
        if (second != "A" && !(f.dipa2 >= 0.0f && f.dipa2 <= 90.0f)) return secondDipOutOfRange();
    } else {
        if (!(f.dipa2 >= 0.0f && f.dipa2 <= 90.0f)) return secondDipOutOfRange();
        float d = f.DDIR[1] - f.DDIR[0];
        modulr(&d, &d, 180.0f, 1);
        const float e = 180.0f - d;
        if (std::fabs(d) < tolerance || std::fabs(e) < tolerance) {
            refuse("error: same dip direction [modulo 180], early detection");
            writeTextLine("The two data have same strike");
            writeValueLine("1st dip dir = dd1 =", f.DDIR[0]);
            writeValueLine("2nd dip dir = dd2 =", f.DDIR[1]);
            rt::write(iocom.SOUT, "(1x,a,1x,es10.3,1x,a)", "dd2 - dd1 =", d, "[modulo 180]");
            return false;
        }
    }
    if (!(f.dipa1 >= 0.0f && f.dipa1 <= 90.0f)) {
        refuse("error: 1st app dip out of [0,90]");
        writeTextLine("1st dip out of [0,90]");
        writeValueLine("1st dip =", f.dipa1);
        return false;
    }
    return true;
}

} // namespace kestro::app
