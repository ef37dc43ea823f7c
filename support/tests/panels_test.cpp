// support/tests/panels_test.cpp: the error, warning and menu panels, column for column.
#include "support/panels.h"

#include "support_console.h"

namespace kestro {
namespace {

using Panels = SupportConsole;

TEST_F(Panels, ErrorAndWarningHeadsFitTheNameTo13Columns)
{
    struct Case
    {
        std::string_view name;
        std::string_view shown;
    };
    const Case cases[]{
        {"inchardef  ", "  inchardef  "}, // trailing blanks are part of the name
        {"inintegvindef", "inintegvindef"},
        {"averyverylongroutinename", "averyverylong"},
    };
    for (const Case& c : cases) {
        console.screen.clear();
        errorhead(c.name, " 1.0", "2020-01-01");
        warninghead(c.name, " 1.0", "2020-01-01");
        std::vector<std::string> expected = errorHeadLines(c.shown);
        add(expected, warningHeadLines(c.shown));
        EXPECT_EQ(screen(), expected) << c.name;
    }
}

TEST_F(Panels, TailsPauseBeforeTheClosingFrame)
{
    struct Case
    {
        const char* what;
        bool pause;
        bool commandFile;
        std::vector<std::string_view> typed;
        std::vector<std::string> prompts;
        std::string unread;
    };
    const Case cases[]{
        {"pause", true, false, {"anything"}, {" ===> HIT RETURN TO CONTINUE |"}, ""},
        {"command file", true, true, {""}, {" ===> HIT RETURN TO RESUME COMMANDS |"}, ""},
        {"no pause", false, false, {"x"}, {}, "x\n"},
        {"input ended", true, false, {}, {" ===> HIT RETURN TO CONTINUE |"}, ""},
        {"failed read",
         true,
         false,
         {failingRead, ""},
         {" ===> HIT RETURN TO CONTINUE |", " ===> HIT RETURN TO CONTINUE |"},
         ""},
    };
    const std::string stars = " **************************************************|";
    const std::string slashes = " //////////////////////////////////////////////////|";
    for (const Case& c : cases) {
        iocom.LPAUSE = c.pause;
        iocom.LCMD = c.commandFile;

        console = ScriptedConsole{};
        for (std::string_view line : c.typed)
            type({line});
        errortail00();
        std::vector<std::string> expected = c.prompts;
        add(expected, {stars, " ***                 ERROR END                  ***|", stars});
        EXPECT_EQ(screen(), expected) << c.what;
        EXPECT_EQ(console.input, c.unread) << c.what;

        console = ScriptedConsole{};
        for (std::string_view line : c.typed)
            type({line});
        warningtail00();
        expected = c.prompts;
        add(expected, {slashes, " ///                WARNING END                 ///|", slashes});
        EXPECT_EQ(screen(), expected) << c.what;
        EXPECT_EQ(console.input, c.unread) << c.what;
    }
}

TEST_F(Panels, HeadsAndTailsGoToTheirUnits)
{
    // Error and warning frames on EOUT, menus on SOUT.
    iocom.EOUT = 0;
    iocom.LPAUSE = false;
    errorhead("opef2", "5.3 ", "2024-10-22");
    errortail00();
    warninghead("opef2", "5.3 ", "2024-10-22");
    warningtail00();
    submenuhead("opef2", "5.3 ", "2024-10-22");
    menutail();
    screen();
    std::vector<std::string> onError = errorHeadLines("        opef2");
    add(onError, errorTailLines(false));
    add(onError, warningHeadLines("        opef2"));
    add(onError, warningTailLines(false));
    EXPECT_EQ(markedLines(console.errors), onError);
    std::vector<std::string> onOutput =
        menuHeadLines("@ subroutine opef2               ", " v5.3", "2024-10-22");
    onOutput.push_back(menuTailLine());
    EXPECT_EQ(markedLines(console.output), onOutput);
}

TEST_F(Panels, MenuHeadCutsNameAndVersionToTheirColumns)
{
    struct Case
    {
        std::string_view name;
        std::string_view vers;
        std::string_view head33;
        std::string_view version5;
    };
    const Case cases[]{
        {"trigoset   ", " 8.0", "@ subroutine trigoset            ", " v8.0"},
        {"inlogicdef ", " 1.4", "@ subroutine inlogicdef          ", " v1.4"},
        {"averyveryveryverylongroutinename", "4.1 ", "@ subroutine averyveryveryverylon", " v4.1"},
        {"x", "12.345", "@ subroutine x                   ", "v12.3"}, // "v12.34" keeps 5
        {"x", "    ", "@ subroutine x                   ", "    v"},
    };
    for (const Case& c : cases) {
        console.screen.clear();
        submenuhead(c.name, c.vers, "2017-03-10");
        EXPECT_EQ(screen(), menuHeadLines(c.head33, c.version5, "2017-03-10")) << c.name;
    }
}

} // namespace
} // namespace kestro
