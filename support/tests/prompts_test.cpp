// support/tests/prompts_test.cpp: textlen, integlen and the three dialogues, line for line.
#include "support/prompts.h"

#include "support_console.h"

#include <cstdint>
#include <cstdlib>
#include <limits>

namespace kestro {
namespace {

const std::string rule = " ..........................................|";

// The error panel of `shownName` around its body lines, with or without the pause.
std::vector<std::string> errorPanel(std::string_view shownName, const std::vector<std::string>& body,
                                    bool paused = true)
{
    std::vector<std::string> lines = errorHeadLines(shownName);
    add(lines, body);
    add(lines, errorTailLines(paused));
    return lines;
}

// The text dialogue for "data title" with more output, from its rule to the default.
std::vector<std::string> titleAsk(std::string_view defaultLine)
{
    return {rule, " Enter data title |", " or return for default value |", std::string(defaultLine)};
}

// The integer dialogue for "your choice" in [1,2] with more output, from its rule to the default.
std::vector<std::string> choiceAsk(std::string_view defaultLine)
{
    return {rule, " Enter your choice |", " inside  [1,2]|", " or return for default value |",
            std::string(defaultLine)};
}

TEST(Textlen, BoundsOfTheNonBlankPart)
{
    struct Case
    {
        std::string_view text;
        std::int32_t first, last;
    };
    const Case cases[]{
        {"a", 1, 1},     {"abc", 1, 3},  {"  ab c  ", 3, 6},
        {"x   ", 1, 1},  {"   x", 4, 4}, {"   ", 3, 3}, // all blank: the last position twice
        {" ", 1, 1},     {"", 1, 1},                    // empty: 1 and 1
        {"\tx\t", 1, 3},                                // only the blank is white space
    };
    for (const Case& c : cases) {
        std::int32_t first = -1;
        std::int32_t last = -1;
        textlen(first, last, c.text);
        EXPECT_EQ(first, c.first) << '"' << c.text << '"';
        EXPECT_EQ(last, c.last) << '"' << c.text << '"';
    }
}

TEST(Integlen, CharactersOfAWrittenInteger)
{
    struct Case
    {
        std::int32_t iv;
        std::int32_t length;
    };
    const Case cases[]{
        {0, 1},
        {9, 1},
        {10, 2},
        {100000, 6},
        {1000000000, 10},
        {-1, 2},
        {-10, 3},
        {999999, 7}, // one too large: the float rounds up
        {999999999, 10},
        {std::numeric_limits<std::int32_t>::max(), 10},
        {std::numeric_limits<std::int32_t>::min(), 11},
    };
    for (const Case& c : cases) {
        std::int32_t length = -1;
        integlen(length, c.iv);
        EXPECT_EQ(length, c.length) << c.iv;
    }
}

using TextDialogue = SupportConsole;

TEST_F(TextDialogue, AnswerIsAssignedAsTyped)
{
    struct Case
    {
        std::string typed;
        std::size_t field;
        std::string expected;
    };
    const Case cases[]{
        {"Site A", 10, "Site A    "},
        {"Site A  b", 10, "Site A  b "},
        {" Site A", 10, "default   "}, // a leading blank is an empty answer
        {"a much longer answer", 10, "a much lon"},
        {std::string(80, 'a') + "bbbb", 100, std::string(80, 'a') + blanks(20)}, // 80 are kept
    };
    for (const Case& c : cases) {
        console = ScriptedConsole{};
        type({c.typed});
        std::string field(c.field, '?');
        std::int32_t status = -1;
        inchardef(TextRef(field.data(), field.size()), "title", "default", status);
        EXPECT_EQ(field, c.expected) << c.typed;
        const std::vector<std::string> lines = screen();
        EXPECT_EQ(lines.at(lines.size() - 2), " New value = " + c.expected + " |") << c.typed;
    }
}

TEST_F(TextDialogue, DefaultMayBeTheValueItself)
{
    type({"", "new.txt"});
    Text<12> name("old.txt");
    std::int32_t status = -1;
    inchardef(name.ref(), "file name", name, status);
    EXPECT_EQ(name.view(), "old.txt     ");
    inchardef(name.ref(), "file name", name, status);
    EXPECT_EQ(name.view(), "new.txt     ");
    const std::vector<std::string> lines = screen();
    EXPECT_EQ(lines.at(3), " Default = old.txt |");
    EXPECT_EQ(lines.at(10), " Default = old.txt |");
}

TEST_F(TextDialogue, ShortDialogueWithoutMoreOutput)
{
    iocom.LWITO[1] = false;
    type({"", "given"});
    Text<8> value;
    std::int32_t status = -1;
    inchardef(value.ref(), "data title", "keyboard", status);
    inchardef(value.ref(), "data title", "keyboard", status);
    const std::vector<std::string> expected{
        " Enter data title |",     " ichar =  32 => use default value|",
        " New value = keyboard |", " Enter data title |",
        " New value = given    |",
    };
    EXPECT_EQ(screen(), expected);
}

TEST_F(TextDialogue, FailedReadRetries)
{
    type({failingRead, "", "abc"});
    Text<3> value;
    std::int32_t status = -1;
    inchardef(value.ref(), "data title", "def", status);
    const std::vector<std::string> ask = titleAsk(" Default = def |");
    std::vector<std::string> expected = ask;
    add(expected, errorPanel("  inchardef  ", {" could not read data title |", " ==> RETRYING |"}));
    add(expected, ask);
    add(expected, {" New value = abc |", rule});
    EXPECT_EQ(screen(), expected);
    EXPECT_EQ(status, 0);
}

using IntegerDialogue = SupportConsole;

TEST_F(IntegerDialogue, IntervalPrintsInFieldsAsWideAsItsBounds)
{
    iocom.LWITO[1] = false;
    struct Case
    {
        std::int32_t ivmin, ivmax;
        std::string line;
    };
    const Case cases[]{
        {1, 2, " inside  [1,2]|"},
        {-5, 100, " inside  [-5,100]|"},
        {-1, 1, " inside  [-1,1]|"},
        {0, 999999, " inside  [0, 999999]|"},        // integlen gives 7
        {5, 1000000000, " inside  [5,1000000000]|"}, // i2 writes " 1" into the format
        {1000000000, 1000000000, " inside  [1000000000,1000000000]|"},
        {std::numeric_limits<std::int32_t>::min(), std::numeric_limits<std::int32_t>::max(),
         " inside  [-2147483648,2147483647]|"},
    };
    for (const Case& c : cases) {
        console = ScriptedConsole{};
        type({""});
        std::int32_t value = 0;
        std::int32_t status = -1;
        inintegvindef(value, "n", c.ivmin, c.ivmin, c.ivmax, status);
        const std::vector<std::string> expected{
            " Enter n |",
            c.line,
            " New value =  " + blanks(12 - std::to_string(c.ivmin).size()) + std::to_string(c.ivmin) + "|",
        };
        EXPECT_EQ(screen(), expected) << c.line;
        EXPECT_EQ(value, c.ivmin);
        EXPECT_EQ(status, 0);
    }
}

TEST_F(IntegerDialogue, RefusesADefaultOutsideTheInterval)
{
    type({"", "", "2"}); // Return, Return at the pause, then 2
    std::int32_t choice = 3;
    std::int32_t status = -1;
    inintegvindef(choice, "your choice", choice, 1, 2, status);
    const std::vector<std::string> ask = choiceAsk(" Default =            3|");
    std::vector<std::string> expected = ask;
    add(expected, errorPanel("inintegvindef", {" your choice =            3|", " outside [1,2]|"}));
    add(expected, ask);
    add(expected, {" New value =             2|", rule});
    EXPECT_EQ(screen(), expected);
    EXPECT_EQ(choice, 2);
}

TEST_F(IntegerDialogue, AsksAgainUntilTheAnswerReadsAndFits)
{
    iocom.LPAUSE = false;
    iocom.LWITO[1] = false;
    // " 12" is an empty answer; "abc" does not read; 101 is outside.
    type({" 12", "abc", "101", "-5"});
    std::int32_t value = 0;
    std::int32_t status = -1;
    inintegvindef(value, "count", 7, -5, 100, status);
    const std::vector<std::string> ask{" Enter count |", " inside  [-5,100]|"};
    std::vector<std::string> expected = ask;
    add(expected, {" New value =             7|"});
    EXPECT_EQ(screen(), expected);
    EXPECT_EQ(value, 7);

    console.screen.clear();
    inintegvindef(value, "count", 7, -5, 100, status);
    expected = ask;
    add(expected, errorPanel("inintegvindef", {" could not read count |", " ==> RETRYING |"}, false));
    add(expected, ask);
    add(expected, errorPanel("inintegvindef", {" count =          101|", " outside [-5,100]|"}, false));
    add(expected, ask);
    add(expected, {" New value =            -5|"});
    EXPECT_EQ(screen(), expected);
    EXPECT_EQ(value, -5);
}

using LogicalDialogue = SupportConsole;

TEST_F(LogicalDialogue, DecidesOnTheFirstCharacter)
{
    iocom.LWITO[1] = false;
    struct Case
    {
        std::string typed;
        bool def;
        bool expected;
    };
    const Case cases[]{
        {"yes", false, true}, {"Y", false, true}, {"1x", false, true}, {"No way", true, false},
        {"n", true, false},   {"0", true, false}, {"", true, true},    {"", false, false},
        {" y", false, false}, {" n", true, true}, // a leading blank is an empty answer
    };
    for (const Case& c : cases) {
        console = ScriptedConsole{};
        type({c.typed});
        bool value = !c.expected;
        std::int32_t status = -1;
        inlogicdef(value, "go on", c.def, status);
        EXPECT_EQ(value, c.expected) << '"' << c.typed << '"';
        EXPECT_EQ(status, 0);
        const std::vector<std::string> expected{
            " go on ? |",
            c.expected ? " New value =  Yes |" : " New value =  No  |",
        };
        EXPECT_EQ(screen(), expected) << '"' << c.typed << '"';
    }
}

std::vector<std::string> helpTable()
{
    std::vector<std::string> lines =
        menuHeadLines("@ subroutine inlogicdef          ", " v1.4", "2024-02-05");
    add(lines, {
                   "    To         type            |",
                   " ----------------------------- |",
                   " get help      h or H          |",
                   " answer Yes    y or Y or 1     |",
                   " answer No     n or N or 0     |",
                   " use default   Carriage Return |",
               });
    lines.push_back(menuTailLine());
    return lines;
}

TEST_F(LogicalDialogue, WrongAnswerGivesThePanelAndTheHelpTable)
{
    iocom.LWITO[1] = false;
    type({"x", "", "h", "N"}); // x, Return at the pause, h, N
    bool value = true;
    std::int32_t status = -1;
    inlogicdef(value, "End input and exit", true, status);
    std::vector<std::string> expected{" End input and exit ? |"};
    add(expected, errorPanel("  inlogicdef ", {" incorrect answer: x |", " ==> ASKING AGAIN |"}));
    add(expected, helpTable());
    expected.push_back(" End input and exit ? |");
    add(expected, helpTable()); // h: the table alone
    add(expected, {" End input and exit ? |", " New value =  No  |"});
    EXPECT_EQ(screen(), expected);
    EXPECT_FALSE(value);
}

TEST_F(LogicalDialogue, FailedReadAsksAgainWithTheWholeName)
{
    iocom.LWITO[1] = false;
    iocom.LPAUSE = false;
    type({failingRead, "y"});
    bool value = false;
    std::int32_t status = -1;
    inlogicdef(value, "go on  ", false, status);
    std::vector<std::string> expected{" go on ? |"};
    add(expected,
        errorPanel("  inlogicdef ", {" could not read answer to go on   |", " ==> ASKING AGAIN |"}, false));
    add(expected, {" go on ? |", " New value =  Yes |"});
    EXPECT_EQ(screen(), expected);
    EXPECT_TRUE(value);
}

// The end of input: these run in a child process, since it is noted once per process.
using DialogueEndDeathTest = SupportConsole;

TEST_F(DialogueEndDeathTest, FirstEndOfInputCountsAsTheDefault)
{
    constexpr int answeredWithDefault = 3;
    EXPECT_EXIT(
        {
            Text<20> title;
            std::int32_t status = 0;
            inchardef(title.ref(), "data title", "keyboard input", status);
            std::exit(title == "keyboard input" ? answeredWithDefault : 4);
        },
        ::testing::ExitedWithCode(answeredWithDefault), "");
    EXPECT_EXIT(
        {
            std::int32_t choice = 0;
            std::int32_t status = 0;
            inintegvindef(choice, "your choice", 2, 1, 2, status);
            std::exit(choice == 2 ? answeredWithDefault : 4);
        },
        ::testing::ExitedWithCode(answeredWithDefault), "");
    EXPECT_EXIT(
        {
            bool flag = false;
            std::int32_t status = 0;
            inlogicdef(flag, "End input and exit", true, status);
            std::exit(flag ? answeredWithDefault : 4);
        },
        ::testing::ExitedWithCode(answeredWithDefault), "");
}

TEST_F(DialogueEndDeathTest, RefusedDefaultAtEndOfInputExits)
{
    EXPECT_EXIT(
        {
            useRealOutput();
            std::int32_t choice = 3;
            std::int32_t status = 0;
            inintegvindef(choice, "your choice", choice, 1, 2, status);
        },
        ::testing::ExitedWithCode(1), "Input ended with no valid answer to \"your choice\"\n");
}

} // namespace
} // namespace kestro
