// support/prompts.h: the dialogues that ask the user for a text, an integer or a yes/no, and the
// two text measures they rest on.
#pragma once

#include "runtime/text.h"

#include <cstdint>
#include <string_view>

namespace kestro {

// 1-based bounds of the non-blank part of `text`. An all-blank text of length n gives n and n,
// an empty text 1 and 1. Only the blank counts as white space.
void textlen(std::int32_t& first, std::int32_t& last, std::string_view text);

// `text` from first to last non-blank as textlen bounds it (one blank for an all-blank text).
std::string_view significantPart(std::string_view text);

// Characters that `iv` takes when written, sign included, worked out in single precision:
// it may come out one too large near a power of ten (999999 gives 7).
void integlen(std::int32_t& length, std::int32_t iv);

// The dialogues ask on SOUT and read one line of SIN until they have a valid answer; an empty
// line or one that begins with a blank takes the default. `status` is always 0.
// The first end of input in the process counts as an empty answer; if the dialogue would then
// have to ask again, or input ends a second time, the program ends through inputEndedExit.
void inchardef(TextRef value, std::string_view name, std::string_view def,
               std::int32_t& status); // def may alias value
// Asks for an integer inside [ivmin, ivmax]; a default outside it is refused like a typed value.
void inintegvindef(std::int32_t& value, std::string_view name, std::int32_t def, std::int32_t ivmin,
                   std::int32_t ivmax, std::int32_t& status);
// Decides on the first character of the answer: y Y 1 yes, n N 0 no, h H the help table.
void inlogicdef(bool& value, std::string_view name, bool def, std::int32_t& status);

// Whether a dialogue has met the end of input on SIN.
bool inputHasEnded();

// End of input on SIN (the user's answers): one line on the error unit, every unit closed,
// exit status 1.
[[noreturn]] void inputEndedExit();

// For tests: forgets that the input has ended, as at the start of the program.
void forgetEndedInput();

} // namespace kestro
