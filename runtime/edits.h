// runtime/edits.h: edit descriptors: values into the characters of a record, and back.
#pragma once

#include "runtime/buffer.h"
#include "runtime/format.h"
#include "runtime/text.h"

#include <cstdint>
#include <algorithm>
#include <cmath>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>

namespace kestro::rt {

enum class SignMode : std::uint8_t { processor, plus, suppress };

// The modes a statement's edits run under; S, SP, SS, BN, BZ, DC, DP and P change them.
struct EditModes {
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
            for (char c : text) *at++ = c;
            return;
        }
        std::memcpy(reserve(text.size()), text.data(), text.size());
    }
    void put(char c) { *reserve(1) = c; }
    void fill(char c, std::size_t n) { if (n) std::memset(reserve(n), c, n); }

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
        for (std::size_t i = 0; i < n; ++i) dest[i] = src[i];
    } else {
        std::memcpy(dest, src, n);
    }
}

// Fw.1 of a float of at least 1 in size, the columns of a results line, with the processor's
// sign and a decimal point: straight into `dest`. The float times 10 is exact in a double, and the
// rounding is half to even as the general path has it. Returns false where that path must do it.
inline bool editFixedOneDecimal(char* dest, std::size_t width, double value)
{
    const double scaled = (value < 0 ? -value : value) * 10.0;
    if (!(scaled < 1e9) || width > 16) return false;
    std::uint32_t q = static_cast<std::uint32_t>(scaled);
    const double fraction = scaled - static_cast<double>(q);
    if (fraction > 0.5 || (fraction == 0.5 && (q & 1))) ++q;
    if (q < 10) return false;  // a whole part of 0 has its own layout
    char field[16];
    std::memset(field, ' ', sizeof field);
    char* const end = field + sizeof field;
    char* p = end;
    *--p = static_cast<char>('0' + q % 10);
    q /= 10;
    *--p = '.';
    do {
        *--p = static_cast<char>('0' + q % 10);
        q /= 10;
    } while (q);
    if (std::signbit(value)) *--p = '-';
    if (static_cast<std::size_t>(end - p) > width) return false;
    copyShort(dest, end - width, width);
    return true;
}

// Correctly rounded fixed-point digits of a value (`_dbl_ascii`): no sign, no exponent.
std::string _dbl_ascii(double value, bool single, int decimals);

// Input edits on one field of a record. Return 0 or an error code.
int readIntegerField(std::string_view field, const FormatToken&, const EditModes&, std::int64_t& value);
int readRealField(std::string_view field, const FormatToken&, const EditModes&, bool single, double& value);
int readLogicalField(std::string_view field, bool& value);
void readTextField(std::string_view field, const FormatToken&, TextRef value);

// Checks and converts a free-form number (`_numcheck`): an optional sign and digits for an
// integer; for a real also a point and an exponent. Return 0 or code 10016.
int numberToInteger(std::string_view token, std::int64_t& value);
int numberToReal(std::string_view token, bool single, bool decimalComma, double& value);

}  // namespace kestro::rt
