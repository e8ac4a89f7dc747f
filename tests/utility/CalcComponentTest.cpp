// The calculator as a component: registers, formatting, events, user functions, published
// properties and form files.

#include "CalcTestSupport.h"

#include "platform/core/ClassRegistry.h"
#include "platform/core/Exceptions.h"
#include "platform/core/PropertyAccess.h"
#include "platform/streaming/Reader.h"
#include "platform/streaming/Writer.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

using namespace qv;

namespace {

std::vector<long double> Registers(const TqCalc& calc) {
    std::vector<long double> values;
    for (int i = 1; i <= TqCalc::RegisterCount; ++i)
        values.push_back(calc.RegisterNum(i));
    return values;
}

} // namespace

TEST(CalcRegisters, EachEvaluationPushesItsResult) {
    TqCalc calc(nullptr);
    for (const char* line : {"1", "2", "3", "4", "5"})
        calc.SetCalcLine(line);
    EXPECT_EQ(Registers(calc), (std::vector<long double>{5, 4, 3, 2, 1, 0, 0, 0, 0}));
    for (const char* line : {"6", "7", "8", "9", "10"})
        calc.SetCalcLine(line);
    EXPECT_EQ(Registers(calc), (std::vector<long double>{10, 9, 8, 7, 6, 5, 4, 3, 2}));
}

TEST(CalcRegisters, FailedEvaluationsPushToo) {
    TqCalc calc(nullptr);
    calc.SetCalcLine("7/0"); // the division leaves 7
    calc.SetCalcLine("X");
    calc.SetCalcLine("EXP(99999)");
    EXPECT_EQ(Registers(calc), (std::vector<long double>{0, 0, 7, 0, 0, 0, 0, 0, 0}));
    EXPECT_EQ(calc.NumberNum(), 0.0L);
}

TEST(CalcRegisters, NoPushWhenSwitchedOff) {
    TqCalc calc(nullptr);
    calc.SetCalcLine("3");
    calc.SetPushResult(false);
    calc.SetCalcLine("4");
    EXPECT_EQ(calc.RegisterNum(1), 3.0L);
    EXPECT_EQ(calc.NumberNum(), 4.0L);
}

TEST(CalcRegisters, ExpressionsReadRegistersAsDoubles) {
    TqCalc calc(nullptr);
    calc.SetCalcLine("21");
    calc.SetCalcLine("a*2+b");
    EXPECT_EQ(calc.NumberNum(), 42.0L + 0);
    calc.SetRegisterNum(9, 1.0L / 3.0L);
    calc.SetCalcLine("J");
    EXPECT_EQ(calc.NumberNum(), static_cast<long double>(1.0 / 3.0));
    calc.SetRegisterNum(2, 1e400L);
    EXPECT_EQ(Evaluate(calc, "B").code, TqxOverFlow);
}

TEST(CalcRegisters, WritingARegisterNeitherEvaluatesNorFires) {
    TqCalc calc(nullptr);
    int events = 0;
    calc.OnOK = [&](TObject*) { ++events; };
    calc.OnError = [&](TObject*, const std::string&, std::uint8_t) { ++events; };
    calc.SetRegisterNum(4, 2.5L);
    calc.SetFormatLine("%.1f");
    EXPECT_EQ(events, 0);
    EXPECT_EQ(calc.RegisterText(4), "2.5");
    EXPECT_EQ(calc.NumberNum(), 0.0L);
}

TEST(CalcEvents, OnlyOneEventFiresWithTheLineAndPosition) {
    TqCalc calc(nullptr);
    std::vector<std::string> seen;
    calc.OnOK = [&](TObject* sender) {
        EXPECT_EQ(sender, &calc);
        seen.push_back("ok");
    };
    calc.OnError = [&](TObject* sender, const std::string& line, std::uint8_t where) {
        EXPECT_EQ(sender, &calc);
        seen.push_back(line + "@" + std::to_string(where) + "=" +
                       std::to_string(static_cast<int>(calc.CalcResult())));
    };
    calc.SetCalcLine("");
    calc.SetCalcLine("2*X1");
    calc.SetCalcLine("(2");
    calc.SetCalcLine("(" + std::string(253, '1'));
    EXPECT_EQ(seen, (std::vector<std::string>{"ok", "2*X1@4=2", "(2@4=4",
                                              "(" + std::string(253, '1') + "@0=4"}));
    EXPECT_EQ(calc.RegisterNum(4), 0.0L); // the empty line pushed 0
}

TEST(CalcFormatting, NumberAndRegistersUseExponentFormByDefault) {
    TqCalc calc(nullptr);
    EXPECT_EQ(calc.Number(), "0.00000000000000E+000");
    calc.SetCalcLine("1");
    EXPECT_EQ(calc.Number(), "1.00000000000000E+000");
    calc.SetCalcLine("0-2.5");
    EXPECT_EQ(calc.Number(), "-2.50000000000000E+000");
    EXPECT_EQ(calc.RegisterText(1), "-2.50000000000000E+000");
    EXPECT_EQ(calc.RegisterText(2), "1.00000000000000E+000");
    EXPECT_EQ(calc.RegisterText(9), "0.00000000000000E+000");
}

