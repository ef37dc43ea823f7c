// bench/content_bench.cpp: figures of the data converter, the spreadsheet and the timers, under
// the offscreen platform. Medians of several runs.
//
//  1. 1,000,000 REAL*8 values to six-digit text, and to the value that text reads as.
//  2. A 1000 x 100 REAL*4 spreadsheet: write, read back, CSV save.
//  3. A 10 ms repeating timer while the program writes text at full speed: lateness of each shot
//     behind the previous one plus 10 ms, median and 99th percentile.
#include "runtime/io.h"
#include "runtime/testing.h"
#include "zel/content/conversion.h"
#include "zel/content/spreadsheet.h"
#include "zel/core/environment.h"
#include "zel/core/textedit.h"
#include "zel/core/windowcontroller.h"
#include "zel/core/zel.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QTemporaryDir>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <functional>
#include <random>
#include <string>
#include <thread>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;

double median(std::vector<double> v)
{
    std::sort(v.begin(), v.end());
    return v.empty() ? 0.0 : v[v.size() / 2];
}

// CPU time of this thread alongside: on a crowded machine the wall clock mostly measures the queue.
std::vector<double> cpuTimes;

double threadCpuMs()
{
    timespec t{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &t);
    return static_cast<double>(t.tv_sec) * 1e3 + static_cast<double>(t.tv_nsec) / 1e6;
}

double timeMs(const std::function<void()>& work)
{
    const double cpu = threadCpuMs();
    const auto start = Clock::now();
    work();
    cpuTimes.push_back(threadCpuMs() - cpu);
    return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

// "median W ms (CPU C ms)" of the runs timed since the last call.
std::string figure(const std::vector<double>& wall, std::size_t firstCpu, std::size_t step)
{
    std::vector<double> cpu;
    for (std::size_t i = firstCpu; i < cpuTimes.size(); i += step)
        cpu.push_back(cpuTimes[i]);
    char text[64];
    std::snprintf(text, sizeof text, "median %.1f ms (CPU %.1f ms)", median(wall), median(cpu));
    return text;
}

void conversion()
{
    std::mt19937_64 random(7);
    std::uniform_real_distribution<double> value(-1000.0, 1000.0);
    std::vector<double> data(1000000);
    for (double& v : data)
        v = value(random);
    std::vector<double> toText, toValue;
    for (int run = 0; run < 7; ++run) {
        toText.push_back(timeMs([&] {
            const QStringList list =
                ZEL_DataConverter::convertDataToStringList(data.data(), "REAL*8", 1000, 1000);
            if (list.size() != 1000000) std::printf("wrong size\n");
        }));
        double sum = 0;
        toValue.push_back(timeMs([&] {
            for (double v : data)
                sum += ZEL_DataConverter::sixDigitValue(v);
        }));
        if (sum == 12345.0) std::printf(" ");
    }
    std::printf("1,000,000 REAL*8 to text: %s; to six-digit values: %s\n", figure(toText, 0, 2).c_str(),
                figure(toValue, 1, 2).c_str());
    cpuTimes.clear();
}

void spreadsheet()
{
    QTemporaryDir dir;
    std::vector<float> data(100000);
    for (std::size_t i = 0; i < data.size(); ++i)
        data[i] = static_cast<float>(i) * 0.37f - 5000.0f;
    std::vector<float> back(data.size());
    std::vector<double> write, read, save;
    for (int run = 0; run < 7; ++run) {
        ZEL_Spreadsheet sheet(nullptr, 1, dir.filePath("sheet"));
        sheet.initRowsAndColumns(1000, 100);
        sheet.resize(800, 600);
        sheet.show();
        QCoreApplication::processEvents();
        write.push_back(timeMs([&] {
            sheet.writeData(data.data(), "REAL*4", 1000, 100);
            QCoreApplication::processEvents(); // the repaint that follows
        }));
        read.push_back(timeMs([&] { sheet.getDataFromTable(back.data(), "REAL*4", 1000, 100); }));
        save.push_back(timeMs([&] { sheet.save(QString()); }));
    }
    std::printf("1000 x 100 REAL*4 spreadsheet: write %s, read back %s, CSV save %s\n",
                figure(write, 0, 3).c_str(), figure(read, 1, 3).c_str(), figure(save, 2, 3).c_str());
}

// 3. Timer lateness.
std::vector<long long> shots;
std::atomic<bool> writing{true};
bool withOutput = true;

void tick()
{
    shots.push_back(
        std::chrono::duration_cast<std::chrono::microseconds>(Clock::now().time_since_epoch()).count());
}

void writingProgram()
{
    int id = -1;
    unsigned every = 10;
    bool no = false;
    ZEL_createTimer(&id, &every, &no, tick);
    const auto until = Clock::now() + std::chrono::seconds(4);
    while (writing && Clock::now() < until)
        if (!withOutput)
            std::this_thread::sleep_for(std::chrono::milliseconds(50));
        else
            kestro::rt::write(6, "(a,i8)", "a results line of the program, record", 12345678);
    writing = false;
    ZEL_startEvents();
}

void timerLateness(bool output)
{
    withOutput = output;
    writing = true;
    kestro::rt::testing::resetRuntime();
    end_thread = false;
    start_events_called = false;
    shots.clear();
    shots.reserve(1000);
    auto* controller = new WindowController(qApp, writingProgram);
    controller->runIdle(); // the timers run beside the program from the start
    QElapsedTimer clock;
    clock.start();
    while (writing && clock.elapsed() < 10000)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
    std::vector<double> late;
    for (std::size_t i = 1; i < shots.size(); ++i)
        late.push_back(std::max(0.0, static_cast<double>(shots[i] - shots[i - 1]) / 1000.0 - 10.0));
    std::sort(late.begin(), late.end());
    const double p99 = late.empty() ? 0.0 : late[late.size() * 99 / 100];
    std::printf("10 ms timer %s: %zu shots, lateness median %.2f ms, 99th percentile %.2f ms\n",
                output ? "beside full-speed text output" : "beside an idle program (the machine's own share)",
                shots.size(), median(late), p99);
    if (ZEL_TextEdit* text = controller->getTextEditForUnit(-2)) text->document()->setModified(false);
    controller->destroyFortranThread();
    for (QWidget* w : QApplication::topLevelWidgets())
        w->close();
    delete controller;
}

} // namespace

int main(int argc, char** argv)
{
    ::setenv("QT_QPA_PLATFORM", "offscreen", 0);
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    conversion();
    spreadsheet();
    timerLateness(false);
    timerLateness(true);
    return 0;
}
