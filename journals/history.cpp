#include "journals/history.h"

#include "data/convert.h"
#include "jet/database.h"
#include "jet/sqltext.h"

#include <algorithm>
#include <map>
#include <string>
#include <utility>

namespace sql = jet::sql;

namespace journals {
namespace {

std::string tableName(JournalTable table)
{
    return table == JournalTable::Absences ? "POS" : "USP";
}

std::string scopeCondition(const RowScope& scope)
{
    std::string condition = "ID=" + sql::number(keyNumber(scope.student));
    condition += " AND dat between " + data::toSql(scope.from) + " and " + data::toSql(scope.to);
    if (scope.discipline)
        condition += " AND IDD=" + sql::number(keyNumber(*scope.discipline));
    return condition;
}

// One scope for each student and discipline, over all of its days: a row read for two scopes
// would be remembered, and written back, twice.
std::vector<RowScope> merged(std::span<const RowScope> scopes)
{
    std::vector<RowScope> all;
    std::map<std::tuple<JournalTable, StudentId, std::optional<DisciplineId>>, std::size_t> known;
    for (const RowScope& scope : scopes) {
        const auto [at, isNew] =
            known.try_emplace({scope.table, scope.student, scope.discipline}, all.size());
        if (isNew) {
            all.push_back(scope);
            continue;
        }
        RowScope& whole = all[at->second];
        whole.from = std::min(whole.from, scope.from);
        whole.to = std::max(whole.to, scope.to);
    }
    return all;
}

} // namespace

History::History(jet::Database& database)
    : m_database(database)
{}

void History::record(const QString& text, std::span<const RowScope> scopes,
                     const std::function<void()>& action)
{
    jet::Transaction transaction(m_database);
    const std::vector<RowScope> whole = merged(scopes);
    const Rows before = read(whole);
    action();
    auto changes = differences(before, read(whole));
    transaction.commit();
    if (changes.empty())
        return;
    m_steps.resize(m_done);
    m_steps.push_back({text, std::move(changes)});
    if (m_steps.size() > kMostSteps)
        m_steps.pop_front();
    m_done = m_steps.size();
}

bool History::undo()
{
    if (m_done == 0 || !replace(m_steps[m_done - 1], &Change::after, &Change::before))
        return false;
    --m_done;
    return true;
}

bool History::redo()
{
    if (m_done == m_steps.size() || !replace(m_steps[m_done], &Change::before, &Change::after))
        return false;
    ++m_done;
    return true;
}

void History::clear()
{
    m_steps.clear();
    m_done = 0;
}

History::Rows History::read(std::span<const RowScope> scopes) const
{
    Rows rows;
    for (const RowScope& scope : scopes)
        std::ranges::move(read(scope), std::back_inserter(rows));
    return rows;
}

History::Rows History::read(const RowScope& scope) const
{
    auto found = m_database.query("SELECT * FROM " + tableName(scope.table) + " WHERE "
                                  + scopeCondition(scope) + ";");
    Rows rows;
    while (found.next()) {
        Row row;
        row.place = {scope.table, scope.student,
                     DisciplineId{static_cast<int>(found.integer("IDD"))},
                     data::toDate(found.date("dat"))};
        for (int column = 0; std::cmp_less(column, found.columns().size()); ++column)
            row.values.emplace_back(found.columns()[static_cast<std::size_t>(column)].name,
                                    found.value(column));
        rows.push_back(std::move(row));
    }
    return rows;
}

// A row written again may stand elsewhere in the table.
bool History::sameRows(const Rows& left, const Rows& right)
{
    return std::is_permutation(left.begin(), left.end(), right.begin(), right.end());
}

std::vector<History::Change> History::differences(const Rows& before, const Rows& after)
{
    std::map<Place, Change> places;
    for (const Row& row : before)
        places[row.place].before.push_back(row);
    for (const Row& row : after)
        places[row.place].after.push_back(row);
    std::vector<Change> changes;
    for (auto& [place, change] : places) {
        change.place = place;
        if (!sameRows(change.before, change.after))
            changes.push_back(std::move(change));
    }
    return changes;
}

bool History::replace(const Step& step, Rows Change::*expected, Rows Change::*wanted)
{
    jet::Transaction transaction(m_database);
    for (const Change& change : step.changes) {
        const RowScope scope{change.place.table, change.place.student, change.place.discipline,
                             change.place.date, change.place.date};
        if (!sameRows(read(scope), change.*expected)) {
            clear();
            return false;
        }
        const std::string table = tableName(scope.table);
        m_database.execute("delete * from " + table + " WHERE " + scopeCondition(scope) + ";");
        for (const Row& row : change.*wanted)
            m_database.insert(table, row.values);
    }
    transaction.commit();
    return true;
}

} // namespace journals
