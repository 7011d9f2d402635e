#pragma once

#include "jet/storage/bytes.h"
#include "jet/storage/definition.h"
#include "jet/value.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace jet {

// A row:
//
//   u16    number of columns when it was written ("next column id" of the table)
//          fixed area: every fixed column at 2 + its offset
//          variable items in slot order; padding allowed behind them
//   u16    end of the variable items, from the row's start
//   u16    offset of slot v-1 ... offset of slot 0
//   u16    v = number of slots in this row; these three only if the table has slots
//          null mask: bit (id mod 8) of byte (id div 8) is 1 for not NULL;
//          for a Boolean it is the value

// Longest row that is written; a page could hold 4080 bytes.
inline constexpr std::size_t kMaxRowLength = 4060;

// What reading rows needs of a definition.
struct RowShape
{
    std::uint16_t columnIds = 0; // a row has at most so many columns
    // Of the variable columns that exist the lowest id, or columnIds. Rows with fewer
    // columns hold no item of any.
    std::uint16_t firstVariableId = 0;

    static RowShape of(const Definition& definition);
};

// Where the parts of one row lie; made once a row, so that reading a column checks little.
struct RowParts
{
    ByteView bytes;
    std::uint16_t columnCount = 0;
    std::uint16_t slotCount = 0;
    std::size_t dataEnd = 0; // items lie below
    std::size_t maskOffset = 0;

    // False when the row contradicts itself or the shape.
    bool parse(ByteView row, const RowShape& shape);

    bool maskBit(const ColumnDefinition& column) const
    {
        return column.id < columnCount
               && (bytes[maskOffset + column.id / 8] >> (column.id % 8) & 1) != 0;
    }
    bool isNull(const ColumnDefinition& column) const
    {
        return !column.isBoolean()
               && (!maskBit(column) || (!column.isFixed() && column.slot >= slotCount));
    }
    // The stored bytes of a column that is not NULL; nothing when they lie outside the row.
    // Requires a column other than Boolean.
    std::optional<ByteView> item(const ColumnDefinition& column) const
    {
        return column.isFixed() ? fixedItem(column) : variableItem(column);
    }

private:
    std::optional<ByteView> fixedItem(const ColumnDefinition& column) const
    {
        const std::size_t begin = 2u + column.fixedOffset;
        if (begin + column.length > dataEnd)
            return std::nullopt;
        return bytes.subspan(begin, column.length);
    }
    std::optional<ByteView> variableItem(const ColumnDefinition& column) const
    {
        const std::size_t at = maskOffset - 4 - 2u * column.slot;
        const std::size_t begin = get16(bytes, at);
        const std::size_t end = get16(bytes, at - 2);
        if (begin > end || end > dataEnd)
            return std::nullopt;
        return bytes.subspan(begin, end - begin);
    }
};

// The stored bytes of a row to be written, one item a column of the definition.
class RowItems
{
public:
    explicit RowItems(std::size_t columns)
        : m_items(columns)
    {}

    // Items are set one after the other by appending to arena() from a mark on. Setting one
    // again replaces it.
    Bytes& arena() { return m_arena; }
    std::size_t mark() const { return m_arena.size(); }
    void set(std::size_t column, std::size_t mark)
    {
        m_items[column] = {mark, m_arena.size() - mark, false};
    }
    void set(std::size_t column, ByteView bytes);
    void setNull(std::size_t column) { m_items[column] = {}; }
    bool isNull(std::size_t column) const { return m_items[column].null; }
    ByteView bytes(std::size_t column) const
    {
        return ByteView(m_arena).subspan(m_items[column].begin, m_items[column].length);
    }

private:
    struct Item
    {
        std::size_t begin = 0, length = 0;
        bool null = true;
    };
    Bytes m_arena;
    std::vector<Item> m_items;
};

// Length of the row without writing it.
std::size_t encodedRowLength(const Definition& definition, const RowItems& items);
// A Boolean True is an empty item, False is NULL.
Bytes encodeRow(const Definition& definition, const RowItems& items);

} // namespace jet
