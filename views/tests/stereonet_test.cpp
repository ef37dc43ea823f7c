// views/tests/stereonet_test.cpp: planes, poles and curves on the net worked by hand; Fisher means;
// the scene a drawing surface gets for a few planes.
#include "views/scene.h"
#include "views/stereonet.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <tuple>

namespace kestro::views {
namespace {

double angleBetween(const Vec3& a, const Vec3& b)
{
    return degrees(std::acos(std::clamp(dot(unit(a), unit(b)), -1.0, 1.0)));
}

TEST(Net, PlanesPolesAndTheirNetPoints)
{
    const double r60 = std::sqrt(2.0) * std::sin(radians(15)), r30 = std::sqrt(2.0) * std::sin(radians(30));
    // plane, dip direction, pole trend and plunge, net point
    const std::tuple<Plane, double, double, double, double, double> cases[]{
        {{90, 30}, 180, 0, 60, 0, r60}, // pole due north, plunging 60
        {{0, 90}, 90, 270, 0, -1, 0},   // vertical: pole on the primitive, west
        {{45, 60}, 135, 315, 30, -r30 * std::sqrt(0.5), r30 * std::sqrt(0.5)},
        {{270, 0}, 0, 180, 90, 0, 0}, // horizontal: pole at the centre
    };
    for (const auto& [plane, direction, trend, plunge, x, y] : cases) {
        EXPECT_NEAR(dipDirection(plane), direction, 1e-9) << plane.strike;
        const Line p = pole(plane);
        EXPECT_NEAR(p.trend, trend, 1e-9) << plane.strike;
        EXPECT_NEAR(p.plunge, plunge, 1e-9) << plane.strike;
        const NetPoint q = project(p);
        EXPECT_NEAR(std::hypot(q.x - x, q.y - y), 0, 1e-12) << plane.strike;
        EXPECT_NEAR(angleBetween(unproject(q), toVector(p)), 0, 1e-6) << plane.strike;
    }
    // Past the primitive the net shows the upper hemisphere: its corner radius is the zenith.
    EXPECT_NEAR(unproject({1, 1}).z, -1, 1e-12);
}

TEST(Net, GreatCirclesRunSquareToTheirPolesBetweenOppositeEnds)
{
    for (const Plane plane : {Plane{90, 30}, Plane{200, 75}, Plane{10, 90}, Plane{330, 5}}) {
        const Polyline curve = greatCircle(plane, 60);
        for (const NetPoint& q : curve)
            EXPECT_NEAR(angleBetween(unproject(q), poleVector(plane)), 90, 1e-6) << plane.strike;
        // From the strike's end on the primitive to the opposite end.
        const double s = radians(plane.strike);
        EXPECT_NEAR(std::hypot(curve.front().x - std::sin(s), curve.front().y - std::cos(s)), 0, 1e-9);
        EXPECT_NEAR(std::hypot(curve.back().x + std::sin(s), curve.back().y + std::cos(s)), 0, 1e-9);
        // Halfway it crosses the dip direction at the dip's radius.
        const NetPoint mid = curve[30];
        EXPECT_NEAR(std::hypot(mid.x, mid.y), std::sqrt(2.0) * std::sin(radians(90 - plane.dip) / 2), 1e-9);
    }
}

TEST(Net, SmallCircleCrossingThePrimitiveComesBackInPieces)
{
    ASSERT_EQ(smallCircle({100, 60}, 20).size(), 1u);
    const std::vector<Polyline> crossing = smallCircle({100, 5}, 20);
    ASSERT_EQ(crossing.size(), 2u);
    for (const Polyline& piece : crossing) {
        EXPECT_NEAR(std::hypot(piece.front().x, piece.front().y), 1, 1e-9);
        EXPECT_NEAR(std::hypot(piece.back().x, piece.back().y), 1, 1e-9);
        for (const NetPoint& q : piece)
            EXPECT_NEAR(std::fabs(dot(unproject(q), toVector({100, 5}))), std::cos(radians(20)), 1e-5);
    }
}

TEST(Fisher, MeanAndConeOfAxes)
{
    const Vec3 a = toVector({120, 40});
    const FisherMean same = fisherMean({a, a, a});
    EXPECT_EQ(same.cone95, 0);
    EXPECT_NEAR(angleBetween(same.mean, a), 0, 1e-6);

    // Ten degrees apart: the bisector; cos(a95) = 1 - (2 - R) / R * (20 - 1), R = 2 cos(5 degrees).
    const FisherMean two = fisherMean({toVector({30, 20}), toVector({30, 30})});
    EXPECT_NEAR(two.meanPole.trend, 30, 1e-9);
    EXPECT_NEAR(two.meanPole.plunge, 25, 1e-9);
    EXPECT_NEAR(two.cone95, 21.96338, 1e-4);
    EXPECT_NEAR(two.meanPlane.strike, 120, 1e-9);
    EXPECT_NEAR(two.meanPlane.dip, 65, 1e-9);

    // Axes across the primitive: (0, 5) and (180, 5) are 10 degrees apart through the horizontal north.
    const FisherMean across = fisherMean({toVector({0, 5}), toVector({180, 5})});
    EXPECT_NEAR(std::fabs(across.mean.x), 1, 1e-9);
    EXPECT_NEAR(across.cone95, 21.96338, 1e-4);
    EXPECT_FALSE(fisherMean({}).valid);
}

TEST(Scene, StereonetAndRoseOfThreePlanes)
{
    const std::vector<Plane> planes{{90, 30}, {90, 30}, {80, 30}};
    StereonetOptions options;
    options.greatCircles = true;
    options.gridSize = 41;
    const StereonetScene net = stereonetScene(planes, options);
    ASSERT_EQ(net.poles.size(), 3u);
    // Strike 90 dip 30: the pole due north at sqrt(2) sin(15 degrees).
    EXPECT_NEAR(std::hypot(net.poles[0].x, net.poles[0].y - std::sqrt(2.0) * std::sin(radians(15))), 0,
                1e-12);
    EXPECT_EQ(net.greatCircles.size(), 3u);
    EXPECT_EQ(net.meanCone.size(), 1u);
    ASSERT_FALSE(net.density.empty());
    EXPECT_LT(net.density.front().level, net.density.back().level);
    const RoseDiagram rose = strikeRose(planes);
    EXPECT_EQ(rose.counts[9], 2);
    EXPECT_EQ(rose.counts[8], 1);
}

} // namespace
} // namespace kestro::views
