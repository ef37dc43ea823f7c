// runtime/edits.h: output editing: the modes of a statement's edits, its output record, and the
// edit descriptors that write values into it.
#pragma once

#include "runtime/buffer.h"
#include "runtime/format.h"
#include "runtime/text.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>

namespace kestro::rt {

enum class SignMode : std::uint8_t { processor, plus, suppress };

// The modes a statement's edits run under; S, SP, SS, BN, BZ, DC, DP and P change them.
struct EditModes
{
    SignMode sign = SignMode::processor;
    bool blankZero = false;
    bool decimalComma = false;
    std::int32_t scale = 0;
    bool noLeadZero = false;
    bool hexUppercase = false;
};

// An output record: characters are written at `pos`; X and T move it. Positions passed over by a
// later write read as blanks.
class Record
{
public:
    void clear() { length_ = 0, pos_ = 0; }
    std::size_t position() const { return pos_; }
    void moveTo(std::size_t pos) { pos_ = pos; }
    std::size_t length() const { return length_; }
    std::string_view view() const { return {chars_.data(), length_}; }

    // Moves the position on by `n`, the record running on with blanks.
    void skip(std::size_t n)
    {
        pos_ += n;
        if (pos_ > length_) {
            ensure(pos_);
            std::memset(chars_.data() + length_, ' ', pos_ - length_);
            length_ = pos_;
        }
    }

    // Room for `n` characters at the position, which then moves behind them.
    char* reserve(std::size_t n)
    {
        const std::size_t end = pos_ + n;
        if (end > chars_.capacity()) ensure(end);
        if (pos_ > length_) std::memset(chars_.data() + length_, ' ', pos_ - length_);
        char* at = chars_.data() + pos_;
        pos_ = end;
        if (end > length_) length_ = end;
        return at;
    }
    void put(std::string_view text)
    {
        if (text.size() <= 8) {
            char* at = reserve(text.size());
            for (char c : text)
                *at++ = c;
            return;
        }
        std::memcpy(reserve(text.size()), text.data(), text.size());
    }
    void put(char c) { *reserve(1) = c; }
    void fill(char c, std::size_t n)
    {
        if (n) std::memset(reserve(n), c, n);
    }

private:
    void ensure(std::size_t size) { chars_.ensure(size, length_); }

    ByteBuffer chars_;
    std::size_t length_ = 0;
    std::size_t pos_ = 0;
};

// Output edits. Each writes exactly one field; a value that does not fit fills it with "*".
// `bits` is the size of the item (32 or 64): B, O and Z show its two's complement.
void editInteger(Record&, const FormatToken&, std::int64_t value, int bits, const EditModes&);
void editReal(Record&, const FormatToken&, double value, bool single, const EditModes&);
void editLogical(Record&, const FormatToken&, bool value);
void editText(Record&, const FormatToken&, std::string_view value);

// Fw.d of a single-precision value with d <= 12 and no scale factor, the common case of a results
// line. Returns false where the general editReal must do it. The At form writes exactly `width`
// characters at `dest`.
inline constexpr std::size_t fixedFieldMax = 48;
bool editFixedFloat(Record&, std::size_t width, int decimals, double value, const EditModes&);
bool editFixedFloatAt(char* dest, std::size_t width, int decimals, double value, const EditModes&);

// Copies a few bytes without a library call for the common short sizes.
inline void copyShort(char* dest, const char* src, std::size_t n)
{
    if (n >= 8 && n <= 16) {
        std::uint64_t a, b;
        std::memcpy(&a, src, 8);
        std::memcpy(&b, src + n - 8, 8);
        std::memcpy(dest, &a, 8);
        std::memcpy(dest + n - 8, &b, 8);
    } else if (n >= 4 && n < 8) {
        std::uint32_t a, b;
        std::memcpy(&a, src, 4);
        std::memcpy(&b, src + n - 4, 4);
        std::memcpy(dest, &a, 4);
        std::memcpy(dest + n - 4, &b, 4);
    } else if (n < 4) {
        for (std::size_t i = 0; i < n; ++i)
            dest[i] = src[i];
    } else {
        std::memcpy(dest, src, n);
    }
}

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

// Correctly rounded fixed-point digits of a value (`_dbl_ascii`): no sign, no exponent.
std::string _dbl_ascii(double value, bool single, int decimals);

} // namespace kestro::rt
