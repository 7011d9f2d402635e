#pragma once

#include "jet/storage/bytes.h"
#include "jet/storage/types.h"

#include <cstddef>
#include <optional>

// Rows of the data pages that hold usage maps: located and checked, added, lengthened and
// deleted within one page. See usagemap.h for what is in them.
//
//   offset  bytes  meaning of the page header
//        0      2  01 01
//        2      2  free bytes: lowest row offset - 14 - 2n
//        4      4  owner: 0, on page 1 it is 1
//       12      2  n, number of row slots, deleted rows included
//       14    2*n  slots: bits 0-12 offset of the row, bits 14 and 15 set = deleted
namespace jet::maprow {

inline constexpr std::size_t kNewLength = 69; // type byte, first page, 64 bytes of bitmap

struct Place
{
    std::size_t offset;
    std::size_t length;
};

// Where a live row lies. Throws Error (Damaged) unless the page is a data page whose slots
// lie inside it in order and the row is live and holds at least a type byte and one number.
Place locate(ByteView page, RowPointer row);

// Makes the zeroed page an empty one.
void initialise(ByteSpan page);
// Adds a zeroed row; nothing when the page is full.
std::optional<std::uint8_t> append(ByteSpan page, PageNumber number);
// Lengthens the row at its end by zero bytes, moving the rows below it. False, and nothing
// changed, when the page has no room.
bool lengthen(ByteSpan page, RowPointer row, std::size_t by);
// Deletes the row and closes the gap. Numbers of other rows stay.
void erase(ByteSpan page, RowPointer row);
// True when the page holds no live row.
bool isEmpty(ByteView page, PageNumber number);

} // namespace jet::maprow
