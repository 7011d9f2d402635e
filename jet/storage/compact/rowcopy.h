#pragma once

#include "jet/storage/compact/losses.h"
#include "jet/storage/compact/rowreader.h"
#include "jet/storage/definition.h"
#include "jet/storage/pager.h"
#include "jet/storage/rowcodec.h"
#include "jet/storage/rowspace.h"
#include "jet/value.h"

#include <cstddef>
#include <map>
#include <string>

namespace jet::compact {

// One row on its way from the source to the new file. Items are copied byte by byte, so
// that nothing is lost in a conversion; only a repair looks into them.
class RowCopy
{
public:
    // `from` and `to` have the same columns in the same order. Both outlive the copy.
    RowCopy(const Definition& from, const Definition& to, const std::string& table);

    // Takes the row in with its long values. A value that cannot be read becomes NULL, a
    // long value is cut where it breaks off.
    void read(const StoredRow& row, Pager& source, Losses& losses);

    // Requires a position in Definition::columns, not negative.
    Value value(int column) const;
    void set(int column, const Value& value);

    // Writes long values into the spaces of their columns and gives the bytes of the row.
    Bytes write(std::map<std::size_t, RowSpace>& longValues);

private:
    void readItem(std::size_t column, ByteView item, const StoredRow& row, Pager& source,
                  Losses& losses);
    void readLongValue(std::size_t column, ByteView item, const StoredRow& row, Pager& source,
                       Losses& losses);
    void repairItem(std::size_t column, ByteView item, const StoredRow& row, Losses& losses);
    void cutLongValue(std::size_t column, Bytes& data) const;
    std::string nameOf(std::size_t column) const;

    const Definition& m_from;
    const Definition& m_to;
    const std::string& m_table;
    RowItems m_items;
    std::map<std::size_t, Bytes> m_longValues; // those outside the row, by column
};

} // namespace jet::compact
