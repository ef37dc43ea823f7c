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

// Correctly rounded fixed-point digits of a value (`_dbl_ascii`): no sign, no exponent.
std::string _dbl_ascii(double value, bool single, int decimals);

} // namespace kestro::rt
