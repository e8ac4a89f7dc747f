// The expression language: numbers, identifiers, operators and the built-in functions.

#include "CalcTestSupport.h"

#include "platform/core/SysUtils.h"

#include <gtest/gtest.h>

#include <cmath>

using namespace qv;

namespace {

class CalcLanguage : public ::testing::Test {
protected:
    long double Value(std::string_view line) {
        const TCalcOutcome r = Evaluate(calc, line);
        EXPECT_EQ(r.code, TqxOK) << line;
        return r.value;
    }
    TqCalcResult Code(std::string_view line) { return Evaluate(calc, line).code; }

    TqCalc calc{nullptr};

    void SetUp() override { calc.SetPushResult(false); }
};

} // namespace

TEST_F(CalcLanguage, NumbersTakeAPointOrACommaAndNeedOneDigit) {
    EXPECT_EQ(Value("12.5"), 12.5L);
    EXPECT_EQ(Value("12,5"), 12.5L);
    EXPECT_EQ(Value(".5"), 0.5L);
    EXPECT_EQ(Value("5."), 5.0L);
    EXPECT_EQ(Value("007"), 7.0L);
    EXPECT_EQ(Code("."), TqxNumberMissing);
    EXPECT_EQ(Code("+2"), TqxNumberMissing); // no unary plus
}

TEST_F(CalcLanguage, ANumberEndsAtASpaceOrALetter) {
    EXPECT_EQ(Evaluate(calc, "1 2").value, 1.0L);
    EXPECT_EQ(calc.WhereIsLastError(), 3); // the space before 2 was skipped looking for an operator
    EXPECT_EQ(Value("1E5"), 1.0L);         // no exponent notation
    EXPECT_EQ(Value("12 . 5"), 12.0L);
}

TEST_F(CalcLanguage, FactorsAreStoredAsDoublesAndTermsStayExtended) {
    // A parenthesised quotient is a factor, rounded to a double; a bare one is a term.
    EXPECT_EQ(Value("(1/3)"), static_cast<long double>(1.0 / 3.0));
    EXPECT_EQ(Value("1/3"), 1.0L / 3.0L);
    EXPECT_EQ(Value("0.1"), static_cast<long double>(0.1));
    EXPECT_EQ(Value("123456789012345678901"), static_cast<long double>(123456789012345678901.0));
}

TEST_F(CalcLanguage, TermsBeyondTheDoubleRangeAreFineUntilTheyBecomeFactors) {
    EXPECT_NEAR(static_cast<double>(Value("10^400") / 1e300L), 1e100, 1e88);
    EXPECT_EQ(Code("(10^400)"), TqxOverFlow);
    EXPECT_EQ(Code("(10^400)*0"), TqxOverFlow);
}

TEST_F(CalcLanguage, IdentifiersIgnoreCaseAndEndAtADigit) {
    EXPECT_EQ(Value("pi"), Value("PI"));
    EXPECT_EQ(Value("Pi"), static_cast<long double>(3.141592653589793));
    EXPECT_EQ(Value("Pi*2"), static_cast<long double>(6.283185307179586));
    EXPECT_EQ(Value("e"), static_cast<long double>(std::exp(1.0)));
    EXPECT_EQ(Value("E5"), Value("E")); // "E" followed by ignored text
    EXPECT_EQ(calc.WhereIsLastError(), 2);
    EXPECT_EQ(Value("sIn(0)"), 0.0L);
}

TEST_F(CalcLanguage, UnknownOrMalformedIdentifiersFail) {
    EXPECT_EQ(Code("X"), TqxFunctionMissing);
    EXPECT_EQ(Code("SINUS(0)"), TqxFunctionMissing);
    EXPECT_EQ(Code("E_"), TqxFunctionMissing); // underscores belong to the identifier
    EXPECT_EQ(Code("_A"), TqxNumberMissing);   // an identifier begins with a letter
    EXPECT_EQ(Code("R"), TqxFunctionMissing);
}

TEST_F(CalcLanguage, ProductsQuotientsAndPowersBindAlikeFromLeftToRight) {
    EXPECT_NEAR(static_cast<double>(Value("2*3^2")), 36, 1e-13);
    EXPECT_NEAR(static_cast<double>(Value("2^3^2")), 64, 1e-12);
    EXPECT_EQ(Value("8/2/2"), 2.0L);
    EXPECT_EQ(Value("10-2*3"), 4.0L);
    EXPECT_EQ(Value("1-2-3"), -4.0L);
    EXPECT_EQ(Value("2*(3+4)"), 14.0L);
}

TEST_F(CalcLanguage, ALeadingMinusNegatesTheWholeFirstTerm) {
    EXPECT_NEAR(static_cast<double>(Value("-2^2")), -4, 1e-15);
    EXPECT_EQ(Value("-2*3-1"), -7.0L);
    EXPECT_EQ(Value(" - 3+5"), 2.0L);
    EXPECT_EQ(Value("2*(-3)"), -6.0L);
    EXPECT_EQ(Code("2*-3"), TqxNumberMissing); // no unary minus inside a term
    EXPECT_EQ(Code("--2"), TqxNumberMissing);
}

