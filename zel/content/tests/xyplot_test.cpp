// zel/content/tests/xyplot_test.cpp: programs on the program thread drive XY plots through the C
// functions; the test looks at what the plot on the GUI thread holds.
#include "content_fixture.h"

#include "zel/content/xyplot.h"

#include <QFile>
#include <QImage>
#include <QProcess>
#include <QThread>

#include <qwt_plot_curve.h>
#include <qwt_plot_grid.h>
#include <qwt_scale_div.h>
#include <qwt_scale_engine.h>
#include <qwt_symbol.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <random>

namespace zeltest {
namespace {

// The plot the program made first: its unit is the program's first result.
class XYPlots : public ContentDesktop
{
protected:
    XYPlot* plot()
    {
        if (!waitForProgram(1)) return nullptr;
        waitUntil([this] { return controller->getXYPlotForUnit(programLog.at(0)) != nullptr; });
        return controller->getXYPlotForUnit(programLog.at(0));
    }
};

int createPlot(double xLB, double xUB, int xType, double yLB, double yUB, int yType)
{
    int unit = 0, hGrid = 1, vGrid = 0;
    unsigned background = 0x102030;
    double step = -1.0;
    char title[] = "Wells", xName[] = "Depth", yName[] = "Dip";
    ZEL_createXYPlot(&unit, title, xName, yName, &background, &xType, &xLB, &xUB, &step, &yType, &yLB, &yUB,
                     &step, &hGrid, &vGrid, -1, -1, -1);
    programLog.add(unit);
    return unit;
}

long writePoints(int unit, const double* xy, int rows, int columns, const char* label, int style = 0)
{
    char type[] = "REAL*8";
    int size = 8, fitted = 0, width = 3, dot = 5;
    unsigned color = 0xff0000, dotColor = 0x0000ff;
    return ZEL_writeXYPlot(&unit, const_cast<double*>(xy), type, &size, &rows, &columns, &fitted,
                           const_cast<char*>(label), &color, &width, &dotColor, &dot, &style, -1, -1);
}

TEST_F(XYPlots, CreationSetsTitlesGridAndBoundsOnlyWhenBothAreGiven)
{
    start([] {
        createPlot(0.0, 10.0, 0, -1.0, 1.0, 1);
        ZEL_startEvents();
    });
    XYPlot* p = plot();
    ASSERT_TRUE(p);
    EXPECT_EQ(p->title().text(), QString("Wells"));
    EXPECT_EQ(p->axisTitle(QwtPlot::xBottom).text(), QString("Depth"));
    EXPECT_EQ(p->canvas()->palette().color(QPalette::Window), QColor(0x10, 0x20, 0x30));
    EXPECT_TRUE(p->getGrid()->yEnabled());
    EXPECT_FALSE(p->getGrid()->xEnabled());
    EXPECT_FALSE(p->axisAutoScale(QwtPlot::xBottom));
    EXPECT_EQ(p->axisScaleDiv(QwtPlot::xBottom).lowerBound(), 0.0);
    EXPECT_EQ(p->axisScaleDiv(QwtPlot::xBottom).upperBound(), 10.0);
    EXPECT_TRUE(p->axisAutoScale(QwtPlot::yLeft)); // a lower bound of -1.0 means none
    auto* log = dynamic_cast<QwtLogScaleEngine*>(p->axisScaleEngine(QwtPlot::yLeft));
    ASSERT_TRUE(log);
    EXPECT_EQ(log->base(), 10.0);
}

// The six-digit values of a write are what the text QString::number(v, 'g', 6) reads back as.
TEST(XYPoints, ValuesAreThoseOfTheirSixDigitTextBitForBit)
{
    std::mt19937_64 random(12345);
    // Decade edges, ties of the sixth digit and extremes, then random doubles of every kind.
    std::vector<double> values{0.0, 1.0, 3.14159265, 1234565.0, 0.1234565, 999999.5, 9999995.0, 1e-16, 1e27};
    for (int i = 0; i < 200000; ++i) {
        std::uint64_t bits = random();
        double v;
        std::memcpy(&v, &bits, sizeof v);
        values.push_back(v);                                                               // any double
        values.push_back(std::ldexp(static_cast<double>(bits >> 11), -53 + i % 120 - 60)); // common decades
        values.push_back(static_cast<double>(static_cast<std::int64_t>(bits % 100000000)) / 1000.0);
    }
    int checked = 0;
    for (double v : values) {
        double fast = 0.0;
        if (!fastSixDigitValue(v, fast)) continue;
        const double read = QString::number(v, 'g', 6).toDouble();
        ASSERT_EQ(std::memcmp(&fast, &read, sizeof fast), 0) << v;
        ++checked;
    }
    EXPECT_GT(checked, 300000);
    const double pairs[] = {1234565.0, 0.0001234565, std::nan(""), 1.0};
    const QVector<QPointF> points = xyPoints(pairs, "REAL*8", 2, 2);
    ASSERT_EQ(points.size(), 1); // the NaN row gives no point
    EXPECT_EQ(points[0], QPointF(1234570.0, QString::number(0.0001234565, 'g', 6).toDouble()));
    const float singles[] = {1000000.0f, 0.1f};
    EXPECT_EQ(xyPoints(singles, "REAL*4", 1, 2), QVector<QPointF>{QPointF(1e6, 0.1)});
}

std::atomic<bool> goOn{false}; // the test has looked: the program may go on

TEST_F(XYPlots, CurvesPileUpWithSixDigitValuesAndAClearRemovesThemAll)
{
    start([] {
        const int unit = createPlot(-1.0, -1.0, 0, -1.0, -1.0, 0);
        const double first[] = {1.0, 3.14159265, 2.0, 1234567.0, 99.0, 3.0, -0.000123456789, 2.5, 0.0};
        programLog.add(writePoints(unit, first, 3, 3, "   ")); // the third column is read and ignored
        const double second[] = {5.0, 6.0};
        programLog.add(writePoints(unit, second, 1, 2, "Wells 2", 1));
        while (!goOn)
            QThread::msleep(5);
        programLog.add(ZEL_clearXYPlot(const_cast<int*>(&unit)));
        const double third[] = {7.0, 8.0, 9.0, 10.0};
        programLog.add(writePoints(unit, third, 2, 2, "Last"));
        ZEL_startEvents();
    });
    ASSERT_TRUE(waitForProgram(3));
    XYPlot* p = controller->getXYPlotForUnit(programLog.at(0));
    ASSERT_TRUE(p);
    ASSERT_EQ(p->getCurves().size(), 2);
    const QwtPlotCurve* blank = p->getCurves().at(0);
    ASSERT_EQ(blank->dataSize(), 3u);
    EXPECT_EQ(blank->sample(0), QPointF(1.0, 3.14159));
    EXPECT_EQ(blank->sample(1), QPointF(1234570.0, 99.0));
    EXPECT_EQ(blank->sample(2), QPointF(-0.000123457, 2.5));
    EXPECT_FALSE(blank->testItemAttribute(QwtPlotItem::Legend));
    EXPECT_EQ(blank->pen().color(), QColor(0xff, 0, 0));
    EXPECT_EQ(blank->symbol()->style(), QwtSymbol::Ellipse);
    EXPECT_EQ(blank->symbol()->size(), QSize(5, 5));
    const QwtPlotCurve* labelled = p->getCurves().at(1);
    EXPECT_TRUE(labelled->testItemAttribute(QwtPlotItem::Legend));
    EXPECT_EQ(labelled->title().text(), QString("Wells 2"));

    goOn = true;
    ASSERT_TRUE(waitForProgram(5));
    ASSERT_EQ(p->getCurves().size(), 1);
    EXPECT_EQ(p->getCurves().at(0)->title().text(), QString("Last"));
    EXPECT_EQ(p->getCurves().at(0)->sample(1), QPointF(9.0, 10.0));
    EXPECT_EQ(p->itemList(QwtPlotItem::Rtti_PlotCurve).size(), 1);
}

TEST_F(XYPlots, BadInputDrawsNothingAndEveryCallerIsReleased)
{
    BoxAnswers boxes;
    start([] {
        int unit = createPlot(-1.0, -1.0, 0, -1.0, -1.0, 0);
        const double nan = std::numeric_limits<double>::quiet_NaN();
        const double inf = std::numeric_limits<double>::infinity();
        const double xy[] = {1.0, nan, inf, 2.0, 3.0, 4.0};
        programLog.add(writePoints(unit, xy, 3, 2, "")); // only (3, 4) is a point
        programLog.add(writePoints(unit, xy, 0, 2, ""));
        programLog.add(writePoints(unit, xy, 3, 1, ""));
        programLog.add(writePoints(unit, nullptr, 3, 2, ""));
        int lowerCase = 8, rows = 3, columns = 2;
        char type[] = "real*8";
        programLog.add(ZEL_writeXYPlot(&unit, const_cast<double*>(xy), type, &lowerCase, &rows, &columns,
                                       nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, -1, 0));
        programLog.add(writePoints(4242, xy, 3, 2, ""));
        int missing = 4243;
        programLog.add(ZEL_clearXYPlot(&missing));
        programLog.add(ZEL_writeXYPlot(nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                                       nullptr, nullptr, nullptr, nullptr, nullptr, 0, 0));
        ZEL_startEvents();
    });
    ASSERT_TRUE(waitForProgram(9));
    for (std::size_t i = 1; i < 8; ++i)
        EXPECT_EQ(programLog.at(i), 1) << i;
    EXPECT_EQ(programLog.at(8), -1);
    XYPlot* p = controller->getXYPlotForUnit(programLog.at(0));
    ASSERT_EQ(p->getCurves().size(), 5);
    EXPECT_EQ(p->getCurves().at(0)->dataSize(), 1u);
    EXPECT_EQ(p->getCurves().at(0)->sample(0), QPointF(3.0, 4.0));
    for (int i = 1; i < 5; ++i)
        EXPECT_EQ(p->getCurves().at(i)->dataSize(), 0u) << i;
    EXPECT_TRUE(waitUntil([&] { return boxes.seen.size() == 2; }));
    EXPECT_EQ(boxes.seen, (QStringList{"Error|XY Plot for unit number 4242 does not exist",
                                       "Error|XY Plot for unit number 4243 does not exist"}));
}

TEST_F(XYPlots, AClosedPlotIsGoneAlthoughItsSaveDialogWasCancelled)
{
    BoxAnswers boxes;
    start([] {
        int unit = createPlot(-1.0, -1.0, 0, -1.0, -1.0, 0);
        while (!goOn)
            QThread::msleep(5);
        const double xy[] = {1.0, 2.0};
        programLog.add(writePoints(unit, xy, 1, 2, ""));
        ZEL_startEvents();
    });
    goOn = false;
    XYPlot* p = plot();
    ASSERT_TRUE(p);
    p->window()->close();
    EXPECT_EQ(controller->getXYPlotForUnit(programLog.at(0)), nullptr);
    goOn = true;
    ASSERT_TRUE(waitForProgram(2));
    EXPECT_EQ(
        boxes.seen,
        (QStringList{"Save Wells As",
                     QString("Error|XY Plot for unit number %1 does not exist").arg(programLog.at(0))}));
}

// Makes the file one that can't be written, also for root; false when this system can't.
bool lock(const QString& file)
{
    QFile(file).setPermissions(QFileDevice::ReadOwner);
    if (QFileInfo(file).isWritable()) QProcess::execute("chattr", {"+i", file});
    return !QFileInfo(file).isWritable();
}

TEST_F(XYPlots, ScriptedSavesFollowTheFileRuleAndReportAnUnwritableFile)
{
    QFile(path("locked.png")).open(QIODevice::WriteOnly);
    if (!lock(path("locked.png"))) GTEST_SKIP() << "no file here can be made unwritable";
    BoxAnswers boxes;
    start([] {
        int unit = createPlot(-1.0, -1.0, 0, -1.0, -1.0, 0);
        for (const char* name : {"chart.jpg", "page.pdf", "locked"}) {
            while (!goOn)
                QThread::msleep(5);
            programLog.add(ZEL_saveXYPlot(&unit, const_cast<char*>(name), -1));
        }
        ZEL_startEvents();
    });
    goOn = false;
    ASSERT_TRUE(plot());
    plot()->window()->resize(1500, 300); // the page is 300 x 200 mm at 85 dpi whatever the window
    goOn = true;
    ASSERT_TRUE(waitForProgram(4));
    QProcess::execute("chattr", {"-i", path("locked.png")});
    EXPECT_EQ(QImage(path("chart.jpg.png")).size(), QSize(1004, 669));
    QFile pdf(path("page.pdf"));
    ASSERT_TRUE(pdf.open(QIODevice::ReadOnly));
    const QByteArray page = pdf.readAll();
    EXPECT_TRUE(page.startsWith("%PDF"));
    const int box = page.indexOf("/MediaBox [0 0 ");
    ASSERT_GE(box, 0);
    const QList<QByteArray> size = page.mid(box + 15, 40).split(']').first().split(' ');
    EXPECT_NEAR(size.value(0).toDouble(), 850.4, 1.0); // points
    EXPECT_NEAR(size.value(1).toDouble(), 566.9, 1.0);
    EXPECT_EQ(QFileInfo(path("locked.png")).size(), 0);
    EXPECT_EQ(boxes.seen, QStringList{"Error|Unable to write locked.png"});
}

} // namespace
} // namespace zeltest
