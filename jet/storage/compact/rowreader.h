#pragma once

#include "jet/storage/compact/losses.h"
#include "jet/storage/definition.h"
#include "jet/storage/pager.h"
#include "jet/storage/rowcodec.h"
#include "jet/storage/types.h"

#include <cstdint>
#include <set>
#include <span>
#include <string>
#include <vector>

namespace jet::compact {

// A row as it lies on its page in the source.
struct StoredRow
{
    RowPointer pointer; // its identity; the data of a moved row are elsewhere
    PageRef page;       // pins the bytes
    RowParts parts;
};

// Finds the rows of one table in the source. It trusts no more than it must: one bad row
// does not hide the others of its page.
class RowReader
{
public:
    // All must outlive the reader.
    RowReader(Pager& pager, const Definition& definition, const std::string& table, Losses& losses);

    // The rows on these pages that can be read, in their order.
    std::vector<RowPointer> rows(std::span<const PageNumber> pages);
    // Requires a pointer that rows() gave.
    StoredRow at(RowPointer pointer) const;

private:
    void addRowsOf(PageNumber number, std::vector<RowPointer>& rows);
    void addLostMovedRows(std::vector<RowPointer>& rows);
    ByteView dataOfMoved(ByteView header, PageRef& page, RowPointer& target) const;
    bool isInOrder(const RowParts& parts) const;
    std::size_t fixedEnd(std::uint16_t columns) const;

    Pager& m_pager;
    const Definition& m_definition;
    const std::string& m_table;
    Losses& m_losses;
    RowShape m_shape;
    std::vector<std::size_t> m_fixedEnds; // of rows with so many columns
    std::set<RowPointer> m_movedData;     // rows that are data of moved ones
    std::set<RowPointer> m_movedDataUsed;
};

} // namespace jet::compact
