// zel/content/tests/piechart_test.cpp: the pie chart built directly: its rows, its saved picture,
// and the user's keys and rubber band.
#include "content_fixture.h"

#include "zel/content/piechart.h"
#include "zel/content/pieview.h"

#include <QImage>
#include <QItemSelectionModel>
#include <QLabel>
#include <QMouseEvent>
#include <QStandardItemModel>

#include <cmath>
#include <vector>

using namespace zeltest;

namespace {
const QColor tomato(0xff, 0x63, 0x47), gold(0xff, 0xd7, 0x00), mediumAquaMarine(0x66, 0xcd, 0xaa);

// One column of the chart's rows as texts: the labels, the colours ("#rrggbb") or the quantities.
QStringList column(const PieChart& chart, int column, int role = Qt::DisplayRole)
{
    QStringList texts;
    for (int row = 0; row < chart.itemModel()->rowCount(); ++row)
        texts << chart.itemModel()->index(row, column).data(role).toString();
    return texts;
}

// The chart's picture, as its save writes it.
QImage saved(PieChart& chart)
{
    QTemporaryDir dir;
    QString name = dir.filePath("shares");
    EXPECT_TRUE(chart.saveWithoutDialog(name));
    return QImage(dir.filePath("shares.png"));
}

// The point at `degrees` counter-clockwise from 3 o'clock, at 0.6 of the radius, in the chart.
QPoint inSlice(const PieChart& chart, double degrees)
{
    const QPoint viewport = chart.pieView()->viewport()->mapTo(&chart, QPoint(0, 0));
    const double radius = chart.pieView()->pieDiameter() / 2.0;
    const double centre = PieView::margin + radius;
    const double angle = degrees * M_PI / 180.0;
    return viewport +
           QPoint(int(centre + 0.6 * radius * std::cos(angle)), int(centre - 0.6 * radius * std::sin(angle)));
}
} // namespace

// Of 1, 0, -4, 1, NaN, infinity, 2 the positive values take a quarter, a quarter and a half of the
// pie, from 3 o'clock counter-clockwise, in the colours of their rows: tomato, gold and medium aqua
// marine. The others have no slice and no legend line.
TEST(PieChart, SlicesRunCounterClockwiseAndFollowKeysAndTheRubberBand)
{
    PieChart chart(nullptr, 1000000, "Shares");
    chart.setChartSettings("Shares", 0xffffff, 0x000000, {}, {});
    double values[] = {1, 0, -4, 1, NAN, INFINITY, 2};
    chart.setChartData(values, "REAL*8", 7, 1);
    chart.resize(560, 420);
    chart.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&chart));
    PieView* view = chart.pieView();
    for (int row : {1, 2, 4, 5})
        EXPECT_FALSE(view->visualRect(chart.itemModel()->index(row, 0)).isValid()) << row;
    EXPECT_EQ(view->visualRect(chart.itemModel()->index(3, 0)).top(),
              view->visualRect(chart.itemModel()->index(0, 0)).bottom() + 1);
    QImage image = saved(chart);
    ASSERT_EQ(image.size(), chart.size());
    EXPECT_EQ(QColor(image.pixel(inSlice(chart, 45))), tomato);
    EXPECT_EQ(QColor(image.pixel(inSlice(chart, 135))), gold);
    EXPECT_EQ(QColor(image.pixel(inSlice(chart, 200))), mediumAquaMarine);
    EXPECT_EQ(QColor(image.pixel(inSlice(chart, 340))), mediumAquaMarine);

    // The current slice is hatched in a checkerboard: its colour and the background take turns.
    view->setFocus();
    for (Qt::Key key : {Qt::Key_Down, Qt::Key_Down, Qt::Key_Up, Qt::Key_Up}) // the last stays at row 0
        QTest::keyClick(view, key);
    EXPECT_EQ(view->currentIndex(), chart.itemModel()->index(0, 1));
    image = saved(chart);
    const QPoint p = inSlice(chart, 45);
    EXPECT_EQ((QSet<QRgb>{image.pixel(p), image.pixel(p + QPoint(1, 0))}),
              (QSet<QRgb>{tomato.rgb(), qRgb(255, 255, 255)}));

    // A band over the lower half of the pie selects the third slice alone.
    QWidget* viewport = view->viewport();
    const QPoint from = viewport->mapFrom(&chart, inSlice(chart, 250));
    const QPoint to = viewport->mapFrom(&chart, inSlice(chart, 290));
    QTest::mousePress(viewport, Qt::LeftButton, Qt::NoModifier, from);
    QMouseEvent move(QEvent::MouseMove, to, Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(viewport, &move);
    QTest::mouseRelease(viewport, Qt::LeftButton, Qt::NoModifier, to);
    const QItemSelectionModel* selection = view->selectionModel();
    EXPECT_TRUE(selection->isSelected(chart.itemModel()->index(6, 1)));
    EXPECT_EQ(selection->selectedIndexes().size(), 1);
}

