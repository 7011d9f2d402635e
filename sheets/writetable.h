#pragma once

#include "sheets/table.h"
#include "sheets/wholefile.h"

namespace sheets {

// Writes the table as a workbook or, when the name ends in ".csv", as text separated by
// semicolons. The file is there whole or not at all; an earlier one is kept unless the caller
// says that the user agreed to replace it. Throws jet::Error.
void writeTable(const QString& path, const Table& table, Existing existing = Existing::Keep);

// A name for the table's file, without a folder: the title without what file systems refuse,
// and ".xlsx".
QString fileName(const QString& title);

} // namespace sheets
