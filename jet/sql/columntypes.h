#pragma once

#include "jet/tabledef.h"

#include <string_view>

namespace jet::sql {

// A type word of CREATE TABLE and ALTER TABLE.
struct ColumnType
{
    std::string_view word;
    FieldType type;
    bool counter = false;
    // The size in brackets: Text in characters, Binary in bytes; 0 where none is taken.
    int greatestSize = 0;
    int defaultSize = 0;
};

// Case-insensitive; null when there is none.
const ColumnType* findColumnType(std::string_view word);

} // namespace jet::sql
