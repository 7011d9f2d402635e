#include "jet/storage/btree.h"

#include "jet/error.h"
#include "jet/storage/treechange.h"

#include <algorithm>
#include <cstdint>
#include <utility>

namespace jet {
namespace {

// Key and row pointer as they stand in a leaf.
Bytes leafEntry(ByteView key, RowPointer row)
{
    Bytes entry;
    entry.reserve(key.size() + kRowPointerBytes);
    entry.assign(key.begin(), key.end());
    const std::uint32_t packed = row.packed();
    for (const int shift : {24, 16, 8, 0})
        entry.push_back(static_cast<std::uint8_t>(packed >> shift));
    return entry;
}

void checkLength(std::size_t entryBytes)
{
    if (entryBytes > kLargestEntry)
        throw Error(Fault::Limit, "ключ индекса слишком длинный");
}

[[noreturn]] void throwCircle(PageNumber page)
{
    throw Error(Fault::Damaged, "страницы индекса ссылаются друг на друга по кругу", page);
}

} // namespace

BTree::BTree(Pager& pager, PageAllocator& allocator, PageNumber definitionPage, RowPointer pageMap,
             PageNumber root)
    : m_pages(pager, allocator, definitionPage, pageMap, root)
{}

void BTree::initialiseRoot(Pager& pager, PageNumber definitionPage, PageNumber root)
{
    writeIndexPage(pager.modify(root), definitionPage, {});
}

// The leaf that holds `entry` or has its place, and the way to it.
PageRef BTree::descend(ByteView entry, IndexPage& view, TreePath& path) const
{
    path.length = 0;
    PageRef page = m_pages.load(m_pages.root(), view);
    while (!view.isLeaf()) {
        if (path.length == kMostIndexLevels)
            throwCircle(page.number());
        const std::size_t separators = view.separators();
        const std::size_t child = view.lowerBound(entry, separators);
        path.steps[path.length++] = {page.number(), child, child == separators};
        page = m_pages.load(view.child(child), view);
    }
    return page;
}

void BTree::insert(ByteView key, RowPointer row)
{
    const Bytes entry = leafEntry(key, row);
    checkLength(entry.size());
    IndexPage view;
    TreePath path;
    const PageRef leaf = descend(entry, view, path);
    const std::size_t at = view.lowerBound(entry, view.count());
    const bool appended = at == view.count();
    if (!appended && view.equals(at, entry))
        throw Error(Fault::Damaged, "запись уже есть в индексе", leaf.number());
    TreeChange change(m_pages, path, leaf.number());
    if (!insertInPlace(m_pages.modify(leaf.number()), view, at, entry)) {
        IndexPageImage image = takeApart(view, 0);
        image.keys.insert(image.keys.begin() + static_cast<std::ptrdiff_t>(at), entry);
        change.storeLeaf(image, appended);
    } else if (appended && !path.isRightmost()) {
        change.lastChanged(entry);
    }
}

bool BTree::erase(ByteView key, RowPointer row)
{
    const Bytes entry = leafEntry(key, row);
    IndexPage view;
    TreePath path;
    const PageRef leaf = descend(entry, view, path);
    const std::size_t at = view.lowerBound(entry, view.count());
    if (at == view.count() || !view.equals(at, entry))
        return false;
    TreeChange change(m_pages, path, leaf.number());
    if (view.count() == 1) {
        change.removeLeaf();
        return true;
    }
    const bool wasLast = at + 1 == view.count();
    Bytes last;
    if (wasLast)
        view.key(at - 1, last);
    if (!eraseInPlace(m_pages.modify(leaf.number()), view, at)) {
        IndexPageImage image = takeApart(view, 0);
        image.keys.erase(image.keys.begin() + static_cast<std::ptrdiff_t>(at));
        change.storeLeaf(image, false);
    }
    if (wasLast)
        change.lastChanged(last);
    return true;
}

bool BTree::containsKey(ByteView key)
{
    for (Cursor cursor = seek(key); cursor.valid(); cursor.next()) {
        const Bytes& found = cursor.entry().key;
        if (found.size() == key.size())
            return std::equal(found.begin(), found.end(), key.begin());
        // Keys of one index never begin with one another, but a damaged index may hold some.
        if (found.size() < key.size() || !std::equal(key.begin(), key.end(), found.begin()))
            return false;
    }
    return false;
}

void BTree::clear()
{
    m_pages.releaseAll();
}

BTree::Cursor::Cursor(const TreePages& pages)
    : m_pages(&pages)
    , m_leaf(std::make_unique_for_overwrite<IndexPage>())
{}

BTree::Cursor::Cursor(Cursor&&) noexcept = default;
BTree::Cursor& BTree::Cursor::operator=(Cursor&&) noexcept = default;
BTree::Cursor::~Cursor() = default;

BTree::Cursor BTree::first()
{
    return seek({});
}

BTree::Cursor BTree::seek(ByteView key)
{
    Cursor cursor(m_pages);
    TreePath path;
    cursor.m_pinned = descend(key, *cursor.m_leaf, path);
    cursor.m_position = cursor.m_leaf->lowerBound(key, cursor.m_leaf->count());
    cursor.settle();
    return cursor;
}

void BTree::Cursor::next()
{
    ++m_position;
    settle();
}

void BTree::Cursor::settle()
{
    while (m_position >= m_leaf->count()) {
        const PageNumber following = m_leaf->next();
        m_valid = following != 0;
        if (!m_valid)
            return;
        if (++m_leavesPassed > m_pages->pageCount())
            throwCircle(following);
        m_pinned = m_pages->load(following, *m_leaf);
        if (!m_leaf->isLeaf())
            throw Error(Fault::Damaged, "за листом индекса следует не лист", following);
        m_position = 0;
    }
    Bytes& key = m_entry.key;
    m_leaf->key(m_position, key);
    const std::size_t end = key.size() - kRowPointerBytes;
    std::uint32_t packed = 0;
    for (std::size_t i = end; i < key.size(); ++i)
        packed = packed << 8 | key[i];
    m_entry.row = RowPointer::unpack(packed);
    key.resize(end);
    m_valid = true;
}

} // namespace jet
