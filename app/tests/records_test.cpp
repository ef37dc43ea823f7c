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

class Records : public AppConsole
{
protected:
    void TearDown() override
    {
        AppConsole::TearDown();
        if (!path.empty()) std::remove(path.c_str());
    }

    // A data file with these contents, open on unit 40.
    void openData(const std::string& contents)
    {
        path = (std::filesystem::temp_directory_path() / ("kestro_records_" + std::to_string(getpid())))
                   .string();
        std::ofstream(path, std::ios::binary) << contents;
        rt::OpenSpec specifiers;
        specifiers.file = path;
        specifiers.status = "old";
        rt::open(40, specifiers);
    }

    std::string path;
};

constexpr DataForm A = DataForm::alphanumerical;
constexpr DataForm N = DataForm::numerical;

TEST_F(Records, ChecksRunInTheirOrderAndTheFirstFailureReports)
{
    struct Case
    {
        DataForm form;
        const char* record;
        std::string_view comment; // empty: the record passes
        std::string lines;        // behind the head and the record line
    };
    const std::string_view letter1 = "error: 1st direction should be E,W,N,S";
    const std::string_view letter2 = "error: 2nd direction should be E,W,N,S,A";
    const std::string_view same = "error: same dip direction [modulo 180], early detection";
    const std::string_view dip2 = "error: 2nd app dip out of [0,90]";
    const std::string_view dip1 = "error: 1st app dip out of [0,90]";
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
    const Case cases[]{
        {A, "91 'Q' 50 'N'", letter1,
         " 1st dip direction = Q |\n => 1st dip direction should be E,W,N,S |\n"},
        {A, "16 'e' 50 'N'", letter1,
         " 1st dip direction = e |\n => 1st dip direction should be E,W,N,S |\n"},
        {A, "16 'E' 95 'a'", letter2,
         " 2nd dip direction = a |\n => 2nd dip direction should be E,W,N,S,A |\n"},
        {A, "16 'E' 50 'E'", same, axis('E', 'E')},
        {A, "16 'E' 95 'E'", same, axis('E', 'E')},
        {A, "16 'E' 50 'W'", same, axis('E', 'W')},
        {A, "16 'E' 95 'N'", dip2, secondDip95},
        {A, "91 'E' 95 'N'", dip2, secondDip95},
        {A, "16 'E' -1 'N'", dip2, " 2nd dip out of [0,90] |\n 2nd dip =    -1.0|\n"},
        {A, "95 'E' 50 'N'", dip1, firstDip95},
        {A, "95 'W' 500 'A'", dip1, firstDip95},
        {A, "16 'E' 50 'N'", "", ""},
        {A, "16 'E' 0 'N'", "", ""},
        {A, "16 'E' 500 'A'", "", ""}, // a strike has no range
        {A, "0 'E' 90 'N'", "", ""},   // the solver refuses it
        {A, "90 'S' 90 'W'", "", ""},
        {N, "16 90 50 270", same, strikes("   90.0", "  270.0", " 0.000E+00")},
        {N, "16 90 50 90.00005", same, strikes("   90.0", "   90.0", " 5.341E-05")},
        {N, "16 -90 50 89.99995", same, strikes("  -90.0", "   90.0", " 1.800E+02")}, // 180 - d is too small
        {N, "16 90 0 90", same, strikes("   90.0", "   90.0", " 0.000E+00")},
        {N, "95 90 50 90", same, strikes("   90.0", "   90.0", " 0.000E+00")},
        {N, "16 90 95 90", dip2, secondDip95},
        {N, "95 90 50 0", dip1, firstDip95},
        {N, "16 90 50 90.001", "", ""},
        {N, "16 180 0 200", "", ""},
        {N, "16 -400 50 510", "", ""}, // directions have no range
    };
    for (const Case& c : cases) {
        screenText.clear();
        Fracture f = parsed(c.form, c.record);
        const Verdict verdict = checkRecord(c.form, f);
        EXPECT_EQ(verdict.accepted, c.comment.empty()) << c.record;
        if (!verdict.accepted) writeNotices(verdict, 3);
        EXPECT_EQ(f.comment.view(), Text<55>(c.comment).view()) << c.record;
        const std::string expected =
            c.comment.empty() ? "" : errorHead + " while reading data nb     3 |\n" + c.lines + errorTail;
        EXPECT_EQ(screen(), expected) << c.record;
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
        {A, "16 'E' 95 'E'",
         "  16.0\t'E'\t  95.0\t'E'\t      \t      \terror: same dip direction [modulo 180], early "
         "detection|"},
        {A, "1234567 'E' 50 'N'",
         "******\t'E'\t  50.0\t'N'\t      \t      \terror: 1st app dip out of [0,90]|"},
        {N, "16 180 0 200",
         "  16.0\t 180.0\t   0.0\t  20.0\t  20.0\t  40.0\toutput strike = input strike + 180|"},
        {N, "0 90 0 0", "   0.0\t  90.0\t   0.0\t   0.0\t   0.0\t   0.0\thorizontal plane|"},
        {N, "16 60 0 -30", "  16.0\t  60.0\t   0.0\t -30.0\t 330.0\t  16.0\t |"},
        {N, "0 90 50 0",
         "   0.0\t  90.0\t  50.0\t   0.0\t      \t      \terror: 1st dip = 0 => should be in 2nd position|"},
        {N, "16 90 50 270",
         "  16.0\t  90.0\t  50.0\t 270.0\t      \t      \terror: same dip direction [modulo 180], early "
         "detection|"},
    };
    for (const auto& c : cases) {
        Fracture f = parsed(c.form, c.record);
        const bool converted = checkRecord(c.form, f).accepted && solve(c.form, f).accepted;
        screenText.clear();
        writeResults(6, c.form, f, converted, false);
        EXPECT_EQ(screen(), c.line + "\n") << c.record;
    }
}

