#include "jet/sql/lexer.h"

#include "jet/error.h"
#include "jet/sql/dateliteral.h"
#include "jet/text.h"

#include <algorithm>
#include <charconv>

namespace jet::sql {

namespace {

constexpr char32_t kNoBreakSpace = 0xA0;

// Keywords behind which an operand begins.
constexpr std::string_view kBeforeOperand[] = {
    "SELECT", "DISTINCT", "DISTINCTROW", "ALL", "WHERE", "HAVING",  "BY",   "ON",  "AND",
    "OR",     "XOR",      "EQV",         "IMP", "NOT",   "BETWEEN", "LIKE", "MOD", "PERCENT"};

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

bool isHexDigit(char c)
{
    return isDigit(c) || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}

bool isWordStart(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_'
           || static_cast<unsigned char>(c) >= 0x80;
}

class Lexer
{
public:
    explicit Lexer(std::string_view sql)
        : m_sql(sql)
    {}

    std::vector<Token> run()
    {
        m_tokens.reserve(m_sql.size() / 4);
        for (skipBlanks(); m_at < m_sql.size(); skipBlanks())
            m_tokens.push_back(token());
        m_tokens.push_back({TokenKind::End, "", {}, m_sql.size()});
        return std::move(m_tokens);
    }

private:
    char at(std::size_t index) const { return index < m_sql.size() ? m_sql[index] : '\0'; }

    void skipBlanks()
    {
        while (m_at < m_sql.size()) {
            std::size_t next = m_at;
            const char32_t c = nextCodePoint(m_sql, next);
            if (c != ' ' && c != '\t' && c != '\r' && c != '\n' && c != kNoBreakSpace)
                return;
            m_at = next;
        }
    }

    Token token()
    {
        const char c = m_sql[m_at];
        if (isWordStart(c))
            return word();
        if (isDigit(c) || (c == '.' && isDigit(at(m_at + 1))))
            return number();
        switch (c) {
        case '"':
        case '\'':
            return quoted(c);
        case '[':
            return bracketed(']');
        case '`':
            return bracketed('`');
        case '#':
            return date();
        case '&':
            if (isHexNumber())
                return hexNumber();
            break;
        default:
            break;
        }
        return symbol();
    }

    // Whether the token before can end an operand, so that `&HA` joins a column to it.
    bool afterOperand() const
    {
        if (m_tokens.empty())
            return false;
        const Token& last = m_tokens.back();
        if (last.kind == TokenKind::Word)
            return std::ranges::none_of(kBeforeOperand, [&last](std::string_view word) {
                return sameName(word, last.text);
            });
        return last.kind != TokenKind::Symbol || last.text == ")";
    }

    Token word()
    {
        const std::size_t begin = m_at;
        while (isWordStart(at(m_at)) || isDigit(at(m_at)))
            ++m_at;
        return {TokenKind::Word, std::string(m_sql.substr(begin, m_at - begin)), {}, begin};
    }

    void skipDigits()
    {
        while (isDigit(at(m_at)))
            ++m_at;
    }

    Token number()
    {
        const std::size_t begin = m_at;
        bool whole = true;
        skipDigits();
        if (at(m_at) == '.') {
            whole = false;
            ++m_at;
            skipDigits();
        }
        const char sign = at(m_at + 1);
        const bool exponent = at(m_at) == 'e' || at(m_at) == 'E';
        if (exponent
            && (isDigit(sign) || ((sign == '+' || sign == '-') && isDigit(at(m_at + 2))))) {
            whole = false;
            m_at += 2;
            skipDigits();
        }
        const std::string_view digits = m_sql.substr(begin, m_at - begin);
        return {TokenKind::Number, std::string(digits), numberValue(digits, whole, begin), begin};
    }

    Value numberValue(std::string_view digits, bool whole, std::size_t place) const
    {
        const char* end = digits.data() + digits.size();
        std::int64_t integer = 0;
        if (whole && std::from_chars(digits.data(), end, integer).ec == std::errc())
            return integer;
        double real = 0;
        if (std::from_chars(digits.data(), end, real).ec != std::errc())
            syntaxError(m_sql, place, "число «" + std::string(digits) + "» слишком велико");
        return real;
    }

