#include "jet/storage/compact/rowreader.h"

#include "jet/error.h"
#include "jet/storage/datapage.h"

#include <algorithm>

namespace jet::compact {

namespace {

[[noreturn]] void damaged(const char* what, PageNumber page)
{
    throw Error(Fault::Damaged, what, page);
}

} // namespace

RowReader::RowReader(Pager& pager, const Definition& definition, const std::string& table,
                     Losses& losses)
    : m_pager(pager)
    , m_definition(definition)
    , m_table(table)
    , m_losses(losses)
    , m_shape(RowShape::of(definition))
{
    for (unsigned columns = 0; columns <= m_shape.columnIds; ++columns)
        m_fixedEnds.push_back(fixedEnd(static_cast<std::uint16_t>(columns)));
}

// End of the fixed area of a row that has the first `columns` columns.
std::size_t RowReader::fixedEnd(std::uint16_t columns) const
{
    std::size_t end = 2;
    for (const ColumnDefinition& column : m_definition.columns) {
        if (column.isFixed() && !column.isBoolean() && column.id < columns)
            end = std::max<std::size_t>(end, 2U + column.fixedOffset + column.length);
    }
    return end;
}

std::vector<RowPointer> RowReader::rows(std::span<const PageNumber> pages)
{
    std::vector<RowPointer> rows;
    for (const PageNumber page : pages)
        m_losses.attempt(
            m_table, [&] { addRowsOf(page, rows); }, page);
    addLostMovedRows(rows);
    return rows;
}

void RowReader::addRowsOf(PageNumber number, std::vector<RowPointer>& rows)
{
    const PageRef page = m_pager.read(number);
    if (!datapage::belongsTo(page.bytes(), m_definition.page)) {
        // Freed pages may still stand in a map; so may pages never written, all zero.
        const bool unused =
            page.type() == PageType::FreedData || page.type() == PageType::FreedDefinition
            || std::ranges::all_of(page.bytes(), [](std::uint8_t b) { return b == 0; });
        if (!unused || m_losses.repairing())
            m_losses.add(m_table, "на странице нет данных таблицы", number);
        return;
    }
    const std::size_t count = datapage::rowCount(page.bytes());
    if (count > datapage::kMostRows)
        damaged("недопустимое число строк на странице данных", number);
    for (std::size_t row = 0; row < count; ++row) {
        const RowPointer pointer{number, static_cast<std::uint8_t>(row)};
        m_losses.attempt(
            m_table,
            [&] {
                const datapage::Slot slot = datapage::slot(page.bytes(), number, row);
                if (slot.state == datapage::kDeleted)
                    return;
                if (slot.state == datapage::kMovedData) {
                    m_movedData.insert(pointer);
                    return;
                }
                const StoredRow stored = at(pointer);
                if (slot.state == datapage::kMoved) {
                    const auto target = RowPointer::unpack(
                        get32(page.bytes().subspan(slot.offset, slot.length), 0));
                    if (!m_movedDataUsed.insert(target).second)
                        damaged("на перенесённую строку указывают двое", number);
                }
                rows.push_back(pointer);
            },
            number, pointer.row);
    }
}

// Rows whose place is lost, but whose data were moved away before.
void RowReader::addLostMovedRows(std::vector<RowPointer>& rows)
{
    for (const RowPointer data : m_movedData) {
        if (m_movedDataUsed.contains(data))
            continue;
        m_losses.add(m_table, "на перенесённую строку ничто не указывало, она возвращена в таблицу",
                     data.page, data.row);
        const bool readable = m_losses.attempt(
            m_table, [&] { at(data); }, data.page, data.row);
        if (readable)
            rows.push_back(data);
    }
}

ByteView RowReader::dataOfMoved(ByteView header, PageRef& page, RowPointer& target) const
{
    if (header.size() < 4)
        damaged("перенесённая строка без указателя", page.number());
    target = RowPointer::unpack(get32(header, 0));
    PageRef elsewhere = m_pager.read(target.page);
    const ByteView bytes = elsewhere.bytes();
    if (!datapage::belongsTo(bytes, m_definition.page) || target.row >= datapage::rowCount(bytes))
        damaged("перенесённой строки нет на месте", page.number());
    const datapage::Slot slot = datapage::slot(bytes, target.page, target.row);
    if (slot.state != datapage::kMovedData)
        damaged("перенесённой строки нет на месте", page.number());
    page = std::move(elsewhere);
    return bytes.subspan(slot.offset, slot.length);
}

StoredRow RowReader::at(RowPointer pointer) const
{
    StoredRow row{pointer, m_pager.read(pointer.page), {}};
    const ByteView page = row.page.bytes();
    const datapage::Slot slot = datapage::slot(page, pointer.page, pointer.row);
    ByteView bytes = page.subspan(slot.offset, slot.length);
    RowPointer target;
    if (slot.state == datapage::kMoved)
        bytes = dataOfMoved(bytes, row.page, target);
    if (!row.parts.parse(bytes, m_shape) || row.parts.columnCount == 0 || !isInOrder(row.parts))
        damaged("строка противоречит описанию таблицы", pointer.page);
    return row;
}

bool RowReader::isInOrder(const RowParts& parts) const
{
    std::size_t before = m_fixedEnds[std::min<std::size_t>(parts.columnCount, m_shape.columnIds)];
    for (std::size_t slot = 0; slot < parts.slotCount; ++slot) {
        const std::size_t begin = get16(parts.bytes, parts.maskOffset - 4 - 2 * slot);
        const std::size_t end = get16(parts.bytes, parts.maskOffset - 6 - 2 * slot);
        if (begin < before || end < begin || end > parts.dataEnd)
            return false;
        before = begin;
    }
    return true;
}

} // namespace jet::compact
