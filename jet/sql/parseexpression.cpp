#include "jet/sql/nesting.h"
#include "jet/sql/parser.h"

#include "jet/text.h"

#include <algorithm>
#include <array>
#include <span>

namespace jet::sql {

namespace {

struct OperatorWord
{
    std::string_view word;
    Operator op;
};

// Each row binds tighter than the one before it.
constexpr OperatorWord kLogical[] = {
    {"IMP", Operator::Imp}, {"EQV", Operator::Eqv}, {"XOR", Operator::Xor},
    {"OR", Operator::Or},   {"AND", Operator::And},
};

constexpr OperatorWord kComparisons[] = {
    {"=", Operator::Equal},        {"<>", Operator::NotEqual}, {"<", Operator::Less},
    {"<=", Operator::LessOrEqual}, {">", Operator::Greater},   {">=", Operator::GreaterOrEqual},
};

constexpr std::array<std::array<OperatorWord, 2>, 5> kArithmetic = {{
    {{{"&", Operator::Concatenate}, {"", Operator::None}}},
    {{{"+", Operator::Add}, {"-", Operator::Subtract}}},
    {{{"MOD", Operator::Modulo}, {"", Operator::None}}},
    {{{"\\", Operator::IntegerDivide}, {"", Operator::None}}},
    {{{"*", Operator::Multiply}, {"/", Operator::Divide}}},
}};

// Words that begin or join clauses, so that they cannot be bare names in an expression.
constexpr std::string_view kReserved[] = {"SELECT", "FROM", "WHERE", "GROUP", "HAVING", "ORDER",
                                          "UNION",  "AND",  "OR",    "XOR",   "EQV",    "IMP",
                                          "MOD",    "IN",   "IS",    "LIKE",  "AS",     "ON",
                                          "INNER",  "JOIN", "SET",   "INTO",  "VALUES", "BETWEEN"};

bool isReserved(std::string_view word)
{
    return std::ranges::any_of(kReserved,
                               [word](std::string_view each) { return sameName(each, word); });
}

// The operator that stands next, None when it is none of these.
Operator operatorAt(const TokenCursor& tokens, std::span<const OperatorWord> words)
{
    for (const OperatorWord& each : words)
        if (!each.word.empty() && (tokens.isSymbol(each.word) || tokens.isWord(each.word)))
            return each.op;
    return Operator::None;
}

ExpressionPtr node(ExpressionKind kind, std::size_t place)
{
    auto result = std::make_unique<Expression>();
    result->kind = kind;
    result->place = place;
    return result;
}

} // namespace

ExpressionPtr Parser::finished(ExpressionPtr node)
{
    int deepest = node->query ? node->query->depth : 0;
    for (const ExpressionPtr& operand : node->operands)
        deepest = std::max(deepest, operand->depth);
    node->depth = deepest + 1;
    if (node->depth > kMaxDepth)
        throw Error(Fault::Limit, "слишком длинное выражение в запросе");
    m_deepest = std::max(m_deepest, node->depth);
    return node;
}

ExpressionPtr Parser::operation(Operator op, std::size_t place, ExpressionPtr left,
                                ExpressionPtr right)
{
    auto result = node(ExpressionKind::Operation, place);
    result->op = op;
    result->operands.push_back(std::move(left));
    if (right)
        result->operands.push_back(std::move(right));
    return finished(std::move(result));
}

ExpressionPtr Parser::expression()
{
    return logical(0);
}

ExpressionPtr Parser::logical(std::size_t level)
{
    if (level == std::size(kLogical))
        return negation();
    ExpressionPtr left = logical(level + 1);
    while (m_tokens.isWord(kLogical[level].word)) {
        const std::size_t place = m_tokens.next().place;
        left = operation(kLogical[level].op, place, std::move(left), logical(level + 1));
    }
    return left;
}

ExpressionPtr Parser::negation()
{
    if (!m_tokens.isWord("NOT"))
        return comparison();
    const Nested nested(*this);
    const std::size_t place = m_tokens.next().place;
    return operation(Operator::Not, place, negation());
}

ExpressionPtr Parser::comparison()
{
    ExpressionPtr left = arithmetic(0);
    while (true) {
        const Operator op = operatorAt(m_tokens, kComparisons);
        if (op != Operator::None) {
            const std::size_t place = m_tokens.next().place;
            left = operation(op, place, std::move(left), arithmetic(0));
        } else if (!predicate(left)) {
            return left;
        }
    }
}

// Reads IS NULL, LIKE, BETWEEN or IN behind `left` and puts it in its place.
bool Parser::predicate(ExpressionPtr& left)
{
    const std::size_t place = m_tokens.peek().place;
    if (m_tokens.acceptWord("IS")) {
        auto result = node(ExpressionKind::IsNull, place);
        result->negated = m_tokens.acceptWord("NOT");
        m_tokens.expectWord("NULL");
        result->operands.push_back(std::move(left));
        left = finished(std::move(result));
        return true;
    }
    const std::size_t behindNot = m_tokens.isWord("NOT") ? 1 : 0;
    const bool like = m_tokens.isWord("LIKE", behindNot);
    const bool between = m_tokens.isWord("BETWEEN", behindNot);
    if (!like && !between && !m_tokens.isWord("IN", behindNot))
        return false;
    const bool negated = m_tokens.acceptWord("NOT");
    m_tokens.next();
    ExpressionPtr result;
    if (like || between) {
        result = node(like ? ExpressionKind::Like : ExpressionKind::Between, place);
        result->operands.push_back(std::move(left));
        result->operands.push_back(arithmetic(0));
        if (between) {
            m_tokens.expectWord("AND");
            result->operands.push_back(arithmetic(0));
        }
    } else {
        result = inList(std::move(left), place);
    }
    result->negated = negated;
    left = finished(std::move(result));
    return true;
}

ExpressionPtr Parser::inList(ExpressionPtr left, std::size_t place)
{
    const Nested nested(*this);
    auto result = node(ExpressionKind::InList, place);
    result->operands.push_back(std::move(left));
    m_tokens.expectSymbol("(");
    if (m_tokens.isWord("SELECT")) {
        result->kind = ExpressionKind::InQuery;
        result->query = subquery();
        return result;
    }
    do
        result->operands.push_back(expression());
    while (m_tokens.acceptSymbol(","));
    m_tokens.expectSymbol(")");
    return result;
}

ExpressionPtr Parser::arithmetic(std::size_t level)
{
    if (level == kArithmetic.size())
        return unary();
    ExpressionPtr left = arithmetic(level + 1);
    for (Operator op = operatorAt(m_tokens, kArithmetic[level]); op != Operator::None;
         op = operatorAt(m_tokens, kArithmetic[level])) {
        const std::size_t place = m_tokens.next().place;
        left = operation(op, place, std::move(left), arithmetic(level + 1));
    }
    return left;
}

ExpressionPtr Parser::unary()
{
    const bool minus = m_tokens.isSymbol("-");
    if (!minus && !m_tokens.isSymbol("+"))
        return power();
    const Nested nested(*this);
    const std::size_t place = m_tokens.next().place;
    return operation(minus ? Operator::Negate : Operator::Plus, place, unary());
}

ExpressionPtr Parser::power()
{
    ExpressionPtr left = primary();
    while (m_tokens.isSymbol("^")) {
        const std::size_t place = m_tokens.next().place;
        // The exponent may carry a sign: 2 ^ -1.
        const bool signedExponent = m_tokens.isSymbol("-") || m_tokens.isSymbol("+");
        left = operation(Operator::Power, place, std::move(left),
                         signedExponent ? unary() : primary());
    }
    return left;
}

ExpressionPtr Parser::literal(Value value)
{
    auto result = node(ExpressionKind::Literal, m_tokens.next().place);
    result->literal = std::move(value);
    return finished(std::move(result));
}

ExpressionPtr Parser::primary()
{
    const Token& token = m_tokens.peek();
    switch (token.kind) {
    case TokenKind::Number:
    case TokenKind::Date:
        return literal(token.value);
    case TokenKind::Text:
        return literal(token.text);
    case TokenKind::Bracketed:
        return column();
    case TokenKind::Word:
        return wordPrimary();
    case TokenKind::Symbol:
        if (token.text == "(")
            return bracket();
        break;
    case TokenKind::End:
        break;
    }
    m_tokens.failExpecting("выражение");
}

ExpressionPtr Parser::bracket()
{
    const Nested nested(*this);
    const std::size_t place = m_tokens.next().place;
    if (m_tokens.isWord("SELECT")) {
        auto result = node(ExpressionKind::Scalar, place);
        result->query = subquery();
        return finished(std::move(result));
    }
    ExpressionPtr inner = expression();
    m_tokens.expectSymbol(")");
    return inner;
}

QueryPtr Parser::subquery()
{
    auto result = std::make_unique<Query>(query());
    m_tokens.expectSymbol(")");
    return result;
}

ExpressionPtr Parser::wordPrimary()
{
    const std::string& word = m_tokens.peek().text;
    const bool qualifier = m_tokens.isSymbol(".", 1) || m_tokens.isSymbol("!", 1);
    if (qualifier)
        return column();
    if (m_tokens.isWord("EXISTS") && m_tokens.isSymbol("(", 1)) {
        const Nested nested(*this);
        auto result = node(ExpressionKind::Exists, m_tokens.next().place);
        m_tokens.next();
        result->query = subquery();
        return finished(std::move(result));
    }
    if (isReserved(word))
        m_tokens.failExpecting("выражение");
    if (m_tokens.isSymbol("(", 1))
        return call();
    if (m_tokens.isWord("NULL"))
        return literal(Value());
    if (m_tokens.isWord("TRUE") || m_tokens.isWord("YES"))
        return literal(true);
    if (m_tokens.isWord("FALSE") || m_tokens.isWord("NO"))
        return literal(false);
    return column();
}

ExpressionPtr Parser::column()
{
    auto result = node(ExpressionKind::Column, m_tokens.peek().place);
    result->name = m_tokens.next().text;
    if (m_tokens.isSymbol(".") || m_tokens.isSymbol("!")) {
        m_tokens.next();
        result->qualifier = std::move(result->name);
        result->name = m_tokens.expectName("имя поля");
    }
    return finished(std::move(result));
}

ExpressionPtr Parser::call()
{
    const Nested nested(*this);
    auto result = node(ExpressionKind::Call, m_tokens.peek().place);
    result->name = m_tokens.next().text;
    m_tokens.next();
    if (m_tokens.acceptSymbol("*")) {
        result->star = true;
    } else if (!m_tokens.isSymbol(")")) {
        do
            result->operands.push_back(expression());
        while (m_tokens.acceptSymbol(","));
    }
    m_tokens.expectSymbol(")");
    return finished(std::move(result));
}

} // namespace jet::sql
