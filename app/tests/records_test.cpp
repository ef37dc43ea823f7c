// app/tests/records_test.cpp: reading records, the checks in their order with their panels, and
// the results lines of both forms.
#include "app/records.h"

#include "app/results.h"
#include "app/solver.h"

#include "app/tests/app_console.h"

#include <gtest/gtest.h>

#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>

namespace kestro::app {
namespace {

using Records = AppConsole;

TEST_F(Records, ChecksRunInTheirOrderAndTheFirstFailureReports)
{
    const std::string letter1 = "error: 1st direction should be E,W,N,S";
    const std::string same = "error: same dip direction [modulo 180], early detection";
    const std::string dip2 = "error: 2nd app dip out of [0,90]";
    const std::string dip1 = "error: 1st app dip out of [0,90]";
    auto axis = [](char first, char second) {
        return std::string(" 1st dip direction = ") + first + " |\n 2nd dip direction = " + second +
               " |\n => Same directions modulo 180 deg |\n";
    };
    auto strikes = [](const char* dd1, const char* dd2, const char* d) {
        return std::string(" The two data have same strike |\n 1st dip dir = dd1 = ") + dd1 +
               "|\n 2nd dip dir = dd2 = " + dd2 + "|\n dd2 - dd1 = " + d + " [modulo 180]|\n";
    };
    const std::string secondDip95 = " 2nd dip out of [0,90] |\n 2nd dip =    95.0|\n";
    const std::string firstDip95 = " 1st dip out of [0,90] |\n 1st dip =    95.0|\n";
    const struct
    {
        DataForm form;
        const char* record;
        std::string comment; // empty: the record passes
        std::string lines;   // behind the record line
    } cases[]{
        {A, "91 'Q' 50 'N'", letter1,
         " 1st dip direction = Q |\n => 1st dip direction should be E,W,N,S |\n"},
        {A, "16 'e' 50 'N'", letter1,
         " 1st dip direction = e |\n => 1st dip direction should be E,W,N,S |\n"},
        {A, "16 'E' 95 'a'", "error: 2nd direction should be E,W,N,S,A",
         " 2nd dip direction = a |\n => 2nd dip direction should be E,W,N,S,A |\n"},
        {A, "16 'E' 95 'E'", same, axis('E', 'E')},
        {A, "16 'E' 50 'W'", same, axis('E', 'W')},
        {A, "91 'E' 95 'N'", dip2, secondDip95},
        {A, "16 'E' -1 'N'", dip2, " 2nd dip out of [0,90] |\n 2nd dip =    -1.0|\n"},
        {A, "95 'W' 500 'A'", dip1, firstDip95},
        {A, "16 'E' 0 'N'", "", ""},
        {A, "16 'E' 500 'A'", "", ""}, // a strike has no range
        {A, "0 'E' 90 'N'", "", ""},   // the solver refuses it
        {N, "16 90 50 270", same, strikes("   90.0", "  270.0", " 0.000E+00")},
        {N, "16 90 50 90.00005", same, strikes("   90.0", "   90.0", " 5.341E-05")},
        {N, "16 -90 50 89.99995", same, strikes("  -90.0", "   90.0", " 1.800E+02")}, // 180 - d is too small
        {N, "95 90 50 90", same, strikes("   90.0", "   90.0", " 0.000E+00")},
        {N, "16 90 95 90", dip2, secondDip95},
        {N, "95 90 50 0", dip1, firstDip95},
        {N, "16 90 50 90.001", "", ""},
        {N, "16 -400 50 510", "", ""}, // directions have no range
    };
    for (const auto& c : cases) {
        Fracture f = parsed(c.form, c.record);
        const Verdict verdict = checkRecord(c.form, f);
        EXPECT_EQ(verdict.accepted, c.comment.empty()) << c.record;
        EXPECT_EQ(f.comment.view(), Text<55>(c.comment).view()) << c.record;
        writeNotices(verdict, 3);
        const std::string expected =
            c.comment.empty() ? "" : " while reading data nb     3 |\n" + c.lines + " ===> NO CONVERSION |\n";
        EXPECT_EQ(screen(false), expected) << c.record;
    }
}

TEST_F(Records, ResultsLinesOfBothForms)
{
    const struct
    {
        DataForm form;
        const char* record;
        std::string line;
    } cases[]{
        {A, "0 'E' 0 'N'", "   0.0\t'E'\t   0.0\t'N'\t   0.0\t   0.0\thorizontal plane|"},
        {A, "91 'Q' 50 'N'",
         "  91.0\t'Q'\t  50.0\t'N'\t      \t      \terror: 1st direction should be E,W,N,S|"},
        {A, "1234567 'E' 50 'N'",
         "******\t'E'\t  50.0\t'N'\t      \t      \terror: 1st app dip out of [0,90]|"},
        {N, "16 180 0 200",
         "  16.0\t 180.0\t   0.0\t  20.0\t  20.0\t  40.0\toutput strike = input strike + 180|"},
        {N, "16 60 0 -30", "  16.0\t  60.0\t   0.0\t -30.0\t 330.0\t  16.0\t |"},
        {N, "0 90 50 0",
         "   0.0\t  90.0\t  50.0\t   0.0\t      \t      \terror: 1st dip = 0 => should be in 2nd position|"},
    };
    for (const auto& c : cases) {
        Fracture f = parsed(c.form, c.record);
        const bool converted = checkRecord(c.form, f).accepted && solve(c.form, f).accepted;
        writeResults(6, c.form, f, converted, false);
        EXPECT_EQ(screen(), c.line + "\n") << c.record;
    }
}

TEST_F(Records, FieldsKeepTheirValuesWhereARecordLeavesThemOut)
{
    const std::string path =
        (std::filesystem::temp_directory_path() / ("kestro_records_" + std::to_string(getpid()))).string();
    auto open = [&](const std::string& contents) {
        std::ofstream(path, std::ios::binary) << contents;
        rt::OpenSpec specifiers;
        specifiers.file = path;
        specifiers.status = "old";
        rt::open(40, specifiers);
    };
    open("'North wall, bench 3'\n'dipa1' 'dipdir1' 'dipa2' 'dipdir2'\n16 'E'  50 'N'\n30,W,,S\n\n"
         "20 'S' /\n12 E\n40 N and a remark\nbad 'E' 1 'N'\n");
    Text<40> title;
    ASSERT_EQ(readHeader(40, title), ReadOutcome::record);
    EXPECT_EQ(title.view(), Text<40>("North wall, bench 3").view());
    Fracture f;
    for (const char* expected : {"16 E 50 N", "30 W 50 S", "20 S 50 S", "12 E 40 N"}) {
        const Fracture r = parsed(A, expected);
        ASSERT_EQ(readRecord(40, A, f), ReadOutcome::record);
        EXPECT_EQ(std::make_tuple(f.dipa1, f.DIPDA[0].str(), f.dipa2, f.DIPDA[1].str()),
                  std::make_tuple(r.dipa1, r.DIPDA[0].str(), r.dipa2, r.DIPDA[1].str()))
            << expected;
    }
    EXPECT_EQ(readRecord(40, A, f), ReadOutcome::failure); // a number that cannot be read
    rt::close(40);

    open("Quarry\n-\n16 180 0 200 strike record\n");
    ASSERT_EQ(readHeader(40, title), ReadOutcome::record);
    ASSERT_EQ(readRecord(40, N, f), ReadOutcome::record);
    EXPECT_EQ(f.DDIR[1], 200.0f);
    EXPECT_EQ(readRecord(40, N, f), ReadOutcome::endOfInput);
    rt::close(40);
    open("'Title only'\n");
    EXPECT_EQ(readHeader(40, title), ReadOutcome::failure);
    rt::close(40);
    std::remove(path.c_str());
}

} // namespace
} // namespace kestro::app
