// app/notices.h: what the checks and the solver have to say about a record, and the panels that say it.
#pragma once

#include "app/fracture.h"

#include <array>

namespace kestro::app {

// One line of a panel below its record line. Texts are literals. Trivial, so that a verdict
// without panels costs its record nothing.
struct NoticeLine
{
    enum class Form : std::uint8_t { text, textAndLetter, value, modulo180 };
    Form form;
    char letter; // textAndLetter: the letter written after the text
    std::uint16_t size;
    const char* text; // the text, or the label of the value
    float value;      // value: f7.1; modulo180: es10.3, then "[modulo 180]"

    std::string_view textView() const { return {text, size}; }
};

// A warning panel, or an error panel of a refusal, with up to four lines. Set up by Verdict.
struct Notice
{
    bool error;
    std::uint8_t lineCount;
    std::array<NoticeLine, 4> lines;

    Notice& text(std::string_view text);
    Notice& text(std::string_view text, char letter);
    Notice& value(std::string_view label, float value);
    Notice& modulo180(std::string_view label, float value);
};

// The outcome of the checks or the solver for one record: accepted or refused, and the panels in
// the order they arose. A refusal's error panel is the last.
struct Verdict
{
    bool accepted = true;
    std::uint8_t noticeCount = 0;
    std::array<Notice, 3> notices; // two strike resets and a late detection at most

    Notice& warn();
    // Refuses the record: sets the comment and opens the error panel.
    Notice& refuse(Fracture& fracture, std::string_view comment);
};

// The panels of a verdict on SOUT, each under the record line of `readCount`. The error panel of a
// refusal closes with "===> NO CONVERSION".
void writeNotices(const Verdict& verdict, std::int32_t readCount);

} // namespace kestro::app
