#include "TqCalc.h"

#include "ExtendedMath.h"
#include "MathHelpers.h"

#include "platform/core/Exceptions.h"
#include "platform/core/SysUtils.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>

namespace qv {

namespace {

constexpr char kEndMark = '\r';

// The identifiers FuncNr knows, in the order of FuncFunc (qUser has no entry).
constexpr std::array<std::string_view, 28> kFunctionNames = {
    "A",   "B",   "C",    "D",     "F",      "G",       "H",     "I",      "J",      "PI",
    "E",   "EXP", "SIN",  "COS",   "ARCTAN", "ABS",     "FRAC",  "ARCSIN", "ARCCOS", "LN",
    "LOG", "SQR", "SQRT", "ROUND", "TRUNC",  "CEILING", "FLOOR", "RANDOM"};

// PI as the calculator knows it: the double nearest to pi.
constexpr double kPi = 3.141592653589793;
// Half-way between the largest double and 2^1024: extended values at or beyond it round to
// infinity when stored as a double.
constexpr long double kDoubleOverflow = 0x1.fffffffffffff8p+1023L;
constexpr long double kInt64Limit = 0x1p+63L;

// An arithmetic fault (overflow, invalid operation, division by zero not caught by the
// explicit test) that ends the evaluation at once with TqxOverFlow. Thrown only on bad input.
struct TArithmeticFault {};

bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}
bool IsLetter(char c) {
    return c >= 'A' && c <= 'Z';
}
char UpCase(char c) {
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

// The name table's entries grouped by first letter, in table order, so that a lookup compares
// a handful of names instead of all 28 (this runs for every identifier of every evaluation).
constexpr std::size_t kBucketSize = 6;
using TNameBucket = std::array<std::int8_t, kBucketSize>; // indexes into kFunctionNames, -1 ends

constexpr std::array<TNameBucket, 26> MakeNameBuckets() {
    std::array<TNameBucket, 26> buckets{};
    for (TNameBucket& bucket : buckets)
        bucket.fill(-1);
    for (std::size_t i = 0; i < kFunctionNames.size(); ++i) {
        TNameBucket& bucket = buckets[static_cast<std::size_t>(kFunctionNames[i][0] - 'A')];
        std::size_t used = 0;
        while (bucket[used] >= 0)
            ++used;
        bucket[used] = static_cast<std::int8_t>(i);
    }
    return buckets;
}
constexpr std::array<TNameBucket, 26> kNameBuckets = MakeNameBuckets();

// The table index of an upper-case name, or -1.
int FindFunctionName(std::string_view name) {
    if (name.empty() || !(name[0] >= 'A' && name[0] <= 'Z')) return -1;
    for (const std::int8_t index : kNameBuckets[static_cast<std::size_t>(name[0] - 'A')]) {
        if (index < 0) break;
        const std::string_view candidate = kFunctionNames[static_cast<std::size_t>(index)];
        if (candidate.size() != name.size()) continue;
        std::size_t same = 1;
        while (same < name.size() && candidate[same] == name[same])
            ++same;
        if (same == name.size()) return index;
    }
    return -1;
}

// A comparison rather than std::isfinite: it stays on the floating-point stack instead of
// spilling the 80-bit value to memory to look at its bits. NaN fails the comparison too.
long double Checked(long double value) {
    if (!(std::fabs(value) <= std::numeric_limits<long double>::max())) throw TArithmeticFault{};
    return value;
}

long double Checked(const TFloatResult& result) {
    if (result.Faulted()) throw TArithmeticFault{};
    return result.value;
}

// A factor's value is stored in double precision; one outside the double range faults. The
// rounded value travels on as a long double: handing a double back and forth between the
// floating-point stack and the SSE registers costs more than the rounding itself. The first
// comparison loads a double constant, which is cheaper than an 80-bit one; only values above
// the largest double need the exact limit.
long double StoreAsDouble(long double value) {
    const long double magnitude = std::fabs(value);
    if (!(magnitude <= std::numeric_limits<double>::max()) && !(magnitude < kDoubleOverflow))
        throw TArithmeticFault{};
    return static_cast<double>(value);
}

long double Frac(long double x) {
    return x - std::trunc(x);
}

// TRUNC through a signed 64-bit integer; nothing when the value does not fit.
std::optional<long double> TruncInt64(long double x) {
    const long double t = std::trunc(x);
    if (!(t >= -kInt64Limit && t < kInt64Limit)) return std::nullopt;
    return static_cast<long double>(static_cast<std::int64_t>(t));
}

// ROUND through a signed 64-bit integer, halves to the even neighbour.
std::optional<long double> RoundInt64(long double x) {
    long double t = std::trunc(x);
    const long double fraction = std::fabs(x - t); // exact for every value below 2^63
    if (fraction > 0.5L || (fraction == 0.5L && std::fmod(t, 2.0L) != 0))
        t += std::copysign(1.0L, x);
    return TruncInt64(t);
}

std::optional<long double> Ceiling(long double x) {
    std::optional<long double> t = TruncInt64(x);
    if (!t) return std::nullopt;
    if (Frac(x) > 0) *t += 1;
    return TruncInt64(*t);
}

// The classic FLOOR steps down from the argument itself rather than from its integer part;
// both give the same integer.
std::optional<long double> Floor(long double x) {
    std::optional<long double> t = TruncInt64(x);
    if (!t) return std::nullopt;
    if (Frac(x) < 0) t = x - 1;
    return TruncInt64(*t);
}

std::optional<long double> IntegerValue(FuncFunc n, long double x) {
    switch (n) {
    case qRound:
        return RoundInt64(x);
    case qTrunc:
        return TruncInt64(x);
    case qCeiling:
        return Ceiling(x);
    default:
        return Floor(x);
    }
}

long double RandomValue(long double x) {
    if (x == 0) return Random();
    const std::optional<long double> m = RoundInt64(x);
    if (!m) throw TArithmeticFault{};
    // The rounded value is cut to its low 32 bits; a range of 0 or less gives 0.
    return Random(static_cast<std::int32_t>(static_cast<std::int64_t>(*m)));
}

bool InOpenUnitInterval(long double x) {
    return -1 < x && x < 1;
}

} // namespace

const TClassInfo& TqCalc::StaticClassInfo() {
    static const TClassInfo info = [] {
        TClassBuilder<TqCalc> builder("TqCalc", &TComponent::StaticClassInfo());
        builder.Event("OnFindUserFunc", &TqCalc::OnFindUserFunc)
            .Event("OnUserFunc", &TqCalc::OnUserFunc)
            .Property("PushResult", &TqCalc::PushResult, &TqCalc::SetPushResult)
            .Default(Defaults::PushResult)
            .Property("CalcResult", &TqCalc::CalcResult, DiscardWrites)
            .Default(Defaults::CalcResult)
            .Property("WhereIsLastError", &TqCalc::WhereIsLastError, DiscardWrites)
            .Default(std::uint8_t{Defaults::Position})
            .Property("CalcLine", &TqCalc::CalcLine, &TqCalc::SetCalcLine)
            .Property("FormatLine", &TqCalc::FormatLine, &TqCalc::SetFormatLine)
            .Property("Number", &TqCalc::Number, DiscardWrites);
        for (int i = 1; i <= RegisterCount; ++i)
            builder.Property(
                std::string("Register") + RegisterNames[RegisterSlot(i)],
                [i](const TqCalc& c) { return c.RegisterText(i); }, DiscardWrites);
        for (int i = 1; i <= RegisterCount; ++i)
            builder.Property(
                std::string("Register") + RegisterNames[RegisterSlot(i)] + "Num",
                [i](const TqCalc& c) { return c.RegisterNum(i); },
                [i](TqCalc& c, long double v) { c.SetRegisterNum(i, v); });
        builder.Property("NumberNum", &TqCalc::NumberNum, DiscardWrites)
            .Event("OnError", &TqCalc::OnError)
            .Event("OnOK", &TqCalc::OnOK);
        return builder.Build();
    }();
    return info;
}

TqCalc::TqCalc(TComponent* AOwner) : TComponent(AOwner) {
    StoreLine("0");
}

std::string TqCalc::CalcLine() const {
    return std::string(m_line.data(), m_lineLength);
}

// The evaluation routines below are private and used only in this file. They are defined
// inline so that the position-independent build of the library can still inline and optimise
// across them: with -fPIC, ordinary external functions count as interposable and are not.
inline void TqCalc::StoreLine(std::string_view text) {
    m_lineLength = std::min(text.size(), MaxLineLength);
    std::copy_n(text.data(), m_lineLength, m_line.begin());
    // Reading goes at most one character past the end mark; At() guards the rest.
    m_line[m_lineLength] = kEndMark;
    m_line[m_lineLength + 1] = '\0';
    m_line[m_lineLength + 2] = '\0';
}

void TqCalc::SetCalcLine(std::string_view S) {
    StoreLine(S.empty() ? std::string_view("0") : S);
    m_calcResult = TqxOK;
    m_position = 1;
    const long double value = Evaluate();
    if (m_pushResult) PushRegisters(value);
    m_number = value;
    FireEvents();
}

inline long double TqCalc::Evaluate() {
    try {
        return Udtryk();
    } catch (const TArithmeticFault&) {
    } catch (const EMathError&) {
        // raised by a user-function handler: the same arithmetic fault
    }
    m_calcResult = TqxOverFlow;
    return 0;
}

inline void TqCalc::PushRegisters(long double value) {
    std::copy_backward(m_registers.begin(), m_registers.end() - 1, m_registers.end());
    m_registers[0] = value;
}

inline void TqCalc::FireEvents() {
    if (m_calcResult != TqxOK) {
        if (OnError) OnError(this, CalcLine(), WhereIsLastError());
    } else if (OnOK) {
        OnOK(this);
    }
}

std::string TqCalc::FormatValue(long double value) const {
    try {
        return Format(m_formatLine.empty() ? std::string_view("%e") : m_formatLine, {value});
    } catch (const Exception&) {
        ReportFormatError();
        return {};
    }
}

void TqCalc::ReportFormatError() const {
    // The code is put back even when the handler raises.
    struct TRestore {
        TqCalcResult& code;
        TqCalcResult saved;
        ~TRestore() { code = saved; }
    } restore{m_calcResult, m_calcResult};
    m_calcResult = TqxFormatError;
    // Reading a display property is const, but the event's Sender is the component itself.
    if (OnError) OnError(const_cast<TqCalc*>(this), m_formatLine, 0);
}

// The first error stays: later rules do not overwrite it.
inline void TqCalc::SetError(TqCalcResult code) {
    if (m_calcResult == TqxOK) m_calcResult = code;
}

inline char TqCalc::At(int position) const {
    const auto index = static_cast<std::size_t>(position - 1);
    return index < m_line.size() ? m_line[index] : '\0';
}

inline char TqCalc::NaesteTegn() {
    while (At(m_position) == ' ')
        ++m_position;
    return At(m_position);
}

inline long double TqCalc::Tal() {
    long double value = 0;
    bool digitSeen = false;
    for (char c = At(m_position); IsDigit(c); c = At(++m_position)) {
        value = value * 10 + (c - '0');
        digitSeen = true;
    }
    if (At(m_position) == '.' || At(m_position) == ',') {
        ++m_position;
        long double weight = 0.1L;
        for (char c = At(m_position); IsDigit(c); c = At(++m_position)) {
            value = (c - '0') * weight + value;
            weight = weight / 10;
            digitSeen = true;
        }
    }
    if (!digitSeen) SetError(TqxNumberMissing);
    return value;
}

inline FuncFunc TqCalc::FuncNr() {
    // Locals while reading; the name is written character by character so that the lookup's
    // byte reads come straight from those writes.
    int position = m_position;
    std::uint8_t length = 0;
    for (char c = UpCase(At(position)); IsLetter(c) || c == '_'; c = UpCase(At(++position)))
        if (length < m_funcName.chars.size()) m_funcName.chars[length++] = c;
    m_position = position;
    m_funcName.length = length;
    const std::string_view name = m_funcName.View();
    if (const int index = FindFunctionName(name); index >= 0) return static_cast<FuncFunc>(index);
    SetError(TqxFunctionMissing);
    if (OnFindUserFunc && OnFindUserFunc(this, std::string(name))) {
        m_calcResult = TqxOK;
        return qUser;
    }
    return qA;
}

inline long double TqCalc::Parantes() {
    if (NaesteTegn() != '(') SetError(TqxLeftPar);
    ++m_position;
    if (m_calcResult != TqxOK) return 0;
    const long double value = Udtryk();
    if (m_calcResult == TqxOK) {
        if (NaesteTegn() != ')') SetError(TqxRightPar);
        ++m_position;
    }
    return value;
}

inline long double TqCalc::Faktor() {
    const char c = UpCase(NaesteTegn());
    long double value = 0;
    if (c == '(')
        value = Parantes();
    else if (!IsLetter(c))
        value = Tal();
    else
        value = Identifier();
    return StoreAsDouble(value);
}

inline long double TqCalc::Identifier() {
    const FuncFunc n = FuncNr();
    if (m_calcResult != TqxOK) return 0;
    if (n == qUser) {
        // Saved before the argument is read: identifiers inside it overwrite m_funcName.
        const TFuncName name = m_funcName;
        return UserFunction(name, Parantes());
    }
    return FunctionValue(n, n >= qExp ? Parantes() : 0);
}

inline long double TqCalc::FunctionValue(FuncFunc n, long double x) {
    switch (n) {
    case qPI:
        return kPi;
    case qE:
        return std::exp(1.0L);
    case qExp:
        return std::exp(x);
    case qSin:
        return ExtSin(x);
    case qCos:
        return ExtCos(x);
    case qArcTan:
        return std::atan(x);
    case qAbs:
        return std::fabs(x);
    case qFrac:
        return Frac(x);
    case qArcSin:
    case qArcCos:
        if (!InOpenUnitInterval(x)) break;
        return Checked(n == qArcSin ? TryArcSin(x) : TryArcCos(x));
    case qLN:
    case qLog:
        if (x <= 0) break;
        return n == qLN ? ExtLn(x) : Checked(TryLog10(x));
    case qSQR:
        return x * x;
    case qSQRT:
        if (x < 0) break;
        return std::sqrt(x);
    case qRound:
    case qTrunc:
    case qCeiling:
    case qFloor:
        return IntegerFunction(n, x);
    case qRandom:
        return RandomValue(x);
    default:
        return m_registers[static_cast<std::size_t>(n)]; // qA..qJ; qUser is handled by Identifier
    }
    SetError(TqxDivZero); // a domain error of ARCSIN, ARCCOS, LN, LOG or SQRT
    return 0;
}

// ROUND, TRUNC, CEILING and FLOOR catch their own fault: a value that does not fit 64 bits
// gives 0 and TqxOverFlow, and the evaluation winds down as after any other error.
inline long double TqCalc::IntegerFunction(FuncFunc n, long double x) {
    if (const std::optional<long double> value = IntegerValue(n, x)) return *value;
    m_calcResult = TqxOverFlow;
    return 0;
}

inline long double TqCalc::UserFunction(const TFuncName& name, long double argument) {
    if (!OnUserFunc) return argument;
    return OnUserFunc(this, std::string(name.View()), argument);
}

inline long double TqCalc::Led() {
    long double value = Faktor();
    for (char op = NaesteTegn(); (op == '*' || op == '/' || op == '^') && m_calcResult == TqxOK;
         op = NaesteTegn()) {
        ++m_position;
        if (op == '*') {
            value = Checked(Faktor() * value);
        } else if (op == '/') {
            const long double divisor = Faktor();
            if (divisor == 0)
                SetError(TqxDivZero);
            else
                value = Checked(value / divisor);
        } else {
            const long double exponent = Faktor();
            value = Checked(PowerValue(value, exponent));
        }
    }
    return value;
}

inline long double TqCalc::Udtryk() {
    // A leading "-" stays in place: the loop subtracts the first term from 0.
    long double value = NaesteTegn() == '-' ? 0 : Led();
    for (char op = NaesteTegn(); (op == '+' || op == '-') && m_calcResult == TqxOK;
         op = NaesteTegn()) {
        ++m_position;
        if (op == '+')
            value = Checked(Led() + value);
        else
            value = Checked(value - Led());
    }
    return value;
}

} // namespace qv
