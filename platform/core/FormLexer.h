#pragma once
// TFormLexer: splits the text of a form file into tokens and knows each token's line and
// column, so that every error can name the place. Also reads one property value.

#include "FormValue.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace qv {

struct TFormToken {
    enum class Kind { End, Ident, Integer, Float, String, Symbol };
    Kind kind{Kind::End};
    std::string text; // identifier, string contents or the symbol character
    std::int64_t integer{0};
    long double real{0};
    int line{1};
    int column{1};
};

class TFormLexer {
public:
    explicit TFormLexer(std::string_view text);

    const TFormToken& Current() const { return m_token; }
    void Next();

    bool IsSymbol(char c) const;
    bool IsIdent(std::string_view word) const; // case-insensitive
    void ExpectSymbol(char c);
    std::string ExpectIdent(const char* what);

    // Reads the value that starts at the current token (a number, string, identifier,
    // set, list or binary block); EReadError naming the place when it is not one.
    TFormValue ReadValue();

    // Raises EReadError "line L, column C: <message>" at the current token.
    [[noreturn]] void Fail(const std::string& message) const;
    [[noreturn]] void FailAt(int line, int column, const std::string& message) const;
    std::string Describe(const TFormToken& token) const;

private:
    void SkipSpaceAndComments();
    char Peek(std::size_t ahead = 0) const;
    void Advance();
    void LexNumber(bool hex);
    void LexString();
    TFormValue ReadString();
    TFormValue ReadSet();
    TFormValue ReadList();
    TFormValue ReadBinary();

    std::string_view m_text;
    std::size_t m_pos{0};
    int m_line{1};
    int m_column{1};
    TFormToken m_token;
};

} // namespace qv
