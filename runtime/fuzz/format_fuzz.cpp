// runtime/fuzz/format_fuzz.cpp: formatted output and input under arbitrary format strings and values.
//
// Input layout: the format string up to the first line feed; then a text value up to the next line
// feed; then raw bytes for an int32, a float, a double and a logical. Missing parts keep defaults,
// so a seed can be a format alone.
#include "runtime/io.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string_view>

namespace rt = kestro::rt;
using kestro::Text;

namespace {

struct Values
{
    std::string_view format;
    std::string_view text = "E";
    std::int32_t integer = 16;
    float real = 283.5f;
    double wide = 50.8;
    bool logical = true;
};

std::string_view cutLine(std::string_view& rest)
{
    const std::size_t end = rest.find('\n');
    const std::string_view line = rest.substr(0, end);
    rest = end == std::string_view::npos ? std::string_view() : rest.substr(end + 1);
    return line;
}

template <typename T> void takeRaw(std::string_view& rest, T& value)
{
    if (rest.size() < sizeof(T)) return;
    std::memcpy(&value, rest.data(), sizeof(T));
    rest.remove_prefix(sizeof(T));
}

Values split(std::string_view input)
{
    Values v;
    v.format = cutLine(input);
    if (input.empty()) return v;
    v.text = cutLine(input);
    takeRaw(input, v.integer);
    takeRaw(input, v.real);
    takeRaw(input, v.wide);
    if (!input.empty()) v.logical = (input.front() & 1) != 0;
    return v;
}

// A statement with handlers never stops the program; what it returns must agree with its status.
void check(const rt::Iostat& ios, int status)
{
    if (ios.ok()) {
        if (ios.code != 0 || status != 0) std::abort();
        return;
    }
    if (ios.code == 0) std::abort();
    if (status != rt::statusFor(ios.code) && status != ios.code) std::abort();
}

template <typename... Items> void writeThrough(const Values& v, kestro::TextRef target, const Items&... items)
{
    int status = 0;
    const rt::Iostat ios =
        rt::writeInternal(rt::onError | rt::withStatus(status), target, v.format, items...);
    check(ios, status);
}

void readThrough(const Values& v, std::string_view source)
{
    int status = 0;
    std::int32_t integer = 0;
    float real = 0.0f;
    double wide = 0.0;
    Text<40> text;
    bool logical = false;
    const rt::Iostat ios = rt::readInternal(rt::onEnd | rt::onError | rt::withStatus(status), source,
                                            v.format, integer, real, wide, text, logical);
    check(ios, status);
}

// Repeat counts multiply: "(99999(99999('x')))" is ten billion legitimate steps. Formats whose
// nested counts (or widths) multiply past a bound only measure patience, so they are left out.
bool boundedWork(std::string_view format)
{
    constexpr double bound = 1e5;
    double scale[64] = {1};
    int depth = 0;
    double number = 0;
    for (char c : format) {
        if (c >= '0' && c <= '9') {
            number = number * 10 + (c - '0');
            if (number * scale[depth] > bound) return false;
            continue;
        }
        if (c == ' ') continue;
        if (c == '(') {
            if (depth + 1 >= 64) return false;
            scale[depth + 1] = scale[depth] * (number > 0 ? number : 1);
            ++depth;
        } else if (c == ')' && depth > 0) {
            --depth;
        }
        number = 0;
    }
    return true;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const Values v = split(std::string_view(reinterpret_cast<const char*>(data), size));
    if (!boundedWork(v.format)) return 0;
    constexpr std::string_view tab = "\t";

    Text<200> out;
    writeThrough(v, out.ref(), v.integer, v.real, v.wide, v.text, v.logical);
    const Text<200> written = out;

    // The shape of a results line: reals, tabs, letters and a comment.
    Text<200> line;
    writeThrough(v, line.ref(), v.real, tab, v.text, tab, v.real, tab, v.text, tab, v.real, tab, v.wide, tab,
                 v.text);
    // A message line, and a target too short for most records.
    Text<12> narrow;
    writeThrough(v, narrow.ref(), v.text, v.integer, v.text, v.logical);

    readThrough(v, written.view());
    readThrough(v, v.text);
    return 0;
}
