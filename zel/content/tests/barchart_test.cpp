// zel/content/tests/barchart_test.cpp: the bar chart built directly, read back from its chart
// item, its axes and its pixels.
#include "content_fixture.h"

#include "zel/content/barchart.h"

#include <QImage>

#include <qwt_column_symbol.h>
#include <qwt_legend_data.h>
#include <qwt_plot_multi_barchart.h>
#include <qwt_scale_div.h>
#include <qwt_scale_map.h>

#include <cmath>
#include <cstring>

using namespace zeltest;

namespace {
QVector<double> group(const BarChart& chart, int position)
{
    return chart.chartItem()->sample(position).set;
}

QColor barColour(const BarChart& chart, int bar)
{
    const QwtColumnSymbol* symbol = chart.barSymbol(bar);
    return symbol ? symbol->palette().color(QPalette::Window) : QColor();
}
} // namespace

// Three rows of two columns are three groups of two filled bars, bar 0 of a group left of its
// position and bar 1 right of it.
TEST(BarChart, RowsAreGroupsOnACategoryAxisAndEachWriteReplacesTheLast)
{
    BarChart chart(nullptr, 1000000, "Bars");
    chart.setChartSettings("Bars", "x", "y", Qt::white);
    chart.setBarSettings({"north", "south"}, {Qt::red, Qt::blue});
    EXPECT_EQ(chart.chartItem()->legendData().size(), 2);
    double first[] = {1, 2, 3, 4, 5, 6};
    chart.setBarData(first, "REAL*8", 3, 2);
    ASSERT_EQ(chart.chartItem()->dataSize(), 3u);
    EXPECT_EQ(group(chart, 1), (QVector<double>{3, 4}));
    const QwtScaleDiv& axis = chart.axisScaleDiv(QwtPlot::xBottom);
    EXPECT_EQ(axis.interval(), QwtInterval(0.0, 2.0));
    EXPECT_EQ(axis.ticks(QwtScaleDiv::MajorTick), (QList<double>{0, 1, 2}));

    chart.resize(700, 450);
    chart.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&chart));
    chart.replot();
    const QImage image = chart.grab().toImage();
    const QPoint canvas = chart.canvas()->geometry().topLeft();
    const int x = canvas.x() + int(chart.canvasMap(QwtPlot::xBottom).transform(1.0));
    const int low = canvas.y() + int(chart.canvasMap(QwtPlot::yLeft).transform(2.0));
    const int high = canvas.y() + int(chart.canvasMap(QwtPlot::yLeft).transform(3.5));
    EXPECT_EQ(QColor(image.pixel(x - 20, low)), QColor(Qt::red));
    EXPECT_EQ(QColor(image.pixel(x + 20, low)), QColor(Qt::blue));
    EXPECT_EQ(QColor(image.pixel(x - 20, high)), QColor(Qt::white)); // above the shorter bar

    int second[] = {7, 8, 9, 10};
    chart.setBarData(second, "INTEGER*4", 4, 1);
    ASSERT_EQ(chart.chartItem()->dataSize(), 4u);
    EXPECT_EQ(group(chart, 3), (QVector<double>{10}));
    EXPECT_EQ(chart.axisScaleDiv(QwtPlot::xBottom).upperBound(), 3.0);

    // Numbers that aren't finite count 0; a bad shape or a missing array leaves no groups.
    double odd[] = {1.5, NAN, INFINITY};
    chart.setBarData(odd, "REAL*8", 1, 3);
    EXPECT_EQ(group(chart, 0), (QVector<double>{1.5, 0, 0}));
    chart.setBarData(nullptr, "REAL*8", 2, 2);
    EXPECT_EQ(chart.chartItem()->dataSize(), 0u);
    chart.setBarData(odd, "REAL*8", -2, 1);
    EXPECT_EQ(chart.chartItem()->dataSize(), 0u);
    EXPECT_EQ(chart.axisScaleDiv(QwtPlot::xBottom).upperBound(), 0.0);
}

TEST(BarChart, WithoutColoursTheFirstFiveBarsTakeTheTable)
{
    BarChart chart(nullptr, 1000000, "Bars");
    chart.setBarSettings({}, {});
    EXPECT_TRUE(chart.chartItem()->legendData().isEmpty());

    double data[6] = {1, 2, 3, 4, 5, 6};
    chart.setBarData(data, "REAL*8", 6, 1);
    // crimson, steel blue, lime green, dark orange, medium orchid
    const QColor expected[] = {QColor(0xdc, 0x14, 0x3c), QColor(0x46, 0x82, 0xb4), QColor(0x32, 0xcd, 0x32),
                               QColor(0xff, 0x8c, 0x00), QColor(0xba, 0x55, 0xd3)};
    for (int i = 0; i < 5; ++i)
        EXPECT_EQ(barColour(chart, i), expected[i]) << i;
    EXPECT_EQ(chart.barSymbol(5), nullptr);
}

using BarChartProgram = ContentDesktop;

// Name lengths -1 (up to the first zero byte) and 6; the y axis name's hidden length 3.
TEST_F(BarChartProgram, DrawsTheProgramsArrayAndReportsAMissingChart)
{
    BoxAnswers boxes;
    start([] {
        int unit = 0, lengths[] = {-1, 6}, count = 2, missing = 4711; // two names, two colours
        char names[2 * 128] = "dip", title[] = "Dips", x[] = "site", y[] = "degrees";
        std::memcpy(names + 128, "strike and more", 15);
        unsigned colours[] = {0xff0000, 0x0000ff};
        ZEL_createBarchart(&unit, title, x, y, nullptr, names, &count, lengths, colours, &count, -1, -1, 3);
        programLog.add(unit);
        float data[] = {10, 20, 30, 40, 50, 60};
        int size = 4, rows = 3, columns = 2;
        char type[] = "REAL*4";
        programLog.add(ZEL_writeBarchart(&unit, data, type, &size, &rows, &columns, -1));
        programLog.add(ZEL_writeBarchart(&missing, data, type, &size, &rows, &columns, -1));
        ZEL_startEvents();
    });
    ASSERT_TRUE(waitForProgram(3));
    EXPECT_EQ(programLog.at(2), 1);
    EXPECT_EQ(boxes.seen, QStringList{"Error|Bar Chart for unit number 4711 does not exist"});
    BarChart* chart = controller->getBarchartForUnit(programLog.at(0));
    ASSERT_NE(chart, nullptr);
    EXPECT_EQ(chart->axisTitle(QwtPlot::yLeft).text(), "deg");
    EXPECT_EQ(chart->chartItem()->barTitles(), (QList<QwtText>{QwtText("dip"), QwtText("strike")}));
    EXPECT_EQ(group(*chart, 2), (QVector<double>{50, 60}));
    EXPECT_EQ(barColour(*chart, 1), QColor(Qt::blue));
}
