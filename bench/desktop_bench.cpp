// bench/desktop_bench.cpp: the desktop program's figures, under the offscreen platform.
//
//  1. Return typed in the text window to the line in the program's hands: median and 99th
//     percentile over 400 reads.
//  2. Results lines appended to the text window from the program thread: lines per second, and
//     the longest stall of the event loop meanwhile (a 5 ms timer measures it); then the window is
//     scrolled to both ends.
//  3. A screen session of 1,000,000 records through the real program in a child process: time
//     and peak resident memory.
//  4. Launch to the banner on the screen, in a child process: best and median of 10.
#include "app/kestrometry.h"
#include "runtime/io.h"
#include "runtime/testing.h"
#include "zel/core/environment.h"
#include "zel/core/gluemanager.h"
#include "zel/core/textedit.h"
#include "zel/core/windowcontroller.h"
#include "zel/core/zel.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QScrollBar>
#include <QTest>
#include <QTextBlock>
#include <QTimer>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <fcntl.h>
#include <string>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;

bool waitUntil(const std::function<bool()>& done, int ms)
{
    QElapsedTimer clock;
    clock.start();
    while (!done()) {
        if (clock.elapsed() > ms) return false;
        QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
    }
    return true;
}

// 1. Latency of a typed line.
constexpr int reads = 400;
std::atomic<int> readsDone{0};
std::atomic<long long> receivedAt[reads];

long long nowNs()
{
    return std::chrono::duration_cast<std::chrono::nanoseconds>(Clock::now().time_since_epoch()).count();
}

void readingProgram()
{
    char buffer[128];
    long unit = -2;
    for (int i = 0; i < reads; ++i) {
        ZEL_readText(buffer, sizeof buffer, &unit);
        receivedAt[i] = nowNs();
        readsDone = i + 1;
    }
    ZEL_startEvents();
}

// 2. Output.
long outputLines = 1000000;
std::atomic<bool> outputWritten{false};

void writingProgram()
{
    using kestro::rt::write;
    const std::string comment(55, 'c');
    for (long i = 0; i < outputLines; ++i)
        write(6, "(2(f6.1,a1,'''',a1,'''',a1),f6.1,a1,f6.1,a1,a)", 16.0f, "\t", "E", "\t", 50.0f, "\t", "N",
              "\t", 283.5f, "\t", 50.8f, "\t", comment);
    outputWritten = true;
    ZEL_startEvents();
}

void resetEnvironment()
{
    kestro::rt::testing::resetRuntime();
    end_thread = false;
    start_events_called = false;
}

