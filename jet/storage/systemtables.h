#pragma once

#include "jet/storage/definition.h"

#include <array>

namespace jet {

// The four system tables of a new database as the engine of Access defines them: pages 2 to
// 5, maps on page 6, index roots on pages 7 to 13.
std::array<Definition, 4> systemTableDefinitions(std::uint16_t collation);

} // namespace jet
