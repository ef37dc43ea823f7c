// zel/content/tests/spreadsheet_test.cpp: the grid as written and read, its CSV file, and the
// spreadsheet functions as a program calls them.
#include "content_fixture.h"

#include "runtime/quad.h"
#include "zel/content/spreadsheet.h"

#include <QFile>
#include <QLineEdit>

#include <cstdint>
#include <cstring>
#include <vector>

namespace zeltest {
namespace {

QStringList cells(const ZEL_Spreadsheet& sheet)
{
    QStringList texts;
    for (int r = 0; r < sheet.rowCount(); ++r)
        for (int c = 0; c < sheet.columnCount(); ++c)
            texts << (sheet.item(r, c) ? sheet.item(r, c)->text() : QString("<none>"));
    return texts;
}

std::vector<std::int32_t> counting(int n)
{
    std::vector<std::int32_t> v(static_cast<std::size_t>(n));
    for (int i = 0; i < n; ++i)
        v[static_cast<std::size_t>(i)] = i + 1;
    return v;
}

TEST(Spreadsheet, ReadsTouchOnlyElementsInsideTheGridAndWritesBlankTheRest)
{
    ZEL_Spreadsheet sheet(nullptr, 5, "Grid");
    sheet.initRowsAndColumns(3, 3);
    std::vector<double> read(25, -1.0);
    sheet.getDataFromTable(read.data(), "REAL*8", 5, 5); // never written: empty cells read as 0
    EXPECT_EQ(read[0], 0.0);

    sheet.writeData(counting(9).data(), "INTEGER*4", 3, 3);
    std::fill(read.begin(), read.end(), -1.0);
    sheet.getDataFromTable(read.data(), "REAL*8", 5, 5);
    const std::vector<double> expected{1,  2,  3,  -1, -1, 4,  5,  6,  -1, -1, 7,  8, 9,
                                       -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1};
    EXPECT_EQ(read, expected);
    std::fill(read.begin(), read.end(), -1.0);
    sheet.getDataFromTable(read.data(), "REAL*8", 2, 2); // fewer than the grid: nothing past them
    std::vector<double> corner(25, -1.0);
    std::copy_n(std::vector<double>{1, 2, 4, 5}.begin(), 4, corner.begin());
    EXPECT_EQ(read, corner);
    std::fill(read.begin(), read.end(), -1.0);
    for (const char* type : {"real*8", "REAL", "CHARACTER*-3"})
        sheet.getDataFromTable(read.data(), type, 5, 5);
    sheet.getDataFromTable(read.data(), "REAL*8", 0, 5);
    EXPECT_EQ(read, std::vector<double>(25, -1.0));

    sheet.writeData(counting(4).data(), "INTEGER*4", 2, 2);
    EXPECT_EQ(cells(sheet), (QStringList{"1", "2", "", "3", "4", "", "", "", ""}));
    sheet.writeData(counting(16).data(), "INTEGER*4", 4, 4); // each row its own elements
    EXPECT_EQ(cells(sheet), (QStringList{"1", "2", "3", "5", "6", "7", "9", "10", "11"}));
    sheet.writeData(counting(9).data(), "integer*4", 3, 3);
    EXPECT_EQ(cells(sheet), QStringList(QVector<QString>(9).toList()));
    EXPECT_EQ(sheet.dataType, QString("integer*4"));
}

TEST(Spreadsheet, CellTextsReadInEveryTypeAndAnEditInProgressIsCommitted)
{
    ZEL_Spreadsheet sheet(nullptr, 5, "Types");
    sheet.initRowsAndColumns(1, 3);
    const char* texts[] = {"(1.5, 2.5)", "7", "abcdef"};
    for (int c = 0; c < 3; ++c)
        sheet.setItem(0, c, new QTableWidgetItem(texts[c]));

    double pairs[6];
    sheet.getDataFromTable(pairs, "COMPLEX*8", 1, 3);
    EXPECT_EQ(std::vector<double>(pairs, pairs + 4), (std::vector<double>{1.5, 2.5, 7.0, 0.0}));
    // Fields of four between guard bytes: padded with blanks or cut, never beyond.
    char text[14];
    std::memset(text, '#', sizeof text);
    sheet.getDataFromTable(text + 1, "CHARACTER*4", 1, 3);
    EXPECT_EQ(std::string(text, 14), std::string("#(1.57   abcd#"));

    sheet.setItem(0, 0, new QTableWidgetItem("(1.5000000000000000000000000000000Q0, -2.5Q2)"));
    kestro::rt::Quad quads[4] = {{9, 0}, {9, 0}, {9, 0}, {9, 0}};
    sheet.getDataFromTable(quads, "COMPLEX*16", 1, 2);
    // No second part for 7: its imaginary half stays.
    EXPECT_EQ((std::vector<double>{quads[0].hi, quads[1].hi, quads[2].hi, quads[3].hi}),
              (std::vector<double>{1.5, -250.0, 7.0, 9.0}));

    sheet.show();
    sheet.setCurrentCell(0, 1);
    sheet.editItem(sheet.item(0, 1));
    auto* editor = sheet.findChild<QLineEdit*>();
    ASSERT_NE(editor, nullptr);
    editor->selectAll();
    QTest::keyClicks(editor, "42.5");
    sheet.getDataFromTable(pairs, "REAL*8", 1, 3); // takes the edit in first
    EXPECT_EQ(pairs[1], 42.5);
    EXPECT_EQ(sheet.item(0, 1)->text(), QString("42.5"));
}

TEST(Spreadsheet, CsvFileByteForByte)
{
    QTemporaryDir dir;
    ZEL_Spreadsheet sheet(nullptr, 5, dir.filePath("Table"));
    sheet.initRowsAndColumns(2, 2);
    EXPECT_EQ(sheet.toPlainText(), QString("\"\",\"\"\n\"\",\"\"\n")); // before any write
    const char texts[] = "a\"b 1       x   ";
    sheet.writeData(texts, "CHARACTER*4", 2, 2);
    sheet.item(0, 0)->setText("a\"b");
    sheet.item(1, 1)->setText("x");
    // The name given, and the file written.
    const QString names[][2] = {{"data.CSV", "data.CSV.csv"}, {"t.csv", "t.csv"}, {"", "Table output.csv"}};
    for (const auto& n : names) {
        sheet.save(n[0].isEmpty() ? QString() : dir.filePath(n[0]));
        QFile file(dir.filePath(n[1]));
        EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << n[1].toStdString();
        EXPECT_EQ(file.readAll(), QByteArray("\"a\"b\",\"1   \"\n\"    \",\"x\"\n"));
    }
}

using SpreadsheetProgram = ContentDesktop;

TEST_F(SpreadsheetProgram, WritesCopyReadsWaitAndMissingUnitsAreReported)
{
    BoxAnswers boxes;
    start([] {
        int unit = 7, rows = 2, columns = 3, size = 4, missing = 99, wrongSize = 8;
        char title[] = "Samples";
        ZEL_createSpreadsheet(&unit, title, &rows, &columns, -1);
        char labels[] = "dip   strike";
        int labelLength = 6, count = 2;
        ZEL_setHorizontalHeaderLabels(&unit, labels, &labelLength, &count);
        char real4[] = "REAL*4";
        float data[6] = {1.5f, 2.5f, 3.5f, 1e6f, 0.1f, -7.0f};
        programLog.add(ZEL_writeSpreadsheet(&unit, data, real4, &size, &rows, &columns, 6));
        data[0] = 99.0f; // the window has its own copy
        ZEL_writeSpreadsheet(&unit, data, real4, &wrongSize, &rows, &columns, 6); // dropped
        ZEL_writeSpreadsheet(&missing, data, real4, &size, &rows, &columns, 6);
        double back[6] = {-1, -1, -1, -1, -1, -1};
        char real8[] = "REAL*8xx";
        programLog.add(ZEL_readSpreadsheet(&unit, back, real8, &rows, &columns, 6));
        for (double v : back)
            programLog.add(static_cast<long>(v * 10));
        programLog.add(ZEL_readSpreadsheet(&missing, back, real8, &rows, &columns, 6));
        programLog.add(static_cast<long>(back[0] * 10));
        ZEL_startEvents();
    });
    ASSERT_TRUE(waitForProgram(10));
    EXPECT_EQ(programLog.results, (std::vector<long>{1, 1, 15, 25, 35, 10000000, 1, -70, 1, 15}));
    EXPECT_EQ(boxes.seen, (QStringList{"Error|Spreadsheet for unit number 99 does not exist",
                                       "Error|Spreadsheet for unit number 99 does not exist"}));
    auto* sheet = qobject_cast<ZEL_Spreadsheet*>(controller->getWidgetForUnit(7));
    ASSERT_NE(sheet, nullptr);
    EXPECT_EQ(sheet->windowName, QString("Samples"));
    EXPECT_EQ(cells(*sheet), (QStringList{"1.5", "2.5", "3.5", "1e+06", "0.1", "-7"}));
    EXPECT_EQ(sheet->horizontalHeaderItem(0)->text(), QString("dip   "));
    EXPECT_EQ(sheet->horizontalHeaderItem(1)->text(), QString("strike"));
}

} // namespace
} // namespace zeltest
