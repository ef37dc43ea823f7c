// support/math.h: the angle constants of the library and the degree/radian helpers.
#pragma once

#include <cstdint>

namespace kestro {

// The angle constants in radians, single precision; `trigoset` fills them.
struct Anglerad
{
    float rad45 = 0, rad60 = 0, rad90 = 0, rad135 = 0, rad180 = 0, rad270 = 0, rad360 = 0;
    float deg2rad = 0, rad2deg = 0;
};

// Lower (`angleradi`) or upper (`anglerads`) limits of the first seven angles, by 1.0e-5.
struct Angleradlimits
{
    float rad45 = 0, rad60 = 0, rad90 = 0, rad135 = 0, rad180 = 0, rad270 = 0, rad360 = 0;
};

extern Anglerad anglerad;
extern Angleradlimits angleradi;
extern Angleradlimits anglerads;

// Announces itself on SOUT (a sub-menu head left open) and sets the three records.
// Must run before `rad` or `deg` is used.
void trigoset();

// x in radians times `rad2deg`.
inline float deg(const float& x) { return x * anglerad.rad2deg; }
// x in degrees times `deg2rad`.
inline float rad(const float& x) { return x * anglerad.deg2rad; }

// result(i) = input(i) modulo `modulus`, from 0 up to the modulus for negative inputs as well.
// `result` and `input` may be the same array; a count below 1 does nothing.
void modulr(float result[], const float input[], const float& modulus, const std::int32_t& count);

} // namespace kestro
