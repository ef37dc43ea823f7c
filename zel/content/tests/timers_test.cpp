// zel/content/tests/timers_test.cpp: timers start at idle, repeat or fire once, and their
// callbacks may use the window functions on the GUI thread.
#include "content_fixture.h"

#include "zel/content/spreadsheet.h"

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

// A callback on the GUI thread writes a spreadsheet and reads it back; neither call may wait for
// the GUI thread it is running on.
std::atomic<int> readBack{0};
void writeAndRead()
{
    int unit = 12, rows = 1, columns = 1, size = 4;
    std::int32_t value = 41 + repeats++;
    char type[] = "INTEGER*4";
    ZEL_writeSpreadsheet(&unit, &value, type, &size, &rows, &columns, -1);
    std::int32_t back = 0;
    if (ZEL_readSpreadsheet(&unit, &back, type, &rows, &columns, -1) == 1) readBack = back;
}

TEST_F(Timers, CallbackUsesWindowFunctionsWithoutWaitingForItself)
{
    readBack = 0;
    start([] {
        int unit = 12, rows = 1, columns = 1;
        char title[] = "Timer";
        ZEL_createSpreadsheet(&unit, title, &rows, &columns, -1);
        unsigned every = 10;
        bool no = false;
        ZEL_createTimer(&repeatingId, &every, &no, writeAndRead);
        ZEL_startEvents();
    });
    ASSERT_TRUE(waitUntil([] { return readBack >= 43; }));
    ZEL_destroyTimer(&repeatingId);
}

} // namespace
} // namespace zeltest
