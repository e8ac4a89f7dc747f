#pragma once
// TqCalc: a non-visual component that evaluates an arithmetic expression given as text.
// Writing CalcLine evaluates it at once; the component keeps the result, nine result
// registers (A B C D F G H I J; there is no register E) and a result code, and reports the
// outcome through OnOK or OnError. It never raises for a bad expression.
//
// The language: unsigned decimal numbers ("." or "," before the decimals), + - * / ^ and
// parentheses, the registers, the constants PI and E, eighteen built-in functions and user
// functions supplied through OnFindUserFunc and OnUserFunc. Letters in either case. The
// quirks are deliberate: "*", "/" and "^" bind alike, left to right (2*3^2 is 36); a leading
// "-" negates the first term after its products (-2^2 is -4); there is no unary minus inside
// a term (2*-3 fails); reading stops at the first character that cannot continue the
// expression and the rest of the line is ignored (2 3 is 2).
//
// Values are carried in 80-bit extended precision (long double); every factor is stored as a
// double before it is used. Arithmetic faults (overflow, invalid operations) are detected from
// the results and end the evaluation with TqxOverFlow.

#include "platform/core/ClassBuilder.h"
#include "platform/core/Component.h"
#include "platform/core/TypeInfo.h"

#include <array>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

namespace qv {

enum class TqCalcResult : std::uint8_t {
    TqxOK,
    TqxNumberMissing,   // a number was expected and no digit was found
    TqxFunctionMissing, // an identifier that names nothing known or accepted
    TqxLeftPar,         // a function with an argument not followed by "("
    TqxRightPar,        // a parenthesised expression not closed by ")"
    TqxDivZero,         // division by exactly 0; domain errors of ARCSIN ARCCOS LN LOG SQRT
    TqxOverFlow,        // an arithmetic fault during evaluation
    TqxFormatError      // set only while OnError runs for a failed Number/RegisterX read
};
using enum TqCalcResult;
QV_ENUM_TYPE(TqCalcResult, "TqxOK", "TqxNumberMissing", "TqxFunctionMissing", "TqxLeftPar",
             "TqxRightPar", "TqxDivZero", "TqxOverFlow", "TqxFormatError")

// The identifier numbers; qA..qRandom index the name table, qUser marks a user function.
enum class FuncFunc : std::uint8_t {
    qA,
    qB,
    qC,
    qD,
    qF,
    qG,
    qH,
    qI,
    qJ,
    qPI,
    qE,
    qExp,
    qSin,
    qCos,
    qArcTan,
    qAbs,
    qFrac,
    qArcSin,
    qArcCos,
    qLN,
    qLog,
    qSQR,
    qSQRT,
    qRound,
    qTrunc,
    qCeiling,
    qFloor,
    qRandom,
    qUser
};
using enum FuncFunc;

using TCalcErrorEvent =
    std::function<void(TObject* Sender, const std::string& CalcLine, std::uint8_t Where)>;
// True accepts FuncName as a user function.
using TFindUserFunc = std::function<bool(TObject* Sender, const std::string& FuncName)>;
// The value of user function FuncName for the argument FuncValue.
using TUserFunc =
    std::function<long double(TObject* Sender, const std::string& FuncName, long double FuncValue)>;
QV_EVENT_TYPE(TCalcErrorEvent)
QV_EVENT_TYPE(TFindUserFunc)
QV_EVENT_TYPE(TUserFunc)

class TqCalc : public TComponent {
    QV_OBJECT
public:
    // The registers in order, 1 to 9 (A is 1).
    static constexpr std::string_view RegisterNames = "ABCDFGHIJ";
    static constexpr int RegisterCount = 9;
    // Longer lines are cut to their first MaxLineLength characters.
    static constexpr std::size_t MaxLineLength = 254;
    struct Defaults {
        static constexpr bool PushResult = true;
        static constexpr TqCalcResult CalcResult = TqxOK;
        static constexpr int Position = 1; // published as WhereIsLastError
    };

