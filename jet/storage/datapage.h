#pragma once

#include "jet/storage/bytes.h"
#include "jet/storage/types.h"

#include <cstddef>
#include <cstdint>
#include <string>

namespace jet {

// A page of rows: table rows, long values or map rows.
//
//   offset  bytes  meaning (little-endian)
//       00      2  01 01
//       02      2  free bytes between the last slot and the lowest row
//       04      4  owner: page of the table definition; "LVAL" on long-value pages
//       08      4  0; on the first page of a multi-page long value its tag
//       0C      2  number n of row slots, deleted rows included
//       0E    2*n  slots: bits 0-12 offset of the row, bits 14-15 its state
//
// Rows are laid from the end of the page downwards: row 0 ends at 1000, row i ends where
// row i-1 begins. A deleted row is either squeezed out (length 0) or left in place.
//
//   0E            ...   slot n-1 | free bytes | row n-1 | ... | row 1 | row 0
namespace datapage {

inline constexpr std::size_t kFree = 0x02;
inline constexpr std::size_t kOwner = 0x04;
inline constexpr std::size_t kTag = 0x08;
inline constexpr std::size_t kRowCount = 0x0C;
inline constexpr std::size_t kSlots = 0x0E;
inline constexpr std::size_t kSlotBytes = 2;
inline constexpr std::size_t kMostRows = 255; // a row number is one byte wherever it is stored
inline constexpr std::size_t kEmptyRoom = kPageSize - kSlots;

inline constexpr std::uint16_t kOffsetMask = 0x1FFF;
inline constexpr std::uint16_t kStateMask = 0xC000;
inline constexpr std::uint16_t kMoved = 0x4000;     // the row is a pointer to its data
inline constexpr std::uint16_t kMovedData = 0x8000; // such data; the row is elsewhere
inline constexpr std::uint16_t kDeleted = 0xC000;

inline constexpr std::uint32_t kLongValueOwner = 0x4C41564C; // "LVAL"

struct Slot
{
    std::size_t offset = 0;
    std::size_t length = 0;
    std::uint16_t state = kDeleted;
};

// True when the page's first byte and owner are these of a data page of `owner`.
inline bool belongsTo(ByteView page, std::uint32_t owner)
{
    return page[0] == 1 && get32(page, kOwner) == owner;
}

// Slots in use, at most one more than a page may have; never throws.
inline std::size_t rowCount(ByteView page)
{
    const std::size_t count = get16(page, kRowCount);
    return count <= kMostRows ? count : kMostRows + 1;
}

[[noreturn]] void throwMisplacedRow(PageNumber number);

// Requires row < rowCount(page). Throws Error (Damaged) when the row does not lie inside the
// page behind the slots.
inline Slot slot(ByteView page, PageNumber number, std::size_t row)
{
    const std::size_t at = kSlots + kSlotBytes * row;
    const std::uint16_t entry = get16(page, at);
    const std::size_t offset = entry & kOffsetMask;
    // A row ends where the one before it begins.
    const std::size_t end =
        row == 0 ? kPageSize : std::size_t{get16(page, at - kSlotBytes)} & kOffsetMask;
    if (offset < kSlots + kSlotBytes * rowCount(page) || offset > end || end > kPageSize)
        throwMisplacedRow(number);
    return {offset, end - offset, static_cast<std::uint16_t>(entry & kStateMask)};
}

// Throws Error (Damaged) unless all slots are in order, so that the writing functions below
// may trust them. They require a checked page.
void check(ByteView page, PageNumber number);

std::size_t freeBytes(ByteView page);
bool fits(ByteView page, std::size_t length);
// True when every row is deleted.
bool isVacant(ByteView page);

void initialise(ByteSpan page, std::uint32_t owner);
// Adds a row of `length` unset bytes. Requires fits(). Gives its number.
std::uint8_t addRow(ByteSpan page, std::size_t length, std::uint16_t state);
// Gives the row another length and keeps as many of its first bytes as fit; the rows behind
// move. Requires growth <= freeBytes().
void resizeRow(ByteSpan page, std::size_t row, std::size_t length);
void setState(ByteSpan page, std::size_t row, std::uint16_t state);
// Marks the row deleted and squeezes its bytes out.
void eraseRow(ByteSpan page, std::size_t row);
// Squeezes out deleted rows that another program left in place.
void squeeze(ByteSpan page);
// The bytes of a row. Requires a checked page.
ByteSpan rowBytes(ByteSpan page, std::size_t row);

} // namespace datapage

} // namespace jet
