#include "jet/database.h"
#include "jet/error.h"
#include "jet/sql/defaultvalue.h"
#include "jet/storage/store.h"

#include <algorithm>
#include <cassert>

namespace jet {

Appender::Appender(Database& database, std::string_view table, std::span<const std::string> columns)
    : m_database(database)
    , m_table(table)
    , m_columns(columns.begin(), columns.end())
{
    findColumns();
}

void Appender::findColumns()
{
    const Definition& definition = m_database.m_store->table(m_table).definition();
    m_positions.clear();
    for (const std::string& column : m_columns) {
        const int position = definition.columnPosition(column);
        if (position < 0)
            throw Error(Fault::UnknownName, "в таблице нет поля «" + column + "»", m_table);
        m_positions.push_back(position);
    }
    m_row.assign(definition.columns.size(), Value());
    findDefaults();
    m_schemaVersion = m_database.m_store->schemaVersion();
}

void Appender::findDefaults()
{
    m_defaultPositions.clear();
    m_defaults.clear();
    const Definition& definition = m_database.m_store->table(m_table).definition();
    for (const Field& field : m_database.tableDef(m_table).fields) {
        const int position = definition.columnPosition(field.name);
        if (field.defaultValue.empty() || (field.attributes & attribute::kAutoIncrement) != 0
            || std::ranges::find(m_positions, position) != m_positions.end())
            continue;
        m_defaultPositions.push_back(position);
        m_defaults += (m_defaults.empty() ? "SELECT " : ", ")
                      + sql::defaultExpression(field.defaultValue) + " AS D"
                      + std::to_string(position);
    }
}

std::int64_t Appender::append(std::span<const Value> values)
{
    assert(values.size() == m_positions.size());
    m_database.prepareChange();
    if (m_schemaVersion != m_database.m_store->schemaVersion())
        findColumns();
    for (std::size_t i = 0; i < values.size(); ++i)
        m_row[static_cast<std::size_t>(m_positions[i])] = values[i];
    if (!m_defaults.empty()) { // a default may be the time of day
        const std::vector<Value> defaults = m_database.rows(m_defaults).at(0);
        for (std::size_t i = 0; i < defaults.size(); ++i)
            m_row[static_cast<std::size_t>(m_defaultPositions[i])] = defaults[i];
    }
    StatementScope scope(*m_database.m_store);
    Table& table = m_database.m_store->table(m_table);
    table.insert(m_row);
    scope.done();
    return table.lastCounter();
}

} // namespace jet
