// zel/content/tests/timers_test.cpp: timers start at idle, repeat or fire once, and their
// callbacks may use the window functions on the GUI thread.
#include "content_fixture.h"

#include <QFile>

#include <atomic>
#include <chrono>
#include <thread>

namespace zeltest {
namespace {

using Clock = std::chrono::steady_clock;

std::atomic<int> repeats{0}, shots{0};
std::atomic<long long> idleAt{0}, shotAt{0};
std::atomic<bool> callbackOnGui{true};
int repeatingId = -1, singleId = 7;

long long now()
{
    return std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now().time_since_epoch()).count();
}

void repeat()
{
    if (!onGuiThread()) callbackOnGui = false;
    ++repeats;
}

void shoot()
{
    if (shots++ == 0) shotAt = now();
}

class Timers : public ContentDesktop
{
protected:
    void SetUp() override
    {
        ContentDesktop::SetUp();
        repeats = shots = 0;
        repeatingId = -1;
        singleId = 7;
    }
};

TEST_F(Timers, StartAtIdleThenRepeatOrFireOnce)
{
    start([] {
        unsigned every = 20, once = 50;
        bool no = false, yes = true;
        programLog.add(ZEL_createTimer(&repeatingId, &every, &no, repeat));
        ZEL_createTimer(&singleId, &once, &yes, shoot);
        std::this_thread::sleep_for(std::chrono::milliseconds(200));
        programLog.add(repeats + shots); // nothing before idle
        idleAt = now();
        ZEL_startEvents();
    });
    ASSERT_TRUE(waitForProgram(2));
    EXPECT_EQ(programLog.at(0), 1);
    EXPECT_EQ(programLog.at(1), 0);
    EXPECT_GE(repeatingId, 1000000);
    EXPECT_EQ(singleId, 7);

    ASSERT_TRUE(waitUntil([] { return repeats >= 5 && shots >= 1; }));
    EXPECT_GE(shotAt - idleAt, 50); // the whole interval, counted from idle
    EXPECT_TRUE(callbackOnGui);

    const int id = repeatingId;
    EXPECT_EQ(ZEL_destroyTimer(&repeatingId), 1);
    EXPECT_EQ(repeatingId, -1);
    EXPECT_EQ(ZEL_destroyTimer(&repeatingId), 0);
    const int fired = repeats;
    waitUntil([] { return false; }, 150);
    EXPECT_LE(repeats - fired, 1) << "timer " << id << " still running";
    EXPECT_EQ(shots, 1);
    EXPECT_EQ(ZEL_destroyTimer(&singleId), 1); // gone already: harmless
    EXPECT_EQ(singleId, -1);
}

// A callback draws on an XY plot, saves it by script and reads a spreadsheet: calls that wait for
// the GUI thread, which the callback is running on, must not hang.
std::atomic<int> plotUnit{0}, saves{0};
void drawAndSave()
{
    int sheet = 12, one = 1;
    std::int32_t cell = 0;
    char integer[] = "INTEGER*4";
    if (ZEL_readSpreadsheet(&sheet, &cell, integer, &one, &one, -1) != 1 || cell != 41) return;
    int unit = plotUnit, rows = 1, columns = 2, size = 8, zero = 0, width = 1, dot = 3;
    unsigned color = 0xff0000;
    const double xy[2] = {static_cast<double>(saves.load()), 1.0};
    char type[] = "REAL*8", label[] = "ticks", file[] = "tick.png";
    ZEL_writeXYPlot(&unit, const_cast<double*>(xy), type, &size, &rows, &columns, &zero, label, &color,
                    &width, &color, &dot, &zero, -1, -1);
    if (ZEL_saveXYPlot(&unit, file, -1) == 1) ++saves;
}

TEST_F(Timers, CallbackDrawsSavesAndReadsWithoutWaitingForItself)
{
    saves = 0;
    start([] {
        int unit = 0, type = 0, grid = 0;
        unsigned background = 0xffffff;
        double lower = 0.0, upper = 10.0, step = -1.0;
        char title[] = "Ticks", x[] = "x", y[] = "y";
        ZEL_createXYPlot(&unit, title, x, y, &background, &type, &lower, &upper, &step, &type, &lower, &upper,
                         &step, &grid, &grid, -1, -1, -1);
        plotUnit = unit;
        int sheet = 12, one = 1, four = 4;
        std::int32_t cell = 41;
        char title2[] = "Cell", integer[] = "INTEGER*4";
        ZEL_createSpreadsheet(&sheet, title2, &one, &one, -1);
        ZEL_writeSpreadsheet(&sheet, &cell, integer, &four, &one, &one, -1);
        unsigned every = 20;
        bool no = false;
        ZEL_createTimer(&repeatingId, &every, &no, drawAndSave);
        ZEL_startEvents();
    });
    ASSERT_TRUE(waitUntil([] { return saves >= 2; }, 10000));
    ZEL_destroyTimer(&repeatingId);
    EXPECT_TRUE(QFile::exists(path("tick.png")));
}

} // namespace
} // namespace zeltest
