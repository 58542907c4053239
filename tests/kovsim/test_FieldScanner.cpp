#include "FieldScanner.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>
#include <random>
#include <string>

namespace kov::tool {
namespace {

using Result = FieldScanner::Result;

FieldScanner Scan(char const* text) { return {text, text + std::strlen(text)}; }

struct IntCase {
    char const* text;
    Result result;
    int value;
};

class Ints : public ::testing::TestWithParam<IntCase> {};

TEST_P(Ints, AreReadWholeOrNotAtAll) {
    int value = -77;
    FieldScanner fields = Scan(GetParam().text);
    EXPECT_EQ(fields.ReadInt(value), GetParam().result) << GetParam().text;
    EXPECT_EQ(value, GetParam().result == Result::Value ? GetParam().value : -77);
}

INSTANTIATE_TEST_SUITE_P(
    Forms, Ints,
    ::testing::Values(IntCase{"12", Result::Value, 12}, IntCase{" \t12 \r\n", Result::Value, 12},
                      IntCase{"+7,", Result::Value, 7}, IntCase{"-7,", Result::Value, -7},
                      IntCase{"0012,", Result::Value, 12},
                      IntCase{"2147483647,", Result::Value, 2147483647},
                      IntCase{"2147483648,", Result::TooLarge, 0},
                      IntCase{"99999999999999999999999,", Result::TooLarge, 0},
                      IntCase{"99999999999999999999999x,", Result::Wrong, 0},
                      IntCase{",1", Result::Empty, 0}, IntCase{"  ,1", Result::Empty, 0},
                      IntCase{"", Result::Empty, 0}, IntCase{"\n", Result::Empty, 0},
                      IntCase{"1 2,", Result::Wrong, 0}, IntCase{"1.5,", Result::Wrong, 0},
                      IntCase{"1e3,", Result::Wrong, 0}, IntCase{"abc", Result::Wrong, 0},
                      IntCase{"12abc,", Result::Wrong, 0}, IntCase{"-", Result::Wrong, 0},
                      IntCase{"+,", Result::Wrong, 0}, IntCase{"--1", Result::Wrong, 0}));

struct DoubleCase {
    char const* text;
    Result result;
    double value;
};

class Doubles : public ::testing::TestWithParam<DoubleCase> {};

TEST_P(Doubles, AreReadWholeOrNotAtAll) {
    double value = -77;
    FieldScanner fields = Scan(GetParam().text);
    EXPECT_EQ(fields.ReadDouble(value), GetParam().result) << GetParam().text;
    EXPECT_EQ(value, GetParam().result == Result::Value ? GetParam().value : -77);
}

INSTANTIATE_TEST_SUITE_P(
    Forms, Doubles,
    ::testing::Values(
        DoubleCase{"1", Result::Value, 1}, DoubleCase{" -2.5e-3 ,", Result::Value, -2.5e-3},
        DoubleCase{"+4.25\n", Result::Value, 4.25}, DoubleCase{".5", Result::Value, 0.5},
        DoubleCase{"5.,", Result::Value, 5}, DoubleCase{"-.5", Result::Value, -0.5},
        DoubleCase{"1.5D+02,", Result::Value, 150}, DoubleCase{"1.5d2\r\n", Result::Value, 150},
        DoubleCase{"-1.D0", Result::Value, -1}, DoubleCase{"1E+05,", Result::Value, 1e5},
        DoubleCase{"1e-400,", Result::Value, 0}, DoubleCase{"1e400", Result::TooLarge, 0},
        DoubleCase{"-1D400,", Result::TooLarge, 0}, DoubleCase{",", Result::Empty, 0},
        DoubleCase{"", Result::Empty, 0}, DoubleCase{"nan", Result::Wrong, 0},
        DoubleCase{"inf,", Result::Wrong, 0}, DoubleCase{"-inf", Result::Wrong, 0},
        DoubleCase{"+nan", Result::Wrong, 0}, DoubleCase{"infinity", Result::Wrong, 0},
        DoubleCase{"0x10", Result::Wrong, 0}, DoubleCase{"1.2.3,", Result::Wrong, 0},
        DoubleCase{"1.5e", Result::Wrong, 0}, DoubleCase{"1.5e+,", Result::Wrong, 0},
        DoubleCase{"1 2", Result::Wrong, 0}, DoubleCase{"+-1", Result::Wrong, 0},
        DoubleCase{"-", Result::Wrong, 0}, DoubleCase{".", Result::Wrong, 0},
        DoubleCase{"1,5", Result::Value, 1}, DoubleCase{"x", Result::Wrong, 0}));

TEST(FieldScanner, ReadsTheFieldsOfALineInOrder) {
    FieldScanner fields = Scan("5, -1.5, , 1D1 ,\r\n");
    int label = 0;
    double a = 9;
    double b = 9;
    double c = 9;
    EXPECT_EQ(fields.ReadInt(label), Result::Value);
    EXPECT_EQ(fields.ReadDouble(a), Result::Value);
    EXPECT_EQ(fields.ReadDouble(b), Result::Empty);
    EXPECT_EQ(fields.ReadDouble(c), Result::Value);
    EXPECT_TRUE(fields.HadComma());
    EXPECT_TRUE(fields.AtEnd());
    EXPECT_EQ(label, 5);
    EXPECT_EQ(a, -1.5);
    EXPECT_EQ(b, 9);
    EXPECT_EQ(c, 10);
}

TEST(FieldScanner, GivesTheTextOfAWrongFieldWithoutBlanks) {
    FieldScanner fields = Scan("  12 ab  , 3");
    int value = 0;
    EXPECT_EQ(fields.ReadInt(value), Result::Wrong);
    EXPECT_EQ(fields.Field(), "12 ab");
}

TEST(FieldScanner, ReadsAWrongNumberAgainAsText) {
    FieldScanner fields = Scan(" 1st Set , 4");
    int value = 0;
    EXPECT_EQ(fields.ReadInt(value), Result::Wrong);
    fields.Again();
    std::string text;
    EXPECT_TRUE(fields.ReadText(text));
    EXPECT_EQ(text, "1stSet");
    EXPECT_EQ(fields.ReadInt(value), Result::Value);
    EXPECT_EQ(value, 4);
}

TEST(FieldScanner, QuotesKeepCommasAndBlanks) {
    FieldScanner fields = Scan("\"My, Set\" ,B C\n");
    std::string text;
    EXPECT_TRUE(fields.ReadText(text));
    EXPECT_EQ(text, "My, Set");
    EXPECT_TRUE(fields.ReadText(text));
    EXPECT_EQ(text, "BC");
    EXPECT_TRUE(fields.AtEnd());
}

TEST(FieldScanner, SaysWhenQuotesAreNotClosed) {
    FieldScanner fields = Scan("\"My Set, 5\n");
    std::string text;
    EXPECT_FALSE(fields.ReadText(text));
}

// Against the C library, over numbers printed in several ways.
TEST(FieldScanner, ReadsPrintedNumbersToTheLastBit) {
    std::mt19937_64 random(20240531);
    char const* const formats[] = {"%.17g", "%.3e", "%+.10E", "%.6f", "%g"};
    for (int i = 0; i < 20000; ++i) {
        std::uint64_t const bits = random();
        double number;
        std::memcpy(&number, &bits, sizeof number);
        if (!(number > -1e30 && number < 1e30))
            number = static_cast<double>(static_cast<int>(bits % 100000)) / 7;
        char text[512];
        std::snprintf(text, sizeof text, formats[i % 5], number);
        double value = 0;
        FieldScanner fields = Scan(text);
        ASSERT_EQ(fields.ReadDouble(value), Result::Value) << text;
        ASSERT_EQ(value, std::strtod(text, nullptr)) << text;
    }
}

}  // namespace
}  // namespace kov::tool
