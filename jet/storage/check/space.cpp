#include "jet/storage/check/space.h"

#include "jet/storage/datapage.h"
#include "jet/storage/maprow.h"

#include <algorithm>
#include <iterator>

namespace jet::check {
namespace {

constexpr PageNumber kGlobalMapPage = 1;
constexpr RowPointer kFreePages{kGlobalMapPage, 0};
constexpr RowPointer kSecondMap{kGlobalMapPage, 1};
constexpr std::uint8_t kByReference = 1;
constexpr PageNumber kPagesPerStep = 8;
constexpr std::uint16_t kUnknownSlotFlag = 0x2000; // neither offset nor state

const Owner kHeader{"", "заголовок файла", "заголовок файла"};
const Owner kMapPages{"", "карты размещения", "карты размещения"};
const Owner kGlobalMap{"", "общая карта размещения", "общая карта размещения"};
const Owner kSecondGlobalMap{"", "вторая общая карта размещения", "вторая общая карта размещения"};

} // namespace

Space::Space(Pager& pager, Findings& findings)
    : m_pager(pager)
    , m_findings(findings)
    , m_allocator(pager)
    , m_claims(pager.pageCount())
    , m_owners(1)
{
    claim(0, kHeader);
}

void Space::claim(PageNumber page, const Owner& owner)
{
    if (page >= m_claims.size()) {
        m_findings.harmful(owner.table, owner.part + ": страница за концом файла", page);
        return;
    }
    const auto [number, isNew] =
        m_ownerNumbers.emplace(owner.name, static_cast<std::uint32_t>(m_owners.size()));
    if (isNew)
        m_owners.push_back(owner);
    std::uint32_t& holder = m_claims[page];
    if (holder != 0 && holder != number->second) {
        m_findings.harmful(owner.table,
                           "страницей владеют двое: " + m_owners[holder].name + " и " + owner.name,
                           page);
    }
    if (holder == 0)
        holder = number->second;
}

void Space::claimMapRow(RowPointer map, const Owner& owner)
{
    const auto [row, isNew] = m_mapRows.emplace(map.packed(), owner.name);
    if (!isNew && row->second != owner.name) {
        m_findings.harmful(owner.table,
                           "одна карта размещения у двоих: " + row->second + " и " + owner.name,
                           map.page, map.row);
    }
    claim(map.page, kMapPages);
    dataPage(map.page, map.page == kGlobalMapPage ? 1 : 0, owner.table);
}

void Space::claimBitmaps(RowPointer map, const Owner& owner)
{
    const PageRef page = m_pager.read(map.page);
    const maprow::Place place = maprow::locate(page.bytes(), map);
    const ByteView row = page.bytes().subspan(place.offset, place.length);
    if (row[0] != kByReference) {
        if (get32(row, 1) % kPagesPerStep != 0) {
            m_findings.harmless(owner.table,
                                owner.part + ": карта размещения начинается с середины байта",
                                map.page, map.row);
        }
        return;
    }
    for (std::size_t at = 1; at + 4 <= row.size(); at += 4) {
        if (const PageNumber bitmap = get32(row, at); bitmap != 0)
            claim(bitmap, {owner.table, "битовая карта: " + owner.name, owner.part});
    }
}

std::vector<PageNumber> Space::membersOf(RowPointer map, const Owner& owner)
{
    std::vector<PageNumber> members;
    m_findings.attempt(
        owner.table,
        [&] {
            claimMapRow(map, owner);
            claimBitmaps(map, owner);
            members = UsageMap(m_pager, m_allocator, map).pages();
        },
        map.page, map.row);
    return members;
}

std::vector<PageNumber> Space::ownedPages(RowPointer owned, RowPointer freeSpace,
                                          const Owner& owner)
{
    std::vector<PageNumber> pages = membersOf(owned, owner);
    for (const PageNumber page : pages)
        claim(page, owner);
    if (freeSpace.isNull())
        return pages;
    const std::vector<PageNumber> withRoom =
        membersOf(freeSpace, {owner.table, owner.name + ", свободное место", owner.part});
    std::vector<PageNumber> strangers;
    std::set_difference(withRoom.begin(), withRoom.end(), pages.begin(), pages.end(),
                        std::back_inserter(strangers));
    for (const PageNumber page : strangers) {
        m_findings.harmful(owner.table, owner.part + ": в карте свободного места чужая страница",
                           page);
    }
    return pages;
}

PageRef Space::dataPage(PageNumber number, std::uint32_t owner, const std::string& table)
{
    PageRef page = m_pager.read(number);
    const ByteView bytes = page.bytes();
    if (number == 0 || page.type() != PageType::Data || bytes[1] != 1)
        throw Error(Fault::Damaged, "здесь должна быть страница данных", number);
    if (get32(bytes, datapage::kOwner) != owner)
        throw Error(Fault::Damaged, "страница данных принадлежит другой таблице", number);
    datapage::check(bytes, number);
    if (m_checked.insert(number).second)
        checkSlots(bytes, number, table);
    return page;
}

void Space::checkSlots(ByteView page, PageNumber number, const std::string& table)
{
    if (get16(page, datapage::kFree) != datapage::freeBytes(page))
        m_findings.harmful(table, "на странице неверно указано свободное место", number);
    for (std::size_t row = 0; row < datapage::rowCount(page); ++row) {
        const std::size_t at = datapage::kSlots + datapage::kSlotBytes * row;
        if ((get16(page, at) & kUnknownSlotFlag) != 0)
            m_findings.harmful(table, "неизвестная пометка строки", number, static_cast<int>(row));
    }
}

void Space::checkGlobalMaps()
{
    m_findings.attempt("", [&] {
        claimMapRow(kFreePages, kGlobalMap);
        claimBitmaps(kFreePages, kGlobalMap);
    });
    if (!membersOf(kSecondMap, kSecondGlobalMap).empty())
        m_findings.harmless("", "вторая общая карта размещения не пуста", kGlobalMapPage);
}

void Space::checkAllPages(bool leaksCount)
{
    std::size_t lost = 0;
    PageNumber firstLost = 0;
    for (PageNumber page = 1; page < m_claims.size(); ++page) {
        const bool free = m_allocator.isFree(page);
        const std::uint32_t holder = m_claims[page];
        if (holder != 0 && free) {
            m_findings.harmful(m_owners[holder].table,
                               m_owners[holder].part + ": занятая страница помечена свободной",
                               page);
        } else if (holder == 0 && !free) {
            firstLost = lost++ == 0 ? page : firstLost;
        }
    }
    if (lost > 0 && leaksCount) {
        m_findings.harmless(
            "", "страницы заняты, но никому не принадлежат: " + std::to_string(lost), firstLost);
    }
}

} // namespace jet::check
