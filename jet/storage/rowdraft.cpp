#include "jet/storage/rowdraft.h"

#include "jet/error.h"
#include "jet/storage/valuecodec.h"

namespace jet {

RowDraft::RowDraft(const Definition& definition, const std::string& table)
    : m_definition(definition)
    , m_table(table)
    , m_items(definition.columns.size())
{}

void RowDraft::set(std::size_t column, const Value& value)
{
    const ColumnDefinition& definition = m_definition.columns[column];
    if (definition.isBoolean()) {
        if (value.toBool())
            m_items.set(column, ByteView{});
        return;
    }
    if (value.isNull())
        return;
    if (definition.isLongValue()) {
        m_longValues[column] = longvalue::encode(definition, value);
        return placeLongValue(column);
    }
    const std::size_t mark = m_items.mark();
    appendItem(m_items.arena(), definition, value);
    m_items.set(column, mark);
}

void RowDraft::keep(std::size_t column, const RowView& row)
{
    const ColumnDefinition& definition = m_definition.columns[column];
    const auto position = static_cast<int>(column);
    if (definition.isBoolean() || row.isNull(position)) {
        if (definition.isBoolean() && row.integer(position) != 0)
            m_items.set(column, ByteView{});
        return;
    }
    const ByteView item = row.storedItem(position);
    m_items.set(column, item);
    if (!definition.isLongValue())
        return;
    const auto header = longvalue::decodeHeader(item);
    if (!header)
        throw Error(Fault::Damaged, "повреждено длинное значение", m_table);
    if (header->place != longvalue::Header::Place::Inline)
        return;
    // An inline value may still have to leave a row that grows.
    const ByteView data = item.subspan(longvalue::kHeaderBytes, header->length);
    m_longValues[column] = {Bytes(data.begin(), data.end()), true};
    placeLongValue(column);
}

// The item of a value outside the row has its final length, but names no row yet.
void RowDraft::placeLongValue(std::size_t column)
{
    const longvalue::Data& data = m_longValues[column];
    m_items.set(column, data.mayBeInline ? longvalue::inlineItem(data.bytes)
                                         : Bytes(longvalue::kHeaderBytes));
}

void RowDraft::makeFit()
{
    while (encodedRowLength(m_definition, m_items) > kMaxRowLength) {
        auto longest = m_longValues.end();
        for (auto at = m_longValues.begin(); at != m_longValues.end(); ++at) {
            const bool candidate = at->second.mayBeInline && !at->second.bytes.empty();
            if (candidate
                && (longest == m_longValues.end()
                    || at->second.bytes.size() > longest->second.bytes.size()))
                longest = at;
        }
        if (longest == m_longValues.end())
            throw Error(Fault::Limit,
                        "запись слишком велика: вместе её поля занимают больше "
                            + std::to_string(kMaxRowLength) + " байт",
                        m_table);
        longest->second.mayBeInline = false;
        placeLongValue(longest->first);
    }
}

Bytes RowDraft::finish(std::map<std::size_t, RowSpace>& spaces)
{
    for (const auto& [column, data] : m_longValues) {
        if (data.mayBeInline)
            continue;
        const auto space = spaces.find(column);
        if (space == spaces.end())
            throw Error(Fault::Damaged, "у столбца нет карты страниц", m_table);
        m_items.set(column, longvalue::write(space->second, data.bytes));
    }
    return encodeRow(m_definition, m_items);
}

} // namespace jet
