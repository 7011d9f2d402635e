#pragma once

#include "jet/storage/bytes.h"
#include "jet/storage/definition.h"
#include "jet/storage/types.h"
#include "jet/value.h"

#include <cstdint>
#include <optional>
#include <set>
#include <span>
#include <string>
#include <utility>
#include <vector>

namespace jet {

// What a column's values are compared by: equal values have equal keys. Keys of numbers,
// dates and Booleans are exact; those of text (by the General order), GUIDs and bytes are
// hashes, so that a match must be verified.
struct EqualityKey
{
    static bool isExact(const ColumnDefinition& column);
    // The key under which a value of whatever type matches rows of this column; nothing when
    // it can match none (NULL, 5.5 in a Long column, a text that is no number ...).
    static std::optional<std::uint64_t> of(const ColumnDefinition& column, const Value& value);
    static std::uint64_t ofInteger(std::int64_t value);
    static std::uint64_t ofNumber(double value);
    // Key of several columns together; never exact.
    static std::uint64_t joined(std::uint64_t first, std::uint64_t next);
    static std::uint64_t ofText(const std::string& text);
};

// The rows of one table by the key of one column, in memory: arrays sorted by key and row,
// and what has changed since they were sorted. About 18 bytes a row.
class EqualityIndex
{
public:
    void reserve(std::size_t rows) { m_entries.reserve(rows); }
    // Takes a row while building; finish() ends that.
    void append(std::uint64_t key, RowPointer row) { m_entries.push_back({key, row}); }
    void finish();

    void insert(std::uint64_t key, RowPointer row);
    void erase(std::uint64_t key, RowPointer row);

    // Rows under a key, ascending; valid until the next call.
    std::span<const RowPointer> find(std::uint64_t key);
    std::size_t memoryBytes() const;

private:
    struct Entry
    {
        std::uint64_t key;
        RowPointer row;
        // NOLINTNEXTLINE(modernize-use-nullptr): a false alarm on defaulted comparisons
        friend auto operator<=>(const Entry&, const Entry&) = default;
    };
    std::pair<std::size_t, std::size_t> sortedRange(std::uint64_t key) const;
    void sortBucket(std::size_t from, std::size_t to);
    void sortIn();
    void mergeWhenLarge();

    std::vector<Entry> m_entries;      // only while building or merging
    std::vector<std::uint64_t> m_keys; // ascending
    std::vector<RowPointer> m_rows;    // parallel, ascending within a key
    // First position of each value of the keys' top bits, and the number of keys.
    std::vector<std::uint32_t> m_buckets = {0, 0, 0};
    int m_shift = 63;
    std::set<Entry> m_added, m_removed; // against the arrays
    std::vector<RowPointer> m_result;
};

} // namespace jet
