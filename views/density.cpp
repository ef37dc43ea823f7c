// views/density.cpp: exponential Kamb density, looked up by direction cells, and marching squares.
#include "views/density.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

namespace kestro::views {

KambWeighting kambWeighting(std::size_t count, double sigma)
{
    KambWeighting w;
    const double n = static_cast<double>(count);
    w.k = 2 * (1 + n / (sigma * sigma));
    // |cos t| of a uniformly spread axis is uniform on [0, 1].
    const double mean1 = -std::expm1(-w.k) / w.k;
    const double square1 = -std::expm1(-2 * w.k) / (2 * w.k);
    w.mean = n * mean1;
    w.sd = std::sqrt(std::max(n * (square1 - mean1 * mean1), 0.0));
    return w;
}

double densityAt(const std::vector<Vec3>& poles, const Vec3& node, const KambWeighting& weighting)
{
    double sum = 0;
    for (const Vec3& p : poles)
        sum += std::exp(weighting.k * (std::fabs(dot(node, p)) - 1));
    return sum;
}

namespace {

NetGrid emptyGrid(int size)
{
    NetGrid grid;
    grid.size = std::max(size, 2);
    grid.values.assign(static_cast<std::size_t>(grid.size) * grid.size, 0.0);
    return grid;
}

// Poles sorted into cubic cells of side `side` over [-1, 1]^3, by the end in the lower hemisphere.
class DirectionCells
{
public:
    DirectionCells(const std::vector<Vec3>& poles, int cellsPerAxis) : n_(cellsPerAxis), side_(2.0 / n_)
    {
        std::vector<std::size_t> cellOf(poles.size());
        start_.assign(static_cast<std::size_t>(n_) * n_ * n_ + 1, 0);
        for (std::size_t i = 0; i < poles.size(); ++i) {
            const Vec3& p = poles[i];
            cellOf[i] = index(cell(p.x), cell(p.y), cell(p.z));
            ++start_[cellOf[i] + 1];
        }
        for (std::size_t c = 1; c < start_.size(); ++c)
            start_[c] += start_[c - 1];
        std::vector<std::size_t> next(start_.begin(), start_.end() - 1);
        sorted_.resize(poles.size());
        for (std::size_t i = 0; i < poles.size(); ++i)
            sorted_[next[cellOf[i]]++] = poles[i];
    }

    // Sum of exp(k (|u.p| - 1)) over the poles in the 27 cells around u, terms below `floor` left out.
    double sumAround(const Vec3& u, double k, double logFloor) const
    {
        const int cx = cell(u.x), cy = cell(u.y), cz = cell(u.z);
        double sum = 0;
        for (int x = std::max(cx - 1, 0); x <= std::min(cx + 1, n_ - 1); ++x)
            for (int y = std::max(cy - 1, 0); y <= std::min(cy + 1, n_ - 1); ++y) {
                const int z0 = std::max(cz - 1, 0), z1 = std::min(cz + 1, n_ - 1);
                // Cells of one x and y lie next to each other: one run for the z range.
                const std::size_t from = start_[index(x, y, z0)], to = start_[index(x, y, z1) + 1];
                for (std::size_t i = from; i < to; ++i) {
                    const double t = k * (std::fabs(dot(u, sorted_[i])) - 1);
                    if (t > logFloor) sum += std::exp(t);
                }
            }
        return sum;
    }

private:
    int cell(double coordinate) const
    {
        return std::clamp(static_cast<int>(std::floor((coordinate + 1) / side_)), 0, n_ - 1);
    }
    std::size_t index(int x, int y, int z) const
    {
        return (static_cast<std::size_t>(x) * n_ + static_cast<std::size_t>(y)) * n_ +
               static_cast<std::size_t>(z);
    }

