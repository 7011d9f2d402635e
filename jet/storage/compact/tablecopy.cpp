#include "jet/storage/compact/tablecopy.h"

#include "jet/error.h"
#include "jet/storage/btree.h"
#include "jet/storage/compact/freshdefinition.h"
#include "jet/storage/compact/indexcopy.h"
#include "jet/storage/compact/rowreader.h"
#include "jet/storage/datapage.h"
#include "jet/storage/indexkeeper.h"
#include "jet/storage/rowspace.h"
#include "jet/storage/valuecodec.h"

#include <algorithm>
#include <optional>

namespace jet::compact {

namespace {

std::optional<std::size_t> primaryIndex(const Definition& definition)
{
    for (const LogicalIndex& index : definition.logicalIndexes) {
        if (index.type == kPrimaryKey)
            return index.real;
    }
    return std::nullopt;
}

int counterColumn(const Definition& definition)
{
    for (std::size_t i = 0; i < definition.columns.size(); ++i) {
        const ColumnDefinition& column = definition.columns[i];
        if ((column.flags1 & columnflag::kAutoNumber) != 0 && column.type() == FieldType::Long)
            return static_cast<int>(i);
    }
    return -1;
}

std::map<std::size_t, RowSpace> longValueSpaces(Pager& pager, PageAllocator& allocator,
                                                const Definition& definition)
{
    std::map<std::size_t, RowSpace> spaces;
    for (std::size_t i = 0; i < definition.columns.size(); ++i) {
        if (const ColumnMaps* maps = definition.mapsOf(definition.columns[i].id))
            spaces.emplace(i, RowSpace(pager, allocator, datapage::kLongValueOwner, maps->owned,
                                       maps->freeSpace));
    }
    return spaces;
}

// Sets the columns of an index; false when a value cannot be read.
bool keyValues(const StoredRow& row, const Definition& definition,
               const std::vector<std::size_t>& columns, std::vector<Value>& values)
{
    for (const std::size_t i : columns) {
        const ColumnDefinition& column = definition.columns[i];
        values[i] = {};
        if (column.isBoolean()) {
            values[i] = row.parts.maskBit(column);
            continue;
        }
        if (row.parts.isNull(column))
            continue;
        const auto item = row.parts.item(column);
        auto value = item && !column.isLongValue() ? decodeItem(column, *item) : std::nullopt;
        if (!value)
            return false;
        values[i] = *std::move(value);
    }
    return true;
}

} // namespace

TableCopy::TableCopy(Pager& source, Pager& target, Losses& losses)
    : m_source(source)
    , m_target(target)
    , m_sourceAllocator(source)
    , m_allocator(target)
    , m_losses(losses)
{}

// In the order that the engine of Access has: the table's two maps, two for each long-value
// column, one for each index.
void TableCopy::allocateMaps(Definition& fresh)
{
    PageNumber page = 0;
    const auto createMap = [&] {
        const RowPointer map = m_allocator.createMap(page);
        page = map.page;
        return map;
    };
    fresh.ownedMap = createMap();
    fresh.freeSpaceMap = createMap();
    for (const ColumnDefinition& column : fresh.columns) {
        if (!column.isLongValue())
            continue;
        const RowPointer owned = createMap();
        fresh.columnMaps.push_back({column.id, owned, createMap()});
    }
    for (RealIndex& index : fresh.realIndexes) {
        index.pageMap = createMap();
        index.root = m_allocator.allocate();
        BTree::initialiseRoot(m_target, fresh.page, index.root);
        UsageMap(m_target, m_allocator, index.pageMap).add(index.root);
    }
}

// Rows stay in the order of their pages where the key cannot tell a better one.
std::vector<RowPointer> TableCopy::rowsInKeyOrder(const SourceTable& table, const Definition& fresh)
{
    RowReader reader(m_source, table.definition, table.name, m_losses);
    std::vector<RowPointer> rows = reader.rows(table.pages);
    const auto primary = primaryIndex(fresh);
    if (!primary)
        return rows;
    const IndexKeeper keeper(m_target, m_allocator, fresh, table.name);
    std::vector<Value> values(fresh.columns.size());
    std::vector<IndexEntry> entries;
    entries.reserve(rows.size());
    try {
        for (const RowPointer row : rows) {
            if (!keyValues(reader.at(row), table.definition, keeper.columns(*primary), values))
                return rows;
            if (auto key = keeper.entryKey(*primary, values))
                entries.push_back({*std::move(key), row});
        }
    } catch (const Error& error) {
        if (error.fault() != Fault::Unsupported)
            throw;
        return rows;
    }
    const auto byKey = [](const IndexEntry& a, const IndexEntry& b) { return a.key < b.key; };
    if (entries.size() != rows.size() || std::ranges::is_sorted(entries, byKey))
        return rows;
    std::ranges::stable_sort(entries, byKey);
    std::ranges::transform(entries, rows.begin(), &IndexEntry::row);
    return rows;
}

Definition TableCopy::run(const SourceTable& table, const RowRule& rule,
                          const std::function<void(std::size_t, std::size_t)>& tell)
{
    constexpr std::size_t kRowsBetweenReports = 512;
    Definition fresh = freshDefinition(table.definition, table.newPage);
    allocateMaps(fresh);
    RowReader reader(m_source, table.definition, table.name, m_losses);
    RowSpace space(m_target, m_allocator, fresh.page, fresh.ownedMap, fresh.freeSpaceMap);
    auto longValues = longValueSpaces(m_target, m_allocator, fresh);
    IndexCopy indexes(m_target, m_allocator, fresh, table.name, m_losses);
    const int counter = counterColumn(fresh);
    std::int64_t highest = static_cast<std::int32_t>(fresh.lastAutoNumber);
    const std::vector<RowPointer> rows = rowsInKeyOrder(table, fresh);
    for (std::size_t i = 0; i < rows.size(); ++i) {
        RowCopy row(table.definition, fresh, table.name);
        row.read(reader.at(rows[i]), m_source, m_losses);
        if (rule && !rule(rows[i], row))
            continue;
        const RowPointer place = space.add(row.write(longValues));
        indexes.add(row, rows[i], place);
        ++fresh.rowCount;
        if (counter >= 0)
            highest = std::max(highest, row.value(counter).toInteger());
        if (i % kRowsBetweenReports == 0)
            tell(i, rows.size());
    }
    fresh.lastAutoNumber = static_cast<std::uint32_t>(highest);
    indexes.build(m_source, m_sourceAllocator, table.definition);
    return fresh;
}

} // namespace jet::compact
