#include "jet/sql/tokencursor.h"

#include "jet/text.h"

#include <algorithm>

namespace jet::sql {

TokenCursor::TokenCursor(std::string_view sql)
    : m_sql(sql)
    , m_tokens(tokenize(sql))
{}

const Token& TokenCursor::peek(std::size_t ahead) const
{
    return m_tokens[std::min(m_next + ahead, m_tokens.size() - 1)];
}

const Token& TokenCursor::next()
{
    const Token& token = peek();
    m_next = std::min(m_next + 1, m_tokens.size() - 1);
    return token;
}

bool TokenCursor::isWord(std::string_view word, std::size_t ahead) const
{
    const Token& token = peek(ahead);
    return token.kind == TokenKind::Word && sameName(token.text, word);
}

bool TokenCursor::isSymbol(std::string_view symbol, std::size_t ahead) const
{
    const Token& token = peek(ahead);
    return token.kind == TokenKind::Symbol && token.text == symbol;
}

bool TokenCursor::isName(std::size_t ahead) const
{
    const TokenKind kind = peek(ahead).kind;
    return kind == TokenKind::Word || kind == TokenKind::Bracketed;
}

bool TokenCursor::acceptWord(std::string_view word)
{
    const bool found = isWord(word);
    if (found)
        next();
    return found;
}

bool TokenCursor::acceptSymbol(std::string_view symbol)
{
    const bool found = isSymbol(symbol);
    if (found)
        next();
    return found;
}

void TokenCursor::expectWord(std::string_view word)
{
    if (!acceptWord(word))
        failExpecting(word);
}

void TokenCursor::expectSymbol(std::string_view symbol)
{
    if (!acceptSymbol(symbol))
        failExpecting("«" + std::string(symbol) + "»");
}

std::string TokenCursor::expectName(std::string_view what)
{
    if (!isName())
        failExpecting(what);
    return next().text;
}

void TokenCursor::failExpecting(std::string_view what) const
{
    const Token& token = peek();
    const std::string found =
        token.kind == TokenKind::End ? "запрос кончился" : "стоит «" + token.text + "»";
    fail(token.place, "ожидалось " + std::string(what) + ", а " + found);
}

void TokenCursor::fail(std::size_t place, const std::string& message) const
{
    syntaxError(m_sql, place, message);
}

} // namespace jet::sql
