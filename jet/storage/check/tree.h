#pragma once

#include "jet/storage/check/space.h"
#include "jet/storage/indexpage.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <set>
#include <vector>

namespace jet::check {

// Walks the tree of one real index from its root and checks how its pages hang together.
class Tree
{
public:
    struct Entry
    {
        Bytes bytes; // key and row pointer
        PageNumber leaf = 0;
    };

    Tree(Space& space, Findings& findings, Owner owner, PageNumber definitionPage);

    void walk(PageNumber root);

    const std::vector<Entry>& entries() const { return m_entries; } // in the order of the leaves
    const std::set<PageNumber>& pages() const { return m_pages; }
    bool isComplete() const { return m_complete; } // false when some page could not be read

private:
    struct Visit
    {
        PageNumber page = 0;
        std::size_t depth = 0;
        std::uint8_t level = 0; // as the page says
        bool leaf = false;
        PageNumber previous = 0, next = 0;
    };

    // Gives the last leaf entry at or below the page, nothing if there is none.
    std::optional<Bytes> visit(PageNumber number, std::size_t depth);
    std::optional<Bytes> visitLeaf(const IndexPage& page, ByteView bytes, std::size_t depth);
    std::optional<Bytes> visitChildren(const IndexPageImage& node, PageNumber number,
                                       std::size_t depth);
    void checkSiblings(const IndexPageImage& node);
    void checkLevels();
    void checkChain();
    void harmful(const char* what, PageNumber page);
    void harmless(const char* what, PageNumber page);

    Space& m_space;
    Findings& m_findings;
    Owner m_owner;
    PageNumber m_definitionPage;
    std::vector<Entry> m_entries;
    std::set<PageNumber> m_pages;
    std::vector<Visit> m_visits; // from left to right, nodes before what is below them
    bool m_complete = true;
};

} // namespace jet::check
