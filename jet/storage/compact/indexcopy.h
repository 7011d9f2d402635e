#pragma once

#include "jet/storage/compact/losses.h"
#include "jet/storage/compact/rowcopy.h"
#include "jet/storage/definition.h"
#include "jet/storage/indexkeeper.h"
#include "jet/storage/pager.h"
#include "jet/storage/usagemap.h"
#include "jet/value.h"

#include <cstddef>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace jet::compact {

// Builds all indexes of one table in the new file from its rows. Keys of texts whose order
// is not known here are taken from the index of the source.
//
// Data go before indexes: where a repair finds rows that an index forbids, the rows stay
// and the index forbids it no more. Dropping such rows, as the engine of Access does, would
// lose what the repair is run for.
class IndexCopy
{
public:
    // `fresh` names the pages and maps of its indexes. All must outlive the object.
    IndexCopy(Pager& target, PageAllocator& allocator, Definition& fresh, const std::string& table,
              Losses& losses);

    // Notes the entries of a row that was written.
    void add(const RowCopy& row, RowPointer oldPlace, RowPointer newPlace);
    // Writes all trees and sets what `fresh` says about them.
    void build(Pager& source, PageAllocator& sourceAllocator, const Definition& old);

private:
    struct Keys
    {
        std::vector<IndexEntry> entries;
        std::size_t rows = 0;  // that must have an entry
        bool borrowed = false; // from the source
        bool hasNulls = false; // in a column that forbids them
        bool unique = false;   // some entry must be
    };

    void addKey(std::size_t index, RowPointer place);
    bool borrow(std::size_t index, BTree& old);
    std::optional<RowPointer> newPlaceOf(RowPointer oldPlace) const;
    void buildOne(std::size_t index);
    void allow(std::size_t index, std::uint8_t forbidden, const char* what);
    void remove(std::size_t index);
    std::string nameOf(std::size_t index) const;

    PageAllocator& m_allocator;
    Definition& m_fresh;
    const std::string& m_table;
    Losses& m_losses;
    IndexKeeper m_keeper;
    std::vector<Keys> m_keys;
    std::vector<Value> m_row;                               // only columns of indexes are set
    std::vector<std::pair<RowPointer, RowPointer>> m_moves; // old and new places
};

} // namespace jet::compact
