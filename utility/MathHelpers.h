#pragma once
// The math routines of unit Mystd. All of them compute in 80-bit extended precision (long
// double). The classic routines raise the platform's floating-point faults (EZeroDivide,
// EInvalidOp, EOverflow); the Try* forms report the same faults by value, for callers such as
// the calculator that must not unwind through exceptions on every bad input.

#include <cstdint>

namespace qv {

// A fault of the classic floating-point unit, reported instead of raised.
enum class TFloatFault : std::uint8_t { None, ZeroDivide, InvalidOp, Overflow };

struct TFloatResult {
    long double value{0};
    TFloatFault fault{TFloatFault::None};

    bool Faulted() const { return fault != TFloatFault::None; }
};

// Power(base, exponent), tested in this order: both zero gives 0 (not 1, on purpose);
// exponent zero gives 1; base zero gives 0; otherwise e^(exponent * ln |base|), so the sign of
// a negative base is dropped (Power(-2, 3) is 8).
TFloatResult TryPower(long double base, long double exponent);
// arctan(x / sqrt(1 - x*x)): x = +-1 divides by zero, |x| > 1 is an invalid operation.
TFloatResult TryArcSin(long double x);
// arctan(sqrt(1 - x*x) / x): x = 0 divides by zero, |x| > 1 is an invalid operation. Negative
// x yields a negative angle (ArcCos(-0.5) is -1.0471975...).
TFloatResult TryArcCos(long double x);
// ln x / ln 10: x = 0 divides by zero, x < 0 is an invalid operation.
TFloatResult TryLog10(long double x);

// The classic routines: the same values, faults raised as exceptions.
long double Power(long double base, long double exponent);
long double ArcSin(long double x);
long double ArcCos(long double x);
long double Log10(long double x);
// Power(x, 1 / n): the n-th root of x (the sign of x is dropped; n = 0 divides by zero).
long double Root(long double n, long double x);
// n! as an extended float; 1 for every n below 2. Raises EOverflow past the extended range.
long double Factorial(std::int32_t n);
// Trial division by d = 2 .. trunc(sqrt(n)); so 0, 1 and 2 report true. A negative n takes
// the square root of a negative number and raises EInvalidOp.
bool IsPrime(std::int32_t n);

// Raises the exception that belongs to a fault; returns the value when there is none.
long double RaiseFloatFault(const TFloatResult& result);

} // namespace qv
