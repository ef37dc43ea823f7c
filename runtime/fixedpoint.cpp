// runtime/fixedpoint.cpp: Fw.d of single-precision values built from the right.
#include "runtime/fixedpoint.h"

#include <array>

namespace kestro::rt {

namespace {

char pointChar(const EditModes& modes)
{
    return modes.decimalComma ? ',' : '.';
}

char signFor(bool negative, const EditModes& modes)
{
    if (negative) return '-';
    return modes.sign == SignMode::plus ? '+' : '\0';
}

// Lays Fw.d of a float out right-justified at the end of `field`, stars included. The product of
// a float and 10^d (d <= 12) is exact in a double, so rounding it half to even here is the
// correctly rounded result. Returns the width, or 0 where the general edit must do it.
std::size_t layoutFixedFloat(char (&field)[fixedFieldMax], std::size_t width, int decimals, double value,
                             const EditModes& modes)
{
    static constexpr double powers[] = {1e0, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6, 1e7, 1e8, 1e9, 1e10, 1e11, 1e12};
    if (decimals <= 0 || decimals > 12 || width > fixedFieldMax) return 0;
    const double scaled = std::fabs(value) * powers[decimals];
    if (!(scaled < 1e16)) return 0; // large, infinite or NaN
    std::uint64_t q = static_cast<std::uint64_t>(scaled);
    const double fraction = scaled - static_cast<double>(q);
    if (fraction > 0.5 || (fraction == 0.5 && (q & 1))) ++q;

    // Digits from the right: the decimals, the point, then at least one integer digit.
    std::memset(field, ' ', fixedFieldMax);
    char* const end = field + fixedFieldMax;
    char* p = end;
    const bool nonZero = q != 0;
    for (int i = 0; i < decimals; ++i) {
        *--p = static_cast<char>('0' + q % 10);
        q /= 10;
    }
    *--p = pointChar(modes);
    const bool integerZero = q == 0;
    while (q >= 100) { // two digits a division
        const std::uint64_t pair = q % 100;
        q /= 100;
        *--p = static_cast<char>('0' + pair % 10);
        *--p = static_cast<char>('0' + pair / 10);
    }
    if (q >= 10) {
        *--p = static_cast<char>('0' + q % 10);
        q /= 10;
    }
    *--p = static_cast<char>('0' + q);

    const bool negative = nonZero && std::signbit(value);
    const char sign = signFor(negative, modes);
    std::size_t size = static_cast<std::size_t>(end - p) + (sign ? 1 : 0);
    if (integerZero) {
        // The zero in front of the point goes in where there is room for it.
        const bool room = width == 0 || size <= width;
        if (!room && negative)
            size = width + 1; // no room: stars
        else if (!room || modes.noLeadZero)
            *p++ = ' ', --size;
    }
    if (width == 0) width = size;
    if (size > width) {
        std::memset(end - width, '*', width);
        return width;
    }
    if (sign) *--p = sign;
    return width;
}

} // namespace

bool editFixedFloat(Record& record, std::size_t width, int decimals, double value, const EditModes& modes)
{
    char field[fixedFieldMax];
    width = layoutFixedFloat(field, width, decimals, value, modes);
    if (width == 0) return false;
    copyShort(record.reserve(width), field + fixedFieldMax - width, width);
    return true;
}

bool editFixedFloatAt(char* dest, std::size_t width, int decimals, double value, const EditModes& modes)
{
    // The common field first: an integer part of at least one, written straight into place from
    // the right. Anything else goes through the full layout below.
    static constexpr double powers[] = {1e0, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6, 1e7, 1e8, 1e9, 1e10, 1e11, 1e12};
    static constexpr auto limits = [] { // 10^0 to 10^16
        std::array<std::uint64_t, 17> powers{};
        std::uint64_t power = 1;
        for (std::uint64_t& p : powers)
            p = power, power *= 10;
        return powers;
    }();
    if (decimals > 0 && decimals <= 12 && width > static_cast<std::size_t>(decimals) + 1) {
        const double scaled = std::fabs(value) * powers[decimals];
        if (scaled < 1e16) {
            std::uint64_t q = static_cast<std::uint64_t>(scaled);
            const double fraction = scaled - static_cast<double>(q);
            if (fraction > 0.5 || (fraction == 0.5 && (q & 1))) ++q;
            if (q >= limits[decimals]) {
                std::size_t digits = static_cast<std::size_t>(decimals) + 1; // of q, at least one whole
                while (digits < 16 && q >= limits[digits])
                    ++digits;
                const char sign = signFor(std::signbit(value), modes);
                const std::size_t size = digits + 1 + (sign ? 1 : 0);
                if (size <= width) {
                    // The blanks first, as whole words where the field allows; the rest overwrites.
                    const std::size_t blanks = width - size;
                    if (width >= 8 && blanks <= 8) {
                        constexpr std::uint64_t eight = 0x2020202020202020ull;
                        std::memcpy(dest, &eight, 8);
                    } else if (width >= 4 && blanks <= 4) {
                        constexpr std::uint32_t four = 0x20202020u;
                        std::memcpy(dest, &four, 4);
                    } else {
                        std::memset(dest, ' ', blanks);
                    }
                    char* p = dest + width;
                    if (decimals == 1) {
                        *--p = static_cast<char>('0' + q % 10);
                        q /= 10;
                    } else {
                        for (int i = 0; i < decimals; ++i) {
                            *--p = static_cast<char>('0' + q % 10);
                            q /= 10;
                        }
                    }
                    *--p = pointChar(modes);
                    while (q >= 10) { // two digits at a time from the table of pairs
                        const std::uint64_t pair = q % 100;
                        q /= 100;
                        p -= 2;
                        std::memcpy(p, digitPairs + 2 * pair, 2);
                        if (q == 0 && *p == '0') ++p; // an odd count of digits: no leading zero
                    }
                    if (q > 0) *--p = static_cast<char>('0' + q);
                    if (sign) *--p = sign;
                    return true;
                }
            }
        }
    }
    char field[fixedFieldMax];
    if (width == 0 || layoutFixedFloat(field, width, decimals, value, modes) != width) return false;
    copyShort(dest, field + fixedFieldMax - width, width);
    return true;
}

} // namespace kestro::rt
