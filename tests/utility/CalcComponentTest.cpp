// The calculator as a component: registers, events, formatting, user functions, published
// properties and form files.

#include "CalcTestSupport.h"

#include "platform/core/ClassRegistry.h"
#include "platform/core/Exceptions.h"
#include "platform/core/PropertyAccess.h"
#include "platform/streaming/Reader.h"
#include "platform/streaming/Writer.h"

#include <gtest/gtest.h>

#include <limits>
#include <vector>

using namespace qv;

namespace {

using TValues = std::vector<long double>;

TValues Registers(const TqCalc& calc) {
    TValues values;
    for (int i = 1; i <= TqCalc::RegisterCount; ++i)
        values.push_back(calc.RegisterNum(i));
    return values;
}

void EvaluateAll(TqCalc& calc, std::initializer_list<const char*> lines) {
    for (const char* line : lines)
        calc.SetCalcLine(line);
}

} // namespace

TEST(CalcRegisters, EveryEvaluationPushesItsResultUnlessSwitchedOff) {
    TqCalc calc(nullptr);
    EvaluateAll(calc, {"1", "2", "3", "4", "5"});
    EXPECT_EQ(Registers(calc), (TValues{5, 4, 3, 2, 1, 0, 0, 0, 0}));
    EvaluateAll(calc, {"6", "7", "8", "9", "10"});
    EXPECT_EQ(Registers(calc), (TValues{10, 9, 8, 7, 6, 5, 4, 3, 2}));
    EvaluateAll(calc, {"7/0", "X", "EXP(99999)"}); // failures push too; 7/0 leaves 7
    EXPECT_EQ(Registers(calc), (TValues{0, 0, 7, 10, 9, 8, 7, 6, 5}));
    calc.SetPushResult(false);
    calc.SetCalcLine("4");
    EXPECT_EQ(calc.RegisterNum(4), 10.0L);
    EXPECT_EQ(calc.NumberNum(), 4.0L);
}

TEST(CalcRegisters, ExpressionsReadThemAsDoublesAndWritesDoNotEvaluate) {
    TqCalc calc(nullptr);
    int events = 0;
    calc.OnOK = [&](TObject*) { ++events; };
    EvaluateAll(calc, {"21", "a*2+b"});
    EXPECT_EQ(calc.NumberNum(), 42.0L);
    calc.SetRegisterNum(9, 1.0L / 3);
    calc.SetRegisterNum(2, 1e400L);
    EXPECT_EQ(events, 2);
    EXPECT_EQ(calc.NumberNum(), 42.0L);
    calc.SetCalcLine("J");
    EXPECT_EQ(calc.NumberNum(), static_cast<long double>(1.0 / 3));
    EXPECT_EQ(Evaluate(calc, "C").code, TqxOverFlow); // the push moved B to C
}

TEST(CalcEvents, OnlyOneEventFiresWithTheLineAndPosition) {
    TqCalc calc(nullptr);
    std::vector<std::string> seen;
    calc.OnOK = [&](TObject* sender) { seen.push_back(sender == &calc ? "ok" : "?"); };
    calc.OnError = [&](TObject* sender, const std::string& line, std::uint8_t where) {
        EXPECT_EQ(sender, &calc);
        seen.push_back(line + "@" + std::to_string(where) + "=" +
                       std::to_string(static_cast<int>(calc.CalcResult())));
    };
    const std::string full = "(" + std::string(253, '1');
    for (const std::string& line : {std::string(), std::string("2*X1"), full})
        calc.SetCalcLine(line);
    EXPECT_EQ(seen, (std::vector<std::string>{"ok", "2*X1@4=2", full + "@0=4"}));
}

TEST(CalcFormatting, NumberAndRegistersGoThroughTheFormatLine) {
    TqCalc calc(nullptr);
    EXPECT_EQ(calc.Number(), "0.00000000000000E+000");
    EvaluateAll(calc, {"PI", "0-2.5"});
    EXPECT_EQ(calc.Number(), "-2.50000000000000E+000");
    EXPECT_EQ(calc.RegisterText(2), "3.14159265358979E+000");
    EXPECT_EQ(calc.RegisterText(9), "0.00000000000000E+000");
    calc.SetFormatLine("%.3f rad");
    EXPECT_EQ(calc.RegisterText(2), "3.142 rad");
}

