#include "MathHelpers.h"

#include "ExtendedMath.h"

#include "platform/core/Exceptions.h"

#include <cmath>

namespace qv {

namespace {

TFloatResult Fault(TFloatFault fault) {
    return {0, fault};
}

// A non-finite result from finite operands is an overflow (or an invalid operation when it
// is not a number), as the classic unit would have signalled it.
TFloatResult FromFinite(long double value) {
    if (std::isnan(value)) return Fault(TFloatFault::InvalidOp);
    if (std::isinf(value)) return Fault(TFloatFault::Overflow);
    return {value, TFloatFault::None};
}

// 1 - x*x, the radicand shared by ArcSin and ArcCos; negative for |x| > 1.
TFloatResult CoSquareRoot(long double x) {
    const long double radicand = 1 - x * x;
    if (std::isnan(radicand) || radicand < 0) return Fault(TFloatFault::InvalidOp);
    return {std::sqrt(radicand), TFloatFault::None};
}

} // namespace

TFloatResult TryPower(long double base, long double exponent) {
    if (std::isnan(base) || std::isnan(exponent)) return Fault(TFloatFault::InvalidOp);
    return FromFinite(PowerValue(base, exponent));
}

TFloatResult TryArcSin(long double x) {
    const TFloatResult root = CoSquareRoot(x);
    if (root.Faulted()) return root;
    if (root.value == 0) return Fault(TFloatFault::ZeroDivide);
    return {std::atan(x / root.value), TFloatFault::None};
}

TFloatResult TryArcCos(long double x) {
    const TFloatResult root = CoSquareRoot(x);
    if (root.Faulted()) return root;
    if (x == 0) return Fault(TFloatFault::ZeroDivide);
    return FromFinite(std::atan(root.value / x));
}

TFloatResult TryLog10(long double x) {
    if (std::isnan(x) || x < 0) return Fault(TFloatFault::InvalidOp);
    if (x == 0) return Fault(TFloatFault::ZeroDivide);
    return {ExtLn(x) / ExtLn(10), TFloatFault::None};
}

long double RaiseFloatFault(const TFloatResult& result) {
    switch (result.fault) {
    case TFloatFault::None:
        return result.value;
    case TFloatFault::ZeroDivide:
        throw EZeroDivide("Floating point division by zero");
    case TFloatFault::InvalidOp:
        throw EInvalidOp("Invalid floating point operation");
    case TFloatFault::Overflow:
        throw EOverflow("Floating point overflow");
    }
    return result.value;
}

long double Power(long double base, long double exponent) {
    return RaiseFloatFault(TryPower(base, exponent));
}

long double ArcSin(long double x) {
    return RaiseFloatFault(TryArcSin(x));
}
long double ArcCos(long double x) {
    return RaiseFloatFault(TryArcCos(x));
}
long double Log10(long double x) {
    return RaiseFloatFault(TryLog10(x));
}

long double Root(long double n, long double x) {
    if (n == 0) throw EZeroDivide("Floating point division by zero");
    return Power(x, 1 / n);
}

long double Factorial(std::int32_t n) {
    long double result = 1;
    for (std::int32_t i = 2; i <= n; ++i) {
        result = i * result;
        if (std::isinf(result)) throw EOverflow("Floating point overflow");
    }
    return result;
}

bool IsPrime(std::int32_t n) {
    if (n < 0) throw EInvalidOp("Invalid floating point operation");
    const auto limit = static_cast<std::int32_t>(std::sqrt(static_cast<double>(n)));
    for (std::int32_t d = 2; d <= limit; ++d)
        if (n % d == 0) return false;
    return true;
}

} // namespace qv
