#pragma once

#include "jet/tabledef.h"
#include "jet/value.h"

#include <optional>

#include <sqlite3.h>

namespace jet::sql {

// A column of the present row as a value of the column's type; as SQLite has it where the
// type is not known or the value is none of that type.
Value resultValue(sqlite3_stmt* statement, int column, std::optional<FieldType> type);

} // namespace jet::sql
