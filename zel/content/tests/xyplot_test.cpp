// zel/content/tests/xyplot_test.cpp: programs on the program thread drive XY plots through the C
// functions; the test looks at what the plot on the GUI thread holds.
#include "xyplot_calls.h"

#include <QFile>
#include <QImage>
#include <QProcess>
#include <QThread>

#include <qwt_interval.h>
#include <qwt_plot_curve.h>
#include <qwt_plot_grid.h>
#include <qwt_scale_engine.h>
#include <qwt_symbol.h>

#include <cmath>

namespace zeltest {
namespace {

using XYPlots = ContentDesktop;

std::atomic<bool> goOn{false}; // the test has looked: the program may go on

TEST_F(XYPlots, CreationFixesTheLookThenCurvesPileUpUntilAClear)
{
    goOn = false;
    start([] {
        const int unit = createPlot(0.0, 10.0, 0, -1.0, 1.0, 1);
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
    EXPECT_EQ(p->title().text(), QString("Wells"));
    EXPECT_EQ(p->axisTitle(QwtPlot::xBottom).text(), QString("Depth"));
    EXPECT_EQ(p->canvas()->palette().color(QPalette::Window), QColor(0x10, 0x20, 0x30));
    EXPECT_TRUE(p->getGrid()->yEnabled());
    EXPECT_FALSE(p->getGrid()->xEnabled());
    EXPECT_FALSE(p->axisAutoScale(QwtPlot::xBottom));
    EXPECT_EQ(p->axisInterval(QwtPlot::xBottom), QwtInterval(0.0, 10.0));
    EXPECT_TRUE(p->axisAutoScale(QwtPlot::yLeft)); // a lower bound of -1.0 means none
    auto* log = dynamic_cast<QwtLogScaleEngine*>(p->axisScaleEngine(QwtPlot::yLeft));
    ASSERT_TRUE(log);
    EXPECT_EQ(log->base(), 10.0);

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

// Bad input, and a plot closed with its Save As dialog cancelled is gone for the program.
TEST_F(XYPlots, BadInputDrawsNothingAndEveryCallerIsReleased)
{
    BoxAnswers boxes;
    goOn = false;
    start([] {
        int unit = createPlot(-1.0, -1.0, 0, -1.0, -1.0, 0);
        const double xy[] = {1.0, std::nan(""), HUGE_VAL, 2.0, 3.0, 4.0};
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
        while (!goOn)
            QThread::msleep(5);
        programLog.add(writePoints(unit, xy, 3, 2, ""));
        ZEL_startEvents();
    });
    ASSERT_TRUE(waitForProgram(9));
    EXPECT_EQ(std::vector<long>(programLog.results.begin() + 1, programLog.results.end()),
              (std::vector<long>{1, 1, 1, 1, 1, 1, 1, -1}));
    XYPlot* p = controller->getXYPlotForUnit(programLog.at(0));
    std::vector<std::size_t> sizes;
    for (const QwtPlotCurve* curve : p->getCurves())
        sizes.push_back(curve->dataSize());
    EXPECT_EQ(sizes, (std::vector<std::size_t>{1, 0, 0, 0, 0}));
    EXPECT_EQ(p->getCurves().at(0)->sample(0), QPointF(3.0, 4.0));
    EXPECT_TRUE(waitUntil([&] { return boxes.seen.size() == 2; }));

    p->window()->close();
    EXPECT_EQ(controller->getXYPlotForUnit(programLog.at(0)), nullptr);
    goOn = true;
    ASSERT_TRUE(waitForProgram(10));
    EXPECT_TRUE(waitUntil([&] { return boxes.seen.size() == 4; }));
    EXPECT_EQ(
        boxes.seen,
        (QStringList{"Error|XY Plot for unit number 4242 does not exist",
                     "Error|XY Plot for unit number 4243 does not exist", "Save Wells As",
                     QString("Error|XY Plot for unit number %1 does not exist").arg(programLog.at(0))}));
}

TEST_F(XYPlots, ScriptedSavesFollowTheFileRuleAndReportAnUnwritableFile)
{
    // A file that can't be written, also for root.
    const QString locked = path("locked.png");
    QFile(locked).open(QIODevice::WriteOnly);
    QFile(locked).setPermissions(QFileDevice::ReadOwner);
    if (QFileInfo(locked).isWritable()) QProcess::execute("chattr", {"+i", locked});
    if (QFileInfo(locked).isWritable()) GTEST_SKIP() << "no file here can be made unwritable";
    BoxAnswers boxes;
    goOn = false;
    start([] {
        int unit = createPlot(-1.0, -1.0, 0, -1.0, -1.0, 0);
        for (const char* name : {"chart.jpg", "page.pdf", "locked"}) {
            while (!goOn)
                QThread::msleep(5);
            programLog.add(ZEL_saveXYPlot(&unit, const_cast<char*>(name), -1));
        }
        ZEL_startEvents();
    });
    ASSERT_TRUE(waitForProgram(1));
    ASSERT_TRUE(waitUntil([this] { return controller->getXYPlotForUnit(programLog.at(0)) != nullptr; }));
    // The page is 300 x 200 mm at 85 dpi whatever the window.
    controller->getXYPlotForUnit(programLog.at(0))->window()->resize(1500, 300);
    goOn = true;
    ASSERT_TRUE(waitForProgram(4));
    QProcess::execute("chattr", {"-i", locked});
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
    EXPECT_EQ(QFileInfo(locked).size(), 0);
    EXPECT_EQ(boxes.seen, QStringList{"Error|Unable to write locked.png"});
}

} // namespace
} // namespace zeltest
