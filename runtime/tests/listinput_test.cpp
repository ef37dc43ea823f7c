// runtime/tests/listinput_test.cpp: free-form input from texts, standard input and files.
#include "scratch.h"

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

namespace {

long dropText(char*, long* length, int, long*)
{
    return *length;
}

class ListInputTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        rt::testing::resetRuntime();
        quor_f_init(typedLine, dropText, nullptr, nullptr, nullptr, nullptr, nullptr);
        keyboard.clear();
        keyboardAt = 0;
    }
    void TearDown() override { rt::testing::resetRuntime(); }

    static void type(std::string_view lines) { keyboard = lines; }
};

struct Fracture
{
    float dipa1 = -1.0f;
    Text<1> letter1{"?"};
    float dipa2 = -1.0f;
    Text<1> letter2{"?"};
};

TEST_F(ListInputTest, FractureRecordForms)
{
    struct Case
    {
        const char* source;
        float dipa1;
        const char* letter1;
        float dipa2;
        const char* letter2;
    };
    const Case cases[]{
        {"16 'E'  50 'N'", 16.0f, "E", 50.0f, "N"},
        {"16,E,50,N", 16.0f, "E", 50.0f, "N"},
        {"16\t'E'\t50\t'N'", 16.0f, "E", 50.0f, "N"},
        {" 16 , 'E' ,50 ,'N' ", 16.0f, "E", 50.0f, "N"}, // blanks around a separator make one separator
        {"16 'E' /", 16.0f, "E", -1.0f, "?"},
        {"16.5 'East' 5.0e1 'N' 99", 16.5f, "E", 50.0f, "N"},
    };
    for (const Case& c : cases) {
        Fracture f;
        int status = 0;
        rt::readListInternal(rt::withStatus(status), c.source, f.dipa1, f.letter1, f.dipa2, f.letter2);
        EXPECT_EQ(status, 0) << c.source;
        EXPECT_FLOAT_EQ(f.dipa1, c.dipa1) << c.source;
        EXPECT_EQ(f.letter1.view(), c.letter1) << c.source;
        EXPECT_FLOAT_EQ(f.dipa2, c.dipa2) << c.source;
        EXPECT_EQ(f.letter2.view(), c.letter2) << c.source;
    }
}

TEST_F(ListInputTest, NullValuesRepeatsAndSlash)
{
    struct Case
    {
        const char* source;
        std::int32_t a, b, c;
    };
    const Case cases[]{
        {",,50", 1, 2, 50}, {"7,,9", 7, 2, 9},     {"7 , 8 ,9", 7, 8, 9},    {"7,\t,9", 7, 2, 9},
        {", 8 /", 1, 8, 3}, {"2*30 /", 30, 30, 3}, {"3*5", 5, 5, 5},         {"2*,9", 1, 2, 9},
        {"/", 1, 2, 3},     {"7,/", 7, 2, 3},      {"7 8 9 10 11", 7, 8, 9}, {"-7 +8 0009", -7, 8, 9},
        {"1 2*4", 1, 4, 4},
    };
    for (const Case& c : cases) {
        std::int32_t a = 1, b = 2, d = 3;
        int status = 0;
        rt::readListInternal(rt::withStatus(status), c.source, a, b, d);
        EXPECT_EQ(status, 0) << c.source;
        EXPECT_EQ(a, c.a) << c.source;
        EXPECT_EQ(b, c.b) << c.source;
        EXPECT_EQ(d, c.c) << c.source;
    }
}

TEST_F(ListInputTest, TextValues)
{
    struct Case
    {
        const char* source;
        const char* expected;
    };
    const Case cases[]{
        {"'it''s'", "it's  "},     {"''", "      "},          {"abc", "abc   "},
        {"'a b,c'", "a b,c "},     {"123", "123   "},         {"abcdefgh", "abcdef"},
        {"\"x\"\"y\"", "x\"y   "}, {"My data set", "My    "}, {"'a/b' 5", "a/b   "},
    };
    for (const Case& c : cases) {
        Text<6> value("xxxxxx");
        int status = 0;
        rt::readListInternal(rt::withStatus(status), c.source, value);
        EXPECT_EQ(status, 0) << c.source;
        EXPECT_EQ(value.view(), c.expected) << c.source;
    }

    Text<2> first, second;
    EXPECT_TRUE(rt::readListInternal(rt::onError, "2*'ab'", first, second).ok());
    EXPECT_EQ(first.view(), "ab");
    EXPECT_EQ(second.view(), "ab");
}

