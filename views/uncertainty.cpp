// views/uncertainty.cpp: the measured plane in double precision and its first-order errors.
#include "views/uncertainty.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

namespace kestro::views {

namespace {

// The i-th measured angle of a record, to be perturbed.
double& angle(Measurement& m, int i)
{
    switch (i) {
    case 0:
        return m.dipa1;
    case 1:
        return m.direction1;
    case 2:
        return m.direction2;
    default:
        return m.dipa2;
    }
}

double strikeDifference(double a, double b)
{
    return std::fmod(a - b + 540.0, 360.0) - 180;
}

} // namespace

bool measuredPole(const Measurement& m, Vec3& pole)
{
    const Vec3 first = toVector({m.direction1, m.dipa1});
    const Vec3 second = m.strikeCase ? toVector({m.direction2, 0}) : toVector({m.direction2, m.dipa2});
    const Vec3 n = cross(first, second);
    // Lines closer than about 1e-9 degrees count as parallel.
    if (dot(n, n) < 1e-22) return false;
    pole = unit(n);
    if (pole.z < 0) pole = {-pole.x, -pole.y, -pole.z};
    return true;
}

bool measuredPlane(const Measurement& m, Plane& plane)
{
    Vec3 p;
    if (!measuredPole(m, p)) return false;
    plane = planeOfPole(toLine(p));
    return true;
}

namespace {

// P(r <= R) for the variances 1 and t^2: in standardised polar co-ordinates (rho, phi) the disc is
// rho <= R / sqrt(q), q = cos^2(phi) + t^2 sin^2(phi), so P is the mean over phi of
// 1 - exp(-R^2 / (2 q)); the integrand is smooth and periodic, which makes the plain mean exact.
double probabilityWithin(double radius, double t)
{
    constexpr int steps = 256;
    double sum = 0;
    for (int i = 0; i < steps; ++i) {
        const double phi = 2 * pi * (i + 0.5) / steps;
        const double q = std::cos(phi) * std::cos(phi) + t * t * std::sin(phi) * std::sin(phi);
        sum += q > 0 ? -std::expm1(-radius * radius / (2 * q)) : 1;
    }
    return sum / steps;
}

// The 95% radius for the variances 1 and t^2, t in [0, 1], by bisection.
double unitRadius95(double t)
{
    double low = 1.9, high = 2.5;
    for (int i = 0; i < 50; ++i) {
        const double mid = (low + high) / 2;
        (probabilityWithin(mid, t) < 0.95 ? low : high) = mid;
    }
    return (low + high) / 2;
}

} // namespace

double radius95(double major, double minor)
{
    if (major <= 0) return 0;
    // Tabulated once against the ratio of the standard deviations, then interpolated: a table of
    // many planes would otherwise spend its time here.
    constexpr int entries = 257;
    static const std::vector<double> table = [] {
        std::vector<double> values(entries);
        for (int i = 0; i < entries; ++i)
            values[static_cast<std::size_t>(i)] = unitRadius95(static_cast<double>(i) / (entries - 1));
        return values;
    }();
    const double t = std::clamp(std::sqrt(std::max(minor, 0.0) / major), 0.0, 1.0) * (entries - 1);
    const int i = std::min(static_cast<int>(t), entries - 2);
    const double f = t - i;
    return std::sqrt(major) *
           ((1 - f) * table[static_cast<std::size_t>(i)] + f * table[static_cast<std::size_t>(i) + 1]);
}

Uncertainty propagate(const Measurement& m, const UncertaintyOptions& options)
{
    Uncertainty result;
    Vec3 p0;
    if (!measuredPole(m, p0)) return result;
    // Two unit vectors square to the pole span the plane in which it moves.
    const Vec3 e1 = unit(cross(p0, std::fabs(p0.z) < 0.9 ? Vec3{0, 0, 1} : Vec3{1, 0, 0}));
    const Vec3 e2 = cross(p0, e1);
    const int angles = m.strikeCase ? 3 : 4;
    constexpr double h = 1e-3; // degrees
    double c11 = 0, c12 = 0, c22 = 0, varStrike = 0, varDip = 0;
    for (int i = 0; i < angles; ++i) {
        std::array<Vec3, 2> moved;
        std::array<Plane, 2> planes;
        for (int side = 0; side < 2; ++side) {
            Measurement changed = m;
            angle(changed, i) += side == 0 ? h : -h;
            if (!measuredPole(changed, moved[static_cast<std::size_t>(side)])) return result;
            Vec3& v = moved[static_cast<std::size_t>(side)];
            planes[static_cast<std::size_t>(side)] = planeOfPole(toLine(v));
            // The pole keeps the end of the unperturbed one, also across the primitive.
            if (dot(v, p0) < 0) v = {-v.x, -v.y, -v.z};
        }
        // Derivatives per degree of input; the pole's in radians along e1 and e2.
        const Vec3 d{(moved[0].x - moved[1].x) / (2 * h), (moved[0].y - moved[1].y) / (2 * h),
                     (moved[0].z - moved[1].z) / (2 * h)};
        const double a = dot(d, e1), b = dot(d, e2);
        c11 += a * a;
        c12 += a * b;
        c22 += b * b;
        const double dStrike = strikeDifference(planes[0].strike, planes[1].strike) / (2 * h);
        const double dDip = (planes[0].dip - planes[1].dip) / (2 * h);
        varStrike += dStrike * dStrike;
        varDip += dDip * dDip;
    }
    const double s2 = options.angleError * options.angleError;
    // Eigenvalues of the pole's 2 x 2 covariance, in radians^2 per degree^2 of input.
    const double mean = (c11 + c22) / 2, spread = std::hypot((c11 - c22) / 2, c12);
    const double major = mean + spread, minor = std::max(mean - spread, 0.0);
    result.known = true;
    result.sigmaStrike = std::sqrt(varStrike * s2);
    result.sigmaDip = std::sqrt(varDip * s2);
    result.cone95 = std::min(90.0, degrees(radius95(major * s2, minor * s2)));
    result.amplification = std::sqrt(major) / radians(1);
    result.poor = result.amplification > options.poorFactor;
    return result;
}

} // namespace kestro::views
