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

#include <QDir>
#include <QImage>
#include <QThread>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
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

// A polar plot: the poles of two joint sets, dip direction as azimuth and dip / 9 as radius, each
// with the cone of confidence round its mean pole; the second cone has a blank label.
void tourPolarPlot()
{
    say("Polar plot: ZEL_createPolarPlot, four ZEL_writePolarPlot calls (azimuth, radius rows).");
    int unit = 0;
    unsigned background = 0x14285a;
    char title[] = "Joint poles";
    ZEL_createPolarPlot(&unit, title, &background, -1);

    struct JointSet
    {
        double azimuth, radius;
        unsigned color;
        char poles[16], cone[24];
    } sets[] = {{40.0, 6.5, 0xffd000, "set 1", "cones of confidence"}, {215.0, 3.5, 0x5ad8ff, "set 2", " "}};
    char type[] = "REAL*8";
    int size = 8, columns = 2, thin = 0, wide = 2, dotSize = 7, ellipse = 0, noSymbol = -1;
    for (JointSet& set : sets) {
        // Poles by dip direction, joined in that order by a faint line.
        std::vector<double> poles;
        for (int i = 0; i < 15; ++i) {
            poles.push_back(set.azimuth - 21.0 + 3.0 * i);
            poles.push_back(set.radius + 0.9 * std::sin(i * 2.3));
        }
        int rows = static_cast<int>(poles.size() / 2);
        unsigned faint = (set.color >> 1) & 0x7f7f7f;
        ZEL_writePolarPlot(&unit, poles.data(), type, &size, &rows, &columns, set.poles, &faint, &thin,
                           &set.color, &dotSize, &ellipse, -1, -1);
        // A cone of 1.2 radius units round the mean pole, as polar points.
        const double x = set.radius * std::sin(set.azimuth * M_PI / 180);
        const double y = set.radius * std::cos(set.azimuth * M_PI / 180);
        std::vector<double> cone;
        for (int k = 0; k <= 72; ++k) {
            const double px = x + 1.2 * std::sin(k * M_PI / 36), py = y + 1.2 * std::cos(k * M_PI / 36);
            cone.push_back(std::fmod(std::atan2(px, py) * 180 / M_PI + 360.0, 360.0));
            cone.push_back(std::hypot(px, py));
        }
        rows = static_cast<int>(cone.size() / 2);
        unsigned orange = 0xff8c1a;
        ZEL_writePolarPlot(&unit, cone.data(), type, &size, &rows, &columns, set.cone, &orange, &wide,
                           &orange, &dotSize, &noSymbol, -1, -1);
    }
}

// The apparent dip in a section at `angle` degrees to the strike of a plane of true dip `dip`.
// It reads nothing but its arguments, so the plot may call it from several threads at once.
double apparentDip(double* dip, double* angle)
{
    const double degree = M_PI / 180.0;
    return std::atan(std::tan(*dip * degree) * std::sin(*angle * degree)) / degree;
}

// A contour plot of that function, as a colour image with contour lines every 10 degrees.
void tourContourPlot()
{
    say("Contour plot: ZEL_createContourPlot, ZEL_writeContourPlot with a data function.");
    int unit = 0, hGrid = 1, vGrid = 1, image = 1, lines = 1;
    char title[] = "Apparent dip", axis[] = "Apparent dip (degrees)";
    ZEL_createContourPlot(&unit, &hGrid, &vGrid, &image, &lines, title, -1);
    double thresholds[] = {0.0, 0.25, 0.5, 0.75, 1.0};
    unsigned colors[] = {0x2c3e91, 0x2a9d8f, 0xe9c46a, 0xf4a261, 0xc0392b};
    double contours[] = {10, 20, 30, 40, 50, 60, 70, 80, 90};
    int colorCount = 5, contourCount = 9;
    double xmin = 0, xmax = 90, ymin = 0, ymax = 90, zmin = 0, zmax = 90;
    ZEL_writeContourPlot(&unit, axis, thresholds, colors, &colorCount, contours, &contourCount, &xmin, &xmax,
                         &ymin, &ymax, &zmin, &zmax, apparentDip, -1);
}

