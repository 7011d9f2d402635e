#pragma once

#include "jet/tabledef.h"

#include <string>
#include <vector>

// Short ways to write fields and indexes.
namespace jet::test {

inline Field text(const std::string& name, int size = 50)
{
    return {.name = name, .type = FieldType::Text, .size = size};
}

inline Field number(const std::string& name)
{
    return {.name = name, .type = FieldType::Long};
}

inline Field counter(const std::string& name)
{
    return {.name = name, .type = FieldType::Long, .attributes = attribute::kAutoIncrement};
}

inline Field memo(const std::string& name)
{
    return {.name = name, .type = FieldType::Memo};
}

inline Index indexOn(const std::string& name, const std::vector<std::string>& fields)
{
    Index index{.name = name};
    for (const std::string& field : fields)
        index.fields.push_back({field, false});
    return index;
}

inline Index primaryKey(const std::string& field)
{
    Index index = indexOn("PrimaryKey", {field});
    index.primary = true;
    return index;
}

} // namespace jet::test
