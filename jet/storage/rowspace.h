#pragma once

#include "jet/storage/bytes.h"
#include "jet/storage/pager.h"
#include "jet/storage/types.h"
#include "jet/storage/usagemap.h"

#include <cstddef>
#include <cstdint>
#include <optional>

namespace jet {

// The data pages of one table, or the long-value pages of one column: finds room for rows,
// gives pages back, and keeps the two maps (pages owned, pages with free space) in step.
//
// A page enters the free-space map when it is new or when a row leaves it much room, and
// leaves it when a row was tried there and did not fit.
class RowSpace
{
public:
    // `freeSpace` may be null: a column of some tables of Access itself has no such map.
    RowSpace(Pager& pager, PageAllocator& allocator, std::uint32_t owner, RowPointer owned,
             RowPointer freeSpace);

    // Adds a row where there is room. `state` is a slot state of datapage.h.
    RowPointer add(ByteView row, std::uint16_t state = 0);
    // Adds a row on a page of its own that takes no others.
    RowPointer addAlone(ByteView row);
    // Deletes a row; a page without rows is released.
    void erase(RowPointer row);
    // Gives the row another length, keeping its first bytes. False, and nothing changed, when
    // its page has no room.
    bool resize(RowPointer row, std::size_t length);
    // The bytes of a row for writing.
    ByteSpan bytes(RowPointer row);
    void setState(RowPointer row, std::uint16_t state);

private:
    // A page of this space for writing, its slots checked.
    ByteSpan modify(PageNumber number);
    std::optional<PageNumber> pageWithRoom(std::size_t length);
    bool hasRoom(PageNumber number, std::size_t length);
    PageNumber newPage();
    RowPointer place(PageNumber number, ByteView row, std::uint16_t state);
    void offer(PageNumber number, ByteView page);
    bool hasFreeMap() const { return !m_freeSpace.pointer().isNull(); }

    Pager& m_pager;
    PageAllocator& m_allocator;
    std::uint32_t m_owner;
    UsageMap m_owned;
    UsageMap m_freeSpace;
    PageNumber m_recent = 0; // took the last row; tried first, checked like any other
};

} // namespace jet
