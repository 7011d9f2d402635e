#include "jet/sql/scope.h"

#include "jet/error.h"
#include "jet/text.h"

#include <algorithm>

namespace jet::sql {

namespace {

std::string full(std::string_view qualifier, std::string_view name)
{
    return qualifier.empty() ? std::string(name) : std::string(qualifier) + '.' + std::string(name);
}

} // namespace

void Scope::add(ScopeSource source)
{
    if (!source.name.empty() && find(source.name))
        throw Error(Fault::Syntax,
                    "таблица «" + source.name + "» указана в запросе дважды; нужен псевдоним");
    m_sources.push_back(std::move(source));
}

const ScopeSource* Scope::find(std::string_view name) const
{
    const auto found = std::ranges::find_if(m_sources, [name](const ScopeSource& source) {
        return !source.name.empty() && sameName(source.name, name);
    });
    return found == m_sources.end() ? nullptr : &*found;
}

std::vector<Scope::Match> Scope::matches(std::string_view qualifier, std::string_view name) const
{
    std::vector<Match> result;
    for (const ScopeSource& source : m_sources) {
        if (!qualifier.empty() && !(!source.name.empty() && sameName(source.name, qualifier)))
            continue;
        for (const ResultColumn& column : source.columns)
            if (sameName(column.name, name))
                result.push_back({&source, &column});
    }
    return result;
}

std::vector<Scope::Match> Scope::originMatches(std::string_view qualifier,
                                               std::string_view name) const
{
    std::vector<Match> result;
    for (const ScopeSource& source : m_sources)
        for (const ResultColumn& column : source.columns)
            if (!source.table && !column.source.empty() && sameName(column.source, qualifier)
                && sameName(column.field, name))
                result.push_back({&source, &column});
    return result;
}

Fragment Scope::column(const std::string& qualifier, const std::string& name)
{
    for (Scope* scope = this; scope; scope = scope->m_outer) {
        std::vector<Match> found = scope->matches(qualifier, name);
        if (found.empty() && !qualifier.empty() && !scope->find(qualifier))
            found = scope->originMatches(qualifier, name);
        if (found.size() > 1) {
            std::string places;
            for (const Match& match : found)
                places += (places.empty() ? "" : ", ") + match.source->name;
            throw Error(Fault::UnknownName, "имя поля «" + full(qualifier, name)
                                                + "» неоднозначно, оно есть в таблицах: " + places);
        }
        if (!found.empty())
            return scope->use(*found.front().source, *found.front().column);
        if (qualifier.empty() && scope->alias)
            if (auto fragment = scope->alias(name))
                return *fragment;
    }
    throw Error(Fault::UnknownName, "неизвестное имя «" + full(qualifier, name) + "»");
}

Fragment Scope::use(const ScopeSource& source, const ResultColumn& column)
{
    Fragment result;
    result.sql = source.sqlName + '.' + quotedName(column.name);
    result.type = column.type;
    result.column = source.table ? ColumnOf::Table : ColumnOf::Query;
    if (std::ranges::find(groups, result.sql) == groups.end())
        loose.push_back({source.name, column.name});
    return result;
}

} // namespace jet::sql
