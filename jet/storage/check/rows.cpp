#include "jet/storage/check/rows.h"

#include "jet/storage/datapage.h"
#include "jet/storage/textcodec.h"
#include "jet/storage/valuecodec.h"
#include "jet/text.h"

#include <algorithm>
#include <utility>

namespace jet::check {
namespace {

constexpr std::uint8_t kBinary = 0x09;
constexpr std::uint8_t kText = 0x0A;
constexpr std::uint8_t kMemo = 0x0C;
constexpr std::uint16_t kCompressedMark = 0xFEFF; // FF FE in front of a text

[[noreturn]] void damaged(const std::string& what)
{
    throw Error(Fault::Damaged, what);
}

// Of a text as it is stored, see textcodec.h: behind the mark a byte 00 switches between
// single bytes and pairs.
bool endsInsideCharacter(ByteView stored)
{
    if (stored.size() < 2 || get16(stored, 0) != kCompressedMark)
        return stored.size() % 2 != 0;
    bool pairs = false;
    std::size_t at = 2;
    while (at < stored.size()) {
        const bool isSwitch = stored[at] == 0;
        pairs = pairs != isSwitch;
        at += pairs && !isSwitch ? 2 : 1;
    }
    return at > stored.size();
}

} // namespace

Rows::Rows(Space& space, Findings& findings, const std::string& table, const Definition& definition,
           std::vector<PageNumber> pages)
    : m_space(space)
    , m_findings(findings)
    , m_table(table)
    , m_definition(definition)
    , m_pages(std::move(pages))
    , m_shape(RowShape::of(definition))
{
    openLongValues();
}

// End of the fixed area of a row that has the first `columns` columns.
std::size_t Rows::fixedEnd(std::uint16_t columns)
{
    const auto [place, isNew] = m_fixedEnds.emplace(columns, 2);
    std::size_t& end = place->second;
    for (const ColumnDefinition& column : m_definition.columns) {
        if (isNew && column.isFixed() && !column.isBoolean() && column.id < columns)
            end = std::max<std::size_t>(end, 2U + column.fixedOffset + column.length);
    }
    return end;
}

std::string Rows::columnName(std::size_t column) const
{
    return "поле «" + m_definition.columns[column].name + "»";
}

void Rows::openLongValues()
{
    for (std::size_t i = 0; i < m_definition.columns.size(); ++i) {
        const ColumnDefinition& column = m_definition.columns[i];
        if (!column.isLongValue())
            continue;
        const Owner owner{m_table, columnName(i) + " таблицы «" + m_table + "»", columnName(i)};
        std::vector<PageNumber> pages;
        if (const ColumnMaps* maps = m_definition.mapsOf(column.id))
            pages = m_space.ownOf(m_space.ownedPages(maps->owned, maps->freeSpace, owner), owner);
        m_longValues.try_emplace(i, m_space, m_findings, owner, std::move(pages));
    }
}

void Rows::run(const Visitor& visit)
{
    for (const PageNumber page : m_pages)
        m_findings.attempt(
            m_table, [&] { visitPage(page, visit); }, page);
    for (const RowPointer data : m_movedData) {
        if (!m_movedDataUsed.contains(data))
            m_findings.harmful(m_table, "на перенесённую строку ничто не указывает", data.page,
                               data.row);
    }
    for (auto& [column, values] : m_longValues)
        values.reportUnused();
}

void Rows::visitPage(PageNumber number, const Visitor& visit)
{
    const PageRef page = m_space.dataPage(number, m_definition.page, m_table);
    for (std::size_t i = 0; i < datapage::rowCount(page.bytes()); ++i) {
        const datapage::Slot slot = datapage::slot(page.bytes(), number, i);
        const RowPointer pointer{number, static_cast<std::uint8_t>(i)};
        if (slot.state == datapage::kMovedData)
            m_movedData.insert(pointer);
        if (slot.state == datapage::kMovedData || slot.state == datapage::kDeleted)
            continue;
        ++m_count;
        m_findings.attempt(
            m_table,
            [&] {
                ByteView bytes = page.bytes().subspan(slot.offset, slot.length);
                PageRef elsewhere;
                if (slot.state == datapage::kMoved)
                    elsewhere = movedData(bytes, bytes);
                visitRow(bytes, pointer, visit);
            },
            number, pointer.row);
    }
}

// Steps from the header of a moved row to its data, which the result pins.
PageRef Rows::movedData(ByteView header, ByteView& bytes)
{
    if (header.size() < 4)
        damaged("перенесённая строка без указателя");
    const RowPointer target = RowPointer::unpack(get32(header, 0));
    if (!std::binary_search(m_pages.begin(), m_pages.end(), target.page))
        damaged("строка перенесена на чужую страницу");
    PageRef page = m_space.dataPage(target.page, m_definition.page, m_table);
    if (target.row >= datapage::rowCount(page.bytes()))
        damaged("перенесённой строки нет на месте");
    const datapage::Slot slot = datapage::slot(page.bytes(), target.page, target.row);
    if (slot.state != datapage::kMovedData)
        damaged("перенесённой строки нет на месте");
    if (!m_movedDataUsed.insert(target).second)
        damaged("на перенесённую строку указывают двое");
    bytes = page.bytes().subspan(slot.offset, slot.length);
    return page;
}

void Rows::visitRow(ByteView bytes, RowPointer pointer, const Visitor& visit)
{
    RowParts parts;
    if (!parts.parse(bytes, m_shape))
        damaged("строка противоречит описанию таблицы");
    checkOffsets(parts);
    checkMask(parts, pointer);
    CheckedRow row{pointer, std::vector<Value>(m_definition.columns.size()),
                   std::vector<bool>(m_definition.columns.size())};
    for (std::size_t i = 0; i < row.values.size(); ++i) {
        row.unreadable[i] = !m_findings.attempt(
            m_table, [&] { checkItem(i, parts, row); }, pointer.page, pointer.row);
    }
    visit(row);
}

// Also those of dropped columns and NULL items must be in order. The fixed area is whole even
// where all of it is NULL.
void Rows::checkOffsets(const RowParts& parts)
{
    if (parts.slotCount > m_definition.variableSlots)
        damaged("строка противоречит описанию таблицы");
    std::size_t before = fixedEnd(parts.columnCount);
    const bool hasTrailer = parts.dataEnd < parts.maskOffset;
    for (std::size_t slot = 0; hasTrailer && slot <= parts.slotCount; ++slot) {
        const std::size_t begin = get16(parts.bytes, parts.maskOffset - 4 - 2 * slot);
        if (begin < before)
            damaged("значения в строке идут не по порядку");
        before = begin;
    }
    if (before > parts.dataEnd)
        damaged("строка короче, чем следует из описания таблицы");
}

void Rows::checkMask(const RowParts& parts, RowPointer pointer)
{
    const unsigned used = parts.columnCount % 8U;
    if (used != 0 && (parts.bytes.back() >> used) != 0)
        m_findings.harmless(m_table, "лишние пометки в строке", pointer.page, pointer.row);
}

void Rows::checkItem(std::size_t i, const RowParts& parts, CheckedRow& row)
{
    const ColumnDefinition& column = m_definition.columns[i];
    if (column.isBoolean()) {
        row.values[i] = parts.maskBit(column);
        return;
    }
    const bool hasSlot =
        !column.isFixed() && column.slot < parts.slotCount && column.id < parts.columnCount;
    if (parts.isNull(column)) {
        if (const auto item = hasSlot ? parts.item(column) : std::nullopt; item && !item->empty())
            m_findings.harmless(m_table, columnName(i) + ": у пустого значения есть байты",
                                row.pointer.page, row.pointer.row);
        return;
    }
    const auto item = parts.item(column);
    if (!item)
        damaged(columnName(i) + ": значение выходит за строку");
    row.values[i] = decode(i, *item);
    if ((column.flags1 & columnflag::kAutoNumber) != 0)
        m_highestCounter =
            std::max(m_highestCounter.value_or(INT64_MIN), row.values[i].toInteger());
}

Value Rows::decode(std::size_t i, ByteView item)
{
    const ColumnDefinition& column = m_definition.columns[i];
    if (column.isLongValue()) {
        Bytes data = m_longValues.at(i).read(item);
        if (column.storedType != kMemo)
            return data;
        if (endsInsideCharacter(data))
            damaged(columnName(i) + ": текст обрывается посреди знака");
        std::string text;
        appendStoredText(text, data);
        return text;
    }
    std::optional<Value> value = decodeItem(column, item);
    if (!value)
        damaged(columnName(i) + ": значение короче своего типа");
    if (column.storedType == kText) {
        if (endsInsideCharacter(item))
            damaged(columnName(i) + ": текст обрывается посреди знака");
        if (2 * utf16Length(value->as<std::string>() ? *value->as<std::string>() : "")
            > column.length)
            damaged(columnName(i) + ": текст длиннее поля");
    } else if (column.storedType == kBinary && item.size() > column.length) {
        damaged(columnName(i) + ": значение длиннее поля");
    } else if (const std::size_t size = storedSize(column.type());
               !column.isFixed() && size != 0 && item.size() != size) {
        damaged(columnName(i) + ": значение длиннее своего типа");
    }
    return std::move(*value);
}

} // namespace jet::check
