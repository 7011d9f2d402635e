#pragma once

#include "jet/storage/definition.h"
#include "jet/storage/jet3/pages.h"
#include "jet/value.h"

#include <cstddef>
#include <optional>
#include <vector>

namespace jet::jet3 {

// Walks the live rows of a table of an Access 95/97 file in page order. A row:
//
//   u8     number of columns when it was written
//          fixed area: every fixed column at 1 + its offset
//          variable items in slot order
//   u8     end of the items, then the offsets of slot v-1 ... slot 0, all modulo 256
//   u8     jump entries, the last one first: the slot from which on another 256 is added;
//          (row length - 1) / 256 of them
//   u8     v = number of slots in this row; these four only if the table has slots
//          null mask, as in the present format
class RowReader
{
public:
    // `pages` and `definition` must outlive the reader.
    RowReader(const Pages& pages, const Definition& definition);
    RowReader(const RowReader&) = delete;
    RowReader& operator=(const RowReader&) = delete;

    bool next(); // steps to the next row; false at the end
    // `column` is a position in Definition::columns; long values are read whole. A type that
    // is not known gives the bytes.
    Value value(std::size_t column) const;

private:
    bool openNextPage();
    void parse();
    ByteView item(const ColumnDefinition& column) const;
    Bytes longValue(ByteView item) const;
    void appendChain(Bytes& out, RowPointer pointer, std::size_t length) const;
    [[noreturn]] void throwDamaged() const;

    const Pages& m_pages;
    const Definition& m_definition;
    std::vector<PageNumber> m_pageNumbers;
    std::size_t m_nextPage = 0;
    Page m_page{};
    PageNumber m_pageNumber = 0;
    std::optional<DataPage> m_rows; // of m_page
    std::size_t m_nextRow = 0;

    Bytes m_row;
    std::size_t m_columnCount = 0;        // in this row
    std::size_t m_mask = 0;               // offset
    std::vector<std::size_t> m_slotBegin; // one more than slots: the last is the end
};

} // namespace jet::jet3
