// runtime/tests/format_test.cpp: formatted output and input, format translation and its error codes.
#include "scratch.h"

#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <fstream>
#include <limits>
#include <string>
#include <string_view>

namespace {

constexpr float nan = std::numeric_limits<float>::quiet_NaN();
constexpr float inf = std::numeric_limits<float>::infinity();

// One record written into a text, trailing blanks cut: a format ends with ';' where blanks matter.
template <typename... Items> std::string formatted(std::string_view format, const Items&... items)
{
    Text<240> record;
    int status = 0;
    rt::writeInternal(rt::withStatus(status), record.ref(), format, items...);
    if (status != 0) return "iostat=" + std::to_string(status);
    return trimmed(record.view());
}

// The status of a WRITE into a text; the runtime must still work after it.
template <typename... Items> int writeStatus(std::string_view format, const Items&... items)
{
    Text<80> record;
    int status = 0;
    const rt::Iostat ios = rt::writeInternal(rt::withStatus(status), record.ref(), format, items...);
    EXPECT_EQ(ios.code, status) << format;
    EXPECT_EQ(ios.outcome, status == 0 ? rt::Outcome::ok : rt::Outcome::error) << format;
    EXPECT_EQ(formatted("(i2,';')", 7), " 7;") << "after " << format;
    return status;
}

class FormatTest : public ::testing::Test
{
protected:
    void SetUp() override { rt::testing::resetRuntime(); }
    void TearDown() override { rt::testing::resetRuntime(); }
};

// Tests that need records in a file: several records, record ends, "$".
class FormatFileTest : public InScratchFolder
{
protected:
    void SetUp() override
    {
        InScratchFolder::SetUp();
        rt::testing::resetRuntime();
        path_ = (dir_ / "records.txt").string();
    }
    void TearDown() override
    {
        rt::testing::resetRuntime();
        InScratchFolder::TearDown();
    }

    void openUnit(std::string_view status) { ASSERT_TRUE(rt::open(unit_, fileSpec(path_, status)).ok()); }
    // The whole file after one WRITE statement.
    template <typename... Items> std::string written(std::string_view format, const Items&... items)
    {
        openUnit("REPLACE");
        int status = 0;
        rt::write(rt::withStatus(status), unit_, format, items...);
        rt::close(unit_);
        return status == 0 ? slurp(path_) : "iostat=" + std::to_string(status);
    }
    void store(std::string_view content)
    {
        rt::close(rt::onError, unit_);
        std::ofstream(path_, std::ios::binary) << content;
        openUnit("OLD");
    }

