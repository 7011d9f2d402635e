#pragma once

#include "jet/sql/translation.h"

#include <string>
#include <vector>

namespace jet::sql {

// SQLite's name for the identity of a row that no column of the table hides.
std::string rowIdName(const std::vector<ResultColumn>& columns);

} // namespace jet::sql
