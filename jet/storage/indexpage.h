#pragma once

#include "jet/storage/bytes.h"
#include "jet/storage/types.h"
#include "jet/value.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace jet {

// One page of an index tree.
//
//   offset  bytes  meaning
//        0      2  03 01 node, 04 01 leaf
//        2      2  free bytes: 3616 less the bytes of entries
//        4      4  definition page of the table
//        8      4  zero
//       12      4  previous page on this level, 0 = none
//       16      4  next page on this level, 0 = none
//       20      4  nodes: child of everything above the last entry, "tail"; leaves: 0
//       24      2  P, length of the shared prefix
//       26      1  level: 0 leaf, 1 node above leaves, and so on
//       27    453  mask: bit j is set when an entry ends at offset j of the entries
//      480   3616  entries, back to back, ascending
//
// A leaf entry is the key and the row pointer as u24 page and u8 row, big-endian; a node
// entry is the last leaf entry below a child, followed by the child's number, u32
// big-endian. The first entry is stored whole; the others leave out its first P bytes.
inline constexpr std::size_t kIndexFree = 2;
inline constexpr std::size_t kIndexOwner = 4;
inline constexpr std::size_t kIndexPrevious = 12;
inline constexpr std::size_t kIndexNext = 16;
inline constexpr std::size_t kIndexTail = 20;
inline constexpr std::size_t kIndexPrefix = 24;
inline constexpr std::size_t kIndexLevel = 26;
inline constexpr std::size_t kIndexMask = 27;
inline constexpr std::size_t kIndexMaskBytes = 453;
inline constexpr std::size_t kIndexEntries = 480;
inline constexpr std::size_t kIndexArea = kPageSize - kIndexEntries;

inline constexpr std::size_t kRowPointerBytes = 4;
inline constexpr std::size_t kChildBytes = 4;
inline constexpr std::size_t kLargestEntry = kIndexArea / 2; // of a leaf, row pointer included

// Throws Error (Damaged) unless the bytes begin like an index page of that table.
void checkIndexPage(ByteView page, PageNumber number, PageNumber owner);

// Reads the entries of a page in place. The bytes must outlive it.
class IndexPage
{
public:
    IndexPage() = default;
    // Finds the entries. Throws Error (Damaged) unless all of them lie in the page and are
    // long enough, so that the other methods need no checks.
    void load(ByteView page, PageNumber number, PageNumber owner);

    PageNumber number() const { return m_number; }
    bool isLeaf() const;
    PageNumber previous() const { return get32(m_page, kIndexPrevious); }
    PageNumber next() const { return get32(m_page, kIndexNext); }
    std::size_t prefix() const { return m_prefix; }
    std::size_t count() const { return m_count; }
    std::size_t used() const { return m_count == 0 ? 0 : m_ends[m_count - 1]; }
    // Where the i-th entry begins in the area; requires i <= count().
    std::size_t start(std::size_t i) const { return i == 0 ? 0 : m_ends[i - 1]; }
    std::size_t end(std::size_t i) const { return m_ends[i]; }
    ByteView stored(std::size_t i) const;
    // The whole entry, without the child number on nodes.
    void key(std::size_t i, Bytes& out) const;
    bool equals(std::size_t i, ByteView key) const;

    // The first of the first `limit` entries that is not below `key`; limit if there is none.
    std::size_t lowerBound(ByteView key, std::size_t limit) const;

    // Nodes: children but for the rightmost one. A node without tail, as other programs may
    // write it, has its last entry's child in the tail's place.
    std::size_t separators() const;
    PageNumber child(std::size_t i) const; // requires i <= separators()

private:
    ByteView suffix(std::size_t i) const; // what follows the shared prefix, child excluded

    ByteView m_page;
    PageNumber m_number = 0;
    std::size_t m_count = 0;
    std::size_t m_prefix = 0;
    std::size_t m_childBytes = 0;
    std::array<std::uint16_t, kIndexArea> m_ends;
};

// Changes a leaf without decoding the entries that stay. `page` is the loaded page's bytes;
// the view must be loaded again afterwards. False when it must be rewritten instead: there
// is no room, the entry lacks the shared prefix, or the first entry of a compressed page
// changes.
bool insertInPlace(ByteSpan page, const IndexPage& view, std::size_t at, ByteView entry);
bool eraseInPlace(ByteSpan page, const IndexPage& view, std::size_t at);

// A page taken apart. Children stand beside the keys; a node has one child more than keys,
// the last one being the tail. A leaf has no children.
struct IndexPageImage
{
    std::uint8_t level = 0;
    PageNumber previous = 0;
    PageNumber next = 0;
    std::vector<Bytes> keys; // row pointers included
    std::vector<PageNumber> children;

    bool isLeaf() const { return level == 0; }
};

// Requires a loaded page. `level` is the page's height in its tree; other programs leave the
// level byte of nodes 0.
IndexPageImage takeApart(const IndexPage& page, std::uint8_t level);

// Bytes that runs of keys take on one page, shortened by a prefix if they do not fit whole.
// The keys must outlive it.
class PageSizes
{
public:
    PageSizes(std::span<const Bytes> keys, bool leaf);
    // Of the keys from `first` to before `last`.
    std::size_t bytes(std::size_t first, std::size_t last) const;
    bool fit(std::size_t first, std::size_t last) const { return bytes(first, last) <= kIndexArea; }

private:
    std::span<const Bytes> m_keys;
    std::vector<std::size_t> m_upTo; // bytes of the first i entries, whole
};

// Length of the common beginning; all keys that sort between two share it.
std::size_t commonPrefix(ByteView a, ByteView b);

// Requires that the keys fit.
void writeIndexPage(ByteSpan page, PageNumber owner, const IndexPageImage& image);

} // namespace jet
