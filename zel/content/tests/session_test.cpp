// zel/content/tests/session_test.cpp: a whole program with a spreadsheet and an XY plot in a
// process of its own, ending with a Save As dialog for each window.
#include <QFile>
#include <QImage>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

// The driver inherits this process's offscreen platform.
TEST(ContentSession, EndsWithEverySaveAnsweredAndStatusZero)
{
    QTemporaryDir dir;
    QProcess driver;
    driver.setWorkingDirectory(dir.path());
    driver.start(KESTRO_CONTENT_DRIVER, QStringList());
    ASSERT_TRUE(driver.waitForFinished(60000));
    EXPECT_EQ(driver.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(driver.exitCode(), 0);
    const QString answers = QString::fromLatin1(driver.readAllStandardError());
    EXPECT_TRUE(answers.contains("answered: Save Samples As\n")) << answers.toStdString();
    EXPECT_TRUE(answers.contains("answered: Save Wells As\n")) << answers.toStdString();

    QFile sheet(dir.filePath("sheet.csv"));
    ASSERT_TRUE(sheet.open(QIODevice::ReadOnly));
    EXPECT_EQ(sheet.readAll(), QByteArray("\"1.5\",\"-2\"\n\"1e+06\",\"0.1\"\n"));
    EXPECT_FALSE(QImage(dir.filePath("plot.png"), "PNG").isNull());
}

} // namespace
