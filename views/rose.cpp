// views/rose.cpp: strike binning, petals and the axial mean.
#include "views/rose.h"

#include <algorithm>
#include <cmath>

namespace kestro::views {

RoseDiagram roseDiagram(const std::vector<double>& strikes, double binWidth, PetalScale scale)
{
    RoseDiagram rose;
    const double bins180 = 180 / binWidth;
    if (!(binWidth > 0) || std::fabs(bins180 - std::round(bins180)) > 1e-9) binWidth = 10;
    rose.binWidth = binWidth;
    const int bins = static_cast<int>(std::lround(360 / binWidth));
    rose.counts.assign(static_cast<std::size_t>(bins), 0);
    double sumSin = 0, sumCos = 0;
    for (double strike : strikes) {
        const double axial = std::fmod(normalized360(strike), 180.0);
        const int bin = std::min(static_cast<int>(axial / binWidth), bins / 2 - 1);
        ++rose.counts[static_cast<std::size_t>(bin)];
        ++rose.counts[static_cast<std::size_t>(bin + bins / 2)];
        sumSin += std::sin(radians(2 * axial));
        sumCos += std::cos(radians(2 * axial));
    }
    rose.largest = *std::max_element(rose.counts.begin(), rose.counts.end());
    for (int bin = 0; bin < bins && rose.largest > 0; ++bin) {
        const int count = rose.counts[static_cast<std::size_t>(bin)];
        if (count == 0) continue;
        const double ratio = static_cast<double>(count) / rose.largest;
        const double r = scale == PetalScale::equalArea ? std::sqrt(ratio) : ratio;
        Polyline petal{{0, 0}};
        const int steps = std::max(2, static_cast<int>(binWidth));
        for (int s = 0; s <= steps; ++s) {
            const double a = radians(bin * binWidth + binWidth * s / steps);
            petal.push_back({r * std::sin(a), r * std::cos(a)});
        }
        petal.push_back({0, 0});
        rose.petals.push_back(std::move(petal));
    }
    if (!strikes.empty()) {
        rose.hasMean = true;
        rose.meanLength = std::hypot(sumSin, sumCos) / static_cast<double>(strikes.size());
        rose.meanStrike = std::fmod(normalized360(degrees(std::atan2(sumSin, sumCos)) / 2), 180.0);
        const double a = radians(rose.meanStrike);
        rose.meanAxis = {{-std::sin(a), -std::cos(a)}, {std::sin(a), std::cos(a)}};
    }
    return rose;
}

} // namespace kestro::views
