// runtime/conversion.cpp: input conversion: the characters of a field or a free-form value into
// a value.
#include "runtime/conversion.h"

#include "runtime/iostat.h"

#include <cctype>
#include <charconv>
#include <cstring>
#include <limits>

namespace kestro::rt {

namespace {

// Characters of a field for numeric input: blanks dropped (BN) or read as zeros (BZ).
std::string numericText(std::string_view field, const EditModes& modes)
{
    std::string text;
    text.reserve(field.size());
    bool started = false;
    for (char c : field) {
        if (c == ' ' || c == '\t') {
            if (modes.blankZero && started) text += '0';
            continue;
        }
        started = true;
        text += c;
    }
    if (modes.blankZero) {
        // Trailing blanks of a short record are padding, not zeros.
    }
    return text;
}

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

// Parses [sign] digits [point digits] [exponent] into a value. `implied` is the d of Fw.d for a
// field without a point; `scale` the P factor for a field without an exponent.
int parseReal(std::string_view text, bool single, bool decimalComma, int implied, int scale,
              bool allowSignExponent, double& value)
{
    const char point = decimalComma ? ',' : '.';
    std::size_t i = 0;
    bool negative = false;
    if (i < text.size() && (text[i] == '+' || text[i] == '-')) negative = text[i++] == '-';
    char mantissa[64];
    int kept = 0;
    long long exponent = 0;
    bool anyDigit = false;
    bool sawPoint = false;
    bool nonZero = false;
    int fractionDigits = 0;
    int leadingDigits = 0; // integer digits after leading zeros, for range decisions
    for (; i < text.size(); ++i) {
        const char c = text[i];
        if (isDigit(c)) {
            anyDigit = true;
            if (c != '0') nonZero = true;
            if (!nonZero) {
                if (sawPoint) ++fractionDigits;
                continue;
            }
            if (kept < 60) {
                mantissa[kept++] = c;
                if (sawPoint) ++fractionDigits;
            } else if (!sawPoint) {
                ++exponent; // digits beyond what a double can tell
            }
            if (!sawPoint) ++leadingDigits;
        } else if (c == point && !sawPoint) {
            sawPoint = true;
        } else {
            break;
        }
    }
    if (!anyDigit) return code::badNumericInput;
    bool hasExponent = false;
    if (i < text.size()) {
        const char c = static_cast<char>(std::toupper(static_cast<unsigned char>(text[i])));
        if (c == 'E' || c == 'D' || c == 'Q') {
            ++i;
        } else if (!(allowSignExponent && (c == '+' || c == '-'))) {
            return code::badNumericInput;
        }
        bool expNegative = false;
        if (i < text.size() && (text[i] == '+' || text[i] == '-')) expNegative = text[i++] == '-';
        if (i == text.size()) return code::badNumericInput;
        long long e = 0;
        for (; i < text.size(); ++i) {
            if (!isDigit(text[i])) return code::badNumericInput;
            if (e < 100000000) e = e * 10 + (text[i] - '0');
        }
        exponent += expNegative ? -e : e;
        hasExponent = true;
    }
    if (!sawPoint && implied > 0) fractionDigits += implied;
    if (!hasExponent) exponent -= scale;
    if (!nonZero) {
        value = negative ? -0.0 : 0.0;
        return 0;
    }
    exponent -= fractionDigits;
    char buffer[96];
    std::memcpy(buffer, mantissa, static_cast<std::size_t>(kept));
    char* end = buffer + kept;
    *end++ = 'e';
    end = std::to_chars(end, buffer + sizeof buffer, exponent).ptr;
    std::from_chars_result r;
    if (single) {
        float f = 0;
        r = std::from_chars(buffer, end, f);
        value = f;
    } else {
        r = std::from_chars(buffer, end, value);
    }
    if (r.ec == std::errc::result_out_of_range) {
        const long long magnitude = exponent + kept;
        value = magnitude > 0 ? std::numeric_limits<double>::infinity() : 0.0;
    }
    if (negative) value = -value;
    (void)leadingDigits;
    return 0;
}

bool matchesWord(std::string_view text, std::string_view word)
{
    if (text.size() != word.size()) return false;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (std::toupper(static_cast<unsigned char>(text[i])) != word[i]) return false;
    }
    return true;
}

} // namespace

