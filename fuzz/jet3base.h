#pragma once

#include "jet/value.h"

#include <cstdint>

namespace jet::fuzz {

// A small sound file of Access 95/97, which the engine only reads: catalogue, two tables with
// an index, numbers, texts and long values in one row and in a chain. Pages of 2048 bytes,
// page 0 as it stands in the file, the others plain.
Bytes jet3File(std::uint32_t databaseKey);

} // namespace jet::fuzz
