// views/tests/rose_test.cpp: bidirectional bins, petal radii and the axial mean strike.
#include "views/rose.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numeric>
#include <tuple>

namespace kestro::views {
namespace {

TEST(Rose, StrikesCountInTheirBinAndTheOpposite)
{
    const RoseDiagram rose = roseDiagram({10, 190, 15, 0, 359.9, -5, 90});
    const std::vector<std::pair<int, int>> counts{{0, 1},  {1, 3},  {9, 1},  {17, 2},
                                                  {18, 1}, {19, 3}, {27, 1}, {35, 2}};
    for (const auto& [bin, count] : counts)
        EXPECT_EQ(rose.counts[static_cast<std::size_t>(bin)], count) << bin;
    EXPECT_EQ(std::accumulate(rose.counts.begin(), rose.counts.end(), 0), 14);
    EXPECT_EQ(roseDiagram({10}, 30).counts.size(), 12u);
    EXPECT_EQ(roseDiagram({10}, 7).binWidth, 10);
}

TEST(Rose, PetalRadiusByAreaOrLength)
{
    for (const auto& [scale, radius] :
         {std::pair{PetalScale::equalArea, 0.5}, std::pair{PetalScale::linear, 0.25}}) {
        const RoseDiagram rose = roseDiagram({5, 5, 5, 5, 95}, 10, scale);
        ASSERT_EQ(rose.petals.size(), 4u);
        // North up: the first petal starts on the north axis with the full radius.
        EXPECT_NEAR(std::hypot(rose.petals[0][1].x, rose.petals[0][1].y - 1), 0, 1e-12);
        EXPECT_NEAR(std::hypot(rose.petals[1][1].x, rose.petals[1][1].y), radius, 1e-12);
    }
}

TEST(Rose, AxialMeanStrike)
{
    // strikes, their mean (-1: none) and the mean resultant length
    const std::tuple<std::vector<double>, double, double> cases[]{
        {{170, 10}, 0, std::cos(radians(20))}, // not 90: strikes are axes
        {{350, 30}, 10, std::cos(radians(40))},
        {{80, 260}, 80, 1},
        {{0, 45, 90, 135}, -1, 0},
    };
    for (const auto& [strikes, mean, length] : cases) {
        const RoseDiagram rose = roseDiagram(strikes);
        EXPECT_NEAR(rose.meanLength, length, 1e-12) << strikes[1];
        if (mean >= 0) {
            EXPECT_NEAR(std::fmod(rose.meanStrike + 0.5, 180) - 0.5, mean, 1e-9) << strikes[1];
        }
    }
    EXPECT_FALSE(roseDiagram({}).hasMean);
}

} // namespace
} // namespace kestro::views