TEST(CalcFormatting, AnUnusableFormatIsReportedThroughOnError) {
    TqCalc calc(nullptr);
    calc.SetCalcLine("1/0");
    std::vector<std::string> seen;
    calc.OnError = [&](TObject* sender, const std::string& line, std::uint8_t where) {
        EXPECT_EQ(sender, &calc);
        EXPECT_EQ(calc.CalcResult(), TqxFormatError);
        seen.push_back(line + "@" + std::to_string(where));
    };
    calc.SetFormatLine("%d");
    EXPECT_EQ(calc.Number(), "");
    EXPECT_EQ(calc.RegisterText(3), "");
    EXPECT_EQ(seen, (std::vector<std::string>{"%d@0", "%d@0"}));
    EXPECT_EQ(calc.CalcResult(), TqxDivZero); // put back after the event
    calc.OnError = [](TObject*, const std::string&, std::uint8_t) { throw EConvertError("no"); };
    EXPECT_THROW(calc.Number(), EConvertError);
    EXPECT_EQ(calc.CalcResult(), TqxDivZero); // put back when the handler raises too
}

namespace {

// A calculator that knows DOUBLE, HALF, TWICE and ABCDEFGHIJ and records the events' names.
class CalcUserFunctions : public ::testing::Test {
protected:
    void SetUp() override {
        calc.OnFindUserFunc = [this](TObject* sender, const std::string& name) {
            EXPECT_EQ(sender, &calc);
            found.push_back(name);
            return name == "DOUBLE" || name == "HALF" || name == "TWICE" || name == "ABCDEFGHIJ";
        };
        calc.OnUserFunc = [this](TObject* sender, const std::string& name, long double x) {
            EXPECT_EQ(sender, &calc);
            called.push_back(name);
            return name == "HALF" ? x / 2 : x * 2;
        };
    }

    TqCalc calc{nullptr};
    std::vector<std::string> found, called;
};

} // namespace

TEST_F(CalcUserFunctions, AnAcceptedNameIsCalledWithItsArgument) {
    EXPECT_EQ(Evaluate(calc, "double(21)+SQRT(4)+A").value, 44.0L); // A holds 0
    EXPECT_EQ(found, std::vector<std::string>{"DOUBLE"}); // built-in names are not offered
    EXPECT_EQ(called, std::vector<std::string>{"DOUBLE"});
    calc.OnUserFunc = nullptr;
    EXPECT_EQ(Evaluate(calc, "DOUBLE(21)").value, 21.0L);
}

TEST_F(CalcUserFunctions, RejectedNamesAreMissingAndAcceptedOnesNeedParentheses) {
    EXPECT_EQ(Evaluate(calc, "TRIPLE(2)").code, TqxFunctionMissing);
    EXPECT_EQ(calc.WhereIsLastError(), 7);
    EXPECT_EQ(Evaluate(calc, "DOUBLE 3").code, TqxLeftPar);
    // The function is still computed, on the argument 0, as every function after Parantes.
    EXPECT_EQ(called, std::vector<std::string>{"DOUBLE"});
}

TEST_F(CalcUserFunctions, NamesAreCutToTenLettersAndSurviveTheArgument) {
    EXPECT_EQ(Evaluate(calc, "ABCDEFGHIJKL(3)").value, 6.0L);
    EXPECT_EQ(calc.WhereIsLastError(), 16);
    EXPECT_EQ(Evaluate(calc, "TWICE(HALF(8)+PI*0)").value, 8.0L);
    EXPECT_EQ(called, (std::vector<std::string>{"ABCDEFGHIJ", "HALF", "TWICE"}));
}

TEST_F(CalcUserFunctions, HandlerFaultsAreArithmeticFaults) {
    calc.OnUserFunc = [](TObject*, const std::string&, long double) -> long double {
        throw EZeroDivide("Floating point division by zero");
    };
    EXPECT_EQ(Evaluate(calc, "1+DOUBLE(1)").code, TqxOverFlow);
    for (const long double bad : {std::numeric_limits<long double>::infinity(),
                                  std::numeric_limits<long double>::quiet_NaN()}) {
        calc.OnUserFunc = [bad](TObject*, const std::string&, long double) { return bad; };
        EXPECT_EQ(Evaluate(calc, "DOUBLE(1)").code, TqxOverFlow);
    }
}

