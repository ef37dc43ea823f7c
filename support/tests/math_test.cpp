// support/tests/math_test.cpp: the angle constants to the bit, rad and deg, modulr at its edges.
#include "support/math.h"

#include "support_console.h"

#include <cmath>
#include <cstdint>
#include <cstring>
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

class AngleConstants : public SupportConsole
{
protected:
    void SetUp() override
    {
        SupportConsole::SetUp();
        trigoset();
    }
};

TEST_F(AngleConstants, AngleradHoldsTheSinglePrecisionPatterns)
{
    struct Case
    {
        const char* field;
        float value;
        std::uint32_t pattern;
    };
    const Case cases[]{
        {"rad45", anglerad.rad45, 0x3F490FDB},     {"rad60", anglerad.rad60, 0x3F860A92},
        {"rad90", anglerad.rad90, 0x3FC90FDB},     {"rad135", anglerad.rad135, 0x4016CBE4},
        {"rad180", anglerad.rad180, 0x40490FDB},   {"rad270", anglerad.rad270, 0x4096CBE4},
        {"rad360", anglerad.rad360, 0x40C90FDB},   {"deg2rad", anglerad.deg2rad, 0x3C8EFA35},
        {"rad2deg", anglerad.rad2deg, 0x42652EE0},
    };
    for (const Case& c : cases)
        EXPECT_EQ(bits(c.value), c.pattern) << c.field;
}

TEST_F(AngleConstants, LimitsLieOneHundredThousandthBelowAndAbove)
{
    const float lower = fromBits(0xB727C5AC);
    const float upper = fromBits(0x3727C5AC);
    const float angles[]{anglerad.rad45,  anglerad.rad60,  anglerad.rad90, anglerad.rad135,
                         anglerad.rad180, anglerad.rad270, anglerad.rad360};
    const float below[]{angleradi.rad45,  angleradi.rad60,  angleradi.rad90, angleradi.rad135,
                        angleradi.rad180, angleradi.rad270, angleradi.rad360};
    const float above[]{anglerads.rad45,  anglerads.rad60,  anglerads.rad90, anglerads.rad135,
                        anglerads.rad180, anglerads.rad270, anglerads.rad360};
    for (int i = 0; i < 7; ++i) {
        EXPECT_EQ(bits(below[i]), bits(angles[i] + lower)) << i;
        EXPECT_EQ(bits(above[i]), bits(angles[i] + upper)) << i;
        EXPECT_LT(below[i], angles[i]) << i;
        EXPECT_GT(above[i], angles[i]) << i;
    }
}

TEST_F(AngleConstants, RadOfHalfAndFullTurns)
{
    // The solver's results at multiples of 180 degrees rest on these sines.
    struct Case
    {
        float degrees;
        std::uint32_t radians;
        float sine;
    };
    const Case cases[]{
        {180.0f, 0x40490FDB, -8.7422777e-08f},
        {360.0f, 0x40C90FDB, 1.7484555e-07f},
        {-360.0f, 0xC0C90FDB, -1.7484555e-07f},
    };
    for (const Case& c : cases) {
        const float r = rad(c.degrees);
        EXPECT_EQ(bits(r), c.radians) << c.degrees;
        EXPECT_EQ(sinf(r), c.sine) << c.degrees;
    }
}

TEST(Modulr, ResultLiesFromZeroUpToTheModulus)
{
    struct Case
    {
        float x;
        float expected;
    };
    const Case cases[]{
        {360.0f, 0.0f},
        {-360.0f, 0.0f},
        {-90.0f, 270.0f},
        {-360.5f, 359.5f},
        {359.99f, 359.99f},
        {0.0f, 0.0f},
        {370.0f, 10.0f},
        {-1.0e-7f, 360.0f},                                           // r + m rounds up to m
        {std::nextafter(360.0f, 0.0f), std::nextafter(360.0f, 0.0f)}, // just below m stays
        {3019898880.0f, 0.0f},                                        // 360 x 2**23: q is 2**23
    };
    for (const Case& c : cases) {
        float result = -1.0f;
        modulr(&result, &c.x, 360.0f, 1);
        EXPECT_EQ(result, c.expected) << c.x;
    }
}

TEST(Modulr, WorksInPlaceOverTheWholeCountOnly)
{
    float angles[]{-90.0f, 400.0f, 10.0f, -720.0f};
    modulr(angles, angles, 360.0f, 3);
    EXPECT_EQ(angles[0], 270.0f);
    EXPECT_EQ(angles[1], 40.0f);
    EXPECT_EQ(angles[2], 10.0f);
    EXPECT_EQ(angles[3], -720.0f);
    modulr(angles, angles, 360.0f, 0); // a count below 1 does nothing
    EXPECT_EQ(angles[0], 270.0f);
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
