#pragma once

#include "jet/storage/bytes.h"
#include "jet/storage/types.h"
#include "jet/tabledef.h"
#include "jet/value.h"

#include <cstdint>
#include <string>
#include <vector>

namespace jet {

class Pager;
class PageAllocator;

// Column flags 1.
namespace columnflag {
inline constexpr std::uint8_t kFixed = 0x01; // stored in the fixed area; decides, not the type
inline constexpr std::uint8_t kUpdatable = 0x02;
inline constexpr std::uint8_t kAutoNumber = 0x04;
inline constexpr std::uint8_t kSystem = 0x10;
inline constexpr std::uint8_t kEncrypted = 0x20;
inline constexpr std::uint8_t kAutoGuid = 0x40;
inline constexpr std::uint8_t kHyperlink = 0x80;
} // namespace columnflag

// A column as the file describes it.
struct ColumnDefinition
{
    std::string name;
    std::uint8_t storedType = 0; // code of the file: DAO's, but 0x10 for Decimal
    std::uint16_t id = 0;        // position in the null mask, never reused
    std::uint16_t slot = 0;      // variable columns: index in the row's offset table
    std::uint16_t ordinal = 0;
    std::uint16_t collation = 0x0409;   // or precision | scale << 8 for Decimal
    std::uint16_t collationVersion = 0; // raw u16 of the entry
    std::uint8_t flags1 = 0;
    std::uint8_t flags2 = 0;
    std::uint16_t fixedOffset = 0;
    std::uint16_t length = 0; // bytes

    // A code without a name in FieldType stands for a type that is only read, as bytes.
    FieldType type() const;
    bool isFixed() const { return (flags1 & columnflag::kFixed) != 0; }
    bool isLongValue() const { return storedType == 0x0B || storedType == 0x0C; }
    bool isBoolean() const { return storedType == 0x01; }
    bool compresses() const { return (flags2 & 0x01) != 0; }
};

namespace indexflag {
inline constexpr std::uint8_t kUnique = 0x01;
inline constexpr std::uint8_t kIgnoreNulls = 0x02;
inline constexpr std::uint8_t kRequired = 0x08;
inline constexpr std::uint8_t kAlways = 0x80;
} // namespace indexflag

struct RealIndexColumn
{
    std::uint16_t columnId = 0;
    bool descending = false;
};

struct RealIndex
{
    std::uint32_t entriesAtBuild = 0;
    std::uint32_t distinctKeys = 0;
    std::vector<RealIndexColumn> columns; // 1 to 10
    RowPointer pageMap;
    PageNumber root = 0;
    std::uint8_t flags = indexflag::kAlways;
};

// The types of logical indexes.
inline constexpr std::uint8_t kPlainIndex = 0, kPrimaryKey = 1, kForeignKey = 2;

struct LogicalIndex
{
    std::string name;
    std::uint32_t number = 0;      // unique in the table, stable
    std::uint32_t real = 0;        // position in Definition::realIndexes
    std::uint8_t relationSide = 0; // 1 referenced, 2 referencing side of a relationship
    std::int32_t partner = -1;
    PageNumber partnerTable = 0;
    std::uint8_t cascadeUpdates = 4; // 4 = not a foreign key
    std::uint8_t cascadeDeletes = 4;
    std::uint8_t type = kPlainIndex;
};

struct ColumnMaps
{
    std::uint16_t columnId = 0;
    RowPointer owned;
    RowPointer freeSpace; // null in some tables of Access itself
};

// A table definition (TDEF): decoded whole, changed as a value, written back whole.
struct Definition
{
    PageNumber page = 0;        // first page; also the table's object id
    std::uint32_t rowCount = 0; // the file's counter, not to be trusted
    std::uint32_t lastAutoNumber = 0;
    std::uint32_t autoIncrement = 1;
    std::uint8_t tableType = 0x4E; // 0x53 for the four engine tables
    std::uint16_t nextColumnId = 0;
    std::uint16_t variableSlots = 0;
    std::vector<ColumnDefinition> columns; // in file order
    std::vector<RealIndex> realIndexes;
    std::vector<LogicalIndex> logicalIndexes;
    std::vector<ColumnMaps> columnMaps;
    RowPointer ownedMap;
    RowPointer freeSpaceMap;

    // Position in `columns`, case-insensitive over all of Unicode that names may use; -1 if none.
    int columnPosition(std::string_view name) const;
    int columnPositionById(std::uint16_t id) const; // -1 if none
    const ColumnMaps* mapsOf(std::uint16_t columnId) const;
    // Bytes of the fixed area of a row.
    std::size_t fixedLength() const;
};

// Offsets of the counters that row changes rewrite in place on the definition's first page.
inline constexpr std::size_t kDefinitionRowCount = 0x10;
inline constexpr std::size_t kDefinitionLastAutoNumber = 0x14;
inline constexpr std::size_t kDefinitionStatistics = 0x3F; // 12 bytes per real index

// The byte string of a TDEF without continuation page headers. decode() throws Error
// (Damaged) for every contradiction; decode(encode(d)) == d.
Definition decodeDefinition(ByteView bytes, PageNumber page);
Bytes encodeDefinition(const Definition& definition);

// Reads a definition over all its pages; throws Error (Damaged), also on a page cycle.
Definition readDefinition(Pager& pager, PageNumber page);
// Writes it back over its pages, allocating or freeing continuation pages as needed.
void writeDefinition(Pager& pager, PageAllocator& allocator, const Definition& definition);

} // namespace jet