int readIntegerField(std::string_view field, const FormatToken& token, const EditModes& modes,
                     std::int64_t& value)
{
    const std::string text = numericText(field, modes);
    if (text.empty()) {
        value = 0;
        return 0;
    }
    std::size_t i = 0;
    bool negative = false;
    const int radix = token.kind == EditKind::B   ? 2
                      : token.kind == EditKind::O ? 8
                      : token.kind == EditKind::Z ? 16
                                                  : 10;
    if (radix == 10 && (text[0] == '+' || text[0] == '-')) negative = text[i++] == '-';
    if (i == text.size()) return code::badNumericInput;
    std::uint64_t magnitude = 0;
    for (; i < text.size(); ++i) {
        int digit;
        const char c = static_cast<char>(std::toupper(static_cast<unsigned char>(text[i])));
        if (isDigit(c))
            digit = c - '0';
        else if (c >= 'A' && c <= 'F')
            digit = c - 'A' + 10;
        else
            return code::badNumericInput;
        if (digit >= radix) return code::badNumericInput;
        if (magnitude > (std::numeric_limits<std::uint64_t>::max() - static_cast<unsigned>(digit)) /
                            static_cast<unsigned>(radix))
            return code::badNumericInput;
        magnitude = magnitude * static_cast<unsigned>(radix) + static_cast<unsigned>(digit);
    }
    if (radix == 10) {
        if (magnitude >
            static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max()) + (negative ? 1u : 0u))
            return code::badNumericInput;
        value = negative ? static_cast<std::int64_t>(0 - magnitude) : static_cast<std::int64_t>(magnitude);
    } else {
        value = static_cast<std::int64_t>(magnitude);
    }
    return 0;
}

int readRealField(std::string_view field, const FormatToken& token, const EditModes& modes, bool single,
                  double& value)
{
    const std::string text = numericText(field, modes);
    if (text.empty()) {
        value = 0;
        return 0;
    }
    std::string_view rest = text;
    const bool negative = rest[0] == '-';
    if (rest[0] == '+' || rest[0] == '-') rest.remove_prefix(1);
    if (matchesWord(rest, "NAN") ||
        (rest.size() > 4 && matchesWord(rest.substr(0, 4), "NAN(") && rest.back() == ')')) {
        value = std::numeric_limits<double>::quiet_NaN();
        return 0;
    }
    if (matchesWord(rest, "INF") || matchesWord(rest, "INFINITY")) {
        value = negative ? -std::numeric_limits<double>::infinity() : std::numeric_limits<double>::infinity();
        return 0;
    }
    return parseReal(text, single, modes.decimalComma, token.decimals, modes.scale, true, value);
}

int readLogicalField(std::string_view field, bool& value)
{
    std::size_t i = field.find_first_not_of(" \t");
    if (i == std::string_view::npos) return code::badNumericInput;
    if (field[i] == '.') ++i;
    if (i >= field.size()) return code::badNumericInput;
    const char c = static_cast<char>(std::toupper(static_cast<unsigned char>(field[i])));
    if (c == 'T')
        value = true;
    else if (c == 'F')
        value = false;
    else
        return code::badNumericInput;
    return 0;
}

void readTextField(std::string_view field, const FormatToken& token, TextRef value)
{
    if (token.hasWidth && field.size() > value.size()) field = field.substr(field.size() - value.size());
    value.assign(field);
}

int numberToInteger(std::string_view token, std::int64_t& value)
{
    std::size_t i = 0;
    bool negative = false;
    if (i < token.size() && (token[i] == '+' || token[i] == '-')) negative = token[i++] == '-';
    if (i == token.size()) return code::badNumericInput;
    std::uint64_t magnitude = 0;
    for (; i < token.size(); ++i) {
        if (!isDigit(token[i])) return code::badNumericInput;
        const unsigned digit = static_cast<unsigned>(token[i] - '0');
        if (magnitude > (std::numeric_limits<std::uint64_t>::max() - digit) / 10)
            return code::badNumericInput;
        magnitude = magnitude * 10 + digit;
    }
    if (magnitude >
        static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max()) + (negative ? 1u : 0u))
        return code::badNumericInput;
    value = negative ? static_cast<std::int64_t>(0 - magnitude) : static_cast<std::int64_t>(magnitude);
    return 0;
}

int numberToReal(std::string_view token, bool single, bool decimalComma, double& value)
{
    // Plain digits: exact, and the common case of a data record.
    if (!token.empty() && token.size() <= 7) {
        std::size_t i = token[0] == '-' || token[0] == '+' ? 1 : 0;
        if (i < token.size()) {
            std::int32_t n = 0;
            std::size_t j = i;
            for (; j < token.size() && isDigit(token[j]); ++j)
                n = n * 10 + (token[j] - '0');
            if (j == token.size()) {
                value = token[0] == '-' ? -static_cast<double>(n) : static_cast<double>(n);
                if (token[0] == '-' && n == 0) value = -0.0;
                return 0;
            }
        }
    }
    return parseReal(token, single, decimalComma, 0, 0, true, value);
}

} // namespace kestro::rt
