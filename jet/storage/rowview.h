#pragma once

#include "jet/storage/definition.h"
#include "jet/storage/pager.h"
#include "jet/storage/rowcodec.h"
#include "jet/storage/types.h"
#include "jet/value.h"

#include <cstddef>
#include <cstdint>
#include <string>

namespace jet {

class Table;

// One row as it lies on its page; reads single columns without decoding the others.
// Valid while nothing changes the table.
class RowView
{
public:
    RowPointer pointer() const { return m_pointer; } // the row's identity (header row)

    // `column` is a position in Definition::columns.
    bool isNull(int column) const; // never for Boolean
    Value value(int column) const; // long values are read whole
    // Fast reads for numbers: Boolean (-1/0), Byte, Integer, Long. Requires !isNull(column).
    std::int64_t integer(int column) const;
    // Single, Double, Date, Currency (as a number). Requires !isNull(column).
    double number(int column) const;
    // Text and Memo as UTF-8, appended to `out`. Requires !isNull(column).
    void text(int column, std::string& out) const;
    // The bytes as stored, of a long value its item. Requires !isNull(column), no Boolean.
    ByteView storedItem(int column) const { return item(at(column)); }

private:
    friend class Table;
    friend class TableScan;
    const ColumnDefinition& at(int column) const
    {
        return m_columns[static_cast<std::size_t>(column)];
    }
    // The stored bytes of a column; throws Error (Damaged) when they lie outside the row or
    // are fewer than `least`.
    ByteView item(const ColumnDefinition& column, std::size_t least = 0) const;
    [[noreturn]] void throwDamaged() const;

    const Table* m_table = nullptr;
    const ColumnDefinition* m_columns = nullptr; // of the table's definition
    RowPointer m_pointer;
    RowPointer m_data; // where a moved row's data are; unset for others
    PageRef m_page;    // the page that holds the data
    RowParts m_parts;
};

} // namespace jet
