#pragma once

#include "jet/storage/definition.h"
#include "jet/value.h"

#include <array>
#include <initializer_list>
#include <utility>

namespace jet {

class Table;

// The four system tables of a new database as the engine of Access defines them: pages 2 to
// 5, maps on page 6, index roots on pages 7 to 13.
std::array<Definition, 4> systemTableDefinitions(std::uint16_t collation);

// Inserts a row with the columns named set and all others NULL.
void insertRow(Table& table, std::initializer_list<std::pair<const char*, Value>> values);

} // namespace jet
