// runtime/tests/quad_test.cpp: digits of the 16-byte real and its text, both ways.
#include "runtime/quad.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <random>
#include <string>

namespace rt = kestro::rt;

namespace {

std::string digitsOf(rt::Quad q, int n, int& exponent)
{
    std::string buffer(static_cast<std::size_t>(n) + 1, '#');
    exponent = rt::quadDigits(q, buffer.data(), n);
    return buffer.c_str(); // the words of infinity and NaN are shorter than n
}

rt::Quad read(const std::string& text, std::size_t* taken = nullptr)
{
    rt::Quad q{7.0, 7.0};
    const std::size_t n = rt::readQuad(text.data(), text.size(), q);
    if (taken != nullptr) *taken = n;
    return q;
}

} // namespace

TEST(QuadDigits, CorrectlyRoundedDigitsAndExponent)
{
    const struct
    {
        rt::Quad q;
        int n;
        const char* digits;
        int exponent;
    } cases[]{
        {{1.5, 0.0}, 32, "15000000000000000000000000000000", 1},
        {{-250.0, 0.0}, 32, "25000000000000000000000000000000", 3},
        // 0.1 = 0.1000000000000000055511151231257827...
        {{0.1, 0.0}, 32, "10000000000000000555111512312578", 0},
        // 1 + 2^-60 = 1.000000000000000000867361737988403547...
        {{1.0, std::ldexp(1.0, -60)}, 32, "10000000000000000008673617379884", 1},
        {{1.0, -std::ldexp(1.0, -60)}, 20, "99999999999999999913", 0},
        {{2.5, 0.0}, 1, "3", 1},   // a tie goes away from zero
        {{9.99, 0.0}, 2, "10", 2}, // the carry runs through the nines
        {{0.0, 0.0}, 4, "0000", 1},
        {{HUGE_VAL, 0.0}, 32, "inf", 0},
        {{std::nan(""), 0.0}, 2, "na", 0},
        {{std::numeric_limits<double>::denorm_min(), 0.0}, 5, "49407", -323},
    };
    for (const auto& c : cases) {
        int exponent = 0;
        EXPECT_EQ(digitsOf(c.q, c.n, exponent), c.digits) << c.q.hi;
        EXPECT_EQ(exponent, c.exponent) << c.q.hi;
    }
}

TEST(ReadQuad, NearestPairOfDoubles)
{
    const struct
    {
        const char* text;
        double hi, lo;
        std::size_t taken;
    } cases[]{
        {"2.5Q2", 250.0, 0.0, 5},
        {"  -7", -7.0, 0.0, 4},
        {"3d2,", 300.0, 0.0, 3},
        {"1.25E-1x", 0.125, 0.0, 7},
        {"0.1", 0.1, -0.2 * std::ldexp(1.0, -55), 3}, // 0.1 - double(0.1) = -2^-55 / 5
        {"1e400", HUGE_VAL, 0.0, 5},
        {"-1e-400", -0.0, 0.0, 7},
        {"4.9406564584124654e-324", std::numeric_limits<double>::denorm_min(), 0.0, 23},
        {"7e", 7.0, 0.0, 1}, // a letter without digits is not an exponent
        {"Infinity", HUGE_VAL, 0.0, 8},
        {"abc", 0.0, 0.0, 0},
        {"", 0.0, 0.0, 0},
    };
    for (const auto& c : cases) {
        std::size_t taken = 0;
        const rt::Quad q = read(c.text, &taken);
        EXPECT_EQ(q.hi, c.hi) << c.text;
        EXPECT_EQ(q.lo, c.lo) << c.text;
        EXPECT_EQ(taken, c.taken) << c.text;
    }
    EXPECT_TRUE(std::signbit(read("-1e-400").hi));
    EXPECT_TRUE(std::isnan(read("nan").hi));
}

TEST(QuadText, EveryPairReadsBackBitForBit)
{
    std::mt19937_64 random(20261123);
    std::uniform_real_distribution<double> fraction(-1.0, 1.0);
    std::uniform_int_distribution<int> exponent(-1070, 1020), gap(53, 200);
    char text[rt::quadTextSize];
    for (int i = 0; i < 3000; ++i) {
        rt::Quad q;
        const int e = exponent(random);
        q.hi = std::ldexp(fraction(random), e);
        q.lo = std::ldexp(fraction(random), e - gap(random));
        const double sum = q.hi + q.lo; // normalise: hi is the pair's sum rounded
        q.lo = q.lo - (sum - q.hi);
        q.hi = sum;
        if (q.lo == 0.0) q.lo = 0.0; // the one zero of a rest is +0
        rt::quadText(q, text, sizeof text);
        rt::Quad back{};
        ASSERT_EQ(_tarnix_ascii2quad(text, &back), static_cast<int>(std::strlen(text))) << text;
        EXPECT_EQ(std::memcmp(&back, &q, sizeof q), 0) << text << " " << q.hi << " " << q.lo;
    }
    rt::quadText({1.5, 0.0}, text, sizeof text);
    EXPECT_STREQ(text, "1.5Q0");
}
