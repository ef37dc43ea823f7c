// zel/content/tests/polarplot_test.cpp: the polar plot, read back from its exported images.
#include "zel/content/polarplot.h"

#include "content_fixture.h"

#include <QImage>

#include <qwt_abstract_legend.h>
#include <qwt_legend_label.h>

#include <cmath>

using namespace zeltest;

namespace {

struct Dot
{
    double azimuth, radius;
    QRgb color;
};

void writeDot(PolarPlot& plot, const Dot& dot, const QString& label = QString())
{
    double row[2]{dot.azimuth, dot.radius};
    const QMap<QString, QVariant> properties{
        {"curveLabel", label}, {"curveColor", dot.color}, {"dotColor", dot.color}, {"dotSize", 15}};
    plot.setChartData(properties, row, QStringLiteral("REAL*8"), 1, 2);
}

// The number of pixels of exactly `color`, and their centre.
int pixels(const QImage& image, QRgb color, QPointF* centre = nullptr)
{
    double x = 0, y = 0;
    int count = 0;
    for (int j = 0; j < image.height(); ++j)
        for (int i = 0; i < image.width(); ++i)
            if ((image.pixel(i, j) & 0xffffff) == (color & 0xffffff)) {
                x += i;
                y += j;
                ++count;
            }
    if (centre && count) *centre = QPointF(x / count, y / count);
    return count;
}

} // namespace

// Azimuth 0 is up and grows clockwise, on a radius scale fixed from 0 to 10: the pole, the north rim
// and east at half the radius are drawn, radius 12 is off the disk, and bad rows (not numbers, one
// column, no rows, no array) give no point.
TEST(PolarPlot, OnlyPointsOnTheDiskAreDrawnClockwiseFromNorth)
{
    PolarPlot plot(7);
    plot.insertLegend(nullptr); // legend icons repeat the dot colours: the probes want the disk alone
    const Dot dots[]{
        {0, 0, 0xffff00}, {0, 10, 0x0000ff}, {90, 5, 0xff0000}, {270, 9, 0x00ffff}, {270, 12, 0xff00ff}};
    for (const Dot& dot : dots)
        writeDot(plot, dot);
    double rows[]{NAN, 5, 90, INFINITY, 90, -5};
    const QMap<QString, QVariant> green{{"curveColor", 0x00ff00u}, {"dotColor", 0x00ff00u}, {"dotSize", 9}};
    for (QPoint size : {QPoint(3, 2), QPoint(6, 1), QPoint(-3, 2)}) // rows, columns
        plot.setChartData(green, rows, QStringLiteral("REAL*8"), size.x(), size.y());
    plot.setChartData(green, nullptr, QStringLiteral("REAL*8"), 3, 2);

    QTemporaryDir dir;
    ASSERT_TRUE(plot.exportChart(dir.filePath("polar.png")));
    const QImage image(dir.filePath("polar.png"));
    QPointF at[4];
    for (int i = 0; i < 4; ++i)
        ASSERT_GT(pixels(image, dots[i].color, &at[i]), 50) << i;
    EXPECT_EQ(pixels(image, dots[4].color), 0);
    EXPECT_EQ(pixels(image, 0x00ff00), 0);
    const double radius = at[0].y() - at[1].y();
    EXPECT_NEAR(at[1].x(), at[0].x(), 1.0);
    EXPECT_NEAR(at[2].x(), at[0].x() + radius / 2, 1.5);
    EXPECT_NEAR(at[2].y(), at[0].y(), 1.0);
}

TEST(PolarPlot, BlankLabelsHaveLegendEntriesAndAClearKeepsTheGrid)
{
    PolarPlot plot(7);
    writeDot(plot, {30, 3, 0xff0000}, QStringLiteral("   "));
    writeDot(plot, {60, 3, 0x00ff00}, QStringLiteral("joints"));
    EXPECT_EQ(plot.legend()->findChildren<QwtLegendLabel*>().size(), 2);
    plot.clearChartData();
    EXPECT_EQ(plot.itemList().size(), 1); // the grid
}

using PolarPlotWindow = ContentDesktop;

TEST_F(PolarPlotWindow, TheProgramWritesAndHearsOfMissingWindows)
{
    BoxAnswers boxes;
    start([] {
        int unit = 0, missing = 4711, count = 2, columns = 2, size = 8, width = 1, dot = 5, style = 0;
        char title[] = "Joints", type[] = "REAL*8", label[] = "set 1";
        unsigned background = 0x000080, color = 0xff0000;
        ZEL_createPolarPlot(&unit, title, &background, -1);
        programLog.add(unit);
        double rows[]{90, 5, 180, 12};
        ZEL_clearPolarPlot(&missing); // its box comes before the last write's
        for (int* target : {&unit, &missing})
            programLog.add(ZEL_writePolarPlot(target, rows, type, &size, &count, &columns, label, &color,
                                              &width, &color, &dot, &style, -1, -1));
        ZEL_startEvents();
    });
    ASSERT_TRUE(waitForProgram(3));
    EXPECT_EQ(programLog.at(1) + programLog.at(2), 2);
    PolarPlot* plot = controller->getPolarPlotForUnit(programLog.at(0));
    ASSERT_NE(plot, nullptr);
    EXPECT_EQ(plot->curves.size(), 1);
    const QString box = "Error|Polar Plot for unit number 4711 does not exist";
    EXPECT_EQ(boxes.seen, (QStringList{box, box}));
}
