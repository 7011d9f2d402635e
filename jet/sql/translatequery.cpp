#include "jet/sql/selecttranslator.h"

#include "jet/error.h"

namespace jet::sql {

namespace {

// In no name of Jet's, so free for the union that ORDER BY works on.
constexpr const char* kUnionName = "\"[union]\"";

Fragment unionKey(const Expression& expression, const ScopeSource& source, Scope& scope)
{
    const auto* position = expression.literal.as<std::int64_t>();
    const auto count = static_cast<std::int64_t>(source.columns.size());
    if (*position < 1 || *position > count)
        throw Error(Fault::Syntax, "в ORDER BY указан номер поля " + std::to_string(*position)
                                       + ", а полей в запросе " + std::to_string(count));
    return scope.use(source, source.columns[static_cast<std::size_t>(*position - 1)]);
}

bool isPosition(const Expression& expression)
{
    return expression.kind == ExpressionKind::Literal && expression.literal.as<std::int64_t>();
}

void unifyTypes(std::vector<ResultColumn>& columns, const std::vector<ResultColumn>& others)
{
    if (columns.size() != others.size())
        throw Error(Fault::Syntax, "части UNION дают разное число полей");
    for (std::size_t i = 0; i < columns.size(); ++i)
        columns[i].type = unified(columns[i].type, others[i].type);
}

} // namespace

Translation Translator::query(const Query& query)
{
    Translation result;
    result.kind = StatementKind::Select;
    QueryText text = queryText(query, nullptr);
    result.sqlite = std::move(text.sql);
    result.columns = std::move(text.columns);
    result.tables = m_tables;
    return result;
}

QueryText Translator::queryText(const Query& query, Scope* outer)
{
    if (query.parts.size() > 1)
        return unionText(query, outer);
    return SelectTranslator(*this, query.parts.front(), query.orderBy, outer).run();
}

QueryText Translator::unionText(const Query& query, Scope* outer)
{
    QueryText result;
    for (std::size_t i = 0; i < query.parts.size(); ++i) {
        const Select& part = query.parts[i];
        QueryText text = SelectTranslator(*this, part, {}, outer).run();
        if (part.top) // its LIMIT would count the rows of the whole union
            text.sql = "SELECT * FROM (" + text.sql + ')';
        if (i == 0) {
            result = std::move(text);
            continue;
        }
        result.sql += (query.unionAll[i - 1] ? " UNION ALL " : " UNION ") + text.sql;
        unifyTypes(result.columns, text.columns);
    }
    if (query.orderBy.empty())
        return result;
    Scope scope(outer);
    scope.add({"", kUnionName, false, result.columns});
    std::string order;
    for (const OrderItem& item : query.orderBy) {
        const Fragment key = isPosition(*item.expression)
                                 ? unionKey(*item.expression, scope.sources().front(), scope)
                                 : value(*item.expression, scope);
        order += (order.empty() ? " ORDER BY " : ", ") + collated(key).sql
                 + (item.descending ? " DESC" : "");
    }
    result.sql = "SELECT * FROM (" + result.sql + ") AS " + kUnionName + order;
    return result;
}

} // namespace jet::sql