void endEnvironment(WindowController* controller)
{
    if (ZEL_TextEdit* text = controller->getTextEditForUnit(-2)) text->document()->setModified(false);
    controller->destroyFortranThread();
    for (QWidget* w : QApplication::topLevelWidgets())
        w->close();
    delete controller;
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

void latency()
{
    resetEnvironment();
    auto* controller = new WindowController(qApp, readingProgram);
    ZEL_TextEdit* window = controller->getTextEditForUnit(-2);
    std::vector<double> micros;
    for (int i = 0; i < reads; ++i) {
        if (!waitUntil([&] { return window->isReading(); }, 5000)) break;
        QTest::keyClicks(window, "16 'E' 50 'N'");
        const long long typed = nowNs();
        QTest::keyClick(window, Qt::Key_Return);
        if (!waitUntil([&] { return readsDone.load() > i; }, 5000)) break;
        micros.push_back(static_cast<double>(receivedAt[i].load() - typed) / 1000.0);
    }
    std::sort(micros.begin(), micros.end());
    if (micros.empty()) {
        std::printf("typed line to program: no reads completed\n");
    } else {
        std::printf("typed line to program: median %.3f ms, 99th percentile %.3f ms (%zu reads)\n",
                    micros[micros.size() / 2] / 1000.0, micros[micros.size() * 99 / 100] / 1000.0,
                    micros.size());
    }
    endEnvironment(controller);
}

void output()
{
    resetEnvironment();
    qint64 longestGap = 0;
    QElapsedTimer sinceTick;
    QTimer ticker;
    QObject::connect(&ticker, &QTimer::timeout,
                     [&] { longestGap = std::max(longestGap, sinceTick.restart()); });
    QElapsedTimer clock;
    clock.start();
    sinceTick.start();
    ticker.start(5);
    auto* controller = new WindowController(qApp, writingProgram);
    ZEL_TextEdit* window = controller->getTextEditForUnit(-2);
    waitUntil([&] { return outputWritten.load() && window->document()->blockCount() > outputLines; }, 600000);
    const double seconds = static_cast<double>(clock.elapsed()) / 1000.0;
    ticker.stop();
    QScrollBar* bar = window->verticalScrollBar();
    bar->setValue(0);
    QCoreApplication::processEvents();
    const bool top = bar->value() == 0 && window->cursorForPosition(QPoint(0, 0)).blockNumber() == 0;
    bar->setValue(bar->maximum());
    QCoreApplication::processEvents();
    const bool bottom = window->cursorForPosition(QPoint(0, 0)).blockNumber() > outputLines - 1000;
    std::printf("text window output: %ld lines in %.3f s, %.0f lines/s, longest event-loop stall %lld ms, "
                "scrolls to top %s and bottom %s\n",
                outputLines, seconds, static_cast<double>(outputLines) / seconds,
                static_cast<long long>(longestGap), top ? "yes" : "no", bottom ? "yes" : "no");
    endEnvironment(controller);
}

struct Child
{
    double seconds = 0;
    long peakKiB = 0;
    int status = -1;
    std::string out;
};

Child runDriver(const std::string& folder, const char* mode, const std::string& answers)
{
    std::FILE* f = std::fopen((folder + "/answers").c_str(), "w");
    std::fputs(answers.c_str(), f);
    std::fclose(f);
    int pipeFds[2];
    if (pipe(pipeFds) != 0) return {};
    const auto start = Clock::now();
    const pid_t pid = fork();
    if (pid == 0) {
        if (chdir(folder.c_str()) != 0) _exit(126);
        dup2(pipeFds[1], 1);
        const int devnull = open("/dev/null", O_RDWR);
        dup2(devnull, 0);
        dup2(devnull, 2);
        setenv("QT_QPA_PLATFORM", "offscreen", 1);
        unsetenv("TARNIX_RT_FLAGS");
        execl(KESTRO_DRIVER, KESTRO_DRIVER, mode, "answers", "-", static_cast<char*>(nullptr));
        _exit(127);
    }
    close(pipeFds[1]);
    Child child;
    char buffer[256];
    for (ssize_t n; (n = read(pipeFds[0], buffer, sizeof buffer)) > 0;)
        child.out.append(buffer, static_cast<std::size_t>(n));
    close(pipeFds[0]);
    int status = 0;
    struct rusage usage
    {
    };
    wait4(pid, &status, 0, &usage);
    child.seconds = std::chrono::duration<double>(Clock::now() - start).count();
    child.peakKiB = usage.ru_maxrss;
    child.status = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    return child;
}

std::string makeFolder()
{
    std::string pattern = "/tmp/kestro_desktop_bench_XXXXXX";
    return mkdtemp(pattern.data()) ? pattern : std::string();
}

void screenSession()
{
    const std::string folder = makeFolder();
    std::FILE* f = std::fopen((folder + "/kestro_in.txt").c_str(), "w");
    std::fputs("'Bench campaign'\n'dipa1' 'dipdir1' 'dipa2' 'dipdir2'\n", f);
    for (int i = 0; i < 1000000; ++i)
        std::fputs("16 'E'  50 'N'\n", f);
    std::fclose(f);
    // Banner, input from the default file, default form, results on the screen, closing pause.
    const Child c = runDriver(folder, "session", "\n\n\n\n2\n\n\n");
    std::printf("screen session of 1000000 records: %.2f s, peak RSS %.1f MiB, exit %d\n", c.seconds,
                static_cast<double>(c.peakKiB) / 1024.0, c.status);
    std::system(("rm -rf " + folder).c_str());
}

void launchToBanner()
{
    const std::string folder = makeFolder();
    std::vector<double> ms;
    for (int i = 0; i < 10; ++i) {
        timespec start{};
        clock_gettime(CLOCK_MONOTONIC, &start);
        const Child c = runDriver(folder, "banner", "\n");
        const long long shown = std::atoll(c.out.c_str());
        if (shown > 0)
            ms.push_back(static_cast<double>(shown - (start.tv_sec * 1000000000LL + start.tv_nsec)) / 1e6);
    }
    std::sort(ms.begin(), ms.end());
    if (!ms.empty())
        std::printf("launch to banner shown: best %.1f ms, median %.1f ms (%zu launches)\n", ms.front(),
                    ms[ms.size() / 2], ms.size());
    std::system(("rm -rf " + folder).c_str());
}

} // namespace

int main(int argc, char** argv)
{
    ::setenv("QT_QPA_PLATFORM", "offscreen", 0);
    std::setvbuf(stdout, nullptr, _IOLBF, 0);
    if (argc > 1) outputLines = std::atol(argv[1]);
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    latency();
    output();
    launchToBanner();
    screenSession();
    return 0;
}