    bool isHexNumber() const
    {
        return (at(m_at + 1) == 'H' || at(m_at + 1) == 'h') && isHexDigit(at(m_at + 2))
               && !afterOperand();
    }

    Token hexNumber()
    {
        const std::size_t begin = m_at;
        m_at += 2;
        while (isHexDigit(at(m_at)))
            ++m_at;
        const std::string_view digits = m_sql.substr(begin + 2, m_at - begin - 2);
        std::uint32_t value = 0;
        if (std::from_chars(digits.data(), digits.data() + digits.size(), value, 16).ec
            != std::errc())
            syntaxError(m_sql, begin, "шестнадцатеричное число слишком велико");
        // &HFFFFFFFF is -1: hexadecimal numbers are the bits of a Long.
        return {TokenKind::Number, std::string(m_sql.substr(begin, m_at - begin)),
                std::int64_t{static_cast<std::int32_t>(value)}, begin};
    }

    Token quoted(char quote)
    {
        const std::size_t begin = m_at++;
        std::string text;
        for (; m_at < m_sql.size(); ++m_at) {
            if (m_sql[m_at] == quote) {
                if (at(m_at + 1) != quote) {
                    ++m_at;
                    return {TokenKind::Text, std::move(text), {}, begin};
                }
                ++m_at;
            }
            text += m_sql[m_at];
        }
        syntaxError(m_sql, begin, "строка не закрыта кавычкой");
    }

    Token bracketed(char close)
    {
        const std::size_t begin = m_at;
        const std::size_t end = m_sql.find(close, begin + 1);
        if (end == std::string_view::npos)
            syntaxError(m_sql, begin, "имя не закрыто скобкой");
        if (end == begin + 1)
            syntaxError(m_sql, begin, "пустое имя");
        m_at = end + 1;
        return {
            TokenKind::Bracketed, std::string(m_sql.substr(begin + 1, end - begin - 1)), {}, begin};
    }

    Token date()
    {
        const std::size_t begin = m_at;
        const std::size_t end = m_sql.find('#', begin + 1);
        if (end == std::string_view::npos)
            syntaxError(m_sql, begin, "дата не закрыта знаком «#»");
        m_at = end + 1;
        const std::string_view literal = m_sql.substr(begin, m_at - begin);
        const auto value = parseDateLiteral(literal.substr(1, literal.size() - 2));
        if (!value)
            syntaxError(m_sql, begin, "неверная дата " + std::string(literal));
        return {TokenKind::Date, std::string(literal), *value, begin};
    }

    Token symbol()
    {
        constexpr std::string_view kSingle = "(),.!;*/\\^+-&=<>";
        const std::size_t begin = m_at;
        const std::string_view pair = m_sql.substr(begin, 2);
        if (pair == "<>" || pair == "<=" || pair == ">=") {
            m_at += 2;
            return {TokenKind::Symbol, std::string(pair), {}, begin};
        }
        if (kSingle.find(m_sql[begin]) == std::string_view::npos)
            syntaxError(m_sql, begin, std::string("лишний знак «") + shown(m_sql[begin]) + "»");
        ++m_at;
        return {TokenKind::Symbol, std::string(1, m_sql[begin]), {}, begin};
    }

    static std::string shown(char c)
    {
        return static_cast<unsigned char>(c) < ' ' ? "?" : std::string(1, c);
    }

    std::string_view m_sql;
    std::size_t m_at = 0;
    std::vector<Token> m_tokens;
};

} // namespace

std::vector<Token> tokenize(std::string_view sql)
{
    return Lexer(sql).run();
}

void syntaxError(std::string_view sql, std::size_t place, const std::string& message)
{
    std::size_t position = 1;
    for (std::size_t at = 0; at < place && at < sql.size(); ++position)
        nextCodePoint(sql, at);
    throw Error(Fault::Syntax, "синтаксическая ошибка в запросе, позиция "
                                   + std::to_string(position) + ": " + message);
}

} // namespace jet::sql
