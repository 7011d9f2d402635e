#pragma once

#include "jet/storage/bytes.h"
#include "jet/storage/pager.h"
#include "jet/storage/types.h"
#include "jet/storage/usagemap.h"
#include "jet/value.h"

#include <optional>
#include <vector>

namespace jet {

struct IndexEntry
{
    Bytes key; // without the row pointer
    RowPointer row;
    friend bool operator==(const IndexEntry&, const IndexEntry&) = default;
};

// One real index: a B+-tree of (key, row pointer) on pages of its own. Entries are unique
// as a whole and ordered by their bytes, the row pointer included. The root never moves.
class BTree
{
public:
    BTree(Pager& pager, PageAllocator& allocator, PageNumber definitionPage, RowPointer pageMap,
          PageNumber root);

    // Makes `root` (allocated, zeroed) an empty leaf; its bit must be in the page map.
    static void initialiseRoot(Pager& pager, PageNumber definitionPage, PageNumber root);

    // Throws Error (Damaged) if the very entry is there already.
    void insert(ByteView key, RowPointer row);
    // Removes exactly this entry; false when it is not there.
    bool erase(ByteView key, RowPointer row);
    // True when any entry has this key.
    bool containsKey(ByteView key);
    // Replaces an empty tree's content by the sorted entries (CREATE INDEX, compaction).
    void build(const std::vector<IndexEntry>& sorted);
    // Frees all pages but the root and the map row.
    void clear();

    // Reads entries in order.
    class Cursor
    {
    public:
        bool valid() const { return m_valid; }
        const IndexEntry& entry() const { return m_entry; }
        void next();

    private:
        friend class BTree;
        BTree* m_tree = nullptr;
        PageNumber m_page = 0;
        std::vector<IndexEntry> m_leaf; // the present leaf, decoded
        std::size_t m_position = 0;
        IndexEntry m_entry;
        bool m_valid = false;
    };
    Cursor first();
    // The first entry whose bytes (key and row pointer) are not below `key`.
    Cursor seek(ByteView key);

private:
    friend class Cursor;
    Pager& m_pager;
    PageAllocator& m_allocator;
    PageNumber m_definitionPage;
    RowPointer m_pageMap;
    PageNumber m_root;
};

} // namespace jet
