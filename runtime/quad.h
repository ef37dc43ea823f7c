// runtime/quad.h: the runtime's 16-byte real and its decimal text, both ways.
//
// A 16-byte real is a pair of doubles whose exact sum is the value: `hi` is that sum rounded to
// the nearest double, `lo` the rest (|lo| <= half an ulp of hi). So the first 8 bytes read as a
// double give the value to double precision, and zero, infinities and NaN live in `hi` alone; a
// rest of zero is +0.
#pragma once

#include <cstddef>

namespace kestro::rt {

struct Quad
{
    double hi = 0.0;
    double lo = 0.0;
};
static_assert(sizeof(Quad) == 16, "a 16-byte real is two doubles and nothing else");

// The digits of |q| correctly rounded to `digits` significant digits (ties away from zero), and
// the decimal exponent E with |q| = 0.d1d2d3... x 10^E. buffer receives `digits` characters and a
// NUL. Zero gives all '0' and E = 1; an infinity "inf", a NaN "nan" (each cut to `digits`
// characters) and E = 0.
int quadDigits(const Quad& q, char* buffer, int digits);

// The shortest text of at most the exact expansion that reads back as exactly q: "d.ddd...Q" then
// the exponent, with a leading "-" when hi is negative; "inf", "-inf" or "nan" for the others.
std::size_t quadText(const Quad& q, char* buffer, std::size_t size);
inline constexpr std::size_t quadTextSize = 800; // room for any quad's text and its NUL

// Reads a decimal number ("-1.25", "3Q-4", "2.5e10", "inf", "nan"; leading blanks skipped;
// exponent letter E, D or Q in either case) into the nearest quad: hi the double nearest to the
// exact value, lo the double nearest to what remains. Returns the characters taken, 0 and a zero
// quad when the text starts with no number. Overflow gives an infinity, underflow zero.
std::size_t readQuad(const char* text, std::size_t length, Quad& q);

} // namespace kestro::rt

// The runtime's C-callable pair. `mode` 0 rounds to nearest; no other mode is defined and any
// other value acts as 0. `_tarnix_ascii2quad` reads a NUL-terminated text.
extern "C" int _tarnix_ioquad2ascii(const void* quad, char* buffer, int mode, int digits);
extern "C" int _tarnix_ascii2quad(const char* text, void* quad);
