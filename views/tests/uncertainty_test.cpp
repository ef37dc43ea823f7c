// views/tests/uncertainty_test.cpp: the measured plane against the worked conversions, and the
// first-order errors against a Monte Carlo run of the same geometry.
#include "views/uncertainty.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <tuple>

namespace kestro::views {
namespace {

Measurement twoDips(double a1, double d1, double a2, double d2)
{
    return {false, a1, d1, a2, d2};
}
Measurement dipAndStrike(double a1, double d1, double strike)
{
    return {true, a1, d1, 0, strike};
}

TEST(MeasuredPlane, WorkedConversions)
{
    const std::tuple<Measurement, double, double> cases[]{
        {twoDips(16, 90, 50, 0), 283.5, 50.8},   // 16 'E' 50 'N'
        {twoDips(30, 90, 60, 180), 71.6, 61.3},  // 30 'E' 60 'S'
        {dipAndStrike(16, 270, 200), 200, 17.0}, // 16 'W' 200 'A'
        {dipAndStrike(16, 180, 200), 20, 40.0},  // 16 180 0 200: the strike turned round
        {twoDips(16, 90, 0, 0), 0, 16.0},        // 16 'E' 0 'N'
        {dipAndStrike(90, 90, 0), 0, 90},        // vertical, by either strike
    };
    for (const auto& [m, strike, dip] : cases) {
        Plane p;
        ASSERT_TRUE(measuredPlane(m, p));
        // A vertical plane is the same by either end of its strike.
        EXPECT_NEAR(std::remainder(p.strike - strike, dip < 90 ? 360 : 180), 0, 0.05) << strike;
        EXPECT_NEAR(p.dip, dip, 0.05) << strike;
    }
}

// Strike, dip and pole of `samples` copies with normal errors of `sigma` on every angle.
Uncertainty monteCarlo(const Measurement& m, double sigma, int samples)
{
    std::mt19937 random(11);
    std::normal_distribution<double> error(0, sigma);
    Vec3 p0;
    measuredPole(m, p0);
    const Plane plane0 = planeOfPole(toLine(p0));
    double strike2 = 0, dip2 = 0;
    std::vector<double> angles;
    for (int i = 0; i < samples; ++i) {
        Measurement e = m;
        e.dipa1 += error(random), e.direction1 += error(random), e.direction2 += error(random);
        if (!m.strikeCase) e.dipa2 += error(random);
        Vec3 p;
        measuredPole(e, p);
        const Plane plane = planeOfPole(toLine(p));
        const double ds = std::fmod(plane.strike - plane0.strike + 540, 360) - 180;
        strike2 += ds * ds;
        dip2 += (plane.dip - plane0.dip) * (plane.dip - plane0.dip);
        angles.push_back(degrees(std::acos(std::min(1.0, std::fabs(dot(p, p0))))));
    }
    const auto at = angles.begin() + samples * 95 / 100;
    std::nth_element(angles.begin(), at, angles.end());
    return {true, std::sqrt(strike2 / samples), std::sqrt(dip2 / samples), *at};
}

TEST(Propagation, FirstOrderAgreesWithMonteCarlo)
{
    // The 95% radius of a normal law, circular and along one axis.
    EXPECT_NEAR(radius95(4, 4), 2 * std::sqrt(-2 * std::log(0.05)), 1e-6);
    EXPECT_NEAR(radius95(4, 0), 2 * 1.959964, 1e-5);
    for (const Measurement& m : {twoDips(16, 90, 50, 0), twoDips(30, 90, 60, 180), twoDips(41, 5, 25, 95),
                                 dipAndStrike(16, 270, 200), dipAndStrike(48, 0, 274)}) {
        for (double sigma : {1.0, 2.0}) {
            const Uncertainty first = propagate(m, {sigma, 5});
            const Uncertainty sampled = monteCarlo(m, sigma, 10000);
            EXPECT_FALSE(first.poor) << m.dipa1 << ' ' << m.direction2;
            EXPECT_NEAR(first.sigmaStrike, sampled.sigmaStrike, 0.1 * sampled.sigmaStrike)
                << m.dipa1 << ' ' << sigma;
            EXPECT_NEAR(first.sigmaDip, sampled.sigmaDip, 0.1 * sampled.sigmaDip) << m.dipa1 << ' ' << sigma;
            EXPECT_NEAR(first.cone95, sampled.cone95, 0.1 * sampled.cone95) << m.dipa1 << ' ' << sigma;
        }
    }
}

TEST(Propagation, DegenerateGeometry)
{
    // Close or opposite directions are poorly conditioned.
    EXPECT_TRUE(propagate(twoDips(30, 100, 35, 102)).poor);
    // Opposite directions matter for shallow lines only: steep ones lie far apart in space.
    EXPECT_TRUE(propagate(twoDips(3, 100, 2, 281)).poor);
    EXPECT_FALSE(propagate(twoDips(30, 100, 35, 281)).poor);
    EXPECT_TRUE(propagate(dipAndStrike(2, 100, 103)).poor);
    EXPECT_FALSE(propagate(twoDips(30, 100, 35, 190)).poor);
    EXPECT_FALSE(propagate(twoDips(30, 100, 30, 100)).known);
    // A vertical plane tips over rather than turning its strike round; a horizontal one has no strike.
    const Uncertainty vertical = propagate(dipAndStrike(90, 90, 0));
    EXPECT_NEAR(vertical.sigmaStrike, 1, 0.5);
    EXPECT_NEAR(vertical.sigmaDip, 1, 0.5);
    EXPECT_EQ(propagate(twoDips(0.1, 90, 0, 0)).sigmaStrike, 180);
}

} // namespace
} // namespace kestro::views
