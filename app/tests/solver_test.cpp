// app/tests/solver_test.cpp: strike and dip of the worked records, the warnings and the refusals
// with their panels.
#include "app/solver.h"

#include "app/tests/app_console.h"

#include <gtest/gtest.h>

#include <string>

namespace kestro::app {
namespace {

// A real as the results show it: WRITE(text, '(f6.1)') value
std::string f61(float value)
{
    Text<6> text;
    rt::writeInternal(text.ref(), "(f6.1)", value);
    return text.str();
}

using Solver = AppConsole;

const std::string late = "error: same dip direction [modulo 180], late detection";
const std::string reset = "output strike = input strike + 180";
const std::string firstZero = "error: 1st dip = 0 => should be in 2nd position";
const std::string lateBody =
    " The two data have same strike |\n 1st dip dir =    90.0|\n 2nd dip dir =    90.0|\n";

TEST_F(Solver, WorkedRecordsWarningsAndRefusals)
{
    const struct
    {
        DataForm form;
        const char* record;
        const char* strike; // as the results print it; null: a refusal, or not looked at
        const char* dip;
        std::string comment;
        std::string panels; // behind "while reading data nb 7", frames left out; "": none
    } cases[]{
        // The worked results.
        {A, "16 'E' 50 'N'", " 283.5", "  50.8", "", ""},
        {A, "30 'E' 60 'S'", "  71.6", "  61.3", "", ""},
        {N, "16 90 50 0", " 283.5", "  50.8", "", ""},
        {A, "16 'W' 200 'A'", " 200.0", "  17.0", "", ""},
        {N, "16 180 0 200", "  20.0", "  40.0", reset,
         " input  strike with dip to the LEFT |\n output strike with dip to the RIGHT |\n"
         " strike =   200.0|\n ==> strike reset to :    20.0|\n"},
        {A, "16 'E' 0 'N'", "   0.0", "  16.0", "", ""},
        {A, "90 'E' 0 'A'", "   0.0", "  90.0", "vertical plane", ""},
        {A, "90 'W' 0 'A'", " 180.0", "  90.0", "vertical plane", "*"},
        // A direction so large that a half turn is lost in its rounding: refused, not looping.
        {N, "6 906666d6 0 0", nullptr, nullptr, late, "*"},
        // Multiples of 180 in single precision: the sine of rad(180) is not 0.
        {A, "16 'E' 270 'A'", " 270.0", "  90.0", "", ""},
        {A, "16 'N' 180 'A'", " 180.0", "  90.0", "", ""},
        {A, "16 'N' 360 'A'", " 180.0", "  90.0", reset, "*"},
        {A, "16 'E' 90 'A'", nullptr, nullptr, late, lateBody},
        {N, "16 90 0 90", nullptr, nullptr, late, lateBody},
        // Horizontal planes: the tolerance in the strike case, exact zeros in the two-dip case.
        {A, "0.00005 'W' 200 'A'", "   0.0", "   0.0", "horizontal plane",
         " horizontal plane |\n 1st dip =     0.0|\n 2nd dip =   200.0|\n"},
        {A, "0.00005 'E' 50 'N'", " 270.0", nullptr, "", ""},
        {N, "0 90 0 0", "   0.0", "   0.0", "horizontal plane", "*"},
        {A, "0 'E' 0 'N'", "   0.0", "   0.0", "horizontal plane",
         " horizontal plane |\n 1st dip =     0.0|\n 2nd dip =     0.0|\n"},
        // The strike is taken modulo 360 at the end only.
        {N, "16 60 0 -30", " 330.0", "  16.0", "", ""},
        // Refusals of the two-dip case.
        {N, "0 90 50 0", nullptr, nullptr, firstZero,
         " 1st data should be in 2nd position |\n 1st dip =     0.0|\n"},
        {A, "0 'E' 90 'N'", nullptr, nullptr, firstZero, "*"},
        {A, "90 'E' 90 'N'", nullptr, nullptr, "error: vertical plane without strike",
         " vertical plane without strike |\n 1st dip =    90.0|\n 2nd dip =    90.0|\n"},
        {A, "90 'E' 50 'N'", nullptr, nullptr, "error: inconsistent dips for vertical plane", "*"},
        {A, "16 'E' 90 'N'", nullptr, nullptr, "error: inconsistent dips for vertical plane",
         " inconsistent dips for vertical plane |\n 1st dip =    16.0|\n 2nd dip =    90.0|\n"},
    };
    for (const auto& c : cases) {
        Fracture f = parsed(c.form, c.record);
        const Verdict verdict = solve(c.form, f);
        const bool refused = c.comment.rfind("error: ", 0) == 0;
        EXPECT_EQ(verdict.accepted, !refused) << c.record;
        if (c.strike) EXPECT_EQ(f61(f.strike), c.strike) << c.record;
        if (c.dip) EXPECT_EQ(f61(f.dip), c.dip) << c.record;
        EXPECT_EQ(f.comment.view(), Text<55>(c.comment).view()) << c.record;
        writeNotices(verdict, 7);
        const std::string shown = screen(false);
        if (c.panels == "*") continue;
        const std::string expected = c.panels.empty() ? "" : " while reading data nb     7 |\n" + c.panels;
        EXPECT_EQ(shown, expected + (refused ? " ===> NO CONVERSION |\n" : "")) << c.record;
    }
}

TEST_F(Solver, AWarningThenARefusalInTheirFrames)
{
    // 16 'W' 90 'A': s = sin(rad(180)) is below 0, the reset gives 270, and s is then 0.
    Fracture f = parsed(A, "16 'W' 90 'A'");
    writeNotices(solve(A, f), 7);
    const std::string slashes = " " + std::string(50, '/') + "|\n";
    const std::string stars = " " + std::string(50, '*') + "|\n";
    const std::string empty = " ***" + std::string(44, ' ') + "***|\n";
    EXPECT_EQ(
        screen(),
        slashes + " ///          subroutine   kestrometry          ///|\n" +
            " ///                  WARNING                   ///|\n" + slashes +
            " while reading data nb     7 |\n input  strike with dip to the LEFT |\n"
            " output strike with dip to the RIGHT |\n strike =    90.0|\n ==> strike reset to :   270.0|\n" +
            slashes + " ///                WARNING END                 ///|\n" + slashes + stars + stars +
            empty + " ***          subroutine   kestrometry          ***|\n" +
            " ***                   ERROR                    ***|\n" + empty + stars + stars +
            " while reading data nb     7 |\n The two data have same strike |\n"
            " 1st dip dir =   270.0|\n 2nd dip dir =   270.0|\n ===> NO CONVERSION |\n" +
            stars + " ***                 ERROR END                  ***|\n" + stars);
    EXPECT_EQ(f.comment.view(), Text<55>(late).view());
}

} // namespace
} // namespace kestro::app