    explicit TqCalc(TComponent* AOwner);

    // The expression without its end mark. Writing it evaluates it (an empty text evaluates
    // "0"), pushes the result onto the registers when PushResult is set, whatever the result
    // code, and fires OnOK or OnError.
    std::string CalcLine() const;
    void SetCalcLine(std::string_view S);

    TqCalcResult CalcResult() const { return m_calcResult; }
    // 1-based index of the character where reading stopped (just past an offending token);
    // the 8-bit counter wraps, so one past the end mark of a 254-character line shows 0.
    std::uint8_t WhereIsLastError() const { return static_cast<std::uint8_t>(m_position); }

    bool PushResult() const { return m_pushResult; }
    void SetPushResult(bool value) { m_pushResult = value; }

    // Format text with one floating-point placeholder for Number and RegisterX; empty means
    // "%e". Setting it re-formats nothing.
    const std::string& FormatLine() const { return m_formatLine; }
    void SetFormatLine(const std::string& value) { m_formatLine = value; }

    long double NumberNum() const { return m_number; }
    // The number formatted through FormatLine. When formatting fails, OnError runs with
    // CalcResult showing TqxFormatError, the format line and position 0; then the result
    // code is restored and the text is empty.
    std::string Number() const { return FormatValue(m_number); }

    // Registers by index 1..9 (A B C D F G H I J); writing one does not evaluate.
    long double RegisterNum(int index) const { return m_registers.at(RegisterSlot(index)); }
    void SetRegisterNum(int index, long double value) {
        m_registers.at(RegisterSlot(index)) = value;
    }
    std::string RegisterText(int index) const { return FormatValue(RegisterNum(index)); }

    TFindUserFunc OnFindUserFunc;
    TUserFunc OnUserFunc;
    TCalcErrorEvent OnError;
    TNotifyEvent OnOK;

private:
    // A short text of at most 10 characters: the identifier FuncNr read last.
    struct TFuncName {
        std::array<char, 10> chars{};
        std::uint8_t length{0};
        std::string_view View() const { return {chars.data(), length}; }
    };

    static std::size_t RegisterSlot(int index) { return static_cast<std::size_t>(index - 1); }

    // Defined inline in TqCalc.cpp, the only file that calls them (see there).
    inline void StoreLine(std::string_view text);
    inline long double Evaluate();
    inline void PushRegisters(long double value);
    inline void FireEvents();
    std::string FormatValue(long double value) const;
    void ReportFormatError() const;
    inline void SetError(TqCalcResult code);
    // The character at a 1-based position; zero beyond the buffer.
    inline char At(int position) const;

    // The recursive-descent evaluator.
    inline char NaesteTegn();
    inline long double Tal();
    inline FuncFunc FuncNr();
    inline long double Parantes();
    // The factor's value, rounded to a double.
    inline long double Faktor();
    inline long double Identifier();
    inline long double FunctionValue(FuncFunc n, long double x);
    inline long double IntegerFunction(FuncFunc n, long double x);
    inline long double UserFunction(const TFuncName& name, long double argument);
    inline long double Led();
    inline long double Udtryk();

    // Mutable only so that a failed format can show TqxFormatError to OnError during a read.
    mutable TqCalcResult m_calcResult{Defaults::CalcResult};
    bool m_pushResult{Defaults::PushResult};
    // The calc line and its end mark (code 13), then zeros: reading past the end mark after
    // an error (at most one character) finds a zero that stops every rule.
    std::array<char, MaxLineLength + 4> m_line{};
    std::size_t m_lineLength{0};
    // Widened from the classic 8-bit counter; WhereIsLastError shows its low 8 bits.
    int m_position{Defaults::Position};
    long double m_number{0};
    std::string m_formatLine;
    std::array<long double, RegisterCount> m_registers{};
    TFuncName m_funcName;
};

} // namespace qv
