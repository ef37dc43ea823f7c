// support/math.cpp: the angle records, trigoset, rad, deg and modulr, all in single precision.
#include "support/math.h"

#include "runtime/io.h"
#include "support/panels.h"
#include "support/sio.h"

#include <cmath>

namespace kestro {

Anglerad anglerad;
Angleradlimits angleradi;
Angleradlimits anglerads;

namespace {

// pi/2 rounded to single precision (bit pattern 0x3FC90FDB).
constexpr float storedRad90 = 1.57079637f;
constexpr float lowerOffset = -1.0e-5f;
constexpr float upperOffset = 1.0e-5f;

// q with its fraction cut off towards zero; from 2**23 on a float has no fraction left.
float cutFraction(float q)
{
    return std::fabs(q) < 8388608.0f ? std::trunc(q) : q;
}

void offsetAngles(Angleradlimits& limits, float offset)
{
    limits.rad45 = anglerad.rad45 + offset;
    limits.rad60 = anglerad.rad60 + offset;
    limits.rad90 = anglerad.rad90 + offset;
    limits.rad135 = anglerad.rad135 + offset;
    limits.rad180 = anglerad.rad180 + offset;
    limits.rad270 = anglerad.rad270 + offset;
    limits.rad360 = anglerad.rad360 + offset;
}

} // namespace

void trigoset()
{
    constexpr std::string_view name = "trigoset   ";
    constexpr std::string_view vers = " 8.0";
    constexpr std::string_view date = "2017-03-10";

    submenuhead(name, vers, date);
    rt::write(iocom.SOUT, "(1x,a)", "Initializing /anglerad/ block");

    // The order of these roundings fixes the last bit of every constant.
    Anglerad& a = anglerad;
    a.rad90 = storedRad90;
    a.rad180 = 2.0f * a.rad90;
    a.rad60 = a.rad180 / 3.0f;
    a.rad45 = 0.25f * a.rad180;
    a.rad135 = 0.25f * (3.0f * a.rad180);
    a.rad270 = 0.5f * (3.0f * a.rad180);
    a.rad360 = 2.0f * a.rad180;

    offsetAngles(angleradi, lowerOffset);
    offsetAngles(anglerads, upperOffset);

    a.deg2rad = a.rad180 / 180.0f;
    a.rad2deg = 180.0f / a.rad180;
}

void modulr(float result[], const float input[], const float& modulus, const std::int32_t& count)
{
    const float m = modulus;
    for (std::int32_t i = 0; i < count; ++i) {
        const float x = input[i];
        if (x >= 0.0f && x < m) { // already in range: the common case, no division
            result[i] = x;
            continue;
        }
        const float w = cutFraction(x / m);
        if (x >= m) {
            result[i] = x - w * m;
        } else if (x >= 0.0f) {
            result[i] = x;
        } else {
            // A negative multiple gives 0, not m; a tiny negative x may round up to m itself.
            const float r = x - w * m;
            result[i] = r == 0.0f ? r : r + m;
        }
    }
}

} // namespace kestro
