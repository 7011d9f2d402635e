#include "jet/sql/parser.h"

#include "jet/sql/translation.h"

namespace jet::sql {

Parser::Parser(std::string_view sql, int nesting)
    : m_tokens(sql)
    , m_nesting(nesting)
{}

Statement Parser::statement()
{
    Statement result = [this]() -> Statement {
        if (m_tokens.isWord("SELECT") || m_tokens.isSymbol("("))
            return query();
        if (m_tokens.acceptWord("INSERT"))
            return insert();
        if (m_tokens.acceptWord("UPDATE"))
            return update();
        if (m_tokens.acceptWord("DELETE"))
            return deletion();
        if (m_tokens.acceptWord("CREATE"))
            return create();
        if (m_tokens.acceptWord("ALTER"))
            return alter();
        if (m_tokens.acceptWord("DROP"))
            return drop();
        m_tokens.failExpecting("SELECT, INSERT, UPDATE, DELETE, CREATE, ALTER или DROP");
    }();
    expectEnd();
    return result;
}

Query Parser::wholeQuery()
{
    Query result = query();
    expectEnd();
    return result;
}

ExpressionPtr Parser::wholeExpression()
{
    ExpressionPtr result = expression();
    expectEnd();
    return result;
}

void Parser::expectEnd()
{
    m_tokens.acceptSymbol(";");
    if (m_tokens.peek().kind != TokenKind::End)
        m_tokens.failExpecting("конец запроса");
}

Statement parse(std::string_view sql)
{
    return Parser(sql).statement();
}

} // namespace jet::sql
