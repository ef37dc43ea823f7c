// support/tests/panels_test.cpp: the error, warning and menu panels, column for column.
#include "support/panels.h"

#include "support_console.h"

namespace kestro {
namespace {

using Panels = SupportConsole;

// data/panels.txt: the name lines of the error and menu heads.
TEST_F(Panels, HeadsFitTheNameToTheirColumns)
{
    errorhead("inchardef  ", " 1.0", "2020-01-01"); // trailing blanks are part of the name
    warninghead("inchardef  ", " 1.0", "2020-01-01");
    EXPECT_EQ(screen(), screenOf("heads of inchardef"));
    for (const Case& c : casesOf("panels.txt", "head")) {
        console.screen.clear();
        errorhead(c.fields[1], c.fields[2], "2017-03-10");
        submenuhead(c.fields[1], c.fields[2], "2017-03-10");
        const std::vector<std::string> shown = screen();
        ASSERT_EQ(shown.size(), 11u) << c.fields[1];
        EXPECT_EQ((std::vector<std::string>{shown[3], shown[9]}), c.lines);
    }
}

// data/panels.txt: the prompts of the pause, then the closing frame of each kind.
TEST_F(Panels, TailsPauseBeforeTheClosingFrame)
{
    const std::string stars = " " + std::string(50, '*') + "|", slashes = " " + std::string(50, '/') + "|";
    for (const Case& c : casesOf("panels.txt", "tail")) {
        SCOPED_TRACE(c.fields.size() > 4 ? c.fields[4] : "the input has ended");
        iocom.LPAUSE = c.fields[1] == "1";
        iocom.LCMD = c.fields[2] == "1";
        for (bool error : {true, false}) {
            console = ScriptedConsole{};
            for (std::size_t i = 4; i < c.fields.size(); ++i)
                type({c.fields[i]});
            error ? errortail00() : warningtail00();
            std::vector<std::string> expected = c.lines;
            for (const std::string& line :
                 error
                     ? std::vector<std::string>{stars, " ***                 ERROR END                  ***|",
                                                stars}
                     : std::vector<std::string>{
                           slashes, " ///                WARNING END                 ///|", slashes})
                expected.push_back(line);
            EXPECT_EQ(screen(), expected);
            EXPECT_EQ(console.input, c.fields[3].empty() ? "" : c.fields[3] + "\n");
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
