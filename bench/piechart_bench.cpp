// bench/piechart_bench.cpp: the pie chart under the offscreen platform: one repaint of a chart of
// 1,000 rows (slices and the legend lines in sight), median and best of 21, and one write of the
// same 1,000 quantities.
#include "zel/content/piechart.h"
#include "zel/content/pieview.h"

#include <QApplication>
#include <QTest>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <vector>

namespace {
using Clock = std::chrono::steady_clock;

double msSince(Clock::time_point start)
{
    return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

void report(const char* what, std::vector<double> times)
{
    std::sort(times.begin(), times.end());
    std::printf("%-40s median %8.2f ms   best %8.2f ms   (%zu runs)\n", what, times[times.size() / 2],
                times.front(), times.size());
}
} // namespace

int main(int argc, char** argv)
{
    // The offscreen platform's notes on what it can't do would drown the figures.
    qInstallMessageHandler([](QtMsgType type, const QMessageLogContext&, const QString& text) {
        if (type != QtWarningMsg && type != QtDebugMsg && type != QtInfoMsg)
            std::fprintf(stderr, "%s\n", qPrintable(text));
    });
    ::setenv("QT_QPA_PLATFORM", "offscreen", 0);
    QApplication application(argc, argv);

    constexpr int rows = 1000;
    std::vector<double> values(rows);
    for (int i = 0; i < rows; ++i)
        values[i] = 1.0 + (i * 37) % 101;

    std::vector<double> writes, repaints;
    for (int run = 0; run < 21; ++run) {
        PieChart chart(nullptr, 1000000, "Bench");
        chart.setChartSettings("Bench", 0xffffff, 0x000000, {}, {});
        chart.resize(1000, 750);
        chart.show();
        if (!QTest::qWaitForWindowExposed(&chart)) return 1;
        Clock::time_point start = Clock::now();
        chart.setChartData(values.data(), "REAL*8", rows, 1);
        writes.push_back(msSince(start));
        QWidget* viewport = chart.pieView()->viewport();
        viewport->repaint(); // the first paint lays the rows out once
        start = Clock::now();
        viewport->repaint();
        repaints.push_back(msSince(start));
    }
    report("pie chart, 1,000 rows: repaint", repaints);
    report("pie chart, 1,000 rows: write", writes);
    return 0;
}
