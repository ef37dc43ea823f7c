// support/tests/art_test.cpp: the pictures, line for line with their indentation.
#include "support/art.h"

#include "support_console.h"

namespace kestro {
namespace {

using Art = SupportConsole;

// A picture: an empty panel line ("(1x,a)" of a blank), its lines behind the indentation of its
// format, another empty panel line. Two small ones in full; the others by their frame.
TEST_F(Art, PicturesStandBetweenEmptyLinesInsideThePanelWidth)
{
    struct Case
    {
        const char* name;
        void (*draw)();
        std::size_t lines; // with the two empty ones
    };
    const Case cases[]{
        {"carmag33", carmag33, 9},          {"endfun1", endfun1, 10},  {"graben", graben, 10},
        {"happyface", happyface, 20},       {"horst", horst, 10},      {"sator", sator, 7},
        {"sorryface", sorryface, 20},       {"tetrakis", tetrakis, 6}, {"tetratemple1", tetratemple1, 14},
        {"tetratemple2", tetratemple2, 18},
    };
    for (const Case& c : cases) {
        console.screen.clear();
        c.draw();
        const std::vector<std::string> shown = screen();
        ASSERT_EQ(shown.size(), c.lines) << c.name;
        EXPECT_EQ(shown.front(), "  |") << c.name;
        EXPECT_EQ(shown.back(), "  |") << c.name;
        // A rectangle of characters inside the blank and 50 columns of a panel line.
        for (std::size_t i = 1; i + 1 < shown.size(); ++i) {
            EXPECT_EQ(shown[i].size(), shown[1].size()) << c.name << ": " << shown[i];
            EXPECT_LE(shown[i].size(), 1 + 50 + 1u) << c.name << ": " << shown[i];
        }
        if (c.name == std::string("sator") || c.name == std::string("sorryface"))
            EXPECT_EQ(shown, screenOf(c.name));
    }
}

} // namespace
} // namespace kestro
