// zel/content/tests/piechart_test.cpp: the pie chart built directly: its rows, its saved picture,
// and the user's keys and rubber band.
#include "content_fixture.h"

#include "zel/content/piechart.h"
#include "zel/content/pieview.h"

#include <QApplication>
#include <QImage>
#include <QItemSelectionModel>
#include <QLabel>
#include <QMouseEvent>
#include <QStandardItemModel>
#include <QTemporaryDir>
#include <QTest>

#include <gtest/gtest.h>

#include <cmath>

namespace {
constexpr unsigned white = 0xffffff;
const QColor tomato(0xff, 0x63, 0x47), steelBlue(0x46, 0x82, 0xb4), limeGreen(0x32, 0xcd, 0x32);

class ShownPie : public ::testing::Test
{
protected:
    void SetUp() override
    {
        chart.setChartSettings("Shares", white, 0x000000, {}, {});
        chart.resize(560, 420);
    }
    void show()
    {
        chart.show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&chart));
    }
    // The saved picture, and the point at `degrees` counter-clockwise from 3 o'clock, at 0.6 of
    // the radius, in its pixels.
    QImage saved()
    {
        QString name = dir.filePath("shares");
        EXPECT_TRUE(chart.saveWithoutDialog(name));
        EXPECT_EQ(name, dir.filePath("shares.png"));
        return QImage(name);
    }
    QPoint inSlice(double degrees) const
    {
        const QPoint viewport = chart.pieView()->viewport()->mapTo(&chart, QPoint(0, 0));
        const double radius = chart.pieView()->pieDiameter() / 2.0;
        const double centre = PieView::margin + radius;
        const double angle = degrees * M_PI / 180.0;
        return viewport + QPoint(int(centre + 0.6 * radius * std::cos(angle)),
                                 int(centre - 0.6 * radius * std::sin(angle)));
    }

    PieChart chart{nullptr, 1000000, "Shares"};
    QTemporaryDir dir;
};
} // namespace

TEST_F(ShownPie, SlicesOfOneOneTwoStartAtThreeOClockCounterClockwise)
{
    double values[] = {1, 1, 2};
    chart.setChartData(values, "REAL*8", 3, 1);
    show();
    const QImage image = saved();
    ASSERT_FALSE(image.isNull());
    EXPECT_EQ(image.size(), chart.size());
    EXPECT_EQ(QColor(image.pixel(inSlice(45))), tomato);
    EXPECT_EQ(QColor(image.pixel(inSlice(135))), steelBlue);
    EXPECT_EQ(QColor(image.pixel(inSlice(200))), limeGreen);
    EXPECT_EQ(QColor(image.pixel(inSlice(340))), limeGreen);
}

TEST_F(ShownPie, ZeroAndBadQuantitiesHaveNoSliceAndNoLegendLine)
{
    double values[] = {1, 0, -4, NAN, INFINITY, 3};
    chart.setChartData(values, "REAL*8", 6, 1);
    show();
    PieView* view = chart.pieView();
    EXPECT_EQ(view->validItemCount(), 2);
    EXPECT_EQ(view->totalQuantity(), 4.0);
    const QRect first = view->visualRect(chart.itemModel()->index(0, 0));
    const QRect last = view->visualRect(chart.itemModel()->index(5, 0));
    for (int row = 1; row <= 4; ++row)
        EXPECT_FALSE(view->visualRect(chart.itemModel()->index(row, 0)).isValid()) << row;
    EXPECT_EQ(last.top(), first.bottom() + 1); // the legend closes up
}

