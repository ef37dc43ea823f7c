// runtime/quad.cpp: exact decimal conversion of the two-double 16-byte real, on a small unsigned
// big integer. Every step is exact, so digits are correctly rounded and text reads back exactly.
#include "runtime/quad.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

namespace kestro::rt {
namespace {

// Unsigned big integer, 32-bit limbs, least significant first, no leading zero limbs.
class Big
{
public:
    Big() = default;
    explicit Big(std::uint64_t v)
    {
        while (v != 0) {
            limbs_.push_back(static_cast<std::uint32_t>(v));
            v >>= 32;
        }
    }

    bool isZero() const { return limbs_.empty(); }
    int bits() const
    {
        if (limbs_.empty()) return 0;
        int top = 32;
        while (top > 0 && ((limbs_.back() >> (top - 1)) & 1u) == 0)
            --top;
        return static_cast<int>(limbs_.size() - 1) * 32 + top;
    }

    void mulSmall(std::uint32_t factor)
    {
        std::uint64_t carry = 0;
        for (std::uint32_t& limb : limbs_) {
            const std::uint64_t v = std::uint64_t{limb} * factor + carry;
            limb = static_cast<std::uint32_t>(v);
            carry = v >> 32;
        }
        if (carry != 0) limbs_.push_back(static_cast<std::uint32_t>(carry));
        trim();
    }
    void mulPow10(int n)
    {
        for (; n >= 9; n -= 9)
            mulSmall(1000000000u);
        static const std::uint32_t small[] = {1, 10, 100, 1000, 10000, 100000, 1000000, 10000000, 100000000};
        if (n > 0) mulSmall(small[n]);
    }
    void shiftLeft(int n)
    {
        if (limbs_.empty() || n <= 0) return;
        const int whole = n / 32, part = n % 32;
        if (part != 0) {
            std::uint32_t carry = 0;
            for (std::uint32_t& limb : limbs_) {
                const std::uint32_t next = limb >> (32 - part);
                limb = (limb << part) | carry;
                carry = next;
            }
            if (carry != 0) limbs_.push_back(carry);
        }
        limbs_.insert(limbs_.begin(), static_cast<std::size_t>(whole), 0u);
    }
    void shiftRightOne()
    {
        for (std::size_t i = 0; i < limbs_.size(); ++i) {
            limbs_[i] >>= 1;
            if (i + 1 < limbs_.size()) limbs_[i] |= limbs_[i + 1] << 31;
        }
        trim();
    }
    void add(const Big& other)
    {
        if (other.limbs_.size() > limbs_.size()) limbs_.resize(other.limbs_.size(), 0u);
        std::uint64_t carry = 0;
        for (std::size_t i = 0; i < limbs_.size(); ++i) {
            const std::uint64_t v =
                std::uint64_t{limbs_[i]} + (i < other.limbs_.size() ? other.limbs_[i] : 0u) + carry;
            limbs_[i] = static_cast<std::uint32_t>(v);
            carry = v >> 32;
        }
        if (carry != 0) limbs_.push_back(static_cast<std::uint32_t>(carry));
    }
    // *this -= other; the caller guarantees *this >= other.
    void subtract(const Big& other)
    {
        std::int64_t borrow = 0;
        for (std::size_t i = 0; i < limbs_.size(); ++i) {
            std::int64_t v =
                std::int64_t{limbs_[i]} - (i < other.limbs_.size() ? other.limbs_[i] : 0u) - borrow;
            borrow = v < 0 ? 1 : 0;
            if (v < 0) v += std::int64_t{1} << 32;
            limbs_[i] = static_cast<std::uint32_t>(v);
        }
        trim();
    }
    friend int compare(const Big& a, const Big& b)
    {
        if (a.limbs_.size() != b.limbs_.size()) return a.limbs_.size() < b.limbs_.size() ? -1 : 1;
        for (std::size_t i = a.limbs_.size(); i-- > 0;)
            if (a.limbs_[i] != b.limbs_[i]) return a.limbs_[i] < b.limbs_[i] ? -1 : 1;
        return 0;
    }

private:
    void trim()
    {
        while (!limbs_.empty() && limbs_.back() == 0)
            limbs_.pop_back();
    }
    std::vector<std::uint32_t> limbs_;
};

Big shifted(Big v, int n)
{
    v.shiftLeft(n);
    return v;
}

// floor(a / b) for a quotient below 2^54; a keeps the remainder.
std::uint64_t divideSmallQuotient(Big& a, const Big& b)
{
    std::uint64_t q = 0;
    Big step = shifted(b, 53);
    for (int bit = 53; bit >= 0; --bit) {
        if (compare(a, step) >= 0) {
            a.subtract(step);
            q |= std::uint64_t{1} << bit;
        }
        step.shiftRightOne();
    }
    return q;
}

// The double nearest to a / b (a > 0), ties to even; also its integer significand and scale
// (result = significand x 2^-scale) so that the caller can form the exact remainder.
double nearestDouble(const Big& a, const Big& b, std::uint64_t& significand, int& scale)
{
    int s = 52 - (a.bits() - b.bits());
    Big num = shifted(a, std::max(s, 0)), den = shifted(b, std::max(-s, 0));
    if (compare(num, shifted(den, 52)) < 0) {
        ++s;
        if (s > 0)
            num.shiftLeft(1);
        else
            den.shiftRightOne(); // den held b << -s with -s >= 1, so the bit dropped is zero
    }
    if (52 - s > 1023) {
        significand = 0;
        scale = 0;
        return HUGE_VAL;
    }
    if (s > 1074) { // below the normal range: units of the smallest subnormal
        s = 1074;
        num = shifted(a, s);
        den = b;
    }
    std::uint64_t q = divideSmallQuotient(num, den);
    num.shiftLeft(1);
    const int half = compare(num, den);
    if (half > 0 || (half == 0 && (q & 1u) != 0)) ++q;
    significand = q;
    scale = s;
    return std::ldexp(static_cast<double>(q), -s);
}

// |value| as m x 2^e with an integer m; false for zero.
bool splitDouble(double value, std::uint64_t& m, int& e)
{
    if (value == 0.0) return false;
    int exponent = 0;
    const double fraction = std::frexp(std::fabs(value), &exponent);
    m = static_cast<std::uint64_t>(std::ldexp(fraction, 53));
    e = exponent - 53;
    return true;
}

bool sameQuad(const Quad& a, const Quad& b)
{
    return std::memcmp(&a, &b, sizeof(Quad)) == 0;
}

bool isLetter(char c, char lower)
{
    return c == lower || c == lower - 'a' + 'A';
}

bool startsWithWord(const char* p, const char* end, const char* word)
{
    for (; *word != '\0'; ++p, ++word)
        if (p == end || !isLetter(*p, *word)) return false;
    return true;
}

} // namespace

int quadDigits(const Quad& q, char* buffer, int digits)
{
    if (buffer == nullptr || digits <= 0) {
        if (buffer != nullptr) buffer[0] = '\0';
        return 0;
    }
    if (!std::isfinite(q.hi)) {
        const char* word = std::isnan(q.hi) ? "nan" : "inf";
        std::size_t n = std::min<std::size_t>(std::strlen(word), static_cast<std::size_t>(digits));
        std::memcpy(buffer, word, n);
        buffer[n] = '\0';
        return 0;
    }
    std::uint64_t mh = 0, ml = 0;
    int eh = 0, el = 0;
    if (!splitDouble(q.hi, mh, eh)) {
        std::memset(buffer, '0', static_cast<std::size_t>(digits));
        buffer[digits] = '\0';
        return 1;
    }
    // The exact magnitude N / D: hi and lo over their common power of two.
    Big n(mh);
    int e = eh;
    if (std::isfinite(q.lo) && splitDouble(q.lo, ml, el)) {
        e = std::min(eh, el);
        n.shiftLeft(eh - e);
        const Big low = shifted(Big(ml), el - e);
        if (std::signbit(q.lo) == std::signbit(q.hi))
            n.add(low);
        else if (compare(n, low) > 0)
            n.subtract(low);
    }
    Big d(1);
    if (e >= 0)
        n.shiftLeft(e);
    else
        d.shiftLeft(-e);

    int k = static_cast<int>(std::ceil((n.bits() - d.bits()) * 0.30102999566398120));
    if (k >= 0)
        d.mulPow10(k);
    else
        n.mulPow10(-k);
    while (compare(n, d) >= 0) {
        d.mulSmall(10);
        ++k;
    }
    for (;;) { // now n / d < 1; lift it to at least 0.1
        Big ten = n;
        ten.mulSmall(10);
        if (compare(ten, d) >= 0) break;
        n = ten;
        --k;
    }
    for (int i = 0; i < digits; ++i) {
        n.mulSmall(10);
        char digit = '0';
        while (compare(n, d) >= 0) {
            n.subtract(d);
            ++digit;
        }
        buffer[i] = digit;
    }
    buffer[digits] = '\0';
    n.shiftLeft(1);
    if (compare(n, d) >= 0) { // round half away from zero, carrying through nines
        int i = digits - 1;
        while (i >= 0 && buffer[i] == '9')
            buffer[i--] = '0';
        if (i >= 0) {
            ++buffer[i];
        } else {
            buffer[0] = '1';
            ++k;
        }
    }
    return k;
}

std::size_t quadText(const Quad& q, char* buffer, std::size_t size)
{
    if (buffer == nullptr || size == 0) return 0;
    std::string text;
    if (!std::isfinite(q.hi)) {
        text = std::isnan(q.hi) ? "nan" : (q.hi < 0 ? "-inf" : "inf");
    } else {
        static const int tries[] = {32, 33, 34, 35, 36, 40, 64, 128, 256, 512, 1450};
        std::vector<char> digits(1451);
        for (int n : tries) {
            const int exponent = quadDigits(q, digits.data(), n);
            int last = n - 1;
            while (last > 1 && digits[static_cast<std::size_t>(last)] == '0')
                --last;
            text.assign(std::signbit(q.hi) ? "-" : "");
            text += digits[0];
            text += '.';
            text.append(digits.data() + 1, static_cast<std::size_t>(last));
            text += 'Q';
            text += std::to_string(q.hi == 0.0 ? 0 : exponent - 1);
            Quad back;
            readQuad(text.data(), text.size(), back);
            if (sameQuad(back, q)) break;
        }
    }
    const std::size_t n = std::min(text.size(), size - 1);
    std::memcpy(buffer, text.data(), n);
    buffer[n] = '\0';
    return n;
}

std::size_t readQuad(const char* text, std::size_t length, Quad& q)
{
    q = Quad{};
    if (text == nullptr) return 0;
    const char* p = text;
    const char* end = text + length;
    while (p != end && *p == ' ')
        ++p;
    bool negative = false;
    if (p != end && (*p == '+' || *p == '-')) negative = *p++ == '-';
    const double sign = negative ? -1.0 : 1.0;
    if (startsWithWord(p, end, "nan")) {
        q.hi = std::nan("");
        return static_cast<std::size_t>(p + 3 - text);
    }
    if (startsWithWord(p, end, "inf")) {
        q.hi = sign * HUGE_VAL;
        return static_cast<std::size_t>(p + (startsWithWord(p, end, "infinity") ? 8 : 3) - text);
    }
    // Significant digits past the first 1500 only tell whether something nonzero follows.
    constexpr int keep = 1500;
    std::string digits;
    long pointShift = 0; // the value is digits x 10^(exponent + pointShift)
    bool anyDigit = false, sticky = false, afterPoint = false;
    for (; p != end; ++p) {
        if (*p == '.' && !afterPoint) {
            afterPoint = true;
            continue;
        }
        if (*p < '0' || *p > '9') break;
        anyDigit = true;
        if (digits.empty() && *p == '0') {
            if (afterPoint) --pointShift;
            continue;
        }
        if (static_cast<int>(digits.size()) < keep) {
            digits += *p;
            if (afterPoint) --pointShift;
        } else {
            sticky = sticky || *p != '0';
            if (!afterPoint) ++pointShift;
        }
    }
    if (!anyDigit) return 0;
    long exponent = 0;
    if (p != end && (isLetter(*p, 'e') || isLetter(*p, 'd') || isLetter(*p, 'q'))) {
        const char* e = p + 1;
        bool minus = false;
        if (e != end && (*e == '+' || *e == '-')) minus = *e++ == '-';
        if (e != end && *e >= '0' && *e <= '9') {
            for (; e != end && *e >= '0' && *e <= '9'; ++e)
                exponent = std::min(exponent * 10 + (*e - '0'), 1000000L);
            if (minus) exponent = -exponent;
            p = e;
        }
    }
    const std::size_t taken = static_cast<std::size_t>(p - text);
    if (sticky) { // a nonzero tail below the kept digits: never an exact tie
        digits += '1';
        --pointShift;
    }
    const long power = exponent + pointShift;
    const long magnitude = static_cast<long>(digits.size()) + power; // 10^(magnitude-1) <= value
    if (digits.empty() || magnitude < -330) {
        q.hi = sign * 0.0;
        return taken;
    }
    if (magnitude > 310) {
        q.hi = sign * HUGE_VAL;
        return taken;
    }
    Big n, d(1);
    for (char c : digits) {
        n.mulSmall(10);
        n.add(Big(static_cast<std::uint64_t>(c - '0')));
    }
    if (power >= 0)
        n.mulPow10(static_cast<int>(power));
    else
        d.mulPow10(static_cast<int>(-power));

    std::uint64_t significand = 0;
    int scale = 0;
    const double hi = nearestDouble(n, d, significand, scale);
    q.hi = sign * hi;
    if (std::isinf(hi)) return taken;
    // The remainder n/d - significand x 2^-scale, exactly, over a common denominator.
    Big a = shifted(n, std::max(scale, 0));
    Big b(significand);
    if (power < 0) b.mulPow10(static_cast<int>(-power)); // b = significand x d
    b.shiftLeft(std::max(-scale, 0));
    const Big den = shifted(d, std::max(scale, 0));
    const int order = compare(a, b);
    if (order == 0) return taken;
    Big rest = order > 0 ? a : b;
    rest.subtract(order > 0 ? b : a);
    std::uint64_t unusedSignificand = 0;
    int unusedScale = 0;
    const double lo = nearestDouble(rest, den, unusedSignificand, unusedScale);
    // A rest below the smallest subnormal rounds to zero: keep it +0 whatever its sign.
    q.lo = lo == 0.0 ? 0.0 : (order > 0 ? sign : -sign) * lo;
    return taken;
}

} // namespace kestro::rt

extern "C" int _tarnix_ioquad2ascii(const void* quad, char* buffer, int mode, int digits)
{
    static_cast<void>(mode);
    if (quad == nullptr || buffer == nullptr) return 0;
    kestro::rt::Quad q;
    std::memcpy(&q, quad, sizeof q);
    return kestro::rt::quadDigits(q, buffer, digits);
}

extern "C" int _tarnix_ascii2quad(const char* text, void* quad)
{
    if (quad == nullptr) return 0;
    kestro::rt::Quad q;
    const std::size_t taken = text == nullptr ? 0 : kestro::rt::readQuad(text, std::strlen(text), q);
    std::memcpy(quad, &q, sizeof q);
    return static_cast<int>(taken);
}
