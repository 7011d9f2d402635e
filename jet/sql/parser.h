#pragma once

#include "jet/sql/ast.h"
#include "jet/sql/tokencursor.h"

#include <string_view>

namespace jet::sql {

// A recursive-descent parser of one statement; a method a grammar rule, a source file a
// family of statements. Nesting and depth are bounded, so that no text exhausts the stack.
class Parser
{
public:
    explicit Parser(std::string_view sql, int nesting = 0);

    // The whole text, with an optional `;` at its end.
    Statement statement();
    // The whole text as a SELECT.
    Query wholeQuery();
    // The whole text as an expression.
    ExpressionPtr wholeExpression();

private:
    class Nested;

    void expectEnd();

    // parsequery.cpp
    Query query();
    Select part();
    Select select();
    void quantifiers(Select& select);
    SelectItem item();
    void clauses(Select& select);
    std::vector<OrderItem> orderBy();
    std::vector<Source> sources();
    Source source();
    Source primarySource();
    Source derivedTable(std::size_t place, QueryPtr query);
    Source oldStyleDerivedTable();
    bool acceptJoin(JoinKind& kind);
    std::string sourceAlias();

    // parseexpression.cpp: rules from the loosest to the tightest operator
    ExpressionPtr expression();
    ExpressionPtr logical(std::size_t level);
    ExpressionPtr negation();
    ExpressionPtr comparison();
    bool predicate(ExpressionPtr& left);
    ExpressionPtr inList(ExpressionPtr left, std::size_t place);
    ExpressionPtr arithmetic(std::size_t level);
    ExpressionPtr unary();
    ExpressionPtr power();
    ExpressionPtr primary();
    ExpressionPtr bracket();
    ExpressionPtr wordPrimary();
    ExpressionPtr column();
    ExpressionPtr call();
    ExpressionPtr literal(Value value);
    QueryPtr subquery(); // behind the opening bracket, up to and with the closing one
    ExpressionPtr operation(Operator op, std::size_t place, ExpressionPtr left,
                            ExpressionPtr right = nullptr);
    // Sets and checks the depth; every node passes through here.
    ExpressionPtr finished(ExpressionPtr node);

    // parsechange.cpp
    Insert insert();
    Update update();
    Delete deletion();
    std::vector<ExpressionPtr> expressionList(); // with its brackets
    Assignment assignment();

    // parsedefinition.cpp
    Statement create();
    Statement alter();
    Statement drop();
    CreateTable createTable();
    CreateIndex createIndex(bool unique);
    void tableElement(TableDef& table);
    bool isTableConstraint() const;
    Field columnDefinition(std::vector<Index>& indexes);
    void columnType(Field& field);
    bool columnOption(Field& field, std::vector<Index>& indexes);
    void columnConstraint(const Field& field, std::vector<Index>& indexes);
    Index tableConstraint();
    std::vector<IndexField> indexFields();
    void indexOptions(Index& index);
    int sizeInBrackets(int least, int most, int otherwise);
    [[noreturn]] void refuse(const std::string& what) const;

    TokenCursor m_tokens;
    int m_nesting;
    int m_deepest = 0; // of the expressions of the query being read
};

} // namespace jet::sql