    int n_;
    double side_;
    std::vector<std::size_t> start_;
    std::vector<Vec3> sorted_;
};

std::vector<Vec3> lowerUnitPoles(const std::vector<Vec3>& poles)
{
    std::vector<Vec3> lower;
    lower.reserve(poles.size());
    for (const Vec3& p : poles) {
        const Vec3 u = unit(p);
        lower.push_back(u.z < 0 ? Vec3{-u.x, -u.y, -u.z} : u);
    }
    return lower;
}

// Sets every node within two node spacings beyond the primitive to value(direction of the node).
template <typename Value> void forEachNode(NetGrid& grid, Value value)
{
    const double reach = 1 + 2 * (grid.coordinate(1) - grid.coordinate(0));
    for (int row = 0; row < grid.size; ++row)
        for (int column = 0; column < grid.size; ++column) {
            const NetPoint node{grid.coordinate(column), grid.coordinate(row)};
            if (node.x * node.x + node.y * node.y <= reach * reach)
                grid.values[static_cast<std::size_t>(row) * grid.size + column] = value(unproject(node));
        }
}

} // namespace

NetGrid densityGridDirect(const std::vector<Vec3>& poles, int size, double sigma)
{
    NetGrid grid = emptyGrid(size);
    const KambWeighting w = kambWeighting(poles.size(), sigma);
    if (poles.empty()) return grid;
    const std::vector<Vec3> lower = lowerUnitPoles(poles);
    forEachNode(grid, [&](const Vec3& u) { return densityAt(lower, u, w) / w.sd; });
    return grid;
}

NetGrid densityGrid(const std::vector<Vec3>& poles, int size, double sigma)
{
    const KambWeighting w = kambWeighting(poles.size(), sigma);
    // Beyond a chord h from a node a pole weighs less than exp(-k h^2 / 2) = floor.
    const double logFloor = std::log(1e-4 / w.k);
    const double chord = std::sqrt(-2 * logFloor / w.k);
    const int cellsPerAxis = std::min(128, static_cast<int>(std::floor(2 / chord)));
    // Coarse cells would let the neighbourhoods of a node and of its opposite overlap.
    if (cellsPerAxis < 8) return densityGridDirect(poles, size, sigma);
    NetGrid grid = emptyGrid(size);
    const DirectionCells cells(lowerUnitPoles(poles), cellsPerAxis);
    const double reach = 1 + 2 * (grid.coordinate(1) - grid.coordinate(0));
    for (int row = 0; row < grid.size; ++row)
        for (int column = 0; column < grid.size; ++column) {
            const NetPoint node{grid.coordinate(column), grid.coordinate(row)};
            if (node.x * node.x + node.y * node.y > reach * reach) continue;
            const Vec3 u = unproject(node);
            const double sum =
                cells.sumAround(u, w.k, logFloor) + cells.sumAround({-u.x, -u.y, -u.z}, w.k, logFloor);
            grid.values[static_cast<std::size_t>(row) * grid.size + column] = sum / w.sd;
        }
    return grid;
}

std::vector<double> contourLevels(const NetGrid& grid, double step)
{
    double top = 0;
    for (double v : grid.values)
        top = std::max(top, v);
    while (top / step > 10)
        step *= 2;
    std::vector<double> levels;
    for (double level = step; level <= top; level += step)
        levels.push_back(level);
    return levels;
}

namespace {

// Edges of one cell, in the order bottom, right, top, left; per case up to two segments.
enum Edge { bottom, right, top, left };
constexpr std::array<std::array<int, 4>, 16> segmentsOf{{
    {-1, -1, -1, -1},
    {left, bottom, -1, -1},
    {bottom, right, -1, -1},
    {left, right, -1, -1},
    {right, top, -1, -1},
    {left, bottom, right, top}, // saddle, centre below: the inside corners cut off
    {bottom, top, -1, -1},
    {left, top, -1, -1},
    {top, left, -1, -1},
    {bottom, top, -1, -1},
    {bottom, right, top, left}, // saddle, centre below
    {right, top, -1, -1},
    {left, right, -1, -1},
    {bottom, right, -1, -1},
    {left, bottom, -1, -1},
    {-1, -1, -1, -1},
}};

std::vector<Polyline> ringsAt(const NetGrid& grid, double level)
{
    // Padded by one node all round, whose value is below every level.
    const int m = grid.size + 2;
    const double below = -std::numeric_limits<double>::infinity();
    auto value = [&](int i, int j) {
        return (i == 0 || j == 0 || i == m - 1 || j == m - 1) ? below : grid.at(i - 1, j - 1);
    };
    auto position = [&](int i, int j) {
        return NetPoint{grid.coordinate(std::clamp(i - 1, 0, grid.size - 1)),
                        grid.coordinate(std::clamp(j - 1, 0, grid.size - 1))};
    };
    const std::size_t edgeCount = 2 * static_cast<std::size_t>(m) * m;
    std::vector<int> vertexOfEdge(edgeCount, -1);
    std::vector<NetPoint> vertices;
    std::vector<std::array<int, 2>> links;
    auto vertex = [&](int i, int j, bool vertical) {
        const std::size_t id =
            (vertical ? static_cast<std::size_t>(m) * m : 0) + static_cast<std::size_t>(j) * m + i;
        if (vertexOfEdge[id] < 0) {
            const int i2 = vertical ? i : i + 1, j2 = vertical ? j + 1 : j;
            const double a = value(i, j), b = value(i2, j2);
            const NetPoint pa = position(i, j), pb = position(i2, j2);
            double t = 0.5;
            if (a == below)
                t = 1;
            else if (b == below)
                t = 0;
            else if (b != a)
                t = (level - a) / (b - a);
            vertexOfEdge[id] = static_cast<int>(vertices.size());
            vertices.push_back({pa.x + t * (pb.x - pa.x), pa.y + t * (pb.y - pa.y)});
            links.push_back({-1, -1});
        }
        return vertexOfEdge[id];
    };
    auto link = [&](int a, int b) {
        links[static_cast<std::size_t>(a)][links[static_cast<std::size_t>(a)][0] < 0 ? 0 : 1] = b;
        links[static_cast<std::size_t>(b)][links[static_cast<std::size_t>(b)][0] < 0 ? 0 : 1] = a;
    };
    for (int j = 0; j + 1 < m; ++j)
        for (int i = 0; i + 1 < m; ++i) {
            const double bl = value(i, j), br = value(i + 1, j), tr = value(i + 1, j + 1),
                         tl = value(i, j + 1);
            int kind = (bl >= level) | (br >= level) << 1 | (tr >= level) << 2 | (tl >= level) << 3;
            if (kind == 0 || kind == 15) continue;
            const std::array<int, 4>* edges = &segmentsOf[static_cast<std::size_t>(kind)];
            // A saddle whose centre is inside joins its inside corners: cut off the outside ones.
            static constexpr std::array<int, 4> joined5{left, top, bottom, right},
                joined10{left, bottom, right, top};
            if ((kind == 5 || kind == 10) && (bl + br + tr + tl) / 4 >= level)
                edges = kind == 5 ? &joined5 : &joined10;
            auto at = [&](int edge) {
                switch (edge) {
                case bottom:
                    return vertex(i, j, false);
                case top:
                    return vertex(i, j + 1, false);
                case left:
                    return vertex(i, j, true);
                default:
                    return vertex(i + 1, j, true);
                }
            };
            for (int s = 0; s < 4 && (*edges)[static_cast<std::size_t>(s)] >= 0; s += 2)
                link(at((*edges)[static_cast<std::size_t>(s)]),
                     at((*edges)[static_cast<std::size_t>(s) + 1]));
        }
    std::vector<Polyline> rings;
    std::vector<char> visited(vertices.size(), 0);
    for (std::size_t start = 0; start < vertices.size(); ++start) {
        if (visited[start]) continue;
        Polyline ring;
        int current = static_cast<int>(start);
        while (current >= 0 && !visited[static_cast<std::size_t>(current)]) {
            visited[static_cast<std::size_t>(current)] = 1;
            ring.push_back(vertices[static_cast<std::size_t>(current)]);
            const std::array<int, 2>& l = links[static_cast<std::size_t>(current)];
            current = (l[0] >= 0 && !visited[static_cast<std::size_t>(l[0])]) ? l[0] : l[1];
        }
        ring.push_back(ring.front());
        rings.push_back(std::move(ring));
    }
    return rings;
}

} // namespace

std::vector<FilledContour> filledContours(const NetGrid& grid, const std::vector<double>& levels)
{
    std::vector<FilledContour> contours;
    for (double level : levels)
        contours.push_back({level, ringsAt(grid, level)});
    return contours;
}

} // namespace kestro::views
