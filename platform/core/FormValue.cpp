#include "FormValue.h"

#include "Exceptions.h"
#include "FormLexer.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>

namespace qv {

TFormValue TFormValue::Int(std::int64_t v) {
    TFormValue r;
    r.kind = Kind::Integer;
    r.integer = v;
    return r;
}
TFormValue TFormValue::Real(long double v) {
    TFormValue r;
    r.kind = Kind::Float;
    r.real = v;
    return r;
}
TFormValue TFormValue::RealDouble(double v) {
    TFormValue r = Real(v);
    r.doublePrecision = true;
    return r;
}
TFormValue TFormValue::Str(std::string v) {
    TFormValue r;
    r.kind = Kind::String;
    r.text = std::move(v);
    return r;
}
TFormValue TFormValue::Identifier(std::string v) {
    TFormValue r;
    r.kind = Kind::Ident;
    r.text = std::move(v);
    return r;
}
TFormValue TFormValue::SetOf(std::vector<std::string> v) {
    TFormValue r;
    r.kind = Kind::Set;
    r.items = std::move(v);
    return r;
}
TFormValue TFormValue::ListOf(std::vector<TFormValue> v) {
    TFormValue r;
    r.kind = Kind::List;
    r.list = std::move(v);
    return r;
}
TFormValue TFormValue::Data(std::vector<std::uint8_t> v) {
    TFormValue r;
    r.kind = Kind::Binary;
    r.bytes = std::move(v);
    return r;
}

const char* TFormValue::KindName() const {
    switch (kind) {
    case Kind::Integer:
        return "integer";
    case Kind::Float:
        return "number";
    case Kind::String:
        return "string";
    case Kind::Ident:
        return "identifier";
    case Kind::Set:
        return "set";
    case Kind::List:
        return "list";
    case Kind::Binary:
        return "binary data";
    }
    return "value";
}

std::string QuoteFormString(std::string_view s) {
    if (s.empty()) return "''";
    std::string out;
    bool quoted = false;
    for (char ch : s) {
        const auto c = static_cast<unsigned char>(ch);
        if (c < 32 || c == 127) {
            if (quoted) out += '\'';
            quoted = false;
            out += '#' + std::to_string(c);
        } else {
            if (!quoted) out += '\'';
            quoted = true;
            out += ch;
            if (ch == '\'') out += '\'';
        }
    }
    if (quoted) out += '\'';
    return out;
}

namespace {

// The shortest text that reads back as the same value, always with a point or exponent
// so that it reads back as a float.
std::string FormatFloat(long double v, bool doublePrecision) {
    if (std::isnan(v) || std::isinf(v)) throw EWriteError("cannot write a non-finite number");
    char buf[64];
    auto [end, ec] = doublePrecision ? std::to_chars(buf, buf + sizeof buf, static_cast<double>(v))
                                     : std::to_chars(buf, buf + sizeof buf, v);
    std::string s(buf, end);
    if (s.find_first_of(".e") == std::string::npos) s += ".0";
    return s;
}

std::string FormatBinary(const std::vector<std::uint8_t>& bytes, const std::string& indent) {
    static const char hex[] = "0123456789ABCDEF";
    constexpr std::size_t perLine = 32;
    std::string out = "{";
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        if (i % perLine == 0) out += "\n" + indent + "  ";
        out += hex[bytes[i] >> 4];
        out += hex[bytes[i] & 15];
    }
    out += "}";
    return out;
}

// Long strings are split into parts of at most 64 characters joined with '+'.
std::string FormatString(const std::string& s, const std::string& indent) {
    constexpr std::size_t partLength = 64;
    if (s.size() <= partLength) return QuoteFormString(s);
    std::string out;
    for (std::size_t i = 0; i < s.size(); i += partLength) {
        out += (i ? " +\n" : "\n") + indent + "  ";
        out += QuoteFormString(std::string_view(s).substr(i, partLength));
    }
    return out;
}

} // namespace

std::string FormatFormValue(const TFormValue& value, const std::string& indent) {
    switch (value.kind) {
    case TFormValue::Kind::Integer:
        if (value.hexDigits > 0) {
            char buf[32];
            std::snprintf(
                buf, sizeof buf, "$%0*llX", std::min(value.hexDigits, 16),
                static_cast<unsigned long long>(static_cast<std::uint32_t>(value.integer)));
            return buf;
        }
        return std::to_string(value.integer);
    case TFormValue::Kind::Float:
        return FormatFloat(value.real, value.doublePrecision);
    case TFormValue::Kind::String:
        return FormatString(value.text, indent);
    case TFormValue::Kind::Ident:
        return value.text;
    case TFormValue::Kind::Set: {
        std::string out = "[";
        for (std::size_t i = 0; i < value.items.size(); ++i) {
            if (i) out += ", ";
            out += value.items[i];
        }
        return out + "]";
    }
    case TFormValue::Kind::List: {
        std::string out = "(";
        for (const auto& item : value.list)
            out += "\n" + indent + "  " + FormatFormValue(item, indent + "  ");
        return out + ")";
    }
    case TFormValue::Kind::Binary:
        return FormatBinary(value.bytes, indent);
    }
    return {};
}

TFormValue ParseFormValue(std::string_view text) {
    try {
        TFormLexer lexer(text);
        TFormValue value = lexer.ReadValue();
        if (lexer.Current().kind != TFormToken::Kind::End)
            lexer.Fail("unexpected text after the value");
        return value;
    } catch (const EReadError& e) {
        throw EConvertError("'" + std::string(text) + "' is not a valid property value (" +
                            e.Message() + ")");
    }
}

} // namespace qv
