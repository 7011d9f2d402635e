#pragma once

#include "refbooks/recordfields.h"

namespace imports {

// Puts a cell's text into the value of a field that is no list: texts of at most `longest`
// characters, days and times as the record dialog takes them, "да" and "нет" for check boxes.
// Gives why it cannot be, "" when it was done.
QString takeCell(const QString& text, const refbooks::RecordField& field, int longest,
                 refbooks::FieldValue& value);

} // namespace imports
