#include "jet/sql/tablecursor.h"

#include "jet/error.h"
#include "jet/sql/columnvalue.h"

#include <cassert>

namespace jet::sql {

TableCursor::TableCursor(VirtualTable& table)
    : sqlite3_vtab_cursor{}
    , m_table(table)
    , m_rows(&table.table())
    , m_schemaVersion(table.schemaVersion())
{
    for (const ColumnDefinition& column : m_rows->definition().columns)
        m_types.push_back(column.type());
}

void TableCursor::filter(const TablePlan& plan, std::span<sqlite3_value*> arguments)
{
    if (!hasSameSchema())
        throw Error(Fault::Unsupported, "таблица изменилась, пока из неё читали");
    m_row = nullptr;
    m_refused = nullptr;
    m_filters.clear();
    for (std::size_t i = plan.access == Access::Scan ? 0 : 1; i < plan.terms.size(); ++i) {
        const auto position = static_cast<std::size_t>(plan.terms[i].position);
        m_filters.emplace_back(plan.terms[i], m_rows->definition().columns[position], arguments[i]);
        if (!m_filters.back().isPossible())
            return;
    }
    start(plan, arguments);
    next();
}

void TableCursor::start(const TablePlan& plan, std::span<sqlite3_value*> arguments)
{
    m_scanning = false;
    m_found.clear();
    m_next = 0;
    if (plan.access == Access::Scan) {
        scanAll();
    } else if (plan.access == Access::Lookup) {
        findRows(plan, arguments);
    } else if (const auto number = comparedNumber(arguments[0]); number && number->whole) {
        if (const RowPointer row = rowPointer(number->integer); !row.isNull())
            m_found.push_back(row);
    }
}

void TableCursor::scanAll()
{
    m_scan = m_rows->scan();
    m_scanning = true;
}

// False for a number beside texts: SQLite compares either the texts as numbers or the number
// as a text, and does not say which.
bool TableCursor::isKey(int position, sqlite3_value* value) const
{
    const int kind = sqlite3_value_type(value);
    return m_types[static_cast<std::size_t>(position)] != FieldType::Text
           || (kind != SQLITE_INTEGER && kind != SQLITE_FLOAT);
}

void TableCursor::findRows(const TablePlan& plan, std::span<sqlite3_value*> arguments)
{
    const int position = plan.terms[0].position;
    const FieldType type = m_types[static_cast<std::size_t>(position)];
    if (!isKey(position, arguments[0]))
        return scanAll();
    m_refused = &m_table.refusedRows(plan.encoded());
    if (*m_refused > ColumnStatistics::rowCount(*m_rows))
        return findRowsByAll(plan, arguments);
    const auto key = keyFor(type, arguments[0]);
    if (!key)
        return;
    // An index of the file serves single questions; many are worth a hash index in memory.
    // Texts always take that one: a text that no index can hold may still be asked for.
    const int index = type == FieldType::Text ? -1 : m_table.indexForSeek(*m_rows, position);
    if (index >= 0) {
        m_found = m_rows->seek(index, std::span(&*key, 1));
    } else {
        const auto rows = m_rows->lookup(position, *key);
        m_found.assign(rows.begin(), rows.end());
    }
}

// By an index of all columns that the plan compares for equality.
void TableCursor::findRowsByAll(const TablePlan& plan, std::span<sqlite3_value*> arguments)
{
    std::vector<int> columns;
    std::vector<Value> values;
    for (std::size_t i = 0; i < plan.terms.size(); ++i) {
        const PlanTerm& term = plan.terms[i];
        const auto& column = m_rows->definition().columns[static_cast<std::size_t>(term.position)];
        if (term.op != SQLITE_INDEX_CONSTRAINT_EQ || column.isLongValue()
            || !isKey(term.position, arguments[i]))
            continue;
        auto key = keyFor(column.type(), arguments[i]);
        if (!key)
            return;
        columns.push_back(term.position);
        values.push_back(std::move(*key));
    }
    const auto rows = m_rows->candidates(columns, values);
    m_found.assign(rows.begin(), rows.end());
}

void TableCursor::next()
{
    assert(hasSameSchema());
    while (advance()) {
        if (passes())
            return;
        if (m_refused)
            *m_refused += 1;
    }
    m_row = nullptr;
}

bool TableCursor::advance()
{
    if (m_scanning) {
        m_row = &m_scan.row();
        return m_scan.next();
    }
    while (m_next < m_found.size()) {
        m_foundRow = m_rows->find(m_found[m_next++]);
        if (m_foundRow) {
            m_row = &*m_foundRow;
            return true;
        }
    }
    return false;
}

bool TableCursor::passes() const
{
    for (const RowFilter& filter : m_filters) {
        if (!filter.accepts(*m_row, m_buffer))
            return false;
    }
    return true;
}

void TableCursor::column(sqlite3_context* context, int column)
{
    // An UPDATE does not want the columns that it leaves alone.
    if (sqlite3_vtab_nochange(context))
        return;
    if (column < 0 || column >= m_table.columnCount())
        return;
    const int position = m_table.position(column);
    setResultFromRow(context, *m_row, position, m_types[static_cast<std::size_t>(position)],
                     m_buffer);
}

// The objects behind the row are gone when the schema has changed. Database ends or
// buffers all readers before that happens, so this is a broken promise of its callers.
bool TableCursor::hasSameSchema() const
{
    return m_schemaVersion == m_table.schemaVersion();
}

} // namespace jet::sql
