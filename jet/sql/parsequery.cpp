#include "jet/sql/nesting.h"
#include "jet/sql/parser.h"

#include "jet/text.h"

#include <algorithm>

namespace jet::sql {

namespace {

constexpr std::size_t kMaxParts = 500;  // SQLite's limit for one compound select
constexpr int kMaxJoins = 60;           // SQLite joins up to 64 tables
constexpr std::size_t kMaxItems = 2000; // SQLite's limit for result columns

// Words that may follow a table, so that they are no alias without AS.
constexpr std::string_view kBehindSource[] = {"INNER", "LEFT",  "RIGHT",  "JOIN",  "ON",
                                              "WHERE", "GROUP", "HAVING", "ORDER", "UNION",
                                              "SET",   "AS",    "OUTER"};

} // namespace

Query Parser::query()
{
    const int deepestOutside = m_deepest;
    m_deepest = 0;
    Query result;
    result.parts.push_back(part());
    while (m_tokens.acceptWord("UNION")) {
        if (result.parts.size() == kMaxParts)
            throw Error(Fault::Limit, "слишком много частей UNION в запросе");
        result.unionAll.push_back(m_tokens.acceptWord("ALL"));
        result.parts.push_back(part());
    }
    if (m_tokens.acceptWord("ORDER"))
        result.orderBy = orderBy();
    result.depth = m_deepest;
    m_deepest = std::max(deepestOutside, result.depth);
    return result;
}

Select Parser::part()
{
    if (!m_tokens.isSymbol("("))
        return select();
    const Nested nested(*this);
    m_tokens.next();
    Select result = part();
    m_tokens.expectSymbol(")");
    return result;
}

Select Parser::select()
{
    Select result;
    m_tokens.expectWord("SELECT");
    quantifiers(result);
    do {
        if (result.items.size() == kMaxItems)
            throw Error(Fault::Limit, "слишком много полей в запросе");
        result.items.push_back(item());
    } while (m_tokens.acceptSymbol(","));
    clauses(result);
    return result;
}

void Parser::quantifiers(Select& select)
{
    if (m_tokens.acceptWord("DISTINCT"))
        select.distinct = true;
    else if (m_tokens.acceptWord("DISTINCTROW"))
        select.distinctRow = true;
    else
        m_tokens.acceptWord("ALL");
    // TOP is a name unless a number follows.
    if (!m_tokens.isWord("TOP") || m_tokens.peek(1).kind != TokenKind::Number)
        return;
    m_tokens.next();
    const Token count = m_tokens.next();
    const std::int64_t* number = count.value.as<std::int64_t>();
    if (!number || *number < 0)
        m_tokens.fail(count.place, "число строк в TOP должно быть целым");
    select.top = *number;
    select.topPercent = m_tokens.acceptWord("PERCENT");
}

SelectItem Parser::item()
{
    SelectItem result;
    result.place = m_tokens.peek().place;
    if (m_tokens.acceptSymbol("*"))
        return result;
    const bool qualified = m_tokens.isName() && m_tokens.isSymbol("*", 2)
                           && (m_tokens.isSymbol(".", 1) || m_tokens.isSymbol("!", 1));
    if (qualified) {
        result.qualifier = m_tokens.next().text;
        m_tokens.next();
        m_tokens.next();
        return result;
    }
    result.expression = expression();
    if (m_tokens.acceptWord("AS"))
        result.alias = m_tokens.expectName("имя поля после AS");
    return result;
}

void Parser::clauses(Select& select)
{
    if (m_tokens.acceptWord("FROM"))
        select.from = sources();
    if (m_tokens.acceptWord("WHERE"))
        select.where = expression();
    if (m_tokens.acceptWord("GROUP")) {
        m_tokens.expectWord("BY");
        do
            select.groupBy.push_back(expression());
        while (m_tokens.acceptSymbol(","));
    }
    if (m_tokens.acceptWord("HAVING"))
        select.having = expression();
}

std::vector<OrderItem> Parser::orderBy()
{
    m_tokens.expectWord("BY");
    std::vector<OrderItem> result;
    do {
        OrderItem item;
        item.expression = expression();
        item.descending = m_tokens.acceptWord("DESC");
        if (!item.descending)
            m_tokens.acceptWord("ASC");
        result.push_back(std::move(item));
    } while (m_tokens.acceptSymbol(","));
    return result;
}

std::vector<Source> Parser::sources()
{
    std::vector<Source> result;
    do {
        if (result.size() == kMaxJoins)
            throw Error(Fault::Limit, "слишком много таблиц в запросе");
        result.push_back(source());
    } while (m_tokens.acceptSymbol(","));
    return result;
}

Source Parser::source()
{
    Source left = primarySource();
    JoinKind kind = JoinKind::Inner;
    for (int joins = 0; acceptJoin(kind); ++joins) {
        if (joins == kMaxJoins)
            throw Error(Fault::Limit, "слишком много таблиц в запросе");
        Source join;
        join.place = left.place;
        join.join = kind;
        join.left = std::make_unique<Source>(std::move(left));
        join.right = std::make_unique<Source>(primarySource());
        m_tokens.expectWord("ON");
        join.on = expression();
        left = std::move(join);
    }
    return left;
}

bool Parser::acceptJoin(JoinKind& kind)
{
    kind = JoinKind::Inner;
    if (m_tokens.isWord("LEFT") || m_tokens.isWord("RIGHT")) {
        kind = m_tokens.isWord("LEFT") ? JoinKind::Left : JoinKind::Right;
        m_tokens.next();
        m_tokens.acceptWord("OUTER");
    } else if (!m_tokens.acceptWord("INNER") && !m_tokens.isWord("JOIN")) {
        return false;
    }
    m_tokens.expectWord("JOIN");
    return true;
}

Source Parser::primarySource()
{
    const std::size_t place = m_tokens.peek().place;
    if (m_tokens.isSymbol("(")) {
        const Nested nested(*this);
        m_tokens.next();
        if (m_tokens.isWord("SELECT"))
            return derivedTable(place, subquery());
        Source inner = source();
        m_tokens.expectSymbol(")");
        return inner;
    }
    if (m_tokens.peek().kind == TokenKind::Bracketed && m_tokens.isSymbol(".", 1))
        return oldStyleDerivedTable();
    Source result;
    result.place = place;
    result.table = m_tokens.expectName("имя таблицы");
    result.alias = sourceAlias();
    return result;
}

Source Parser::derivedTable(std::size_t place, QueryPtr query)
{
    Source result;
    result.place = place;
    result.query = std::move(query);
    result.alias = sourceAlias();
    return result;
}

// `[SELECT ...]. AS X`, as older versions of Access wrote a derived table.
Source Parser::oldStyleDerivedTable()
{
    const Nested nested(*this);
    const Token inner = m_tokens.next();
    m_tokens.expectSymbol(".");
    Parser parser(inner.text, m_nesting);
    return derivedTable(inner.place, std::make_unique<Query>(parser.wholeQuery()));
}

std::string Parser::sourceAlias()
{
    if (m_tokens.acceptWord("AS"))
        return m_tokens.expectName("имя после AS");
    if (m_tokens.peek().kind == TokenKind::Bracketed)
        return m_tokens.next().text;
    const bool clause = std::ranges::any_of(
        kBehindSource, [this](std::string_view word) { return m_tokens.isWord(word); });
    return m_tokens.isName() && !clause ? m_tokens.next().text : "";
}

} // namespace jet::sql
