// support/tests/math_test.cpp: the angle constants to the bit, rad and deg, modulr at its edges.
#include "support/math.h"

#include "support_console.h"

#include <cmath>
#include <cstdint>
#include <cstring>
#include <tuple>
#include <vector>

namespace kestro {
namespace {

std::uint32_t bits(float x)
{
    std::uint32_t b = 0;
    std::memcpy(&b, &x, sizeof b);
    return b;
}

float fromBits(std::uint32_t b)
{
    float x = 0;
    std::memcpy(&x, &b, sizeof x);
    return x;
}

using AngleConstants = SupportConsole; // trigoset announces itself

// Each angle to the bit, with its limits one hundred-thousandth below and above.
TEST_F(AngleConstants, AnglesAndTheirLimitsHoldTheSinglePrecisionPatterns)
{
    trigoset();
    const float lower = fromBits(0xB727C5AC), upper = fromBits(0x3727C5AC);
    const std::tuple<float, float, float, std::uint32_t> cases[]{
        {anglerad.rad45, angleradi.rad45, anglerads.rad45, 0x3F490FDB},
        {anglerad.rad60, angleradi.rad60, anglerads.rad60, 0x3F860A92},
        {anglerad.rad90, angleradi.rad90, anglerads.rad90, 0x3FC90FDB},
        {anglerad.rad135, angleradi.rad135, anglerads.rad135, 0x4016CBE4},
        {anglerad.rad180, angleradi.rad180, anglerads.rad180, 0x40490FDB},
        {anglerad.rad270, angleradi.rad270, anglerads.rad270, 0x4096CBE4},
        {anglerad.rad360, angleradi.rad360, anglerads.rad360, 0x40C90FDB},
    };
    for (const auto& [angle, below, above, pattern] : cases) {
        EXPECT_EQ(bits(angle), pattern);
        EXPECT_EQ(bits(below), bits(angle + lower)) << pattern;
        EXPECT_EQ(bits(above), bits(angle + upper)) << pattern;
        EXPECT_LT(below, angle);
        EXPECT_GT(above, angle);
    }
    EXPECT_EQ(bits(anglerad.deg2rad), 0x3C8EFA35u);
    EXPECT_EQ(bits(anglerad.rad2deg), 0x42652EE0u);
}

TEST_F(AngleConstants, RadOfHalfAndFullTurns)
{
    // The solver's results at multiples of 180 degrees rest on these sines.
    trigoset();
    const std::tuple<float, std::uint32_t, float> cases[]{
        // degrees, radians, sine
        {180.0f, 0x40490FDB, -8.7422777e-08f},
        {360.0f, 0x40C90FDB, 1.7484555e-07f},
        {-360.0f, 0xC0C90FDB, -1.7484555e-07f},
    };
    for (const auto& [degrees, radians, sine] : cases) {
        EXPECT_EQ(bits(rad(degrees)), radians) << degrees;
        EXPECT_EQ(sinf(rad(degrees)), sine) << degrees;
    }
}

// data/math.txt
TEST(Modulr, ResultLiesFromZeroUpToTheModulus)
{
    for (const Case& c : casesOf("math.txt", "modulr")) {
        const float x = std::stof(c.fields[1]);
        float result = -1.0f;
        modulr(&result, &x, 360.0f, 1);
        EXPECT_EQ(result, std::stof(c.fields[2])) << c.fields[1];
    }
}

TEST(Modulr, WorksInPlaceOverTheWholeCountOnly)
{
    float angles[]{-90.0f, 400.0f, 10.0f, -720.0f};
    modulr(angles, angles, 360.0f, 3);
    modulr(angles, angles, 360.0f, 0); // a count below 1 does nothing
    EXPECT_EQ(std::vector<float>(angles, angles + 4), (std::vector<float>{270.0f, 40.0f, 10.0f, -720.0f}));
}

// Remembered results must be the direct call's to the bit, on a first call and on a later one,
// also where arguments share a slot and push each other out.
TEST(Remembered, GivesTheDirectResultToTheBit)
{
    Remembered<tanf> rememberedTan;
    Remembered<sinf> rememberedSin;
    std::vector<float> arguments{0.0f,       -0.0f,       std::nanf(""), -std::nanf(""), INFINITY,
                                 1.5707964f, -3.1415927f, 1.0e-30f,      1.0e30f};
    for (int degrees = -720; degrees <= 720; ++degrees)
        arguments.push_back(static_cast<float>(degrees) * 0.017453292f);
    for (int i = 0; i < 3000; ++i)
        arguments.push_back(fromBits(0x3c000000u + 7919u * static_cast<std::uint32_t>(i)));
    for (int pass = 0; pass < 2; ++pass) {
        for (float x : arguments) {
            ASSERT_EQ(bits(rememberedTan(x)), bits(tanf(x))) << "tan of " << x << ", pass " << pass;
            ASSERT_EQ(bits(rememberedSin(x)), bits(sinf(x))) << "sin of " << x << ", pass " << pass;
        }
    }
}

} // namespace
} // namespace kestro
