#pragma once

#include "jet/storage/indexpage.h"
#include "jet/storage/pager.h"
#include "jet/storage/types.h"
#include "jet/storage/usagemap.h"

#include <cstdint>

namespace jet {

// The pages of one index tree: reads them with all checks, and keeps the index's page map
// in step with allocating and freeing.
class TreePages
{
public:
    TreePages(Pager& pager, PageAllocator& allocator, PageNumber definitionPage, RowPointer pageMap,
              PageNumber root);

    PageNumber root() const { return m_root; }
    PageNumber owner() const { return m_owner; }
    PageNumber pageCount() const { return m_pager.pageCount(); }

    // Reads a page into `view`, which refers to the bytes the result pins. Throws Error
    // (Damaged) when it is no page of this table's indexes.
    PageRef load(PageNumber number, IndexPage& view) const;
    ByteSpan modify(PageNumber number) { return m_pager.modify(number); }
    void write(PageNumber number, const IndexPageImage& image);
    // Rewrite one link of a page; nothing happens for page 0.
    void setPrevious(PageNumber number, PageNumber target) { link(number, kIndexPrevious, target); }
    void setNext(PageNumber number, PageNumber target) { link(number, kIndexNext, target); }

    PageNumber allocate();
    void release(PageNumber number);
    // Frees every page of the map but the root, which becomes an empty leaf.
    void releaseAll();

private:
    void link(PageNumber number, std::size_t offset, PageNumber target);

    Pager& m_pager;
    PageAllocator& m_allocator;
    PageNumber m_owner;
    RowPointer m_pageMap;
    PageNumber m_root;
};

} // namespace jet
