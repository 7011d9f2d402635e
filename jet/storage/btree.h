#pragma once

#include "jet/storage/bytes.h"
#include "jet/storage/pager.h"
#include "jet/storage/treepages.h"
#include "jet/storage/types.h"
#include "jet/storage/usagemap.h"
#include "jet/value.h"

#include <memory>
#include <vector>

namespace jet {

struct TreePath;

struct IndexEntry
{
    Bytes key; // without the row pointer
    RowPointer row;
    friend bool operator==(const IndexEntry&, const IndexEntry&) = default;
};

// One real index: a B+-tree of (key, row pointer) on pages of its own. Entries are unique
// as a whole and ordered by their bytes, the row pointer included. The root never moves.
//
// Leaves form one chain from left to right. A node holds the last leaf entry below each of
// its children but the rightmost, so ascending inserts leave the nodes alone. Pages are
// split when full and freed when empty, never merged.
//
// Throws Error (Damaged) for pages that contradict each other; a change is then half done,
// so the caller rolls the statement back.
class BTree
{
public:
    BTree(Pager& pager, PageAllocator& allocator, PageNumber definitionPage, RowPointer pageMap,
          PageNumber root);

    // Makes `root` (allocated, zeroed) an empty leaf; its bit must be in the page map.
    static void initialiseRoot(Pager& pager, PageNumber definitionPage, PageNumber root);

    // Throws Error (Damaged) if the very entry is there already, Error (Limit) for a key of
    // more than 1804 bytes.
    void insert(ByteView key, RowPointer row);
    // Removes exactly this entry; false when it is not there.
    bool erase(ByteView key, RowPointer row);
    // True when any entry has this key.
    bool containsKey(ByteView key);
    // Fills an empty tree with the sorted entries (CREATE INDEX, compaction).
    void build(const std::vector<IndexEntry>& sorted);
    // Frees all pages but the root and the map row; the tree is empty then.
    void clear();

    // Reads entries in order. A change to the tree makes it stale.
    class Cursor
    {
    public:
        Cursor(Cursor&&) noexcept;
        Cursor& operator=(Cursor&&) noexcept;
        ~Cursor();

        bool valid() const { return m_valid; }
        const IndexEntry& entry() const { return m_entry; } // requires valid()
        void next();                                        // requires valid()

    private:
        friend class BTree;
        explicit Cursor(const TreePages& pages);
        void settle(); // on the entry at m_position, or the first one of a later leaf

        const TreePages* m_pages;
        PageRef m_pinned;
        std::unique_ptr<IndexPage> m_leaf;
        std::size_t m_position = 0;
        PageNumber m_leavesPassed = 0; // ends a chain that runs in circles
        IndexEntry m_entry;
        bool m_valid = false;
    };
    Cursor first();
    // The first entry whose bytes (key and row pointer) are not below `key`.
    Cursor seek(ByteView key);

private:
    PageRef descend(ByteView entry, IndexPage& view, TreePath& path) const;

    TreePages m_pages;
};

} // namespace jet
