#include "jet/storage/maprow.h"
#include "jet/storage/usagemap.h"
#include "tests/jet/checkedfile.h"

namespace jet::test {

RowSpan spanOf(ByteView page, RowPointer row)
{
    const auto offset = [&](std::size_t slot) {
        return std::size_t{get16(page, 14 + 2 * slot)} & 0x1FFF;
    };
    return {offset(row.row), row.row == 0 ? kPageSize : offset(row.row - 1U)};
}

std::size_t slotOf(RowPointer row)
{
    return 14U + 2U * row.row;
}

const ColumnDefinition& column(const Definition& table, const char* field)
{
    return table.columns.at(static_cast<std::size_t>(table.columnPosition(field)));
}

std::size_t fixedAt(ByteView page, RowPointer row, const Definition& table, const char* field)
{
    return spanOf(page, row).begin + 2 + column(table, field).fixedOffset;
}

std::size_t maskAt(ByteView page, RowPointer row, const Definition& table, const char* field)
{
    const RowSpan span = spanOf(page, row);
    const std::size_t bytes = (get16(page, span.begin) + std::size_t{7}) / 8;
    return span.end - bytes + column(table, field).id / 8U;
}

std::size_t offsetWordAt(ByteView page, RowPointer row, const Definition& table, const char* field)
{
    const RowSpan span = spanOf(page, row);
    const std::size_t bytes = (get16(page, span.begin) + std::size_t{7}) / 8;
    return span.end - bytes - 4 - 2U * column(table, field).slot;
}

std::size_t itemAt(ByteView page, RowPointer row, const Definition& table, const char* field)
{
    return spanOf(page, row).begin + get16(page, offsetWordAt(page, row, table, field));
}

std::size_t columnEntryAt(const Definition& table, const char* field)
{
    const auto position = static_cast<std::size_t>(table.columnPosition(field));
    return kDefinitionStatistics + 12 * table.realIndexes.size() + 25 * position;
}

std::size_t realIndexAt(const Definition& table, std::size_t index)
{
    std::size_t at = kDefinitionStatistics + 12 * table.realIndexes.size();
    for (const ColumnDefinition& c : table.columns)
        at += 25 + 2 + 2 * c.name.size(); // names of the indexed tables are Latin
    return at + 52 * index;
}

std::size_t logicalIndexAt(const Definition& table, std::size_t index)
{
    return realIndexAt(table, table.realIndexes.size()) + 28 * index;
}

std::vector<PageNumber> pagesOf(Pager& pager, RowPointer map)
{
    PageAllocator allocator(pager);
    return UsageMap(pager, allocator, map).pages();
}

void setInMap(Pager& pager, RowPointer map, PageNumber page, bool value)
{
    const ByteSpan bytes = pager.modify(map.page);
    const maprow::Place place = maprow::locate(bytes, map);
    const PageNumber bit = page - get32(bytes, place.offset + 1);
    std::uint8_t& byte = bytes[place.offset + 5 + bit / 8];
    const auto mask = static_cast<std::uint8_t>(1U << bit % 8);
    byte = static_cast<std::uint8_t>(value ? byte | mask : byte & ~mask);
}

} // namespace jet::test
