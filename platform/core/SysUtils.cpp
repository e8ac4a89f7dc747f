#include "SysUtils.h"

#include "Exceptions.h"

#include <algorithm>
#include <atomic>
#include <cctype>
#include <cfenv>
#include <charconv>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>

namespace qv {

namespace {

// The decimal digits of a finite value rounded to `significant` digits, and the exponent
// of the first digit: value ~ d.ddd x 10^exponent.
struct TDecimal {
    bool negative{false};
    std::string digits;
    int exponent{0};
};

TDecimal ToDecimal(long double value, int significant) {
    TDecimal d;
    d.negative = std::signbit(value) && value != 0;
    char buf[128];
    std::snprintf(buf, sizeof buf, "%.*Le", significant - 1, std::fabs(value));
    const char* p = buf;
    for (; *p && *p != 'e'; ++p)
        if (std::isdigit(static_cast<unsigned char>(*p))) d.digits += *p;
    d.exponent = *p ? std::atoi(p + 1) : 0;
    return d;
}

std::string Special(long double value) {
    if (std::isnan(value)) return "NAN";
    return value < 0 ? "-INF" : "INF";
}

std::string ExponentText(int exponent, int minDigits, bool alwaysSign) {
    const std::string magnitude = std::to_string(std::abs(exponent));
    std::string text;
    if (exponent < 0)
        text += '-';
    else if (alwaysSign)
        text += '+';
    text.append(
        static_cast<std::size_t>(std::max(minDigits - static_cast<int>(magnitude.size()), 0)), '0');
    return text + magnitude;
}

std::string Exponential(long double value, int precision, int digits) {
    precision = std::clamp(precision, 1, 18);
    const TDecimal d = ToDecimal(value, precision);
    std::string out = d.negative ? "-" : "";
    out += d.digits.substr(0, 1);
    if (d.digits.size() > 1) out.append(".").append(d.digits, 1);
    return out + "E" + ExponentText(d.exponent, std::clamp(digits, 0, 4), true);
}

std::string GroupThousands(const std::string& integerPart) {
    std::string out;
    const int n = static_cast<int>(integerPart.size());
    for (int i = 0; i < n; ++i) {
        if (i > 0 && (n - i) % 3 == 0) out += ',';
        out += integerPart[static_cast<std::size_t>(i)];
    }
    return out;
}

// Fixed notation with `decimals` digits after the point, optionally grouped by thousands.
std::string Fixed(long double value, int decimals, bool thousands) {
    decimals = std::clamp(decimals, 0, 18);
    char buf[512];
    std::snprintf(buf, sizeof buf, "%.*Lf", decimals, std::fabs(value));
    std::string text = buf;
    const bool negative = std::signbit(value) && text.find_first_not_of("0.") != std::string::npos;
    if (thousands) {
        const std::size_t point = text.find('.');
        text = GroupThousands(text.substr(0, point)) +
               (point == std::string::npos ? "" : text.substr(point));
    }
    return negative ? "-" + text : text;
}

std::string General(long double value, int precision, int digits) {
    precision = std::clamp(precision, 1, 18);
    if (value == 0) return "0";
    TDecimal d = ToDecimal(value, precision);
    while (d.digits.size() > 1 && d.digits.back() == '0')
        d.digits.pop_back();
    std::string out = d.negative ? "-" : "";
    if (d.exponent >= precision || d.exponent < -4) {
        out += d.digits.substr(0, 1);
        if (d.digits.size() > 1) out.append(".").append(d.digits, 1);
        return out + "E" + ExponentText(d.exponent, digits, false);
    }
    if (d.exponent < 0)
        return out + "0." + std::string(static_cast<std::size_t>(-d.exponent - 1), '0') + d.digits;
    const std::size_t intDigits = static_cast<std::size_t>(d.exponent) + 1;
    if (d.digits.size() <= intDigits)
        return out + d.digits + std::string(intDigits - d.digits.size(), '0');
    return out + d.digits.substr(0, intDigits) + "." + d.digits.substr(intDigits);
}

} // namespace

std::string FloatToStrF(long double value, TFloatFormat format, int precision, int digits) {
    if (!std::isfinite(value)) return Special(value);
    // Fixed formats fall back to exponential notation for values with more integer
    // digits than the precision allows.
    const bool huge = std::fabs(value) >= std::pow(10.0L, std::clamp(precision, 1, 18));
    switch (format) {
    case TFloatFormat::ffGeneral:
        return General(value, precision, digits);
    case TFloatFormat::ffExponent:
        return Exponential(value, precision, digits);
    case TFloatFormat::ffFixed:
        return huge ? General(value, precision, 0) : Fixed(value, digits, false);
    case TFloatFormat::ffNumber:
        return huge ? General(value, precision, 0) : Fixed(value, digits, true);
    case TFloatFormat::ffCurrency: {
        if (huge) return General(value, precision, 0);
        const std::string amount = Fixed(std::fabs(value), digits, true);
        return value < 0 && amount.find_first_not_of("0.,") != std::string::npos
                   ? "($" + amount + ")"
                   : "$" + amount;
    }
    }
    return {};
}

std::string FloatToStr(long double value) {
    return FloatToStrF(value, TFloatFormat::ffGeneral, 15, 0);
}

namespace {

class TFormatter {
public:
    TFormatter(std::string_view format, std::initializer_list<TVarRec> args)
        : m_format(format), m_args(args.begin()), m_count(args.size()) {}

