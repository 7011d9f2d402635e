#pragma once

#include "jet/storage/compact/losses.h"
#include "jet/storage/compact/rowcopy.h"
#include "jet/storage/definition.h"
#include "jet/storage/pager.h"
#include "jet/storage/types.h"
#include "jet/storage/usagemap.h"

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace jet::compact {

// A local table of the source.
struct SourceTable
{
    std::string name;
    Definition definition;
    std::vector<PageNumber> pages; // its data pages
    PageNumber newPage = 0;        // of its definition in the new file
    bool ofUser = false;
};

// Looks at a row before it is written and may change it; false leaves it out. The pointer
// is the row's place in the source.
using RowRule = std::function<bool(RowPointer, RowCopy&)>;

// Writes one table into the new file.
class TableCopy
{
public:
    // All must outlive the object.
    TableCopy(Pager& source, Pager& target, Losses& losses);

    // Rows, long values and indexes. The definition that is given back is not yet written:
    // its pages are known, and its relationships still name pages of the source.
    // `tell` is called now and then with the rows done and their number.
    Definition run(const SourceTable& table, const RowRule& rule,
                   const std::function<void(std::size_t, std::size_t)>& tell);

private:
    void allocateMaps(Definition& fresh);
    std::vector<RowPointer> rowsInKeyOrder(const SourceTable& table, const Definition& fresh);

    Pager& m_source;
    Pager& m_target;
    PageAllocator m_sourceAllocator;
    PageAllocator m_allocator;
    Losses& m_losses;
};

} // namespace jet::compact
