#pragma once

#include "jet/storage/check/findings.h"
#include "jet/storage/pager.h"
#include "jet/storage/types.h"
#include "jet/storage/usagemap.h"

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace jet::check {

// Someone who may own pages, as the findings name him.
struct Owner
{
    std::string table; // for Finding::table
    std::string name;  // unique: "индекс «I» таблицы «A»"
    std::string part;  // beside the table: "индекс «I»"
};

// Notes who owns each page while the rest of the check runs, reads page maps, and tells at
// last which pages are owned and free at once, or neither.
class Space
{
public:
    Space(Pager& pager, Findings& findings);

    Pager& pager() const { return m_pager; }

    // A second owner and a page beyond the file are findings. True when the page is the
    // owner's now.
    bool claim(PageNumber page, const Owner& owner);
    // Members of a map inside the file, ascending, none of them claimed by this; its row and
    // bitmap pages are. What is damaged is a finding and gives no members.
    std::vector<PageNumber> membersOf(RowPointer map, const Owner& owner);
    // The members of a map of owned pages, each claimed. Those of `freeSpace`, unless it is
    // null, must be among them.
    std::vector<PageNumber> ownedPages(RowPointer owned, RowPointer freeSpace, const Owner& owner);

    // Of the pages those that were claimed by the owner before anyone else.
    std::vector<PageNumber> ownOf(std::vector<PageNumber> pages, const Owner& owner) const;

    // A data page of `owner` (page of a definition, "LVAL", 0 or 1 for map pages) with all
    // slots in order. Throws Error (Damaged).
    PageRef dataPage(PageNumber number, std::uint32_t owner, const std::string& table);

    void checkGlobalMaps();
    // Requires that everything that exists has claimed its pages.
    void checkAllPages(bool leaksCount);

private:
    struct MapSlice
    {
        std::uint64_t first = 0; // page of the first bit
        Bytes bits;
    };

    void claimMapRow(RowPointer map, const Owner& owner);
    std::vector<MapSlice> slicesOf(RowPointer map, const Owner& owner);
    MapSlice inlineSlice(ByteView row, RowPointer map, const Owner& owner);
    std::vector<MapSlice> bitmapSlices(ByteView row, RowPointer map, const Owner& owner);
    void checkSlots(ByteView page, PageNumber number, const std::string& table);
    void checkReservedPages();

    Pager& m_pager;
    Findings& m_findings;
    PageAllocator m_allocator;
    std::vector<std::uint32_t> m_claims; // by page: position in m_owners, 0 = nobody
    std::vector<Owner> m_owners;
    std::map<std::string, std::uint32_t> m_ownerNumbers;
    std::map<std::uint32_t, std::string> m_mapRows; // packed pointer -> owner's name
    std::set<PageNumber> m_checked;                 // data pages
};

} // namespace jet::check