TEST(CalcFormatting, AFormatLineAppliesOnTheNextRead) {
    TqCalc calc(nullptr);
    calc.SetCalcLine("PI");
    calc.SetFormatLine("%.3f rad");
    EXPECT_EQ(calc.Number(), "3.142 rad");
    EXPECT_EQ(calc.RegisterText(1), "3.142 rad");
    calc.SetFormatLine("");
    EXPECT_EQ(calc.Number(), "3.14159265358979E+000");
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
}

TEST(CalcFormatting, TheCodeIsPutBackWhenTheHandlerRaises) {
    TqCalc calc(nullptr);
    calc.SetFormatLine("%s");
    calc.OnError = [](TObject*, const std::string&, std::uint8_t) { throw EConvertError("no"); };
    EXPECT_THROW(calc.Number(), EConvertError);
    EXPECT_EQ(calc.CalcResult(), TqxOK);
    calc.OnError = nullptr;
    EXPECT_EQ(calc.Number(), "");
}

namespace {

// A calculator that knows DOUBLE, HALF and TWICE and records what the events were given.
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
    EXPECT_EQ(Evaluate(calc, "double(21)").value, 42.0L);
    EXPECT_EQ(found, std::vector<std::string>{"DOUBLE"});
    EXPECT_EQ(called, std::vector<std::string>{"DOUBLE"});
    calc.OnUserFunc = nullptr;
    EXPECT_EQ(Evaluate(calc, "DOUBLE(21)").value, 21.0L);
}

TEST_F(CalcUserFunctions, BuiltInNamesAreNotOffered) {
    calc.SetCalcLine("SQRT(4)+A");
    EXPECT_TRUE(found.empty());
}

TEST_F(CalcUserFunctions, ARejectedNameIsMissing) {
    EXPECT_EQ(Evaluate(calc, "TRIPLE(2)").code, TqxFunctionMissing);
    EXPECT_EQ(calc.WhereIsLastError(), 7);
    EXPECT_TRUE(called.empty());
}

TEST_F(CalcUserFunctions, LongNamesAreOfferedAsTheirFirstTenLetters) {
    EXPECT_EQ(Evaluate(calc, "ABCDEFGHIJKL(3)").value, 6.0L);
    EXPECT_EQ(found, std::vector<std::string>{"ABCDEFGHIJ"});
    EXPECT_EQ(called, std::vector<std::string>{"ABCDEFGHIJ"});
    EXPECT_EQ(calc.WhereIsLastError(), 16);
}

TEST_F(CalcUserFunctions, TheNameSurvivesIdentifiersInsideTheArgument) {
    EXPECT_EQ(Evaluate(calc, "TWICE(HALF(8)+PI*0)").value, 8.0L);
    EXPECT_EQ(called, (std::vector<std::string>{"HALF", "TWICE"}));
}

TEST_F(CalcUserFunctions, AUserFunctionNeedsItsParentheses) {
    EXPECT_EQ(Evaluate(calc, "DOUBLE 3").code, TqxLeftPar);
}

TEST_F(CalcUserFunctions, HandlerFaultsAreArithmeticFaults) {
    calc.OnUserFunc = [](TObject*, const std::string&, long double) -> long double {
        throw EZeroDivide("Floating point division by zero");
    };
    EXPECT_EQ(Evaluate(calc, "1+DOUBLE(1)").code, TqxOverFlow);
    calc.OnUserFunc = [](TObject*, const std::string&, long double) {
        return std::numeric_limits<long double>::infinity();
    };
    EXPECT_EQ(Evaluate(calc, "DOUBLE(1)").code, TqxOverFlow);
    calc.OnUserFunc = [](TObject*, const std::string&, long double) { return std::nanl(""); };
    EXPECT_EQ(Evaluate(calc, "DOUBLE(1)").code, TqxOverFlow);
}

TEST(CalcProperties, PublishedInTheClassicOrder) {
    TqCalc calc(nullptr);
    std::vector<std::string> names;
    for (const TPropInfo* p : GetPropList(calc))
        names.push_back(p->name);
    const std::vector<std::string> expected = {"Name",
                                               "Tag",
                                               "OnFindUserFunc",
                                               "OnUserFunc",
                                               "PushResult",
                                               "CalcResult",
                                               "WhereIsLastError",
                                               "CalcLine",
                                               "FormatLine",
                                               "Number",
                                               "RegisterA",
                                               "RegisterB",
                                               "RegisterC",
                                               "RegisterD",
                                               "RegisterF",
                                               "RegisterG",
                                               "RegisterH",
                                               "RegisterI",
                                               "RegisterJ",
                                               "RegisterANum",
                                               "RegisterBNum",
                                               "RegisterCNum",
                                               "RegisterDNum",
                                               "RegisterFNum",
                                               "RegisterGNum",
                                               "RegisterHNum",
                                               "RegisterINum",
                                               "RegisterJNum",
                                               "NumberNum",
                                               "OnError",
                                               "OnOK"};
    EXPECT_EQ(names, expected);
}

