#include "jet/storage/systemtables.h"

#include "jet/storage/table.h"

namespace jet {

namespace {

constexpr PageNumber kMapPage = 6;
constexpr std::uint8_t kSystemTable = 0x53;

// Flags of columns: kSystem, kUpdatable and, where it applies, kFixed or kEncrypted.
constexpr std::uint8_t kFixedColumn =
    columnflag::kSystem | columnflag::kUpdatable | columnflag::kFixed;
constexpr std::uint8_t kVariableColumn = columnflag::kSystem | columnflag::kUpdatable;
constexpr std::uint8_t kSidColumn = kVariableColumn | columnflag::kEncrypted;

constexpr std::uint8_t kByte = 0x02, kBoolean = 0x01, kInteger = 0x03, kLong = 0x04, kDate = 0x08,
                       kBinary = 0x09, kText = 0x0A, kOle = 0x0B, kMemo = 0x0C;

RowPointer mapRow(std::uint8_t row)
{
    return {kMapPage, row};
}

// Assembles one definition; rows of page 6 are the maps.
class Builder
{
public:
    Builder(PageNumber page, std::uint8_t firstMap, std::uint16_t collation)
        : m_collation(collation)
    {
        m_definition.page = page;
        m_definition.tableType = kSystemTable;
        m_definition.ownedMap = mapRow(firstMap);
        m_definition.freeSpaceMap = mapRow(static_cast<std::uint8_t>(firstMap + 1));
    }

    // `place` is the offset of a fixed column, the slot of a variable one; `before` is, for a
    // fixed column, how many variable ones have a smaller id.
    Builder& column(const char* name, std::uint8_t type, std::uint16_t id, std::uint8_t flags,
                    std::uint16_t place, std::uint16_t length, std::uint16_t before = 0)
    {
        ColumnDefinition column;
        column.name = name;
        column.storedType = type;
        column.id = id;
        column.flags1 = flags;
        column.collation = m_collation;
        column.length = length;
        column.slot = column.isFixed() ? before : place;
        column.fixedOffset = column.isFixed() ? place : std::uint16_t{0};
        m_definition.columns.push_back(column);
        ++m_definition.nextColumnId;
        if (!column.isFixed())
            ++m_definition.variableSlots;
        return *this;
    }

    Builder& maps(std::uint16_t columnId, std::uint8_t owned)
    {
        m_definition.columnMaps.push_back(
            {columnId, mapRow(owned), mapRow(static_cast<std::uint8_t>(owned + 1))});
        return *this;
    }

    Builder& real(std::vector<RealIndexColumn> columns, std::uint8_t flags, std::uint8_t map,
                  PageNumber root)
    {
        RealIndex index;
        index.columns = std::move(columns);
        index.flags = flags;
        index.pageMap = mapRow(map);
        index.root = root;
        m_definition.realIndexes.push_back(std::move(index));
        return *this;
    }

    Builder& logical(const char* name, std::uint32_t number, std::uint8_t type = 0)
    {
        LogicalIndex index;
        index.name = name;
        index.number = number;
        index.real = number;
        index.type = type;
        m_definition.logicalIndexes.push_back(std::move(index));
        return *this;
    }

