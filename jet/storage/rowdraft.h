#pragma once

#include "jet/storage/definition.h"
#include "jet/storage/longvalue.h"
#include "jet/storage/rowcodec.h"
#include "jet/storage/table.h"
#include "jet/value.h"

#include <cstddef>
#include <map>
#include <span>
#include <string>
#include <vector>

namespace jet {

// A row on its way to a page: first its items are collected and it is made to fit, which
// may be refused; only then are long values written, and the row encoded.
class RowDraft
{
public:
    // `definition` and `table` must outlive the draft.
    RowDraft(const Definition& definition, const std::string& table);

    // A value that convertValue() made for the column.
    void set(std::size_t column, const Value& value);
    // Keeps what the row has now, byte by byte, long values where they are.
    void keep(std::size_t column, const RowView& row);

    // Moves inline long values out, the longest first, until the row can be stored. Throws
    // Error (Limit) when it cannot. Writes nothing.
    void makeFit();
    // Writes the long values that lie outside the row. Throws Error (Damaged) when a
    // column has no pages of its own.
    Bytes finish(std::map<std::size_t, RowSpace>& spaces);

private:
    void placeLongValue(std::size_t column);

    const Definition& m_definition;
    const std::string& m_table;
    RowItems m_items;
    std::map<std::size_t, longvalue::Data> m_longValues; // to be written, by column
};

} // namespace jet
