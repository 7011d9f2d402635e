#include "jet/storage/jet3/definition.h"

#include "jet/error.h"

#include <string>

// The byte string of a definition begins on the first page with its header and goes on at
// offset 8 of each further one.
//
//   offset  bytes  meaning
//       00      4  02 01 56 43
//       04      4  next page, 0 = last
//       08      4  length of the string, the first page's 8 bytes included
//       0C      4  number of rows
//       10      4  last autonumber
//       14      1  4E user table, 53 of the engine
//       15      2  next column id
//       17      2  variable slots
//       19      2  columns
//       1B      4  logical indexes
//       1F      4  real indexes
//       23      4  map of the pages with rows
//       27      4  map of those with free space
//
// Then, without padding: 8 bytes of statistics a real index; 18 bytes a column; names (u8
// length, 8-bit characters); 39 bytes a real index; 20 bytes a logical index; their names.

namespace jet::jet3 {

namespace {

constexpr std::size_t kPageHeader = 8;
constexpr std::size_t kCounters = 0x0C;
constexpr std::size_t kMaxColumns = 255;
constexpr std::size_t kMaxIndexes = 255;
constexpr std::size_t kIndexColumns = 10;
constexpr std::uint16_t kNoColumn = 0xFFFF;

[[noreturn]] void damaged(PageNumber page)
{
    throw Error(Fault::Damaged, "повреждено описание таблицы", page);
}

// Reads forward and never past the end.
class Reader
{
public:
    Reader(ByteView bytes, const CodePage& codePage, PageNumber page)
        : m_bytes(bytes)
        , m_codePage(codePage)
        , m_page(page)
    {}
    ByteView take(std::size_t count)
    {
        if (m_bytes.size() < count)
            damaged(m_page);
        const ByteView part = m_bytes.first(count);
        m_bytes = m_bytes.subspan(count);
        return part;
    }
    std::uint8_t u8() { return take(1)[0]; }
    std::uint16_t u16() { return get16(take(2), 0); }
    std::uint32_t u32() { return get32(take(4), 0); }
    RowPointer pointer() { return RowPointer::unpack(u32()); }
    std::size_t atMost(std::size_t count, std::size_t limit) const
    {
        if (count > limit)
            damaged(m_page);
        return count;
    }
    std::string name()
    {
        const std::size_t length = u8();
        if (length == 0)
            damaged(m_page);
        return m_codePage.toUtf8(take(length));
    }

private:
    ByteView m_bytes;
    const CodePage& m_codePage;
    PageNumber m_page;
};

Bytes definitionBytes(const Pages& pages, PageNumber first)
{
    Bytes bytes;
    PageNumber number = first;
    for (PageNumber seen = 0; number != 0; ++seen) {
        const Page page = pages.read(number);
        if (page[0] != static_cast<std::uint8_t>(PageType::Definition) || seen >= pages.count())
            damaged(number);
        bytes.insert(bytes.end(), page.begin() + (number == first ? 0 : kPageHeader), page.end());
        number = get32(page, 4);
    }
    return bytes;
}

ColumnDefinition readColumn(Reader& reader)
{
    ColumnDefinition column;
    column.storedType = reader.u8();
    column.id = reader.u16();
    column.slot = reader.u16();
    column.ordinal = reader.u16();
    reader.take(2 + 2 + 2); // unknown, collation, code page
    column.flags1 = reader.u8();
    column.fixedOffset = reader.u16();
    column.length = reader.u16();
    return column;
}

RealIndex readRealIndex(Reader& reader)
{
    RealIndex index;
    for (std::size_t i = 0; i < kIndexColumns; ++i) {
        const std::uint16_t column = reader.u16();
        const bool descending = reader.u8() == 0;
        if (column != kNoColumn)
            index.columns.push_back({column, descending});
    }
    index.pageMap = reader.pointer();
    index.root = reader.u32();
    index.flags = reader.u8() | indexflag::kAlways;
    return index;
}

LogicalIndex readLogicalIndex(Reader& reader)
{
    LogicalIndex index;
    index.number = reader.u32();
    index.real = reader.u32();
    index.relationSide = reader.u8();
    index.partner = static_cast<std::int32_t>(reader.u32());
    index.partnerTable = reader.u32();
    index.cascadeUpdates = reader.u8();
    index.cascadeDeletes = reader.u8();
    index.type = reader.u8();
    return index;
}

void check(const Definition& definition)
{
    for (const ColumnDefinition& column : definition.columns) {
        const std::size_t end = std::size_t{column.fixedOffset} + column.length;
        const bool inRow = !column.isFixed() || column.isBoolean() || end <= kPageSize;
        if (column.id >= definition.nextColumnId || !inRow)
            damaged(definition.page);
    }
    for (const RealIndex& index : definition.realIndexes) {
        for (const RealIndexColumn& column : index.columns) {
            if (definition.columnPositionById(column.columnId) < 0)
                damaged(definition.page);
        }
    }
    for (const LogicalIndex& index : definition.logicalIndexes) {
        if (index.real >= definition.realIndexes.size())
            damaged(definition.page);
    }
}

} // namespace

Definition readDefinition(const Pages& pages, PageNumber page)
{
    const Bytes bytes = definitionBytes(pages, page);
    Reader reader(bytes, pages.codePage(), page);
    reader.take(kCounters);
    Definition definition;
    definition.page = page;
    definition.rowCount = reader.u32();
    definition.lastAutoNumber = reader.u32();
    definition.tableType = reader.u8();
    definition.nextColumnId = reader.u16();
    definition.variableSlots = reader.u16();
    const std::size_t columns = reader.atMost(reader.u16(), kMaxColumns);
    const std::size_t logical = reader.atMost(reader.u32(), kMaxIndexes);
    const std::size_t real = reader.atMost(reader.u32(), kMaxIndexes);
    definition.ownedMap = reader.pointer();
    definition.freeSpaceMap = reader.pointer();
    reader.take(8 * real);
    for (std::size_t i = 0; i < columns; ++i)
        definition.columns.push_back(readColumn(reader));
    for (ColumnDefinition& column : definition.columns)
        column.name = reader.name();
    for (std::size_t i = 0; i < real; ++i)
        definition.realIndexes.push_back(readRealIndex(reader));
    for (std::size_t i = 0; i < logical; ++i)
        definition.logicalIndexes.push_back(readLogicalIndex(reader));
    for (LogicalIndex& index : definition.logicalIndexes)
        index.name = reader.name();
    check(definition);
    return definition;
}

} // namespace jet::jet3
