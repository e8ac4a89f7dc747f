#pragma once
// Extended-precision kernels for the calculator and the math routines: ln, e^(y ln x), sine
// and cosine of 80-bit values. On x86 they run on the x87 unit's own instructions (FYL2X,
// FYL2XP1, F2XM1, FSCALE, FSIN, FCOS), the instructions the classic runtime computed these
// functions with; they are faster than the C library's long double routines, whose extra care
// the calculator does not need for the ranges used here. Elsewhere, and outside the ranges
// where the instructions are accurate, the C library computes them.
//
// Domain checks are the caller's: ExtLn wants x > 0, ExtPowAbs a nonzero base.

#include <cmath>

namespace qv {

#if defined(__x86_64__) || defined(__i386__)

namespace x87 {

// y * log2(x) for x > 0; near 1 through FYL2XP1, which keeps the small logarithm exact.
inline long double YLog2X(long double y, long double x) {
    long double result;
    const long double d = x - 1; // exact for x in [0.5, 2]
    if (std::fabs(d) < 0.29L)
        asm("fyl2xp1" : "=t"(result) : "0"(d), "u"(y) : "st(1)");
    else
        asm("fyl2x" : "=t"(result) : "0"(x), "u"(y) : "st(1)");
    return result;
}

// 2^t: F2XM1 on the fraction, FSCALE by the integer part. Beyond the extended range the
// result is infinity or 0, as the instructions would give it.
inline long double Exp2(long double t) {
    if (!(std::fabs(t) < 32768)) return std::isnan(t) ? t : (t > 0 ? HUGE_VALL : 0.0L);
    long double whole;
    asm("frndint" : "=t"(whole) : "0"(t));
    long double fraction;
    asm("f2xm1" : "=t"(fraction) : "0"(t - whole));
    long double result;
    asm("fscale" : "=t"(result) : "0"(fraction + 1), "u"(whole));
    return result;
}

} // namespace x87

inline long double ExtLn(long double x) {
    return x87::YLog2X(0.693147180559945309417232121458176568L, x);
}

// e^(y * ln |x|), computed as 2^(y * log2 |x|).
inline long double ExtPowAbs(long double x, long double y) {
    return x87::Exp2(x87::YLog2X(y, std::fabs(x)));
}

// FSIN and FCOS need no argument reduction below pi/4 and reduce with a 66-bit pi up to 1;
// larger arguments go to the C library's exact reduction.
inline long double ExtSin(long double x) {
    if (!(std::fabs(x) < 1)) return std::sin(x);
    long double result;
    asm("fsin" : "=t"(result) : "0"(x));
    return result;
}

inline long double ExtCos(long double x) {
    if (!(std::fabs(x) < 1)) return std::cos(x);
    long double result;
    asm("fcos" : "=t"(result) : "0"(x));
    return result;
}

#else

inline long double ExtLn(long double x) {
    return std::log(x);
}
inline long double ExtPowAbs(long double x, long double y) {
    return std::exp(y * std::log(std::fabs(x)));
}
inline long double ExtSin(long double x) {
    return std::sin(x);
}
inline long double ExtCos(long double x) {
    return std::cos(x);
}

#endif

// Power(base, exponent) as unit Mystd defines it, tested in this order: both zero gives 0;
// exponent zero gives 1; base zero gives 0; otherwise e^(exponent * ln |base|). Overflow gives
// infinity; the callers decide how to report it.
inline long double PowerValue(long double base, long double exponent) {
    if (base == 0 && exponent == 0) return 0;
    if (exponent == 0) return 1;
    if (base == 0) return 0;
    return ExtPowAbs(base, exponent);
}

} // namespace qv
