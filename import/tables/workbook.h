#pragma once

#include "import/tables/texttable.h"

namespace imports {

// Reads a sheet of an Excel workbook (.xlsx), the first one for an empty name. Throws jet::Error.
TextTable readWorkbook(const QString& path, const QString& sheet);

} // namespace imports
