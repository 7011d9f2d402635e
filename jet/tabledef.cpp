#include "jet/tabledef.h"

#include "jet/text.h"

#include <algorithm>

namespace jet {

std::string Index::fieldList() const
{
    std::string list;
    for (const IndexField& field : fields) {
        if (!list.empty())
            list += ';';
        list += field.descending ? '-' : '+';
        list += field.name;
    }
    return list;
}

const Field* TableDef::field(std::string_view fieldName) const
{
    const auto found = std::find_if(fields.begin(), fields.end(), [fieldName](const Field& f) {
        return sameName(f.name, fieldName);
    });
    return found == fields.end() ? nullptr : &*found;
}

const Index* TableDef::index(std::string_view indexName) const
{
    const auto found = std::find_if(indexes.begin(), indexes.end(), [indexName](const Index& i) {
        return sameName(i.name, indexName);
    });
    return found == indexes.end() ? nullptr : &*found;
}

int fieldSize(FieldType type, int size)
{
    switch (type) {
    case FieldType::Boolean:
    case FieldType::Byte:
        return 1;
    case FieldType::Integer:
        return 2;
    case FieldType::Long:
    case FieldType::Single:
        return 4;
    case FieldType::Currency:
    case FieldType::Double:
    case FieldType::Date:
        return 8;
    case FieldType::Guid:
    case FieldType::Decimal:
        return 16;
    case FieldType::Block:
        return 3992;
    case FieldType::Memo:
    case FieldType::LongBinary:
        return 0;
    case FieldType::Text:
    case FieldType::Binary:
        return size;
    }
    return size;
}

} // namespace jet
