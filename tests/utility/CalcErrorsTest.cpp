// Result codes and the position where reading stopped.

#include "CalcTestSupport.h"

#include <gtest/gtest.h>

#include <string>

using namespace qv;

namespace {

class CalcErrors : public ::testing::Test {
protected:
    void Expect(std::string_view line, TqCalcResult code, int where) {
        const TCalcOutcome r = Evaluate(calc, line);
        EXPECT_EQ(r.code, code) << line;
        EXPECT_EQ(r.where, where) << line;
    }

    TqCalc calc{nullptr};
};

} // namespace

TEST_F(CalcErrors, AnEmptyLineEvaluatesZeroButSpacesDoNot) {
    Expect("", TqxOK, 2);
    EXPECT_EQ(calc.CalcLine(), "0");
    Expect("   ", TqxNumberMissing, 4);
    EXPECT_EQ(calc.CalcLine(), "   ");
}

TEST_F(CalcErrors, ThePositionIsWhereReadingStoppedAfterSuccessToo) {
    Expect("1+2", TqxOK, 4);
    Expect("1+2   ", TqxOK, 7);
    Expect("2)", TqxOK, 2);
}

TEST_F(CalcErrors, MissingParenthesesAndNumbers) {
    Expect("SIN 0", TqxLeftPar, 6);
    Expect("SIN(0", TqxRightPar, 7);
    Expect("(2", TqxRightPar, 4); // one past the end mark
    Expect("2*X1", TqxFunctionMissing, 4);
    Expect("2*-3", TqxNumberMissing, 3);
    Expect(".", TqxNumberMissing, 2);
    Expect("(", TqxNumberMissing, 2);
}

TEST_F(CalcErrors, DivisionByExactlyZero) {
    Expect("1/0", TqxDivZero, 4);
    Expect("1/(0.5-0.5)", TqxDivZero, 12);
    EXPECT_EQ(calc.NumberNum(), 1.0L); // the left operand stays
    Expect("0/0", TqxDivZero, 4);
    Expect("1/0.0000001", TqxOK, 12);
}

TEST_F(CalcErrors, DomainErrorsOfFunctionsReportDivisionByZero) {
    for (const char* line : {"ARCSIN(1)", "ARCSIN(0-1)", "ARCCOS(1)", "ARCCOS(2)", "LN(0)",
                             "LN(0-1)", "LOG(0)", "SQRT(0-1)"}) {
        EXPECT_EQ(Evaluate(calc, line).code, TqxDivZero) << line;
        EXPECT_EQ(calc.NumberNum(), 0.0L) << line;
    }
}

TEST_F(CalcErrors, ArithmeticFaultsEndTheEvaluationAtOnce) {
    Expect("EXP(100000)", TqxOverFlow, 12);
    Expect("EXP(100000) + 1", TqxOverFlow, 12); // the space is not skipped any more
    Expect("ARCCOS(0)", TqxOverFlow, 10);       // divides by zero inside the function
    Expect("(10^400)", TqxOverFlow, 9);         // a factor beyond the double range
    Expect("RANDOM(10^20)", TqxOverFlow, 14);
    EXPECT_EQ(calc.NumberNum(), 0.0L);
}

TEST_F(CalcErrors, ExtendedOverflowInEveryOperatorIsAFault) {
    Expect("10^4932", TqxOK, 8);
    Expect("10^4932*2", TqxOverFlow, 10);
    Expect("10^4932/0.5", TqxOverFlow, 12);
    Expect("10^4932+10^4932", TqxOverFlow, 16);
    Expect("0-10^4932-10^4932", TqxOverFlow, 18);
    Expect("10^5000", TqxOverFlow, 8);
}

TEST_F(CalcErrors, RoundingFunctionsCatchTheirFaultAndWindDown) {
    // The fault is caught inside the function: the value is 0, pending operators still
    // combine it, and trailing spaces are skipped as after any other error.
    Expect("ROUND(10^20) + 1", TqxOverFlow, 14);
    Expect("5+TRUNC(0-10^19)", TqxOverFlow, 17);
    EXPECT_EQ(calc.NumberNum(), 5.0L);
    Expect("CEILING(10^19)", TqxOverFlow, 15);
    Expect("FLOOR(0-10^19)", TqxOverFlow, 15);
    Expect("TRUNC(9223372036854775807)", TqxOverFlow, 27); // 2^63 as a double
}

TEST_F(CalcErrors, TheFirstErrorStays) {
    Expect("LN(", TqxNumberMissing, 4);       // LN(0) would be a domain error
    Expect("1/(2*Y)", TqxFunctionMissing, 7); // the division by 0 follows the error
    Expect("LN(0-Z)", TqxFunctionMissing, 7); // and so does LN's domain error
}

TEST_F(CalcErrors, AFaultOverridesAnEarlierCode) {
    // 1/0 leaves 99999; EXP of it overflows while the factor is stored.
    Expect("EXP(99999*1/0)", TqxOverFlow, 14);
}

TEST_F(CalcErrors, LongLinesAreCutTo254Characters) {
    const std::string line = std::string(250, ' ') + "12345678"; // 258 characters
    Expect(line, TqxOK, 255);
    EXPECT_EQ(calc.NumberNum(), 1234.0L);
    EXPECT_EQ(calc.CalcLine(), line.substr(0, 254));
}

TEST_F(CalcErrors, ThePositionPastTheEndOfAFullLineWrapsToZero) {
    Expect("(" + std::string(253, '1'), TqxRightPar, 0);
    Expect("SIN" + std::string(251, ' '), TqxLeftPar, 0);
}

TEST_F(CalcErrors, ControlAndHighCharactersAreJustUnexpected) {
    Expect(std::string("1+\0"
                       "2",
                       4),
           TqxNumberMissing, 3);
    Expect("\t1", TqxNumberMissing, 1); // only code 32 is a space
    Expect("\xC3\xA9", TqxNumberMissing, 1);
}
