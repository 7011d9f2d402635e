#pragma once

#include "jet/storage/pager.h"
#include "jet/storage/types.h"

#include <optional>
#include <vector>

namespace jet {

class PageAllocator;

// A set of page numbers kept as a row of a map page: the pages of a table, of a long-value
// column or of an index, or those with free space. Inline (type 0) or by reference to bitmap
// pages (type 1); add() widens and converts as needed. Holds no state but its pointer.
class UsageMap
{
public:
    // Requires that the pointer names a live row; reading a damaged one throws Error.
    UsageMap(Pager& pager, PageAllocator& allocator, RowPointer row);

    RowPointer pointer() const { return m_row; }
    bool contains(PageNumber page) const;
    void add(PageNumber page);
    void remove(PageNumber page);
    // All members, ascending; every member is checked to lie inside the file.
    std::vector<PageNumber> pages() const;
    // Lowest member >= from.
    std::optional<PageNumber> next(PageNumber from) const;
    // Frees the bitmap pages of a type-1 map (used when a table or index is dropped).
    void releaseBitmaps();

private:
    Pager& m_pager;
    PageAllocator& m_allocator;
    RowPointer m_row;
};

// Gives out and takes back pages by the global map (page 1 row 0), where a set bit is free.
class PageAllocator
{
public:
    explicit PageAllocator(Pager& pager);

    // A zeroed page: the lowest free one below the end of the file, else a new one at the end.
    PageNumber allocate();
    // Marks a page free; `type` replaces its first byte (08/09 for definitions and data).
    void release(PageNumber page, PageType type);
    bool isFree(PageNumber page) const;

    // A new map row of 69 bytes, empty, on `mapPage`, or on a further map page that is
    // allocated when mapPage is 0 or full. The page's owner field is 0.
    RowPointer createMap(PageNumber mapPage);
    void deleteMap(RowPointer row);

private:
    Pager& m_pager;
    PageNumber m_firstCandidate = 0; // no page below is free
};

} // namespace jet