TEST(CalcProperties, PublishedInTheClassicOrder) {
    TqCalc calc(nullptr);
    std::vector<std::string> names;
    for (const TPropInfo* p : GetPropList(calc))
        names.push_back(p->name);
    std::vector<std::string> expected = {
        "Name",       "Tag",        "OnFindUserFunc",   "OnUserFunc",
        "PushResult", "CalcResult", "WhereIsLastError", "CalcLine",
        "FormatLine", "Number"};
    for (const char* suffix : {"", "Num"})
        for (const char r : TqCalc::RegisterNames)
            expected.push_back(std::string("Register") + r + suffix);
    expected.insert(expected.end(), {"NumberNum", "OnError", "OnOK"});
    EXPECT_EQ(names, expected);
}

TEST(CalcProperties, DisplayOnlyPropertiesDiscardWritesAndCalcLineEvaluates) {
    TqCalc calc(nullptr);
    SetPropText(calc, "CalcLine", "'1/0'");
    for (const char* name : {"CalcResult", "WhereIsLastError", "Number", "RegisterJ", "NumberNum"})
        EXPECT_TRUE(GetPropInfo(calc, name).displayOnly) << name;
    EXPECT_EQ(GetPropInfo(calc, "CalcResult").type->name, "TqCalcResult");
    EXPECT_EQ(GetPropInfo(calc, "WhereIsLastError").type->name, "Byte");
    EXPECT_EQ(GetPropInfo(calc, "NumberNum").type->name, "Extended");
    SetPropText(calc, "CalcResult", "TqxOK");
    SetPropText(calc, "WhereIsLastError", "9");
    SetPropText(calc, "NumberNum", "5");
    EXPECT_EQ(GetPropText(calc, "CalcResult"), "TqxDivZero");
    EXPECT_EQ(calc.WhereIsLastError(), 4);
    EXPECT_EQ(GetPropText(calc, "Number"), "'1.00000000000000E+000'");
    SetPropText(calc, "RegisterCNum", "2.5");
    EXPECT_EQ(calc.RegisterNum(3), 2.5L);
}

namespace {

class CalcFormFile : public ::testing::Test {
protected:
    void SetUp() override { RegisterClass(TqCalc::StaticClassInfo()); }

    static std::unique_ptr<TqCalc> Read(const std::string& text) {
        std::unique_ptr<TComponent> root = ReadComponentText(text);
        auto* calc = dynamic_cast<TqCalc*>(root.get());
        if (calc) root.release();
        return std::unique_ptr<TqCalc>(calc);
    }
};

} // namespace

TEST_F(CalcFormFile, CalcLineIsEvaluatedWhileLoadingAndStoredRegistersFollow) {
    const auto calc = Read("object Calc1: TqCalc\n  CalcLine = '6*7'\n  FormatLine = '%.1f'\n"
                           "  RegisterBNum = 5\nend\n");
    ASSERT_NE(calc, nullptr);
    EXPECT_EQ(calc->Number(), "42.0");
    EXPECT_EQ(Registers(*calc), (TValues{42, 5, 0, 0, 0, 0, 0, 0, 0})); // pushed, then stored
    const auto quiet = Read("object Calc1: TqCalc\n  PushResult = False\n  CalcLine = '2+2'\n"
                            "  RegisterCNum = 1.5\nend\n");
    ASSERT_NE(quiet, nullptr);
    EXPECT_EQ(quiet->NumberNum(), 4.0L);
    EXPECT_EQ(Registers(*quiet), (TValues{0, 0, 1.5, 0, 0, 0, 0, 0, 0}));
}

TEST_F(CalcFormFile, WritesStoredValuesOnlyAndReadsThemBack) {
    TqCalc calc(nullptr);
    calc.SetName("Calc1");
    EvaluateAll(calc, {"1/3", "2^10"});
    calc.SetFormatLine("%g");
    const std::string text = WriteComponentText(calc);
    EXPECT_NE(text.find("CalcLine = '2^10'"), std::string::npos) << text;
    for (const char* hidden : {"CalcResult", "WhereIsLastError", "Number ", "RegisterA ",
                               "NumberNum", "RegisterCNum", "PushResult"})
        EXPECT_EQ(text.find(hidden), std::string::npos) << hidden << " in\n" << text;
    const auto copy = Read(text);
    ASSERT_NE(copy, nullptr);
    EXPECT_EQ(Registers(*copy), Registers(calc));
    EXPECT_EQ(copy->NumberNum(), calc.NumberNum());
    EXPECT_EQ(copy->FormatLine(), "%g");
}
