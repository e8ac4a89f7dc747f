#pragma once
// TFormValue: one property value as a text form file holds it, and its text form.
// Integers (decimal or $hex), floats, strings ('it''s'#13#10 'joined' + 'parts'),
// identifiers, sets [a, b], lists ( ... ) and binary data { hex }.

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace qv {

struct TFormValue {
    enum class Kind { Integer, Float, String, Ident, Set, List, Binary };

    Kind kind{Kind::Integer};
    std::int64_t integer{0};
    long double real{0};
    bool doublePrecision{false};     // Float: written with the shortest text of a double
    int hexDigits{0};                // Integer: written as $ and this many hex digits
    std::string text;                // String and Ident
    std::vector<std::string> items;  // Set
    std::vector<TFormValue> list;    // List
    std::vector<std::uint8_t> bytes; // Binary

    static TFormValue Int(std::int64_t v);
    static TFormValue Real(long double v);
    static TFormValue RealDouble(double v);
    static TFormValue Str(std::string v);
    static TFormValue Identifier(std::string v);
    static TFormValue SetOf(std::vector<std::string> v);
    static TFormValue ListOf(std::vector<TFormValue> v);
    static TFormValue Data(std::vector<std::uint8_t> v);

    const char* KindName() const;
};

// Writes a value as a form file does. Long strings, lists and binary data span lines;
// `indent` is the indentation of the property's own line.
std::string FormatFormValue(const TFormValue& value, const std::string& indent = "");
// Writes a string literal: printable runs in quotes, control characters as #nn.
std::string QuoteFormString(std::string_view s);
// Parses one value from text; EConvertError when the text is not a single valid value.
TFormValue ParseFormValue(std::string_view text);

} // namespace qv
