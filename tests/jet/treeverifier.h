#pragma once

#include "jet/storage/pager.h"
#include "jet/storage/usagemap.h"

#include <string>
#include <vector>

namespace jet::test {

// Reads an index tree page by page, without the engine's own index code, and notes every
// rule of the format that it breaks.
class TreeVerifier
{
public:
    TreeVerifier(Pager& pager, PageNumber owner, PageNumber root);

    // Whole leaf entries in order.
    const std::vector<Bytes>& entries() const { return m_entries; }
    const std::vector<PageNumber>& pages() const { return m_pages; } // all of the tree
    int height() const { return m_height; }
    std::size_t leafCount() const { return m_leaves.size(); }
    std::size_t compressedPages() const { return m_compressed; }
    std::size_t nodesWithOneChild() const { return m_lonelyNodes; }
    // "" when the tree is sound.
    const std::string& problems() const { return m_problems; }

private:
    struct Page;
    Page read(PageNumber number);
    Bytes walk(PageNumber number, int level); // gives the last entry below
    void checkChain();
    void complain(const std::string& what, PageNumber page);

    Pager& m_pager;
    PageNumber m_owner;
    int m_height = 0;
    std::size_t m_compressed = 0;
    std::size_t m_lonelyNodes = 0;
    std::vector<Bytes> m_entries;
    std::vector<PageNumber> m_pages;
    std::vector<PageNumber> m_leaves;
    std::string m_problems;
};

} // namespace jet::test
