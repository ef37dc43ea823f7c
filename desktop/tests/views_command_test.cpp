// desktop/tests/views_command_test.cpp: kestrometry-views on the sample results, its exports, and
// its answers to files it cannot read and arguments it does not know.
#include "desktop/viewscommand.h"
#include "desktop/viewspainter.h"

#include <QImage>

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <tuple>
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
    // The columns are the table's own (views/tests); here the uncertainty of the default options.
    EXPECT_EQ(table[1].substr(table[1].size() - 8), ",good,\"\"");
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
    EXPECT_EQ(views({KESTRO_EXAMPLES "/kestro_out.txt", "--png", "moon=x.png"}).status, 2);
    const Outcome unwritable = views({KESTRO_EXAMPLES "/kestro_out.txt", "--pdf", "rose=/nonexistent/r.pdf"});
    EXPECT_EQ(unwritable.status, 3);
    EXPECT_NE(unwritable.err.find("kestrometry-views: /nonexistent/r.pdf: "), std::string::npos)
        << unwritable.err;
    EXPECT_EQ(views({"--version"}).out.substr(0, 22), "kestrometry-views 5.1 ");
}

// Net of 1000 pixels: centre (500, 500), primitive radius 0.44 * 1000 = 440 pixels.
TEST(ViewsCommand, DrawsThePolesWhereTheGeometryPutsThem)
{
    const std::string planes = testing::TempDir() + "planes.csv", png = testing::TempDir() + "net.png",
                      pdf = testing::TempDir() + "net.pdf", rose = testing::TempDir() + "rose.png";
    // Strike 90 dip 30: pole trend 0 plunge 60, radius sqrt(2) sin 15 = 0.36603 north of the centre.
    // Strike 0 dip 90: pole trend 270 plunge 0, on the primitive due west.
    std::ofstream(planes) << "strike,dip\n90,30\n0,90\n";
    const Outcome run = views({planes.c_str(), "--png", png.c_str(), "--pdf", ("stereonet=" + pdf).c_str()});
    ASSERT_EQ(run.status, 0) << run.err;
    const QImage image(QString::fromStdString(png));
    ASSERT_EQ(image.size(), QSize(1000, 1000));
    const std::tuple<int, int, bool> probes[] = {
        {500, 339, true}, {62, 500, true}, {500, 661, false}, {938, 500, false}, {339, 500, false}};
    for (const auto& [x, y, pole] : probes)
        EXPECT_EQ(image.pixelColor(x, y) == poleColour, pole) << x << ", " << y;
    // One strike of 95: petals of full radius in the bins 90-100 and 270-280 only. Probes at 0.6
    // of the radius, azimuths 92, 272 and 182 (clear of the mean axis along 95-275).
    std::ofstream(planes) << "strike,dip\n95,40\n";
    ASSERT_EQ(views({planes.c_str(), "--png", ("rose=" + rose).c_str()}).status, 0);
    const QImage petals(QString::fromStdString(rose));
    EXPECT_EQ(petals.pixelColor(764, 509), QColor(120, 150, 220));
    EXPECT_EQ(petals.pixelColor(236, 491), QColor(120, 150, 220));
    EXPECT_EQ(petals.pixelColor(491, 764), QColor(Qt::white));
    std::string head(4, ' ');
    std::ifstream(pdf, std::ios::binary).read(head.data(), 4);
    EXPECT_EQ(head, "%PDF");
}

} // namespace
} // namespace kestro::desktop
