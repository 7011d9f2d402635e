#include "jet/recordset.h"

#include "jet/error.h"
#include "jet/recordsetimpl.h"
#include "jet/sql/resultvalue.h"
#include "jet/text.h"

#include <algorithm>
#include <cassert>
#include <utility>

namespace jet {

Recordset::Impl::Impl(sql::Engine& engine, sql::StatementCache::Pointer statement)
    : m_engine(engine)
    , m_statement(std::move(statement))
    , m_list(engine.rowList(*m_statement))
{
    for (const sql::ResultColumn& column : m_statement->translation.columns)
        columns.push_back({column.name, column.type.value_or(FieldType::Text)});
    m_engine.addReader(*this);
}

Recordset::Impl::~Impl()
{
    stop();
}

bool Recordset::Impl::next()
{
    if (!isStreaming()) {
        m_row += m_onRow ? 1 : 0;
        m_onRow = m_row < m_rows.size();
        if (!m_onRow && m_failure)
            std::rethrow_exception(std::exchange(m_failure, nullptr));
        return m_onRow;
    }
    m_onRow = false;
    m_onRow = step();
    if (!m_onRow)
        stop();
    return m_onRow;
}

Value Recordset::Impl::value(int column) const
{
    assert(m_onRow && column >= 0 && static_cast<std::size_t>(column) < columns.size());
    if (!isStreaming())
        return m_rows[m_row][static_cast<std::size_t>(column)];
    return streamedValue(column);
}

void Recordset::Impl::detach() noexcept
{
    if (!isStreaming())
        return;
    const bool onRow = m_onRow;
    try {
        if (onRow)
            m_rows.push_back(presentRow());
        while (step())
            m_rows.push_back(presentRow());
    } catch (...) {
        m_failure = std::current_exception();
    }
    stop();
    m_onRow = onRow;
}

bool Recordset::Impl::step()
{
    return m_list ? m_list->next() : m_engine.step(statement());
}

std::vector<Value> Recordset::Impl::presentRow() const
{
    std::vector<Value> row;
    row.reserve(columns.size());
    for (std::size_t i = 0; i < columns.size(); ++i)
        row.push_back(streamedValue(static_cast<int>(i)));
    return row;
}

Value Recordset::Impl::streamedValue(int column) const
{
    if (m_list)
        return m_list->value(column);
    return sql::resultValue(
        statement(), column,
        m_statement->translation.columns[static_cast<std::size_t>(column)].type);
}

void Recordset::Impl::stop()
{
    if (!isStreaming())
        return;
    sqlite3_reset(m_statement->handle.get());
    m_list.reset();
    m_statement = nullptr;
    m_onRow = false;
    m_engine.removeReader(*this);
}

Recordset::Recordset(std::unique_ptr<Impl> impl)
    : m_impl(std::move(impl))
{}

Recordset::Recordset(Recordset&&) noexcept = default;
Recordset& Recordset::operator=(Recordset&&) noexcept = default;
Recordset::~Recordset() = default;

const std::vector<RecordsetColumn>& Recordset::columns() const
{
    return m_impl->columns;
}

int Recordset::column(std::string_view name) const
{
    const std::vector<RecordsetColumn>& columns = m_impl->columns;
    const auto position = [&](auto found) { return static_cast<int>(found - columns.begin()); };
    const auto same = std::ranges::find(columns, name, &RecordsetColumn::name);
    if (same != columns.end())
        return position(same);
    const auto alike = std::ranges::find_if(
        columns, [&](const RecordsetColumn& column) { return sameName(column.name, name); });
    if (alike == columns.end())
        throw Error(Fault::UnknownName, "в выборке нет столбца «" + std::string(name) + "»");
    return position(alike);
}

bool Recordset::next()
{
    return m_impl->next();
}

Value Recordset::value(int column) const
{
    return m_impl->value(column);
}

// The common cases are read from SQLite without a Value in between.

bool Recordset::isNull(int column) const
{
    if (sqlite3_stmt* statement = m_impl->statement())
        return sqlite3_column_type(statement, column) == SQLITE_NULL;
    return value(column).isNull();
}

std::int64_t Recordset::integer(int column) const
{
    sqlite3_stmt* statement = m_impl->statement();
    if (statement && sqlite3_column_type(statement, column) == SQLITE_INTEGER)
        return sqlite3_column_int64(statement, column);
    return value(column).toInteger();
}

double Recordset::number(int column) const
{
    sqlite3_stmt* statement = m_impl->statement();
    if (statement && sqlite3_column_type(statement, column) == SQLITE_FLOAT)
        return sqlite3_column_double(statement, column);
    return value(column).toDouble();
}

DateTime Recordset::date(int column) const
{
    return value(column).toDate();
}

std::string Recordset::text(int column) const
{
    return value(column).toText();
}

} // namespace jet