// A canvas: a sketch of an outcrop with its fracture traces, a fold, a dip sector, labels and a
// colour scale read from a picture file.
void tourCanvas()
{
    say("Canvas: ZEL_createCanvas, then one ZEL_draw... call per object, each with an id of its own.");
    int unit = 0, width = 560, height = 380, noMax = -1;
    unsigned paper = 0xfaf8f0;
    ZEL_createCanvas(&unit, const_cast<char*>("Outcrop sketch"), &width, &height, &noMax, &noMax, &paper, -1);

    int id = -1;
    unsigned ink = 0x3c3c3c, sand = 0xe8dcc0, rock = 0xc9b48f, red = 0xc0392b, blue = 0x1f5fbf;
    float thin = 1.0f, wide = 2.5f;
    int solid = 1, dashed = 2, dotted = 3, round = 2, count = 1;
    float outcrop[] = {30, 60, 60, 40, 250, 50, 330, 90, 360, 230, 280, 330, 90, 320, 40, 220};
    int corners = 8;
    ZEL_drawPolygonWithBrush(&unit, &id, outcrop, &corners, &wide, &solid, nullptr, &round, &ink, &sand);
    id = -1;
    float boulder[] = {250, 230, 60, 40};
    ZEL_drawEllipseWithBrush(&unit, &id, boulder, &thin, &solid, nullptr, nullptr, &ink, &rock);
    id = -1;
    float traces[] = {60, 90, 300, 300, 120, 60, 340, 220, 50, 200, 200, 330, 200, 50, 350, 160};
    int lines = 4;
    ZEL_drawLines(&unit, &id, traces, &lines, &wide, &solid, &round, nullptr, &red);
    id = -1;
    float fold[] = {90, 140, 160, 120};
    float start = 20, span = 140;
    ZEL_drawArc(&unit, &id, fold, &start, &span, &wide, &dashed, nullptr, nullptr, &blue);

    // The legend: a dip sector of 37 degrees, its chord, and the text beside them.
    id = -1;
    float legend[] = {390, 40, 150, 300};
    float corner = 12;
    ZEL_drawRoundedRectsWithBrush(&unit, &id, legend, &count, &corner, &corner, &thin, &solid, nullptr,
                                  nullptr, &ink, &paper);
    id = -1;
    float sector[] = {415, 80, 100, 100};
    float from = 0, dip = -37;
    ZEL_drawPieWithBrush(&unit, &id, sector, &from, &dip, &thin, &solid, nullptr, nullptr, &ink, &rock);
    id = -1;
    float half = 180;
    ZEL_drawChord(&unit, &id, sector, &from, &half, &thin, &dotted, nullptr, nullptr, &ink);
    id = -1;
    float label[] = {400, 190, 130, 40};
    int centred = 0x84, points = 11, bold = 3, normal = 1;
    bool upright = false;
    ZEL_drawText(&unit, &id, label, const_cast<char*>("strike 042\ndip 37 SE"), &centred, nullptr, &points,
                 &bold, &upright, &ink, -1, 0);
    id = -1;
    float title[] = {30, 8, 330, 28};
    int left = 0x81;
    ZEL_drawText(&unit, &id, title, const_cast<char*>("Quarry wall, bench 3"), &left, nullptr, &points,
                 &normal, &upright, &blue, -1, 0);

    // A colour scale of dip, 0 to 90 degrees, as a picture file.
    QImage scale(90, 1, QImage::Format_RGB32);
    for (int x = 0; x < 90; ++x)
        scale.setPixel(x, 0, qRgb(40 + 2 * x, 90 + x, 200 - 2 * x));
    const std::string file = QDir::temp().filePath("zel-tour-dip-scale.png").toStdString();
    scale.save(QString::fromStdString(file));
    id = -1;
    float picture[] = {405, 250, 120, 16};
    ZEL_drawPicture(&unit, &id, picture, const_cast<char*>(file.c_str()), -1);
    id = -1;
    float ends[] = {400, 270, 130, 20};
    int spread = 0x84;
    ZEL_drawText(&unit, &id, ends, const_cast<char*>("0\xB0            90\xB0"), &spread, nullptr, &points,
                 &normal, &upright, &ink, -1, 0);
    id = -1;
    float frame[] = {405, 250, 120, 16};
    ZEL_drawRects(&unit, &id, frame, &count, &thin, &solid, nullptr, nullptr, &ink);
}

