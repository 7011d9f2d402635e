#pragma once

#include "jet/storage/definition.h"
#include "jet/storage/table.h"
#include "jet/value.h"

#include <cstdint>
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

// The number that SQLite compares a number column with: a text that looks like one counts as
// one. Nothing for other texts, NULL and bytes. Leaves the value as it is, unlike
// sqlite3_value_numeric_type(), for it may also be compared with a text column.
struct ComparedNumber
{
    bool whole = false;
    std::int64_t integer = 0; // if whole
    double number = 0;
};
std::optional<ComparedNumber> comparedNumber(sqlite3_value* value);

// The value that rows hold in a column when SQLite finds them equal to `value`; nothing
// when no row can be. Requires a text or number column as the planner admits them, and a
// text (or NULL) beside a text column: a number may equal several texts there.
std::optional<Value> keyFor(FieldType type, sqlite3_value* value);

} // namespace jet::sql
