// support/tests/prompts_test.cpp: textlen, integlen and the three dialogues, line for line.
#include "support/prompts.h"

#include "support_console.h"

namespace kestro {
namespace {

// data/prompts.txt: the bounds of the non-blank part, and the characters of a written integer.
TEST(Lengths, TextlenBoundsAndIntegerWidths)
{
    for (const Case& c : casesOf("prompts.txt", "textlen")) {
        std::int32_t first = -1, last = -1;
        textlen(first, last, c.fields[1]);
        EXPECT_EQ(std::make_pair(first, last), std::make_pair(c.number(2), c.number(3)))
            << '"' << c.fields[1] << '"';
    }
    for (const Case& c : casesOf("prompts.txt", "integlen")) {
        std::int32_t length = -1;
        integlen(length, c.number(1));
        EXPECT_EQ(length, c.number(2)) << c.fields[1];
    }
}

using Dialogue = SupportConsole;

// data/prompts.txt: the three dialogues with the answers typed, line for line.
TEST_F(Dialogue, AnswersAndRetriesLineForLine)
{
    for (const std::string_view kind : {"text", "integer", "logical"}) {
        for (const Case& c : casesOf("prompts.txt", kind)) {
            SCOPED_TRACE(testing::Message()
                         << kind << " " << c.fields[5] << ", typed " << c.fields.size() - 8);
            console = ScriptedConsole{};
            forgetEndedInput();
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

// A second end of input ends the program; here it meets the refused default of the first one.
using DialogueEndDeathTest = SupportConsole;

TEST_F(DialogueEndDeathTest, RefusedDefaultAtTheEndOfInputExits)
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
