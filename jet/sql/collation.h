#pragma once

#include <sqlite3.h>

namespace jet::sql {

inline constexpr const char* kCollation = "JET";

// The collation JET: Jet's General order, without case.
void registerCollation(sqlite3* connection);

} // namespace jet::sql
