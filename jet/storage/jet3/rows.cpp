#include "jet/storage/jet3/rows.h"

#include "jet/error.h"
#include "jet/storage/longvalue.h"
#include "jet/storage/valuecodec.h"

#include <algorithm>

namespace jet::jet3 {

namespace {

constexpr std::size_t kFixedArea = 1;   // behind the column count
constexpr std::size_t kChainHeader = 4; // pointer to the next part

} // namespace

RowReader::RowReader(const Pages& pages, const Definition& definition)
    : m_pages(pages)
    , m_definition(definition)
    , m_pageNumbers(pages.mapped(definition.ownedMap))
{}

void RowReader::throwDamaged() const
{
    throw Error(Fault::Damaged, "повреждена запись таблицы", m_pageNumber);
}

bool RowReader::openNextPage()
{
    while (m_nextPage < m_pageNumbers.size()) {
        m_pageNumber = m_pageNumbers[m_nextPage++];
        m_page = m_pages.read(m_pageNumber);
        m_rows.emplace(m_page, m_pageNumber);
        if (m_rows->owner() != m_definition.page)
            throwDamaged();
        m_nextRow = 0;
        if (m_rows->rowCount() > 0)
            return true;
    }
    return false;
}

bool RowReader::next()
{
    for (;;) {
        if ((!m_rows || m_nextRow >= m_rows->rowCount()) && !openNextPage())
            return false;
        const std::size_t row = m_nextRow++;
        if (!m_rows->isLive(row))
            continue;
        const ByteView bytes = m_rows->bytes(row);
        if (!m_rows->isMoved(row))
            m_row.assign(bytes.begin(), bytes.end());
        else if (bytes.size() >= 4)
            m_row = m_pages.row(RowPointer::unpack(get32(bytes, 0)));
        else
            throwDamaged();
        parse();
        return true;
    }
}

void RowReader::parse()
{
    m_slotBegin.clear();
    if (m_row.empty())
        throwDamaged();
    m_columnCount = m_row[0];
    const std::size_t maskBytes = (m_columnCount + 7) / 8;
    if (kFixedArea + maskBytes > m_row.size())
        throwDamaged();
    m_mask = m_row.size() - maskBytes;
    if (m_definition.variableSlots == 0 || m_mask == kFixedArea)
        return;
    const std::size_t slots = m_row[m_mask - 1];
    const std::size_t jumps = (m_row.size() - 1) / 256;
    if (kFixedArea + 1 + jumps + slots + 1 > m_mask)
        throwDamaged();
    const std::size_t lastJump = m_mask - 2;          // of jump 0; the others lie below
    const std::size_t firstOffset = lastJump - jumps; // of slot 0; the others lie below
    const std::size_t dataEnd = firstOffset - slots;
    std::size_t passed = 0;
    for (std::size_t slot = 0; slot <= slots; ++slot) {
        while (passed < jumps && m_row[lastJump - passed] <= slot)
            ++passed;
        const std::size_t begin = m_row[firstOffset - slot] + 256 * passed;
        if (begin > dataEnd || begin < (m_slotBegin.empty() ? kFixedArea : m_slotBegin.back()))
            throwDamaged();
        m_slotBegin.push_back(begin);
    }
}

ByteView RowReader::item(const ColumnDefinition& column) const
{
    const ByteView row = m_row;
    if (!column.isFixed()) {
        const std::size_t begin = m_slotBegin[column.slot];
        return row.subspan(begin, m_slotBegin[column.slot + 1u] - begin);
    }
    const std::size_t begin = kFixedArea + column.fixedOffset;
    const std::size_t end = m_slotBegin.empty() ? m_mask : m_slotBegin.front();
    if (begin + column.length > end)
        throwDamaged();
    return row.subspan(begin, column.length);
}

Value RowReader::value(std::size_t position) const
{
    const ColumnDefinition& column = m_definition.columns[position];
    const bool bit =
        column.id < m_columnCount && (m_row[m_mask + column.id / 8u] >> (column.id % 8u) & 1) != 0;
    if (column.isBoolean())
        return bit;
    if (!bit || (!column.isFixed() && column.slot + std::size_t{1} >= m_slotBegin.size()))
        return {};
    const ByteView bytes = item(column);
    if (column.isLongValue()) {
        Bytes data = longValue(bytes);
        if (column.type() == FieldType::LongBinary)
            return data;
        return m_pages.codePage().toUtf8(data);
    }
    if (column.type() == FieldType::Text)
        return m_pages.codePage().toUtf8(bytes);
    if (storedSize(column.type()) == 0)
        return Bytes(bytes.begin(), bytes.end());
    std::optional<Value> value = decodeItem(column, bytes);
    if (!value)
        throwDamaged();
    return *std::move(value);
}

Bytes RowReader::longValue(ByteView item) const
{
    const std::optional<longvalue::Header> header = longvalue::decodeHeader(item);
    if (!header || header->length > m_pages.fileBytes())
        throwDamaged();
    if (header->length == 0)
        return {};
    if (header->place == longvalue::Header::Place::Inline) {
        const ByteView data = item.subspan(longvalue::kHeaderBytes, header->length);
        return {data.begin(), data.end()};
    }
    Bytes data;
    if (header->place == longvalue::Header::Place::Chain) {
        appendChain(data, header->row, header->length);
    } else {
        data = m_pages.row(header->row);
        if (data.size() < header->length)
            throwDamaged();
        data.resize(header->length);
    }
    return data;
}

void RowReader::appendChain(Bytes& out, RowPointer pointer, std::size_t length) const
{
    while (out.size() < length) {
        if (pointer.isNull())
            throwDamaged();
        const Bytes part = m_pages.row(pointer);
        if (part.size() <= kChainHeader) // an empty one could lead round in a circle
            throwDamaged();
        const std::size_t wanted = std::min(part.size() - kChainHeader, length - out.size());
        const auto begin = part.begin() + kChainHeader;
        out.insert(out.end(), begin, begin + static_cast<std::ptrdiff_t>(wanted));
        pointer = RowPointer::unpack(get32(part, 0));
    }
}

} // namespace jet::jet3
