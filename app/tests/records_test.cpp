// app/tests/records_test.cpp: reading records, the checks in their order with their panels, and
// the results lines of both forms.
#include "app/records.h"

#include "app/results.h"
#include "app/solver.h"

#include "app/tests/app_console.h"

#include <gtest/gtest.h>

#include <string>

namespace kestro::app {
namespace {

using Records = AppConsole;

// data/records.txt: the checks in their order, the first failure reporting; the results lines.
TEST_F(Records, ChecksAndResultsLines)
{
    for (const Case& c : casesOf("records.txt")) {
        const bool results = c.fields[0].rfind("results ", 0) == 0;
        const DataForm form = c.fields[0] == "results N" ? DataForm::numerical : c.form();
        SCOPED_TRACE(c.fields[1]);
        Fracture f = parsed(form, c.fields[1]);
        const Verdict verdict = checkRecord(form, f);
        if (results) {
            writeResults(6, form, f, verdict.accepted && solve(form, f).accepted, false);
            EXPECT_EQ(screen(), c.body);
            continue;
        }
        EXPECT_EQ(verdict.accepted, c.fields[2].empty());
        EXPECT_EQ(f.comment.view(), Text<55>(c.fields[2]).view());
        writeNotices(verdict, 3);
        EXPECT_EQ(screen(false), c.fields[2].empty() ? ""
                                                     : " while reading data nb     3 |\n" + c.body +
                                                           " ===> NO CONVERSION |\n");
    }
}

// Connects unit 40 to data/`name`.
void openData(const char* name)
{
    const std::string path = std::string(KESTRO_TEST_DATA "/") + name;
    rt::OpenSpec specifiers;
    specifiers.file = path;
    specifiers.status = "old";
    rt::open(40, specifiers);
}

TEST_F(Records, FieldsKeepTheirValuesWhereARecordLeavesThemOut)
{
    openData("reading_alphanumerical.txt");
    Text<40> title;
    ASSERT_EQ(readHeader(40, title), ReadOutcome::record);
    EXPECT_EQ(title.view(), Text<40>("North wall, bench 3").view());
    Fracture f;
    for (const char* expected : {"16 E 50 N", "30 W 50 S", "20 S 50 S", "12 E 40 N"}) {
        const Fracture r = parsed(DataForm::alphanumerical, expected);
        ASSERT_EQ(readRecord(40, DataForm::alphanumerical, f), ReadOutcome::record);
        EXPECT_EQ(std::make_tuple(f.dipa1, f.DIPDA[0].str(), f.dipa2, f.DIPDA[1].str()),
                  std::make_tuple(r.dipa1, r.DIPDA[0].str(), r.dipa2, r.DIPDA[1].str()))
            << expected;
    }
    EXPECT_EQ(readRecord(40, DataForm::alphanumerical, f), ReadOutcome::failure); // "bad" cannot be read
    rt::close(40);

    openData("reading_numerical.txt");
    ASSERT_EQ(readHeader(40, title), ReadOutcome::record);
    ASSERT_EQ(readRecord(40, DataForm::numerical, f), ReadOutcome::record);
    EXPECT_EQ(f.DDIR[1], 200.0f);
    EXPECT_EQ(readRecord(40, DataForm::numerical, f), ReadOutcome::endOfInput);
    rt::close(40);
    openData("title_only.txt");
    EXPECT_EQ(readHeader(40, title), ReadOutcome::failure);
    rt::close(40);
}

} // namespace
} // namespace kestro::app
