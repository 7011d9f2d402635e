#pragma once

#include "jet/storage/btree.h"
#include "jet/storage/definition.h"
#include "jet/storage/pager.h"
#include "jet/storage/usagemap.h"
#include "jet/value.h"

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace jet {

// What one row's change does to one real index.
struct IndexChange
{
    std::size_t index = 0;
    std::optional<Bytes> oldKey; // entry to remove
    bool oldKeyUnknown = false;  // there is one, but its key cannot be computed
    std::optional<Bytes> newKey; // entry to add
    bool isNewKey = false;       // no row had newKey so far
};

// The real indexes of one table: makes keys, checks the rules of unique and required ones,
// and writes entries.
class IndexKeeper
{
public:
    // `definition` must outlive the keeper.
    IndexKeeper(Pager& pager, PageAllocator& allocator, const Definition& definition,
                const std::string& table);

    std::size_t count() const { return m_indexes.size(); }
    BTree& tree(std::size_t index) { return m_indexes[index].tree; }
    // Columns of an index as positions in the definition.
    const std::vector<std::size_t>& columns(std::size_t index) const
    {
        return m_indexes[index].positions;
    }

    // The changes that replacing `before` by `after` needs; an empty span stands for no row.
    // Nothing is written. Throws Error: Duplicate, NullValue, Limit, and Unsupported when a
    // new key cannot be computed; entries whose key cannot be are still removed.
    std::vector<IndexChange> plan(std::span<const Value> before, std::span<const Value> after);
    // Writes planned changes and the statistics in the definition page.
    void apply(const std::vector<IndexChange>& changes, RowPointer row, Definition& definition);

    // The key of a row, nothing when the index has no entry for it. Throws Error (NullValue,
    // Unsupported).
    std::optional<Bytes> entryKey(std::size_t index, std::span<const Value> row) const;
    // Throws Error (NullValue) when the index forbids a NULL of the row.
    void requireValues(std::size_t index, std::span<const Value> row) const;
    // True when no two entries may have this row's key.
    bool mustBeUnique(std::size_t index, std::span<const Value> row) const;
    // Key bytes of values for the leading columns of the index.
    Bytes prefixKey(std::size_t index, std::span<const Value> values) const;
    // True for the key of rows that are NULL in all columns.
    bool isNullKey(std::size_t index, ByteView key) const;
    [[noreturn]] void throwDuplicate(std::size_t index) const;
    void storeStatistics(std::size_t index, const RealIndex& statistics);

private:
    struct Index
    {
        BTree tree;
        std::vector<std::size_t> positions;
        std::vector<const ColumnDefinition*> columns;
        std::vector<char> descending; // bool, but contiguous
        bool unique, required, ignoreNulls;
        std::string name; // of a logical index that uses it
    };
    bool allNull(const Index& index, std::span<const Value> row) const;
    void requireRoom(std::size_t index, ByteView key) const;
    void findOldKey(IndexChange& change, std::span<const Value> before) const;
    void eraseEntry(std::size_t index, const std::optional<Bytes>& key, RowPointer row);

    Pager& m_pager;
    PageNumber m_definitionPage;
    std::string m_table;
    std::vector<Index> m_indexes;
};

} // namespace jet
