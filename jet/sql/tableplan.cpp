#include "jet/sql/tableplan.h"

#include "jet/sql/collation.h"

#include <algorithm>
#include <cstring>
#include <new>
#include <optional>

namespace jet::sql {

namespace {

// Costs in units of a row read in passing.
constexpr double kLookupCost = 4;     // finding a key
constexpr double kFetchCost = 2;      // going to a row by its pointer
constexpr double kTextCost = 0.5;     // a text compared, per row
constexpr double kFilteredPart = 0.3; // rows that a condition other than equality leaves

bool isTextColumn(const ColumnDefinition& column)
{
    const FieldType type = column.type();
    return type == FieldType::Text || type == FieldType::Memo;
}

// Types whose values RowView reads as numbers, and that equal what SQLite compares with.
bool isNumberColumn(const ColumnDefinition& column)
{
    switch (column.type()) {
    case FieldType::Boolean:
    case FieldType::Byte:
    case FieldType::Integer:
    case FieldType::Long:
    case FieldType::Currency:
    case FieldType::Single:
    case FieldType::Double:
    case FieldType::Date:
        return true;
    default:
        return false;
    }
}

bool isFilterable(unsigned char op)
{
    switch (op) {
    case SQLITE_INDEX_CONSTRAINT_EQ:
    case SQLITE_INDEX_CONSTRAINT_GT:
    case SQLITE_INDEX_CONSTRAINT_GE:
    case SQLITE_INDEX_CONSTRAINT_LT:
    case SQLITE_INDEX_CONSTRAINT_LE:
    case SQLITE_INDEX_CONSTRAINT_NE:
    case SQLITE_INDEX_CONSTRAINT_ISNULL:
    case SQLITE_INDEX_CONSTRAINT_ISNOTNULL:
        return true;
    default:
        return false;
    }
}

class Planner
{
public:
    Planner(VirtualTable& table, sqlite3_index_info& info)
        : m_table(table)
        , m_rows(table.table())
        , m_info(info)
        , m_rowCount(ColumnStatistics::rowCount(m_rows))
    {}

    void choose()
    {
        int best = -1;
        double bestRows = m_rowCount;
        for (int i = 0; i < m_info.nConstraint; ++i) {
            if (const auto rows = rowsByKey(i); rows && (best < 0 || *rows < bestRows)) {
                best = i;
                bestRows = *rows;
            }
        }
        if (best >= 0)
            useKey(best, bestRows);
        else
            m_estimatedRows = m_cost = m_rowCount;
        for (int i = 0; i < m_info.nConstraint; ++i) {
            if (i != best && canFilter(i))
                addTerm(i);
        }
        publish();
    }

private:
    const sqlite3_index_info::sqlite3_index_constraint& constraint(int i) const
    {
        return m_info.aConstraint[i];
    }
    bool isEquality(int i) const
    {
        return constraint(i).usable && constraint(i).op == SQLITE_INDEX_CONSTRAINT_EQ;
    }
    // Position in Definition::columns, -1 for the row number.
    int position(int i) const
    {
        return constraint(i).iColumn < 0 ? -1 : m_table.position(constraint(i).iColumn);
    }
    const ColumnDefinition& column(int i) const
    {
        return m_rows.definition().columns[static_cast<std::size_t>(position(i))];
    }
    bool hasOurCollation(int i) const
    {
        return std::strcmp(sqlite3_vtab_collation(&m_info, i), kCollation) == 0;
    }
    // Equality on the values that the column holds, as Table::lookup() knows it.
    bool isKnownOrder(int i) const
    {
        const ColumnDefinition& c = column(i);
        return isTextColumn(c) ? hasOurCollation(i) : isNumberColumn(c);
    }

    // Rows that an access by this constraint gives; nothing when it allows none.
    std::optional<double> rowsByKey(int i)
    {
        if (!isEquality(i))
            return std::nullopt;
        if (position(i) < 0)
            return 1;
        if (column(i).isLongValue() || !isKnownOrder(i))
            return std::nullopt;
        if (isUnique(position(i)))
            return 1;
        return m_table.statistics().rowsPerValue(m_rows, position(i));
    }

    bool isUnique(int position) const
    {
        const int index = m_rows.indexLedBy(position);
        if (index < 0)
            return false;
        const RealIndex& real = m_rows.definition().realIndexes[static_cast<std::size_t>(index)];
        return real.columns.size() == 1 && (real.flags & indexflag::kUnique) != 0;
    }

    void useKey(int i, double rows)
    {
        m_plan.access = position(i) < 0 ? Access::Row : Access::Lookup;
        m_estimatedRows = rows;
        m_cost = kLookupCost + rows * kFetchCost;
        addTerm(i);
    }

    // An IN list that is not the key is left to SQLite, which would run the whole access
    // once for each of its values.
    bool canFilter(int i) const
    {
        const auto& c = constraint(i);
        if (!c.usable || !isFilterable(c.op) || c.iColumn < 0 || sqlite3_vtab_in(&m_info, i, -1))
            return false;
        const bool nullTest =
            c.op == SQLITE_INDEX_CONSTRAINT_ISNULL || c.op == SQLITE_INDEX_CONSTRAINT_ISNOTNULL;
        return nullTest || isKnownOrder(i);
    }

    void addTerm(int i)
    {
        if (!m_plan.terms.empty()) {
            m_cost += isTextColumn(column(i)) ? m_estimatedRows * kTextCost : 0;
            const bool equality = constraint(i).op == SQLITE_INDEX_CONSTRAINT_EQ;
            m_estimatedRows = std::max(m_estimatedRows * (equality ? 0.1 : kFilteredPart), 1.0);
        }
        m_plan.terms.push_back({constraint(i).op, position(i)});
        m_info.aConstraintUsage[i].argvIndex = static_cast<int>(m_plan.terms.size());
    }

    void publish()
    {
        const std::string text = m_plan.encoded();
        m_info.idxNum = static_cast<int>(m_plan.access);
        m_info.idxStr = static_cast<char*>(sqlite3_malloc64(text.size() + 1));
        if (!m_info.idxStr)
            throw std::bad_alloc();
        m_info.needToFreeIdxStr = 1;
        std::memcpy(m_info.idxStr, text.c_str(), text.size() + 1);
        m_info.estimatedCost = m_cost;
        m_info.estimatedRows = static_cast<sqlite3_int64>(m_estimatedRows);
    }

    VirtualTable& m_table;
    Table& m_rows;
    sqlite3_index_info& m_info;
    double m_rowCount;
    double m_estimatedRows = 0;
    double m_cost = 0;
    TablePlan m_plan;
};

} // namespace

std::string TablePlan::encoded() const
{
    std::string text;
    for (const PlanTerm& term : terms) {
        text += static_cast<char>(term.op);
        text += static_cast<char>(std::max(term.position, 0) + 1);
    }
    return text;
}

TablePlan TablePlan::decode(int access, std::string_view text)
{
    TablePlan plan;
    plan.access = static_cast<Access>(access);
    for (std::size_t at = 0; at + 1 < text.size(); at += 2) {
        plan.terms.push_back(
            {static_cast<unsigned char>(text[at]), static_cast<unsigned char>(text[at + 1]) - 1});
    }
    if (plan.access == Access::Row && !plan.terms.empty())
        plan.terms[0].position = -1;
    return plan;
}

void choosePlan(VirtualTable& table, sqlite3_index_info& info)
{
    Planner(table, info).choose();
}

} // namespace jet::sql
