#pragma once

#include "import/forms/importtimetable.h"
#include "refbooks/listquery.h"

namespace imports {

// Asks for a file and opens the import of its list into the book; students go to the group that
// the list is narrowed to. True when the book was changed. Throws nothing.
bool importList(const ImportParts& parts, refbooks::Book book, const refbooks::ListFilter& filter,
                QWidget* parent);

} // namespace imports
