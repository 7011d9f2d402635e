#include "jet/sql/rowid.h"
#include "jet/sql/translator.h"

#include "jet/error.h"
#include "jet/sql/defaultvalue.h"
#include "jet/sql/parser.h"
#include "jet/text.h"

#include <algorithm>
#include <utility>

namespace jet::sql {

namespace {

const SchemaColumn& requireColumn(const std::vector<SchemaColumn>& columns,
                                  const std::string& table, const std::string& name)
{
    const auto found = std::ranges::find_if(
        columns, [&name](const SchemaColumn& column) { return sameName(column.name, name); });
    if (found == columns.end())
        throw Error(Fault::UnknownName, "в таблице «" + table + "» нет поля «" + name + "»");
    return *found;
}

std::string list(const std::vector<std::string>& parts)
{
    std::string result;
    for (const std::string& part : parts)
        result += (result.empty() ? "" : ", ") + part;
    return result;
}

// A single table without joins can be changed in place.
const Source* singleTable(const std::vector<Source>& sources)
{
    const Source& first = sources.front();
    return sources.size() == 1 && !first.left && !first.query ? &first : nullptr;
}

// The table of the database behind a source of FROM.
const Source* tableSource(const Source& source, std::string_view name)
{
    if (source.left) {
        const Source* found = tableSource(*source.left, name);
        return found ? found : tableSource(*source.right, name);
    }
    const bool named = sameName(source.alias.empty() ? source.table : source.alias, name);
    return !source.query && named ? &source : nullptr;
}

const Source* tableSource(const std::vector<Source>& sources, std::string_view name)
{
    for (const Source& source : sources)
        if (const Source* found = tableSource(source, name))
            return found;
    return nullptr;
}

std::string where(const Fragment& condition)
{
    return " WHERE " + condition.sql;
}

// The source of the column that an assignment changes.
const ScopeSource& assignedSource(const Assignment& assignment, const Scope& scope)
{
    const ScopeSource* found = nullptr;
    for (const ScopeSource& source : scope.sources()) {
        if (!assignment.qualifier.empty() && !sameName(source.name, assignment.qualifier))
            continue;
        const bool has = std::ranges::any_of(source.columns, [&](const ResultColumn& column) {
            return sameName(column.name, assignment.name);
        });
        if (!has)
            continue;
        if (found)
            throw Error(Fault::UnknownName, "имя поля «" + assignment.name
                                                + "» неоднозначно, оно есть в таблицах: "
                                                + found->name + ", " + source.name);
        found = &source;
    }
    const std::string prefix = assignment.qualifier.empty() ? "" : assignment.qualifier + '.';
    if (!found)
        throw Error(Fault::UnknownName, "неизвестное имя «" + prefix + assignment.name + "»");
    if (!found->table)
        throw Error(Fault::Unsupported,
                    "поле «" + assignment.name + "» подзапроса изменить нельзя");
    return *found;
}

} // namespace

std::string rowIdName(const std::vector<ResultColumn>& columns)
{
    for (const char* name : {"rowid", "_rowid_"})
        if (std::ranges::none_of(columns, [name](const ResultColumn& column) {
                return sameName(column.name, name);
            }))
            return name;
    return "oid";
}

Translation Translator::insert(const Insert& insert)
{
    Translation result;
    result.kind = StatementKind::Insert;
    const std::vector<SchemaColumn>& fields = columns(insert.table);
    result.table = canonicalName(insert.table);
    std::vector<std::string> targets, values;
    std::string query;
    if (insert.query) {
        QueryText text = queryText(*insert.query, nullptr);
        targets = insertColumns(insert, &text.columns);
        query = std::move(text.sql);
    } else {
        Scope scope;
        for (const ExpressionPtr& each : insert.values)
            values.push_back(value(*each, scope).sql);
        targets = insertColumns(insert, nullptr);
        if (targets.size() != values.size())
            throw Error(Fault::Syntax, "число значений в INSERT не равно числу полей");
    }
    for (std::string& target : targets)
        target = quotedName(requireColumn(fields, result.table, target).name);
    const std::size_t given = targets.size();
    for (const SchemaColumn& column : fields) {
        std::string name = quotedName(column.name);
        if (column.defaultValue.empty() || column.counter
            || std::ranges::find(targets, name) != targets.end())
            continue;
        targets.push_back(std::move(name));
        values.push_back(defaultText(column));
    }
    if (!insert.query)
        query = "VALUES (" + list(values) + ')';
    else if (given < targets.size())
        query = "SELECT *, " + list(values) + " FROM (" + query + ')';
    result.sqlite = "INSERT INTO " + quotedName(result.table) + " (" + list(targets) + ") " + query;
    result.tables = m_tables;
    return result;
}

std::string Translator::defaultText(const SchemaColumn& column)
{
    try {
        Scope scope;
        return value(*Parser(defaultExpression(column.defaultValue)).wholeExpression(), scope).sql;
    } catch (const Error& error) {
        throw Error(error.fault(), "значение по умолчанию поля «" + column.name
                                       + "» не вычислить: " + error.what());
    }
}

// A query without a list of columns gives them by their names, values by their places.
std::vector<std::string> Translator::insertColumns(const Insert& insert,
                                                   const std::vector<ResultColumn>* given)
{
    std::vector<std::string> result = insert.columns;
    if (result.empty() && given) {
        for (const ResultColumn& column : *given)
            result.push_back(column.field.empty() ? column.name : column.field);
    } else if (result.empty()) {
        for (const SchemaColumn& column : columns(insert.table))
            result.push_back(column.name);
    }
    if (given && given->size() != result.size())
        throw Error(Fault::Syntax, "число полей запроса в INSERT не равно числу полей таблицы");
    for (std::size_t i = 0; i < result.size(); ++i)
        for (std::size_t k = 0; k < i; ++k)
            if (sameName(result[i], result[k]))
                throw Error(Fault::Syntax, "поле «" + result[i] + "» указано в INSERT дважды");
    return result;
}

Translation Translator::update(const Update& update)
{
    Translation result;
    result.kind = StatementKind::Update;
    Scope scope;
    const std::string from = this->from(update.sources, scope);
    const ScopeSource& target = assignedSource(update.assignments.front(), scope);
    result.table = canonicalName(tableSource(update.sources, target.name)->table);
    if (singleTable(update.sources)) {
        result.sqlite = "UPDATE " + from + " SET " + assignments(update, target, scope);
        if (update.where)
            result.sqlite += where(rowCondition(*update.where, scope));
    } else {
        result.sqlite = "UPDATE " + quotedName(result.table) + " AS \"[target]\" SET "
                        + joinedUpdate(update, target, scope, from);
    }
    result.tables = m_tables;
    return result;
}

std::string Translator::assignments(const Update& update, const ScopeSource& target, Scope& scope)
{
    std::vector<std::string> result;
    for (const Assignment& each : update.assignments) {
        assignedSource(each, scope);
        for (const ResultColumn& column : target.columns)
            if (sameName(column.name, each.name))
                result.push_back(quotedName(column.name) + " = " + value(*each.value, scope).sql);
    }
    return list(result);
}

// The join computes the new values beside the identity of the row they belong to.
std::string Translator::joinedUpdate(const Update& update, const ScopeSource& target, Scope& scope,
                                     const std::string& from)
{
    std::vector<std::string> sets, values;
    for (const Assignment& each : update.assignments) {
        if (&assignedSource(each, scope) != &target)
            throw Error(Fault::Unsupported, "изменение двух таблиц одним UPDATE не поддерживается");
        const std::string name = "v" + std::to_string(values.size());
        values.push_back(value(*each.value, scope).sql + " AS " + name);
        for (const ResultColumn& column : target.columns)
            if (sameName(column.name, each.name))
                sets.push_back(quotedName(column.name) + " = \"[new]\"." + name);
    }
    const std::string row = rowIdName(target.columns);
    std::string text = list(sets) + " FROM (SELECT " + target.sqlName + '.' + row + " AS r, "
                       + list(values) + " FROM " + from;
    if (update.where)
        text += where(rowCondition(*update.where, scope));
    return text + ") AS \"[new]\" WHERE \"[target]\"." + row + " = \"[new]\".r";
}

Translation Translator::deletion(const Delete& deletion)
{
    Translation result;
    result.kind = StatementKind::Delete;
    Scope scope;
    const std::string from = this->from(deletion.sources, scope);
    const Source* single = singleTable(deletion.sources);
    const std::string targetName =
        deletion.target.empty() && single ? scope.sources().front().name : deletion.target;
    if (targetName.empty())
        throw Error(Fault::Syntax, "не указано, из какой таблицы удалять");
    const ScopeSource* target = scope.find(targetName);
    if (!target || !target->table)
        throw Error(Fault::UnknownName, "в запросе нет таблицы «" + targetName + "»");
    result.table = canonicalName(tableSource(deletion.sources, targetName)->table);
    const std::string condition = deletion.where ? where(rowCondition(*deletion.where, scope)) : "";
    if (single) {
        result.sqlite = "DELETE FROM " + from + condition;
    } else {
        const std::string row = rowIdName(target->columns);
        result.sqlite = "DELETE FROM " + quotedName(result.table) + " WHERE " + row + " IN (SELECT "
                        + target->sqlName + '.' + row + " FROM " + from + condition + ')';
    }
    result.tables = m_tables;
    return result;
}

} // namespace jet::sql
