#include "jet/database.h"
#include "jet/error.h"
#include "jet/storage/store.h"

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
    m_schemaVersion = m_database.m_store->schemaVersion();
}

std::int64_t Appender::append(std::span<const Value> values)
{
    assert(values.size() == m_positions.size());
    m_database.prepareChange();
    if (m_schemaVersion != m_database.m_store->schemaVersion())
        findColumns();
    for (std::size_t i = 0; i < values.size(); ++i)
        m_row[static_cast<std::size_t>(m_positions[i])] = values[i];
    StatementScope scope(*m_database.m_store);
    Table& table = m_database.m_store->table(m_table);
    table.insert(m_row);
    scope.done();
    return table.lastCounter();
}

} // namespace jet
