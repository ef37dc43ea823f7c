// zel/content/tests/polarplot_test.cpp: the polar plot, read back from its exported images.
#include "zel/content/polarplot.h"

#include "content_fixture.h"
#include "zel/content/polaritems.h"
#include "zel/core/zel.h"

#include <QFile>
#include <QImage>
#include <QTemporaryDir>

#include <qwt_abstract_legend.h>
#include <qwt_legend_label.h>

#include <gtest/gtest.h>

#include <limits>
#include <memory>

namespace {

struct Dot
{
    double azimuth, radius;
    QRgb color;
};

void writeDot(PolarPlot& plot, const Dot& dot, const QString& label = QString())
{
    double row[2]{dot.azimuth, dot.radius};
    const QMap<QString, QVariant> properties{{"curveLabel", label}, {"curveColor", dot.color},
                                             {"curveLineWidth", 1}, {"dotColor", dot.color},
                                             {"dotSize", 15},       {"symbolStyle", 0}};
    plot.setChartData(properties, row, QStringLiteral("REAL*8"), 1, 2);
}

// Legend icons repeat the dot colours: the probes want the disk alone.
std::unique_ptr<PolarPlot> plotWithoutLegend()
{
    auto plot = std::make_unique<PolarPlot>(7);
    plot->insertLegend(nullptr);
    return plot;
}

QImage exported(PolarPlot& plot, const QString& suffix = QStringLiteral(".png"))
{
    QTemporaryDir dir;
    const QString name = dir.filePath(QStringLiteral("polar") + suffix);
    EXPECT_TRUE(plot.exportChart(name));
    return QImage(name);
}

// Centre of the pixels of exactly `color`; count 0 when there are none.
QPointF centreOf(const QImage& image, QRgb color, int& count)
{
    double x = 0, y = 0;
    count = 0;
    for (int j = 0; j < image.height(); ++j)
        for (int i = 0; i < image.width(); ++i)
            if ((image.pixel(i, j) & 0xffffff) == (color & 0xffffff)) {
                x += i;
                y += j;
                ++count;
            }
    return count ? QPointF(x / count, y / count) : QPointF();
}

} // namespace

TEST(PolarPlot, AzimuthZeroIsUpAndGrowsClockwiseOnALinearRadius)
{
    auto owner = plotWithoutLegend();
    PolarPlot& plot = *owner;
    // pole, north rim, east at half the radius
    const Dot dots[]{{0, 0, 0xffff00}, {0, 10, 0x0000ff}, {90, 5, 0xff0000}};
    for (const Dot& dot : dots)
        writeDot(plot, dot);
    const QImage image = exported(plot);
    EXPECT_EQ(image.size(), QSize(1004, 669)); // the shared page: 300 x 200 mm at 85 dpi
    QPointF at[3];
    int count = 0;
    for (int i = 0; i < 3; ++i) {
        at[i] = centreOf(image, dots[i].color, count);
        ASSERT_GT(count, 50) << i;
    }
    const double radius = at[0].y() - at[1].y();
    EXPECT_NEAR(at[1].x(), at[0].x(), 1.0);
    EXPECT_NEAR(at[2].x(), at[0].x() + radius / 2, 1.5);
    EXPECT_NEAR(at[2].y(), at[0].y(), 1.0);
}

// Radius 12 lies outside the fixed 0 to 10 scale; bad rows, one column or no rows give no point.
TEST(PolarPlot, OnlyPointsOnTheDiskAreDrawn)
{
    auto owner = plotWithoutLegend();
    PolarPlot& plot = *owner;
    writeDot(plot, {270, 12, 0xff00ff});
    writeDot(plot, {270, 9, 0x00ffff});
    const double nan = std::numeric_limits<double>::quiet_NaN(),
                 inf = std::numeric_limits<double>::infinity();
    double rows[]{nan, 5, 90, inf, 90, -5};
    const QMap<QString, QVariant> red{{"curveColor", 0xff0000u}, {"dotColor", 0xff0000u}, {"dotSize", 9}};
    for (QPoint size : {QPoint(3, 2), QPoint(6, 1), QPoint(-3, 2)}) // rows, columns
        plot.setChartData(red, rows, QStringLiteral("REAL*8"), size.x(), size.y());
    plot.setChartData(red, nullptr, QStringLiteral("REAL*8"), 3, 2);
    const QImage image = exported(plot);
    int count = 0;
    for (QRgb invisible : {0xff00ffu, 0xff0000u}) {
        centreOf(image, invisible, count);
        EXPECT_EQ(count, 0) << invisible;
    }
    centreOf(image, 0x00ffff, count);
    EXPECT_GT(count, 50);
}

TEST(PolarPlot, BlankLabelsHaveLegendEntriesAndAClearKeepsTheGrid)
{
    PolarPlot plot(7);
    writeDot(plot, {30, 3, 0xff0000}, QStringLiteral("   "));
    writeDot(plot, {60, 3, 0x00ff00}, QStringLiteral("joints"));
    EXPECT_EQ(plot.legend()->findChildren<QwtLegendLabel*>().size(), 2);
    plot.clearChartData();
    EXPECT_EQ(plot.itemList().size(), 1); // the grid
    QTemporaryDir dir;
    ASSERT_TRUE(plot.exportChart(dir.filePath("polar.pdf")));
    QFile pdf(dir.filePath("polar.pdf"));
    ASSERT_TRUE(pdf.open(QIODevice::ReadOnly));
    EXPECT_EQ(pdf.read(5), QByteArray("%PDF-"));
}

namespace zeltest {
namespace {

class PolarPlotWindow : public ContentDesktop
{
};

TEST_F(PolarPlotWindow, TheProgramWritesAndHearsOfMissingWindows)
{
    BoxAnswers boxes;
    start([] {
        int unit = 0, missing = 4711;
        char title[] = "Joints", type[] = "REAL*8", label[] = "set 1";
        unsigned background = 0x000080, color = 0xff0000;
        ZEL_createPolarPlot(&unit, title, &background, -1);
        programLog.add(unit);
        double rows[]{90, 5, 180, 12};
        int count = 2, columns = 2, size = 8, width = 1, dot = 5, style = 0;
        for (int* target : {&unit, &missing})
            programLog.add(ZEL_writePolarPlot(target, rows, type, &size, &count, &columns, label, &color,
                                              &width, &color, &dot, &style, -1, -1));
        ZEL_clearPolarPlot(&missing);
        programLog.add(ZEL_writePolarPlot(&missing, rows, type, &size, &count, &columns, label, &color,
                                          &width, &color, &dot, &style, -1, -1)); // after the clear's box
        ZEL_startEvents();
    });
    ASSERT_TRUE(waitForProgram(4));
    EXPECT_EQ(programLog.at(1) + programLog.at(2) + programLog.at(3), 3);
    PolarPlot* plot = controller->getPolarPlotForUnit(programLog.at(0));
    ASSERT_NE(plot, nullptr);
    EXPECT_EQ(plot->curves.size(), 1);
    const QString box = "Error|Polar Plot for unit number 4711 does not exist";
    EXPECT_EQ(boxes.seen, (QStringList{box, box, box}));
}

} // namespace
} // namespace zeltest
