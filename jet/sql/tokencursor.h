#pragma once

#include "jet/sql/lexer.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace jet::sql {

// The tokens of a statement, read forward; keywords compare without case and are never
// bracketed. The statement's text must outlive it.
class TokenCursor
{
public:
    explicit TokenCursor(std::string_view sql);

    std::string_view sql() const { return m_sql; }
    // The token to be read next, or one behind it; End behind the last.
    const Token& peek(std::size_t ahead = 0) const;
    const Token& next();

    bool isWord(std::string_view word, std::size_t ahead = 0) const;
    bool isSymbol(std::string_view symbol, std::size_t ahead = 0) const;
    // A word or a bracketed name.
    bool isName(std::size_t ahead = 0) const;

    // Reads the token if it is the one given.
    bool acceptWord(std::string_view word);
    bool acceptSymbol(std::string_view symbol);

    // Throw Error (Fault::Syntax) when something else stands there.
    void expectWord(std::string_view word);
    void expectSymbol(std::string_view symbol);
    std::string expectName(std::string_view what);

    // "ожидалось ..., а стоит «...»" at the next token.
    [[noreturn]] void failExpecting(std::string_view what) const;
    [[noreturn]] void fail(std::size_t place, const std::string& message) const;

private:
    std::string_view m_sql;
    std::vector<Token> m_tokens;
    std::size_t m_next = 0;
};

} // namespace jet::sql
