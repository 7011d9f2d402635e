#include "jet/storage/definition.h"

#include "jet/text.h"

#include <algorithm>

namespace jet {

namespace {

constexpr std::uint8_t kStoredDecimal = 0x10;

template <class Range, class Predicate>
int positionOf(const Range& range, Predicate matches)
{
    const auto found = std::find_if(range.begin(), range.end(), matches);
    return found == range.end() ? -1 : static_cast<int>(found - range.begin());
}

} // namespace

FieldType ColumnDefinition::type() const
{
    if (storedType == kStoredDecimal)
        return FieldType::Decimal;
    // DAO's number of Decimal is in files the code of a later type.
    return storedType == static_cast<std::uint8_t>(FieldType::Decimal)
               ? FieldType{0}
               : static_cast<FieldType>(storedType);
}

int Definition::columnPosition(std::string_view name) const
{
    return positionOf(columns, [&](const ColumnDefinition& c) { return sameName(c.name, name); });
}

int Definition::columnPositionById(std::uint16_t id) const
{
    return positionOf(columns, [&](const ColumnDefinition& c) { return c.id == id; });
}

const ColumnMaps* Definition::mapsOf(std::uint16_t columnId) const
{
    const int at =
        positionOf(columnMaps, [&](const ColumnMaps& m) { return m.columnId == columnId; });
    return at < 0 ? nullptr : &columnMaps[static_cast<std::size_t>(at)];
}

std::size_t Definition::fixedLength() const
{
    std::size_t length = 0;
    for (const ColumnDefinition& column : columns) {
        if (column.isFixed() && !column.isBoolean())
            length = std::max<std::size_t>(length, column.fixedOffset + column.length);
    }
    return length;
}

} // namespace jet
