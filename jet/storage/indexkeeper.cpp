#include "jet/storage/indexkeeper.h"

#include "jet/error.h"
#include "jet/storage/indexkey.h"
#include "jet/storage/indexpage.h"

#include <algorithm>

namespace jet {

namespace {

constexpr std::size_t kStatisticsBytes = 12;

std::string inQuotes(const std::string& name)
{
    return "«" + name + "»";
}

// The name people know an index by. Names with a dot in front are hidden partners of
// relationships on an index that has a name of its own, as a rule.
std::string nameOf(const Definition& definition, std::size_t real)
{
    std::string name;
    for (const LogicalIndex& index : definition.logicalIndexes) {
        if (index.real == real && (name.empty() || name.front() == '.'))
            name = index.name;
    }
    return name;
}

bool isPrimary(const Definition& definition, std::size_t real)
{
    return std::ranges::any_of(definition.logicalIndexes, [real](const LogicalIndex& index) {
        return index.real == real && index.type == kPrimaryKey;
    });
}

} // namespace

IndexKeeper::IndexKeeper(Pager& pager, PageAllocator& allocator, const Definition& definition,
                         const std::string& table)
    : m_pager(pager)
    , m_definitionPage(definition.page)
    , m_table(table)
{
    for (std::size_t i = 0; i < definition.realIndexes.size(); ++i) {
        const RealIndex& real = definition.realIndexes[i];
        const bool primary = isPrimary(definition, i);
        Index index{BTree(pager, allocator, definition.page, real.pageMap, real.root),
                    {},
                    {},
                    {},
                    primary || (real.flags & indexflag::kUnique) != 0,
                    primary || (real.flags & indexflag::kRequired) != 0,
                    (real.flags & indexflag::kIgnoreNulls) != 0,
                    nameOf(definition, i)};
        for (const RealIndexColumn& column : real.columns) {
            const auto position =
                static_cast<std::size_t>(definition.columnPositionById(column.columnId));
            index.positions.push_back(position);
            index.columns.push_back(&definition.columns[position]);
            index.descending.push_back(column.descending ? 1 : 0);
        }
        m_indexes.push_back(std::move(index));
    }
}

bool IndexKeeper::allNull(const Index& index, std::span<const Value> row) const
{
    return std::ranges::all_of(index.positions, [&](std::size_t p) { return row[p].isNull(); });
}

std::optional<Bytes> IndexKeeper::entryKey(std::size_t i, std::span<const Value> row) const
{
    const Index& index = m_indexes[i];
    if (index.ignoreNulls && !index.required && allNull(index, row))
        return std::nullopt;
    Bytes key;
    try {
        for (std::size_t k = 0; k < index.positions.size(); ++k)
            appendIndexKey(key, *index.columns[k], index.descending[k] != 0,
                           row[index.positions[k]]);
    } catch (const Error& error) {
        throw Error(error.fault(), std::string(error.what()) + ", индекс " + inQuotes(index.name),
                    m_table);
    }
    return key;
}

bool IndexKeeper::mustBeUnique(std::size_t i, std::span<const Value> row) const
{
    return m_indexes[i].unique && !allNull(m_indexes[i], row);
}

Bytes IndexKeeper::prefixKey(std::size_t i, std::span<const Value> values) const
{
    const Index& index = m_indexes[i];
    Bytes key;
    for (std::size_t k = 0; k < values.size(); ++k)
        appendIndexKey(key, *index.columns[k], index.descending[k] != 0, values[k]);
    return key;
}

bool IndexKeeper::isNullKey(std::size_t i, ByteView key) const
{
    const Index& index = m_indexes[i];
    Bytes nulls;
    for (std::size_t k = 0; k < index.columns.size(); ++k)
        appendIndexKey(nulls, *index.columns[k], index.descending[k] != 0, Value());
    return std::ranges::equal(key, nulls);
}

void IndexKeeper::throwDuplicate(std::size_t index) const
{
    const Index& of = m_indexes[index];
    std::string fields;
    for (const ColumnDefinition* column : of.columns)
        fields += (fields.empty() ? "" : ", ") + inQuotes(column->name);
    throw Error(Fault::Duplicate,
                (of.columns.size() == 1 ? "запись с таким же значением поля "
                                        : "запись с такими же значениями полей ")
                    + fields + " уже есть, а индекс " + inQuotes(of.name)
                    + " не допускает повторений",
                m_table);
}

void IndexKeeper::requireRoom(std::size_t index, ByteView key) const
{
    if (key.size() + kRowPointerBytes > kLargestEntry)
        throw Error(Fault::Limit,
                    "значения слишком длинны для индекса " + inQuotes(m_indexes[index].name),
                    m_table);
}

void IndexKeeper::requireValues(std::size_t i, std::span<const Value> row) const
{
    const Index& index = m_indexes[i];
    if (!index.required)
        return;
    for (std::size_t k = 0; k < index.positions.size(); ++k) {
        if (row[index.positions[k]].isNull())
            throw Error(Fault::NullValue,
                        "поле " + inQuotes(index.columns[k]->name)
                            + " не может быть пустым: этого требует индекс " + inQuotes(index.name),
                        m_table);
    }
}

// Columns of a type or sort order that is not known have keys that cannot be computed.
void IndexKeeper::findOldKey(IndexChange& change, std::span<const Value> before) const
{
    try {
        change.oldKey = entryKey(change.index, before);
    } catch (const Error& error) {
        if (error.fault() != Fault::Unsupported)
            throw;
        change.oldKeyUnknown = true;
    }
}

std::vector<IndexChange> IndexKeeper::plan(std::span<const Value> before,
                                           std::span<const Value> after)
{
    std::vector<IndexChange> changes;
    for (std::size_t i = 0; i < m_indexes.size(); ++i) {
        const auto same = [&](std::size_t p) { return before[p] == after[p]; };
        if (!before.empty() && !after.empty() && std::ranges::all_of(m_indexes[i].positions, same))
            continue;
        IndexChange change;
        change.index = i;
        if (!before.empty())
            findOldKey(change, before);
        if (!after.empty()) {
            requireValues(i, after);
            change.newKey = entryKey(i, after);
        }
        if (change.oldKey == change.newKey && !change.oldKeyUnknown)
            continue;
        if (change.newKey) {
            requireRoom(i, *change.newKey);
            change.isNewKey = !m_indexes[i].tree.containsKey(*change.newKey);
            if (!change.isNewKey && mustBeUnique(i, after))
                throwDuplicate(i);
        }
        changes.push_back(std::move(change));
    }
    return changes;
}

void IndexKeeper::apply(const std::vector<IndexChange>& changes, RowPointer row,
                        Definition& definition)
{
    for (const IndexChange& change : changes) {
        if (change.oldKey || change.oldKeyUnknown)
            eraseEntry(change.index, change.oldKey, row);
        if (!change.newKey)
            continue;
        m_indexes[change.index].tree.insert(*change.newKey, row);
        if (change.isNewKey) {
            ++definition.realIndexes[change.index].distinctKeys;
            storeStatistics(change.index, definition.realIndexes[change.index]);
        }
    }
}

void IndexKeeper::eraseEntry(std::size_t index, const std::optional<Bytes>& key, RowPointer row)
{
    BTree& tree = m_indexes[index].tree;
    if (key && tree.erase(*key, row))
        return;
    // The key is not known, or other builds of the engine make another one, as for a few texts
    // (those with Æ, ß, Œ before an accent or a hyphen): the entry is looked for by its row.
    for (BTree::Cursor cursor = tree.first(); cursor.valid(); cursor.next()) {
        if (cursor.entry().row == row) {
            const Bytes found = cursor.entry().key;
            tree.erase(found, row);
            return;
        }
    }
    throw Error(Fault::Damaged,
                "в индексе " + inQuotes(m_indexes[index].name)
                    + " нет записи, которая есть в таблице",
                row.page, m_table);
}

void IndexKeeper::storeStatistics(std::size_t index, const RealIndex& statistics)
{
    const std::size_t at = kDefinitionStatistics + kStatisticsBytes * index;
    const ByteSpan page = m_pager.modify(m_definitionPage);
    put32(page, at, statistics.entriesAtBuild);
    put32(page, at + 4, statistics.distinctKeys);
}

} // namespace jet
