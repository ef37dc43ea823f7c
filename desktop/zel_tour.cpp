// desktop/zel_tour.cpp: zel-tour, a walk through the content windows of the window environment.
// Each window type is opened with sample data through its C functions alone, as any program
// linked with the environment would do it.
//
//   zel-tour [--exit-after MS]
//
// Without options the windows stay until the user closes the last one. With --exit-after the
// process ends MS milliseconds after the last window has opened, without the closing dialogs:
// for scripts and screenshots.
#include "zel/core/environment.h"
#include "zel/core/zel.h"

#include <QThread>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <vector>

namespace {

int exitAfterMs = 0;

void say(const char* text)
{
    int unit = -3;
    ZEL_writeTextWindow(&unit, const_cast<char*>(text), -1);
}

// An XY plot: dips measured down a borehole, and a fitted trend through five of them.
void tourXYPlot()
{
    say("XY plot: ZEL_createXYPlot, two ZEL_writeXYPlot calls (REAL*8 pairs).");
    int unit = 0, linear = 0, hGrid = 1, vGrid = 1;
    unsigned background = 0xfcfcf4;
    double lower = 0.0, upper = 120.0, step = 20.0, none = -1.0;
    char title[] = "Dip against depth", xName[] = "Depth (m)", yName[] = "True dip (degrees)";
    ZEL_createXYPlot(&unit, title, xName, yName, &background, &linear, &lower, &upper, &step, &linear, &none,
                     &none, &none, &hGrid, &vGrid, -1, -1, -1);

    std::vector<double> measured;
    for (int i = 0; i <= 40; ++i) {
        const double depth = 2.5 + i * 2.9;
        measured.push_back(depth);
        measured.push_back(28.0 + 0.22 * depth + 6.0 * std::sin(depth * 0.37) + 2.0 * std::cos(depth * 1.3));
    }
    char type[] = "REAL*8", measuredLabel[] = "measured", trendLabel[] = "trend";
    int size = 8, rows = static_cast<int>(measured.size() / 2), columns = 2, plain = 0, fitted = 2;
    int thin = 1, wide = 3, dotSize = 7, ellipse = 0, noSymbol = -1;
    unsigned grey = 0x9aa0a6, blue = 0x1f5fbf, red = 0xc0392b;
    ZEL_writeXYPlot(&unit, measured.data(), type, &size, &rows, &columns, &plain, measuredLabel, &grey, &thin,
                    &blue, &dotSize, &ellipse, -1, -1);
    double trend[] = {0.0, 27.0, 30.0, 37.5, 60.0, 42.0, 90.0, 48.5, 120.0, 55.0};
    rows = 5;
    ZEL_writeXYPlot(&unit, trend, type, &size, &rows, &columns, &fitted, trendLabel, &red, &wide, &red,
                    &dotSize, &noSymbol, -1, -1);
}

// The window types in the order of the tour. Each further window type adds its step here.
struct Step
{
    const char* name;
    void (*open)();
};
const Step steps[] = {
    {"XY plot", tourXYPlot},
    // Spreadsheet, canvas, bar chart, pie chart, polar plot and contour plot follow here.
};

void tour()
{
    say("zel-tour: each content window of the environment, opened through its C functions.");
    for (const Step& step : steps)
        step.open();
    say("Close the last window to end the tour.");
    if (exitAfterMs > 0) {
        QThread::msleep(static_cast<unsigned long>(exitAfterMs));
        std::fflush(nullptr);
        std::_Exit(0);
    }
    ZEL_startEvents();
}

} // namespace

int main(int argc, char** argv)
{
    std::vector<char*> arguments;
    for (int i = 0; i < argc; ++i) {
        if (std::strcmp(argv[i], "--exit-after") == 0 && i + 1 < argc) {
            exitAfterMs = std::max(1, std::atoi(argv[++i]));
            continue;
        }
        arguments.push_back(argv[i]);
    }
    int count = static_cast<int>(arguments.size());
    arguments.push_back(nullptr);
    ZEL_setMainProgram(tour);
    TarnixWindowEnvironment(count, arguments.data());
    return 0;
}
