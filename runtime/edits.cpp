// runtime/edits.cpp: output editing: values into the characters of a record.
#include "runtime/edits.h"

#include "runtime/iostat.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>

namespace kestro::rt {

namespace {

// Significant digits the conversion gives; digits beyond them are written as zeros.
constexpr int conversionDigits = 16;

void stars(Record& record, std::size_t width)
{
    record.fill('*', width);
}

char pointChar(const EditModes& modes)
{
    return modes.decimalComma ? ',' : '.';
}

// Digits of |value| rounded to at most 16 significant digits, and the exponent e with
// value = 0.ddd x 10^e. Digits past those the conversion gives read as zeros.
struct Scientific
{
    char digits[conversionDigits];
    int count = 0;
    int exponent = 0;

    char digit(int i) const { return i >= 0 && i < count ? digits[i] : '0'; }
    void append(std::string& out, int from, int n) const
    {
        for (int i = 0; i < n; ++i)
            out += digit(from + i);
    }
};

Scientific scientific(double value, int significant)
{
    Scientific s;
    const int useful = std::clamp(significant, 1, conversionDigits);
    if (value == 0) return s;
    char buffer[64];
    const auto result = std::to_chars(buffer, buffer + sizeof buffer, std::fabs(value),
                                      std::chars_format::scientific, useful - 1);
    const char* e = std::find(buffer, result.ptr, 'e');
    for (const char* p = buffer; p < e; ++p) {
        if (*p != '.') s.digits[s.count++] = *p;
    }
    int exp = 0;
    std::from_chars(e + 1 + (e[1] == '+'), result.ptr, exp);
    s.exponent = exp + 1;
    return s;
}

// Fixed-point digits of |value| with `decimals` decimals, "I...I.F...F" with at least one integer
// digit, into `out`; returns their number. A float times 10^d for d <= 12 is exact in a double
// (24 + 28 bits of significand), so rounding that product to an integer in the current
// (nearest-even) mode gives the correctly rounded result without a general conversion.
std::string_view fixedDigits(double value, bool single, int decimals, char (&buffer)[40], std::string& out)
{
    static constexpr double powers[] = {1e0, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6, 1e7, 1e8, 1e9, 1e10, 1e11, 1e12};
    const double magnitude = std::fabs(value);
    if (single && decimals <= 12) {
        const double scaled = std::nearbyint(magnitude * powers[decimals]);
        if (scaled < 1e16) {
            std::uint64_t q = static_cast<std::uint64_t>(scaled);
            char* end = buffer + sizeof buffer;
            char* p = end;
            for (int i = 0; i < decimals; ++i) {
                *--p = static_cast<char>('0' + q % 10);
                q /= 10;
            }
            if (decimals > 0) *--p = '.';
            do {
                *--p = static_cast<char>('0' + q % 10);
                q /= 10;
            } while (q);
            return std::string_view(p, static_cast<std::size_t>(end - p));
        }
    }
    // General path: correctly rounded by the standard library, then cut to the digits the
    // conversion gives.
    out.resize(static_cast<std::size_t>(decimals) + 330);
    auto r =
        std::to_chars(out.data(), out.data() + out.size(), magnitude, std::chars_format::fixed, decimals);
    out.resize(static_cast<std::size_t>(r.ptr - out.data()));
    const std::size_t firstSignificant = out.find_first_not_of("0.");
    if (firstSignificant == std::string::npos) return out;
    int significant = 0;
    for (std::size_t i = firstSignificant; i < out.size(); ++i) {
        if (out[i] != '.') ++significant;
    }
    if (significant <= conversionDigits) return out;
    // More digits than the conversion gives: round to them and fill the rest with zeros.
    const Scientific s = scientific(magnitude, conversionDigits);
    out.clear();
    if (s.exponent <= 0) {
        out = "0";
    } else {
        s.append(out, 0, s.exponent);
    }
    if (decimals > 0) {
        out += '.';
        s.append(out, s.exponent, decimals);
    }
    return out;
}

// Writes sign and body right-justified in the width (0: minimal), or stars.
void justify(Record& record, std::size_t width, char sign, std::string_view body)
{
    const std::size_t size = body.size() + (sign ? 1 : 0);
    if (width == 0) width = size;
    if (size > width) return stars(record, width);
    char* at = record.reserve(width);
    std::size_t pad = width - size;
    std::memset(at, ' ', pad);
    at += pad;
    if (sign) *at++ = sign;
    std::memcpy(at, body.data(), body.size());
}

char signFor(bool negative, const EditModes& modes)
{
    if (negative) return '-';
    return modes.sign == SignMode::plus ? '+' : '\0';
}

// NaN, and "Inf" with the value's sign (and "+" under SP), right-justified; false for a finite value.
bool writeSpecial(Record& record, std::size_t width, double value, const EditModes& modes)
{
    if (std::isnan(value)) {
        justify(record, width, '\0', "NaN");
        return true;
    }
    if (!std::isinf(value)) return false;
    justify(record, width, signFor(std::signbit(value), modes), "Inf");
    return true;
}

bool allZero(std::string_view digits)
{
    for (char c : digits) {
        if (c != '0' && c != '.' && c != ',') return false;
    }
    return true;
}

// Fw.d of a float with d <= 12 and no scale factor: the digits straight into the record. The
// product of a float and 10^d is exact in a double, so rounding it half to even here is the
// correctly rounded result.
} // namespace

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

namespace {

void editFixed(Record& record, std::size_t width, int decimals, double value, bool single,
               const EditModes& modes, int scale)
{
    if (single && scale == 0 && decimals <= 12 && editFixedFloat(record, width, decimals, value, modes))
        return;
    if (!std::isfinite(value) && writeSpecial(record, width, value, modes)) return;
    if (width != 0 && static_cast<std::size_t>(decimals) + 1 > width) return stars(record, width);
    if (scale != 0) value *= std::pow(10.0, scale);
    static std::string scratch; // statements run one at a time, under the I/O lock
    char buffer[40];
    std::string_view digits = fixedDigits(value, single, decimals, buffer, scratch);
    if (modes.decimalComma || decimals == 0) {
        if (digits.data() != scratch.data()) scratch.assign(digits.data(), digits.size());
        if (modes.decimalComma) std::replace(scratch.begin(), scratch.end(), '.', ',');
        if (decimals == 0) scratch += pointChar(modes);
        digits = scratch;
    }
    const bool negative = std::signbit(value) && !allZero(digits);
    const char sign = signFor(negative, modes);
    const std::size_t signSize = sign ? 1 : 0;
    if (digits[0] == '0' && digits.size() > 1 && decimals > 0) {
        // Integer part 0: the zero goes in front of the point where there is room for it.
        const std::string_view withoutZero = digits.substr(1);
        const bool room = width == 0 || digits.size() + signSize <= width;
        if (room && !modes.noLeadZero) return justify(record, width, sign, digits);
        if (!room && negative) return stars(record, width);
        return justify(record, width, sign, withoutZero);
    }
    justify(record, width, sign, digits);
}

// E, D, ES and EN: mantissa digits, then the exponent field.
void editExponent(Record& record, const FormatToken& token, double value, const EditModes& modes)
{
    const std::size_t width = static_cast<std::size_t>(token.width);
    if (writeSpecial(record, width, value, modes)) return;
    const int d = token.decimals;
    const int k = modes.scale;
    // The shortest form, ".d...dE+nn", must fit before any digit is worked out.
    if (width != 0 && static_cast<long long>(d) + 5 > static_cast<long long>(width))
        return stars(record, width);
    std::string body;
    int exponent = 0;
    const char point = pointChar(modes);

    if (token.kind == EditKind::ES || token.kind == EditKind::EN) {
        Scientific s;
        int before = 1;
        if (token.kind == EditKind::ES) {
            s = scientific(value, d + 1);
        } else {
            s = scientific(value, d + 3);
            const int e = s.exponent - 1;
            before = value == 0 ? 1 : 1 + ((e % 3) + 3) % 3;
            s = scientific(value, before + d);
            const int e2 = s.exponent - 1; // rounding may have carried into a new power of ten
            before = value == 0 ? 1 : 1 + ((e2 % 3) + 3) % 3;
            s = scientific(value, before + d);
        }
        s.append(body, 0, before);
        body += point;
        s.append(body, before, d);
        exponent = value == 0 ? 0 : s.exponent - before;
    } else {
        // Ew.d and Dw.d under scale factor k.
        if (k > 0 && static_cast<long long>(k) < static_cast<long long>(d) + 2) {
            const Scientific s = scientific(value, d + 1);
            s.append(body, 0, k);
            body += point;
            s.append(body, k, d - k + 1);
            exponent = value == 0 ? 0 : s.exponent - k;
        } else if (k <= 0 && static_cast<long long>(k) > -static_cast<long long>(d)) {
            const Scientific s = scientific(value, d + k);
            body = "0";
            body += point;
            body.append(static_cast<std::size_t>(-k), '0');
            s.append(body, 0, d + k);
            exponent = value == 0 ? 0 : s.exponent - k;
        } else {
            return stars(record, width);
        }
    }

    std::string expText;
    const int magnitude = std::abs(exponent);
    const char expSign = exponent < 0 ? '-' : '+';
    if (token.hasExponent) {
        std::string digits = std::to_string(magnitude);
        if (static_cast<int>(digits.size()) > token.exponent) return stars(record, width);
        expText = token.kind == EditKind::D ? "D" : "E";
        expText += expSign;
        expText.append(static_cast<std::size_t>(token.exponent) - digits.size(), '0');
        expText += digits;
    } else if (magnitude <= 99) {
        expText = token.kind == EditKind::D ? "D" : "E";
        expText += expSign;
        expText += static_cast<char>('0' + magnitude / 10);
        expText += static_cast<char>('0' + magnitude % 10);
    } else if (magnitude <= 999) {
        expText += expSign;
        expText += std::to_string(magnitude);
    } else {
        return stars(record, width);
    }
    body += expText;

    const bool negative = std::signbit(value) && !allZero(body.substr(0, body.size() - expText.size()));
    const char sign = signFor(negative, modes);
    // The zero in front of the point is optional.
    if (width != 0 && body.size() + (sign ? 1 : 0) > width && body[0] == '0' && body[1] == point)
        body.erase(0, 1);
    justify(record, width, sign, body);
}

void editGeneral(Record& record, const FormatToken& token, double value, bool single, const EditModes& modes)
{
    const std::size_t width = static_cast<std::size_t>(token.width);
    if (writeSpecial(record, width, value, modes)) return;
    if (token.width == 0) {
        char buffer[64];
        auto r = single ? std::to_chars(buffer, buffer + sizeof buffer, static_cast<float>(value))
                        : std::to_chars(buffer, buffer + sizeof buffer, value);
        return record.put(std::string_view(buffer, static_cast<std::size_t>(r.ptr - buffer)));
    }
    const int d = token.decimals;
    const int n = token.hasExponent ? token.exponent + 2 : 4;
    const Scientific s = scientific(value, std::max(d, 1));
    if (value == 0 || (s.exponent >= 0 && s.exponent <= d)) {
        const int decimals = value == 0 ? std::max(d - 1, 0) : d - s.exponent;
        const std::size_t fixedWidth =
            width > static_cast<std::size_t>(n) ? width - static_cast<std::size_t>(n) : 0;
        if (fixedWidth == 0) return stars(record, width);
        EditModes plain = modes;
        plain.scale = 0;
        editFixed(record, fixedWidth, decimals, value, single, plain, 0);
        record.fill(' ', static_cast<std::size_t>(n));
        return;
    }
    FormatToken e = token;
    e.kind = EditKind::E;
    editExponent(record, e, value, modes);
}

} // namespace

std::string _dbl_ascii(double value, bool single, int decimals)
{
    std::string digits;
    char buffer[40];
    return std::string(fixedDigits(value, single, decimals, buffer, digits));
}

void editInteger(Record& record, const FormatToken& token, std::int64_t value, int bits,
                 const EditModes& modes)
{
    const std::size_t width = static_cast<std::size_t>(token.width);
    char buffer[80];
    char* end = buffer + sizeof buffer;
    char* p = end;
    bool negative = false;
    if (token.kind == EditKind::I || token.kind == EditKind::G) {
        negative = value < 0;
        std::uint64_t magnitude =
            negative ? 0 - static_cast<std::uint64_t>(value) : static_cast<std::uint64_t>(value);
        while (magnitude) {
            *--p = static_cast<char>('0' + magnitude % 10);
            magnitude /= 10;
        }
    } else {
        std::uint64_t bitsValue = static_cast<std::uint64_t>(value);
        if (bits == 32) bitsValue &= 0xffffffffull;
        const unsigned shift = token.kind == EditKind::B ? 1 : token.kind == EditKind::O ? 3 : 4;
        const char* digits = modes.hexUppercase ? "0123456789ABCDEF" : "0123456789abcdef";
        while (bitsValue) {
            *--p = digits[bitsValue & ((1u << shift) - 1)];
            bitsValue >>= shift;
        }
    }
    std::size_t count = static_cast<std::size_t>(end - p);
    const std::size_t minimum = token.hasDecimals ? static_cast<std::size_t>(token.decimals) : 1;
    while (count < minimum && count < 64)
        *--p = '0', ++count;
    const char sign =
        (token.kind == EditKind::I || token.kind == EditKind::G) ? signFor(negative, modes) : '\0';
    if (count == 0 && sign == '\0' && width != 0) return record.fill(' ', width);
    justify(record, width, sign, std::string_view(p, count));
}

void editReal(Record& record, const FormatToken& token, double value, bool single, const EditModes& modes)
{
    switch (token.kind) {
    case EditKind::F:
        return editFixed(record, static_cast<std::size_t>(token.width), token.decimals, value, single, modes,
                         modes.scale);
    case EditKind::G:
        return editGeneral(record, token, value, single, modes);
    default:
        return editExponent(record, token, value, modes);
    }
}

void editLogical(Record& record, const FormatToken& token, bool value)
{
    const std::size_t width = !token.hasWidth   ? 2
                              : token.width > 0 ? static_cast<std::size_t>(token.width)
                                                : 1;
    record.fill(' ', width - 1);
    record.put(value ? "T" : "F");
}

void editText(Record& record, const FormatToken& token, std::string_view value)
{
    if (!token.hasWidth) return record.put(value);
    const std::size_t width = static_cast<std::size_t>(token.width);
    if (width >= value.size()) {
        record.fill(' ', width - value.size());
        record.put(value);
    } else {
        record.put(value.substr(0, width));
    }
}

} // namespace kestro::rt
