// views/tests/readers_test.cpp: results and CSV files as the views read them, the messages for what
// they cannot read, and the exports read back column by column.
#include "views/readers.h"
#include "views/table.h"

#include <gtest/gtest.h>

#include <sstream>
#include <tuple>

namespace kestro::views {
namespace {

const char* const results =
    "'North face'\tinput file = kestro_in.txt   kestrometry 5.1   Run on x at y\n"
    "'dipa1'\t'dipdir1'\t'dipa2'\t'dipdir2'\t'strike'\t'dip'\t'comment'\n"
    "  16.0\t'E'\t  50.0\t'N'\t 283.5\t  50.8\t \n"
    "  91.0\t'Q'\t  50.0\t'N'\t      \t      \terror: 1st direction should be E,W,N,S\n"
    "  16.0\t'W'\t 200.0\t'A'\t 200.0\t  17.0\t \n"
    "  16.0\t 180.0\t   0.0\t  20.0\t  20.0\t  40.0\toutput strike = input strike + 180\r\n"
    "  16.0\t 'E'\t  50.0\t 283.5\t  50.8\n"
    "  30.0\t  90.0\t  60.0\t 180.0\t  71.6\t  61.3\t ";

TEST(Readers, ResultsFileOfEitherForm)
{
    const ReadResult r = readPlanesText(results, "kestro_out.txt");
    EXPECT_EQ(r.headerLines, 2);
    EXPECT_EQ(r.refused, 1);
    ASSERT_EQ(r.problems.size(), 1u);
    EXPECT_EQ(r.problems[0].substr(0, 20), "kestro_out.txt:7: No");
    ASSERT_EQ(r.planes.size(), 4u);
    // id, strike, dip, measured, by strike, the two directions, comment
    using Row = std::tuple<long, double, double, bool, bool, double, double, std::string>;
    const Row expected[]{
        {1, 283.5, 50.8, true, false, 90, 0, ""},
        {3, 200, 17, true, true, 270, 200, ""}, // the strike as the second direction
        {4, 20, 40, true, true, 180, 20, "output strike = input strike + 180"},
        {5, 71.6, 61.3, true, false, 90, 180, ""},
    };
    for (std::size_t i = 0; i < 4; ++i) {
        const PlaneRecord& p = r.planes[i];
        EXPECT_EQ(Row(p.id, p.plane.strike, p.plane.dip, p.measured, p.measurement.strikeCase,
                      p.measurement.direction1, p.measurement.direction2, p.comment),
                  expected[i]);
    }
}

TEST(Readers, CsvByStrikeOrDipDirection)
{
    const ReadResult byStrike =
        readPlanesText("ID, Strike ,dip,comment\n7,90,30,\"a, b\"\n8,x,30,\n\n9,-10,95\n", "a.csv");
    ASSERT_EQ(byStrike.planes.size(), 1u);
    const PlaneRecord& p = byStrike.planes[0];
    EXPECT_EQ(std::tuple(p.id, p.plane.strike, p.comment), std::tuple(7L, 90.0, std::string("a, b")));
    ASSERT_EQ(byStrike.problems.size(), 2u);
    EXPECT_EQ(byStrike.problems[0].substr(0, 8), "a.csv:3:");
    EXPECT_EQ(byStrike.problems[1].substr(0, 8), "a.csv:5:");

    // Behind a byte order mark.
    const ReadResult byDipDirection =
        readPlanesText(std::string("\xEF\xBB\xBF") + "dip_direction,dip\n45,20\n", "b.csv");
    ASSERT_EQ(byDipDirection.planes.size(), 1u);
    EXPECT_EQ(byDipDirection.planes[0].plane.strike, 315);

    EXPECT_EQ(readCsvText("dip,azimuth\n1,2\n", "c.csv").problems[0].substr(0, 8), "c.csv:1:");
    EXPECT_EQ(readPlanesText(" \n\n", "d.txt").problems,
              std::vector<std::string>{"d.txt: The file is empty"});
    // A file that cannot be read: desktop/tests/views_command_test.cpp, with the message in full.
}

// The fields of a CSV line whose last field is not empty and whose quoted fields hold no comma.
std::vector<std::string> fields(const std::string& line)
{
    std::vector<std::string> out;
    std::istringstream in(line);
    for (std::string field; std::getline(in, field, ',');)
        out.push_back(field);
    return out;
}

TEST(Exports, ReadBackColumnByColumn)
{
    std::vector<PlaneRecord> records = readPlanesText(results, "r").planes;
    records.push_back({12, {45, 60}, false, {}, "say \"hi\""});
    const std::vector<TableRow> rows = tableRows(records, {});
    std::istringstream csv(csvText(rows));
    std::string line;
    std::getline(csv, line);
    EXPECT_EQ(line, "id,strike_rhr,dip_direction,dip,pole_trend,pole_plunge,sigma_strike,sigma_dip,cone95,"
                    "condition,comment");
    // Strike 45 dip 60: dip direction 135, pole 315 / 30; no measured angles, no uncertainty.
    const std::vector<std::vector<std::string>> expected{
        {"1", "283.50", "13.50", "50.80", "193.50", "39.20"},
        {"3", "200.00", "290.00", "17.00", "110.00", "73.00"},
        {"4", "20.00", "110.00", "40.00", "290.00", "50.00"},
        {"5", "71.60", "161.60", "61.30", "341.60", "28.70"},
        {"12", "45.00", "135.00", "60.00", "315.00", "30.00", "", "", "", "", "\"say \"\"hi\"\"\""},
    };
    for (const auto& e : expected) {
        ASSERT_TRUE(std::getline(csv, line));
        const std::vector<std::string> f = fields(line);
        ASSERT_EQ(f.size(), 11u) << line;
        EXPECT_EQ(std::vector<std::string>(f.begin(), f.begin() + e.size()), e);
        if (e.size() == 6) {
            EXPECT_EQ(f[9], "good") << line;
        }
    }
    const ReadResult back = readCsvText(csvText(rows), "back.csv");
    ASSERT_EQ(back.planes.size(), 5u);
    EXPECT_EQ(back.planes[4].comment, "say \"hi\"");
    EXPECT_EQ(dipDirectionText(rows).substr(0, 21), "13.5\t50.8\n290.0\t17.0\n");
}

} // namespace
} // namespace kestro::views
