#pragma once

#include "jet/storage/bytes.h"
#include "jet/storage/definition.h"
#include "jet/storage/pager.h"
#include "jet/storage/rowspace.h"
#include "jet/storage/types.h"
#include "jet/value.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

namespace jet {

// The row item of a Memo or LongBinary value:
//
//   offset  bytes  meaning
//        0      4  length of the data, or'ed with its place: 80000000 inline,
//                  40000000 one row of a long-value page, 0 a chain of rows
//        4      4  pointer to the (first) row, 0 if inline
//        8      4  0; for a chain the tag of its first page
//        C      n  data, if inline
//
// A chain row is u32 pointer to the next row (0 = last), then data; each has a page of its own.
namespace longvalue {

inline constexpr std::size_t kHeaderBytes = 12;
inline constexpr std::size_t kInlineLimit = 64;          // of uncompressed data
inline constexpr std::size_t kMostInRow = 4076;          // of a row on a long-value page
inline constexpr std::size_t kMostCompressed = 2 * 1024; // bytes of UTF-16

// A decoded header.
struct Header
{
    enum class Place { Inline, Row, Chain } place = Place::Inline;
    std::size_t length = 0;
    RowPointer row;
};

// Nothing when the item contradicts itself.
std::optional<Header> decodeHeader(ByteView item);

// Appends the stored data (text not decoded). Throws Error (Damaged).
void read(Pager& pager, ByteView item, Bytes& out);

// The data to be stored for a value that convertValue() made. Requires a not-NULL value.
struct Data
{
    Bytes bytes;
    bool mayBeInline = false;
};
Data encode(const ColumnDefinition& column, const Value& value);

// The item of inline data.
Bytes inlineItem(ByteView data);
// Stores data in rows of the column's pages and gives the item that names them.
Bytes write(RowSpace& space, ByteView data);
// Deletes the rows that an item names. Throws Error (Damaged).
void release(Pager& pager, RowSpace& space, ByteView item);

} // namespace longvalue

} // namespace jet