    std::string Run() {
        std::string out;
        while (m_pos < m_format.size()) {
            const char c = m_format[m_pos++];
            if (c != '%') {
                out += c;
                continue;
            }
            if (Peek() == '%') {
                ++m_pos;
                out += '%';
                continue;
            }
            out += Specifier();
        }
        return out;
    }

private:
    char Peek() const { return m_pos < m_format.size() ? m_format[m_pos] : '\0'; }

    [[noreturn]] void Invalid() const {
        throw EConvertError("Format '" + std::string(m_format) +
                            "' invalid or incompatible with argument");
    }

    // A number or '*' (taken from the arguments); -1 when absent.
    int Number() {
        if (Peek() == '*') {
            ++m_pos;
            const std::int64_t* n = Next().AsInteger();
            if (!n) Invalid();
            return static_cast<int>(*n);
        }
        if (!std::isdigit(static_cast<unsigned char>(Peek()))) return -1;
        int n = 0;
        while (std::isdigit(static_cast<unsigned char>(Peek()))) {
            n = std::min(n * 10 + (m_format[m_pos++] - '0'), 100000);
        }
        return n;
    }

    const TVarRec& Next() {
        if (m_next >= m_count) Invalid();
        return m_args[m_next++];
    }

    std::string Specifier() {
        bool left = false;
        int width = Number();
        if (Peek() == ':') {
            ++m_pos;
            m_next = static_cast<std::size_t>(std::max(width, 0));
            width = -1;
        }
        if (Peek() == '-') {
            ++m_pos;
            left = true;
        }
        if (width < 0) width = Number();
        int precision = -1;
        if (Peek() == '.') {
            ++m_pos;
            precision = std::max(Number(), 0);
        }
        if (m_pos >= m_format.size()) Invalid();
        const char type =
            static_cast<char>(std::tolower(static_cast<unsigned char>(m_format[m_pos++])));
        std::string text = Convert(type, Next(), precision);
        if (width > static_cast<int>(text.size())) {
            const std::string pad(static_cast<std::size_t>(width) - text.size(), ' ');
            text = left ? text + pad : pad + text;
        }
        return text;
    }

    static std::string PadDigits(std::string digits, int precision) {
        const bool negative = !digits.empty() && digits[0] == '-';
        if (negative) digits.erase(0, 1);
        if (precision > static_cast<int>(digits.size()))
            digits.insert(0, static_cast<std::size_t>(precision) - digits.size(), '0');
        return negative ? "-" + digits : digits;
    }

