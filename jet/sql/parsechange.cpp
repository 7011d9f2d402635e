#include "jet/sql/nesting.h"
#include "jet/sql/parser.h"

namespace jet::sql {

Insert Parser::insert()
{
    Insert result;
    m_tokens.expectWord("INTO");
    result.place = m_tokens.peek().place;
    result.table = m_tokens.expectName("имя таблицы");
    if (m_tokens.isSymbol("(") && !m_tokens.isWord("SELECT", 1)) {
        m_tokens.next();
        do {
            std::string name = m_tokens.expectName("имя поля");
            if (m_tokens.acceptSymbol(".") || m_tokens.acceptSymbol("!"))
                name = m_tokens.expectName("имя поля");
            result.columns.push_back(std::move(name));
        } while (m_tokens.acceptSymbol(","));
        m_tokens.expectSymbol(")");
    }
    if (m_tokens.acceptWord("VALUES"))
        result.values = expressionList();
    else if (m_tokens.isWord("SELECT") || m_tokens.isSymbol("("))
        result.query = std::make_unique<Query>(query());
    else
        m_tokens.failExpecting("VALUES или SELECT");
    return result;
}

std::vector<ExpressionPtr> Parser::expressionList()
{
    const Nested nested(*this);
    std::vector<ExpressionPtr> result;
    m_tokens.expectSymbol("(");
    do
        result.push_back(expression());
    while (m_tokens.acceptSymbol(","));
    m_tokens.expectSymbol(")");
    return result;
}

Update Parser::update()
{
    Update result;
    result.sources = sources();
    m_tokens.expectWord("SET");
    do
        result.assignments.push_back(assignment());
    while (m_tokens.acceptSymbol(","));
    if (m_tokens.acceptWord("WHERE"))
        result.where = expression();
    return result;
}

Assignment Parser::assignment()
{
    Assignment result;
    result.place = m_tokens.peek().place;
    result.name = m_tokens.expectName("имя поля");
    if (m_tokens.acceptSymbol(".") || m_tokens.acceptSymbol("!")) {
        result.qualifier = std::move(result.name);
        result.name = m_tokens.expectName("имя поля");
    }
    m_tokens.expectSymbol("=");
    result.value = expression();
    return result;
}

Delete Parser::deletion()
{
    Delete result;
    m_tokens.acceptWord("DISTINCTROW");
    result.place = m_tokens.peek().place;
    if (!m_tokens.acceptSymbol("*") && !m_tokens.isWord("FROM")) {
        result.target = m_tokens.expectName("имя таблицы");
        if (!m_tokens.acceptSymbol("!"))
            m_tokens.expectSymbol(".");
        m_tokens.expectSymbol("*");
    }
    m_tokens.expectWord("FROM");
    result.sources = sources();
    if (m_tokens.acceptWord("WHERE"))
        result.where = expression();
    return result;
}

} // namespace jet::sql
