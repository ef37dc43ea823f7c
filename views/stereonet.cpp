// views/stereonet.cpp: plane and line geometry, the equal-area projection, net curves, Fisher mean.
#include "views/stereonet.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace kestro::views {

double normalized360(double degrees)
{
    double a = std::fmod(degrees, 360.0);
    if (a < 0) a += 360;
    return a >= 360 ? 0 : a;
}

Vec3 cross(const Vec3& a, const Vec3& b)
{
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}

Vec3 unit(const Vec3& v)
{
    const double length = std::sqrt(dot(v, v));
    return {v.x / length, v.y / length, v.z / length};
}

double dipDirection(const Plane& plane)
{
    return normalized360(plane.strike + 90);
}

Plane planeFromDipDirection(double dipDirection, double dip)
{
    return {normalized360(dipDirection - 90), dip};
}

Line pole(const Plane& plane)
{
    return {normalized360(plane.strike + 270), 90 - plane.dip};
}

Plane planeOfPole(const Line& pole)
{
    Line lower = pole.plunge < 0 ? Line{pole.trend + 180, -pole.plunge} : pole;
    return {normalized360(lower.trend + 90), 90 - lower.plunge};
}

Vec3 toVector(const Line& line)
{
    const double t = radians(line.trend), p = radians(line.plunge);
    return {std::cos(p) * std::cos(t), std::cos(p) * std::sin(t), std::sin(p)};
}

Line toLine(const Vec3& v)
{
    const Vec3 u = v.z < 0 ? Vec3{-v.x, -v.y, -v.z} : v;
    const double horizontal = std::sqrt(u.x * u.x + u.y * u.y);
    return {normalized360(degrees(std::atan2(u.y, u.x))), degrees(std::atan2(u.z, horizontal))};
}

Vec3 poleVector(const Plane& plane)
{
    return toVector(pole(plane));
}

NetPoint project(const Vec3& v)
{
    const Vec3 u = unit(v.z < 0 ? Vec3{-v.x, -v.y, -v.z} : v);
    const double horizontal = std::sqrt(u.x * u.x + u.y * u.y);
    if (horizontal == 0) return {0, 0};
    // sqrt(2) sin(phi / 2) with cos(phi) = z, phi the angle from the nadir.
    const double r = std::sqrt(std::max(0.0, 1 - u.z));
    return {r * u.y / horizontal, r * u.x / horizontal};
}

NetPoint project(const Line& line)
{
    return project(toVector(line));
}

Vec3 unproject(const NetPoint& p)
{
    const double r = std::hypot(p.x, p.y);
    if (r == 0) return {0, 0, 1};
    const double z = std::clamp(1 - r * r, -1.0, 1.0);
    const double horizontal = std::sqrt(1 - z * z);
    return {horizontal * p.y / r, horizontal * p.x / r, z};
}

Polyline greatCircle(const Plane& plane, int segments)
{
    const Vec3 along = toVector({plane.strike, 0});
    const Vec3 down = toVector({dipDirection(plane), plane.dip});
    Polyline curve;
    curve.reserve(static_cast<std::size_t>(segments) + 1);
    for (int i = 0; i <= segments; ++i) {
        const double a = pi * i / segments;
        const double c = std::cos(a), s = std::sin(a);
        // At the far end z is +0 or a rounding above it: the point keeps its own end.
        const NetPoint p = project(Vec3{c * along.x + s * down.x, c * along.y + s * down.y, s * down.z});
        curve.push_back(p);
    }
    return curve;
}

namespace {

NetPoint projectSide(const Vec3& v, bool upper)
{
    return upper ? project(Vec3{-v.x, -v.y, -v.z}) : project(Vec3{v.x, v.y, std::max(v.z, 0.0)});
}

} // namespace

