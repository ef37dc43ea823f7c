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

// data/solver.txt: the worked records, the warnings and the refusals, one case in full frames.
TEST_F(Solver, WorkedRecordsWarningsAndRefusals)
{
    for (const Case& c : casesOf("solver.txt")) {
        SCOPED_TRACE(c.fields[1]);
        const bool frames = c.fields[0] == "frames";
        Fracture f = parsed(frames ? DataForm::alphanumerical : c.form(), c.fields[1]);
        const Verdict verdict = solve(frames ? DataForm::alphanumerical : c.form(), f);
        writeNotices(verdict, 7);
        const std::string shown = screen(frames);
        const bool refused = c.fields[4].rfind("error: ", 0) == 0;
        EXPECT_EQ(verdict.accepted, !refused);
        if (!c.fields[2].empty()) EXPECT_EQ(f61(f.strike), c.fields[2]);
        if (!c.fields[3].empty()) EXPECT_EQ(f61(f.dip), c.fields[3]);
        EXPECT_EQ(f.comment.view(), Text<55>(c.fields[4]).view());
        if (frames) EXPECT_EQ(shown, c.body);
        if (frames || c.body == "*\n") continue;
        const std::string expected = c.body.empty() ? "" : " while reading data nb     7 |\n" + c.body;
        EXPECT_EQ(shown, expected + (refused ? " ===> NO CONVERSION |\n" : ""));
    }
}

} // namespace
} // namespace kestro::app
