// bench/xyplot_bench.cpp: the XY plot's figures under the offscreen platform, medians of 7 runs.
//
//  1. ZEL_writeXYPlot of 1,000,000 REAL*8 (x, y) points from the program thread: call to return.
//     The curve has a line and an ellipse on every point.
//  2. A full replot of that curve in the window as shown: replot and paint of the canvas.
//  3. Export of the plot as PNG (300 x 200 mm at 85 dpi).
//  4. 10,000 write-and-clear cycles of 1,000 points on one plot: resident memory after 1,000 and
//     after 10,000 cycles.
#include "runtime/testing.h"
#include "zel/content/xyplot.h"
#include "zel/core/environment.h"
#include "zel/core/windowcontroller.h"
#include "zel/core/zel.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QTemporaryDir>

#include <qwt_plot_canvas.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <unistd.h>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;
constexpr int runs = 7;
constexpr int bigPoints = 1000000;
constexpr int cycles = 10000;

std::atomic<int> plotUnit{0};
std::atomic<int> phase{0}; // program: 1 big writes done, 2 cycles done; GUI: 10 go on with cycles
std::vector<double> writeMs;
std::atomic<long> rssAfter1000{0}, rssAfterAll{0};

long residentKb()
{
    long pages = 0, resident = 0;
    if (FILE* f = std::fopen("/proc/self/statm", "r")) {
        if (std::fscanf(f, "%ld %ld", &pages, &resident) != 2) resident = 0;
        std::fclose(f);
    }
    return resident * (sysconf(_SC_PAGESIZE) / 1024);
}

double median(std::vector<double> v)
{
    std::sort(v.begin(), v.end());
    return v.empty() ? 0.0 : v[v.size() / 2];
}

long write(int unit, std::vector<double>& xy, int rows)
{
    char type[] = "REAL*8", label[] = "signal";
    int size = 8, columns = 2, fitted = 0, width = 1, dot = 3, style = 0; // lines and ellipses
    unsigned color = 0x204080, dotColor = 0x802020;
    return ZEL_writeXYPlot(&unit, xy.data(), type, &size, &rows, &columns, &fitted, label, &color, &width,
                           &dotColor, &dot, &style, -1, -1);
}

void program()
{
    int unit = 0;
    char title[] = "Bench", x[] = "x", y[] = "y";
    ZEL_createXYPlot(&unit, title, x, y, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                     nullptr, nullptr, nullptr, nullptr, -1, -1, -1);
    std::vector<double> xy(2 * bigPoints);
    for (int i = 0; i < bigPoints; ++i) {
        xy[2 * i] = i * 0.001;
        xy[2 * i + 1] = std::sin(i * 0.0007) * 1000.0 + (i % 97) * 0.37;
    }
    for (int r = 0; r < runs; ++r) {
        ZEL_clearXYPlot(&unit);
        usleep(300000); // the window has cleared and repainted: one write is timed, not a backlog
        const auto start = Clock::now();
        write(unit, xy, bigPoints);
        writeMs.push_back(std::chrono::duration<double, std::milli>(Clock::now() - start).count());
    }
    plotUnit = unit;
    phase = 1;
    while (phase != 10)
        usleep(1000);
    std::vector<double> small(2000);
    for (int i = 0; i < 1000; ++i) {
        small[2 * i] = i;
        small[2 * i + 1] = i % 17;
    }
    for (int c = 1; c <= cycles; ++c) {
        write(unit, small, 1000);
        ZEL_clearXYPlot(&unit);
        if (c == 1000) rssAfter1000 = residentKb();
    }
    write(unit, small, 1); // behind the last clear: the GUI has done them all
    rssAfterAll = residentKb();
    phase = 2;
    ZEL_startEvents();
}

bool waitFor(int wanted)
{
    while (phase != wanted)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
    return true;
}

} // namespace

int main(int argc, char** argv)
{
    ::setenv("QT_QPA_PLATFORM", "offscreen", 0);
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    kestro::rt::testing::resetRuntime();
    auto* controller = new WindowController(&application, program);
    waitFor(1);
    XYPlot* plot = controller->getXYPlotForUnit(plotUnit);
    if (!plot) return 1;
    std::printf("1,000,000 REAL*8 points, ZEL_writeXYPlot to return: median %.1f ms, best %.1f ms\n",
                median(writeMs), *std::min_element(writeMs.begin(), writeMs.end()));

    plot->window()->resize(1200, 800);
    plot->window()->show();
    QElapsedTimer settle;
    settle.start();
    while (settle.elapsed() < 300)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
    std::vector<double> replotMs, exportMs;
    QTemporaryDir dir;
    for (int r = 0; r < runs; ++r) {
        QElapsedTimer clock;
        clock.start();
        plot->replot();
        plot->canvas()->repaint();
        replotMs.push_back(clock.nsecsElapsed() / 1e6);
        clock.restart();
        plot->exportChart(dir.filePath("bench.png"));
        exportMs.push_back(clock.nsecsElapsed() / 1e6);
    }
    std::printf("full replot of that curve in a %dx%d canvas: median %.1f ms, best %.1f ms\n",
                plot->canvas()->width(), plot->canvas()->height(), median(replotMs),
                *std::min_element(replotMs.begin(), replotMs.end()));
    std::printf("PNG export at 300 x 200 mm, 85 dpi: median %.1f ms, best %.1f ms\n", median(exportMs),
                *std::min_element(exportMs.begin(), exportMs.end()));

    phase = 10;
    waitFor(2);
    std::printf("%d write-and-clear cycles of 1,000 points: resident %ld kB after 1,000, %ld kB after %d\n",
                cycles, rssAfter1000.load(), rssAfterAll.load(), cycles);
    std::fflush(stdout);
    std::_Exit(0); // the windows' close would ask where to save them
}
