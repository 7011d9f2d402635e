#include "jet/sql/virtualtable.h"

#include "jet/error.h"
#include "jet/sql/columnvalue.h"
#include "jet/sql/fragment.h"
#include "jet/sql/functioncall.h"
#include "jet/sql/sqliteerror.h"
#include "jet/sql/tablecursor.h"
#include "jet/sql/tableplan.h"

#include <memory>

namespace jet::sql {

namespace {

VirtualTable& tableOf(sqlite3_vtab* table)
{
    return *static_cast<VirtualTable*>(table);
}

TableCursor& cursorOf(sqlite3_vtab_cursor* cursor)
{
    return *static_cast<TableCursor*>(cursor);
}

int connectTable(sqlite3* connection, void* data, int, const char* const* arguments,
                 sqlite3_vtab** result, char**)
{
    auto& module = *static_cast<TableModule*>(data);
    return guarded(module.errors, [&] {
        auto table = std::make_unique<VirtualTable>(module, arguments[2]);
        check(connection, sqlite3_declare_vtab(connection, table->declaration().c_str()));
        *result = table.release();
    });
}

int disconnectTable(sqlite3_vtab* table)
{
    delete &tableOf(table);
    return SQLITE_OK;
}

int bestIndex(sqlite3_vtab* table, sqlite3_index_info* info)
{
    return guarded(tableOf(table).errors(), [&] { choosePlan(tableOf(table), *info); });
}

int openCursor(sqlite3_vtab* table, sqlite3_vtab_cursor** result)
{
    return guarded(tableOf(table).errors(),
                   [&] { *result = std::make_unique<TableCursor>(tableOf(table)).release(); });
}

int closeCursor(sqlite3_vtab_cursor* cursor)
{
    delete &cursorOf(cursor);
    return SQLITE_OK;
}

int filterRows(sqlite3_vtab_cursor* cursor, int access, const char* terms, int count,
               sqlite3_value** arguments)
{
    return guarded(cursorOf(cursor).table().errors(), [&] {
        cursorOf(cursor).filter(TablePlan::decode(access, terms ? terms : ""),
                                std::span(arguments, static_cast<std::size_t>(count)));
    });
}

int nextRow(sqlite3_vtab_cursor* cursor)
{
    return guarded(cursorOf(cursor).table().errors(), [&] { cursorOf(cursor).next(); });
}

int isAtEnd(sqlite3_vtab_cursor* cursor)
{
    return cursorOf(cursor).atEnd() ? 1 : 0;
}

int readColumn(sqlite3_vtab_cursor* cursor, sqlite3_context* context, int column)
{
    return guarded(cursorOf(cursor).table().errors(),
                   [&] { cursorOf(cursor).column(context, column); });
}

int readRowNumber(sqlite3_vtab_cursor* cursor, sqlite3_int64* row)
{
    *row = cursorOf(cursor).rowNumber();
    return SQLITE_OK;
}

// SQLite's calling convention: one argument deletes its row; otherwise the old row number
// (NULL for a new row), the new one and the column values.
int changeRow(sqlite3_vtab* table, int count, sqlite3_value** arguments, sqlite3_int64* row)
{
    return guarded(tableOf(table).errors(), [&] {
        const std::span all(arguments, static_cast<std::size_t>(count));
        if (count == 1)
            tableOf(table).erase(sqlite3_value_int64(all[0]));
        else if (sqlite3_value_type(all[0]) == SQLITE_NULL)
            *row = tableOf(table).insert(all.subspan(2));
        else
            tableOf(table).update(sqlite3_value_int64(all[0]), all.subspan(2));
    });
}

// Transactions belong to the store; a statement that fails is undone there as a whole.
constexpr sqlite3_module kTableModule = {
    .iVersion = 1,
    .xCreate = connectTable,
    .xConnect = connectTable,
    .xBestIndex = bestIndex,
    .xDisconnect = disconnectTable,
    .xDestroy = disconnectTable,
    .xOpen = openCursor,
    .xClose = closeCursor,
    .xFilter = filterRows,
    .xNext = nextRow,
    .xEof = isAtEnd,
    .xColumn = readColumn,
    .xRowid = readRowNumber,
    .xUpdate = changeRow,
    .xBegin = nullptr,
    .xSync = nullptr,
    .xCommit = nullptr,
    .xRollback = nullptr,
    .xFindFunction = nullptr,
    .xRename = nullptr,
    .xSavepoint = nullptr,
    .xRelease = nullptr,
    .xRollbackTo = nullptr,
    .xShadowName = nullptr,
};

RowPointer requiredRow(sqlite3_int64 row)
{
    const RowPointer pointer = rowPointer(row);
    if (pointer.isNull())
        throw Error(Fault::Damaged, "изменяется строка, которой нет");
    return pointer;
}

} // namespace

VirtualTable::VirtualTable(TableModule& module, std::string_view name)
    : sqlite3_vtab{}
    , m_module(module)
    , m_name(name)
{
    const Definition& definition = table().definition();
    for (const Field& field : module.store.describe(name).fields)
        m_positions.push_back(definition.columnPosition(field.name));
}

std::string VirtualTable::declaration() const
{
    std::string sql = "CREATE TABLE x(";
    const Definition& definition = table().definition();
    for (const int position : m_positions) {
        const ColumnDefinition& column = definition.columns[static_cast<std::size_t>(position)];
        sql += (position == m_positions.front() ? "" : ", ") + quotedName(column.name) + ' '
               + declaredType(column.type());
    }
    return sql + ')';
}

void VirtualTable::erase(sqlite3_int64 row)
{
    table().erase(requiredRow(row));
}

sqlite3_int64 VirtualTable::insert(std::span<sqlite3_value*> values)
{
    m_row.assign(m_positions.size(), Value());
    for (std::size_t i = 0; i < values.size(); ++i)
        m_row[static_cast<std::size_t>(m_positions[i])] = valueOf(values[i]);
    return table().insert(m_row).packed();
}

void VirtualTable::update(sqlite3_int64 row, std::span<sqlite3_value*> values)
{
    Table& rows = table();
    const RowPointer pointer = requiredRow(row);
    const auto present = rows.find(pointer);
    if (!present)
        return; // deleted meanwhile: nothing to change
    m_row.assign(m_positions.size(), Value());
    for (std::size_t i = 0; i < values.size(); ++i) {
        const int position = m_positions[i];
        m_row[static_cast<std::size_t>(position)] =
            sqlite3_value_nochange(values[i]) ? present->value(position) : valueOf(values[i]);
    }
    rows.update(pointer, m_row);
}

int VirtualTable::indexForSeek(Table& rows, int position)
{
    constexpr double kRowsPerSeek = 50; // reading so many rows costs as much as a seek
    const int index = rows.indexLedBy(position);
    if (index < 0)
        return -1;
    m_seeks.resize(rows.definition().columns.size());
    double& seeks = m_seeks[static_cast<std::size_t>(position)];
    seeks += 1;
    return seeks * kRowsPerSeek > ColumnStatistics::rowCount(rows) ? -1 : index;
}

void registerModule(sqlite3* connection, TableModule& module)
{
    check(connection,
          sqlite3_create_module_v2(connection, kModule, &kTableModule, &module, nullptr));
}

RowPointer rowPointer(sqlite3_int64 row)
{
    if (row < 0 || row > 0xFFFFFFFFll)
        return {};
    return RowPointer::unpack(static_cast<std::uint32_t>(row));
}

} // namespace jet::sql