    std::string Convert(char type, const TVarRec& arg, int precision) const {
        switch (type) {
        case 'd': {
            const std::int64_t* n = arg.AsInteger();
            if (!n) Invalid();
            return PadDigits(std::to_string(*n), precision);
        }
        case 'u': {
            const std::int64_t* n = arg.AsInteger();
            if (!n) Invalid();
            const std::uint64_t u = *n >= INT32_MIN && *n < 0 ? static_cast<std::uint32_t>(*n)
                                                              : static_cast<std::uint64_t>(*n);
            return PadDigits(std::to_string(u), precision);
        }
        case 'x': {
            const std::int64_t* n = arg.AsInteger();
            if (!n) Invalid();
            char buf[32];
            const std::uint64_t u = *n >= INT32_MIN && *n < 0 ? static_cast<std::uint32_t>(*n)
                                                              : static_cast<std::uint64_t>(*n);
            std::snprintf(buf, sizeof buf, "%llX", static_cast<unsigned long long>(u));
            return PadDigits(buf, precision);
        }
        case 'e':
            return FloatToStrF(Float(arg), TFloatFormat::ffExponent, precision < 0 ? 15 : precision,
                               3);
        case 'f':
            return FloatToStrF(Float(arg), TFloatFormat::ffFixed, 18,
                               precision < 0 ? 2 : precision);
        case 'g':
            return FloatToStrF(Float(arg), TFloatFormat::ffGeneral, precision < 0 ? 15 : precision,
                               0);
        case 'n':
            return FloatToStrF(Float(arg), TFloatFormat::ffNumber, 18,
                               precision < 0 ? 2 : precision);
        case 'm':
            return FloatToStrF(Float(arg), TFloatFormat::ffCurrency, 18,
                               precision < 0 ? 2 : precision);
        case 'p': {
            const void* const* p = arg.AsPointer();
            if (!p) Invalid();
            char buf[32];
            std::snprintf(buf, sizeof buf, "%016llX",
                          static_cast<unsigned long long>(reinterpret_cast<std::uintptr_t>(*p)));
            return buf;
        }
        case 's': {
            std::string s;
            if (const std::string* str = arg.AsString())
                s = *str;
            else if (const char* ch = arg.AsChar())
                s = std::string(1, *ch);
            else
                Invalid();
            if (precision >= 0 && static_cast<std::size_t>(precision) < s.size())
                s.resize(static_cast<std::size_t>(precision));
            return s;
        }
        default:
            Invalid();
        }
    }

    long double Float(const TVarRec& arg) const {
        if (const long double* f = arg.AsFloat()) return *f;
        Invalid();
    }

