// support/prompts.cpp: textlen, integlen and the text, integer and yes/no dialogues.
#include "support/prompts.h"

#include "runtime/io.h"
#include "support/panels.h"
#include "support/sio.h"

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <string>

namespace kestro {

namespace {

constexpr rt::Unit errorUnit = 0;
constexpr std::string_view rule = "..........................................";
constexpr std::string_view lines = "(5(1x,a))";
constexpr std::string_view labelledInteger = "(1x,a,1x,i12)";

// Set when a dialogue has met the end of input on SIN. Only the program thread asks questions.
bool inputEnded = false;

enum class Answer { line, ended, failed };

[[noreturn]] void endForInput(const std::string& message)
{
    rt::write(errorUnit, "(a)", message);
    rt::closeAllUnits();
    std::exit(1);
}

[[noreturn]] void endForUnansweredQuestion(std::string_view question)
{
    endForInput("Input ended with no valid answer to \"" + std::string(question) + "\"");
}

// Reads one line of SIN into `buffer`. The first end of input counts as an empty line (the
// buffer is blanked); a second one ends the program.
Answer readAnswer(TextRef buffer, std::string_view question)
{
    switch (rt::read(rt::onEnd | rt::onError, iocom.SIN, "(a)", buffer)) {
    case rt::Outcome::ok:
        return Answer::line;
    case rt::Outcome::end:
        if (inputEnded) endForUnansweredQuestion(question);
        inputEnded = true;
        buffer.fill(' ');
        return Answer::ended;
    default:
        return Answer::failed;
    }
}

bool isEmptyAnswer(char c)
{
    return c == '\n' || c == '\r' || c == ' ';
}

void showRule()
{
    if (iocom.LWITO[1]) rt::write(iocom.SOUT, "(1x,a)", rule);
}

// The panel of a line that could not be read; the dialogue then starts again.
void readFailurePanel(std::string_view name, std::string_view vers, std::string_view date,
                      std::string_view question)
{
    errorhead(name, vers, date);
    rt::write(iocom.SOUT, lines, "could not read", question);
    rt::write(iocom.SOUT, lines, "==> RETRYING");
    errortail00();
}

// The format that prints "inside  [", ivmin, ",", ivmax, "]" in fields as wide as the bounds,
// such as "(1x,a9,i2,a1,i3a1)".
Text<35> intervalFormat(std::int32_t w1, std::int32_t w2)
{
    std::string_view maker = "('(1x,a9,i',i9,',a1,i',i9,'a1)')";
    if (w1 <= 9 && w2 <= 9)
        maker = "('(1x,a9,i',i1,',a1,i',i1,'a1)')";
    else if (w1 <= 99 && w2 <= 99)
        maker = "('(1x,a9,i',i2,',a1,i',i2,'a1)')";
    else if (w1 <= 999 && w2 <= 999)
        maker = "('(1x,a9,i',i3,',a1,i',i3,'a1)')";
    Text<35> format;
    rt::writeInternal(format.ref(), maker, w1, w2);
    return format;
}

} // namespace

void textlen(std::int32_t& first, std::int32_t& last, std::string_view text)
{
    std::int32_t f = 1;
    std::int32_t l = static_cast<std::int32_t>(text.size());
    while (f < l && text[f - 1] == ' ')
        ++f;
    while (f < l && text[l - 1] == ' ')
        --l;
    if (f > l) f = l = 1;
    first = f;
    last = l;
}

std::string_view significantPart(std::string_view text)
{
    // The bounds of textlen, found eight blanks at a time: results lines trim a 55-character
    // comment that is mostly blank.
    constexpr std::uint64_t blanks = 0x2020202020202020ull;
    std::size_t end = text.size();
    while (end >= 8) {
        std::uint64_t word;
        std::memcpy(&word, text.data() + end - 8, 8);
        if (word != blanks) break;
        end -= 8;
    }
    if (end < 8 && text.size() >= 8) {
        // What is left lies within the first eight characters: one look at them may settle it.
        std::uint64_t word;
        std::memcpy(&word, text.data(), 8);
        if (word == blanks) end = 0;
    }
    while (end > 0 && text[end - 1] == ' ')
        --end;
    if (end == 0) return text.empty() ? text : text.substr(text.size() - 1);
    std::size_t begin = 0;
    while (text[begin] == ' ')
        ++begin;
    return text.substr(begin, end - begin);
}

void integlen(std::int32_t& length, std::int32_t iv)
{
    constexpr float log10e = 0.4342945f;
    if (iv == 0) {
        length = 1;
        return;
    }
    // The float conversion rounds large values up, so a length may come out one too large.
    const float magnitude = std::fabs(static_cast<float>(iv));
    const float digits = log10e * std::log(magnitude);
    length = static_cast<std::int32_t>(digits) + (iv > 0 ? 1 : 2);
}

void inchardef(TextRef value, std::string_view name, std::string_view def, std::int32_t& status)
{
    constexpr std::string_view routine = "inchardef  ";
    constexpr std::string_view vers = " 1.5";
    constexpr std::string_view date = "2024-02-05";

    status = 0;
    const std::string_view question = significantPart(name);
    for (;;) {
        showRule();
        rt::write(iocom.SOUT, lines, "Enter", question);
        if (iocom.LWITO[1]) {
            rt::write(iocom.SOUT, lines, "or return for default value");
            rt::write(iocom.SOUT, lines, "Default =", significantPart(def));
        }
        Text<80> buffer;
        if (readAnswer(buffer.ref(), question) == Answer::failed) {
            readFailurePanel(routine, vers, date, question);
            continue;
        }
        const char first = buffer[0];
        if (isEmptyAnswer(first)) {
            const std::int32_t code = static_cast<unsigned char>(first);
            rt::write(iocom.SOUT, "(1x,a,1x,i3,1x,a)", "ichar =", code, "=> use default value");
            value.assign(def); // memmove: def may be value itself
        } else {
            value.assign(buffer.view());
        }
        rt::write(iocom.SOUT, lines, "New value =", value);
        showRule();
        return;
    }
}

void inintegvindef(std::int32_t& value, std::string_view name, std::int32_t def, std::int32_t ivmin,
                   std::int32_t ivmax, std::int32_t& status)
{
    constexpr std::string_view routine = "inintegvindef";
    constexpr std::string_view vers = " 1.4";
    constexpr std::string_view date = "2024-02-05";

    status = 0;
    const std::string_view question = significantPart(name);
    std::int32_t w1 = 0;
    std::int32_t w2 = 0;
    integlen(w1, ivmin);
    integlen(w2, ivmax);
    // 32-bit bounds take at most 11 characters, so the interval format always fits.
    const Text<35> interval = intervalFormat(w1, w2);

    bool answeredByEnd = false;
    for (;;) {
        if (answeredByEnd) endForUnansweredQuestion(question);
        showRule();
        rt::write(iocom.SOUT, lines, "Enter", question);
        rt::write(iocom.SOUT, interval.view(), "inside  [", ivmin, ",", ivmax, "]");
        if (iocom.LWITO[1]) {
            rt::write(iocom.SOUT, lines, "or return for default value");
            rt::write(iocom.SOUT, labelledInteger, "Default =", def);
        }
        Text<20> buffer;
        const Answer answer = readAnswer(buffer.ref(), question);
        if (answer == Answer::failed) {
            readFailurePanel(routine, vers, date, question);
            continue;
        }
        answeredByEnd = answer == Answer::ended;
        if (isEmptyAnswer(buffer[0])) {
            value = def;
        } else {
            // A null value ("," or "/") leaves the value as it was.
            std::int32_t typed = value;
            if (!rt::readListInternal(rt::onEnd | rt::onError, buffer.view(), typed).ok()) {
                readFailurePanel(routine, vers, date, question);
                continue;
            }
            value = typed;
        }
        if (value < ivmin || value > ivmax) {
            errorhead(routine, vers, date);
            rt::write(iocom.SOUT, labelledInteger, std::string(question) + " =", value);
            rt::write(iocom.SOUT, interval.view(), "outside [", ivmin, ",", ivmax, "]");
            errortail00();
            continue;
        }
        rt::write(iocom.SOUT, labelledInteger, "New value = ", value);
        showRule();
        return;
    }
}

void inlogicdef(bool& value, std::string_view name, bool def, std::int32_t& status)
{
    constexpr std::string_view routine = "inlogicdef ";
    constexpr std::string_view vers = " 1.4";
    constexpr std::string_view date = "2024-02-05";

    status = 0;
    const Text<3> defaultWord = def ? "Yes" : "No ";
    const std::string_view question = significantPart(name);
    for (;;) {
        showRule();
        rt::write(iocom.SOUT, lines, question, "?");
        if (iocom.LWITO[1]) {
            rt::write(iocom.SOUT, lines, "Enter (0/1)(n/y)(N/Y) to answer");
            rt::write(iocom.SOUT, lines, "or return for default value or h for help");
            rt::write(iocom.SOUT, lines, "Default =", defaultWord);
        }
        Text<1> answer;
        if (readAnswer(answer.ref(), question) == Answer::failed) {
            errorhead(routine, vers, date);
            rt::write(iocom.SOUT, lines, "could not read answer to", name);
            rt::write(iocom.SOUT, lines, "==> ASKING AGAIN");
            errortail00();
            continue;
        }
        const char c = answer[0];
        if (c == 'y' || c == 'Y' || c == '1') {
            value = true;
            break;
        }
        if (c == 'n' || c == 'N' || c == '0') {
            value = false;
            break;
        }
        if (isEmptyAnswer(c)) {
            value = def;
            break;
        }
        if (c != 'h' && c != 'H') {
            errorhead(routine, vers, date);
            rt::write(iocom.SOUT, lines, "incorrect answer:", answer);
            rt::write(iocom.SOUT, lines, "==> ASKING AGAIN");
            errortail00();
        }
        submenuhead(routine, vers, date);
        rt::write(iocom.SOUT, lines, "   To         type           ");
        rt::write(iocom.SOUT, lines, "-----------------------------");
        rt::write(iocom.SOUT, lines, "get help      h or H         ");
        rt::write(iocom.SOUT, lines, "answer Yes    y or Y or 1    ");
        rt::write(iocom.SOUT, lines, "answer No     n or N or 0    ");
        rt::write(iocom.SOUT, lines, "use default   Carriage Return");
        menutail();
    }
    const Text<3> newWord = value ? "Yes" : "No ";
    rt::write(iocom.SOUT, lines, "New value = ", newWord);
    showRule();
}

bool inputHasEnded()
{
    return inputEnded;
}

void inputEndedExit()
{
    endForInput("Input ended with a question still open");
}

void forgetEndedInput()
{
    inputEnded = false;
}

} // namespace kestro
