#pragma once

#include "jet/storage/definition.h"
#include "jet/storage/table.h"
#include "jet/value.h"

#include <optional>
#include <string>

#include <sqlite3.h>

// Column values on their way between rows and SQLite: Boolean INTEGER -1/0, whole numbers
// INTEGER, Single, Double, Currency, Decimal and dates REAL, Guid TEXT, bytes BLOB.
namespace jet::sql {

// Declared type in CREATE TABLE, collation included.
const char* declaredType(FieldType type);

// Reads a value off the row without a detour over jet::Value where numbers and texts allow.
// `buffer` is reused between calls.
void setResultFromRow(sqlite3_context* context, const RowView& row, int position, FieldType type,
                      std::string& buffer);

// The value that rows hold in a column when SQLite finds them equal to `value`; nothing
// when no row can be. Requires a text or number column as the planner admits them.
std::optional<Value> keyFor(FieldType type, sqlite3_value* value);

} // namespace jet::sql
