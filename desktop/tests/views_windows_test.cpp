// desktop/tests/views_windows_test.cpp: the stereonet window of kestrometry-views, opened offscreen
// through the environment and saved, with its poles where the geometry puts them. The tests run on
// the environment's program thread.
#include "desktop/viewsmenu.h"
#include "desktop/viewswindows.h"
#include "zel/core/environment.h"
#include "zel/core/zel.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QImage>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QThread>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>

namespace kestro::desktop {
namespace {

// Canvas of 600: centre (300, 300), primitive radius 0.44 * 600 = 264.
TEST(ViewsWindows, StereonetCanvasShowsThePoles)
{
    const std::string planes = testing::TempDir() + "window_planes.csv";
    // Strike 90 dip 30: pole trend 0 plunge 60 at sqrt(2) sin 15 = 0.36603 of the radius, north:
    // (300, 300 - 96.6). Strike 0 dip 90: pole due west on the primitive, (36, 300).
    std::ofstream(planes) << "strike,dip\n90,30\n0,90\n";
    const views::ReadResult read = views::readPlanes(planes);
    ASSERT_EQ(read.planes.size(), 2u);
    int unit = openStereonetWindow(read.planes, "Stereonet - test");
    const std::string file = testing::TempDir() + "window_net.png";
    std::remove(file.c_str());
    ASSERT_EQ(ZEL_saveCanvas(&unit, const_cast<char*>(file.c_str()), int(file.size())), 1);
    const QImage image(QString::fromStdString(file));
    ASSERT_EQ(image.size(), QSize(viewCanvasSide, viewCanvasSide));
    const QRgb pole = 0x0000a0;
    struct Probe
    {
        int x, y;
        bool pole;
    } probes[] = {{300, 203, true}, {37, 300, true}, {300, 397, false}, {563, 300, false}, {203, 300, false}};
    for (const Probe& p : probes)
        EXPECT_EQ((image.pixel(p.x, p.y) & 0xffffff) == pole, p.pole) << p.x << ", " << p.y;
}

// The table: strike 90 dip 30 dips south (180), its pole points north (0) plunging 60.
TEST(ViewsWindows, TableHoldsThePlanes)
{
    std::vector<views::PlaneRecord> records(1);
    records[0].id = 7;
    records[0].plane = {90, 30};
    records[0].comment = "bed";
    int unit = openTableWindow(records, {}, "Table - test"), rows = 1, columns = 11;
    char cells[11][12];
    char type[] = "CHARACTER*12";
    ASSERT_EQ(ZEL_readSpreadsheet(&unit, cells, type, &rows, &columns, -1), 1);
    const char* expected[] = {"7", "90.00", "180.00", "30.00", "0.00", "60.00"};
    for (int c = 0; c < 6; ++c)
        EXPECT_EQ(std::string(cells[c], 12),
                  std::string(expected[c]).append(12 - std::strlen(expected[c]), ' '))
            << "column " << c;
    EXPECT_EQ(std::string(cells[10], 3), "bed");
}

// The menu comes on the main window while the program thread is busy (never idle here).
TEST(ViewsWindows, MainWindowGetsTheViewsMenu)
{
    installViewsMenu();
    QStringList items;
    for (int attempt = 0; attempt < 50 && items.isEmpty(); ++attempt) {
        QThread::msleep(50);
        QMetaObject::invokeMethod(
            qApp,
            [&items] {
                for (QWidget* widget : QApplication::topLevelWidgets())
                    if (auto* window = qobject_cast<QMainWindow*>(widget))
                        for (QAction* menu : window->menuBar()->actions())
                            if (menu->text() == "Views" && menu->menu())
                                for (QAction* item : menu->menu()->actions())
                                    items << item->text();
            },
            Qt::BlockingQueuedConnection);
    }
    EXPECT_EQ(items, QStringList({"Stereonet", "Rose diagram", "Table"}));
}

int argumentCount;
char** arguments;

void runTests()
{
    testing::InitGoogleTest(&argumentCount, arguments);
    const int result = RUN_ALL_TESTS();
    std::fflush(nullptr);
    std::_Exit(result);
}

} // namespace
} // namespace kestro::desktop

int main(int argc, char** argv)
{
    kestro::desktop::argumentCount = argc;
    kestro::desktop::arguments = argv;
    ZEL_setMainProgram(kestro::desktop::runTests);
    char* only[] = {argv[0], nullptr};
    return TarnixWindowEnvironment(1, only);
}
