#pragma once

#include "jet/storage/types.h"
#include "jet/value.h"

#include <cstddef>
#include <cstdint>
#include <span>

namespace jet::fuzz {

// A sound database file that inputs damage.
struct Base
{
    Bytes pages; // page 0 as it stands in the file, the others plain
    std::uint32_t databaseKey = 0;
    std::size_t pageSize = kPageSize;
    Bytes journal = {}; // beside the file, where it is half-written
};

// The file of plain pages, or the plain pages of a file: coding is its own inverse. `pages` may
// be any bytes.
Bytes fileOf(Bytes pages, std::uint32_t databaseKey, std::size_t pageSize = kPageSize);

// Made at the first call, alike in each run but for the dates of change in the catalogue:
// tables of all types with indexes, moved rows and long values; the same encoded; a new
// database without tables; a file of Access 95/97; the same encoded; the
// first one in the middle of a transaction.
std::span<const Base> bases();

} // namespace jet::fuzz
