// app/solver.cpp: the true strike and dip of a plane from two apparent dips, or from one and a strike.
#include "app/solver.h"

#include "support/math.h"

#include <cmath>

namespace kestro::app {

namespace {

// The trigonometry of the angles as read: whole degrees, mostly, that repeat from record to record.
Remembered<sinf> sinOfAngle;
Remembered<cosf> cosOfAngle;
Remembered<tanf> tanOfDip;

void lateDetection(Verdict& verdict, Fracture& f)
{
    verdict.refuse(f, "error: same dip direction [modulo 180], late detection")
        .text("The two data have same strike")
        .value("1st dip dir =", f.DDIR[0])
        .value("2nd dip dir =", f.DDIR[1]);
}

void horizontalPlane(Verdict& verdict, Fracture& f)
{
    f.comment = "horizontal plane";
    verdict.warn().text("horizontal plane").value("1st dip =", f.dipa1).value("2nd dip =", f.dipa2);
    f.strike = 0;
    f.dip = 0;
}

void solveStrike(Verdict& verdict, DataForm form, Fracture& f)
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
        if (std::fabs(f.dipa1) < tolerance) return horizontalPlane(verdict, f);
        if (s < 0.0f && resets == maxResets) return lateDetection(verdict, f);
        if (s < 0.0f) {
            // The dip lies to the left of the strike given: turn the strike round.
            f.comment = "output strike = input strike + 180";
            Notice& warning = verdict.warn()
                                  .text("input  strike with dip to the LEFT")
                                  .text("output strike with dip to the RIGHT")
                                  .value("strike =", f.DDIR[1]);
            f.DDIR[1] = 180.0f + f.DDIR[1];
            modulr(&f.DDIR[1], &f.DDIR[1], 360.0f, 1);
            warning.value("==> strike reset to :", f.DDIR[1]);
            continue;
        }
        if (s == 0.0f) return lateDetection(verdict, f);
        modulr(&f.strike, &f.DDIR[1], 360.0f, 1);
        if (f.dipa1 == 90.0f) {
            f.comment = "vertical plane";
            f.dip = 90.0f;
            return;
        }
        const float t = tanOfDip(rad(f.dipa1));
        const float angle = atanf(t / s);
        f.dip = deg(angle);
        return;
    }
}

void solveTwoDips(Verdict& verdict, DataForm form, Fracture& f)
{
    if (form == DataForm::alphanumerical) {
        f.DDIR[0] = letterAngle(f.DIPDA[0]);
        f.DDIR[1] = letterAngle(f.DIPDA[1]);
    }
    const float difference = f.DDIR[0] - f.DDIR[1];
    const float x = rad(difference);
    const float s = sinOfAngle(x);
    const float c = cosOfAngle(x);
    if (s == 0.0f) return lateDetection(verdict, f);
    if (f.dipa1 == 0.0f && f.dipa2 == 0.0f) return horizontalPlane(verdict, f);
    if (f.dipa1 == 0.0f) {
        verdict.refuse(f, "error: 1st dip = 0 => should be in 2nd position")
            .text("1st data should be in 2nd position")
            .value("1st dip =", f.dipa1);
        return;
    }
    if (f.dipa1 == 90.0f || f.dipa2 == 90.0f) {
        const bool both = f.dipa1 == 90.0f && f.dipa2 == 90.0f;
        verdict
            .refuse(f, both ? "error: vertical plane without strike"
                            : "error: inconsistent dips for vertical plane")
            .text(both ? "vertical plane without strike" : "inconsistent dips for vertical plane")
            .value("1st dip =", f.dipa1)
            .value("2nd dip =", f.dipa2);
        return;
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

Verdict solve(DataForm form, Fracture& f)
{
    Verdict verdict;
    const bool strikeCase =
        form == DataForm::alphanumerical ? f.DIPDA[1] == "A" : std::fabs(f.dipa2) < tolerance;
    if (strikeCase)
        solveStrike(verdict, form, f);
    else
        solveTwoDips(verdict, form, f);
    return verdict;
}

} // namespace kestro::app
