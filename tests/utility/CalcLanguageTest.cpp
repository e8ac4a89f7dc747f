// The expression language: numbers, identifiers, operators and the built-in functions, each
// group a table of lines and the values they must evaluate to with TqxOK.

#include "CalcTestSupport.h"

#include "platform/core/SysUtils.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <vector>

using namespace qv;

namespace {

struct TValueCase {
    const char* line;
    long double value;
    long double tolerance{0};
};

// A tolerance of 0 asks for the exact value; otherwise it is relative.
void ExpectValues(const std::vector<TValueCase>& cases) {
    TqCalc calc(nullptr);
    calc.SetPushResult(false);
    for (const TValueCase& c : cases) {
        const TCalcOutcome r = Evaluate(calc, c.line);
        EXPECT_EQ(r.code, TqxOK) << c.line;
        const long double allowed = c.tolerance * std::max(1.0L, std::fabs(c.value));
        EXPECT_LE(std::fabs(r.value - c.value), allowed) << c.line << " gave " << r.value;
    }
}

long double AsDouble(long double v) {
    return static_cast<double>(v);
}

} // namespace

TEST(CalcLanguage, Numbers) {
    ExpectValues({{"12.5", 12.5L},
                  {"12,5", 12.5L},
                  {".5", 0.5L},
                  {"5.", 5},
                  {"007", 7},
                  {"1 2", 1}, // Tal does not skip spaces
                  {"1E5", 1}, // no exponent notation: E5 is ignored text
                  {"12 . 5", 12},
                  {"0.1", AsDouble(0.1L)},
                  {"123456789012345678901", AsDouble(123456789012345678901.0L)}});
}

TEST(CalcLanguage, FactorsAreRoundedToDoublesWhileTermsStayExtended) {
    ExpectValues({{"(1/3)", AsDouble(1.0L / 3)}, {"1/3", 1.0L / 3}, {"10^400", 1e400L, 1e-15L}});
}

TEST(CalcLanguage, IdentifiersIgnoreCaseAndEndAtADigit) {
    ExpectValues({{"pi", AsDouble(3.141592653589793L)},
                  {"Pi*2", AsDouble(6.283185307179586L)},
                  {"e", AsDouble(std::exp(1.0L))},
                  {"E5", AsDouble(std::exp(1.0L))},
                  {"sIn(0)", 0},
                  {"A(5)", 0}});
}

TEST(CalcLanguage, ProductsQuotientsAndPowersBindAlikeFromLeftToRight) {
    ExpectValues({{"2*3^2", 36, 1e-13L},
                  {"2^3^2", 64, 1e-13L},
                  {"8/2/2", 2},
                  {"10-2*3", 4},
                  {"1-2-3", -4},
                  {"2*(3+4)", 14},
                  {"-2^2", -4, 1e-15L},
                  {"-2*3-1", -7},
                  {" - 3+5", 2},
                  {"2*(-3)", -6},
                  {"2^0", 1},
                  {"0^0", 0},
                  {"0^2", 0},
                  {"(0-2)^2", 4, 1e-15L},
                  {"(0-2)^3", 8, 1e-15L},
                  {"(0-4)^0.5", 2, 1e-15L},
                  {"2)", 2},
                  {"2 3", 2},
                  {"1+2\r+3", 3}});
}

TEST(CalcLanguage, Functions) {
    ExpectValues({{"EXP(1)", std::exp(1.0L), 1e-15L},
                  {"SIN(PI/2)", 1, 1e-15L},
                  {"SIN(0-0.5)", std::sin(-0.5L), 1e-16L},
                  {"SIN(3)", std::sin(3.0L), 1e-16L},
                  {"COS(PI)", -1, 1e-15L},
                  {"COS(0.5)", std::cos(0.5L), 1e-16L},
                  {"ARCTAN(1)*4", M_PI, 1e-15L},
                  {"ARCSIN(0.5)", M_PI / 6, 1e-15L},
                  {"ARCCOS(0-0.5)", -1.0471975511965976L, 1e-15L},
                  {"LN(E)", 1, 1e-15L},
                  {"LN(1.1)", std::log(1.1L), 1e-16L},
                  {"LOG(1000)", 3, 1e-15L},
                  {"ABS(0-3)", 3},
                  {"FRAC(0-2.5)", -0.5L},
                  {"SQR(0-3)", 9},
                  {"SQRT(16)", 4},
                  {"SQRT(0)", 0}});
}

TEST(CalcLanguage, RoundingFunctionsGoThroughSixtyFourBitIntegers) {
    ExpectValues({{"ROUND(2.5)", 2},
                  {"ROUND(3.5)", 4},
                  {"ROUND(0-2.5)", -2},
                  {"ROUND(2.51)", 3},
                  {"TRUNC(0-2.7)", -2},
                  {"CEILING(0-1.5)", -1},
                  {"CEILING(1.2)", 2},
                  {"CEILING(2)", 2},
                  {"FLOOR(0-1.5)", -2},
                  {"FLOOR(2)", 2},
                  {"FLOOR(2.9)", 2},
                  {"TRUNC(4611686018427387904)", 4611686018427387904.0L}});
}

TEST(CalcLanguage, RandomUsesTheProcessWideGenerator) {
    TqCalc calc(nullptr);
    const auto drawn = [&](const char* line, std::uint32_t seed) {
        SetRandSeed(seed);
        return Evaluate(calc, line).value;
    };
    SetRandSeed(1234);
    const int integer = Random(10);
    EXPECT_EQ(drawn("RANDOM(10)", 1234), integer);
    SetRandSeed(99);
    const double real = Random();
    EXPECT_EQ(drawn("RANDOM(0)", 99), real);
    // The rounded argument keeps its low 32 bits: 2^32 + 10 draws like 10.
    EXPECT_EQ(drawn("RANDOM(4294967306)", 1234), integer);
    EXPECT_EQ(drawn("RANDOM(0-5)", 1), 0);
    for (std::uint32_t seed = 0; seed < 100; ++seed) {
        const long double r = drawn("RANDOM(2.5)", seed); // rounds to 2
        EXPECT_TRUE(r == 0 || r == 1) << r;
    }
}
