#pragma once

#include "import/lists/columnmatch.h"

#include <optional>

namespace imports {

// What becomes of a row that the book has already.
enum class ExistingRow {
    Skip,
    Update,    // by the cells that hold something
    AddAnyway, // where the book allows it
};

// What the user chose for an import.
struct ListChoice
{
    ColumnMatch columns;
    ExistingRow existing = ExistingRow::Skip;
    bool createMissing = false; // names that the lists lack, where a name is enough
    std::optional<int> group{}; // the students' group where the file names none
};

} // namespace imports
