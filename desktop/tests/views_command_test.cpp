// desktop/tests/views_command_test.cpp: kestrometry-views on the sample results, its exports, and
// its answers to files it cannot read and arguments it does not know.
#include "desktop/viewscommand.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <sstream>
#include <vector>

namespace kestro::desktop {
namespace {

struct Outcome
{
    int status;
    std::string out, err;
};

Outcome views(std::vector<const char*> args)
{
    args.insert(args.begin(), "kestrometry-views");
    std::ostringstream out, err;
    const int status = viewsMain(static_cast<int>(args.size()), args.data(), out, err);
    return {status, out.str(), err.str()};
}

std::vector<std::string> lines(const std::string& file)
{
    std::ifstream in(file);
    std::vector<std::string> all;
    for (std::string line; std::getline(in, line);)
        all.push_back(line);
    return all;
}

TEST(ViewsCommand, ExportsTheSampleResults)
{
    const std::string csv = testing::TempDir() + "views.csv", dipdir = testing::TempDir() + "views.txt";
    const Outcome run =
        views({KESTRO_EXAMPLES "/kestro_out.txt", "--csv", csv.c_str(), "--dipdir", dipdir.c_str()});
    EXPECT_EQ(run.status, 0) << run.err;
    // 43 records: 10 refused, 33 converted, and the two header lines.
    EXPECT_NE(run.out.find("kestro_out.txt: 33 planes read, 2 header lines and 10 refused records skipped"),
              std::string::npos)
        << run.out;
    const std::vector<std::string> table = lines(csv), plain = lines(dipdir);
    ASSERT_EQ(table.size(), 34u);
    ASSERT_EQ(plain.size(), 33u);
    // 16 'E' 50 'N': strike 283.5, dip 50.8, dip direction 13.5, pole 193.5 / 39.2.
    EXPECT_EQ(table[1].substr(0, 34), "1,283.50,13.50,50.80,193.50,39.20,");
    EXPECT_EQ(table[1].substr(table[1].size() - 8), ",good,\"\"");
    EXPECT_EQ(plain[0], "13.5\t50.8");
}

TEST(ViewsCommand, ReportsWhatItCannotDo)
{
    const std::string bad = testing::TempDir() + "bad_out.txt";
    std::ofstream(bad) << "'t'\tx\n  16.0\t'E'\t  50.0\t'N'\t 283.5\t  50.8\t \nnot a line\n";
    const Outcome partial = views({bad.c_str(), "/nonexistent/x.txt"});
    EXPECT_EQ(partial.status, 1);
    EXPECT_EQ(partial.err,
              "kestrometry-views: " + bad +
                  ":3: Not a results line of seven tab-separated columns: \"not a line\"\n"
                  "kestrometry-views: /nonexistent/x.txt: Cannot read the file: No such file or directory\n");
    EXPECT_NE(partial.out.find(": 1 planes read"), std::string::npos);

    EXPECT_EQ(views({"--frobnicate", "a"}).status, 2);
    EXPECT_EQ(views({}).status, 2);
    EXPECT_EQ(views({"--angle-error", "-1", "a"}).status, 2);
    EXPECT_EQ(views({KESTRO_EXAMPLES "/kestro_out.txt", "--png", "x.png"}).status, 3);
    EXPECT_EQ(views({"--version"}).out.substr(0, 22), "kestrometry-views 5.1 ");
}

} // namespace
} // namespace kestro::desktop
