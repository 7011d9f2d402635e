#pragma once

#include "jet/value.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace jet::sql {

enum class TokenKind {
    Word,      // a keyword or a bare name, as written
    Bracketed, // [name] or `name`, without the brackets
    Text,      // "text" or 'text', quotes halved
    Number,
    Date,
    Symbol, // one or two characters; != and the like are not Jet's
    End,
};

struct Token
{
    TokenKind kind = TokenKind::End;
    std::string text;  // Word, Bracketed, Text: the content; Symbol: the symbol; else as written
    Value value;       // Number: std::int64_t or double; Date: DateTime
    std::size_t place; // byte offset in the statement
};

// Splits a statement; the last token is End. Throws Error (Fault::Syntax) for a character
// that cannot stand there, an open quote or bracket, and a date that is none.
std::vector<Token> tokenize(std::string_view sql);

// Throws Error (Fault::Syntax): "синтаксическая ошибка в запросе, позиция N: " + message,
// counting characters from 1.
[[noreturn]] void syntaxError(std::string_view sql, std::size_t place, const std::string& message);

} // namespace jet::sql
