// zel/content/tests/contentcontroller_test.cpp: the shared file rules, the export page of the
// plot windows and the scripted save of a unit that has no such window.
#include "content_fixture.h"

#include "zel/content/contentcontroller.h"
#include "zel/content/plotwindow.h"

#include <QFile>
#include <QImage>
#include <QRegularExpression>

#include <unistd.h>

namespace zeltest {
namespace {

TEST(ContentFiles, ImageSuffixesAreCaseSensitiveAndDependOnTheWindowKind)
{
    struct Case
    {
        const char* name;
        ImageSuffixes kind;
        const char* expected;
    };
    const Case cases[] = {
        {"plot.png", ImageSuffixes::plot, "plot.png"},
        {"plot.bmp", ImageSuffixes::pixmap, "plot.bmp"},
        {"plot.pdf", ImageSuffixes::plot, "plot.pdf"},
        {"plot.pdf", ImageSuffixes::pixmap, "plot.pdf.png"},
        {"plot.PNG", ImageSuffixes::plot, "plot.PNG.png"},
        {"chart.jpg", ImageSuffixes::plot, "chart.jpg.png"},
        {"", ImageSuffixes::plot, ".png"},
        {"png", ImageSuffixes::plot, "png.png"},
    };
    for (const Case& c : cases)
        EXPECT_EQ(imageFileName(c.name, c.kind), QString(c.expected)) << c.name;
}

TEST(ContentFiles, OnlyAnExistingReadOnlyFileMayNotBeWritten)
{
    QTemporaryDir dir;
    const QString file = dir.filePath("locked.png");
    EXPECT_TRUE(mayWriteFile(file));
    QFile f(file);
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    f.close();
    EXPECT_TRUE(mayWriteFile(file));
    f.setPermissions(QFileDevice::ReadOwner);
    if (::geteuid() != 0) { // root may write anything
        EXPECT_FALSE(mayWriteFile(file));
    }
}

// 300 x 200 mm at 85 dpi: 1003.9 x 669.3 pixels, a PDF page of 850.4 x 566.9 points.
TEST(PlotWindowExport, ThePageSizeDoesNotDependOnTheWindow)
{
    QTemporaryDir dir;
    ZEL_PlotWindow small(nullptr, 7, "small");
    small.resize(200, 150);
    ZEL_PlotWindow large(nullptr, 8, "large");
    large.resize(1400, 900);
    ASSERT_TRUE(small.exportChart(dir.filePath("small.png")));
    ASSERT_TRUE(large.exportChart(dir.filePath("large.bmp")));
    for (const char* name : {"small.png", "large.bmp"}) {
        const QImage image(dir.filePath(name));
        EXPECT_EQ(image.size(), QSize(1004, 669)) << name;
    }

    ASSERT_TRUE(small.exportChart(dir.filePath("page.pdf")));
    QFile pdf(dir.filePath("page.pdf"));
    ASSERT_TRUE(pdf.open(QIODevice::ReadOnly));
    const QByteArray bytes = pdf.readAll();
    const QString text = QString::fromLatin1(bytes.constData(), bytes.size()); // binary: NULs inside
    EXPECT_TRUE(text.startsWith("%PDF"));
    const QRegularExpressionMatch box =
        QRegularExpression(R"(/MediaBox \[0 0 ([0-9.]+) ([0-9.]+)\])").match(text);
    ASSERT_TRUE(box.hasMatch());
    EXPECT_NEAR(box.captured(1).toDouble(), 850.4, 1.0);
    EXPECT_NEAR(box.captured(2).toDouble(), 566.9, 1.0);
}

TEST(PlotWindowExport, SaveTakesTheWindowNameAndTheFileRule)
{
    QTemporaryDir dir;
    const QString previous = QDir::currentPath();
    QDir::setCurrent(dir.path());
    ZEL_PlotWindow plot(nullptr, 9, "Stations");
    plot.save(QString());
    plot.save("copy.jpg");
    QString scripted = "scripted";
    EXPECT_TRUE(plot.saveWithoutDialog(scripted));
    EXPECT_EQ(scripted, QString("scripted.png"));
    QDir::setCurrent(previous);
    for (const char* name : {"Stations.png", "copy.jpg.png", "scripted.png"})
        EXPECT_TRUE(QFile::exists(dir.filePath(name))) << name;
}

class ScriptedSave : public ContentDesktop
{
};

TEST_F(ScriptedSave, AUnitWithoutAnImageWindowIsReportedAndTheProgramGoesOn)
{
    BoxAnswers boxes;
    start([] {
        for (int unit : {4711, -3}) { // -3 is the text window: not saved by script
            char name[] = "chart.png";
            programLog.add(ZEL_saveWindow(&unit, name, -1));
        }
        programLog.add(ZEL_saveWindow(nullptr, nullptr, 0));
        ZEL_startEvents();
    });
    ASSERT_TRUE(waitForProgram(3));
    EXPECT_EQ(boxes.seen, (QStringList{"Error|Window for unit number 4711 does not exist",
                                       "Error|Window for unit number -3 does not exist"}));
    for (std::size_t i = 0; i < 3; ++i)
        EXPECT_EQ(programLog.at(i), 1);
    EXPECT_FALSE(QFile::exists(path("chart.png")));
}

} // namespace
} // namespace zeltest