TEST_F(ShownPie, CurrentAndSelectedSlicesFollowKeysAndTheRubberBand)
{
    double values[] = {1, 1, 2};
    chart.setChartData(values, "REAL*8", 3, 1);
    show();
    PieView* view = chart.pieView();
    view->setFocus();
    QTest::keyClick(view, Qt::Key_Down);
    QTest::keyClick(view, Qt::Key_Down);
    EXPECT_EQ(view->currentIndex(), chart.itemModel()->index(1, 1));
    QTest::keyClick(view, Qt::Key_Up);
    QTest::keyClick(view, Qt::Key_Up);
    EXPECT_EQ(view->currentIndex(), chart.itemModel()->index(0, 1));

    // The current slice is hatched: its colour and the background show through in turn.
    QImage image = saved();
    QSet<QRgb> seen;
    const QPoint p = inSlice(45);
    for (int dx = 0; dx < 4; ++dx)
        for (int dy = 0; dy < 4; ++dy)
            seen.insert(image.pixel(p + QPoint(dx, dy)));
    EXPECT_TRUE(seen.contains(tomato.rgb()));
    EXPECT_TRUE(seen.contains(QColor(Qt::white).rgb()));

    // A band over the lower half of the pie selects the third slice alone.
    QWidget* viewport = view->viewport();
    const QPoint from = viewport->mapFrom(&chart, inSlice(250));
    const QPoint to = viewport->mapFrom(&chart, inSlice(290));
    QTest::mousePress(viewport, Qt::LeftButton, Qt::NoModifier, from);
    QMouseEvent move(QEvent::MouseMove, to, Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(viewport, &move);
    QTest::mouseRelease(viewport, Qt::LeftButton, Qt::NoModifier, to);
    const QItemSelectionModel* selection = view->selectionModel();
    EXPECT_TRUE(selection->isSelected(chart.itemModel()->index(2, 1)));
    EXPECT_FALSE(selection->isSelected(chart.itemModel()->index(0, 1)));
    EXPECT_FALSE(selection->isSelected(chart.itemModel()->index(1, 1)));
}

TEST(PieChart, RowsTakeLabelsAndColoursOnceAndKeepThem)
{
    PieChart chart(nullptr, 1000000, "Pie");
    chart.setChartSettings("Pie", white, 0, {"granite", "schist", "gneiss"}, {0x112233u});
    const QStandardItemModel* model = chart.itemModel();

    int five[] = {10, 20, 30, 40, 50};
    chart.setChartData(five, "INTEGER*4", 5, 1);
    const char* labels[] = {"granite", "schist", "gneiss", "Label 4", "Label 5"};
    for (int row = 0; row < 5; ++row)
        EXPECT_EQ(model->index(row, 0).data().toString(), labels[row]) << row;
    EXPECT_EQ(model->index(0, 0).data(Qt::DecorationRole).value<QColor>(), QColor(0x11, 0x22, 0x33));

    // A shorter write leaves the later rows as they were; a 2 x 3 array is six rows.
    int two[] = {7, 8};
    chart.setChartData(two, "INTEGER*4", 1, 2);
    const char* afterShort[] = {"7", "8", "30", "40", "50"};
    for (int row = 0; row < 5; ++row)
        EXPECT_EQ(model->index(row, 1).data().toString(), afterShort[row]) << row;
    int six[] = {1, 2, 3, 4, 5, 6};
    chart.setChartData(six, "INTEGER*4", 2, 3);
    EXPECT_EQ(model->rowCount(), 6);
    EXPECT_EQ(model->index(5, 1).data().toString(), "6");
}

TEST(PieChart, SixteenRowsWrapToTheFirstColour)
{
    PieChart chart(nullptr, 1000000, "Pie");
    chart.setChartSettings("Pie", white, 0, {}, {});
    double values[16];
    for (double& v : values)
        v = 1.0;
    chart.setChartData(values, "REAL*8", 16, 1);
    const QStandardItemModel* model = chart.itemModel();
    EXPECT_EQ(model->index(15, 0).data(Qt::DecorationRole).value<QColor>(), tomato);
    EXPECT_EQ(model->index(14, 0).data(Qt::DecorationRole).value<QColor>(), QColor(0xdb, 0x70, 0x93));
    EXPECT_EQ(model->index(15, 0).data().toString(), "Label 16");
}

TEST(PieChart, BadArraysLeaveTheRowsAlone)
{
    PieChart chart(nullptr, 1000000, "Pie");
    double values[] = {1, 2};
    chart.setChartData(values, "REAL*8", -1, 2);
    chart.setChartData(nullptr, "REAL*8", 3, 3);
    EXPECT_EQ(chart.itemModel()->rowCount(), 1);
    EXPECT_EQ(chart.pieView()->validItemCount(), 0);
}

namespace zeltest {
namespace {
class PieChartProgram : public ContentDesktop
{
};

TEST_F(PieChartProgram, TakesTheProgramsListSavesAPictureAndReportsAMissingChart)
{
    BoxAnswers boxes;
    start([] {
        int unit = 0;
        char names[128] = "quartz";
        int count = 1, colourCount = 0;
        unsigned background = 0xffffff, text = 0;
        char title[] = "Veins";
        ZEL_createPiechart(&unit, title, &background, &text, names, &count, nullptr, nullptr, &colourCount,
                           -1);
        programLog.add(unit);
        int data[] = {3, 1}, size = 4, rows = 2, columns = 1, missing = 4711;
        char type[] = "INTEGER*4", file[] = "veins.pdf";
        programLog.add(ZEL_writePiechart(&unit, data, type, &size, &rows, &columns, -1));
        programLog.add(ZEL_savePiechart(&unit, file, -1));
        programLog.add(ZEL_writePiechart(&missing, data, type, &size, &rows, &columns, -1));
        ZEL_startEvents();
    });
    ASSERT_TRUE(waitForProgram(4));
    EXPECT_EQ(boxes.seen, QStringList{"Error|Pie Chart for unit number 4711 does not exist"});
    PieChart* chart = controller->getPieChartForUnit(programLog.at(0));
    ASSERT_NE(chart, nullptr);
    EXPECT_EQ(chart->titleLabel()->text(), "Veins");
    EXPECT_EQ(chart->itemModel()->index(0, 0).data().toString(), "quartz");
    EXPECT_EQ(chart->itemModel()->index(1, 0).data().toString(), "Label 2");
    EXPECT_EQ(chart->pieView()->totalQuantity(), 4.0);
    EXPECT_FALSE(QImage(path("veins.pdf.png")).isNull());
}
} // namespace
} // namespace zeltest

TEST(PieChart, TheTitleKeepsItsDistanceAboveANewFont)
{
    PieChart chart(nullptr, 1000000, "Pie");
    const int above = chart.titleLabel()->font().pointSize() - chart.font().pointSize();
    QFont font = chart.font();
    font.setPointSize(13);
    chart.setFont(font);
    EXPECT_EQ(chart.font().pointSize(), 13);
    EXPECT_EQ(chart.titleLabel()->font().pointSize(), 13 + above);
}
