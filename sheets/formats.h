#pragma once

#include "sheets/table.h"

namespace sheets {

// One format each; both write `path` anew and throw jet::Error.

// A workbook of one sheet: heads bold and frozen, a filter over them, widths that fit, printed
// on A4 across, as wide as the page, the heads on each.
void writeXlsx(const QString& path, const Table& table);
// UTF-8 with a byte order mark, semicolons, lines ending in CR LF.
void writeCsv(const QString& path, const Table& table);

} // namespace sheets
