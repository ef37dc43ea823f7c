// support/tests/prompts_test.cpp: textlen, integlen and the three dialogues, line for line.
#include "support/prompts.h"

#include "support_console.h"

#include <cstdint>
#include <cstdlib>
#include <limits>

namespace kestro {
namespace {

constexpr std::int32_t int32Min = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t int32Max = std::numeric_limits<std::int32_t>::max();

TEST(Textlen, BoundsOfTheNonBlankPart)
{
    const struct
    {
        std::string_view text;
        std::int32_t first, last;
    } cases[]{
        {"abc", 1, 3},   {"  ab c  ", 3, 6},
        {"   x", 4, 4},  {"   ", 3, 3}, // all blank: the last position twice
        {"", 1, 1},                     // empty: 1 and 1
        {"\tx\t", 1, 3},                // only the blank is white space
    };
    for (const auto& c : cases) {
        std::int32_t first = -1, last = -1;
        textlen(first, last, c.text);
        EXPECT_EQ(std::make_pair(first, last), std::make_pair(c.first, c.last)) << '"' << c.text << '"';
    }
}

TEST(Integlen, CharactersOfAWrittenInteger)
{
    const std::int32_t cases[][2]{
        {0, 1},          {9, 1},         {10, 2},
        {-1, 2},         {999999, 7}, // one too large: the float rounds up
        {999999999, 10}, {int32Max, 10}, {int32Min, 11},
    };
    for (const auto& c : cases) {
        std::int32_t length = -1;
        integlen(length, c[0]);
        EXPECT_EQ(length, c[1]) << c[0];
    }
}

using Dialogue = SupportConsole;

TEST_F(Dialogue, TextAnswerIsAssignedAsTyped)
{
    const struct
    {
        std::string typed;
        std::size_t field;
        std::string expected;
    } cases[]{
        {"Site A  b", 10, "Site A  b "},
        {" Site A", 10, "default   "}, // a leading blank is an empty answer
        {"a much longer answer", 10, "a much lon"},
        {std::string(80, 'a') + "bbbb", 100, padded(std::string(80, 'a'), 100)}, // 80 are kept
    };
    for (const auto& c : cases) {
        console = ScriptedConsole{};
        type({c.typed});
        std::string field(c.field, '?');
        std::int32_t status = -1;
        inchardef(TextRef(field.data(), field.size()), "title", "default", status);
        EXPECT_EQ(field, c.expected) << c.typed;
        const std::vector<std::string> lines = screen();
        EXPECT_EQ(lines.at(lines.size() - 2), " New value = " + c.expected + " |") << c.typed;
    }
    // The default may be the field itself.
    console = ScriptedConsole{};
    type({""});
    Text<12> name("old.txt");
    std::int32_t status = -1;
    inchardef(name.ref(), "file name", name, status);
    EXPECT_EQ(name.view(), "old.txt     ");
    EXPECT_EQ(screen().at(3), " Default = old.txt |");
}

TEST_F(Dialogue, TextDialogueShortAndRetried)
{
    iocom.LWITO[1] = false;
    type({"", "given"});
    Text<8> value;
    std::int32_t status = -1;
    inchardef(value.ref(), "data title", "keyboard", status);
    inchardef(value.ref(), "data title", "keyboard", status);
    EXPECT_EQ(screen(), screenOf("inchardef short, default then given"));

    console = ScriptedConsole{};
    iocom.LWITO[1] = true;
    type({failingRead, "", "abc"});
    Text<3> three;
    inchardef(three.ref(), "data title", "def", status);
    EXPECT_EQ(screen(), screenOf("inchardef failed read"));
    EXPECT_EQ(status, 0);
}

TEST_F(Dialogue, IntervalPrintsInFieldsAsWideAsItsBounds)
{
    iocom.LWITO[1] = false;
    const struct
    {
        std::int32_t ivmin, ivmax;
        std::string line;
    } cases[]{
        {-5, 100, " inside  [-5,100]|"},
        {0, 999999, " inside  [0, 999999]|"},        // integlen gives 7
        {5, 1000000000, " inside  [5,1000000000]|"}, // i2 writes " 1" into the format
        {int32Min, int32Max, " inside  [-2147483648,2147483647]|"},
    };
    for (const auto& c : cases) {
        console = ScriptedConsole{};
        type({""});
        std::int32_t value = 0, status = -1;
        inintegvindef(value, "n", c.ivmin, c.ivmin, c.ivmax, status);
        const std::string shown = std::to_string(c.ivmin);
        EXPECT_EQ(screen(),
                  (std::vector<std::string>{" Enter n |", c.line,
                                            " New value =  " + padded("", 12 - shown.size()) + shown + "|"}));
        EXPECT_EQ(value, c.ivmin);
    }
}

TEST_F(Dialogue, IntegerAsksAgainUntilTheAnswerReadsAndFits)
{
    type({"", "", "2"}); // Return, Return at the pause, then 2
    std::int32_t choice = 3, status = -1;
    inintegvindef(choice, "your choice", choice, 1, 2, status);
    EXPECT_EQ(screen(), screenOf("inintegvindef default outside"));
    EXPECT_EQ(choice, 2);

    console = ScriptedConsole{};
    iocom.LPAUSE = false;
    iocom.LWITO[1] = false;
    // " 12" is an empty answer; "abc" does not read; 101 is outside.
    type({" 12", "abc", "101", "-5"});
    std::int32_t value = 0;
    inintegvindef(value, "count", 7, -5, 100, status);
    EXPECT_EQ(screen(), screenOf("inintegvindef empty answer"));
    EXPECT_EQ(value, 7);
    console.screen.clear();
    inintegvindef(value, "count", 7, -5, 100, status);
    EXPECT_EQ(screen(), screenOf("inintegvindef unreadable then outside"));
    EXPECT_EQ(value, -5);
}

TEST_F(Dialogue, LogicalDecidesOnTheFirstCharacter)
{
    iocom.LWITO[1] = false;
    const struct
    {
        std::string typed;
        bool def, expected;
    } cases[]{
        {"yes", false, true}, {"1x", false, true}, {"No way", true, false},
        {"0", true, false},   {"", true, true},    {"", false, false},
        {" y", false, false}, {" n", true, true}, // leading blank: empty
    };
    for (const auto& c : cases) {
        console = ScriptedConsole{};
        type({c.typed});
        bool value = !c.expected;
        std::int32_t status = -1;
        inlogicdef(value, "go on", c.def, status);
        EXPECT_EQ(value, c.expected) << '"' << c.typed << '"';
        EXPECT_EQ(screen(), (std::vector<std::string>{" go on ? |", c.expected ? " New value =  Yes |"
                                                                               : " New value =  No  |"}));
    }
}

TEST_F(Dialogue, LogicalWrongAnswerOrFailedReadAsksAgain)
{
    iocom.LWITO[1] = false;
    type({"x", "", "h", "N"}); // x, Return at the pause, h, N
    bool value = true;
    std::int32_t status = -1;
    inlogicdef(value, "End input and exit", true, status);
    EXPECT_EQ(screen(), screenOf("inlogicdef wrong answer, help"));
    EXPECT_FALSE(value);

    console = ScriptedConsole{};
    iocom.LPAUSE = false;
    type({failingRead, "y"});
    inlogicdef(value, "go on  ", false, status);
    EXPECT_EQ(screen(), screenOf("inlogicdef failed read"));
    EXPECT_TRUE(value);
}

// The end of input: these run in a child process, since it is noted once per process.
using DialogueEndDeathTest = SupportConsole;

TEST_F(DialogueEndDeathTest, FirstEndOfInputCountsAsTheDefaultARefusedOneExits)
{
    bool (*const dialogues[])() = {
        [] {
            Text<20> title;
            std::int32_t status = 0;
            inchardef(title.ref(), "data title", "keyboard input", status);
            return title == "keyboard input";
        },
        [] {
            std::int32_t choice = 0, status = 0;
            inintegvindef(choice, "your choice", 2, 1, 2, status);
            return choice == 2;
        },
        [] {
            bool flag = false;
            std::int32_t status = 0;
            inlogicdef(flag, "End input and exit", true, status);
            return flag;
        },
    };
    for (auto* dialogue : dialogues)
        EXPECT_EXIT(std::exit(dialogue() ? 3 : 4), ::testing::ExitedWithCode(3), "");
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
