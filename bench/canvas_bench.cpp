// bench/canvas_bench.cpp: the canvas's figures, under the offscreen platform.
//
//  1. 10,000 objects of all ten kinds drawn from the program thread: objects per second until the
//     calls are back in the program's hands.
//     And how long until the GUI thread has them all on the canvas.
//  2. A repaint of the whole canvas holding them; and one after a change low in the list, which
//     paints every object anew.
//  3. Memory (resident, and held by the allocator) before drawing, with the objects, and after
//     the canvas is cleared.
// Medians of eleven rounds.
#include "zel/content/canvas.h"
#include "zel/content/canvasobjects.h"
#include "zel/core/environment.h"
#include "zel/core/gluemanager.h"
#include "zel/core/windowcontroller.h"
#include "zel/core/zel.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QImage>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <thread>
#include <unistd.h>
#include <vector>

#ifdef __GLIBC__
#include <malloc.h>
#endif

namespace {

constexpr int rounds = 11;
constexpr int objects = 10000;
std::atomic<int> canvasUnit{0};
std::atomic<int> go{0}, drawnRounds{0};
std::vector<double> drawSeconds(rounds);
std::string pictureFile;

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

void drawMixed(int unit)
{
    unsigned colour = 0x3366CC, fill = 0xCC9933;
    float width = 1.5f, start = 30, span = 120;
    int style = 1, one = 1, three = 3;
    for (int i = 0; i < objects; ++i) {
        int id = -1;
        const float x = static_cast<float>((i * 37) % 760), y = static_cast<float>((i * 53) % 560);
        float rect[] = {x, y, 30, 24};
        float poly[] = {x, y, x + 30, y + 5, x + 12, y + 28};
        switch (i % 10) {
        case 0:
            ZEL_drawLines(&unit, &id, poly, &one, &width, &style, nullptr, nullptr, &colour);
            break;
        case 1:
            ZEL_drawRectsWithBrush(&unit, &id, rect, &one, nullptr, nullptr, nullptr, nullptr, &colour,
                                   &fill);
            break;
        case 2:
            ZEL_drawRoundedRects(&unit, &id, rect, &one, &start, &start, &width, nullptr, nullptr, nullptr,
                                 &colour);
            break;
        case 3:
            ZEL_drawPolygonWithBrush(&unit, &id, poly, &three, nullptr, nullptr, nullptr, nullptr, nullptr,
                                     &fill);
            break;
        case 4:
            ZEL_drawEllipseWithBrush(&unit, &id, rect, nullptr, nullptr, nullptr, nullptr, &colour, &fill);
            break;
        case 5:
            ZEL_drawArc(&unit, &id, rect, &start, &span, &width, nullptr, nullptr, nullptr, &colour);
            break;
        case 6:
            ZEL_drawChordWithBrush(&unit, &id, rect, &start, &span, nullptr, nullptr, nullptr, nullptr,
                                   nullptr, &fill);
            break;
        case 7:
            ZEL_drawPie(&unit, &id, rect, &start, &span, nullptr, nullptr, nullptr, nullptr, &colour);
            break;
        case 8:
            ZEL_drawText(&unit, &id, rect, const_cast<char*>("dip 42"), nullptr, nullptr, nullptr, nullptr,
                         nullptr, &colour, 6, 0);
            break;
        default:
            ZEL_drawPicture(&unit, &id, rect, pictureFile.data(), -1);
            break;
        }
    }
}

void program()
{
    int unit = 0, width = 800, height = 600, noMax = -1;
    unsigned white = 0xFFFFFF;
    ZEL_createCanvas(&unit, const_cast<char*>("Bench"), &width, &height, &noMax, &noMax, &white, -1);
    canvasUnit = unit;
    for (int r = 0; r < rounds; ++r) {
        while (go.load() <= r)
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        const auto t0 = std::chrono::steady_clock::now();
        drawMixed(unit);
        drawSeconds[r] = std::chrono::duration<double>(std::chrono::steady_clock::now() - t0).count();
        drawnRounds = r + 1;
    }
    ZEL_startEvents();
}

double median(std::vector<double> v)
{
    std::sort(v.begin(), v.end());
    return v[v.size() / 2];
}

double residentMiB()
{
    long pages = 0, resident = 0;
    if (FILE* f = std::fopen("/proc/self/statm", "r")) {
        if (std::fscanf(f, "%ld %ld", &pages, &resident) != 2) resident = 0;
        std::fclose(f);
    }
    return static_cast<double>(resident) * static_cast<double>(sysconf(_SC_PAGESIZE)) / (1 << 20);
}

double allocatedMiB()
{
#if defined(__GLIBC__) && (__GLIBC__ > 2 || (__GLIBC__ == 2 && __GLIBC_MINOR__ >= 33))
    return static_cast<double>(mallinfo2().uordblks) / (1 << 20);
#else
    return 0;
#endif
}

} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    const QString picture = QDir::temp().filePath("kestro_canvas_bench.png");
    QImage tile(16, 16, QImage::Format_RGB32);
    tile.fill(0x88AA44);
    tile.save(picture);
    pictureFile = picture.toStdString();

    auto* controller = new WindowController(&app, program);
    Canvas* canvas = nullptr;
    if (!waitUntil([&] { return (canvas = controller->getCanvasForUnit(canvasUnit)) != nullptr; }, 10000)) {
        std::fprintf(stderr, "no canvas\n");
        return 1;
    }
    std::vector<double> arrivalMs, repaintMs, wholeListMs, before, with, after, heapBefore, heapWith,
        heapAfter;
    for (int r = 0; r < rounds; ++r) {
        before.push_back(residentMiB());
        heapBefore.push_back(allocatedMiB());
        QElapsedTimer arrival;
        arrival.start();
        go = r + 1;
        if (!waitUntil([&] { return drawnRounds > r && canvas->objectCount() == objects; }, 60000)) {
            std::fprintf(stderr, "round %d: %d objects\n", r, canvas->objectCount());
            return 1;
        }
        arrivalMs.push_back(static_cast<double>(arrival.nsecsElapsed()) / 1e6);
        with.push_back(residentMiB());
        heapWith.push_back(allocatedMiB());
        canvas->repaint(); // objects that came after the last paint
        for (int k = 0; k < 3; ++k) {
            QElapsedTimer clock;
            clock.start();
            canvas->repaint();
            repaintMs.push_back(static_cast<double>(clock.nsecsElapsed()) / 1e6);
        }
        // An object replaced at the bottom of the list: the whole list is painted again.
        QElapsedTimer clock;
        clock.start();
        canvas->removeCanvasObjectForId(canvas->objectList().constFirst()->id);
        canvas->repaint();
        wholeListMs.push_back(static_cast<double>(clock.nsecsElapsed()) / 1e6);
        int unit = canvasUnit;
        ZEL_clearCanvas(&unit);
        after.push_back(residentMiB());
        heapAfter.push_back(allocatedMiB());
    }
    std::printf("canvas: %d mixed objects drawn from the program thread: %.2f M objects/s (median of %d)\n",
                objects, objects / median(drawSeconds) / 1e6, rounds);
    std::printf("canvas: all %d objects on the canvas %.0f ms after the first call\n", objects,
                median(arrivalMs));
    std::printf("canvas: repaint of %d objects at 800 x 600: %.2f ms (median of %zu)\n", objects,
                median(repaintMs), repaintMs.size());
    std::printf("canvas: the same after a change at the bottom of the list (all painted anew): %.1f ms\n",
                median(wholeListMs));
    std::printf("canvas: resident memory before / with / after clear: %.1f / %.1f / %.1f MiB\n",
                median(before), median(with), median(after));
    std::printf("canvas: allocated memory before / with / after clear: %.1f / %.1f / %.1f MiB\n",
                median(heapBefore), median(heapWith), median(heapAfter));
    QFile::remove(picture);
    controller->destroyFortranThread();
    std::fflush(stdout);
    std::_Exit(0);
}
