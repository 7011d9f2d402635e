#include "jet/storage/schemaeditor.h"

#include "jet/error.h"
#include "jet/storage/btree.h"
#include "jet/storage/definitionrules.h"
#include "jet/storage/sortkey.h"
#include "jet/text.h"

#include <algorithm>

namespace jet {

namespace {

std::uint8_t flagsOf(const Index& index)
{
    unsigned flags = indexflag::kAlways;
    if (index.unique || index.primary)
        flags |= indexflag::kUnique;
    if (index.required || index.primary)
        flags |= indexflag::kRequired;
    if (index.ignoreNulls && !index.primary)
        flags |= indexflag::kIgnoreNulls;
    return static_cast<std::uint8_t>(flags);
}

bool belongsToRelationship(const LogicalIndex& index)
{
    return index.type == kForeignKey || index.relationSide != 0 || index.partnerTable != 0;
}

} // namespace

void SchemaEditor::addIndex(Definition& definition, const Index& index)
{
    rules::checkIndex(index, definition);
    RealIndex real;
    for (const IndexField& field : index.fields) {
        const auto position = static_cast<std::size_t>(definition.columnPosition(field.name));
        real.columns.push_back({definition.columns[position].id, field.descending});
    }
    real.flags = flagsOf(index);
    real.pageMap = m_allocator.createMap(definition.ownedMap.page);
    real.root = m_allocator.allocate();
    BTree::initialiseRoot(m_pager, definition.page, real.root);
    UsageMap(m_pager, m_allocator, real.pageMap).add(real.root);

    LogicalIndex logical;
    logical.name = index.name;
    for (const LogicalIndex& other : definition.logicalIndexes)
        logical.number = std::max(logical.number, other.number + 1);
    logical.real = static_cast<std::uint32_t>(definition.realIndexes.size());
    logical.type = index.primary ? kPrimaryKey : kPlainIndex;
    // By name, as the engine of Access keeps them.
    const auto place = std::find_if(
        definition.logicalIndexes.begin(), definition.logicalIndexes.end(),
        [&](const LogicalIndex& other) { return compareGeneral(index.name, other.name) < 0; });
    definition.logicalIndexes.insert(place, logical);
    definition.realIndexes.push_back(std::move(real));
}

void SchemaEditor::createIndex(Table& table, const Index& index)
{
    Definition definition = table.definition();
    addIndex(definition, index);
    write(table, definition);
    table.buildIndex(static_cast<int>(definition.realIndexes.size()) - 1);
    m_catalogue.touch(definition.page);
}

void SchemaEditor::dropIndex(Table& table, std::string_view name)
{
    Definition definition = table.definition();
    auto& indexes = definition.logicalIndexes;
    const auto found = std::find_if(indexes.begin(), indexes.end(), [name](const LogicalIndex& i) {
        return sameName(i.name, name);
    });
    if (found == indexes.end())
        throw Error(Fault::UnknownName, "нет индекса «" + std::string(name) + "»", table.name());
    const std::uint32_t real = found->real;
    const auto sharers = std::count_if(indexes.begin(), indexes.end(),
                                       [real](const LogicalIndex& i) { return i.real == real; });
    for (const LogicalIndex& index : indexes) {
        if (index.real == real && belongsToRelationship(index))
            throw Error(Fault::Unsupported,
                        "индекс «" + std::string(name) + "» нужен связи, сначала удалите связь",
                        table.name());
    }
    indexes.erase(found);
    if (sharers == 1)
        removeRealIndex(definition, real);
    write(table, definition);
    m_catalogue.touch(definition.page);
}

void SchemaEditor::removeRealIndex(Definition& definition, std::uint32_t number)
{
    const RealIndex index = definition.realIndexes[number];
    UsageMap map(m_pager, m_allocator, index.pageMap);
    for (const PageNumber page : map.pages())
        m_allocator.release(page, m_pager.read(page).type());
    map.releaseBitmaps();
    m_allocator.deleteMap(index.pageMap);
    definition.realIndexes.erase(definition.realIndexes.begin() + number);
    for (LogicalIndex& logical : definition.logicalIndexes) {
        if (logical.real > number)
            --logical.real;
    }
}

} // namespace jet
