#include "platform/core/SysUtils.h"
#include "platform/core/Exceptions.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <set>

using namespace qv;

TEST(Format, ExponentHasFifteenDigitsAndThreeDigitExponent) {
    EXPECT_EQ(Format("%e", {1.0L}), "1.00000000000000E+000");
    EXPECT_EQ(Format("%e", {-2.5L}), "-2.50000000000000E+000");
    EXPECT_EQ(Format("%e", {0.0L}), "0.00000000000000E+000");
    EXPECT_EQ(Format("%e", {1.5e-10}), "1.50000000000000E-010");
    EXPECT_EQ(Format("%e", {1e300}), "1.00000000000000E+300");
    EXPECT_EQ(Format("%.3e", {1234.5}), "1.23E+003");
    EXPECT_EQ(Format("%e", {1e4000L}), "1.00000000000000E+4000");
}

TEST(Format, IntegersWidthPrecisionAndJustification) {
    EXPECT_EQ(Format("%d", {42}), "42");
    EXPECT_EQ(Format("%5d|%-5d|", {42, 42}), "   42|42   |");
    EXPECT_EQ(Format("%.4d", {-7}), "-0007");
    EXPECT_EQ(Format("%x", {255}), "FF");
    EXPECT_EQ(Format("%.4x", {255}), "00FF");
    EXPECT_EQ(Format("%u", {-1}), "4294967295");
    EXPECT_EQ(Format("%*d", {6, 12}), "    12");
    EXPECT_EQ(Format("%d.%d.%d.%d", {192, 168, 0, 1}), "192.168.0.1");
}

TEST(Format, IndexesStringsAndPercent) {
    EXPECT_EQ(Format("%1:s %0:s %s", {"a", "b", "c"}), "b a b");
    EXPECT_EQ(Format("%.2s|%3s|%%", {"hello", "x"}), "he|  x|%");
    EXPECT_EQ(Format("%s", {'c'}), "c");
    EXPECT_EQ(Format("%d is not within the valid range", {70000}),
              "70000 is not within the valid range");
}

TEST(Format, FixedGeneralNumberAndMoney) {
    EXPECT_EQ(Format("%f", {3.14159}), "3.14");
    EXPECT_EQ(Format("%.0f", {2.5}), "2");
    EXPECT_EQ(Format("%.3f", {-0.0005}), "-0.001");
    EXPECT_EQ(Format("%g", {0.1}), "0.1");
    EXPECT_EQ(Format("%g", {1e20}), "1E20");
    EXPECT_EQ(Format("%n", {1234567.891}), "1,234,567.89");
    EXPECT_EQ(Format("%m", {-1234.5}), "($1,234.50)");
}

TEST(Format, MismatchesRaiseConvertError) {
    EXPECT_THROW(Format("%d", {1.5}), EConvertError);
    EXPECT_THROW(Format("%e", {1}), EConvertError);
    EXPECT_THROW(Format("%s", {1}), EConvertError);
    EXPECT_THROW(Format("%d %d", {1}), EConvertError); // missing argument
    EXPECT_THROW(Format("%q", {1}), EConvertError);
    EXPECT_THROW(Format("abc %", {1}), EConvertError);
}

TEST(FloatToStr, ShortestWithFifteenDigits) {
    EXPECT_EQ(FloatToStr(0.0), "0");
    EXPECT_EQ(FloatToStr(1.0 / 3.0), "0.333333333333333");
    EXPECT_EQ(FloatToStr(6.283185307179586), "6.28318530717959");
    EXPECT_EQ(FloatToStr(-12.5), "-12.5");
    EXPECT_EQ(FloatToStr(0.0001), "0.0001");
    EXPECT_EQ(FloatToStr(0.00001), "1E-5");
    EXPECT_EQ(FloatToStr(1e15), "1E15");
    EXPECT_EQ(FloatToStr(123456789012345.0), "123456789012345");
    EXPECT_EQ(FloatToStr(std::numeric_limits<double>::infinity()), "INF");
}

