#pragma once

#include "jet/storage/definition.h"
#include "jet/value.h"

#include <string>

namespace jet {

// The value as a column will give it back once it is stored: text becomes a number or date,
// numbers are rounded to even and checked against the column's range. NULL stays NULL, but
// Boolean columns know only True and False. Memo and LongBinary take any length here.
// Throws Error (Type, Overflow, for read-only types Unsupported); the clause names the
// column and the table.
Value convertValue(const Value& value, const ColumnDefinition& column,
                   const std::string& table = {});

// False for types whose values this engine only reads.
bool isWritable(const ColumnDefinition& column);

} // namespace jet
