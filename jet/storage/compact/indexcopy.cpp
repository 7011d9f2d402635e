#include "jet/storage/compact/indexcopy.h"

#include "jet/error.h"
#include "jet/storage/compact/freshdefinition.h"

#include <algorithm>
#include <compare>

namespace jet::compact {

namespace {

bool inOrder(const IndexEntry& a, const IndexEntry& b)
{
    const auto order = std::lexicographical_compare_three_way(a.key.begin(), a.key.end(),
                                                              b.key.begin(), b.key.end());
    return std::is_eq(order) ? a.row < b.row : std::is_lt(order);
}

} // namespace

IndexCopy::IndexCopy(Pager& target, PageAllocator& allocator, Definition& fresh,
                     const std::string& table, Losses& losses)
    : m_allocator(allocator)
    , m_fresh(fresh)
    , m_table(table)
    , m_losses(losses)
    , m_keeper(target, allocator, fresh, table)
    , m_keys(m_keeper.count())
    , m_row(fresh.columns.size())
{}

std::string IndexCopy::nameOf(std::size_t index) const
{
    std::string name;
    for (const LogicalIndex& logical : m_fresh.logicalIndexes) {
        if (logical.real == index && (name.empty() || name.front() == '.'))
            name = logical.name;
    }
    return "индекс «" + name + "»";
}

void IndexCopy::add(const RowCopy& row, RowPointer oldPlace, RowPointer newPlace)
{
    if (m_keys.empty())
        return;
    m_moves.emplace_back(oldPlace, newPlace);
    for (std::size_t i = 0; i < m_keys.size(); ++i) {
        for (const std::size_t column : m_keeper.columns(i))
            m_row[column] = row.value(static_cast<int>(column));
    }
    for (std::size_t i = 0; i < m_keys.size(); ++i)
        addKey(i, newPlace);
}

void IndexCopy::addKey(std::size_t i, RowPointer place)
{
    Keys& keys = m_keys[i];
    try {
        m_keeper.requireValues(i, m_row);
    } catch (const Error&) {
        keys.hasNulls = true;
    }
    try {
        auto key = m_keeper.entryKey(i, m_row);
        if (!key)
            return;
        ++keys.rows;
        keys.unique = keys.unique || m_keeper.mustBeUnique(i, m_row);
        if (!keys.borrowed)
            keys.entries.push_back({*std::move(key), place});
    } catch (const Error& error) {
        if (error.fault() != Fault::Unsupported)
            throw;
        ++keys.rows;
        keys.borrowed = true;
        keys.entries.clear();
    }
}

std::optional<RowPointer> IndexCopy::newPlaceOf(RowPointer oldPlace) const
{
    const auto found =
        std::ranges::lower_bound(m_moves, oldPlace, {}, &std::pair<RowPointer, RowPointer>::first);
    if (found == m_moves.end() || found->first != oldPlace)
        return std::nullopt;
    return found->second;
}

// False when the source's index does not name all rows.
bool IndexCopy::borrow(std::size_t i, BTree& old)
{
    Keys& keys = m_keys[i];
    std::ranges::sort(m_moves);
    m_losses.attempt(m_table, [&] {
        for (BTree::Cursor cursor = old.first(); cursor.valid(); cursor.next()) {
            if (const auto place = newPlaceOf(cursor.entry().row))
                keys.entries.push_back({cursor.entry().key, *place});
        }
    });
    std::vector<RowPointer> named;
    for (const IndexEntry& entry : keys.entries)
        named.push_back(entry.row);
    std::ranges::sort(named);
    return named.size() == keys.rows && std::ranges::adjacent_find(named) == named.end();
}

void IndexCopy::build(Pager& source, PageAllocator& sourceAllocator, const Definition& old)
{
    for (std::size_t i = m_keys.size(); i-- > 0;) {
        const RealIndex& real = old.realIndexes[i];
        BTree tree(source, sourceAllocator, old.page, real.pageMap, real.root);
        if (m_keys[i].borrowed && !borrow(i, tree)) {
            m_losses.add(m_table,
                         nameOf(i)
                             + " построить нельзя: порядок его текстов неизвестен, а сам он "
                               "повреждён; он удалён");
            remove(i);
            continue;
        }
        buildOne(i);
    }
}

void IndexCopy::buildOne(std::size_t i)
{
    std::vector<IndexEntry>& entries = m_keys[i].entries;
    if (!std::ranges::is_sorted(entries, inOrder))
        std::ranges::sort(entries, inOrder);
    RealIndex& real = m_fresh.realIndexes[i];
    real.entriesAtBuild = static_cast<std::uint32_t>(entries.size());
    real.distinctKeys = entries.empty() ? 0 : 1;
    bool repeats = false;
    for (std::size_t k = 1; k < entries.size(); ++k) {
        if (entries[k].key != entries[k - 1].key)
            ++real.distinctKeys;
        else if (m_keys[i].unique && !m_keeper.isNullKey(i, entries[k].key))
            repeats = true;
    }
    if (repeats)
        allow(i, indexflag::kUnique, " больше не запрещает повторений: есть повторяющиеся строки");
    if (m_keys[i].hasNulls)
        allow(i, indexflag::kRequired, " больше не запрещает пустых значений: они есть");
    m_keeper.tree(i).build(entries);
    entries = {};
}

void IndexCopy::allow(std::size_t i, std::uint8_t forbidden, const char* what)
{
    m_losses.add(m_table, nameOf(i) + what);
    RealIndex& real = m_fresh.realIndexes[i];
    for (LogicalIndex& logical : m_fresh.logicalIndexes) {
        if (logical.real != i || logical.type != kPrimaryKey)
            continue;
        logical.type = 0;
        real.flags |= indexflag::kUnique | indexflag::kRequired;
    }
    real.flags &= static_cast<std::uint8_t>(~forbidden);
}

void IndexCopy::remove(std::size_t i)
{
    m_allocator.release(m_fresh.realIndexes[i].root, PageType::IndexLeaf);
    m_allocator.deleteMap(m_fresh.realIndexes[i].pageMap);
    removeIndex(m_fresh, i);
}

} // namespace jet::compact
