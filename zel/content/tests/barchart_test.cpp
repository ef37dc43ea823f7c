// zel/content/tests/barchart_test.cpp: the bar chart built directly, read back from its chart
// item, its axes and its pixels.
#include "content_fixture.h"

#include "zel/content/barchart.h"

#include <QImage>
#include <QTest>

#include <qwt_column_symbol.h>
#include <qwt_legend_data.h>
#include <qwt_plot_multi_barchart.h>
#include <qwt_scale_div.h>
#include <qwt_scale_map.h>

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>

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

TEST(BarChart, RowsAreGroupsOnACategoryAxisAndEachWriteReplacesTheLast)
{
    BarChart chart(nullptr, 1000000, "Bars");
    chart.setBarSettings({"north", "south"}, {Qt::red, Qt::blue});
    EXPECT_EQ(chart.chartItem()->title().text(), "Bar Chart ");
    EXPECT_EQ(chart.chartItem()->legendData().size(), 2);

    double first[] = {1, 2, 3, 4, 5, 6};
    chart.setBarData(first, "REAL*8", 3, 2);
    ASSERT_EQ(chart.chartItem()->dataSize(), 3u);
    EXPECT_EQ(group(chart, 1), (QVector<double>{3, 4}));
    const QwtScaleDiv& axis = chart.axisScaleDiv(QwtPlot::xBottom);
    EXPECT_EQ(axis.lowerBound(), 0.0);
    EXPECT_EQ(axis.upperBound(), 2.0);
    EXPECT_EQ(axis.ticks(QwtScaleDiv::MajorTick), (QList<double>{0, 1, 2}));

    int second[] = {7, 8, 9, 10};
    chart.setBarData(second, "INTEGER*4", 4, 1);
    ASSERT_EQ(chart.chartItem()->dataSize(), 4u);
    EXPECT_EQ(group(chart, 0), (QVector<double>{7}));
    EXPECT_EQ(group(chart, 3), (QVector<double>{10}));
    EXPECT_EQ(chart.axisScaleDiv(QwtPlot::xBottom).upperBound(), 3.0);
    EXPECT_EQ(barColour(chart, 0), QColor(Qt::red));
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

TEST(BarChart, BadArraysGiveAnEmptyOrZeroChart)
{
    BarChart chart(nullptr, 1000000, "Bars");
    chart.setBarSettings({"a"}, {Qt::green});
    double values[] = {1.5, NAN, INFINITY};
    chart.setBarData(values, "REAL*8", 1, 3);
    EXPECT_EQ(group(chart, 0), (QVector<double>{1.5, 0, 0}));
    chart.setBarData(values, "REAL*8", -2, 1);
    EXPECT_EQ(chart.chartItem()->dataSize(), 0u);
    EXPECT_EQ(chart.axisScaleDiv(QwtPlot::xBottom).upperBound(), 0.0);
    chart.setBarData(nullptr, "REAL*8", 2, 2);
    EXPECT_EQ(chart.chartItem()->dataSize(), 0u);
}

TEST(BarChart, BarsAreDrawnAsFilledBoxes)
{
    BarChart chart(nullptr, 1000000, "Bars");
    chart.setChartSettings("Bars", "x", "y", Qt::white);
    chart.setBarSettings({"left", "right"}, {Qt::red, Qt::blue});
    double data[] = {4, 8, 4, 8, 4, 8};
    chart.setBarData(data, "REAL*8", 3, 2);
    chart.resize(700, 450);
    chart.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&chart));
    chart.replot();
    const QImage image = chart.grab().toImage();

    const QPoint canvas = chart.canvas()->geometry().topLeft();
    const int x = canvas.x() + int(chart.canvasMap(QwtPlot::xBottom).transform(1.0));
    const int y = canvas.y() + int(chart.canvasMap(QwtPlot::yLeft).transform(2.0));
    // Bar 0 of a group stands left of its position, bar 1 right of it.
    EXPECT_EQ(QColor(image.pixel(x - 20, y)), QColor(Qt::red));
    EXPECT_EQ(QColor(image.pixel(x + 20, y)), QColor(Qt::blue));
    // Above the shorter bar: the canvas.
    const int high = canvas.y() + int(chart.canvasMap(QwtPlot::yLeft).transform(6.0));
    EXPECT_EQ(QColor(image.pixel(x - 20, high)), QColor(Qt::white));
    EXPECT_EQ(QColor(image.pixel(x + 20, high)), QColor(Qt::blue));
}

namespace zeltest {
namespace {
class BarChartProgram : public ContentDesktop
{
};

TEST_F(BarChartProgram, DrawsTheProgramsArrayAndReportsAMissingChart)
{
    BoxAnswers boxes;
    start([] {
        int unit = 0;
        char names[2 * 128] = {};
        std::memcpy(names, "dip", 3);
        std::memcpy(names + 128, "strike and more", 15);
        int lengths[] = {-1, 6}, count = 2, colourCount = 2;
        unsigned colours[] = {0xff0000, 0x0000ff}, background = 0xffffff;
        char title[] = "Dips", x[] = "site", y[] = "degrees";
        ZEL_createBarchart(&unit, title, x, y, &background, names, &count, lengths, colours, &colourCount, -1,
                           -1, 3);
        programLog.add(unit);
        float data[] = {10, 20, 30, 40, 50, 60};
        int size = 4, rows = 3, columns = 2, missing = 4711;
        char type[] = "REAL*4";
        programLog.add(ZEL_writeBarchart(&unit, data, type, &size, &rows, &columns, -1));
        programLog.add(ZEL_writeBarchart(&missing, data, type, &size, &rows, &columns, -1));
        ZEL_startEvents();
    });
    ASSERT_TRUE(waitForProgram(3));
    EXPECT_EQ(programLog.at(1), 1);
    EXPECT_EQ(programLog.at(2), 1);
    EXPECT_EQ(boxes.seen, QStringList{"Error|Bar Chart for unit number 4711 does not exist"});
    BarChart* chart = controller->getBarchartForUnit(programLog.at(0));
    ASSERT_NE(chart, nullptr);
    EXPECT_EQ(chart->title().text(), "Dips");
    EXPECT_EQ(chart->axisTitle(QwtPlot::yLeft).text(), "deg");
    const QList<QwtText> titles = chart->chartItem()->barTitles();
    ASSERT_EQ(titles.size(), 2);
    EXPECT_EQ(titles[0].text(), "dip");
    EXPECT_EQ(titles[1].text(), "strike");
    EXPECT_EQ(group(*chart, 2), (QVector<double>{50, 60}));
    EXPECT_EQ(barColour(*chart, 1), QColor(Qt::blue));
}
} // namespace
} // namespace zeltest
