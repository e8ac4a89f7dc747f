// Result codes and the position where reading stopped, each group a table of lines.

#include "CalcTestSupport.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

using namespace qv;

namespace {

struct TErrorCase {
    std::string line;
    TqCalcResult code;
    int where;
};

void ExpectCodes(const std::vector<TErrorCase>& cases, TqCalc& calc) {
    for (const TErrorCase& c : cases) {
        const TCalcOutcome r = Evaluate(calc, c.line);
        EXPECT_EQ(r.code, c.code) << c.line;
        EXPECT_EQ(r.where, c.where) << c.line;
    }
}

void ExpectCodes(const std::vector<TErrorCase>& cases) {
    TqCalc calc(nullptr);
    ExpectCodes(cases, calc);
}

} // namespace

TEST(CalcErrors, ThePositionIsWhereReadingStoppedAfterSuccessToo) {
    TqCalc calc(nullptr);
    ExpectCodes({{"", TqxOK, 2}, {"1+2", TqxOK, 4}, {"1+2   ", TqxOK, 7}, {"2)", TqxOK, 2}}, calc);
    EXPECT_EQ(calc.CalcLine(), "2)");
    calc.SetCalcLine("");
    EXPECT_EQ(calc.CalcLine(), "0"); // an empty line evaluates "0"
}

TEST(CalcErrors, MissingParenthesesNumbersAndFunctions) {
    ExpectCodes({{"   ", TqxNumberMissing, 4}, // spaces only are not empty
                 {"SIN 0", TqxLeftPar, 6},
                 {"SIN(0", TqxRightPar, 7},
                 {"(2", TqxRightPar, 4}, // one past the end mark
                 {"2*X1", TqxFunctionMissing, 4},
                 {"E_", TqxFunctionMissing, 3}, // underscores belong to the identifier
                 {"_A", TqxNumberMissing, 1},   // an identifier begins with a letter
                 {"2*-3", TqxNumberMissing, 3}, // no unary minus inside a term
                 {"+2", TqxNumberMissing, 1},   // no unary plus
                 {".", TqxNumberMissing, 2},
                 {"(", TqxNumberMissing, 2},
                 {"\t1", TqxNumberMissing, 1}, // only code 32 is a space
                 {std::string("1+\0"
                              "2",
                              4),
                  TqxNumberMissing, 3}});
}

TEST(CalcErrors, DivisionByExactlyZeroAndDomainErrors) {
    TqCalc calc(nullptr);
    ExpectCodes({{"1/(0.5-0.5)", TqxDivZero, 12}}, calc);
    EXPECT_EQ(calc.NumberNum(), 1.0L); // the left operand stays
    ExpectCodes({{"1/0", TqxDivZero, 4},
                 {"0/0", TqxDivZero, 4},
                 {"1/0.0000001", TqxOK, 12},
                 {"ARCSIN(1)", TqxDivZero, 10},
                 {"ARCSIN(0-1)", TqxDivZero, 12},
                 {"ARCCOS(1)", TqxDivZero, 10},
                 {"ARCCOS(2)", TqxDivZero, 10},
                 {"LN(0)", TqxDivZero, 6},
                 {"LOG(0-1)", TqxDivZero, 9},
                 {"SQRT(0-1)", TqxDivZero, 10}},
                calc);
    EXPECT_EQ(calc.NumberNum(), 0.0L);
}

TEST(CalcErrors, ArithmeticFaultsEndTheEvaluationAtOnce) {
    TqCalc calc(nullptr);
    ExpectCodes({{"EXP(100000)", TqxOverFlow, 12},
                 {"EXP(100000) + 1", TqxOverFlow, 12}, // the space is not skipped any more
                 {"ARCCOS(0)", TqxOverFlow, 10},       // divides by zero inside the function
                 {"(10^400)", TqxOverFlow, 9},         // a factor beyond the double range
                 {"RANDOM(10^20)", TqxOverFlow, 14},
                 {"10^4932", TqxOK, 8}, // a term may use the whole extended range
                 {"10^4932*2", TqxOverFlow, 10},
                 {"10^4932/0.5", TqxOverFlow, 12},
                 {"10^4932+10^4932", TqxOverFlow, 16},
                 {"0-10^4932-10^4932", TqxOverFlow, 18},
                 {"10^5000", TqxOverFlow, 8},
                 {"EXP(99999*1/0)", TqxOverFlow, 14}}, // overrides the division's code
                calc);
    EXPECT_EQ(calc.NumberNum(), 0.0L);
}

TEST(CalcErrors, RoundingFunctionsCatchTheirFaultAndWindDown) {
    // The value is 0, pending operators still combine it, and trailing spaces are skipped
    // as after any other error.
    TqCalc calc(nullptr);
    ExpectCodes({{"ROUND(10^20) + 1", TqxOverFlow, 14}, {"5+TRUNC(0-10^19)", TqxOverFlow, 17}},
                calc);
    EXPECT_EQ(calc.NumberNum(), 5.0L);
    ExpectCodes({{"CEILING(10^19)", TqxOverFlow, 15},
                 {"FLOOR(0-10^19)", TqxOverFlow, 15},
                 {"TRUNC(9223372036854775807)", TqxOverFlow, 27}}, // 2^63 as a double
                calc);
}

TEST(CalcErrors, TheFirstErrorStays) {
    ExpectCodes({{"LN(", TqxNumberMissing, 4},         // LN(0) would be a domain error
                 {"1/(2*Y)", TqxFunctionMissing, 7},   // the division by 0 follows the error
                 {"LN(0-Z)", TqxFunctionMissing, 7}}); // and so does LN's domain error
}

TEST(CalcErrors, LongLinesAreCutAndThePositionWraps) {
    TqCalc calc(nullptr);
    const std::string line = std::string(250, ' ') + "12345678"; // 258 characters
    ExpectCodes({{line, TqxOK, 255}}, calc);
    EXPECT_EQ(calc.NumberNum(), 1234.0L);
    EXPECT_EQ(calc.CalcLine(), line.substr(0, 254));
    // One past the end mark of a full line is position 256, which the byte shows as 0.
    ExpectCodes({{"(" + std::string(253, '1'), TqxRightPar, 0},
                 {"SIN" + std::string(251, ' '), TqxLeftPar, 0}},
                calc);
}