TEST_F(ListInputTest, NumbersOfEveryWidth)
{
    float x = 0.0f;
    double y = 0.0;
    std::int64_t big = 0;
    std::int32_t n = 0;
    EXPECT_TRUE(rt::readListInternal(rt::onError, "1.5e2 0.1 -9000000000 +42", x, y, big, n).ok());
    EXPECT_FLOAT_EQ(x, 150.0f);
    EXPECT_DOUBLE_EQ(y, 0.1);
    EXPECT_EQ(big, -9000000000LL);
    EXPECT_EQ(n, 42);
    EXPECT_TRUE(rt::readListInternal(rt::onError, "-2.5 .5", x, y).ok());
    EXPECT_FLOAT_EQ(x, -2.5f);
    EXPECT_DOUBLE_EQ(y, 0.5);
}

TEST_F(ListInputTest, TextForNumberIsIllegalCharacter)
{
    // The message and the branch of this code: startup_test.cpp.
    const char* intSources[]{"abc", "1.5", "12x", "'12'", "E"};
    for (const char* source : intSources) {
        std::int32_t n = 77;
        int status = 0;
        rt::readListInternal(rt::withStatus(status), source, n);
        EXPECT_EQ(status, 10016) << source;
    }
    const char* realSources[]{"abc", "1.5x", "N"};
    for (const char* source : realSources) {
        float x = 0.0f;
        int status = 0;
        rt::readListInternal(rt::withStatus(status), source, x);
        EXPECT_EQ(status, 10016) << source;
    }
}

TEST_F(ListInputTest, EndOfTextIsEndOfFile)
{
    std::int32_t a = 1, b = 2;
    int status = 0;
    rt::readListInternal(rt::withStatus(status), "5", a, b);
    EXPECT_EQ(status, -1);
    EXPECT_EQ(a, 5);
    EXPECT_EQ(b, 2);

    const char* empties[]{"", "   ", "\t"};
    for (const char* source : empties) {
        status = 0;
        rt::readListInternal(rt::withStatus(status), source, a);
        EXPECT_EQ(status, -1) << '"' << source << '"';
    }
}

TEST_F(ListInputTest, RecordsOfStandardInput)
{
    // Blank lines give no value; a record with too few values leads to the next one.
    type("16 'E'\n\n   \n50 'N'\n");
    Fracture f;
    EXPECT_TRUE(rt::readList(5, f.dipa1, f.letter1, f.dipa2, f.letter2).ok());
    EXPECT_FLOAT_EQ(f.dipa1, 16.0f);
    EXPECT_EQ(f.letter1.view(), "E");
    EXPECT_FLOAT_EQ(f.dipa2, 50.0f);
    EXPECT_EQ(f.letter2.view(), "N");
}

TEST_F(ListInputTest, EachStatementStartsOnANewRecord)
{
    type("1 2 3\n4 5\n6 / 7\n8\n");
    std::int32_t a = 0, b = 0, c = 0, d = -1, e = 0;
    EXPECT_TRUE(rt::readList(5, a).ok());
    EXPECT_TRUE(rt::readList(5, b).ok());
    EXPECT_TRUE(rt::readList(5, c, d).ok());
    EXPECT_TRUE(rt::readList(5, e).ok());
    EXPECT_EQ(a, 1);
    EXPECT_EQ(b, 4);
    EXPECT_EQ(c, 6);
    EXPECT_EQ(d, -1);
    EXPECT_EQ(e, 8);
}

TEST_F(ListInputTest, QuotedValueRunsAcrossRecords)
{
    type("'ab\ncd' 5\n");
    Text<6> text;
    std::int32_t n = 0;
    EXPECT_TRUE(rt::readList(5, text, n).ok());
    EXPECT_EQ(text.view(), "abcd  ");
    EXPECT_EQ(n, 5);
}

TEST_F(ListInputTest, DecimalCommaSeparatesBySemicolon)
{
    const fs::path dir = scratchFolder("kestro_list");
    ASSERT_FALSE(dir.empty());
    const std::string path = (dir / "comma.txt").string();
    std::ofstream(path) << "1,5;;2,5\n";

    rt::OpenSpec specifiers = fileSpec(path, "OLD");
    specifiers.decimal = "COMMA";
    ASSERT_TRUE(rt::open(25, specifiers).ok());
    float a = 0.0f, b = -1.0f, c = 0.0f;
    EXPECT_TRUE(rt::readList(25, a, b, c).ok());
    EXPECT_FLOAT_EQ(a, 1.5f);
    EXPECT_FLOAT_EQ(b, -1.0f);
    EXPECT_FLOAT_EQ(c, 2.5f);
    rt::close(25);
    fs::remove_all(dir);
}

} // namespace
