// views/uncertainty.h: a plane from its measured angles in double precision, and how far the
// errors of those angles carry into its strike, dip and pole.
#pragma once

#include "views/stereonet.h"

namespace kestro::views {

// The angles a plane was measured by, in degrees. Two apparent dips, each along its direction
// (clockwise from north); or, in the strike case, one apparent dip with its direction and the
// strike in `direction2` (`dipa2` unused).
struct Measurement
{
    bool strikeCase = false;
    double dipa1 = 0, direction1 = 0;
    double dipa2 = 0, direction2 = 0;
};

// The plane through the measured lines: the two apparent-dip lines, or the apparent-dip line and
// the horizontal strike line. Its pole is their cross product, so that the result is the same
// plane the converter gives. False when the lines are parallel (the pole is undefined).
bool measuredPole(const Measurement& m, Vec3& pole);
bool measuredPlane(const Measurement& m, Plane& plane);

struct UncertaintyOptions
{
    double angleError = 1; // standard deviation of every measured angle, degrees
    double poorFactor = 5; // pole error more than this many times `angleError`: poorly conditioned
};

struct Uncertainty
{
    bool known = false;       // false: the lines are parallel, nothing can be said
    double sigmaStrike = 0;   // degrees
    double sigmaDip = 0;      // degrees
    double cone95 = 0;        // half-angle of the cone holding the pole with 95% probability, degrees,
                              // at most 90 (the pole undetermined)
    double amplification = 0; // largest standard deviation of the pole over `angleError`
    bool poor = true;         // amplification past `poorFactor`, or not known
};

// First-order propagation of independent errors of `angleError` in each measured angle (three in
// the strike case, four otherwise), through a numerical Jacobian of the pole.
Uncertainty propagate(const Measurement& m, const UncertaintyOptions& options = {});

// Radius holding 95% of a centred two-dimensional normal law with variances `major` and `minor`
// along its axes (same unit squared as the radius).
double radius95(double major, double minor);

} // namespace kestro::views
