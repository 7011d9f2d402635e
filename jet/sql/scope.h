#pragma once

#include "jet/sql/fragment.h"
#include "jet/sql/translation.h"

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace jet::sql {

// A table or derived table of FROM.
struct ScopeSource
{
    std::string name;    // what the query calls it; "" for a derived table without a name
    std::string sqlName; // in SQLite's text, in quotes
    bool table = true;   // false: derived
    // Of a derived table, each keeps the source and field that it comes from.
    std::vector<ResultColumn> columns;
};

// The names that one SELECT can use, and how it uses them; inner ones see outer ones.
class Scope
{
public:
    explicit Scope(Scope* outer = nullptr)
        : m_outer(outer)
    {}

    // Throws Error (Syntax) when the name is taken.
    void add(ScopeSource source);
    const std::vector<ScopeSource>& sources() const { return m_sources; }
    // Null when there is none of this name here.
    const ScopeSource* find(std::string_view name) const;

    // A column by its name, qualified or not (""), here or outside. Where a qualifier names no
    // source, it may be the table that a derived table took the column from. Throws Error
    // (UnknownName) when there is none or more than one.
    Fragment column(const std::string& qualifier, const std::string& name);

    // A column of a source of this scope.
    Fragment use(const ScopeSource& source, const ResultColumn& column);

    // Gives the expression behind an alias of the select list; asked where no column fits.
    std::function<std::optional<Fragment>(std::string_view)> alias;

    // SQLite texts of the GROUP BY expressions: what equals one needs no aggregate.
    std::vector<std::string> groups;
    // Columns used outside aggregates that are no GROUP BY expression.
    struct Use
    {
        std::string source;
        std::string field;
    };
    std::vector<Use> loose;
    bool aggregateAllowed = false;
    bool aggregated = false; // an aggregate was used

private:
    struct Match
    {
        const ScopeSource* source;
        const ResultColumn* column;
    };
    std::vector<Match> matches(std::string_view qualifier, std::string_view name) const;
    std::vector<Match> originMatches(std::string_view qualifier, std::string_view name) const;

    Scope* m_outer;
    std::vector<ScopeSource> m_sources;
};

} // namespace jet::sql