    std::string_view m_format;
    const TVarRec* m_args;
    std::size_t m_count;
    std::size_t m_pos{0};
    std::size_t m_next{0};
};

} // namespace

std::string Format(std::string_view format, std::initializer_list<TVarRec> args) {
    return TFormatter(format, args).Run();
}

std::string IntToStr(std::int64_t value) {
    return std::to_string(value);
}

std::string IntToHex(std::int64_t value, int digits) {
    char buf[32];
    std::snprintf(buf, sizeof buf, "%0*llX", std::clamp(digits, 0, 16),
                  static_cast<unsigned long long>(value));
    return buf;
}

std::int64_t StrToInt64(std::string_view text) {
    const std::string t = Trim(text);
    const auto fail = [&]() -> std::int64_t {
        throw EConvertError("'" + std::string(text) + "' is not a valid integer value");
    };
    std::size_t i = 0;
    bool negative = false;
    if (i < t.size() && (t[i] == '-' || t[i] == '+')) negative = t[i++] == '-';
    int base = 10;
    if (i < t.size() && t[i] == '$') {
        base = 16;
        ++i;
    } else if (i + 1 < t.size() && t[i] == '0' && (t[i + 1] == 'x' || t[i + 1] == 'X')) {
        base = 16;
        i += 2;
    }
    std::uint64_t magnitude = 0;
    const char* begin = t.data() + i;
    const char* end = t.data() + t.size();
    auto [ptr, ec] = std::from_chars(begin, end, magnitude, base);
    if (begin == end || ec != std::errc() || ptr != end) return fail();
    if (base == 16 && !negative) return static_cast<std::int64_t>(magnitude);
    if (magnitude > static_cast<std::uint64_t>(INT64_MAX) + (negative ? 1 : 0)) return fail();
    return negative ? static_cast<std::int64_t>(0 - magnitude)
                    : static_cast<std::int64_t>(magnitude);
}

int StrToInt(std::string_view text) {
    const std::int64_t v = StrToInt64(text);
    if (v < INT32_MIN || v > UINT32_MAX)
        throw EConvertError("'" + std::string(text) + "' is not a valid integer value");
    return static_cast<int>(v);
}

int StrToIntDef(std::string_view text, int fallback) {
    try {
        return StrToInt(text);
    } catch (const EConvertError&) {
        return fallback;
    }
}

long double StrToFloat(std::string_view text) {
    const std::string t = Trim(text);
    char* end = nullptr;
    const long double v = std::strtold(t.c_str(), &end);
    if (t.empty() || end != t.c_str() + t.size() || std::isnan(v) || std::isinf(v))
        throw EConvertError("'" + std::string(text) + "' is not a valid floating point value");
    return v;
}

namespace {
constexpr long double kInt64Limit = 9223372036854775808.0L; // 2^63
}

std::int64_t Round(long double value) {
    const int saved = std::fegetround();
    std::fesetround(FE_TONEAREST);
    const long double r = std::nearbyintl(value);
    std::fesetround(saved);
    if (!(r >= -kInt64Limit && r < kInt64Limit))
        throw EInvalidOp("Invalid floating point operation");
    return static_cast<std::int64_t>(r);
}

std::int64_t Trunc(long double value) {
    const long double t = std::truncl(value);
    if (!(t >= -kInt64Limit && t < kInt64Limit))
        throw EInvalidOp("Invalid floating point operation");
    return static_cast<std::int64_t>(t);
}

int MulDiv(int a, int b, int c) {
    if (c == 0) return -1;
    const std::int64_t product = static_cast<std::int64_t>(a) * b;
    std::int64_t quotient = product / c;
    const std::int64_t remainder = product % c;
    // Round half away from zero: compare twice the remainder with the divisor.
    if (2 * std::llabs(remainder) >= std::llabs(static_cast<std::int64_t>(c)))
        quotient += ((product < 0) != (c < 0)) ? -1 : 1;
    if (quotient < INT32_MIN || quotient > INT32_MAX) return -1;
    return static_cast<int>(quotient);
}

namespace {
// The seed of the process-wide generator; updated atomically so that threads calling
// Random never lose or share a step.
std::atomic<std::uint32_t> g_randSeed{0};

std::uint32_t NextRandom() {
    std::uint32_t seed = g_randSeed.load(std::memory_order_relaxed);
    std::uint32_t next;
    do {
        next = seed * 134775813u + 1u;
    } while (!g_randSeed.compare_exchange_weak(seed, next, std::memory_order_relaxed));
    return next;
}
} // namespace

double Random() {
    return NextRandom() * (1.0 / 4294967296.0);
}

int Random(int range) {
    if (range <= 0) return 0;
    return static_cast<int>(
        (static_cast<std::uint64_t>(NextRandom()) * static_cast<std::uint32_t>(range)) >> 32);
}

void Randomize() {
    const auto ticks = std::chrono::steady_clock::now().time_since_epoch().count();
    g_randSeed.store(static_cast<std::uint32_t>(ticks ^ (ticks >> 32)));
}

std::uint32_t RandSeed() {
    return g_randSeed.load();
}
void SetRandSeed(std::uint32_t seed) {
    g_randSeed.store(seed);
}

std::string UpperCase(std::string_view s) {
    std::string r(s);
    for (char& c : r)
        c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    return r;
}

std::string LowerCase(std::string_view s) {
    std::string r(s);
    for (char& c : r)
        c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return r;
}

std::string Trim(std::string_view s) {
    std::size_t b = 0, e = s.size();
    while (b < e && static_cast<unsigned char>(s[b]) <= ' ')
        ++b;
    while (e > b && static_cast<unsigned char>(s[e - 1]) <= ' ')
        --e;
    return std::string(s.substr(b, e - b));
}

bool SameText(std::string_view a, std::string_view b) {
    return UpperCase(a) == UpperCase(b);
}

std::string Latin1ToUtf8(std::string_view latin1) {
    std::string utf8;
    for (const char c : latin1) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte < 0x80) {
            utf8 += c;
        } else {
            utf8 += static_cast<char>(0xC0 | (byte >> 6));
            utf8 += static_cast<char>(0x80 | (byte & 0x3F));
        }
    }
    return utf8;
}

} // namespace qv