// Labels and colours missing from the settings come from the row number and the colour cycle, once;
// later writes, shorter ones too, change the quantities alone.
TEST(PieChart, RowsTakeLabelsAndColoursOnceAndKeepThem)
{
    PieChart chart(nullptr, 1000000, "Pie");
    chart.setChartSettings("Pie", 0xffffff, 0, {"granite", "schist", "gneiss"}, {0x112233u});
    int five[] = {10, 20, 30, 40, 50}, two[] = {7, 8}, six[] = {1, 2, 3, 4, 5, 6};
    chart.setChartData(five, "INTEGER*4", -1, 2); // a bad shape and a missing array change nothing
    chart.setChartData(nullptr, "INTEGER*4", 3, 3);
    EXPECT_EQ(column(chart, 1), (QStringList{"", "", ""}));

    chart.setChartData(five, "INTEGER*4", 5, 1);
    EXPECT_EQ(column(chart, 0), (QStringList{"granite", "schist", "gneiss", "Label 4", "Label 5"}));
    // the given colour, then steel blue, lime green, gold and medium orchid from the cycle
    EXPECT_EQ(column(chart, 0, Qt::DecorationRole),
              (QStringList{"#112233", "#4682b4", "#32cd32", "#ffd700", "#ba55d3"}));
    chart.setChartData(two, "INTEGER*4", 1, 2);
    EXPECT_EQ(column(chart, 1), (QStringList{"7", "8", "30", "40", "50"}));
    chart.setChartData(six, "INTEGER*4", 2, 3);
    EXPECT_EQ(column(chart, 1), (QStringList{"1", "2", "3", "4", "5", "6"}));

    // Sixteen rows: the cycle of fifteen colours ends at pale violet red and starts again at tomato.
    std::vector<double> sixteen(16, 1.0);
    chart.setChartData(sixteen.data(), "REAL*8", 16, 1);
    EXPECT_EQ(column(chart, 0, Qt::DecorationRole).mid(14), (QStringList{"#db7093", "#ff6347"}));
    EXPECT_EQ(column(chart, 0).last(), "Label 16");
}

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

using PieChartProgram = ContentDesktop;

TEST_F(PieChartProgram, TakesTheProgramsListSavesAPictureAndReportsAMissingChart)
{
    BoxAnswers boxes;
    start([] {
        int unit = 0, count = 1;
        char title[] = "Veins", names[128] = "quartz", type[] = "INTEGER*4", file[] = "veins.pdf";
        ZEL_createPiechart(&unit, title, nullptr, nullptr, names, &count, nullptr, nullptr, nullptr, -1);
        programLog.add(unit);
        int data[] = {3, 1}, size = 4, rows = 2, columns = 1, missing = 4711;
        programLog.add(ZEL_writePiechart(&unit, data, type, &size, &rows, &columns, -1));
        programLog.add(ZEL_savePiechart(&unit, file, -1));
        programLog.add(ZEL_writePiechart(&missing, data, type, &size, &rows, &columns, -1));
        ZEL_startEvents();
    });
    ASSERT_TRUE(waitForProgram(4));
    EXPECT_EQ(boxes.seen, QStringList{"Error|Pie Chart for unit number 4711 does not exist"});
    PieChart* chart = controller->getPieChartForUnit(programLog.at(0));
    ASSERT_NE(chart, nullptr);
    EXPECT_EQ(column(*chart, 0), (QStringList{"quartz", "Label 2"}));
    EXPECT_EQ(chart->pieView()->totalQuantity(), 4.0);
    EXPECT_FALSE(QImage(path("veins.pdf.png")).isNull());
}
