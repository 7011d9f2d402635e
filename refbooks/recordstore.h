#pragma once

#include "refbooks/recorddraft.h"

#include "jet/tabledef.h"

namespace jet {
class Database;
class Recordset;
} // namespace jet

namespace refbooks {

// Reads the row of draft.key into the values; false when there is none. Throws jet::Error.
bool readRecord(jet::Database& database, RecordDraft& draft);
// Takes the values from the present row, which has all fields of the book's table.
void readValues(const jet::Recordset& rows, RecordDraft& draft);

// Adds a row (new, copy) and gives its key, or changes the row of draft.key; nothing when
// that row is gone. Requires that every value fits its column. Throws jet::Error.
std::optional<std::int64_t> storeRecord(jet::Database& database, const RecordDraft& draft);

// Whether a text can be kept in the column: a number within its range, or few enough
// characters. An empty text can.
bool fitsColumn(const QString& text, const jet::Field& column);

} // namespace refbooks
