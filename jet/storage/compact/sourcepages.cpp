#include "jet/storage/compact/sourcepages.h"

#include "jet/error.h"
#include "jet/storage/datapage.h"

#include <algorithm>
#include <iterator>

namespace jet::compact {

namespace {

constexpr std::size_t kNextDefinitionPage = 4;

} // namespace

SourcePages::SourcePages(Pager& pager, Losses& losses)
    : m_pager(pager)
    , m_allocator(pager)
    , m_losses(losses)
{}

// Free pages keep what they held, so the map of free pages is asked. Where it cannot be
// read, a page counts as used.
void SourcePages::scanPage(PageNumber number, std::set<PageNumber>& continued)
{
    const PageRef page = m_pager.read(number);
    const bool isData = page.type() == PageType::Data;
    if (!isData && page.type() != PageType::Definition)
        return;
    try {
        if (m_allocator.isFree(number))
            return;
    } catch (const Error&) { // taken for used
    }
    if (isData) {
        m_byOwner[get32(page.bytes(), datapage::kOwner)].push_back(number);
        return;
    }
    m_definitions.push_back(number);
    continued.insert(get32(page.bytes(), kNextDefinitionPage));
}

void SourcePages::scan()
{
    if (m_scanned)
        return;
    m_scanned = true;
    std::set<PageNumber> continued;
    for (PageNumber number = 2; number < m_pager.pageCount(); ++number)
        m_losses.attempt(
            "", [&] { scanPage(number, continued); }, number);
    std::erase_if(m_definitions, [&](PageNumber page) { return continued.contains(page); });
}

const std::vector<PageNumber>& SourcePages::pagesNaming(PageNumber owner)
{
    scan();
    return m_byOwner[owner];
}

const std::vector<PageNumber>& SourcePages::definitions()
{
    scan();
    return m_definitions;
}

std::size_t SourcePages::liveRows(const std::vector<PageNumber>& pages) const
{
    std::size_t live = 0;
    for (const PageNumber number : pages) {
        try {
            const PageRef page = m_pager.read(number);
            for (std::size_t row = 0; row < datapage::rowCount(page.bytes()); ++row) {
                const auto state = datapage::slot(page.bytes(), number, row).state;
                live += state == 0 || state == datapage::kMoved ? 1 : 0;
            }
        } catch (const Error&) { // whoever reads the rows tells about it
        }
    }
    return live;
}

// The definition counts the rows too: where the map names fewer, it has lost some.
std::vector<PageNumber> SourcePages::dataPages(const Definition& definition,
                                               const std::string& table)
{
    std::vector<PageNumber> pages;
    const bool readable = m_losses.attempt(
        table, [&] { pages = UsageMap(m_pager, m_allocator, definition.ownedMap).pages(); },
        definition.ownedMap.page, definition.ownedMap.row);
    if (!m_losses.repairing() || (readable && liveRows(pages) >= definition.rowCount))
        return pages;
    std::vector<PageNumber> all;
    std::ranges::set_union(pages, pagesNaming(definition.page), std::back_inserter(all));
    return all;
}

} // namespace jet::compact
