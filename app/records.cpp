// app/records.cpp: reading fracture data records and checking them before the solver sees them.
#include "app/records.h"

#include "support/math.h"
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

bool isOneOf(char letter, std::string_view letters)
{
    for (char c : letters) {
        if (letter == c) return true;
    }
    return false;
}

bool inRange(float dip)
{
    return dip >= 0.0f && dip <= 90.0f; // false for a NaN
}

void refuseSecondDip(Verdict& verdict, Fracture& f)
{
    verdict.refuse(f, "error: 2nd app dip out of [0,90]")
        .text("2nd dip out of [0,90]")
        .value("2nd dip =", f.dipa2);
}

void writeLine(std::string_view text)
{
    rt::write(iocom.SOUT, "(3(1x,a))", text);
}

} // namespace

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
            writeLine(line);
    } else {
        for (std::string_view line : numerical)
            writeLine(line);
    }
}

Verdict checkRecord(DataForm form, Fracture& f)
{
    Verdict verdict;
    if (form == DataForm::alphanumerical) {
        const char first = f.DIPDA[0][0];
        const char second = f.DIPDA[1][0];
        if (!isOneOf(first, "EWSN")) {
            verdict.refuse(f, "error: 1st direction should be E,W,N,S")
                .text("1st dip direction =", first)
                .text("=> 1st dip direction should be E,W,N,S");
            return verdict;
        }
        if (!isOneOf(second, "EWSNA")) {
            verdict.refuse(f, "error: 2nd direction should be E,W,N,S,A")
                .text("2nd dip direction =", second)
                .text("=> 2nd dip direction should be E,W,N,S,A");
            return verdict;
        }
        const bool sameAxis = (isOneOf(second, "EW") && !isOneOf(first, "SN")) ||
                              (isOneOf(second, "SN") && !isOneOf(first, "EW"));
        if (sameAxis) {
            verdict.refuse(f, "error: same dip direction [modulo 180], early detection")
                .text("1st dip direction =", first)
                .text("2nd dip direction =", second)
                .text("=> Same directions modulo 180 deg");
            return verdict;
        }
        if (second != 'A' && !inRange(f.dipa2)) refuseSecondDip(verdict, f);
    } else {
        if (!inRange(f.dipa2)) {
            refuseSecondDip(verdict, f);
            return verdict;
        }
        float d = f.DDIR[1] - f.DDIR[0];
        modulr(&d, &d, 180.0f, 1);
        const float e = 180.0f - d;
        if (std::fabs(d) < tolerance || std::fabs(e) < tolerance) {
            verdict.refuse(f, "error: same dip direction [modulo 180], early detection")
                .text("The two data have same strike")
                .value("1st dip dir = dd1 =", f.DDIR[0])
                .value("2nd dip dir = dd2 =", f.DDIR[1])
                .modulo180("dd2 - dd1 =", d);
            return verdict;
        }
    }
    if (verdict.accepted && !inRange(f.dipa1)) {
        verdict.refuse(f, "error: 1st app dip out of [0,90]")
            .text("1st dip out of [0,90]")
            .value("1st dip =", f.dipa1);
    }
    return verdict;
}

} // namespace kestro::app