TEST(Rounding, RoundIsBankersAndTruncGoesTowardZero) {
    EXPECT_EQ(Round(2.5L), 2);
    EXPECT_EQ(Round(3.5L), 4);
    EXPECT_EQ(Round(-2.5L), -2);
    EXPECT_EQ(Round(-3.5L), -4);
    EXPECT_EQ(Round(2.6L), 3);
    EXPECT_EQ(Trunc(-2.9L), -2);
    EXPECT_EQ(Trunc(2.9L), 2);
    EXPECT_THROW(Round(1e19L), EInvalidOp);
    EXPECT_THROW(Trunc(std::nanl("")), EInvalidOp);
    EXPECT_EQ(Round(-9223372036854775808.0L), INT64_MIN);
}

TEST(Rounding, MulDivRoundsHalvesAwayFromZeroAndDivisorZeroGivesMinusOne) {
    EXPECT_EQ(MulDiv(10, 10, 4), 25);
    EXPECT_EQ(MulDiv(5, 1, 2), 3);   // 2.5 -> 3
    EXPECT_EQ(MulDiv(-5, 1, 2), -3); // -2.5 -> -3
    EXPECT_EQ(MulDiv(5, -1, -2), 3);
    EXPECT_EQ(MulDiv(7, 1, 3), 2);                     // 2.33 -> 2
    EXPECT_EQ(MulDiv(8, 1, 3), 3);                     // 2.67 -> 3
    EXPECT_EQ(MulDiv(100000, 100000, 100), 100000000); // needs the 64-bit intermediate
    EXPECT_EQ(MulDiv(1, 2, 0), -1);
    EXPECT_EQ(MulDiv(INT32_MAX, INT32_MAX, 1), -1); // does not fit
}

TEST(Conversion, StrToIntAcceptsDecimalAndHexAndNamesBadText) {
    EXPECT_EQ(StrToInt(" -42 "), -42);
    EXPECT_EQ(StrToInt("$FF"), 255);
    EXPECT_EQ(StrToIntDef("x", 7), 7);
    try {
        StrToInt("12a");
        FAIL();
    } catch (const EConvertError& e) {
        EXPECT_STREQ(e.what(), "'12a' is not a valid integer value");
    }
    EXPECT_THROW(StrToInt64("99999999999999999999"), EConvertError);
    EXPECT_EQ(StrToInt64("-9223372036854775808"), INT64_MIN);
    EXPECT_DOUBLE_EQ(static_cast<double>(StrToFloat("1.5e3")), 1500.0);
    EXPECT_THROW(StrToFloat("1.5x"), EConvertError);
}

TEST(RandomGenerator, IsDeterministicForASeedAndStaysInRange) {
    SetRandSeed(12345);
    const double first = Random();
    const int second = Random(10);
    SetRandSeed(12345);
    EXPECT_EQ(Random(), first);
    EXPECT_EQ(Random(10), second);
    std::set<int> seen;
    for (int i = 0; i < 1000; ++i) {
        const int r = Random(6);
        ASSERT_GE(r, 0);
        ASSERT_LT(r, 6);
        seen.insert(r);
        const double f = Random();
        ASSERT_GE(f, 0.0);
        ASSERT_LT(f, 1.0);
    }
    EXPECT_EQ(seen.size(), 6u);
    EXPECT_EQ(Random(0), 0);
    EXPECT_EQ(Random(-5), 0);
}

TEST(SysUtils, Latin1TextBecomesUtf8) {
    EXPECT_EQ(Latin1ToUtf8("Volts"), "Volts");
    EXPECT_EQ(Latin1ToUtf8("caf\xe9"), "caf\xc3\xa9");
    EXPECT_EQ(Latin1ToUtf8("\xff\x80"), "\xc3\xbf\xc2\x80");
}