TEST_F(Records, FieldsKeepTheirValuesWhereARecordLeavesThemOut)
{
    openData("'North wall, bench 3'\n'dipa1' 'dipdir1' 'dipa2' 'dipdir2'\n16 'E'  50 'N'\n30,W,,S\n\n"
             "20 'S' /\n12 E\n40 N and a remark\nbad 'E' 1 'N'\n16 'E' 50 'N'\n");
    Text<40> title;
    ASSERT_EQ(readHeader(40, title), ReadOutcome::record);
    EXPECT_EQ(title.view(), Text<40>("North wall, bench 3").view());
    const Fracture records[]{parsed(A, "16 E 50 N"), parsed(A, "30 W 50 S"), parsed(A, "20 S 50 S"),
                             parsed(A, "12 E 40 N")};
    Fracture f;
    for (const Fracture& r : records) {
        ASSERT_EQ(readRecord(40, A, f), ReadOutcome::record);
        EXPECT_EQ(f.dipa1, r.dipa1);
        EXPECT_EQ(f.DIPDA[0].view(), r.DIPDA[0].view());
        EXPECT_EQ(f.dipa2, r.dipa2);
        EXPECT_EQ(f.DIPDA[1].view(), r.DIPDA[1].view());
    }
    EXPECT_EQ(readRecord(40, A, f), ReadOutcome::failure); // a number that cannot be read
    rt::close(40);

    openData("Quarry\n-\n16 180 0 200 strike record\n16 90 50 0\n");
    ASSERT_EQ(readHeader(40, title), ReadOutcome::record);
    EXPECT_EQ(title.view(), Text<40>("Quarry").view());
    ASSERT_EQ(readRecord(40, N, f), ReadOutcome::record);
    EXPECT_EQ(f.DDIR[1], 200.0f);
    ASSERT_EQ(readRecord(40, N, f), ReadOutcome::record);
    EXPECT_EQ(f.DDIR[1], 0.0f);
    EXPECT_EQ(readRecord(40, N, f), ReadOutcome::endOfInput);
    rt::close(40);
}

} // namespace
} // namespace kestro::app
