#include "jet/storage/compact/rowcopy.h"

#include "jet/error.h"
#include "jet/storage/longvalue.h"
#include "jet/storage/textcodec.h"
#include "jet/storage/valuecodec.h"
#include "jet/text.h"

namespace jet::compact {

namespace {

constexpr std::uint8_t kMemo = 0x0C;
constexpr std::uint8_t kText = 0x0A;
constexpr std::uint8_t kBinary = 0x09;
constexpr std::uint16_t kCompressed = 0xFEFF; // first two bytes of a compressed text

bool isCompressed(ByteView text)
{
    return text.size() >= 2 && get16(text, 0) == kCompressed;
}

// As much of a stored text as a column of so many bytes may hold, not compressed.
Bytes cutText(ByteView stored, std::size_t length)
{
    std::string text;
    appendStoredText(text, stored);
    Bytes utf16 = utf16FromUtf8(text);
    if (utf16.size() > length)
        utf16.resize(length);
    return utf16;
}

} // namespace

RowCopy::RowCopy(const Definition& from, const Definition& to, const std::string& table)
    : m_from(from)
    , m_to(to)
    , m_table(table)
    , m_items(to.columns.size())
{}

std::string RowCopy::nameOf(std::size_t column) const
{
    return "поле «" + m_to.columns[column].name + "»: ";
}

void RowCopy::read(const StoredRow& row, Pager& source, Losses& losses)
{
    for (std::size_t i = 0; i < m_from.columns.size(); ++i) {
        const ColumnDefinition& column = m_from.columns[i];
        if (column.isBoolean()) {
            if (row.parts.maskBit(column))
                m_items.set(i, ByteView{});
            continue;
        }
        if (row.parts.isNull(column))
            continue;
        if (const auto item = row.parts.item(column))
            readItem(i, *item, row, source, losses);
        else
            losses.add(m_table, nameOf(i) + "значение выходит за строку", row.pointer.page,
                       row.pointer.row);
    }
}

void RowCopy::readItem(std::size_t i, ByteView item, const StoredRow& row, Pager& source,
                       Losses& losses)
{
    const ColumnDefinition& column = m_from.columns[i];
    if (column.isLongValue())
        return readLongValue(i, item, row, source, losses);
    if (losses.repairing())
        return repairItem(i, item, row, losses);
    m_items.set(i, item);
}

// Other programs would not accept items that contradict their column.
void RowCopy::repairItem(std::size_t i, ByteView item, const StoredRow& row, Losses& losses)
{
    const ColumnDefinition& column = m_from.columns[i];
    const auto lose = [&](const char* what) {
        losses.add(m_table, nameOf(i) + what, row.pointer.page, row.pointer.row);
    };
    const std::size_t size = storedSize(column.type());
    if (item.size() < size)
        return lose("значение короче своего типа, оно стало пустым");
    if (column.storedType == kText && !column.isFixed()) {
        const bool halved = !isCompressed(item) && item.size() % 2 != 0;
        std::string text;
        appendStoredText(text, item);
        if (halved || 2 * utf16Length(text) > column.length) {
            lose("текст не помещается в поле, он обрезан");
            return m_items.set(i, cutText(item, column.length));
        }
    } else if (column.storedType == kBinary && item.size() > column.length) {
        lose("значение не помещается в поле, оно обрезано");
        item = item.first(column.length);
    } else if (!column.isFixed() && size != 0) {
        item = item.first(size);
    }
    m_items.set(i, item);
}

void RowCopy::readLongValue(std::size_t i, ByteView item, const StoredRow& row, Pager& source,
                            Losses& losses)
{
    const auto header = longvalue::decodeHeader(item);
    if (!header) {
        losses.add(m_table, nameOf(i) + "повреждено длинное значение, оно стало пустым",
                   row.pointer.page, row.pointer.row);
        return;
    }
    if (header->place == longvalue::Header::Place::Inline || header->length == 0) {
        m_items.set(
            i, longvalue::inlineItem(header->length == 0
                                         ? ByteView{}
                                         : item.subspan(longvalue::kHeaderBytes, header->length)));
        return;
    }
    Bytes data;
    const bool whole = losses.attempt(
        m_table, [&] { longvalue::read(source, item, data); }, row.pointer.page, row.pointer.row);
    if (!whole) {
        cutLongValue(i, data);
        losses.add(m_table,
                   nameOf(i)
                       + (data.empty() ? std::string("длинное значение стало пустым")
                                       : "длинное значение обрезано: осталось байт "
                                             + std::to_string(data.size()) + " из "
                                             + std::to_string(header->length)),
                   row.pointer.page, row.pointer.row);
        if (data.empty())
            return;
    }
    m_items.set(i, Bytes(longvalue::kHeaderBytes));
    m_longValues[i] = std::move(data);
}

// What is left of a text must be a text.
void RowCopy::cutLongValue(std::size_t column, Bytes& data) const
{
    if (m_from.columns[column].storedType == kMemo && !isCompressed(data) && data.size() % 2 != 0)
        data.pop_back();
}

Value RowCopy::value(int column) const
{
    const auto i = static_cast<std::size_t>(column);
    const ColumnDefinition& definition = m_to.columns[i];
    if (definition.isBoolean())
        return !m_items.isNull(i);
    if (m_items.isNull(i))
        return {};
    ByteView item = m_items.bytes(i);
    if (!definition.isLongValue()) {
        if (auto decoded = decodeItem(definition, item))
            return *std::move(decoded);
        throw Error(Fault::Damaged, nameOf(i) + "значение короче своего типа", m_table);
    }
    const auto stored = m_longValues.find(i);
    item = stored == m_longValues.end() ? item.subspan(longvalue::kHeaderBytes)
                                        : ByteView(stored->second);
    if (definition.storedType != kMemo)
        return Bytes(item.begin(), item.end());
    std::string text;
    appendStoredText(text, item);
    return text;
}

void RowCopy::set(int column, const Value& value)
{
    const auto i = static_cast<std::size_t>(column);
    m_longValues.erase(i);
    if (value.isNull())
        return m_items.setNull(i);
    const std::size_t mark = m_items.mark();
    appendItem(m_items.arena(), m_to.columns[i], value);
    m_items.set(i, mark);
}

Bytes RowCopy::write(std::map<std::size_t, RowSpace>& longValues)
{
    for (const auto& [column, data] : m_longValues)
        m_items.set(column, longvalue::write(longValues.at(column), data));
    return encodeRow(m_to, m_items);
}

} // namespace jet::compact
