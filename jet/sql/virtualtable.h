#pragma once

#include "jet/sql/columnstatistics.h"
#include "jet/sql/errorslot.h"
#include "jet/storage/store.h"

#include <map>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include <sqlite3.h>

namespace jet::sql {

inline constexpr const char* kModule = "jet";

// What the tables of one connection share.
struct TableModule
{
    Store& store;
    ErrorSlot& errors;
};

// A Jet table as SQLite sees it: the columns in collection order under their own names, text
// declared COLLATE JET, `rowid` the packed row pointer. Stays valid until the store's schema
// version changes; the connection drops it then.
class VirtualTable : public sqlite3_vtab
{
public:
    // Throws Error (UnknownName).
    VirtualTable(TableModule& module, std::string_view name);

    // Looked up anew each time: the object behind the name is another after a rollback.
    Table& table() const { return m_module.store.table(m_name); }
    ErrorSlot& errors() const { return m_module.errors; }
    std::uint64_t schemaVersion() const { return m_module.store.schemaVersion(); }
    ColumnStatistics& statistics() { return m_statistics; }

    int columnCount() const { return static_cast<int>(m_positions.size()); }
    // Position in Definition::columns of a column of the SQLite table.
    int position(int column) const { return m_positions[static_cast<std::size_t>(column)]; }
    // The real index that answers an equality on the column, -1 if there is none or if so
    // many have been asked that the hash index of the table is cheaper.
    int indexForSeek(Table& rows, int position);
    // Rows found by one column and refused by another so far, for all plans of that text.
    // When they have become many, an index of all the columns pays.
    double& refusedRows(const std::string& plan) { return m_refused[plan]; }
    // The argument of sqlite3_declare_vtab.
    std::string declaration() const;

    // xUpdate. Gives the row number of an inserted row.
    void erase(sqlite3_int64 row);
    sqlite3_int64 insert(std::span<sqlite3_value*> values);
    void update(sqlite3_int64 row, std::span<sqlite3_value*> values);

private:
    TableModule& m_module;
    std::string m_name;
    std::vector<int> m_positions;
    ColumnStatistics m_statistics;
    std::vector<double> m_seeks; // so far, by position
    std::map<std::string, double> m_refused;
    std::vector<Value> m_row; // reused between changes
};

// Makes CREATE VIRTUAL TABLE "name" USING jet work. `module` must outlive the connection.
void registerModule(sqlite3* connection, TableModule& module);

// Row numbers that never named a row throw Error (Damaged) when they are followed; those
// that do not fit a row pointer are null pointers.
RowPointer rowPointer(sqlite3_int64 row);

} // namespace jet::sql
