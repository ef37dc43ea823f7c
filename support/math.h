// support/math.h: the angle constants of the library and the degree/radian helpers.
#pragma once

#include <array>
#include <cstdint>
#include <cstring>

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
inline float deg(const float& x)
{
    return x * anglerad.rad2deg;
}
// x in degrees times `deg2rad`.
inline float rad(const float& x)
{
    return x * anglerad.deg2rad;
}

// result(i) = input(i) modulo `modulus`, from 0 up to the modulus for negative inputs as well.
// `result` and `input` may be the same array; a count below 1 does nothing.
void modulr(float result[], const float input[], const float& modulus, const std::int32_t& count);

// A function of one single-precision argument, each argument worked out once: the angles of a
// field campaign are mostly whole degrees and come back record after record. A slot keeps the
// last argument that fell into it, compared bit for bit, so the results are exactly those of the
// direct call, negative zero and NaN included.
template <float (*Function)(float)> class Remembered
{
public:
    float operator()(float x)
    {
        std::uint32_t bits = 0;
        std::memcpy(&bits, &x, sizeof bits);
        Slot& slot = slots_[(bits * 0x9E3779B1u) >> (32 - slotBits)];
        if (!slot.used || slot.bits != bits) slot = Slot{bits, Function(x), true};
        return slot.value;
    }

private:
    static constexpr int slotBits = 9;
    struct Slot
    {
        std::uint32_t bits = 0;
        float value = 0;
        bool used = false;
    };
    std::array<Slot, 1u << slotBits> slots_{};
};

} // namespace kestro
