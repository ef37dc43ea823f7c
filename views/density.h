// views/density.h: Kamb density of poles with exponential weighting on a square grid over the net,
// and its filled contours as polygons.
#pragma once

#include "views/stereonet.h"

#include <cstddef>
#include <vector>

namespace kestro::views {

// Weighting of n poles: a pole at angle t from a node weighs exp(k (|cos t| - 1)), with
// k = 2 (1 + n / sigma^2). For n uniformly spread axes the sum has the mean n / k and the standard
// deviation `sd`; densities are given in multiples of `sd`, so a uniform spread stands near sigma.
struct KambWeighting
{
    double k = 0;
    double mean = 0; // expected sum for a uniform spread
    double sd = 0;   // its standard deviation
};
KambWeighting kambWeighting(std::size_t count, double sigma = 3);

// Values on n x n nodes covering the square [-1, 1] x [-1, 1] of the net, row by row from the
// south (y = -1) and each row from the west. Nodes beyond the primitive stand for the upper
// hemisphere, which for axes is the lower one mirrored: contours run on smoothly across the primitive.
struct NetGrid
{
    int size = 0;
    std::vector<double> values;
    double coordinate(int index) const { return -1 + 2.0 * index / (size - 1); }
    double at(int column, int row) const { return values[static_cast<std::size_t>(row) * size + column]; }
};

// The density of unit poles at every node, in multiples of the uniform standard deviation. Poles
// are looked up in direction cells around each node, so that those whose weight is below 1e-4 / k
// there are skipped: the sum differs from the direct one by less than 1e-4 of the uniform mean.
// Nodes more than two node spacings beyond the primitive, which no drawing shows, hold 0.
NetGrid densityGrid(const std::vector<Vec3>& poles, int size, double sigma = 3);
// The same by the plain sum over all poles at every node: the reference, slow for many poles.
NetGrid densityGridDirect(const std::vector<Vec3>& poles, int size, double sigma = 3);
// The density at one direction, by the plain sum.
double densityAt(const std::vector<Vec3>& poles, const Vec3& node, const KambWeighting& weighting);

// The region where the density is at least `level`: closed rings to fill by the even-odd rule.
// Rings may reach past the primitive: clip the drawing to the primitive circle.
struct FilledContour
{
    double level = 0;
    std::vector<Polyline> rings;
};
// Levels every `step` multiples of the standard deviation from `step` up to the grid's maximum.
std::vector<double> contourLevels(const NetGrid& grid, double step = 2);
// Marching squares on the grid; the grid's border counts as below every level, so every ring closes.
std::vector<FilledContour> filledContours(const NetGrid& grid, const std::vector<double>& levels);

} // namespace kestro::views
