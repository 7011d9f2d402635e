#include "jet/error.h"
#include "jet/storage/btree.h"

#include <algorithm>
#include <cstdint>
#include <utility>

namespace jet {
namespace {

// A page of the level being built, and the last leaf entry below it.
struct BuiltPage
{
    IndexPageImage image;
    Bytes last;
    PageNumber number = 0;
};
using Level = std::vector<BuiltPage>;

// Counts the bytes of the keys put on one page.
class Filling
{
public:
    explicit Filling(bool leaf)
        : m_childBytes(leaf ? 0 : kChildBytes)
    {}

    bool hasRoomFor(const IndexPageImage& image, const Bytes& key) const
    {
        const std::size_t whole = m_bytes + key.size() + m_childBytes;
        if (whole <= kIndexArea || image.keys.empty())
            return true;
        return whole - commonPrefix(image.keys.front(), key) * image.keys.size() <= kIndexArea;
    }
    void add(const Bytes& key) { m_bytes += key.size() + m_childBytes; }
    void startPage() { m_bytes = 0; }

private:
    std::size_t m_childBytes;
    std::size_t m_bytes = 0;
};

Bytes wholeEntry(const IndexEntry& entry)
{
    Bytes bytes = entry.key;
    for (const int shift : {24, 16, 8, 0})
        bytes.push_back(static_cast<std::uint8_t>(entry.row.packed() >> shift));
    if (bytes.size() > kLargestEntry)
        throw Error(Fault::Limit, "ключ индекса слишком длинный");
    return bytes;
}

Level fillLeaves(const std::vector<IndexEntry>& sorted)
{
    Level leaves(1);
    Filling filling(true);
    for (const IndexEntry& entry : sorted) {
        Bytes key = wholeEntry(entry);
        if (!leaves.back().last.empty() && leaves.back().last >= key)
            throw Error(Fault::Damaged, "записи индекса повторяются");
        if (!filling.hasRoomFor(leaves.back().image, key)) {
            leaves.emplace_back();
            filling.startPage();
        }
        filling.add(key);
        leaves.back().last = key;
        leaves.back().image.keys.push_back(std::move(key));
    }
    return leaves;
}

// A last node with a single child takes one from the node before.
void shareChildren(Level& nodes, const Level& children)
{
    if (nodes.size() < 2 || nodes.back().image.children.size() > 1)
        return;
    BuiltPage& before = nodes[nodes.size() - 2];
    if (before.image.children.size() < 3)
        return;
    IndexPageImage& last = nodes.back().image;
    last.children.insert(last.children.begin(), before.image.children.back());
    last.keys.push_back(children[children.size() - 2].last);
    before.image.children.pop_back();
    before.last = before.image.keys.back();
    before.image.keys.pop_back();
}

// The children must have their page numbers.
Level fillNodes(const Level& children)
{
    const auto level = static_cast<std::uint8_t>(children.front().image.level + 1);
    Level nodes(1);
    nodes.back().image.level = level;
    Filling filling(false);
    for (const BuiltPage& child : children) {
        BuiltPage& node = nodes.back();
        const bool isFirst = node.image.children.empty();
        if (isFirst || filling.hasRoomFor(node.image, node.last)) {
            if (!isFirst) {
                filling.add(node.last);
                node.image.keys.push_back(node.last);
            }
        } else {
            nodes.emplace_back();
            nodes.back().image.level = level;
            filling.startPage();
        }
        nodes.back().image.children.push_back(child.number);
        nodes.back().last = child.last;
    }
    shareChildren(nodes, children);
    return nodes;
}

void linkPages(Level& pages, std::size_t first, std::size_t count)
{
    for (std::size_t i = first; i + 1 < first + count; ++i) {
        pages[i].image.next = pages[i + 1].number;
        pages[i + 1].image.previous = pages[i].number;
    }
}

// Leaves form one chain; nodes are linked below one parent only.
void linkLevel(Level& pages, const Level& parents)
{
    if (pages.front().image.isLeaf()) {
        linkPages(pages, 0, pages.size());
        return;
    }
    std::size_t first = 0;
    for (const BuiltPage& parent : parents) {
        linkPages(pages, first, parent.image.children.size());
        first += parent.image.children.size();
    }
}

} // namespace

void BTree::build(const std::vector<IndexEntry>& sorted)
{
    Level level = fillLeaves(sorted);
    while (level.size() > 1) {
        for (BuiltPage& page : level)
            page.number = m_pages.allocate();
        Level parents = fillNodes(level);
        linkLevel(level, parents);
        for (const BuiltPage& page : level)
            m_pages.write(page.number, page.image);
        level = std::move(parents);
    }
    m_pages.write(m_pages.root(), level.front().image);
}

} // namespace jet
