#include "jet/storage/jet3/copytable.h"

#include "jet/error.h"
#include "jet/storage/jet3/definition.h"
#include "jet/storage/jet3/rows.h"
#include "jet/storage/valueconversion.h"

#include <algorithm>
#include <numeric>

namespace jet::jet3 {

namespace {

constexpr PageNumber kBatchPages = 4096; // written in one step, 16 MB
constexpr int kMostBinaryBytes = 510;

int attributesOf(const ColumnDefinition& column)
{
    const auto has = [&column](std::uint8_t flag) { return (column.flags1 & flag) != 0; };
    int attributes = column.isFixed() ? attribute::kFixed : attribute::kVariable;
    const bool counter = column.type() == FieldType::Long && has(columnflag::kAutoNumber);
    const bool autoGuid = column.type() == FieldType::Guid && has(columnflag::kAutoGuid);
    if (counter || autoGuid)
        attributes |= attribute::kAutoIncrement;
    if (has(columnflag::kHyperlink))
        attributes |= attribute::kHyperlink;
    return attributes;
}

// A column of unknown type keeps its bytes.
Field fieldOf(const ColumnDefinition& column)
{
    Field field;
    field.name = column.name;
    field.type = isWritable(column) ? column.type() : FieldType::Binary;
    field.attributes = attributesOf(column);
    if (field.type == FieldType::Text)
        field.size = column.length;
    if (field.type == FieldType::Binary)
        field.size = std::clamp<int>(column.length, 1, kMostBinaryBytes);
    if (!isWritable(column))
        field.attributes = attribute::kVariable;
    return field;
}

bool isRefusedByRows(const Error& error)
{
    switch (error.fault()) {
    case Fault::Duplicate:
    case Fault::NullValue:
    case Fault::Unsupported:
    case Fault::Limit:
        return true;
    default:
        return false;
    }
}

LogicalIndex withoutPartner(LogicalIndex index)
{
    const LogicalIndex plain;
    index.relationSide = plain.relationSide;
    index.partner = plain.partner;
    index.partnerTable = plain.partnerTable;
    index.cascadeUpdates = plain.cascadeUpdates;
    index.cascadeDeletes = plain.cascadeDeletes;
    return index;
}

} // namespace

TableCopy::TableCopy(const Pages& from, Store& into, PageNumber page, std::string name)
    : m_from(from)
    , m_into(into)
    , m_name(std::move(name))
    , m_old(readDefinition(from, page))
{}

// Positions of the old columns in the order that users see, which is that of the new ones.
std::vector<std::size_t> TableCopy::fieldOrder() const
{
    std::vector<std::size_t> order(m_old.columns.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::sort(order.begin(), order.end(), [this](std::size_t a, std::size_t b) {
        const ColumnDefinition &x = m_old.columns[a], &y = m_old.columns[b];
        return x.ordinal != y.ordinal ? x.ordinal < y.ordinal : x.id < y.id;
    });
    return order;
}

void TableCopy::createTable()
{
    TableDef definition;
    definition.name = m_name;
    for (const std::size_t column : fieldOrder())
        definition.fields.push_back(fieldOf(m_old.columns[column]));
    StatementScope scope(m_into);
    m_into.createTable(definition);
    scope.done();
    m_newPage = m_into.table(m_name).definition().page;
}

void TableCopy::copyRows()
{
    const std::vector<std::size_t> order = fieldOrder();
    Table& table = m_into.table(m_name);
    std::vector<Value> row(order.size());
    try {
        RowReader reader(m_from, m_old);
        for (bool more = true; more;) {
            StatementScope scope(m_into);
            const PageNumber enough = m_into.pager().pageCount() + kBatchPages;
            while (m_into.pager().pageCount() < enough && (more = reader.next())) {
                for (std::size_t i = 0; i < order.size(); ++i)
                    row[i] = reader.value(order[i]);
                table.insert(row);
            }
            scope.done();
        }
    } catch (const Error& error) {
        throw Error(error.fault(), error.what(), m_name);
    }
    keepCounter();
}

// Numbers given out once are not given out again, though their rows are deleted.
void TableCopy::keepCounter()
{
    StatementScope scope(m_into);
    Table& table = m_into.table(m_name);
    if (table.definition().lastAutoNumber < m_old.lastAutoNumber)
        put32(m_into.pager().modify(m_newPage), kDefinitionLastAutoNumber, m_old.lastAutoNumber);
    table.reload();
    scope.done();
}

// The flags that the index could be built with.
std::optional<std::uint8_t> TableCopy::buildIndex(std::size_t real)
{
    const RealIndex& old = m_old.realIndexes[real];
    Index index;
    index.name = "Index" + std::to_string(real);
    for (const RealIndexColumn& column : old.columns) {
        const int position = m_old.columnPositionById(column.columnId);
        index.fields.push_back(
            {m_old.columns[static_cast<std::size_t>(position)].name, column.descending});
    }
    index.ignoreNulls = (old.flags & indexflag::kIgnoreNulls) != 0;
    const unsigned constraints = old.flags & (indexflag::kUnique | indexflag::kRequired);
    for (const unsigned kept : {constraints, 0u}) {
        index.unique = (kept & indexflag::kUnique) != 0;
        index.required = (kept & indexflag::kRequired) != 0;
        try {
            StatementScope scope(m_into);
            m_into.createIndex(m_name, index);
            scope.done();
            return static_cast<std::uint8_t>(kept);
        } catch (const Error& error) {
            if (!isRefusedByRows(error))
                throw;
        }
    }
    return std::nullopt;
}

void TableCopy::buildIndexes()
{
    int next = 0;
    for (std::size_t real = 0; real < m_old.realIndexes.size(); ++real) {
        const std::optional<std::uint8_t> flags = buildIndex(real);
        m_newReal.push_back(flags ? next++ : -1);
        if (flags && (*flags & indexflag::kUnique) != 0)
            continue;
        for (LogicalIndex& logical : m_old.logicalIndexes) {
            if (logical.real == real && logical.type == kPrimaryKey)
                logical.type = 0;
        }
    }
}

bool TableCopy::hasIndex(std::uint32_t logicalNumber) const
{
    return std::ranges::any_of(m_old.logicalIndexes, [&](const LogicalIndex& index) {
        return index.number == logicalNumber && m_newReal[index.real] >= 0;
    });
}

void TableCopy::nameIndexes(const std::vector<TableCopy>& tables)
{
    Table& table = m_into.table(m_name);
    Definition definition = table.definition();
    definition.logicalIndexes.clear();
    for (LogicalIndex index : m_old.logicalIndexes) {
        if (m_newReal[index.real] < 0)
            continue;
        index.real = static_cast<std::uint32_t>(m_newReal[index.real]);
        const auto partner = std::ranges::find(tables, index.partnerTable, &TableCopy::oldPage);
        if (index.partnerTable == 0 || partner == tables.end()
            || !partner->hasIndex(static_cast<std::uint32_t>(index.partner))) {
            if (index.type != kPrimaryKey)
                index.type = 0;
            index = withoutPartner(index);
        } else {
            index.partnerTable = partner->newPage();
        }
        definition.logicalIndexes.push_back(index);
    }
    StatementScope scope(m_into);
    writeDefinition(m_into.pager(), m_into.allocator(), definition);
    scope.done();
    table.reload();
}

} // namespace jet::jet3
