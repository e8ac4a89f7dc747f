#pragma once
// The classic run-time helpers the components rely on: Format with the classic
// specifiers, number conversion, banker's rounding, MulDiv and the process-wide
// pseudo-random generator.

#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <variant>

namespace qv {

// One argument of Format: an integer, a float, a string, a character or a pointer.
class TVarRec {
public:
    TVarRec(int v) : m_value(std::int64_t{v}) {}
    TVarRec(long v) : m_value(std::int64_t{v}) {}
    TVarRec(long long v) : m_value(static_cast<std::int64_t>(v)) {}
    TVarRec(unsigned v) : m_value(std::int64_t{v}) {}
    TVarRec(unsigned long v) : m_value(static_cast<std::int64_t>(v)) {}
    TVarRec(unsigned long long v) : m_value(static_cast<std::int64_t>(v)) {}
    TVarRec(double v) : m_value(static_cast<long double>(v)) {}
    TVarRec(long double v) : m_value(v) {}
    TVarRec(char v) : m_value(v) {}
    TVarRec(const char* v) : m_value(std::string(v ? v : "")) {}
    TVarRec(std::string v) : m_value(std::move(v)) {}
    TVarRec(std::string_view v) : m_value(std::string(v)) {}
    TVarRec(const void* v) : m_value(v) {}

    const std::int64_t* AsInteger() const { return std::get_if<std::int64_t>(&m_value); }
    const long double* AsFloat() const { return std::get_if<long double>(&m_value); }
    const std::string* AsString() const { return std::get_if<std::string>(&m_value); }
    const char* AsChar() const { return std::get_if<char>(&m_value); }
    const void* const* AsPointer() const { return std::get_if<const void*>(&m_value); }

private:
    std::variant<std::int64_t, long double, std::string, char, const void*> m_value;
};

// Formats like the classic Format: "%" [index ":"] ["-"] [width] ["." precision] type, with
// types d u e f g n m p s x and "%%"; index, width and precision may be "*". A specifier that
// does not fit its argument, or a missing argument, raises EConvertError.
std::string Format(std::string_view format, std::initializer_list<TVarRec> args);

// The float conversions behind Format and FloatToStr.
enum class TFloatFormat { ffGeneral, ffExponent, ffFixed, ffNumber, ffCurrency };
std::string FloatToStrF(long double value, TFloatFormat format, int precision, int digits);
std::string FloatToStr(long double value);

std::string IntToStr(std::int64_t value);
std::string IntToHex(std::int64_t value, int digits);
// Decimal or $hex, optional sign and surrounding spaces; EConvertError otherwise.
std::int64_t StrToInt64(std::string_view text);
int StrToInt(std::string_view text);
int StrToIntDef(std::string_view text, int fallback);
long double StrToFloat(std::string_view text);

// Rounds to the nearest integer, halves to the even neighbour; EInvalidOp when the result
// does not fit 64 bits or the value is not a number.
std::int64_t Round(long double value);
// The integer part, toward zero; EInvalidOp when it does not fit 64 bits.
std::int64_t Trunc(long double value);
// (a * b) / c with a 64-bit intermediate, rounded half away from zero; -1 when c is 0 or
// the result does not fit 32 bits.
int MulDiv(int a, int b, int c);

// The process-wide pseudo-random generator (the classic linear congruential one).
// Random() is in [0, 1); Random(range) in [0, range), 0 when range <= 0.
double Random();
int Random(int range);
void Randomize();
std::uint32_t RandSeed();
void SetRandSeed(std::uint32_t seed);

std::string UpperCase(std::string_view s);
std::string LowerCase(std::string_view s);
std::string Trim(std::string_view s);
bool SameText(std::string_view a, std::string_view b);
// The framework's single-byte (Latin-1) text as UTF-8, for window titles and bus strings.
std::string Latin1ToUtf8(std::string_view latin1);

} // namespace qv
