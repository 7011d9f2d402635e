#include "tests/jet/treeverifier.h"

#include <algorithm>

namespace jet::test {

struct TreeVerifier::Page
{
    bool leaf = true;
    int level = 0;
    PageNumber previous = 0, next = 0, tail = 0;
    std::vector<Bytes> entries; // whole, nodes without child
    std::vector<PageNumber> children;
};

TreeVerifier::TreeVerifier(Pager& pager, PageNumber owner, PageNumber root)
    : m_pager(pager)
    , m_owner(owner)
{
    m_height = pager.read(root).bytes()[26];
    const Page top = read(root);
    if (top.previous != 0 || top.next != 0)
        complain("root has siblings", root);
    walk(root, m_height);
    checkChain();
    for (std::size_t i = 0; i + 1 < m_entries.size(); ++i) {
        if (m_entries[i] >= m_entries[i + 1])
            complain("entries out of order at " + std::to_string(i), root);
    }
    std::sort(m_pages.begin(), m_pages.end());
    if (std::adjacent_find(m_pages.begin(), m_pages.end()) != m_pages.end())
        complain("a page stands in the tree twice", root);
}

TreeVerifier::Page TreeVerifier::read(PageNumber number)
{
    const PageRef ref = m_pager.read(number);
    const ByteView b = ref.bytes();
    Page page;
    page.leaf = b[0] == 4;
    page.level = b[26];
    page.previous = get32(b, 12);
    page.next = get32(b, 16);
    page.tail = get32(b, 20);
    if ((b[0] != 3 && b[0] != 4) || b[1] != 1 || get32(b, 4) != m_owner || get32(b, 8) != 0)
        complain("header", number);
    const std::size_t prefix = get16(b, 24);
    const std::size_t childBytes = page.leaf ? 0 : 4;
    std::size_t start = 0;
    Bytes shared;
    for (std::size_t end = 0; end < 453 * 8; ++end) {
        if ((b[27 + end / 8] >> (end % 8) & 1) == 0)
            continue;
        if (end > 3616 || end <= start) {
            complain("mask", number);
            break;
        }
        Bytes entry = shared;
        entry.insert(entry.end(), b.begin() + static_cast<std::ptrdiff_t>(480 + start),
                     b.begin() + static_cast<std::ptrdiff_t>(480 + end));
        if (entry.size() < 5 + childBytes || prefix > entry.size() - childBytes) {
            complain("entry of " + std::to_string(entry.size()) + " bytes", number);
            break;
        }
        if (start == 0)
            shared.assign(entry.begin(), entry.begin() + static_cast<std::ptrdiff_t>(prefix));
        if (!page.leaf) {
            const Bytes tail(entry.end() - 4, entry.end());
            page.children.push_back(
                static_cast<PageNumber>(tail[0] << 24 | tail[1] << 16 | tail[2] << 8 | tail[3]));
            entry.resize(entry.size() - 4);
        }
        page.entries.push_back(entry);
        start = end;
    }
    if (get16(b, 2) != 3616 - start)
        complain("free field", number);
    m_compressed += prefix > 0 ? 1 : 0;
    return page;
}

Bytes TreeVerifier::walk(PageNumber number, int level)
{
    m_pages.push_back(number);
    Page page = read(number);
    if (page.level != level || page.leaf != (level == 0)) {
        complain("level", number);
        return {};
    }
    if (page.leaf) {
        if (page.tail != 0 || (page.entries.empty() && level != m_height))
            complain("empty leaf or leaf with a tail", number);
        m_leaves.push_back(number);
        m_entries.insert(m_entries.end(), page.entries.begin(), page.entries.end());
        return page.entries.empty() ? Bytes() : page.entries.back();
    }
    if (page.tail == 0)
        complain("no tail", number);
    page.children.push_back(page.tail);
    m_lonelyNodes += page.children.size() == 1 ? 1 : 0;
    Bytes last;
    for (std::size_t i = 0; i < page.children.size(); ++i) {
        last = walk(page.children[i], level - 1);
        if (i < page.entries.size() && page.entries[i] != last)
            complain("entry is not the last below its child", number);
    }
    for (std::size_t i = 0; level > 1 && i < page.children.size(); ++i) {
        const Page child = read(page.children[i]);
        const PageNumber before = i == 0 ? 0 : page.children[i - 1];
        const PageNumber after = i + 1 == page.children.size() ? 0 : page.children[i + 1];
        if (child.previous != before || child.next != after)
            complain("links of sibling nodes", page.children[i]);
    }
    return last;
}

void TreeVerifier::checkChain()
{
    for (std::size_t i = 0; i < m_leaves.size(); ++i) {
        const Page leaf = read(m_leaves[i]);
        const PageNumber before = i == 0 ? 0 : m_leaves[i - 1];
        const PageNumber after = i + 1 == m_leaves.size() ? 0 : m_leaves[i + 1];
        if (leaf.previous != before || leaf.next != after)
            complain("links of leaves", m_leaves[i]);
    }
}

void TreeVerifier::complain(const std::string& what, PageNumber page)
{
    if (m_problems.size() < 2000)
        m_problems += "page " + std::to_string(page) + ": " + what + "\n";
}

} // namespace jet::test
