#include "jet/storage/check/space.h"

#include "jet/storage/datapage.h"

#include <algorithm>

namespace jet::check {
namespace {

constexpr std::uint16_t kUnknownSlotFlag = 0x2000; // neither offset nor state

const Owner kHeader{"", "заголовок файла", "заголовок файла"};

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

bool Space::claim(PageNumber page, const Owner& owner)
{
    if (page >= m_claims.size()) {
        m_findings.harmful(owner.table, owner.part + ": страница за концом файла", page);
        return false;
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
    return holder == number->second;
}

std::vector<PageNumber> Space::ownOf(std::vector<PageNumber> pages, const Owner& owner) const
{
    const auto number = m_ownerNumbers.find(owner.name);
    std::erase_if(pages, [&](PageNumber page) {
        return number == m_ownerNumbers.end() || m_claims[page] != number->second;
    });
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
    checkSlots(bytes, number, table);
    return page;
}

// A slot that points elsewhere throws every time, the rest is told once.
void Space::checkSlots(ByteView page, PageNumber number, const std::string& table)
{
    const std::size_t rows = datapage::rowCount(page);
    if (rows > datapage::kMostRows)
        throw Error(Fault::Damaged, "на странице слишком много строк", number);
    std::size_t end = kPageSize;
    for (std::size_t row = 0; row < rows; ++row) {
        const std::size_t at = datapage::kSlots + datapage::kSlotBytes * row;
        const std::size_t offset = get16(page, at) & datapage::kOffsetMask;
        if (offset > end || offset < datapage::kSlots + datapage::kSlotBytes * rows)
            throw RowDamage("строка лежит не на своём месте страницы",
                            {number, static_cast<std::uint8_t>(row)});
        end = offset;
    }
    if (!m_checked.insert(number).second)
        return;
    if (get16(page, datapage::kFree) != datapage::freeBytes(page))
        m_findings.harmful(table, "на странице неверно указано свободное место", number);
    for (std::size_t row = 0; row < rows; ++row) {
        const std::size_t at = datapage::kSlots + datapage::kSlotBytes * row;
        if ((get16(page, at) & kUnknownSlotFlag) != 0)
            m_findings.harmful(table, "неизвестная пометка строки", number, static_cast<int>(row));
    }
}

void Space::checkAllPages(bool leaksCount)
{
    std::size_t lost = 0;
    PageNumber firstLost = 0;
    for (PageNumber page = 0; page < m_claims.size(); ++page) {
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
    checkReservedPages();
}

} // namespace jet::check
