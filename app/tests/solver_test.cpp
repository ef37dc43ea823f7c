// app/tests/solver_test.cpp: strike and dip of the worked records, the warnings and the refusals.
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

constexpr DataForm A = DataForm::alphanumerical;
constexpr DataForm N = DataForm::numerical;

TEST_F(Solver, WorkedRecordsWarningsAndRefusals)
{
    const std::string_view late = "error: same dip direction [modulo 180], late detection";
    const std::string_view reset = "output strike = input strike + 180";
    const std::string_view firstZero = "error: 1st dip = 0 => should be in 2nd position";
    const struct
    {
        DataForm form;
        const char* record;
        bool converted;
        const char* strike; // as the results print it; null: not looked at
        const char* dip;
        std::string_view comment;
    } cases[]{
        // The worked results.
        {A, "16 'E' 50 'N'", true, " 283.5", "  50.8", ""},
        {A, "30 'E' 60 'S'", true, "  71.6", "  61.3", ""},
        {N, "16 90 50 0", true, " 283.5", "  50.8", ""},
        {A, "16 'W' 200 'A'", true, " 200.0", "  17.0", ""},
        {N, "16 180 0 200", true, "  20.0", "  40.0", reset},
        {A, "16 'E' 0 'N'", true, "   0.0", "  16.0", ""},
        {A, "90 'E' 0 'A'", true, "   0.0", "  90.0", "vertical plane"},
        {A, "90 'W' 0 'A'", true, " 180.0", "  90.0", "vertical plane"},
        // A direction so large that a half turn is lost in its rounding: refused, not looping.
        {N, "6 906666d6 0 0", false, nullptr, nullptr, late},
        // Multiples of 180 in single precision: the sine of rad(180) is not 0.
        {A, "16 'E' 270 'A'", true, " 270.0", "  90.0", ""},
        {A, "16 'N' 180 'A'", true, " 180.0", "  90.0", ""},
        {A, "16 'N' 360 'A'", true, " 180.0", "  90.0", reset},
        {A, "16 'E' 90 'A'", false, nullptr, nullptr, late},
        {A, "16 'W' 90 'A'", false, nullptr, nullptr, late},
        {N, "16 90 0 90", false, nullptr, nullptr, late},
        // Horizontal planes: the tolerance in the strike case, exact zeros in the two-dip case.
        {A, "0.00005 'W' 200 'A'", true, "   0.0", "   0.0", "horizontal plane"},
        {A, "0.00005 'E' 50 'N'", true, " 270.0", nullptr, ""},
        {N, "0 90 0 0", true, "   0.0", "   0.0", "horizontal plane"},
        {A, "0 'E' 0 'N'", true, "   0.0", "   0.0", "horizontal plane"},
        // The strike is taken modulo 360 at the end only.
        {N, "16 60 0 -30", true, " 330.0", "  16.0", ""},
        // Refusals of the two-dip case.
        {N, "0 90 50 0", false, nullptr, nullptr, firstZero},
        {A, "0 'E' 50 'N'", false, nullptr, nullptr, firstZero},
        {A, "0 'E' 90 'N'", false, nullptr, nullptr, firstZero},
        {A, "90 'E' 90 'N'", false, nullptr, nullptr, "error: vertical plane without strike"},
        {A, "90 'E' 50 'N'", false, nullptr, nullptr, "error: inconsistent dips for vertical plane"},
        {A, "16 'E' 90 'N'", false, nullptr, nullptr, "error: inconsistent dips for vertical plane"},
    };
    for (const auto& c : cases) {
        Fracture f = parsed(c.form, c.record);
        EXPECT_EQ(solve(c.form, f).accepted, c.converted) << c.record;
        if (c.strike) {
            EXPECT_EQ(f61(f.strike), c.strike) << c.record;
        }
        if (c.dip) {
            EXPECT_EQ(f61(f.dip), c.dip) << c.record;
        }
        EXPECT_EQ(f.comment.view(), Text<55>(c.comment).view()) << c.record;
    }
}

const std::string slashes = " " + std::string(50, '/') + "|\n";
const std::string warningHead = slashes + " ///          subroutine   kestrometry          ///|\n" +
                                " ///                  WARNING                   ///|\n" + slashes;
const std::string warningTail = slashes + " ///                WARNING END                 ///|\n" + slashes;
const std::string record7 = " while reading data nb     7 |\n";
const std::string leftStrike =
    record7 + " input  strike with dip to the LEFT |\n output strike with dip to the RIGHT |\n";

TEST_F(Solver, PanelsOfWarningsAndRefusals)
{
    const struct
    {
        DataForm form;
        const char* record;
        std::string screen; // an error panel is left open for the caller
    } cases[]{
        {A, "90 'E' 0 'A'", ""}, // a vertical plane gives no panel
        {N, "16 180 0 200",
         warningHead + leftStrike + " strike =   200.0|\n ==> strike reset to :    20.0|\n" + warningTail},
        {A, "0.00005 'W' 200 'A'",
         warningHead + record7 + " horizontal plane |\n 1st dip =     0.0|\n 2nd dip =   200.0|\n" +
             warningTail},
        {A, "0 'E' 0 'N'",
         warningHead + record7 + " horizontal plane |\n 1st dip =     0.0|\n 2nd dip =     0.0|\n" +
             warningTail},
        {A, "16 'E' 90 'A'",
         errorHead + record7 +
             " The two data have same strike |\n 1st dip dir =    90.0|\n 2nd dip dir =    90.0|\n"},
        {A, "16 'W' 90 'A'",
         warningHead + leftStrike + " strike =    90.0|\n ==> strike reset to :   270.0|\n" + warningTail +
             errorHead + record7 +
             " The two data have same strike |\n 1st dip dir =   270.0|\n 2nd dip dir =   270.0|\n"},
        {N, "0 90 50 0",
         errorHead + record7 + " 1st data should be in 2nd position |\n 1st dip =     0.0|\n"},
        {A, "90 'E' 90 'N'",
         errorHead + record7 +
             " vertical plane without strike |\n 1st dip =    90.0|\n 2nd dip =    90.0|\n"},
        {A, "16 'E' 90 'N'",
         errorHead + record7 +
             " inconsistent dips for vertical plane |\n 1st dip =    16.0|\n 2nd dip =    90.0|\n"},
    };
    for (const auto& c : cases) {
        screenText.clear();
        Fracture f = parsed(c.form, c.record);
        const Verdict verdict = solve(c.form, f);
        writeNotices(verdict, 7);
        EXPECT_EQ(screen(), c.screen + (verdict.accepted ? "" : errorTail)) << c.record;
    }
}

} // namespace
} // namespace kestro::app
