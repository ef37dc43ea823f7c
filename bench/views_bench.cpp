// bench/views_bench.cpp: the stereonet of a million planes from a results file, and the density
// sum through direction cells against the plain sum over all poles.
//
// Writes a results file of 1,000,000 converted records (three clusters and a uniform spread), then
// times read + project + 200 x 200 density + filled contours + mean, median of five runs; then the
// density of 100,000 planes on a 40 x 40 grid both ways. Wall-clock and CPU times: on a shared
// machine the CPU time of this single-threaded process is the steadier figure.
#include "views/density.h"
#include "views/readers.h"
#include "views/scene.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <random>
#include <string>
#include <unistd.h>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;
using namespace kestro::views;

double median(std::vector<double> v)
{
    std::sort(v.begin(), v.end());
    return v[v.size() / 2];
}

double secondsSince(Clock::time_point start)
{
    return std::chrono::duration<double>(Clock::now() - start).count();
}

double cpuSeconds()
{
    timespec t{};
    ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &t);
    return static_cast<double>(t.tv_sec) + 1e-9 * static_cast<double>(t.tv_nsec);
}

// Runs `work` `runs` times; medians of wall-clock and CPU seconds.
template <typename Work> std::pair<double, double> timed(int runs, Work work)
{
    std::vector<double> wall, cpu;
    for (int run = 0; run < runs; ++run) {
        const auto start = Clock::now();
        const double startCpu = cpuSeconds();
        work();
        cpu.push_back(cpuSeconds() - startCpu);
        wall.push_back(secondsSince(start));
    }
    return {median(wall), median(cpu)};
}

std::vector<Plane> randomPlanes(std::size_t count)
{
    std::mt19937 random(3);
    std::normal_distribution<double> normal;
    const Line centres[]{{40, 30}, {200, 70}, {300, 10}};
    std::vector<Plane> planes;
    for (std::size_t i = 0; i < count; ++i) {
        Vec3 v;
        if (i % 10 < 3) {
            v = {normal(random), normal(random), normal(random)};
        } else {
            const Vec3 c = toVector(centres[i % 3]);
            const double s = 0.15;
            v = {c.x + s * normal(random), c.y + s * normal(random), c.z + s * normal(random)};
        }
        planes.push_back(planeOfPole(toLine(unit(v))));
    }
    return planes;
}

// Numerical strike records: dip along the dip direction, strike as the second direction.
void writeResults(const std::string& path, const std::vector<Plane>& planes)
{
    std::FILE* f = std::fopen(path.c_str(), "w");
    std::fprintf(f, "'Bench campaign'\tinput file = bench_in.txt   kestrometry 5.1\n"
                    "'dipa1'\t'dipdir1'\t'dipa2'\t'dipdir2'\t'strike'\t'dip'\t'comment'\n");
    for (const Plane& p : planes)
        std::fprintf(f, "%6.1f\t%6.1f\t%6.1f\t%6.1f\t%6.1f\t%6.1f\t \n", p.dip, dipDirection(p), 0.0,
                     p.strike, p.strike, p.dip);
    std::fclose(f);
}

} // namespace

int main()
{
    const char* tmp = std::getenv("TMPDIR");
    const std::string path = std::string(tmp && *tmp ? tmp : "/tmp") + "/kestro_views_bench_" +
                             std::to_string(::getpid()) + ".txt";
    writeResults(path, randomPlanes(1000000));

    std::size_t read = 0, rings = 0;
    const auto [wall, cpu] = timed(5, [&] {
        const ReadResult r = readPlanes(path);
        std::vector<Plane> planes;
        planes.reserve(r.planes.size());
        for (const PlaneRecord& p : r.planes)
            planes.push_back(p.plane);
        const StereonetScene scene = stereonetScene(planes);
        read = planes.size();
        rings = 0;
        for (const FilledContour& c : scene.density)
            rings += c.rings.size();
    });
    std::remove(path.c_str());
    std::printf("stereonet of %zu planes from a results file (read, poles projected, 200 x 200 density,\n"
                "  %zu contour rings, mean): median of 5 %.3f s wall-clock, %.3f s CPU (goal <= 2 s)\n",
                read, rings, wall, cpu);

    std::vector<Vec3> poles;
    for (const Plane& p : randomPlanes(100000))
        poles.push_back(poleVector(p));
    const auto fast = timed(5, [&] { densityGrid(poles, 40); });
    const auto direct = timed(3, [&] { densityGridDirect(poles, 40); });
    std::printf("density of 100000 planes on 40 x 40 nodes: direction cells %.4f s, plain sum %.3f s (CPU,\n"
                "  medians of 5 and 3): %.0f times faster (goal >= 50)\n",
                fast.second, direct.second, direct.second / fast.second);
}
