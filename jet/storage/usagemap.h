#pragma once

#include "jet/storage/pager.h"
#include "jet/storage/types.h"

#include <optional>
#include <vector>

namespace jet {

class PageAllocator;

// A set of page numbers kept as a row of a map page: the pages of a table, of a long-value
// column or of an index, or those with free space. add() moves, lengthens and converts the
// row as needed. Holds no state but its pointer.
//
//   type 0, inline:       00, u32 first page, bitmap to the end of the row
//   type 1, by reference: 01, u32 numbers of bitmap pages (0 = none), each for 32736 pages
//   bitmap page:          05 01 00 00, then 4092 bytes of bitmap
//
// Bit b of byte k, b counted from the lowest, stands for page first + 8k + b.
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
    // Error (Damaged) for a page that is free already, and for pages 0 and 1.
    void release(PageNumber page, PageType type);
    bool isFree(PageNumber page) const;

    // A new map row of 69 bytes, empty, on `mapPage`, or on a further map page that is
    // allocated when mapPage is full, 0 or that of the global map. The page's owner field is 0.
    RowPointer createMap(PageNumber mapPage);
    // Deletes the row, and frees its page when that was the last one. Bitmap pages stay: see
    // UsageMap::releaseBitmaps().
    void deleteMap(RowPointer row);

private:
    void setFree(PageNumber page, bool free);
    std::optional<PageNumber> nextFree(PageNumber from) const;

    Pager& m_pager;
    PageNumber m_firstCandidate = 0; // no page below is free
    std::uint64_t m_rollbacks = 0;   // of the pager when m_firstCandidate was found
};

} // namespace jet
