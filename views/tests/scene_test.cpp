// views/tests/scene_test.cpp: what a drawing surface gets for a few planes.
#include "views/scene.h"

#include <gtest/gtest.h>

#include <cmath>

namespace kestro::views {
namespace {

TEST(Scene, StereonetAndRoseOfThreePlanes)
{
    StereonetOptions options;
    options.greatCircles = true;
    options.gridSize = 41;
    const StereonetScene net = stereonetScene({{90, 30}, {90, 30}, {80, 30}}, options);
    ASSERT_EQ(net.poles.size(), 3u);
    // Strike 90 dip 30: the pole due north at sqrt(2) sin(15 degrees).
    EXPECT_NEAR(net.poles[0].x, 0, 1e-12);
    EXPECT_NEAR(net.poles[0].y, std::sqrt(2.0) * std::sin(radians(15)), 1e-12);
    EXPECT_EQ(net.greatCircles.size(), 3u);
    EXPECT_EQ(net.meanCone.size(), 1u);
    ASSERT_FALSE(net.density.empty());
    EXPECT_LT(net.density.front().level, net.density.back().level);
    const RoseDiagram rose = strikeRose({{90, 30}, {90, 30}, {80, 30}});
    EXPECT_EQ(rose.counts[9], 2);
    EXPECT_EQ(rose.counts[8], 1);
}

} // namespace
} // namespace kestro::views
