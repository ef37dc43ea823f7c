// zel/content/tests/conversion_test.cpp: raw arrays of every type string as element strings, and
// the six-digit values the converter and the XY plot compute without making the text.
#include "zel/content/conversion.h"

#include "runtime/quad.h"
#include "zel/content/xyplot.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <random>
#include <tuple>
#include <vector>

namespace {

template <typename T> QStringList convert(const std::vector<T>& data, const char* type, int rows, int columns)
{
    return ZEL_DataConverter::convertDataToStringList(data.data(), QString::fromLatin1(type), rows, columns);
}

} // namespace

TEST(DataConverter, EveryTypeInElementOrder)
{
    EXPECT_EQ(convert(std::vector<float>{1000000.0f, 0.5f, -2.0f, 1e-5f}, "REAL*4", 2, 2),
              (QStringList{"1e+06", "0.5", "-2", "1e-05"}));
    EXPECT_EQ(convert(std::vector<double>{3.14159265, 0.0001, 123456.0, 1e300, 1234567.0, -0.000123456789},
                      "REAL*8", 2, 3),
              (QStringList{"3.14159", "0.0001", "123456", "1e+300", "1.23457e+06", "-0.000123457"}));
    EXPECT_EQ(convert(std::vector<std::int64_t>{std::int64_t(1) << 40, -3}, "INTEGER*8", 1, 2),
              (QStringList{"1099511627776", "-3"}));
    EXPECT_EQ(convert(std::vector<std::int32_t>{1, 2, 3, 4, 5, -6}, "INTEGER*4", 3, 2),
              (QStringList{"1", "2", "3", "4", "5", "-6"}));
    EXPECT_EQ(convert(std::vector<float>{1.5f, -2.0f}, "COMPLEX*4", 1, 1), QStringList{"(1.5, -2)"});
    EXPECT_EQ(convert(std::vector<double>{3.14159265, 1e6}, "COMPLEX*8", 1, 1),
              QStringList{"(3.14159, 1e+06)"});
    // Quads with 32 digits; characters keep their blanks.
    const std::vector<kestro::rt::Quad> quads{{1.5, 0.0}, {-250.0, 0.0}, {0.0, 0.0}, {-HUGE_VAL, 0.0}};
    EXPECT_EQ(convert(quads, "REAL*16", 2, 2),
              (QStringList{"1.5000000000000000000000000000000Q0", "-2.5000000000000000000000000000000Q2",
                           "0.0000000000000000000000000000000Q0", "-inf"}));
    EXPECT_EQ(convert(std::vector<kestro::rt::Quad>{{1.5, 0.0}, {-250.0, 0.0}}, "COMPLEX*16", 1, 1),
              QStringList{"(1.5000000000000000000000000000000Q0, -2.5000000000000000000000000000000Q2)"});
    const std::vector<char> text{'a', 'b', ' ', ' ', ' ', 'c', 'd', ' ', ' ', ' '};
    EXPECT_EQ(convert(text, "CHARACTER*5", 2, 1), (QStringList{"ab   ", "cd   "}));
    EXPECT_EQ(convert(text, "CHARACTER", 2, 3), (QStringList{"", "", "", "", "", ""}));
    EXPECT_EQ(ZEL_DataConverter::elementSize("CHARACTER*5"), 5);
    EXPECT_EQ(ZEL_DataConverter::elementSize("COMPLEX*16"), 32);
}

TEST(DataConverter, BadRequestsGiveNothing)
{
    const std::vector<double> data(16, 1.0);
    const std::tuple<const char*, int, int> cases[]{{"real*8", 2, 2},
                                                    {"REAL*8 ", 2, 2},
                                                    {"REAL", 2, 2},
                                                    {"REAL*8", 0, 2},
                                                    {"REAL*8", 2, -1},
                                                    {"CHARACTER*-3", 1, 1},
                                                    {"REAL*8", 1 << 20, 1 << 20}};
    for (const auto& [type, rows, columns] : cases)
        EXPECT_TRUE(convert(data, type, rows, columns).isEmpty()) << type;
    EXPECT_TRUE(ZEL_DataConverter::convertDataToStringList(nullptr, "REAL*8", 1, 1).isEmpty());
    EXPECT_EQ(ZEL_DataConverter::elementSize("real*4"), -1);
}

// The fast six-digit texts and values must be Qt's own, also at rounding ties and decade edges.
TEST(DataConverter, SixDigitTextsAndValuesAreQtsOwn)
{
    std::mt19937_64 random(42);
    const double tiny = std::numeric_limits<double>::denorm_min(), huge = std::numeric_limits<double>::max();
    std::vector<double> values{0.0,  -0.0,  1234565.0,  123456.5, 0.5,  999999.5, 9999995.0,    1e-5,
                               1e27, 1e-16, 9.99999e-5, 99999.95, tiny, huge,     std::nan(""), HUGE_VAL};
    std::uniform_int_distribution<int> digits(0, 9999999), power(-12, 12);
    for (int i = 0; i < 200000; ++i) {
        std::uint64_t bits = random();
        double v;
        std::memcpy(&v, &bits, sizeof v);
        values.push_back(v);
        values.push_back(static_cast<float>(v));
        values.push_back(digits(random) * std::pow(10.0, power(random))); // short decimals and ties
        values.push_back(static_cast<float>(digits(random) * std::pow(10.0, power(random))));
        values.push_back(std::ldexp(static_cast<double>(bits >> 11), i % 120 - 113)); // common decades
    }
    int fastOnes = 0;
    for (double v : values) {
        const QString expected = QString::number(v, 'g', 6);
        ASSERT_EQ(ZEL_DataConverter::realText(v), expected) << v;
        const double read = expected.toDouble(), back = ZEL_DataConverter::sixDigitValue(v);
        ASSERT_TRUE(std::isnan(v) || std::memcmp(&back, &read, sizeof back) == 0) << v;
        double fast = 0.0; // the XY plot's own path
        if (!fastSixDigitValue(v, fast)) continue;
        ASSERT_EQ(std::memcmp(&fast, &read, sizeof fast), 0) << v;
        ++fastOnes;
    }
    EXPECT_GT(fastOnes, 300000);
    // The XY plot's singles are their six-digit values too.
    const float singles[] = {1000000.0f, 0.1f};
    EXPECT_EQ(xyPoints(singles, "REAL*4", 1, 2), QVector<QPointF>{QPointF(1e6, 0.1)});
}
