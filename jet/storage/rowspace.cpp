#include "jet/storage/rowspace.h"

#include "jet/error.h"
#include "jet/storage/datapage.h"

#include <algorithm>
#include <cassert>

namespace jet {

namespace {

// Pages of the free-space map that one row is tried on before a new page is taken: bounds
// the time, and how many pages a single long row can drive out of the map.
constexpr int kTries = 4;
// Room that makes a page worth entering the free-space map again.
constexpr std::size_t kWorthOffering = 256;

} // namespace

RowSpace::RowSpace(Pager& pager, PageAllocator& allocator, std::uint32_t owner, RowPointer owned,
                   RowPointer freeSpace)
    : m_pager(pager)
    , m_allocator(allocator)
    , m_owner(owner)
    , m_owned(pager, allocator, owned)
    , m_freeSpace(pager, allocator, freeSpace)
{}

RowPointer RowSpace::add(ByteView row, std::uint16_t state)
{
    const auto found = pageWithRoom(row.size());
    const PageNumber number = found ? *found : newPage();
    if (!found && hasFreeMap())
        m_freeSpace.add(number);
    m_recent = number;
    return place(number, row, state);
}

RowPointer RowSpace::addAlone(ByteView row)
{
    return place(newPage(), row, 0);
}

void RowSpace::erase(RowPointer row)
{
    const ByteSpan page = modify(row.page);
    assert(row.row < datapage::rowCount(page));
    datapage::eraseRow(page, row.row);
    if (!datapage::isVacant(page))
        return offer(row.page, page);
    if (!m_owned.contains(row.page))
        return; // some other map may name it; a leak does less harm
    if (hasFreeMap())
        m_freeSpace.remove(row.page);
    m_owned.remove(row.page);
    m_allocator.release(row.page, PageType::FreedData);
    if (m_recent == row.page)
        m_recent = 0;
}

bool RowSpace::resize(RowPointer row, std::size_t length)
{
    const ByteView before = m_pager.read(row.page).bytes();
    const std::size_t present = datapage::slot(before, row.page, row.row).length;
    if (length == present)
        return true;
    const ByteSpan page = modify(row.page);
    if (length > present && length - present > datapage::freeBytes(page)) {
        datapage::squeeze(page);
        if (length - present > datapage::freeBytes(page))
            return false;
    }
    datapage::resizeRow(page, row.row, length);
    if (length < present)
        offer(row.page, page);
    return true;
}

ByteSpan RowSpace::bytes(RowPointer row)
{
    return datapage::rowBytes(modify(row.page), row.row);
}

void RowSpace::setState(RowPointer row, std::uint16_t state)
{
    datapage::setState(modify(row.page), row.row, state);
}

ByteSpan RowSpace::modify(PageNumber number)
{
    const PageRef page = m_pager.read(number);
    if (!datapage::belongsTo(page.bytes(), m_owner))
        throw Error(Fault::Damaged, "страница данных принадлежит другой таблице", number);
    datapage::check(page.bytes(), number);
    return m_pager.modify(number);
}

bool RowSpace::hasRoom(PageNumber number, std::size_t length)
{
    const PageRef page = m_pager.read(number);
    if (!datapage::belongsTo(page.bytes(), m_owner))
        return false;
    datapage::check(page.bytes(), number);
    return datapage::fits(page.bytes(), length);
}

std::optional<PageNumber> RowSpace::pageWithRoom(std::size_t length)
{
    if (m_recent != 0 && m_recent < m_pager.pageCount() && m_owned.contains(m_recent)
        && hasRoom(m_recent, length))
        return m_recent;
    if (!hasFreeMap())
        return std::nullopt;
    PageNumber from = 0;
    for (int i = 0; i < kTries; ++i) {
        const auto number = m_freeSpace.next(from);
        if (!number)
            break;
        // A page must never be listed without being owned.
        if (m_owned.contains(*number) && hasRoom(*number, length))
            return number;
        m_freeSpace.remove(*number);
        from = *number + 1;
    }
    return std::nullopt;
}

PageNumber RowSpace::newPage()
{
    const PageNumber number = m_allocator.allocate();
    datapage::initialise(m_pager.modify(number), m_owner);
    m_owned.add(number);
    return number;
}

RowPointer RowSpace::place(PageNumber number, ByteView row, std::uint16_t state)
{
    const ByteSpan page = modify(number);
    const std::uint8_t index = datapage::addRow(page, row.size(), state);
    std::copy(row.begin(), row.end(), datapage::rowBytes(page, index).begin());
    return {number, index};
}

void RowSpace::offer(PageNumber number, ByteView page)
{
    if (hasFreeMap() && datapage::freeBytes(page) >= kWorthOffering && m_owned.contains(number)
        && datapage::rowCount(page) < datapage::kMostRows && !m_freeSpace.contains(number))
        m_freeSpace.add(number);
}

} // namespace jet