std::vector<Polyline> smallCircle(const Line& axis, double radius, int segments)
{
    const Vec3 a = toVector(axis);
    // Two unit vectors square to the axis and to each other.
    const Vec3 helper = std::fabs(a.z) < 0.9 ? Vec3{0, 0, 1} : Vec3{1, 0, 0};
    const Vec3 u = unit(cross(a, helper));
    const Vec3 w = cross(a, u);
    const double cr = std::cos(radians(radius)), sr = std::sin(radians(radius));
    auto at = [&](int i) {
        const double t = 2 * pi * i / segments;
        const double c = std::cos(t) * sr, s = std::sin(t) * sr;
        return Vec3{cr * a.x + c * u.x + s * w.x, cr * a.y + c * u.y + s * w.y, cr * a.z + c * u.z + s * w.z};
    };
    std::vector<Polyline> pieces;
    Vec3 previous = at(0);
    bool upper = previous.z < 0;
    pieces.push_back({projectSide(previous, upper)});
    for (int i = 1; i <= segments; ++i) {
        const Vec3 v = at(i);
        if ((v.z < 0) != upper) {
            // Cut where the circle meets the horizontal, one end for each side.
            const double f = previous.z / (previous.z - v.z);
            const Vec3 crossing =
                unit({previous.x + f * (v.x - previous.x), previous.y + f * (v.y - previous.y), 0});
            pieces.back().push_back(projectSide(crossing, upper));
            upper = !upper;
            pieces.push_back({projectSide(crossing, upper)});
        }
        pieces.back().push_back(projectSide(v, upper));
        previous = v;
    }
    // The last piece continues the first when the start lay inside one side.
    if (pieces.size() > 1 && (at(0).z < 0) == upper) {
        pieces.back().insert(pieces.back().end(), pieces.front().begin() + 1, pieces.front().end());
        pieces.erase(pieces.begin());
    }
    return pieces;
}

Polyline primitive(int segments)
{
    Polyline circle;
    for (int i = 0; i <= segments; ++i) {
        const double t = 2 * pi * i / segments;
        circle.push_back({std::sin(t), std::cos(t)});
    }
    return circle;
}

std::vector<Polyline> graticule(double step)
{
    std::vector<Polyline> lines;
    for (double d = step; d < 90 - 1e-9; d += step) {
        lines.push_back(greatCircle({0, d}));
        lines.push_back(greatCircle({180, d}));
        for (Polyline& piece : smallCircle({0, 0}, d))
            lines.push_back(std::move(piece));
    }
    lines.push_back({{0, -1}, {0, 1}});
    lines.push_back({{-1, 0}, {1, 0}});
    return lines;
}

FisherMean fisherMean(const std::vector<Vec3>& poles)
{
    FisherMean result;
    result.count = poles.size();
    if (poles.empty()) return result;
    // Axes: each pole counts by the end nearer the running mean, starting from the first pole.
    Vec3 reference = unit(poles.front());
    Vec3 sum;
    for (int pass = 0; pass < 3; ++pass) {
        sum = {};
        for (const Vec3& p : poles) {
            const Vec3 u = unit(p);
            const double sign = dot(u, reference) < 0 ? -1 : 1;
            sum = {sum.x + sign * u.x, sum.y + sign * u.y, sum.z + sign * u.z};
        }
        if (dot(sum, sum) == 0) return result;
        reference = unit(sum);
    }
    const double n = static_cast<double>(poles.size());
    result.resultant = std::min(n, std::sqrt(dot(sum, sum)));
    result.mean = reference.z < 0 ? Vec3{-reference.x, -reference.y, -reference.z} : reference;
    result.valid = true;
    result.meanPole = toLine(result.mean);
    result.meanPlane = planeOfPole(result.meanPole);
    const double spread = n - result.resultant;
    result.kappa = spread > 0 ? (n - 1) / spread : std::numeric_limits<double>::infinity();
    if (poles.size() >= 2 && spread > 0) {
        const double c = 1 - spread / result.resultant * (std::pow(20.0, 1 / (n - 1)) - 1);
        result.cone95 = degrees(std::acos(std::clamp(c, -1.0, 1.0)));
    }
    return result;
}

} // namespace kestro::views
