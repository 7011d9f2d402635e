#pragma once

#include "jet/storage/compact/losses.h"
#include "jet/storage/definition.h"
#include "jet/storage/pager.h"
#include "jet/storage/usagemap.h"

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace jet::compact {

// Tells which pages of the source belong to a table. In a repair also those that the
// table's map should name and does not: they are known by what they say about themselves.
class SourcePages
{
public:
    SourcePages(Pager& pager, Losses& losses);

    // Ascending.
    std::vector<PageNumber> dataPages(const Definition& definition, const std::string& table);
    // All data pages in use that name this owner. Reads the whole file once.
    const std::vector<PageNumber>& pagesNaming(PageNumber owner);
    // First pages of what could be definitions of tables. Reads the whole file once.
    const std::vector<PageNumber>& definitions();

private:
    void scan();
    void scanPage(PageNumber number, std::set<PageNumber>& continued);
    std::size_t liveRows(const std::vector<PageNumber>& pages) const;

    Pager& m_pager;
    PageAllocator m_allocator;
    Losses& m_losses;
    bool m_scanned = false;
    std::map<PageNumber, std::vector<PageNumber>> m_byOwner;
    std::vector<PageNumber> m_definitions;
};

} // namespace jet::compact