TEST_F(CalcLanguage, PowersDecideZeroesFirstAndDropTheBaseSign) {
    EXPECT_EQ(Value("2^0"), 1.0L);
    EXPECT_EQ(Value("0^0"), 0.0L);
    EXPECT_EQ(Value("0^2"), 0.0L);
    EXPECT_NEAR(static_cast<double>(Value("(0-2)^2")), 4, 1e-15);
    EXPECT_NEAR(static_cast<double>(Value("(0-2)^3")), 8, 1e-15);
    EXPECT_NEAR(static_cast<double>(Value("(0-4)^0.5")), 2, 1e-15);
}

TEST_F(CalcLanguage, TrailingTextIsIgnored) {
    EXPECT_EQ(Value("2)"), 2.0L);
    EXPECT_EQ(Value("2 3"), 2.0L);
    EXPECT_EQ(Value("A(5)"), 0.0L);
    EXPECT_EQ(Value("1+2\r+3"), 3.0L); // a carriage return ends the expression like the end mark
}

TEST_F(CalcLanguage, TranscendentalFunctions) {
    EXPECT_NEAR(static_cast<double>(Value("EXP(1)")), std::exp(1.0), 1e-15);
    EXPECT_NEAR(static_cast<double>(Value("SIN(PI/2)")), 1, 1e-15);
    EXPECT_NEAR(static_cast<double>(Value("COS(PI)")), -1, 1e-15);
    EXPECT_NEAR(static_cast<double>(Value("ARCTAN(1)*4")), M_PI, 1e-15);
    EXPECT_NEAR(static_cast<double>(Value("ARCSIN(0.5)")), M_PI / 6, 1e-15);
    EXPECT_NEAR(static_cast<double>(Value("ARCCOS(0-0.5)")), -1.0471975511965976, 1e-15);
    EXPECT_NEAR(static_cast<double>(Value("LN(E)")), 1, 1e-15);
    EXPECT_NEAR(static_cast<double>(Value("LOG(1000)")), 3, 1e-15);
}

TEST_F(CalcLanguage, AlgebraicFunctions) {
    EXPECT_EQ(Value("ABS(0-3)"), 3.0L);
    EXPECT_EQ(Value("FRAC(0-2.5)"), -0.5L);
    EXPECT_EQ(Value("SQR(0-3)"), 9.0L);
    EXPECT_EQ(Value("SQRT(16)"), 4.0L);
    EXPECT_EQ(Value("SQRT(0)"), 0.0L);
}

TEST_F(CalcLanguage, RoundingFunctionsGoThroughSixtyFourBitIntegers) {
    EXPECT_EQ(Value("ROUND(2.5)"), 2.0L);
    EXPECT_EQ(Value("ROUND(3.5)"), 4.0L);
    EXPECT_EQ(Value("ROUND(0-2.5)"), -2.0L);
    EXPECT_EQ(Value("ROUND(2.51)"), 3.0L);
    EXPECT_EQ(Value("TRUNC(0-2.7)"), -2.0L);
    EXPECT_EQ(Value("CEILING(0-1.5)"), -1.0L);
    EXPECT_EQ(Value("CEILING(1.2)"), 2.0L);
    EXPECT_EQ(Value("CEILING(2)"), 2.0L);
    EXPECT_EQ(Value("FLOOR(0-1.5)"), -2.0L);
    EXPECT_EQ(Value("FLOOR(2)"), 2.0L);
    EXPECT_EQ(Value("FLOOR(2.9)"), 2.0L);
    EXPECT_EQ(Value("TRUNC(4611686018427387904)"), 4611686018427387904.0L);
}

TEST_F(CalcLanguage, RandomUsesTheProcessWideGenerator) {
    SetRandSeed(1234);
    const long double fromCalc = Value("RANDOM(10)");
    SetRandSeed(1234);
    EXPECT_EQ(fromCalc, Random(10));

    SetRandSeed(99);
    const long double real = Value("RANDOM(0)");
    SetRandSeed(99);
    EXPECT_EQ(real, static_cast<long double>(Random()));
    EXPECT_GE(real, 0.0L);
    EXPECT_LT(real, 1.0L);

    // The rounded argument keeps its low 32 bits: 2^32 + 10 draws like 10.
    SetRandSeed(7);
    const long double cut = Value("RANDOM(4294967306)");
    SetRandSeed(7);
    EXPECT_EQ(cut, Random(10));
    EXPECT_EQ(Value("RANDOM(0-5)"), 0.0L);
}

TEST_F(CalcLanguage, RandomStaysInItsRange) {
    for (int i = 0; i < 200; ++i) {
        const long double r = Value("RANDOM(2.5)"); // rounds to 2
        EXPECT_TRUE(r == 0 || r == 1) << r;
    }
}
