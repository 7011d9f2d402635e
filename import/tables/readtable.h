#pragma once

#include "import/tables/texttable.h"

namespace imports {

// Reads a sheet of a workbook (.xlsx), a table of a database (.mdb), or a text file with
// separators; which of them a file is, its first bytes tell. An empty name means the first sheet
// or table. Nothing is written. Throws jet::Error. The file must not be one that this process has
// open as a database.
TextTable readTable(const QString& path, const QString& sheet = {});

} // namespace imports
