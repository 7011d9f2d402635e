#pragma once

#include "jet/sql/rowfilter.h"
#include "jet/sql/tableplan.h"
#include "jet/sql/virtualtable.h"

#include <optional>
#include <span>
#include <string>
#include <vector>

#include <sqlite3.h>

namespace jet::sql {

// One walk of SQLite over the rows of a table.
class TableCursor : public sqlite3_vtab_cursor
{
public:
    explicit TableCursor(VirtualTable& table);

    // Starts anew and stands on the first row. One argument for each term of the plan.
    void filter(const TablePlan& plan, std::span<sqlite3_value*> arguments);
    void next();
    bool atEnd() const { return m_row == nullptr; }
    void column(sqlite3_context* context, int column);
    sqlite3_int64 rowNumber() const { return m_row->pointer().packed(); }
    VirtualTable& table() const { return m_table; }

private:
    void start(const TablePlan& plan, std::span<sqlite3_value*> arguments);
    void scanAll();
    bool isKey(int position, sqlite3_value* value) const;
    void findRows(const TablePlan& plan, std::span<sqlite3_value*> arguments);
    void findRowsByAll(const TablePlan& plan, std::span<sqlite3_value*> arguments);
    bool advance(); // to the next row of the access, filters not looked at
    bool passes() const;
    bool hasSameSchema() const;

    VirtualTable& m_table;
    Table* m_rows = nullptr;
    std::uint64_t m_schemaVersion = 0;
    std::vector<FieldType> m_types; // by position
    std::vector<RowFilter> m_filters;
    bool m_scanning = false;
    TableScan m_scan;
    std::vector<RowPointer> m_found; // not scanning: the rows, and the next of them
    std::size_t m_next = 0;
    std::optional<RowView> m_foundRow;
    double* m_refused = nullptr; // of this plan, kept by the table
    const RowView* m_row = nullptr;
    mutable std::string m_buffer;
};

} // namespace jet::sql
