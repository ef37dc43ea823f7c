// support/tests/panels_test.cpp: the error, warning and menu panels, column for column.
#include "support/panels.h"

#include "support_console.h"

#include <tuple>

namespace kestro {
namespace {

using Panels = SupportConsole;

TEST_F(Panels, HeadsFitTheNameToTheirColumns)
{
    errorhead("inchardef  ", " 1.0", "2020-01-01"); // trailing blanks are part of the name
    warninghead("inchardef  ", " 1.0", "2020-01-01");
    EXPECT_EQ(screen(), screenOf("heads of inchardef"));
    // name, version; the name lines of the error and the menu heads
    const std::tuple<std::string_view, std::string_view, std::string, std::string> cases[]{
        {"inintegvindef", "4.1 ", " ***          subroutine inintegvindef          ***|",
         " @ subroutine inintegvindef         v4.1 2017-03-10|"},
        {"averyveryveryverylongroutinename", " 8.0", " ***          subroutine averyveryvery          ***|",
         " @ subroutine averyveryveryverylon  v8.0 2017-03-10|"},
        {"x", "12.345", " ***          subroutine             x          ***|",
         " @ subroutine x                    v12.3 2017-03-10|"}, // "v12.34" keeps 5
        {"x", "    ", " ***          subroutine             x          ***|",
         " @ subroutine x                        v 2017-03-10|"},
    };
    for (const auto& [name, vers, error, menu] : cases) {
        console.screen.clear();
        errorhead(name, vers, "2017-03-10");
        submenuhead(name, vers, "2017-03-10");
        const std::vector<std::string> shown = screen();
        ASSERT_EQ(shown.size(), 11u) << name;
        EXPECT_EQ(shown[3] + shown[9], error + menu);
    }
}

TEST_F(Panels, TailsPauseBeforeTheClosingFrame)
{
    const std::string pause = " ===> HIT RETURN TO CONTINUE |";
    // LPAUSE, LCMD, the lines typed, the prompts shown, the input left unread
    const std::tuple<bool, bool, std::string, std::vector<std::string>, std::string> cases[]{
        {true, false, "anything\n", {pause}, ""},
        {true, true, "\n", {" ===> HIT RETURN TO RESUME COMMANDS |"}, ""},
        {false, false, "x\n", {}, "x\n"},
        {true, false, "", {pause}, ""}, // input ended
        {true, false, std::string(failingRead) + "\n\n", {pause, pause}, ""},
    };
    const std::string stars = " " + std::string(50, '*') + "|", slashes = " " + std::string(50, '/') + "|";
    for (const auto& [lpause, lcmd, typed, prompts, unread] : cases) {
        SCOPED_TRACE(typed);
        iocom.LPAUSE = lpause;
        iocom.LCMD = lcmd;
        for (bool error : {true, false}) {
            console = ScriptedConsole{};
            console.input = typed;
            error ? errortail00() : warningtail00();
            std::vector<std::string> expected = prompts;
            for (const std::string& line :
                 error
                     ? std::vector<std::string>{stars, " ***                 ERROR END                  ***|",
                                                stars}
                     : std::vector<std::string>{
                           slashes, " ///                WARNING END                 ///|", slashes})
                expected.push_back(line);
            EXPECT_EQ(screen(), expected);
            EXPECT_EQ(console.input, unread);
        }
    }
}

TEST_F(Panels, ErrorsAndWarningsGoToEoutMenusToSout)
{
    iocom.EOUT = 0;
    iocom.LPAUSE = false;
    errorhead("opef2", "5.3 ", "2024-10-22");
    errortail00();
    warninghead("opef2", "5.3 ", "2024-10-22");
    warningtail00();
    submenuhead("opef2", "5.3 ", "2024-10-22");
    menutail();
    screen();
    EXPECT_EQ(markedLines(console.errors).size(), 18u);
    EXPECT_EQ(console.errors.find('@'), std::string::npos);
    EXPECT_EQ(markedLines(console.output).size(), 4u);
    EXPECT_EQ(console.output.find_first_of("*/"), std::string::npos);
}

} // namespace
} // namespace kestro
