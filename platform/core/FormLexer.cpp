#include "FormLexer.h"

#include "Exceptions.h"

#include <cctype>
#include <charconv>
#include <cstdlib>

namespace qv {

namespace {
bool IsIdentStart(char c) {
    return std::isalpha(static_cast<unsigned char>(c)) || c == '_';
}
bool IsIdentChar(char c) {
    return std::isalnum(static_cast<unsigned char>(c)) || c == '_';
}
int HexDigit(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
}
bool EqualsNoCase(std::string_view a, std::string_view b) {
    if (a.size() != b.size()) return false;
    for (std::size_t i = 0; i < a.size(); ++i)
        if (std::toupper(static_cast<unsigned char>(a[i])) !=
            std::toupper(static_cast<unsigned char>(b[i])))
            return false;
    return true;
}
} // namespace

TFormLexer::TFormLexer(std::string_view text) : m_text(text) {
    Next();
}

char TFormLexer::Peek(std::size_t ahead) const {
    return m_pos + ahead < m_text.size() ? m_text[m_pos + ahead] : '\0';
}

void TFormLexer::Advance() {
    if (m_pos >= m_text.size()) return;
    if (m_text[m_pos] == '\n') {
        ++m_line;
        m_column = 1;
    } else {
        ++m_column;
    }
    ++m_pos;
}

void TFormLexer::SkipSpaceAndComments() {
    for (;;) {
        while (m_pos < m_text.size() && std::isspace(static_cast<unsigned char>(Peek())))
            Advance();
        if (Peek() == '/' && Peek(1) == '/') {
            while (m_pos < m_text.size() && Peek() != '\n')
                Advance();
            continue;
        }
        return;
    }
}

void TFormLexer::Fail(const std::string& message) const {
    FailAt(m_token.line, m_token.column, message);
}

void TFormLexer::FailAt(int line, int column, const std::string& message) const {
    throw EReadError("line " + std::to_string(line) + ", column " + std::to_string(column) + ": " +
                     message);
}

std::string TFormLexer::Describe(const TFormToken& token) const {
    switch (token.kind) {
    case TFormToken::Kind::End:
        return "end of file";
    case TFormToken::Kind::Ident:
        return "'" + token.text + "'";
    case TFormToken::Kind::Integer:
    case TFormToken::Kind::Float:
        return "number";
    case TFormToken::Kind::String:
        return "string";
    case TFormToken::Kind::Symbol:
        return "'" + token.text + "'";
    }
    return "token";
}

void TFormLexer::Next() {
    SkipSpaceAndComments();
    m_token = TFormToken{};
    m_token.line = m_line;
    m_token.column = m_column;
    const char c = Peek();
    if (m_pos >= m_text.size()) {
        m_token.kind = TFormToken::Kind::End;
    } else if (IsIdentStart(c)) {
        m_token.kind = TFormToken::Kind::Ident;
        while (IsIdentChar(Peek()) || (Peek() == '.' && IsIdentStart(Peek(1)))) {
            m_token.text += Peek();
            Advance();
        }
    } else if (std::isdigit(static_cast<unsigned char>(c))) {
        LexNumber(false);
    } else if (c == '$') {
        Advance();
        LexNumber(true);
    } else if (c == '\'' || c == '#') {
        LexString();
    } else {
        m_token.kind = TFormToken::Kind::Symbol;
        m_token.text = std::string(1, c);
        Advance();
    }
}

void TFormLexer::LexNumber(bool hex) {
    std::string digits;
    bool isFloat = false;
    if (hex) {
        while (HexDigit(Peek()) >= 0) {
            digits += Peek();
            Advance();
        }
        if (digits.empty() || digits.size() > 16) Fail("invalid hexadecimal number");
        m_token.kind = TFormToken::Kind::Integer;
        m_token.integer = static_cast<std::int64_t>(std::strtoull(digits.c_str(), nullptr, 16));
        return;
    }
    while (std::isdigit(static_cast<unsigned char>(Peek()))) {
        digits += Peek();
        Advance();
    }
    if (Peek() == '.' && std::isdigit(static_cast<unsigned char>(Peek(1)))) {
        isFloat = true;
        digits += Peek();
        Advance();
        while (std::isdigit(static_cast<unsigned char>(Peek()))) {
            digits += Peek();
            Advance();
        }
    }
    if ((Peek() == 'e' || Peek() == 'E') && (std::isdigit(static_cast<unsigned char>(Peek(1))) ||
                                             ((Peek(1) == '+' || Peek(1) == '-') &&
                                              std::isdigit(static_cast<unsigned char>(Peek(2)))))) {
        isFloat = true;
        digits += Peek();
        Advance();
        digits += Peek();
        Advance();
        while (std::isdigit(static_cast<unsigned char>(Peek()))) {
            digits += Peek();
            Advance();
        }
    }
    if (isFloat) {
        m_token.kind = TFormToken::Kind::Float;
        m_token.real = std::strtold(digits.c_str(), nullptr);
        return;
    }
    m_token.kind = TFormToken::Kind::Integer;
    std::uint64_t value = 0;
    auto [ptr, ec] = std::from_chars(digits.data(), digits.data() + digits.size(), value);
    // 2^63 is kept for -9223372036854775808, the one value whose magnitude exceeds INT64_MAX;
    // it wraps to INT64_MIN here, and only a minus sign makes it a number.
    if (ec != std::errc() || ptr != digits.data() + digits.size() ||
        value > static_cast<std::uint64_t>(INT64_MAX) + 1)
        Fail("number out of range");
    m_token.integer = static_cast<std::int64_t>(value);
}

// A string token is a run of quoted parts and #nn characters without spaces between them.
void TFormLexer::LexString() {
    m_token.kind = TFormToken::Kind::String;
    for (;;) {
        if (Peek() == '\'') {
            const int line = m_line, column = m_column;
            Advance();
            for (;;) {
                if (m_pos >= m_text.size() || Peek() == '\n' || Peek() == '\r')
                    FailAt(line, column, "unterminated string");
                if (Peek() == '\'') {
                    if (Peek(1) == '\'') {
                        m_token.text += '\'';
                        Advance();
                        Advance();
                        continue;
                    }
                    Advance();
                    break;
                }
                m_token.text += Peek();
                Advance();
            }
        } else if (Peek() == '#') {
            Advance();
            unsigned code = 0;
            int count = 0;
            if (Peek() == '$') {
                Advance();
                while (HexDigit(Peek()) >= 0 && count < 8) {
                    code = code * 16 + static_cast<unsigned>(HexDigit(Peek()));
                    Advance();
                    ++count;
                }
            } else {
                while (std::isdigit(static_cast<unsigned char>(Peek())) && count < 8) {
                    code = code * 10 + static_cast<unsigned>(Peek() - '0');
                    Advance();
                    ++count;
                }
            }
            if (count == 0 || code > 255) Fail("invalid character code in string");
            m_token.text += static_cast<char>(code);
        } else {
            return;
        }
    }
}

bool TFormLexer::IsSymbol(char c) const {
    return m_token.kind == TFormToken::Kind::Symbol && m_token.text[0] == c;
}

bool TFormLexer::IsIdent(std::string_view word) const {
    return m_token.kind == TFormToken::Kind::Ident && EqualsNoCase(m_token.text, word);
}

void TFormLexer::ExpectSymbol(char c) {
    if (!IsSymbol(c)) Fail(std::string("expected '") + c + "' but found " + Describe(m_token));
    Next();
}

std::string TFormLexer::ExpectIdent(const char* what) {
    if (m_token.kind != TFormToken::Kind::Ident)
        Fail(std::string("expected ") + what + " but found " + Describe(m_token));
    std::string text = m_token.text;
    Next();
    return text;
}

TFormValue TFormLexer::ReadValue() {
    switch (m_token.kind) {
    case TFormToken::Kind::Integer: {
        if (m_token.integer == INT64_MIN) Fail("number out of range");
        auto v = TFormValue::Int(m_token.integer);
        Next();
        return v;
    }
    case TFormToken::Kind::Float: {
        auto v = TFormValue::Real(m_token.real);
        Next();
        return v;
    }
    case TFormToken::Kind::String:
        return ReadString();
    case TFormToken::Kind::Ident: {
        auto v = TFormValue::Identifier(m_token.text);
        Next();
        return v;
    }
    case TFormToken::Kind::Symbol:
        if (IsSymbol('-') || IsSymbol('+')) {
            const bool negative = IsSymbol('-');
            Next();
            if (m_token.kind == TFormToken::Kind::Integer) {
                if (!negative && m_token.integer == INT64_MIN) Fail("number out of range");
                const auto magnitude = static_cast<std::uint64_t>(m_token.integer);
                auto v = TFormValue::Int(
                    static_cast<std::int64_t>(negative ? 0 - magnitude : magnitude));
                Next();
                return v;
            }
            if (m_token.kind == TFormToken::Kind::Float) {
                auto v = TFormValue::Real(negative ? -m_token.real : m_token.real);
                Next();
                return v;
            }
            Fail("expected a number after the sign but found " + Describe(m_token));
        }
        if (IsSymbol('[')) return ReadSet();
        if (IsSymbol('(')) return ReadList();
        if (IsSymbol('{')) return ReadBinary();
        break;
    case TFormToken::Kind::End:
        break;
    }
    Fail("expected a property value but found " + Describe(m_token));
}

// Strings may be joined with '+', also across lines.
TFormValue TFormLexer::ReadString() {
    std::string text = m_token.text;
    Next();
    while (IsSymbol('+')) {
        Next();
        if (m_token.kind != TFormToken::Kind::String)
            Fail("expected a string after '+' but found " + Describe(m_token));
        text += m_token.text;
        Next();
    }
    return TFormValue::Str(std::move(text));
}

TFormValue TFormLexer::ReadSet() {
    ExpectSymbol('[');
    std::vector<std::string> items;
    if (!IsSymbol(']')) {
        for (;;) {
            items.push_back(ExpectIdent("a set element"));
            if (IsSymbol(']')) break;
            ExpectSymbol(',');
        }
    }
    ExpectSymbol(']');
    return TFormValue::SetOf(std::move(items));
}

TFormValue TFormLexer::ReadList() {
    ExpectSymbol('(');
    std::vector<TFormValue> items;
    while (!IsSymbol(')')) {
        if (m_token.kind == TFormToken::Kind::End) Fail("unterminated list: expected ')'");
        items.push_back(ReadValue());
    }
    ExpectSymbol(')');
    return TFormValue::ListOf(std::move(items));
}

// Binary data is read straight from the text: pairs of hex digits up to '}'.
TFormValue TFormLexer::ReadBinary() {
    const int line = m_token.line, column = m_token.column;
    std::vector<std::uint8_t> bytes;
    for (;;) {
        while (std::isspace(static_cast<unsigned char>(Peek())))
            Advance();
        if (m_pos >= m_text.size()) FailAt(line, column, "unterminated binary data: expected '}'");
        if (Peek() == '}') {
            Advance();
            break;
        }
        const int hi = HexDigit(Peek()), lo = HexDigit(Peek(1));
        if (hi < 0 || lo < 0) {
            FailAt(m_line, m_column, "invalid binary data: expected pairs of hexadecimal digits");
        }
        bytes.push_back(static_cast<std::uint8_t>(hi * 16 + lo));
        Advance();
        Advance();
    }
    Next();
    return TFormValue::Data(std::move(bytes));
}

} // namespace qv