TEST(CalcProperties, DisplayOnlyPropertiesDiscardWrites) {
    TqCalc calc(nullptr);
    calc.SetCalcLine("1/0");
    for (const char* name : {"CalcResult", "WhereIsLastError", "Number", "RegisterA", "NumberNum"})
        EXPECT_TRUE(GetPropInfo(calc, name).displayOnly) << name;
    EXPECT_FALSE(GetPropInfo(calc, "RegisterANum").displayOnly);
    EXPECT_EQ(GetPropInfo(calc, "CalcResult").type->name, "TqCalcResult");
    EXPECT_EQ(GetPropInfo(calc, "WhereIsLastError").type->name, "Byte");
    EXPECT_EQ(GetPropInfo(calc, "NumberNum").type->name, "Extended");

    SetPropText(calc, "CalcResult", "TqxOK");
    SetPropText(calc, "WhereIsLastError", "9");
    SetPropText(calc, "NumberNum", "5");
    SetPropText(calc, "Number", "'5'");
    EXPECT_EQ(calc.CalcResult(), TqxDivZero);
    EXPECT_EQ(calc.WhereIsLastError(), 4);
    EXPECT_EQ(calc.NumberNum(), 1.0L);
    EXPECT_EQ(GetPropText(calc, "CalcResult"), "TqxDivZero");
}

TEST(CalcProperties, WritingCalcLineByNameEvaluates) {
    TqCalc calc(nullptr);
    SetPropText(calc, "CalcLine", "'6*7'");
    EXPECT_EQ(calc.NumberNum(), 42.0L);
    SetPropText(calc, "RegisterCNum", "2.5");
    EXPECT_EQ(calc.RegisterNum(3), 2.5L);
    EXPECT_EQ(GetPropText(calc, "Number"), "'4.20000000000000E+001'");
}

namespace {

class CalcFormFile : public ::testing::Test {
protected:
    void SetUp() override { RegisterClass(TqCalc::StaticClassInfo()); }
};

} // namespace

TEST_F(CalcFormFile, CalcLineIsEvaluatedWhileLoadingAndStoredRegistersFollow) {
    const auto root = ReadComponentText(R"(object Calc1: TqCalc
  CalcLine = '6*7'
  FormatLine = '%.1f'
  RegisterBNum = 5
end
)");
    const auto* calc = dynamic_cast<TqCalc*>(root.get());
    ASSERT_NE(calc, nullptr);
    EXPECT_EQ(calc->CalcLine(), "6*7");
    EXPECT_EQ(calc->Number(), "42.0");
    EXPECT_EQ(calc->RegisterNum(1), 42.0L); // pushed during loading
    EXPECT_EQ(calc->RegisterNum(2), 5.0L);  // the stored value, written after the push
}

TEST_F(CalcFormFile, StoredRegistersOverwriteThePushAndPushResultComesFirst) {
    const auto root = ReadComponentText(R"(object Calc1: TqCalc
  PushResult = False
  CalcLine = '2+2'
  RegisterCNum = 1.5
end
)");
    const auto* calc = dynamic_cast<TqCalc*>(root.get());
    ASSERT_NE(calc, nullptr);
    EXPECT_EQ(calc->NumberNum(), 4.0L);
    EXPECT_EQ(Registers(*calc), (std::vector<long double>{0, 0, 1.5, 0, 0, 0, 0, 0, 0}));
}

TEST_F(CalcFormFile, WritesStoredValuesOnlyAndReadsThemBack) {
    TqCalc calc(nullptr);
    calc.SetName("Calc1");
    calc.SetCalcLine("1/3");
    calc.SetCalcLine("2^10");
    calc.SetFormatLine("%g");
    const std::string text = WriteComponentText(calc);
    EXPECT_NE(text.find("CalcLine = '2^10'"), std::string::npos) << text;
    for (const char* hidden : {"CalcResult", "WhereIsLastError", "Number ", "RegisterA ",
                               "NumberNum", "RegisterCNum", "PushResult"})
        EXPECT_EQ(text.find(hidden), std::string::npos) << hidden << " in\n" << text;

    const auto root = ReadComponentText(text);
    const auto* copy = dynamic_cast<TqCalc*>(root.get());
    ASSERT_NE(copy, nullptr);
    EXPECT_EQ(Registers(*copy), Registers(calc));
    EXPECT_EQ(copy->NumberNum(), calc.NumberNum());
    EXPECT_EQ(copy->FormatLine(), "%g");
}