    Definition done() { return std::move(m_definition); }

private:
    Definition m_definition;
    std::uint16_t m_collation;
};

constexpr std::uint8_t kUniqueKey = indexflag::kAlways | indexflag::kUnique;
constexpr std::uint8_t kNotNull = indexflag::kAlways | indexflag::kRequired;
constexpr std::uint8_t kSkipNulls = indexflag::kAlways | indexflag::kIgnoreNulls;

Definition objects(std::uint16_t collation)
{
    return Builder(2, 0, collation)
        .column("Connect", kMemo, 9, kVariableColumn, 3, 0)
        .column("Database", kMemo, 8, kVariableColumn, 2, 0)
        .column("DateCreate", kDate, 4, kFixedColumn, 10, 8, 1)
        .column("DateUpdate", kDate, 5, kFixedColumn, 18, 8, 1)
        .column("Flags", kLong, 7, kFixedColumn, 26, 4, 2)
        .column("ForeignName", kText, 10, kVariableColumn, 4, 510)
        .column("Id", kLong, 0, kFixedColumn, 0, 4)
        .column("Lv", kOle, 13, kVariableColumn, 7, 0)
        .column("LvExtra", kOle, 16, kVariableColumn, 10, 0)
        .column("LvModule", kOle, 15, kVariableColumn, 9, 0)
        .column("LvProp", kOle, 14, kVariableColumn, 8, 0)
        .column("Name", kText, 2, kVariableColumn, 0, 510)
        .column("Owner", kBinary, 6, kSidColumn, 1, 510)
        .column("ParentId", kLong, 1, kFixedColumn, 4, 4)
        .column("RmtInfoLong", kOle, 12, kVariableColumn, 6, 0)
        .column("RmtInfoShort", kBinary, 11, kVariableColumn, 5, 510)
        .column("Type", kInteger, 3, kFixedColumn, 8, 2, 1)
        .maps(9, 4)
        .maps(8, 2)
        .maps(13, 8)
        .maps(16, 14)
        .maps(15, 12)
        .maps(14, 10)
        .maps(12, 6)
        .real({{1, false}, {2, false}}, kUniqueKey, 16, 7)
        .real({{0, false}}, kUniqueKey, 17, 8)
        .logical("Id", 1, 1)
        .logical("ParentIdName", 0)
        .done();
}

Definition permissions(std::uint16_t collation)
{
    return Builder(3, 18, collation)
        .column("ACM", kLong, 2, kFixedColumn, 4, 4, 1)
        .column("FInheritable", kBoolean, 3, kFixedColumn, 0, 1, 1)
        .column("ObjectId", kLong, 0, kFixedColumn, 0, 4)
        .column("SID", kBinary, 1, kSidColumn, 0, 510)
        .real({{0, false}}, kNotNull, 20, 9)
        .logical("ObjectId", 0)
        .done();
}

Definition queries(std::uint16_t collation)
{
    return Builder(4, 21, collation)
        .column("Attribute", kByte, 1, kFixedColumn, 4, 1)
        .column("Expression", kMemo, 5, kVariableColumn, 3, 0)
        .column("Flag", kInteger, 6, kFixedColumn, 5, 2, 4)
        .column("LvExtra", kLong, 7, kFixedColumn, 7, 4, 4)
        .column("Name1", kText, 3, kVariableColumn, 1, 510)
        .column("Name2", kText, 4, kVariableColumn, 2, 510)
        .column("ObjectId", kLong, 0, kFixedColumn, 0, 4)
        .column("Order", kBinary, 2, kVariableColumn, 0, 510)
        .maps(5, 23)
        .real({{0, false}, {1, false}, {2, false}}, kUniqueKey, 25, 10)
        .logical("ObjectIdAttribute", 0, 1)
        .done();
}

Definition relationships(std::uint16_t collation)
{
    return Builder(5, 26, collation)
        .column("ccolumn", kLong, 2, kFixedColumn, 4, 4, 1)
        .column("grbit", kLong, 1, kFixedColumn, 0, 4, 1)
        .column("icolumn", kLong, 3, kFixedColumn, 8, 4, 1)
        .column("szColumn", kText, 5, kVariableColumn, 2, 510)
        .column("szObject", kText, 4, kVariableColumn, 1, 510)
        .column("szReferencedColumn", kText, 7, kVariableColumn, 4, 510)
        .column("szReferencedObject", kText, 6, kVariableColumn, 3, 510)
        .column("szRelationship", kText, 0, kVariableColumn, 0, 510)
        .real({{0, false}}, kSkipNulls, 28, 11)
        .real({{4, false}}, kSkipNulls, 29, 12)
        .real({{6, false}}, kSkipNulls, 30, 13)
        .logical("szObject", 1)
        .logical("szReferencedObject", 2)
        .logical("szRelationship", 0)
        .done();
}

} // namespace

std::array<Definition, 4> systemTableDefinitions(std::uint16_t collation)
{
    return {objects(collation), permissions(collation), queries(collation),
            relationships(collation)};
}

void insertRow(Table& table, std::initializer_list<std::pair<const char*, Value>> values)
{
    const Definition& definition = table.definition();
    std::vector<Value> row(definition.columns.size());
    for (const auto& [name, value] : values)
        row[static_cast<std::size_t>(definition.columnPosition(name))] = value;
    table.insert(row);
}

} // namespace jet
