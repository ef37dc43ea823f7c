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

// A bar chart: fractures counted per set at four outcrops, in the default colours.
void tourBarChart()
{
    say("Bar chart: ZEL_createBarchart without colours, ZEL_writeBarchart (INTEGER*4, 4 x 3).");
    int unit = 0, nameCount = 3, colourCount = 0;
    char names[3 * 128] = {};
    std::strcpy(names, "set A (NE)");
    std::strcpy(names + 128, "set B (NW)");
    std::strcpy(names + 256, "bedding");
    int nameLengths[] = {-1, -1, -1};
    unsigned background = 0xffffff;
    char title[] = "Fractures per outcrop", xName[] = "Outcrop", yName[] = "Count";
    ZEL_createBarchart(&unit, title, xName, yName, &background, names, &nameCount, nameLengths, nullptr,
                       &colourCount, -1, -1, -1);
    int counts[] = {14, 9, 4, 22, 11, 7, 8, 15, 3, 17, 6, 10};
    int size = 4, rows = 4, columns = 3;
    char type[] = "INTEGER*4";
    ZEL_writeBarchart(&unit, counts, type, &size, &rows, &columns, -1);
}

// A pie chart: the share of each kind of structure in a survey; the last one has no name.
void tourPieChart()
{
    say("Pie chart: ZEL_createPiechart with four names, ZEL_writePiechart (REAL*4, five values).");
    int unit = 0, nameCount = 4, colourCount = 0;
    char names[4 * 128] = {};
    std::strcpy(names, "joints");
    std::strcpy(names + 128, "faults");
    std::strcpy(names + 256, "veins");
    std::strcpy(names + 384, "cleavage");
    unsigned background = 0xffffff, text = 0x202020;
    char title[] = "Structures surveyed";
    ZEL_createPiechart(&unit, title, &background, &text, names, &nameCount, nullptr, nullptr, &colourCount,
                       -1);
    float shares[] = {46.0f, 12.5f, 9.0f, 21.0f, 4.5f};
    int size = 4, rows = 5, columns = 1;
    char type[] = "REAL*4";
    ZEL_writePiechart(&unit, shares, type, &size, &rows, &columns, -1);
}

// The window types in the order of the tour. Each further window type adds its step here.
struct Step
{
    const char* name;
    void (*open)();
};
const Step steps[] = {
    {"XY plot", tourXYPlot}, {"bar chart", tourBarChart}, {"pie chart", tourPieChart},
    // Spreadsheet, canvas, polar plot and contour plot follow here.
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
