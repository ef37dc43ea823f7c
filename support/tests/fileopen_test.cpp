// support/tests/fileopen_test.cpp: path2basename, and opef2 in its silent, asking and stopping modes.
#include "support/fileopen.h"

#include "support_console.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <tuple>
#include <unistd.h>

namespace kestro {
namespace {

namespace fs = std::filesystem;

// data/fileopen.txt: the part behind the last slash, in a field of 10.
TEST(Path2basename, KeepsThePartBehindTheLastSlash)
{
    for (const Case& c : casesOf("fileopen.txt", "basename")) {
        Text<10> base("old");
        std::int32_t n = -1;
        path2basename(n, base.ref(), c.fields[1]);
        EXPECT_EQ(std::make_pair(base.str(), n), std::make_pair(c.fields[2], c.number(3)))
            << '"' << c.fields[1] << '"';
    }
}

class FileOpening : public ScratchConsole
{
protected:
    // A file of one line, removed at the end.
    void makeFile(const fs::path& path, std::string_view firstLine)
    {
        if (path.has_parent_path()) fs::create_directories(path.parent_path());
        std::ofstream(path) << firstLine << "\n";
        made.push_back(*path.begin());
    }

    // The first record of the file that `unit` is connected to.
    static std::string firstRecord(std::int32_t unit)
    {
        Text<20> line;
        rt::read(unit, "(a)", line);
        return line.str();
    }
};

TEST_F(FileOpening, SilentModeOpensWithoutAWordAndKeepsTheBaseName)
{
    makeFile("data/run1/kestro_in.txt", "header one");
    Text<50> name("data/run1/kestro_in.txt");
    opef2(name.ref(), "fracture data input ", 25, "old", 7);
    EXPECT_TRUE(screen().empty());
    EXPECT_EQ(name, "kestro_in.txt");
    EXPECT_EQ(firstRecord(25), "header one          ");
}

TEST_F(FileOpening, AskingModeWarnsAndAsksAgainUntilANameOpens)
{
    makeFile("good.txt", "good data");
    type({"", "", "good.txt"}); // Return keeps "missing.txt"; Return at the pause; a good name
    Text<50> name("missing.txt");
    opef2(name.ref(), "fracture data input ", 25, "old", 0);

    EXPECT_EQ(screen(), screenOf("opef2 asking until a name opens")); // the rejected name is the new default
    EXPECT_EQ(name, "good.txt");
    EXPECT_EQ(firstRecord(25), "good data           ");
}

TEST_F(FileOpening, OtherModesAnnounceWithoutAsking)
{
    makeFile("kestro_in.txt", "x");
    Text<50> name("kestro_in.txt");
    opef2(name.ref(), "fracture data input ", 25, "old", 3);
    EXPECT_EQ(screen(), screenOf("opef2 announcing"));
    EXPECT_TRUE(console.input.empty());
}

using FileOpeningDeathTest = FileOpening;

TEST_F(FileOpeningDeathTest, FailureOutsideTheAskingModeStopsNormally)
{
    makeFile("kestro_out.txt", "results of an earlier run");
    const std::tuple<std::int32_t, std::string_view, std::string_view> cases[]{{7, "missing.txt", "old"},
                                                                               {3, "kestro_out.txt", "new"}};
    for (const auto& [mode, file, status] : cases) {
        EXPECT_EXIT(
            {
                useRealOutput();
                iocom.SOUT = 0; // the whole panel on the error unit, where the test reads it
                iocom.EOUT = 0;
                iocom.LPAUSE = false;
                Text<50> name(file);
                opef2(name.ref(), "fracture data output ", 26, status, mode);
            },
            ::testing::ExitedWithCode(0),
            "subroutine         opef2 .*COULD NOT OPEN fracture data output FILE\n"
            " File name = .* \n for unit =   26\n ===> STOPPING EXECUTION \n.*ERROR END")
            << mode;
    }
    std::ifstream kept("kestro_out.txt");
    std::string line;
    std::getline(kept, line);
    EXPECT_EQ(line, "results of an earlier run");
}

} // namespace
} // namespace kestro
