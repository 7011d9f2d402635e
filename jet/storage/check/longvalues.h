#pragma once

#include "jet/storage/check/space.h"
#include "jet/value.h"

#include <cstdint>
#include <set>
#include <vector>

namespace jet::check {

// The long-value pages of one Memo or LongBinary column: reads values and notes which rows
// of the pages are in use.
class LongValues
{
public:
    // `pages` ascending.
    LongValues(Space& space, Findings& findings, Owner owner, std::vector<PageNumber> pages);

    // Stored bytes of the value that a row's item names. Throws Error (Damaged).
    Bytes read(ByteView item);
    // Rows that no value named.
    void reportUnused();

private:
    struct Piece
    {
        PageRef page;
        ByteView bytes;
    };
    Piece use(RowPointer row);
    void readChain(RowPointer first, std::uint32_t tag, std::size_t length, Bytes& out);

    Space& m_space;
    Findings& m_findings;
    Owner m_owner;
    std::vector<PageNumber> m_pages;
    std::set<RowPointer> m_used;
};

} // namespace jet::check
