#pragma once

#include "import/tables/texttable.h"

namespace imports {

// Reads a table of a database (.mdb), the first one for an empty name; its first row holds the
// names of the fields. The file is opened read-only. Throws jet::Error.
TextTable readDatabaseTable(const QString& path, const QString& table);

} // namespace imports
