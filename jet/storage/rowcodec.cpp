#include "jet/storage/rowcodec.h"

#include <algorithm>

namespace jet {

namespace {

std::size_t maskLength(std::size_t columns)
{
    return (columns + 7) / 8;
}

// Position of each slot's column in the definition, -1 for those of dropped columns.
std::vector<int> columnsBySlot(const Definition& definition)
{
    std::vector<int> positions(definition.variableSlots, -1);
    for (std::size_t i = 0; i < definition.columns.size(); ++i) {
        if (!definition.columns[i].isFixed())
            positions[definition.columns[i].slot] = static_cast<int>(i);
    }
    return positions;
}

void putFixedItems(Bytes& row, const Definition& definition, const RowItems& items)
{
    for (std::size_t i = 0; i < definition.columns.size(); ++i) {
        const ColumnDefinition& column = definition.columns[i];
        if (!column.isFixed() || column.isBoolean() || items.isNull(i))
            continue;
        const ByteView item = items.bytes(i);
        std::copy_n(item.begin(), std::min<std::size_t>(item.size(), column.length),
                    row.begin() + 2 + column.fixedOffset);
    }
}

void appendVariableItems(Bytes& row, const Definition& definition, const RowItems& items)
{
    std::vector<std::size_t> offsets;
    for (const int position : columnsBySlot(definition)) {
        offsets.push_back(row.size());
        if (position < 0 || items.isNull(static_cast<std::size_t>(position)))
            continue;
        const ByteView item = items.bytes(static_cast<std::size_t>(position));
        row.insert(row.end(), item.begin(), item.end());
    }
    offsets.push_back(row.size());
    std::size_t at = row.size();
    row.resize(at + 2 * offsets.size() + 2);
    for (auto offset = offsets.rbegin(); offset != offsets.rend(); ++offset, at += 2)
        put16(row, at, static_cast<std::uint16_t>(*offset));
    put16(row, at, definition.variableSlots);
}

} // namespace

RowShape RowShape::of(const Definition& definition)
{
    RowShape shape{definition.nextColumnId, definition.nextColumnId};
    for (const ColumnDefinition& column : definition.columns) {
        if (!column.isFixed())
            shape.firstVariableId = std::min(shape.firstVariableId, column.id);
    }
    return shape;
}

bool RowParts::parse(ByteView row, const RowShape& shape)
{
    if (row.size() < 2)
        return false;
    bytes = row;
    columnCount = get16(row, 0);
    const std::size_t mask = maskLength(columnCount);
    if (columnCount > shape.columnIds || 2 + mask > row.size())
        return false;
    maskOffset = row.size() - mask;
    dataEnd = maskOffset;
    slotCount = 0;
    // A row from before the first variable column may lack the offsets altogether. It needs
    // none: all variable columns are NULL in it.
    if (columnCount <= shape.firstVariableId)
        return true;
    // The end of the items, an offset a slot and the number of slots take 2 bytes each.
    if (maskOffset < 6)
        return false;
    slotCount = get16(row, maskOffset - 2);
    const std::size_t trailer = 4 + 2u * slotCount;
    if (trailer + 2 > maskOffset)
        return false;
    dataEnd = maskOffset - trailer;
    return get16(row, dataEnd) <= dataEnd;
}

void RowItems::set(std::size_t column, ByteView bytes)
{
    const std::size_t begin = mark();
    m_arena.insert(m_arena.end(), bytes.begin(), bytes.end());
    set(column, begin);
}

std::size_t encodedRowLength(const Definition& definition, const RowItems& items)
{
    std::size_t length = 2 + definition.fixedLength() + maskLength(definition.nextColumnId);
    if (definition.variableSlots > 0)
        length += 4 + 2u * definition.variableSlots;
    for (std::size_t i = 0; i < definition.columns.size(); ++i) {
        if (!definition.columns[i].isFixed() && !items.isNull(i))
            length += items.bytes(i).size();
    }
    return length;
}

Bytes encodeRow(const Definition& definition, const RowItems& items)
{
    Bytes row;
    row.reserve(encodedRowLength(definition, items));
    row.resize(2 + definition.fixedLength());
    put16(row, 0, definition.nextColumnId);
    putFixedItems(row, definition, items);
    if (definition.variableSlots > 0)
        appendVariableItems(row, definition, items);
    const std::size_t mask = row.size();
    row.resize(mask + maskLength(definition.nextColumnId));
    for (std::size_t i = 0; i < definition.columns.size(); ++i) {
        const std::uint16_t id = definition.columns[i].id;
        if (!items.isNull(i))
            row[mask + id / 8u] = static_cast<std::uint8_t>(row[mask + id / 8u] | 1u << (id % 8));
    }
    return row;
}

} // namespace jet
