#include "jet/error.h"
#include "jet/storage/indexkey.h"
#include "jet/storage/table.h"
#include "jet/storage/tableimpl.h"
#include "jet/storage/valueconversion.h"

#include <algorithm>
#include <cassert>

namespace jet {

namespace {

// Key of a row's column, read without making a Value where that is costly.
std::optional<std::uint64_t> keyIn(const RowView& row, int position, const ColumnDefinition& column,
                                   std::string& buffer)
{
    if (row.isNull(position))
        return std::nullopt;
    switch (column.type()) {
    case FieldType::Boolean:
    case FieldType::Byte:
    case FieldType::Integer:
    case FieldType::Long:
        return EqualityKey::ofInteger(row.integer(position));
    case FieldType::Single:
    case FieldType::Double:
    case FieldType::Date:
        return EqualityKey::ofNumber(row.number(position));
    case FieldType::Text:
        buffer.clear();
        row.text(position, buffer);
        return EqualityKey::ofText(buffer);
    default:
        return EqualityKey::of(column, row.value(position));
    }
}

// Key of several columns; nothing when one of them is NULL.
std::optional<std::uint64_t> joinedKeyIn(const RowView& row, std::span<const int> positions,
                                         const std::vector<ColumnDefinition>& columns,
                                         std::string& buffer)
{
    std::optional<std::uint64_t> key;
    for (const int position : positions) {
        const auto next = keyIn(row, position, columns[static_cast<std::size_t>(position)], buffer);
        if (!next)
            return std::nullopt;
        key = key ? EqualityKey::joined(*key, *next) : *next;
    }
    return key;
}

// True when a value of the column is the one sought, in the sense of EqualityKey.
bool sameValue(const ColumnDefinition& column, const Value& stored, const Value& sought)
{
    if (column.type() == FieldType::Text)
        return compareGeneral(stored.toText(), sought.toText()) == 0;
    return stored == sought || stored == convertValue(sought, column);
}

// The value as the column holds it; nothing when it can hold none equal to it: NULL, 5.5 in
// a Long column, a text that is no number.
std::optional<Value> exactValue(const ColumnDefinition& column, const Value& value)
{
    const auto key = EqualityKey::of(column, value);
    if (!key)
        return std::nullopt;
    if (column.type() == FieldType::Text)
        return value.toText(); // may be longer than the column by trailing spaces
    try {
        Value converted = convertValue(value, column);
        return EqualityKey::of(column, converted) == key ? std::optional(converted) : std::nullopt;
    } catch (const Error&) {
        return std::nullopt; // too long or too large to be there
    }
}

} // namespace

// The index of these columns, made from the rows if it is not there yet.
EqualityIndex& Table::lookupIndex(std::span<const int> columns)
{
    Impl& t = current();
    std::vector<int> positions(columns.begin(), columns.end());
    if (const auto found = t.lookups.find(positions); found != t.lookups.end())
        return found->second;
    EqualityIndex index;
    // The counter in the file may be anything; the file's size bounds it.
    index.reserve(
        std::min<std::size_t>(t.definition->rowCount, m_pager.pageCount() * datapage::kMostRows));
    std::string buffer;
    for (TableScan rows = scan(); rows.next();) {
        if (const auto key = joinedKeyIn(rows.row(), columns, t.definition->columns, buffer))
            index.append(*key, rows.row().pointer());
    }
    index.finish();
    return t.lookups.emplace(std::move(positions), std::move(index)).first->second;
}

std::span<const RowPointer> Table::candidates(std::span<const int> columns,
                                              std::span<const Value> values)
{
    const Definition& d = *current().definition;
    std::optional<std::uint64_t> key;
    for (std::size_t i = 0; i < columns.size(); ++i) {
        const auto next =
            EqualityKey::of(d.columns[static_cast<std::size_t>(columns[i])], values[i]);
        if (!next)
            return {};
        key = key ? EqualityKey::joined(*key, *next) : *next;
    }
    return key ? lookupIndex(columns).find(*key) : std::span<const RowPointer>();
}

std::size_t Table::lookupMemory() const
{
    std::size_t bytes = 0;
    for (const auto& [columns, index] : m_impl->lookups)
        bytes += index.memoryBytes();
    return bytes;
}

std::span<const RowPointer> Table::lookup(int column, const Value& value)
{
    Impl& t = current();
    const ColumnDefinition& definition = t.definition->columns[static_cast<std::size_t>(column)];
    assert(!definition.isLongValue());
    const auto key = EqualityKey::of(definition, value);
    if (!key)
        return {};
    const std::span<const RowPointer> rows = lookupIndex({&column, 1}).find(*key);
    if (EqualityKey::isExact(definition))
        return rows;
    t.verified.clear();
    for (const RowPointer row : rows) {
        if (sameValue(definition, liveRow(row).value(column), value))
            t.verified.push_back(row);
    }
    return t.verified;
}

int Table::indexLedBy(int column) const
{
    Impl& t = current();
    const ColumnDefinition& definition = t.definition->columns[static_cast<std::size_t>(column)];
    // Keys of Memo columns stand for their first 255 characters only.
    if (definition.isLongValue()
        || (definition.type() == FieldType::Text && !hasKnownTextOrder(definition)))
        return -1;
    for (std::size_t i = 0; i < t.parts->indexes.count(); ++i) {
        if (t.parts->indexes.columns(i).front() == static_cast<std::size_t>(column))
            return static_cast<int>(i);
    }
    return -1;
}

std::vector<RowPointer> Table::seek(int realIndex, std::span<const Value> values)
{
    Impl& t = current();
    const auto index = static_cast<std::size_t>(realIndex);
    const std::vector<std::size_t>& columns = t.parts->indexes.columns(index);
    std::vector<Value> sought;
    for (std::size_t i = 0; i < values.size() && i < columns.size(); ++i) {
        auto value = exactValue(t.definition->columns[columns[i]], values[i]);
        if (!value)
            return {};
        sought.push_back(*std::move(value));
    }
    const Bytes prefix = t.parts->indexes.prefixKey(index, sought);
    std::vector<RowPointer> rows;
    for (BTree::Cursor cursor = t.parts->indexes.tree(index).seek(prefix); cursor.valid();
         cursor.next()) {
        const Bytes& key = cursor.entry().key;
        if (key.size() < prefix.size() || !std::equal(prefix.begin(), prefix.end(), key.begin()))
            break;
        rows.push_back(cursor.entry().row);
    }
    return rows;
}

void Table::buildIndex(int realIndex)
{
    Impl& t = current();
    const auto index = static_cast<std::size_t>(realIndex);
    IndexKeeper& indexes = t.parts->indexes;
    std::vector<IndexEntry> entries;
    std::vector<Value> row(t.definition->columns.size());
    bool unique = false;
    for (TableScan rows = scan(); rows.next();) {
        for (const std::size_t column : indexes.columns(index))
            row[column] = rows.row().value(static_cast<int>(column));
        indexes.requireValues(index, row);
        auto key = indexes.entryKey(index, row);
        if (!key)
            continue;
        // Rows of NULLs alone never clash; they get the mark of the others' keys.
        unique = unique || indexes.mustBeUnique(index, row);
        entries.push_back({*std::move(key), rows.row().pointer()});
    }
    std::ranges::sort(entries, [](const IndexEntry& a, const IndexEntry& b) {
        return a.key != b.key ? a.key < b.key : a.row < b.row;
    });
    RealIndex& real = t.definition->realIndexes[index];
    real.entriesAtBuild = static_cast<std::uint32_t>(entries.size());
    real.distinctKeys = entries.empty() ? 0 : 1;
    for (std::size_t i = 1; i < entries.size(); ++i) {
        if (entries[i].key != entries[i - 1].key)
            ++real.distinctKeys;
        else if (unique && !indexes.isNullKey(index, entries[i].key))
            indexes.throwDuplicate(index);
    }
    indexes.tree(index).build(entries);
    indexes.storeStatistics(index, real);
}

void Table::releasePages()
{
    Impl& t = current();
    const auto releaseMap = [&](RowPointer row) {
        if (row.isNull())
            return;
        UsageMap(m_pager, m_allocator, row).releaseBitmaps();
        m_allocator.deleteMap(row);
    };
    const auto releaseMembers = [&](RowPointer row) {
        for (const PageNumber page : UsageMap(m_pager, m_allocator, row).pages())
            m_allocator.release(page, PageType::FreedData);
        releaseMap(row);
    };
    for (std::size_t i = 0; i < t.parts->indexes.count(); ++i) {
        const RealIndex& real = t.definition->realIndexes[i];
        t.parts->indexes.tree(i).clear();
        m_allocator.release(real.root, PageType::IndexLeaf);
        releaseMap(real.pageMap);
    }
    for (const ColumnMaps& maps : t.definition->columnMaps) {
        releaseMembers(maps.owned);
        releaseMap(maps.freeSpace);
    }
    releaseMembers(t.definition->ownedMap);
    releaseMap(t.definition->freeSpaceMap);
    t.pages.reset();
    t.lookups.clear();
}

} // namespace jet
