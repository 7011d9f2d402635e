#include "jet/sql/translator.h"

#include "jet/error.h"
#include "jet/text.h"

#include <algorithm>
#include <utility>

namespace jet::sql {

// A join as SQLite text. One that holds inner joins only is kept as leaves and conditions, so
// that brackets around it can be dropped: bracketed joins keep SQLite from reordering tables.
struct Translator::JoinText
{
    std::string sql;                     // of outer joins
    std::vector<std::string> leaves;     // of inner joins; empty: see sql
    std::vector<std::string> conditions; // of inner joins, bracketed as needed

    bool single() const { return leaves.size() == 1; }

    std::string text() const
    {
        if (leaves.empty())
            return sql;
        std::string result;
        for (const std::string& leaf : leaves)
            result += (result.empty() ? "" : " JOIN ") + leaf;
        for (std::size_t i = 0; i < conditions.size(); ++i)
            result += (i == 0 ? " ON " : " AND ") + conditions[i];
        return result;
    }
    std::string asOperand() const { return single() ? text() : '(' + text() + ')'; }
};

std::string Translator::from(const std::vector<Source>& sources, Scope& scope)
{
    std::string result;
    for (const Source& source : sources)
        result += (result.empty() ? "" : ", ") + joinText(source, scope).text();
    return result;
}

Translator::JoinText Translator::joinText(const Source& source, Scope& scope)
{
    if (!source.left)
        return {"", {source.query ? derived(source, scope) : table(source, scope)}, {}};
    JoinText left = joinText(*source.left, scope);
    JoinText right = joinText(*source.right, scope);
    std::string condition = bracketed(rowCondition(*source.on, scope), Binding::Not);
    if (source.join == JoinKind::Inner)
        return innerJoin(std::move(left), std::move(right), std::move(condition));
    if (source.join == JoinKind::Right)
        std::swap(left, right);
    return {left.text() + " LEFT JOIN " + right.asOperand() + " ON " + condition, {}, {}};
}

Translator::JoinText Translator::innerJoin(JoinText left, JoinText right,
                                           std::string condition) const
{
    if (!left.leaves.empty() && !right.leaves.empty()) {
        left.leaves.insert(left.leaves.end(), right.leaves.begin(), right.leaves.end());
        left.conditions.insert(left.conditions.end(), right.conditions.begin(),
                               right.conditions.end());
        left.conditions.push_back(std::move(condition));
        return left;
    }
    // Outer joins stand unbracketed on the left.
    if (right.leaves.empty() && !left.leaves.empty())
        std::swap(left, right);
    std::string text = left.text();
    for (const std::string& leaf : right.leaves)
        text += " JOIN " + leaf;
    if (right.leaves.empty())
        text += " JOIN " + right.asOperand();
    text += " ON ";
    for (const std::string& each : right.conditions)
        text += each + " AND ";
    return {text + condition, {}, {}};
}

const std::vector<SchemaColumn>& Translator::columns(const std::string& table)
{
    const std::vector<SchemaColumn>* found = m_schema.columns(table);
    if (!found)
        throw Error(Fault::UnknownName, "нет таблицы «" + table + "»");
    return *found;
}

std::string Translator::canonicalName(const std::string& table)
{
    std::string name = m_schema.canonicalName(table);
    if (std::ranges::find(m_tables, name) == m_tables.end())
        m_tables.push_back(name);
    return name;
}

std::string Translator::table(const Source& source, Scope& scope)
{
    const std::vector<SchemaColumn>& fields = columns(source.table);
    const std::string name = canonicalName(source.table);
    ScopeSource entry;
    entry.name = source.alias.empty() ? name : source.alias;
    entry.sqlName = quotedName(entry.name);
    for (const SchemaColumn& field : fields)
        entry.columns.push_back({field.name, field.type, entry.name, field.name});
    std::string text = quotedName(name);
    if (entry.name != name)
        text += " AS " + entry.sqlName;
    scope.add(std::move(entry));
    return text;
}

std::string Translator::derived(const Source& source, Scope& scope)
{
    QueryText query = queryText(*source.query, nullptr);
    ScopeSource entry;
    entry.table = false;
    entry.name = source.alias;
    // A bracket is in no name of Jet's, so this one is free.
    entry.sqlName = source.alias.empty() ? quotedName("[" + std::to_string(++m_unnamed) + "]")
                                         : quotedName(source.alias);
    entry.columns = std::move(query.columns);
    std::string text = '(' + query.sql + ") AS " + entry.sqlName;
    scope.add(std::move(entry));
    return text;
}

} // namespace jet::sql
