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
#include <tuple>
#include <vector>

namespace kestro::desktop {
namespace {

// Strike 90 dip 30 dips south (180), its pole points north (0) plunging 60, at sqrt(2) sin 15 =
// 0.36603 of the radius. Strike 0 dip 90: the pole due west on the primitive.
const std::vector<views::PlaneRecord> records{{7, {90, 30}, false, {}, "bed"}, {8, {0, 90}, false, {}, ""}};

// Canvas of 600: centre (300, 300), primitive radius 0.44 * 600 = 264; the poles at (300, 203.4)
// and (36, 300).
TEST(ViewsWindows, StereonetCanvasShowsThePoles)
{
    int unit = openStereonetWindow(records, "Stereonet - test");
    const std::string file = testing::TempDir() + "window_net.png";
    std::remove(file.c_str());
    ASSERT_EQ(ZEL_saveCanvas(&unit, const_cast<char*>(file.c_str()), int(file.size())), 1);
    const QImage image(QString::fromStdString(file));
    ASSERT_EQ(image.size(), QSize(viewCanvasSide, viewCanvasSide));
    const std::tuple<int, int, bool> probes[] = {
        {300, 203, true}, {37, 300, true}, {300, 397, false}, {563, 300, false}, {203, 300, false}};
    for (const auto& [x, y, pole] : probes)
        EXPECT_EQ((image.pixel(x, y) & 0xffffff) == 0x0000a0, pole) << x << ", " << y;
}

TEST(ViewsWindows, TableHoldsThePlanes)
{
    int unit = openTableWindow(records, {}, "Table - test"), rows = 1, columns = 11;
    char cells[11][12];
    char type[] = "CHARACTER*12";
    ASSERT_EQ(ZEL_readSpreadsheet(&unit, cells, type, &rows, &columns, -1), 1);
    // Not measured: no uncertainty and no condition.
    const std::string expected[] = {"7", "90.00", "180.00", "30.00", "0.00", "60.00", "", "", "", "", "bed"};
    for (int c = 0; c < 11; ++c)
        EXPECT_EQ(std::string(cells[c], 12), expected[c] + std::string(12 - expected[c].size(), ' ')) << c;
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

void runTests()
{
    const int result = RUN_ALL_TESTS();
    std::fflush(nullptr);
    std::_Exit(result);
}

} // namespace
} // namespace kestro::desktop

int main(int argc, char** argv)
{
    testing::InitGoogleTest(&argc, argv);
    ZEL_setMainProgram(kestro::desktop::runTests);
    char* only[] = {argv[0], nullptr};
    return TarnixWindowEnvironment(1, only);
}
