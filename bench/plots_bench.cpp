// bench/plots_bench.cpp: the polar and contour plot windows under the offscreen platform.
//
//  1. Contour plot whose canvas is 1000 x 1000 pixels, from a cheap data function: time from the
//     write to the first finished picture, image alone and image with contour lines.
//  2. Export of that plot to PNG and PDF on the shared page.
//  3. Polar plot of 100,000 points on one continuous trace: a full repaint of the canvas.
// Each figure is the median of several runs.
#include "zel/content/contourplot.h"
#include "zel/content/polarplot.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <QTest>

#include <qwt_plot_canvas.h>

#include <algorithm>
#include <atomic>
#include <cmath>
#include <cstdio>
#include <ctime>
#include <thread>
#include <vector>

namespace {

std::atomic<long> samples{0};

double field(double* x, double* y)
{
    samples.fetch_add(1, std::memory_order_relaxed);
    return std::sin(*x * 0.01) * std::cos(*y * 0.013);
}

double cpuMs(clockid_t clock)
{
    timespec t{};
    clock_gettime(clock, &t);
    return t.tv_sec * 1e3 + t.tv_nsec / 1e6;
}

// Median wall time of `runs` calls; `cpu` gets the median CPU time of `clock` (this thread, or
// all threads of the process), which a busy machine disturbs less.
template <typename Run>
double medianMs(int runs, Run run, double* cpu = nullptr, clockid_t clock = CLOCK_THREAD_CPUTIME_ID)
{
    std::vector<double> ms, cpuTimes;
    for (int i = 0; i < runs; ++i) {
        QElapsedTimer timer;
        const double cpu0 = cpuMs(clock);
        timer.start();
        run();
        ms.push_back(timer.nsecsElapsed() / 1e6);
        cpuTimes.push_back(cpuMs(clock) - cpu0);
    }
    std::sort(ms.begin(), ms.end());
    std::sort(cpuTimes.begin(), cpuTimes.end());
    if (cpu) *cpu = cpuTimes[cpuTimes.size() / 2];
    return ms[ms.size() / 2];
}

QMap<QString, QVariant> contourProperties()
{
    return {{"rightAxisName", "z"},
            {"xmin", 0.0},
            {"xmax", 999.0},
            {"ymin", 0.0},
            {"ymax", 999.0},
            {"zmin", -1.0},
            {"zmax", 1.0},
            {"colorList", QVariantList{0x0000ffu, 0x00ffffu, 0xffff00u, 0xff0000u}},
            {"threshList", QVariantList{0.0, 0.3, 0.7, 1.0}},
            {"contourList", QVariantList{-0.5, 0.0, 0.5, 1.0}}};
}

void benchContour(bool contourLines)
{
    ContourPlot plot(1);
    plot.setChartSettings({{"showImageBlend", 1}, {"showContourLines", contourLines ? 1 : 0}});
    plot.show();
    QTest::qWaitForWindowExposed(&plot);
    // Grow the window until its canvas holds 1000 x 1000 pixels.
    plot.setChartData(contourProperties(), reinterpret_cast<void*>(field));
    for (int i = 0; i < 3; ++i) {
        const QSize canvas = plot.canvas()->contentsRect().size();
        plot.resize(plot.size() + QSize(1000, 1000) - canvas);
        QApplication::processEvents();
    }
    const QSize canvas = plot.canvas()->contentsRect().size();
    samples = 0;
    double cpu = 0;
    const double first = medianMs(
        5,
        [&] {
            plot.setChartData(contourProperties(), reinterpret_cast<void*>(field));
            plot.canvas()->repaint();
        },
        &cpu, CLOCK_PROCESS_CPUTIME_ID);
    std::printf("contour %s, canvas %dx%d: first picture %.1f ms (%.1f ms CPU, all threads; %.2f million "
                "samples a picture)\n",
                contourLines ? "image + lines" : "image", canvas.width(), canvas.height(), first, cpu,
                samples / 5 / 1e6);
    if (contourLines) return;
    QTemporaryDir dir;
    for (const char* suffix : {".png", ".pdf"}) {
        const QString name = dir.filePath(QStringLiteral("contour") + suffix);
        const double ms = medianMs(
            5, [&] { plot.exportChart(name); }, &cpu, CLOCK_PROCESS_CPUTIME_ID);
        std::printf("contour export %s (300 x 200 mm at 85 dpi): %.1f ms (%.1f ms CPU, all threads)\n",
                    suffix, ms, cpu);
    }
}

void benchPolar()
{
    PolarPlot plot(2);
    plot.resize(900, 700);
    plot.show();
    QTest::qWaitForWindowExposed(&plot);
    std::vector<double> rows;
    const int points = 100000;
    for (int i = 0; i < points; ++i) {
        rows.push_back(std::fmod(i * 0.36, 360.0));
        rows.push_back(i * 1e-4);
    }
    const QMap<QString, QVariant> properties{{"curveLabel", "joints"}, {"curveColor", 0xffa000u},
                                             {"curveLineWidth", 1},    {"dotColor", 0xffff00u},
                                             {"dotSize", 5},           {"symbolStyle", 0}};
    plot.setChartData(properties, rows.data(), QStringLiteral("REAL*8"), points, 2);
    QApplication::processEvents();
    double cpu = 0;
    const double ms = medianMs(
        9,
        [&] {
            plot.replot();
            plot.canvas()->repaint();
        },
        &cpu);
    std::printf("polar, %d points on a spiral of 100 turns, lines and dots, canvas %dx%d: repaint %.1f ms "
                "(%.1f ms on the CPU)\n",
                points, plot.canvas()->width(), plot.canvas()->height(), ms, cpu);
}

} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    std::printf("%u hardware threads\n", std::thread::hardware_concurrency());
    benchContour(false);
    benchContour(true);
    benchPolar();
    return 0;
}
