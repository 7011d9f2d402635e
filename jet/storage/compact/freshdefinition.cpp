#include "jet/storage/compact/freshdefinition.h"

#include "jet/error.h"
#include "jet/storage/valuecodec.h"

#include <algorithm>
#include <map>
#include <numeric>
#include <utility>
#include <vector>

namespace jet::compact {

namespace {

constexpr std::uint8_t kNotForeign = 4; // in place of both cascades
constexpr std::uint8_t kPlainIndex = 0;
constexpr std::uint8_t kIndexFlags =
    indexflag::kUnique | indexflag::kIgnoreNulls | indexflag::kRequired;
constexpr std::uint8_t kUserTable = 0x4E;
constexpr std::uint8_t kSystemTable = 0x53;
constexpr std::uint16_t kMostTextBytes = 510;

void mendLength(ColumnDefinition& column, PageNumber page)
{
    switch (column.type()) {
    case FieldType::Text:
        column.length = static_cast<std::uint16_t>(column.length & ~1U);
        if (column.length == 0 || (column.length > kMostTextBytes && !column.isFixed()))
            column.length = kMostTextBytes;
        return;
    case FieldType::Boolean:
    case FieldType::Binary:
    case FieldType::Memo:
    case FieldType::LongBinary:
    case FieldType::Block:
    case FieldType::Decimal: // some variable ones say less than their values have
        return;
    default:
        break;
    }
    const std::size_t size = storedSize(column.type());
    if (size == 0)
        throw Error(Fault::Damaged, "поле «" + column.name + "» неизвестного типа", page);
    column.length = static_cast<std::uint16_t>(size);
}

// Positions of the columns by ascending number.
std::vector<std::size_t> columnsByNumber(const Definition& definition)
{
    std::vector<std::size_t> positions(definition.columns.size());
    std::iota(positions.begin(), positions.end(), std::size_t{0});
    std::ranges::sort(positions, {}, [&](std::size_t p) { return definition.columns[p].id; });
    return positions;
}

// Gives the new number of each old one.
std::map<std::uint16_t, std::uint16_t> renumberColumns(Definition& definition)
{
    std::map<std::uint16_t, std::uint16_t> numbers;
    std::uint16_t id = 0, slot = 0, offset = 0;
    for (const std::size_t position : columnsByNumber(definition)) {
        ColumnDefinition& column = definition.columns[position];
        numbers[column.id] = id;
        column.id = id++;
        column.slot = slot; // for a fixed column: how many variable ones come before
        column.fixedOffset = 0;
        if (!column.isFixed()) {
            ++slot;
        } else if (!column.isBoolean()) {
            column.fixedOffset = offset;
            offset = static_cast<std::uint16_t>(offset + column.length);
        }
    }
    definition.nextColumnId = id;
    definition.variableSlots = slot;
    return numbers;
}

} // namespace

Definition freshDefinition(const Definition& old, PageNumber page)
{
    Definition fresh = old;
    fresh.page = page;
    fresh.rowCount = 0;
    fresh.columnMaps.clear();
    fresh.ownedMap = fresh.freeSpaceMap = {};
    const auto numbers = renumberColumns(fresh);
    for (RealIndex& index : fresh.realIndexes) {
        index.entriesAtBuild = index.distinctKeys = 0;
        index.pageMap = {};
        index.root = 0;
        for (RealIndexColumn& column : index.columns)
            column.columnId = numbers.at(column.columnId);
    }
    return fresh;
}

void mendDefinition(Definition& definition)
{
    if (definition.tableType != kSystemTable)
        definition.tableType = kUserTable;
    for (ColumnDefinition& column : definition.columns)
        mendLength(column, definition.page);
    bool hasPrimary = false;
    for (LogicalIndex& index : definition.logicalIndexes) {
        if (index.type == kPrimaryKey && std::exchange(hasPrimary, true))
            index.type = kPlainIndex;
    }
    for (std::size_t real = definition.realIndexes.size(); real-- > 0;) {
        std::uint8_t& flags = definition.realIndexes[real].flags;
        flags = static_cast<std::uint8_t>((flags & kIndexFlags) | indexflag::kAlways);
        if (std::ranges::none_of(definition.logicalIndexes,
                                 [real](const LogicalIndex& index) { return index.real == real; }))
            removeIndex(definition, real);
    }
}

void removeIndex(Definition& definition, std::size_t real)
{
    std::erase_if(definition.logicalIndexes,
                  [real](const LogicalIndex& index) { return index.real == real; });
    for (LogicalIndex& index : definition.logicalIndexes) {
        if (index.real > real)
            --index.real;
    }
    definition.realIndexes.erase(definition.realIndexes.begin()
                                 + static_cast<std::ptrdiff_t>(real));
}

void forgetPartner(LogicalIndex& index)
{
    index.relationSide = 0;
    index.partner = -1;
    index.partnerTable = 0;
    index.cascadeUpdates = index.cascadeDeletes = kNotForeign;
    if (index.type == kForeignKey)
        index.type = kPlainIndex;
}

} // namespace jet::compact
