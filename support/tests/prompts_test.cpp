// support/tests/prompts_test.cpp: textlen, integlen and the three dialogues, line for line.
#include "support/prompts.h"

#include "support_console.h"

#include <cstdint>
#include <cstdlib>
#include <limits>
#include <tuple>

namespace kestro {
namespace {

constexpr std::int32_t int32Min = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t int32Max = std::numeric_limits<std::int32_t>::max();

TEST(Textlen, BoundsOfTheNonBlankPart)
{
    const std::tuple<std::string_view, std::int32_t, std::int32_t> cases[]{
        {"abc", 1, 3},   {"  ab c  ", 3, 6},
        {"   x", 4, 4},  {"   ", 3, 3}, // all blank: the last position twice
        {"", 1, 1},                     // empty: 1 and 1
        {"\tx\t", 1, 3},                // only the blank is white space
    };
    for (const auto& [text, first, last] : cases) {
        std::int32_t f = -1, l = -1;
        textlen(f, l, text);
        EXPECT_EQ(std::make_pair(f, l), std::make_pair(first, last)) << '"' << text << '"';
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

// data/dialogues.txt: the three dialogues with the answers typed, line for line.
TEST_F(Dialogue, AnswersAndRetriesLineForLine)
{
    for (const std::string_view kind : {"text", "integer", "logical"}) {
        for (const Case& c : casesOf("dialogues.txt", kind)) {
            SCOPED_TRACE(testing::Message() << kind << " " << c.fields[5] << ", typed " << c.fields[8]);
            console = ScriptedConsole{};
            iocom.LWITO[1] = c.fields[3] == "1";
            iocom.LPAUSE = c.fields[4] == "1";
            for (std::size_t i = 8; i < c.fields.size(); ++i)
                type({c.fields[i]});
            const std::string& question = c.fields[5];
            std::string value;
            std::int32_t status = -1;
            if (kind == "text") {
                value.assign(c.number(1), '?');
                inchardef(TextRef(value.data(), value.size()), question, c.fields[6], status);
            } else if (kind == "integer") {
                std::int32_t typed = -1;
                inintegvindef(typed, question, c.number(6), c.number(1), c.number(2), status);
                value = std::to_string(typed);
            } else {
                bool yes = c.fields[7] != "Yes"; // the other answer, so that the dialogue must set it
                inlogicdef(yes, question, c.fields[6] == "Yes", status);
                value = yes ? "Yes" : "No";
            }
            EXPECT_EQ(value, c.fields[7]);
            EXPECT_EQ(status, 0);
            EXPECT_EQ(screen(), c.lines);
            EXPECT_EQ(console.input, "") << "lines left unread";
        }
    }
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
