#pragma once

#include "jet/sql/ast.h"
#include "jet/sql/scope.h"
#include "jet/sql/translation.h"

#include <string>
#include <string_view>
#include <vector>

namespace jet::sql {

// A SELECT in SQLite's language. Every column has its name behind AS.
struct QueryText
{
    std::string sql;
    std::vector<ResultColumn> columns;
};

// Turns syntax trees into SQLite text; a source file a family of statements.
class Translator
{
public:
    explicit Translator(SchemaLookup& schema)
        : m_schema(schema)
    {}

    Translation query(const Query& query);
    Translation insert(const Insert& insert);
    Translation update(const Update& update);
    Translation deletion(const Delete& deletion);

private:
    friend class SelectTranslator;

    // translatequery.cpp
    QueryText queryText(const Query& query, Scope* outer);
    QueryText unionText(const Query& query, Scope* outer);

    // translatesource.cpp
    struct JoinText;
    std::string from(const std::vector<Source>& sources, Scope& scope);
    JoinText joinText(const Source& source, Scope& scope);
    JoinText innerJoin(JoinText left, JoinText right, std::string condition) const;
    std::string table(const Source& source, Scope& scope);
    std::string derived(const Source& source, Scope& scope);
    const std::vector<SchemaColumn>& columns(const std::string& table);
    std::string canonicalName(const std::string& table);

    // translateexpression.cpp
    Fragment expression(const Expression& expression, Scope& scope);
    Fragment ungrouped(const Expression& expression, Scope& scope);
    Fragment value(const Expression& expression, Scope& scope);
    Fragment rowCondition(const Expression& expression, Scope& scope);
    Fragment literal(const Expression& expression) const;
    Fragment like(const Expression& expression, Scope& scope);
    Fragment between(const Expression& expression, Scope& scope);
    Fragment inList(const Expression& expression, Scope& scope);
    Fragment inQuery(const Expression& expression, Scope& scope);
    Fragment isNull(const Expression& expression, Scope& scope);
    Fragment exists(const Expression& expression, Scope& scope);
    Fragment scalar(const Expression& expression, Scope& scope);

    // translateoperation.cpp
    Fragment operation(const Expression& expression, Scope& scope);
    Fragment logical(const Expression& expression, Scope& scope);
    Fragment negation(const Expression& expression, Scope& scope);
    Fragment comparison(const Expression& expression, Scope& scope);
    Fragment concatenation(const Expression& expression, Scope& scope);
    Fragment addition(const Expression& expression, Scope& scope);
    Fragment arithmetic(const Expression& expression, Scope& scope);
    Fragment sign(const Expression& expression, Scope& scope);

    // translatecall.cpp
    Fragment call(const Expression& expression, Scope& scope);
    Fragment function(const Expression& expression, Scope& scope);
    Fragment aggregate(const Expression& expression, Scope& scope);
    Fragment special(const Expression& expression, Scope& scope);
    Fragment conditional(const Expression& expression, Scope& scope);
    Fragment choice(const Expression& expression, Scope& scope);
    Fragment nullReplaced(const Expression& expression, Scope& scope);

    // translatechange.cpp
    std::string joinedUpdate(const Update& update, const ScopeSource& target, Scope& scope,
                             const std::string& from);
    std::string assignments(const Update& update, const ScopeSource& target, Scope& scope);
    std::vector<std::string> insertColumns(const Insert& insert,
                                           const std::vector<ResultColumn>* given);
    std::string defaultText(const SchemaColumn& column);

    SchemaLookup& m_schema;
    std::vector<std::string> m_tables; // canonical names met so far
    int m_unnamed = 0;                 // derived tables without a name
    int m_open = 0;                    // expressions being translated; useless after a throw
};

} // namespace jet::sql
