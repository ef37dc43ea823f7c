// app/solver.cpp: the true strike and dip of a plane from two apparent dips, or from one and a strike.
#include "app/solver.h"

#include "app/records.h"
#include "support/math.h"
#include "support/panels.h"

#include <cmath>

namespace kestro::app {

namespace {

// The trigonometry of the angles as read: whole degrees, mostly, that repeat from record to record.
Remembered<sinf> sinOfAngle;
Remembered<cosf> cosOfAngle;
Remembered<tanf> tanOfDip;

void horizontalWarning(const Fracture& f, std::int32_t readCount)
{
    warninghead(programName, programVersion, programDate);
    writeRecordLine(readCount);
    writeTextLine("horizontal plane");
    writeValueLine("1st dip =", f.dipa1);
    writeValueLine("2nd dip =", f.dipa2);
    warningtail00();
}

bool lateDetection(Fracture& f, std::int32_t readCount)
{
    f.comment = "error: same dip direction [modulo 180], late detection";
    errorhead(programName, programVersion, programDate);
    writeRecordLine(readCount);
    writeTextLine("The two data have same strike");
    writeValueLine("1st dip dir =", f.DDIR[0]);
    writeValueLine("2nd dip dir =", f.DDIR[1]);
    return false;
}

bool horizontalPlane(Fracture& f, std::int32_t readCount)
{
    f.comment = "horizontal plane";
    horizontalWarning(f, readCount);
    f.strike = 0;
    f.dip = 0;
    return true;
}

bool solveStrike(DataForm form, Fracture& f, std::int32_t readCount)
{
    if (form == DataForm::alphanumerical) {
        f.DDIR[0] = letterAngle(f.DIPDA[0]);
        f.DDIR[1] = f.dipa2;
    }
    // Each reset turns the strike by a half turn, so s changes its sign and two resets settle any
    // direction of ordinary size. A direction so large that a half turn is lost in its rounding
    // never settles: it is refused as the same direction.
    constexpr int maxResets = 2;
    for (int resets = 0;; ++resets) {
        const float difference = f.DDIR[0] - f.DDIR[1];
        const float s = sinOfAngle(rad(difference));
        if (std::fabs(f.dipa1) < tolerance) return horizontalPlane(f, readCount);
        if (s < 0.0f && resets == maxResets) return lateDetection(f, readCount);
        if (s < 0.0f) {
            // The dip lies to the left of the strike given: turn the strike round.
            f.comment = "output strike = input strike + 180";
            warninghead(programName, programVersion, programDate);
            writeRecordLine(readCount);
            writeTextLine("input  strike with dip to the LEFT");
            writeTextLine("output strike with dip to the RIGHT");
            writeValueLine("strike =", f.DDIR[1]);
            f.DDIR[1] = 180.0f + f.DDIR[1];
            modulr(&f.DDIR[1], &f.DDIR[1], 360.0f, 1);
            writeValueLine("==> strike reset to :", f.DDIR[1]);
            warningtail00();
            continue;
        }
        if (s == 0.0f) return lateDetection(f, readCount);
        modulr(&f.strike, &f.DDIR[1], 360.0f, 1);
        if (f.dipa1 == 90.0f) {
            f.comment = "vertical plane";
            f.dip = 90.0f;
            return true;
        }
        const float t = tanOfDip(rad(f.dipa1));
        const float angle = atanf(t / s);
        f.dip = deg(angle);
        return true;
    }
}

bool solveTwoDips(DataForm form, Fracture& f, std::int32_t readCount)
{
    if (form == DataForm::alphanumerical) {
        f.DDIR[0] = letterAngle(f.DIPDA[0]);
        f.DDIR[1] = letterAngle(f.DIPDA[1]);
    }
    const float difference = f.DDIR[0] - f.DDIR[1];
    const float x = rad(difference);
    const float s = sinOfAngle(x);
    const float c = cosOfAngle(x);
    if (s == 0.0f) return lateDetection(f, readCount);
    if (f.dipa1 == 0.0f && f.dipa2 == 0.0f) return horizontalPlane(f, readCount);
    if (f.dipa1 == 0.0f) {
        f.comment = "error: 1st dip = 0 => should be in 2nd position";
        errorhead(programName, programVersion, programDate);
        writeRecordLine(readCount);
        writeTextLine("1st data should be in 2nd position");
        writeValueLine("1st dip =", f.dipa1);
        return false;
    }
    if (f.dipa1 == 90.0f || f.dipa2 == 90.0f) {
        errorhead(programName, programVersion, programDate);
        writeRecordLine(readCount);
        if (f.dipa1 == 90.0f && f.dipa2 == 90.0f) {
            f.comment = "error: vertical plane without strike";
            writeTextLine("vertical plane without strike");
        } else {
            f.comment = "error: inconsistent dips for vertical plane";
            writeTextLine("inconsistent dips for vertical plane");
        }
        writeValueLine("1st dip =", f.dipa1);
        writeValueLine("2nd dip =", f.dipa2);
        return false;
    }
    const float t2 = tanOfDip(rad(f.dipa2));
    const float t1 = tanOfDip(rad(f.dipa1));
    const float r = t2 / t1;
    const float u = (c - r) / s;
    const float a = atanf(u); // from the first direction to the true dip direction
    const float ca = cosf(a);
    f.dip = deg(atanf(t1 / ca));
    const float turn = deg(a) + f.DDIR[0];
    f.strike = -90.0f + turn;
    modulr(&f.strike, &f.strike, 360.0f, 1);
    return true;
}

} // namespace

float letterAngle(const Text<1>& letter)
{
    switch (letter[0]) {
    case 'E':
        return 90.0f;
    case 'S':
        return 180.0f;
    case 'W':
        return 270.0f;
    default:
        return 0.0f;
    }
}

bool solve(DataForm form, Fracture& f, std::int32_t readCount)
{
    const bool strikeCase =
        form == DataForm::alphanumerical ? f.DIPDA[1] == "A" : std::fabs(f.dipa2) < tolerance;
    return strikeCase ? solveStrike(form, f, readCount) : solveTwoDips(form, f, readCount);
}

} // namespace kestro::app