// A form dialog, shown last because it waits for the user: every kind of item, and the answers
// written back into the variables it was given.
void tourDialog()
{
    say("Form dialog: ZEL_createDialog, one ZEL_add...ToDialog call per item, ZEL_showDialog.");
    int dialog = 0, item = 0, two = 2, form = 1, output = 1;
    char forms[2][128] = {"alphanumerical", "numerical"};
    char outputs[2][128] = {"screen", "file"};
    char site[128], input[128];
    std::int32_t pause = 1;
    bool no = false;
    ZEL_createDialog(&dialog, const_cast<char*>("Survey settings"), -1);
    ZEL_addLabelToDialog(&dialog, &item, const_cast<char*>("How the next survey is read and written:"), -1);
    ZEL_addComboBoxToDialog(&dialog, &item, const_cast<char*>("Data form"), forms[0], &two, nullptr, &form,
                            -1);
    ZEL_addRadioButtonsToDialog(&dialog, &item, const_cast<char*>("Results to"), outputs[0], &two, nullptr,
                                &output, -1);
    ZEL_addCheckBoxToDialog(&dialog, &item, const_cast<char*>("Pause after warnings"),
                            reinterpret_cast<bool*>(&pause), -1);
    ZEL_addLineEditToDialog(&dialog, &item, const_cast<char*>("Site"), const_cast<char*>("name of the site"),
                            const_cast<char*>("Quarry wall"), site, -1, -1, -1);
    ZEL_addFileDialogToDialog(&dialog, &item, const_cast<char*>("Input file"),
                              const_cast<char*>("kestro_in.txt"), const_cast<char*>(""),
                              const_cast<char*>("."), &no, &no, input, -1, -1, -1, -1);
    if (ZEL_showDialog(&dialog) != 1) {
        say("The dialog was cancelled: every variable is as it was.");
        return;
    }
    char line[400];
    std::snprintf(line, sizeof line,
                  "Answers: data form %d, results to %d, pause %d, site \"%.40s\", file \"%.60s\"", form,
                  output, pause, site, input);
    say(line);
}

// A spreadsheet on the program's own unit 30: fracture records, one row each, REAL*4.
void tourSpreadsheet()
{
    say("Spreadsheet: ZEL_createSpreadsheet, column headers, ZEL_writeSpreadsheet (REAL*4).");
    int unit = 30, rows = 8, columns = 4;
    char title[] = "Fracture records";
    ZEL_createSpreadsheet(&unit, title, &rows, &columns, -1);
    char labels[] = "Dip 1   Dip 2   Strike  True dip";
    int labelLength = 8, count = 4;
    ZEL_setHorizontalHeaderLabels(&unit, labels, &labelLength, &count);
    float records[8][4];
    for (int r = 0; r < 8; ++r) {
        records[r][0] = 12.0f + 4.5f * static_cast<float>(r);
        records[r][1] = 31.0f - 2.25f * static_cast<float>(r);
        records[r][2] = 40.0f + 17.0f * static_cast<float>(r);
        records[r][3] = 35.17f + 1.3f * static_cast<float>(r);
    }
    char type[] = "REAL*4";
    int size = 4;
    ZEL_writeSpreadsheet(&unit, records, type, &size, &rows, &columns, -1);
}

// The window types in the order of the tour. Each further window type adds its step here.
struct Step
{
    const char* name;
    void (*open)();
};
const Step steps[] = {
    {"spreadsheet", tourSpreadsheet}, {"XY plot", tourXYPlot},       {"bar chart", tourBarChart},
    {"pie chart", tourPieChart},      {"polar plot", tourPolarPlot}, {"contour plot", tourContourPlot},
    {"Canvas", tourCanvas},           {"Form dialog", tourDialog}, // last: it waits for the user
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
