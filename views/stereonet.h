// views/stereonet.h: planes and lines on the equal-area (Schmidt) net, lower hemisphere, north up,
// and the Fisher mean of poles. Everything a drawing surface needs is returned in net coordinates.
#pragma once

#include <cstddef>
#include <vector>

namespace kestro::views {

// A direction in space: x north, y east, z down. Not necessarily of unit length where noted.
struct Vec3
{
    double x = 0, y = 0, z = 0;
};

// A point of the net: x east, y north, the primitive circle of radius 1 about the origin.
struct NetPoint
{
    double x = 0, y = 0;
};
using Polyline = std::vector<NetPoint>;

// A plane by the right-hand rule: it dips `dip` degrees to the right of `strike` (clockwise from
// north, 0 up to 360).
struct Plane
{
    double strike = 0, dip = 0;
};

// A line: trend clockwise from north, plunge downwards, both in degrees.
struct Line
{
    double trend = 0, plunge = 0;
};

constexpr double pi = 3.14159265358979323846;
inline double radians(double degrees)
{
    return degrees * (pi / 180);
}
inline double degrees(double radians)
{
    return radians * (180 / pi);
}
// An angle taken into [0, 360).
double normalized360(double degrees);

inline double dot(const Vec3& a, const Vec3& b)
{
    return a.x * b.x + a.y * b.y + a.z * b.z;
}
Vec3 cross(const Vec3& a, const Vec3& b);
// The unit vector along v; v must not be zero.
Vec3 unit(const Vec3& v);

double dipDirection(const Plane& plane);
Plane planeFromDipDirection(double dipDirection, double dip);
Line pole(const Plane& plane);
// The plane of a pole; a pole in the upper hemisphere is taken by its lower end.
Plane planeOfPole(const Line& pole);

Vec3 toVector(const Line& line);
// The line of a direction, by its lower end (a horizontal one keeps its own end).
Line toLine(const Vec3& v);
// The unit pole of a plane, in the lower hemisphere.
Vec3 poleVector(const Plane& plane);

// Equal-area projection of the lower end of a line onto the net: radius sqrt(2) sin((90 - plunge)/2).
NetPoint project(const Line& line);
NetPoint project(const Vec3& v);
// The direction whose projection a net point is, on the whole sphere: points beyond the primitive
// (radius up to sqrt(2)) stand for the upper hemisphere. Unit length.
Vec3 unproject(const NetPoint& p);

// The great circle of a plane, from the strike end of the primitive through the dip direction to
// the opposite end; `segments` + 1 points.
Polyline greatCircle(const Plane& plane, int segments = 90);
// The circle of `radius` degrees about an axis, as the lower hemisphere shows it: a circle that
// crosses the primitive comes back as several pieces, each ending on the primitive.
std::vector<Polyline> smallCircle(const Line& axis, double radius, int segments = 180);
Polyline primitive(int segments = 360);
// The net's graticule every `step` degrees: great circles of the north-south striking planes and
// small circles about the north-south axis.
std::vector<Polyline> graticule(double step = 10);

// Fisher statistics of poles taken as axes (a pole and its opposite are one pole).
struct FisherMean
{
    bool valid = false; // at least one pole, and not a resultant of zero
    std::size_t count = 0;
    Vec3 mean;            // unit, lower hemisphere
    double resultant = 0; // length of the vector sum, at most `count`
    double kappa = 0;     // precision estimate (count - 1) / (count - resultant); infinite if equal
    double cone95 = 0;    // half-angle of the 95% confidence cone, degrees; 0 for fewer than 2 poles
    Line meanPole;
    Plane meanPlane;
};
FisherMean fisherMean(const std::vector<Vec3>& poles);

} // namespace kestro::views
