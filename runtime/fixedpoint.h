// runtime/fixedpoint.h: Fw.d of single-precision values, the short ways of a results line: a
// field built from the right without a general conversion, and Fw.1 straight into a layout.
#pragma once

#include "runtime/edits.h"

#include <array>
#include <cmath>
#include <cstdint>
#include <cstring>

namespace kestro::rt {

// Fw.d of a single-precision value with d <= 12 and no scale factor, the common case of a results
// line. Returns false where the general editReal must do it. The At form writes exactly `width`
// characters at `dest`.
inline constexpr std::size_t fixedFieldMax = 48;
bool editFixedFloat(Record&, std::size_t width, int decimals, double value, const EditModes&);
bool editFixedFloatAt(char* dest, std::size_t width, int decimals, double value, const EditModes&);

// The two-digit numbers "00" to "99", for writing digits two at a time.
inline constexpr char digitPairs[] =
    "00010203040506070809101112131415161718192021222324252627282930313233343536373839"
    "40414243444546474849505152535455565758596061626364656667686970717273747576777879"
    "8081828384858687888990919293949596979899";

// The first whole part too wide for Fw.1 of a value without a sign: 10 to the power of w - 2, and
// 0 where not even one whole digit fits. A value with a sign has the limit of width w - 1.
constexpr std::uint32_t oneDecimalWholeLimit(std::size_t width)
{
    if (width < 3) return 0;
    std::uint32_t limit = 1;
    for (std::size_t digits = width - 2; digits > 0; --digits) {
        if (limit > 100000000) return 0xffffffffu; // more room than a value below 1e8 needs
        limit *= 10;
    }
    return limit;
}

// The whole parts 0 to 999 right-justified in three characters, blanks in front, and the decimal
// point behind: the first four characters of an Fw.1 field's last five.
struct WholeAndPoint
{
    char chars[4];
};
constexpr std::array<WholeAndPoint, 1000> makeWholeAndPointTable()
{
    std::array<WholeAndPoint, 1000> table{};
    for (std::size_t whole = 0; whole < table.size(); ++whole) {
        char* chars = table[whole].chars;
        chars[0] = whole >= 100 ? static_cast<char>('0' + whole / 100) : ' ';
        chars[1] = whole >= 10 ? static_cast<char>('0' + whole / 10 % 10) : ' ';
        chars[2] = static_cast<char>('0' + whole % 10);
        chars[3] = '.';
    }
    return table;
}
inline constexpr std::array<WholeAndPoint, 1000> wholeAndPoint = makeWholeAndPointTable();

// Fw.1 of a float with the processor's sign, a decimal point and the zero before it, written into
// a field that already holds blanks (a walk's layout): only the characters of the value are
// stored, right-justified. `wholeLimit` and `negativeWholeLimit` are oneDecimalWholeLimit of the
// width and of one less. The float times 10 is exact in a double, and the rounding is half to
// even as the general path has it. Returns false, the field untouched, where that path must do
// it: a value too wide for the field (stars), infinite or NaN, or of 1e8 and more.
inline bool editFixedOneDecimalOnBlanks(char* dest, std::size_t width, std::uint32_t wholeLimit,
                                        std::uint32_t negativeWholeLimit, float value)
{
    const double scaled = std::fabs(static_cast<double>(value)) * 10.0;
    if (!(scaled < 1e9)) return false;
    // Adding and taking away 2^52 leaves the nearest whole number, ties to even: below 2^52 a
    // double keeps no fraction.
    constexpr double noFraction = 4503599627370496.0;
    const std::uint32_t q = static_cast<std::uint32_t>((scaled + noFraction) - noFraction);
    std::uint32_t whole = q / 10;
    const bool negative = q != 0 && std::signbit(value); // a value that rounds to 0 has no sign
    if (whole >= (negative ? negativeWholeLimit : wholeLimit)) return false;
    char* p = dest + width;
    *--p = static_cast<char>('0' + (q - whole * 10));
    if (whole < 1000 && width >= 5) {
        std::memcpy(p - 4, wholeAndPoint[whole].chars, 4);
        if (negative) p[-5 + (whole < 100) + (whole < 10)] = '-';
        return true;
    }
    *--p = '.';
    while (whole >= 100) {
        p -= 2;
        std::memcpy(p, digitPairs + 2 * (whole % 100), 2);
        whole /= 100;
    }
    if (whole >= 10) {
        p -= 2;
        std::memcpy(p, digitPairs + 2 * whole, 2);
    } else {
        *--p = static_cast<char>('0' + whole);
    }
    if (negative) p[-1] = '-';
    return true;
}

} // namespace kestro::rt
