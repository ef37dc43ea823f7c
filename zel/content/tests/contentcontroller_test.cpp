// zel/content/tests/contentcontroller_test.cpp: the shared file rules and the scripted save of a
// unit that has no such window.
#include "content_fixture.h"

#include "zel/content/contentcontroller.h"

#include <QFile>

#include <tuple>

using namespace zeltest;

TEST(ContentFiles, ImageSuffixesAreCaseSensitiveAndDependOnTheWindowKind)
{
    const std::tuple<const char*, ImageSuffixes, const char*> cases[] = {
        {"plot.bmp", ImageSuffixes::pixmap, "plot.bmp"},
        {"plot.pdf", ImageSuffixes::plot, "plot.pdf"},
        {"plot.pdf", ImageSuffixes::pixmap, "plot.pdf.png"},
        {"plot.PNG", ImageSuffixes::plot, "plot.PNG.png"},
        {"chart.jpg", ImageSuffixes::plot, "chart.jpg.png"},
        {"", ImageSuffixes::plot, ".png"},
        {"png", ImageSuffixes::plot, "png.png"},
    };
    for (const auto& [name, kind, expected] : cases)
        EXPECT_EQ(imageFileName(name, kind), QString(expected)) << name;
}

using ScriptedSave = ContentDesktop;

TEST_F(ScriptedSave, AUnitWithoutAnImageWindowIsReportedAndTheProgramGoesOn)
{
    BoxAnswers boxes;
    start([] {
        char name[] = "chart.png";
        for (int unit : {4711, -3}) // -3 is the text window: not saved by script
            programLog.add(ZEL_saveWindow(&unit, name, -1));
        programLog.add(ZEL_saveWindow(nullptr, nullptr, 0));
        ZEL_startEvents();
    });
    ASSERT_TRUE(waitForProgram(3));
    EXPECT_EQ(boxes.seen, (QStringList{"Error|Window for unit number 4711 does not exist",
                                       "Error|Window for unit number -3 does not exist"}));
    EXPECT_EQ(programLog.results, (std::vector<long>{1, 1, 1}));
    EXPECT_FALSE(QFile::exists(path("chart.png")));
}
