// support/tests/panels_test.cpp: the error, warning and menu panels, column for column.
#include "support/panels.h"

#include "support_console.h"

namespace kestro {
namespace {

using Panels = SupportConsole;

TEST_F(Panels, HeadsFitTheNameToTheirColumns)
{
    errorhead("inchardef  ", " 1.0", "2020-01-01"); // trailing blanks are part of the name
    warninghead("inchardef  ", " 1.0", "2020-01-01");
    EXPECT_EQ(screen(), screenOf("heads of inchardef"));
    const struct
    {
        std::string_view name, vers;
        std::string error, menu; // the name lines of the error and the menu heads
    } cases[]{
        {"inintegvindef", "4.1 ", " ***          subroutine inintegvindef          ***|",
         " @ subroutine inintegvindef         v4.1 2017-03-10|"},
        {"averyveryveryverylongroutinename", " 8.0", " ***          subroutine averyveryvery          ***|",
         " @ subroutine averyveryveryverylon  v8.0 2017-03-10|"},
        {"x", "12.345", " ***          subroutine             x          ***|",
         " @ subroutine x                    v12.3 2017-03-10|"}, // "v12.34" keeps 5
        {"x", "    ", " ***          subroutine             x          ***|",
         " @ subroutine x                        v 2017-03-10|"},
    };
    for (const auto& c : cases) {
        console.screen.clear();
        errorhead(c.name, c.vers, "2017-03-10");
        submenuhead(c.name, c.vers, "2017-03-10");
        const std::vector<std::string> shown = screen();
        ASSERT_EQ(shown.size(), 11u) << c.name;
        EXPECT_EQ(shown[3], c.error);
        EXPECT_EQ(shown[9], c.menu);
    }
}

TEST_F(Panels, TailsPauseBeforeTheClosingFrame)
{
    const struct
    {
        const char* what;
        bool pause, commandFile;
        std::vector<std::string_view> typed;
        std::vector<std::string> prompts;
        std::string unread;
    } cases[]{
        {"pause", true, false, {"anything"}, {" ===> HIT RETURN TO CONTINUE |"}, ""},
        {"command file", true, true, {""}, {" ===> HIT RETURN TO RESUME COMMANDS |"}, ""},
        {"no pause", false, false, {"x"}, {}, "x\n"},
        {"input ended", true, false, {}, {" ===> HIT RETURN TO CONTINUE |"}, ""},
        {"failed read",
         true,
         false,
         {failingRead, ""},
         std::vector<std::string>(2, " ===> HIT RETURN TO CONTINUE |"),
         ""},
    };
    const std::string stars = " " + std::string(50, '*') + "|", slashes = " " + std::string(50, '/') + "|";
    for (const auto& c : cases) {
        iocom.LPAUSE = c.pause;
        iocom.LCMD = c.commandFile;
        for (bool error : {true, false}) {
            console = ScriptedConsole{};
            for (std::string_view line : c.typed)
                type({line});
            error ? errortail00() : warningtail00();
            std::vector<std::string> expected = c.prompts;
            for (const std::string& line :
                 error
                     ? std::vector<std::string>{stars, " ***                 ERROR END                  ***|",
                                                stars}
                     : std::vector<std::string>{
                           slashes, " ///                WARNING END                 ///|", slashes})
                expected.push_back(line);
            EXPECT_EQ(screen(), expected) << c.what;
            EXPECT_EQ(console.input, c.unread) << c.what;
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
