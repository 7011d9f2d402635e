#pragma once

#include "jet/storage/treepages.h"

#include <array>
#include <cstddef>

namespace jet {

inline constexpr std::size_t kMostIndexLevels = 16;

// The nodes that a search passed, from the root to the parent of a leaf.
struct TreePath
{
    struct Step
    {
        PageNumber page = 0;
        std::size_t child = 0; // position of the child taken
        bool rightmost = false;
    };
    std::array<Step, kMostIndexLevels> steps{};
    std::size_t length = 0;

    bool isRightmost() const;
};

// Changes that reach beyond one leaf: splits, freed pages and what they do to the nodes
// above. Made for one leaf and the path to it, and good for one change.
//
// A node's entry repeats the last leaf entry below its child, the rightmost child has none.
// So a split adds an entry to the parent, and a leaf that loses its last entry changes the
// entry of the lowest node on the path that does not have the leaf below its rightmost child.
class TreeChange
{
public:
    TreeChange(TreePages& pages, const TreePath& path, PageNumber leaf);

    // Writes the leaf, over two pages if it has become too large. `appended`: the last entry
    // is new; a leaf at the right end then stays full and the new one starts with that entry.
    void storeLeaf(const IndexPageImage& image, bool appended);
    // The leaf stays, but its last entry is another one now.
    void lastChanged(const Bytes& last);
    // The leaf has no entries any more.
    void removeLeaf();

private:
    // Position on the path: depth 0 is the root; depth m_path.length is the leaf.
    PageNumber pageAt(std::size_t depth) const;
    std::uint8_t levelAt(std::size_t depth) const;
    IndexPageImage nodeAt(std::size_t depth) const;

    void store(std::size_t depth, const IndexPageImage& image, bool appended);
    void split(std::size_t depth, const IndexPageImage& image, bool appended);
    void splitRoot(IndexPageImage& left, IndexPageImage& right, const Bytes& separator);
    void addChild(std::size_t depth, const Bytes& separator, PageNumber right, bool appended);
    void removeChild(std::size_t depth);
    void removePage(std::size_t depth);
    void replaceSeparatorAbove(std::size_t depth, const Bytes& last);
    void collapseRoot();

    TreePages& m_pages;
    const TreePath& m_path;
    PageNumber m_leaf;
};

} // namespace jet