    static constexpr rt::Unit unit_ = 44;
    std::string path_;
};

// One format, one item, one record.
template <typename Item> struct Case
{
    const char* format;
    Item value;
    const char* expected;
};
using RealCase = Case<float>;

TEST_F(FormatTest, FixedPointRoundsAndFillsOverflowWithStars)
{
    const RealCase cases[]{
        {"(f6.1,';')", -1.26f, "  -1.3;"},
        {"(f5.2,';')", 2.675f, " 2.67;"}, // the float lies just below 2.675
        {"(f4.1,';')", 0.05f, " 0.1;"},   // and this one just above 0.05
        {"(f4.1,';')", 9.96f, "10.0;"},   // rounding carries into a new digit
        {"(f4.1,';')", 99.96f, "****;"},
        {"(1x,f7.1)", 123456.7f, " *******"},
        {"(f8.0,';')", 42.0f, "     42.;"},
        {"(f25.1,';')", std::ldexp(1.0f, 70), " 1180591620717411000000.0;"}, // digits past the 16th are zeros
    };
    for (const RealCase& c : cases)
        EXPECT_EQ(formatted(c.format, c.value), c.expected) << c.format;
    // WRITE(*, '(f10.6)') 1d0/3d0
    EXPECT_EQ(formatted("(f10.6,';')", 1.0 / 3.0), "  0.333333;");
}

// The standard library's correctly rounded fixed-point text is the reference for Fw.d of floats of
// every magnitude the fast path takes, and of some beyond it.
TEST_F(FormatTest, FixedPointMatchesCorrectlyRoundedText)
{
    std::uint32_t state = 12345u;
    auto next = [&] { return state = state * 1664525u + 1013904223u; };
    for (int i = 0; i < 20000; ++i) {
        float value;
        std::uint32_t bits = next();
        std::memcpy(&value, &bits, sizeof value);
        if (!std::isfinite(value) || std::fabs(value) > 1e15f || std::fabs(value) < 1e-6f)
            value = static_cast<float>(next() % 2000000) / 64.0f - 15000.0f;
        const int decimals = 1 + static_cast<int>(next() % 6);
        char digits[64];
        const auto end = std::to_chars(digits, digits + sizeof digits, std::fabs(value),
                                       std::chars_format::fixed, decimals)
                             .ptr;
        std::string expected(digits, end);
        if (std::signbit(value) && expected.find_first_not_of("0.") != std::string::npos)
            expected.insert(0, "-");
        expected.insert(0, 30 - expected.size(), ' ');
        const std::string format = "(f30." + std::to_string(decimals) + ",';')";
        ASSERT_EQ(formatted(format, value), expected + ";") << value << " " << format;
    }
}

// The narrow one-decimal fields of a results line against the same reference: whole parts of one
// to four digits, both signs, ties at the half, and values a half-step either side of a carry.
TEST_F(FormatTest, NarrowOneDecimalFieldsMatchCorrectlyRoundedText)
{
    for (int tenths = -12000; tenths <= 12000; tenths += 7) {
        for (const float value :
             {static_cast<float>(tenths) / 10.0f, static_cast<float>(tenths) / 10.0f + 0.05f,
              std::nextafter(static_cast<float>(tenths) / 10.0f + 0.05f, 0.0f)}) {
            char digits[64];
            const auto end =
                std::to_chars(digits, digits + sizeof digits, std::fabs(value), std::chars_format::fixed, 1)
                    .ptr;
            std::string text(digits, end);
            if (std::signbit(value) && text != "0.0") text.insert(0, "-");
            for (const std::size_t width : {5u, 6u}) {
                const std::string expected = text.size() > width
                                                 ? std::string(width, '*')
                                                 : std::string(width - text.size(), ' ') + text;
                const std::string format = "(f" + std::to_string(width) + ".1,';')";
                ASSERT_EQ(formatted(format, value), expected + ";") << value << " " << format;
            }
        }
    }
}

TEST_F(FormatTest, FixedPointNearZero)
{
    const RealCase cases[]{
        {"(f6.1,';')", -0.01f, "   0.0;"}, // rounds to zero: the sign goes
        {"(f4.1,';')", -0.04f, " 0.0;"},
        {"(f6.1,';')", -0.0f, "   0.0;"},
        {"(f3.2,';')", 0.5f, ".50;"}, // no room for the leading zero
        {"(f4.2,';')", 0.5f, "0.50;"},
        {"(f5.2,';')", -0.5f, "-0.50;"},
        {"(f3.2,';')", -0.5f, "***;"},
        {"(f3.1,';')", 0.0f, "0.0;"},
        {"(f2.1,';')", 0.0f, ".0;"},
        // One decimal in columns just wide enough, or one too narrow, for the sign.
        {"(f3.1,';')", 0.5f, "0.5;"},
        {"(f3.1,';')", -0.5f, "***;"},
        {"(f4.1,';')", -0.5f, "-0.5;"},
        {"(f4.1,';')", -9.96f, "****;"},
        {"(f5.1,';')", -9.96f, "-10.0;"},
    };
    for (const RealCase& c : cases)
        EXPECT_EQ(formatted(c.format, c.value), c.expected) << c.format;
}

TEST_F(FormatTest, NanAndInfinity)
{
    const RealCase cases[]{
        {"(f6.1,';')", nan, "   NaN;"},
        {"(f6.1,';')", inf, "   Inf;"},
        {"(f6.1,';')", -inf, "  -Inf;"},
        {"(f2.1,';')", inf, "**;"},
        {"(sp,f6.1,';')", inf, "  +Inf;"},
        // "Inf" whatever the width: the exponent forms share the rule.
        {"(f9.1,';')", inf, "      Inf;"},
        {"(f12.2,';')", -inf, "        -Inf;"},
        {"(f3.1,';')", inf, "Inf;"},
        {"(f3.1,';')", -inf, "***;"},
        {"(e12.3,';')", inf, "         Inf;"},
        {"(es12.3,';')", -inf, "        -Inf;"},
        {"(d10.2,';')", inf, "       Inf;"},
        {"(g12.4,';')", -inf, "        -Inf;"},
    };
    for (const RealCase& c : cases)
        EXPECT_EQ(formatted(c.format, c.value), c.expected) << c.format;
}

TEST_F(FormatTest, ExponentForms)
{
    const RealCase cases[]{
        {"(1x,es10.3)", 1.5f, "  1.500E+00"},       {"(es10.3,';')", 0.000123f, " 1.230E-04;"},
        {"(es10.3,';')", -12345.6f, "-1.235E+04;"}, {"(es9.2,';')", 9.999f, " 1.00E+01;"},
        {"(es10.3,';')", 0.0f, " 0.000E+00;"},      {"(es8.3,';')", 1.5f, "********;"},
        {"(e10.3,';')", 1.5f, " 0.150E+01;"},       {"(e12.3e3,';')", 1.5f, "  0.150E+001;"},
        {"(d10.3,';')", 1.5f, " 0.150D+01;"},       {"(en12.3,';')", 12345.0f, "  12.345E+03;"},
        {"(g10.3,';')", 1.5f, "  1.50    ;"},       {"(g10.3,';')", 12345.0f, " 0.123E+05;"},
        {"(1p,e10.3,';')", 1.5f, " 1.500E+00;"},    {"(2p,f6.1,';')", 1.5f, " 150.0;"},
        {"(-1p,f6.2,';')", 1.5f, "  0.15;"},        {"(sp,f6.1,';')", 1.5f, "  +1.5;"},
    };
    for (const RealCase& c : cases)
        EXPECT_EQ(formatted(c.format, c.value), c.expected) << c.format;
}

TEST_F(FormatTest, IntegersAndOtherBases)
{
    const Case<std::int32_t> cases[]{
        {"(i4,';')", -12, " -12;"},   {"(i3,';')", 1000, "***;"},  {"(i3,';')", -100, "***;"},
        {"(i1,';')", 0, "0;"},        {"(i5.3,';')", 7, "  007;"}, {"(sp,i3,';')", 5, " +5;"},
        {"(b8,';')", 5, "     101;"}, {"(o4,';')", 8, "  10;"},    {"(z4,';')", 255, "  ff;"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(formatted(c.format, c.value), c.expected) << c.format;
    EXPECT_EQ(formatted("(sp,i3,ss,i3,';')", 5, 5), " +5  5;");
    EXPECT_EQ(formatted("(i14,';')", std::int64_t{1234567890123}), " 1234567890123;");
}

TEST_F(FormatTest, TextAndLogicals)
{
    const Case<const char*> cases[]{
        {"(a,';')", "abc", "abc;"}, {"(a5,';')", "abc", "  abc;"}, {"(a2,';')", "abc", "ab;"},
        {"(a1,';')", "\t", "\t;"},  {"(a6,';')", "  ", "      ;"}, {"(t5,a)", "x", "    x"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(formatted(c.format, c.value), c.expected) << c.format;
    EXPECT_EQ(formatted("(a,3x,a)", "x", "y"), "x   y");
    EXPECT_EQ(formatted("(a,tr2,a)", "x", "y"), "x  y");
    // "(a)" on a 20-character field keeps its blanks.
    EXPECT_EQ(formatted("(a,';')", Text<20>("2025")), "2025                ;");
    EXPECT_EQ(formatted("(a,t2,a)", "abc", "X"), "aXc");
    EXPECT_EQ(formatted("(a,tl2,a)", "abc", "X"), "aXc");
    EXPECT_EQ(formatted("(l1,l3,';')", false, true), "F  T;");
}

TEST_F(FormatTest, LiteralsGroupsAndPanelLines)
{
    EXPECT_EQ(formatted("(1x,50('*'))"), " " + std::string(50, '*'));
    EXPECT_EQ(formatted("(1x,1('@'),49('='))"), " @" + std::string(49, '='));
    EXPECT_EQ(formatted("('it''s',';')"), "it's;");
    EXPECT_EQ(formatted("(\"say \"\"hi\"\"\",';')"), "say \"hi\";");
    EXPECT_EQ(formatted("(5hhello,';')"), "hello;");
    EXPECT_EQ(formatted("(a4,2('-',a2))", "2025", "04", "11"), "2025-04-11");
    EXPECT_EQ(formatted("(2(a,2(i1)))", "a", 1, 2, "b", 3, 4), "a12b34");
}

TEST_F(FormatTest, OutputStopsAtTheNextDataDescriptor)
{
    EXPECT_EQ(formatted("(i2,' more',i2)", 5), " 5 more");
    EXPECT_EQ(formatted("(i2,:,' more',i2)", 5), " 5");
    EXPECT_EQ(formatted("('head',i2,'tail')"), "head"); // no items at all
}

TEST_F(FormatTest, BlankInsideADescriptorIsIgnored)
{
    // The interval format of the dialogues, built with i2 for bounds of 1 and 10 characters; no comma
    // in front of its last a1.
    EXPECT_EQ(formatted("(1x,a9,i 1,a1,i10a1)", "inside  [", 5, ",", -100000000, "]"),
              " inside  [5,-100000000]");
}

TEST_F(FormatFileTest, RecordsReversionAndSlash)
{
    EXPECT_EQ(written("(1x,i2)", 1, 2, 3), "  1\n  2\n  3\n");
    EXPECT_EQ(written("(a,/,a)", "x", "y"), "x\ny\n");
    EXPECT_EQ(written("(a,//,a)", "x", "y"), "x\n\ny\n");
    // Reversion starts again at the last group of the outermost level, with its repeat count.
    EXPECT_EQ(written("(i1,2(i2),3(i3))", 1, 2, 3, 4, 5, 6, 7, 8, 9), "1 2 3  4  5  6\n  7  8  9\n");
    EXPECT_EQ(written("(a,2(i2))", "x", 1, 2, 3, 4), "x 1 2\n 3 4\n");
}

TEST_F(FormatFileTest, ReversionWithoutDataDescriptor)
{
    // "('abc')" with its message: startup_test.cpp.
    EXPECT_EQ(written("(i2,('x'))", 1, 2), "iostat=10076");
}

TEST_F(FormatFileTest, BlanksInFrontOfTheUnreachedDescriptorAreWritten)
{
    // WRITE(SOUT, '(5(1x,a))') 'Enter', name(first:last)
    EXPECT_EQ(written("(5(1x,a))", "Enter", "your choice"), " Enter your choice \n");
    EXPECT_EQ(written("(a,'|',i2)", "x"), "x|\n");
}

// A record loop's statement, run again and again on a file: its records are built in the unit's
// buffer, the texts behind the fixed fields cut or padded as A and Aw have them, and the record end
// is whatever the options say when the record is written.
TEST_F(FormatFileTest, RepeatedStatementBuildsItsRecordsInTheBuffer)
{
    openUnit("REPLACE");
    auto writeLine = [](const char* comment) {
        rt::write(unit_, "(f6.1,a1,a,' | ',a8,'|')", -2.25f, "\t", comment, comment);
    };
    for (const char* comment : {"first", "", "a comment longer than the field"})
        writeLine(comment);
    rt::setRuntimeFlags("-doseol");
    writeLine("dos");
    writeLine("dos");
    rt::setRuntimeFlags("-unixeol");
    writeLine("last");
    rt::close(unit_);
    EXPECT_EQ(slurp(path_), "  -2.2\tfirst |    first|\n"
                            "  -2.2\t |         |\n"
                            "  -2.2\ta comment longer than the field | a commen|\n"
                            "  -2.2\tdos |      dos|\r\n"
                            "  -2.2\tdos |      dos|\r\n"
                            "  -2.2\tlast |     last|\n");
}

TEST_F(FormatTest, InputFields)
{
    struct IntInput
    {
        const char* format;
        const char* source;
        std::int32_t expected;
    };
    const IntInput ints[]{
        {"(i5)", "   42", 42},   {"(i5)", "  -42", -42},  {"(i5)", "     ", 0},     {"(i3)", "7", 7},
        {"(2x,i2)", "ab12", 12}, {"(bn,i4)", " 1 2", 12}, {"(bz,i4)", " 1 2", 102}, {"(i5)", "12a45", -99},
    };
    for (const IntInput& c : ints) {
        std::int32_t value = -99;
        int status = 0;
        rt::readInternal(rt::withStatus(status), c.source, c.format, value);
        EXPECT_EQ(status, c.expected == -99 ? 10016 : 0) << c.format << " on \"" << c.source << '"';
        EXPECT_EQ(value, c.expected) << c.format << " on \"" << c.source << '"';
    }

    struct RealInput
    {
        const char* format;
        const char* source;
        float expected;
    };
    const RealInput reals[]{
        {"(f6.2)", "  1234", 12.34f}, {"(f6.2)", " 1.5  ", 1.5f},       {"(f5.1)", "     ", 0.0f},
        {"(f4.0)", "-2.5", -2.5f},    {"(e10.3)", "  1.5E+02", 150.0f}, {"(2x,f3.1)", "xx2.5", 2.5f},
        {"(f5.1)", "1.x.2", -99.0f},
    };
    for (const RealInput& c : reals) {
        float value = -99.0f;
        int status = 0;
        rt::readInternal(rt::withStatus(status), c.source, c.format, value);
        EXPECT_EQ(status, c.expected == -99.0f ? 10016 : 0) << c.format << " on \"" << c.source << '"';
        EXPECT_FLOAT_EQ(value, c.expected) << c.format << " on \"" << c.source << '"';
    }
}

TEST_F(FormatTest, InputOfTextLogicalsAndShortRecords)
{
    Text<5> five("xxxxx");
    Text<6> six("xxxxxx");
    EXPECT_TRUE(rt::readInternal(rt::onError, "hello world", "(a5)", five).ok());
    EXPECT_EQ(five.view(), "hello");
    EXPECT_TRUE(rt::readInternal(rt::onError, "abcdef", "(a3)", five).ok());
    EXPECT_EQ(five.view(), "abc  ");
    EXPECT_TRUE(rt::readInternal(rt::onError, "abc", "(a)", six).ok());
    EXPECT_EQ(six.view(), "abc   ");

    bool flags[3]{false, true, false};
    EXPECT_TRUE(rt::readInternal(rt::onError, " T.false.t", "(l2,l7,l1)", flags[0], flags[1], flags[2]).ok());
    EXPECT_TRUE(flags[0]);
    EXPECT_FALSE(flags[1]);
    EXPECT_TRUE(flags[2]);

    // The second field lies wholly behind the end of the record: blanks, so 0.
    std::int32_t a = -1, b = -1;
    EXPECT_TRUE(rt::readInternal(rt::onError, "  7", "(i3,i3)", a, b).ok());
    EXPECT_EQ(a, 7);
    EXPECT_EQ(b, 0);
}

TEST_F(FormatFileTest, InputAcrossRecordsAndEndOfFile)
{
    store("12\n3\n");
    std::int32_t a = 0, b = 0;
    EXPECT_TRUE(rt::read(unit_, "(i2,/,i3)", a, b).ok()); // the short record "3" reads as "3  "
    EXPECT_EQ(a, 12);
    EXPECT_EQ(b, 3);
    int status = 0;
    const rt::Iostat ios = rt::read(rt::onEnd | rt::withStatus(status), unit_, "(i2)", a);
    EXPECT_EQ(ios.outcome, rt::Outcome::end);
    EXPECT_EQ(status, -1);

    // READ(EIN, '(a)') answer: an empty line gives a blank, a long line its first characters.
    store("\nyes\n");
    Text<1> answer("x");
    EXPECT_TRUE(rt::read(unit_, "(a)", answer).ok());
    EXPECT_EQ(answer.view(), " ");
    EXPECT_TRUE(rt::read(unit_, "(a)", answer).ok());
    EXPECT_EQ(answer.view(), "y");
}

TEST_F(FormatTest, TranslationErrors)
{
    struct ErrorCase
    {
        const char* format;
        int code;
    };
    // startup_test.cpp checks one format of each code with its message; these are further ones.
    const ErrorCase cases[]{
        {"(2(i5)", 10010}, {"(\"abc)", 10011}, {"(0(i2))", 10007}, {"(2t5,i2)", 10012}, {"(i5,#)", 10006},
    };
    for (const ErrorCase& c : cases)
        EXPECT_EQ(writeStatus(c.format, 1, 2), c.code) << c.format;
}

TEST_F(FormatTest, GroupStackHasTwentyLevels)
{
    const auto nested = [](int groups) {
        std::string format = "(";
        for (int i = 0; i < groups; ++i)
            format += "1(";
        return format + "i2" + std::string(groups, ')') + ",';')";
    };
    EXPECT_EQ(formatted(nested(18), 5), " 5;"); // 19 levels with the outer parentheses
    EXPECT_EQ(writeStatus(nested(21), 5), rt::code::groupOverflow);
}

} // namespace
