// zel/content/tests/timers_test.cpp: timers start at idle, repeat or fire once, and their
// callbacks may use the window functions on the GUI thread.
#include "xyplot_calls.h"

#include <QFile>

#include <atomic>
#include <chrono>
#include <thread>

namespace zeltest {
namespace {

std::atomic<int> repeats{0}, shots{0}, saves{0}, plotUnit{0};
std::atomic<long long> idleAt{0}, shotAt{0};
std::atomic<bool> callbackOnGui{true};
int repeatingId = -1, singleId = 7;

long long now()
{
    return std::chrono::duration_cast<std::chrono::milliseconds>(
               std::chrono::steady_clock::now().time_since_epoch())
        .count();
}

// Each tick reads a spreadsheet, draws on an XY plot and saves it by script: calls that wait for
// the GUI thread, which the callback is running on, must not hang.
void repeat()
{
    if (!onGuiThread()) callbackOnGui = false;
    ++repeats;
    int sheet = 12, one = 1;
    std::int32_t cell = 0;
    char integer[] = "INTEGER*4", file[] = "tick.png";
    if (ZEL_readSpreadsheet(&sheet, &cell, integer, &one, &one, -1) != 1 || cell != 41) return;
    int unit = plotUnit;
    const double xy[2] = {static_cast<double>(saves.load()), 1.0};
    writePoints(unit, xy, 1, 2, "ticks");
    if (ZEL_saveXYPlot(&unit, file, -1) == 1) ++saves;
}

void shoot()
{
    if (shots++ == 0) shotAt = now();
}

using Timers = ContentDesktop;

TEST_F(Timers, StartAtIdleThenRepeatOrFireOnceAndMayCallTheWindows)
{
    repeats = shots = saves = 0;
    repeatingId = -1;
    singleId = 7;
    start([] {
        plotUnit = createPlot(0.0, 10.0, 0, 0.0, 10.0, 0);
        int sheet = 12, one = 1, four = 4;
        std::int32_t cell = 41;
        char title[] = "Cell", integer[] = "INTEGER*4";
        ZEL_createSpreadsheet(&sheet, title, &one, &one, -1);
        ZEL_writeSpreadsheet(&sheet, &cell, integer, &four, &one, &one, -1);
        unsigned every = 20, once = 50;
        bool no = false, yes = true;
        programLog.add(ZEL_createTimer(&repeatingId, &every, &no, repeat));
        ZEL_createTimer(&singleId, &once, &yes, shoot);
        std::this_thread::sleep_for(std::chrono::milliseconds(200));
        programLog.add(repeats + shots); // nothing before idle
        idleAt = now();
        ZEL_startEvents();
    });
    ASSERT_TRUE(waitForProgram(3));
    EXPECT_EQ(programLog.at(1), 1);
    EXPECT_EQ(programLog.at(2), 0);
    EXPECT_GE(repeatingId, 1000000);
    EXPECT_EQ(singleId, 7);

    ASSERT_TRUE(waitUntil([] { return repeats >= 5 && shots >= 1 && saves >= 2; }, 10000));
    EXPECT_GE(shotAt - idleAt, 50); // the whole interval, counted from idle
    EXPECT_TRUE(callbackOnGui);
    EXPECT_TRUE(QFile::exists(path("tick.png")));

    EXPECT_EQ(ZEL_destroyTimer(&repeatingId), 1);
    EXPECT_EQ(repeatingId, -1);
    EXPECT_EQ(ZEL_destroyTimer(&repeatingId), 0);
    const int fired = repeats;
    waitUntil([] { return false; }, 150);
    EXPECT_LE(repeats - fired, 1) << "the timer still runs";
    EXPECT_EQ(shots, 1);
    EXPECT_EQ(ZEL_destroyTimer(&singleId), 1); // gone already: harmless
    EXPECT_EQ(singleId, -1);
}

} // namespace
} // namespace zeltest
