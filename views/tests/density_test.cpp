// views/tests/density_test.cpp: Kamb densities of uniform and clustered poles, the fast sum against
// the plain one, and filled contours of known surfaces.
#include "views/density.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>

namespace kestro::views {
namespace {

// Uniform axes, and a cluster spread about `centre` by `spread` degrees (normal in each direction).
std::vector<Vec3> poles(std::size_t uniform, std::size_t clustered, Line centre, double spread)
{
    std::mt19937 random(7);
    std::normal_distribution<double> normal;
    std::vector<Vec3> result;
    for (std::size_t i = 0; i < uniform; ++i)
        result.push_back(unit({normal(random), normal(random), normal(random)}));
    const Vec3 c = toVector(centre);
    const double s = radians(spread);
    for (std::size_t i = 0; i < clustered; ++i)
        result.push_back(
            unit({c.x + s * normal(random), c.y + s * normal(random), c.z + s * normal(random)}));
    return result;
}

TEST(Kamb, UniformSpreadStandsAtSigmaStandardDeviations)
{
    for (std::size_t n : {1000u, 1000000u}) {
        const KambWeighting w = kambWeighting(n, 3);
        EXPECT_NEAR(w.mean / w.sd, 3, 1e-6) << n;
    }
    const NetGrid grid = densityGrid(poles(20000, 0, {}, 0), 31);
    for (int row = 0; row < grid.size; ++row)
        for (int column = 0; column < grid.size; ++column)
            if (std::hypot(grid.coordinate(column), grid.coordinate(row)) <= 1) {
                EXPECT_NEAR(grid.at(column, row), 3, 4.5) << column << ' ' << row;
            }
}

TEST(Kamb, FastSumEqualsThePlainOneAndPeaksAtTheCluster)
{
    // A cluster on the primitive checks that the lookup finds poles behind it as well.
    for (const Line centre : {Line{120, 40}, Line{75, 2}, Line{0, 88}}) {
        const std::vector<Vec3> p = poles(6000, 6000, centre, 3);
        const NetGrid fast = densityGrid(p, 41), direct = densityGridDirect(p, 41);
        for (std::size_t i = 0; i < fast.values.size(); ++i)
            ASSERT_NEAR(fast.values[i], direct.values[i], 1e-3 * std::max(direct.values[i], 1.0)) << i;
        const NetGrid fine = densityGrid(p, 101);
        const auto top = std::max_element(fine.values.begin(), fine.values.end()) - fine.values.begin();
        const NetPoint node{fine.coordinate(static_cast<int>(top % fine.size)),
                            fine.coordinate(static_cast<int>(top / fine.size))};
        // Within about one node spacing (1.2 degrees of the net here), on either side of the primitive.
        EXPECT_LT(degrees(std::acos(std::fabs(dot(unproject(node), toVector(centre))))), 2.0) << centre.trend;
        EXPECT_GT(fine.values[static_cast<std::size_t>(top)], 20) << centre.trend;
    }
}

NetGrid surface(int size, double (*f)(double, double))
{
    NetGrid grid{size, {}};
    for (int row = 0; row < size; ++row)
        for (int column = 0; column < size; ++column)
            grid.values.push_back(f(grid.coordinate(column), grid.coordinate(row)));
    return grid;
}

TEST(Contours, RingsCloseAroundEachRegion)
{
    // A cone of height 10 about (0.3, 0.2): level 5 is a circle of radius 0.25.
    const NetGrid cone =
        surface(81, [](double x, double y) { return 10 - 20 * std::hypot(x - 0.3, y - 0.2); });
    const std::vector<FilledContour> one = filledContours(cone, {5});
    ASSERT_EQ(one[0].rings.size(), 1u);
    const Polyline& ring = one[0].rings[0];
    EXPECT_EQ(ring.front().x, ring.back().x);
    for (const NetPoint& q : ring)
        EXPECT_NEAR(std::hypot(q.x - 0.3, q.y - 0.2), 0.25, 0.01);

    // Two peaks apart, and a surface high on the grid's border: that ring runs along the border.
    const NetGrid twin = surface(61, [](double x, double y) {
        return std::max(1 - 8 * std::hypot(x - 0.5, y), 1 - 8 * std::hypot(x + 0.5, y));
    });
    EXPECT_EQ(filledContours(twin, {0.5})[0].rings.size(), 2u);
    const NetGrid rim = surface(21, [](double x, double y) { return x * x + y * y; });
    EXPECT_EQ(filledContours(rim, {0.25})[0].rings.size(), 2u); // the border, and the hole about the centre
    EXPECT_EQ(contourLevels(rim, 0.5), (std::vector<double>{0.5, 1, 1.5, 2}));
}

} // namespace
} // namespace kestro::views
