#include "jet/error.h"
#include "jet/storage/definition.h"
#include "jet/storage/valuecodec.h"
#include "jet/text.h"

#include <algorithm>
#include <set>
#include <string>

// The byte string of a table definition. After the 63-byte header (offsets in hex below)
// follow, without padding and each in the order of the columns or indexes:
//
//     12 bytes  per real index    statistics
//     25 bytes  per column        entry
//     u16 + n   per column        name: byte length, UTF-16LE
//     52 bytes  per real index    block
//     28 bytes  per logical index block
//     u16 + n   per logical index name
//     10 bytes  per Memo or OLE column: id, owned map, free-space map
//     FF FF

namespace jet {

namespace {

constexpr std::size_t kHeaderBytes = 63;
constexpr std::uint32_t kColumnMagic = 1625; // also in the header and logical indexes
constexpr std::uint32_t kIndexMagic = 1923;
constexpr std::uint16_t kNoColumn = 0xFFFF;
constexpr std::size_t kIndexColumns = 10;
constexpr std::size_t kMaxColumns = 255;
constexpr std::size_t kMaxIndexes = 255; // files hold at most 32 logical ones
constexpr std::size_t kMaxNameBytes = 128;
constexpr std::size_t kMaxRowBytes = 4080;

[[noreturn]] void damaged(const std::string& what, PageNumber page)
{
    throw Error(Fault::Damaged, "повреждено описание таблицы: " + what, page);
}

// Reads forward and never past the end.
class Reader
{
public:
    Reader(ByteView bytes, PageNumber page)
        : m_bytes(bytes)
        , m_page(page)
    {}

    ByteView take(std::size_t count)
    {
        if (m_bytes.size() - m_at < count)
            damaged("оно обрывается", m_page);
        const ByteView part = m_bytes.subspan(m_at, count);
        m_at += count;
        return part;
    }
    std::uint8_t u8() { return take(1)[0]; }
    std::uint16_t u16() { return get16(take(2), 0); }
    std::uint32_t u32() { return get32(take(4), 0); }
    RowPointer pointer() { return RowPointer::unpack(u32()); }
    std::string name()
    {
        const std::size_t length = u16();
        if (length == 0 || length > kMaxNameBytes || length % 2 != 0)
            damaged("недопустимое имя", m_page);
        return utf8FromUtf16(take(length));
    }
    void expect32(std::uint32_t value, const char* what)
    {
        if (u32() != value)
            damaged(what, m_page);
    }
    std::size_t at() const { return m_at; }

private:
    ByteView m_bytes;
    std::size_t m_at = 0;
    PageNumber m_page;
};

class Writer
{
public:
    Bytes bytes;

    void u8(std::uint8_t value) { bytes.push_back(value); }
    void u16(std::uint16_t value) { put(value, 2); }
    void u32(std::uint32_t value) { put(value, 4); }
    void zeros(std::size_t count) { bytes.resize(bytes.size() + count); }
    void pointer(RowPointer value) { u32(value.packed()); }
    void name(const std::string& text)
    {
        const Bytes utf16 = utf16FromUtf8(text);
        u16(static_cast<std::uint16_t>(utf16.size()));
        bytes.insert(bytes.end(), utf16.begin(), utf16.end());
    }

private:
    void put(std::uint32_t value, int count)
    {
        for (int i = 0; i < count; ++i)
            bytes.push_back(static_cast<std::uint8_t>(value >> (8 * i)));
    }
};

// Counts of the header that only the byte string needs.
struct Counts
{
    std::size_t columns, logicalIndexes, realIndexes;
};

//   08 u32 length   0C u32 1625       10 u32 rows          14 u32 last autonumber
//   18 u32 step     1C 12 bytes       28 u8 table type     29 u16 next column id
//   2B u16 slots    2D u16 columns    2F u32 logical       33 u32 real indexes
//   37 u32 owned map                  3B u32 free-space map
Counts readHeader(Reader& in, std::size_t size, Definition& d)
{
    in.take(8); // page header
    if (in.u32() != size)
        damaged("не сходится его длина", d.page);
    in.expect32(kColumnMagic, "нет его приметы");
    d.rowCount = in.u32();
    d.lastAutoNumber = in.u32();
    d.autoIncrement = in.u32();
    in.take(12); // uninitialised in engine files
    d.tableType = in.u8();
    d.nextColumnId = in.u16();
    d.variableSlots = in.u16();
    Counts counts{};
    counts.columns = in.u16();
    counts.logicalIndexes = in.u32();
    counts.realIndexes = in.u32();
    d.ownedMap = in.pointer();
    d.freeSpaceMap = in.pointer();
    if (counts.columns > kMaxColumns || d.nextColumnId > kMaxColumns
        || d.variableSlots > kMaxColumns || counts.logicalIndexes > kMaxIndexes
        || counts.realIndexes > counts.logicalIndexes)
        damaged("недопустимое число столбцов или индексов", d.page);
    return counts;
}

//   00 u8 type       01 u32 1625   05 u16 id        07 u16 slot    09 u16 ordinal
//   0B u16 collation 0D u16        0F u8 flags 1    10 u8 flags 2  11 u32 0
//   15 u16 fixed offset            17 u16 length
ColumnDefinition readColumn(Reader& in)
{
    ColumnDefinition c;
    c.storedType = in.u8();
    in.expect32(kColumnMagic, "нет приметы столбца");
    c.id = in.u16();
    c.slot = in.u16();
    c.ordinal = in.u16();
    c.collation = in.u16();
    c.collationVersion = in.u16();
    c.flags1 = in.u8();
    c.flags2 = in.u8();
    in.take(4);
    c.fixedOffset = in.u16();
    c.length = in.u16();
    if (!c.isFixed())
        c.fixedOffset = 0; // uninitialised in engine files
    return c;
}

void writeColumn(Writer& out, const ColumnDefinition& c)
{
    out.u8(c.storedType);
    out.u32(kColumnMagic);
    out.u16(c.id);
    out.u16(c.slot);
    out.u16(c.ordinal);
    out.u16(c.collation);
    out.u16(c.collationVersion);
    out.u8(c.flags1);
    out.u8(c.flags2);
    out.u32(0);
    out.u16(c.fixedOffset);
    out.u16(c.length);
}

//   00 u32 1923      04 10 x (u16 column id, u8 order: 1 ascending)
//   22 u32 page map  26 u32 root   2A u32 uninitialised   2E u8 flags   2F 5 zero bytes
void readRealIndex(Reader& in, RealIndex& index)
{
    in.expect32(kIndexMagic, "нет приметы индекса");
    for (std::size_t i = 0; i < kIndexColumns; ++i) {
        const std::uint16_t id = in.u16();
        const bool descending = in.u8() == 0;
        if (id != kNoColumn)
            index.columns.push_back({id, descending});
    }
    index.pageMap = in.pointer();
    index.root = in.u32();
    in.take(4);
    index.flags = in.u8();
    in.take(5);
}

void writeRealIndex(Writer& out, const RealIndex& index)
{
    out.u32(kIndexMagic);
    for (const RealIndexColumn& column : index.columns) {
        out.u16(column.columnId);
        out.u8(column.descending ? 0 : 1);
    }
    for (std::size_t i = index.columns.size(); i < kIndexColumns; ++i) {
        out.u16(kNoColumn);
        out.u8(0);
    }
    out.pointer(index.pageMap);
    out.u32(index.root);
    out.u32(0);
    out.u8(index.flags);
    out.zeros(5);
}

//   00 u32 1625            04 u32 number          08 u32 real index   0C u8 relation side
//   0D i32 partner, or -1  11 u32 partner's table 15 u8, 16 u8 cascades
//   17 u8 type             18 u32 0
LogicalIndex readLogicalIndex(Reader& in)
{
    LogicalIndex index;
    in.expect32(kColumnMagic, "нет приметы индекса");
    index.number = in.u32();
    index.real = in.u32();
    index.relationSide = in.u8();
    index.partner = static_cast<std::int32_t>(in.u32());
    index.partnerTable = in.u32();
    index.cascadeUpdates = in.u8();
    index.cascadeDeletes = in.u8();
    index.type = in.u8();
    in.take(4);
    return index;
}

void writeLogicalIndex(Writer& out, const LogicalIndex& index)
{
    out.u32(kColumnMagic);
    out.u32(index.number);
    out.u32(index.real);
    out.u8(index.relationSide);
    out.u32(static_cast<std::uint32_t>(index.partner));
    out.u32(index.partnerTable);
    out.u8(index.cascadeUpdates);
    out.u8(index.cascadeDeletes);
    out.u8(index.type);
    out.u32(0);
}

void readColumnMaps(Reader& in, Definition& d)
{
    for (std::uint16_t id = in.u16(); id != kNoColumn; id = in.u16()) {
        const RowPointer owned = in.pointer();
        d.columnMaps.push_back({id, owned, in.pointer()});
    }
}

void checkColumn(const Definition& d, const ColumnDefinition& column)
{
    if (column.id >= d.nextColumnId)
        damaged("номер столбца вне пределов", d.page);
    const std::size_t length = column.isBoolean() ? 0 : column.length;
    if (column.isFixed() && column.fixedOffset + length > kMaxRowBytes)
        damaged("столбец не помещается в строку", d.page);
    if (column.isFixed() && column.length < storedSize(column.type()))
        damaged("столбец короче своего типа", d.page);
    if (column.isFixed() && column.isLongValue())
        damaged("длинное значение в постоянной части строки", d.page);
}

void checkColumns(Definition& d)
{
    std::set<std::uint16_t> ids, slots;
    std::set<std::string> names;
    std::vector<std::pair<std::size_t, std::size_t>> fixed; // first byte, byte behind
    for (const ColumnDefinition& column : d.columns) {
        checkColumn(d, column);
        if (!ids.insert(column.id).second || !names.insert(foldName(column.name)).second)
            damaged("столбец повторяется", d.page);
        if (!column.isFixed() && !slots.insert(column.slot).second)
            damaged("место столбца занято дважды", d.page);
        if (column.isFixed() && !column.isBoolean())
            fixed.emplace_back(column.fixedOffset, column.fixedOffset + column.length);
    }
    std::sort(fixed.begin(), fixed.end());
    for (std::size_t i = 1; i < fixed.size(); ++i) {
        if (fixed[i].first < fixed[i - 1].second)
            damaged("столбцы накладываются", d.page);
    }
    if (!slots.empty() && *slots.rbegin() >= kMaxColumns)
        damaged("номер столбца вне пределов", d.page);
    // Other programs count only the columns that still exist here. Rows written so would
    // lose the last ones, therefore the count is put right.
    if (!slots.empty() && *slots.rbegin() >= d.variableSlots)
        d.variableSlots = static_cast<std::uint16_t>(*slots.rbegin() + 1);
}

void checkIndexes(const Definition& d)
{
    for (const RealIndex& index : d.realIndexes) {
        if (index.columns.empty())
            damaged("индекс без столбцов", d.page);
        for (const RealIndexColumn& column : index.columns) {
            if (d.columnPositionById(column.columnId) < 0)
                damaged("индекс по столбцу, которого нет", d.page);
        }
    }
    std::set<std::uint32_t> numbers;
    for (const LogicalIndex& index : d.logicalIndexes) {
        if (index.real >= d.realIndexes.size() || !numbers.insert(index.number).second)
            damaged("недопустимый номер индекса", d.page);
    }
    for (const ColumnMaps& maps : d.columnMaps) {
        const int position = d.columnPositionById(maps.columnId);
        if (position < 0 || !d.columns[static_cast<std::size_t>(position)].isLongValue())
            damaged("карта страниц столбца, которого нет", d.page);
    }
}

void writeHeader(Writer& out, const Definition& d)
{
    out.zeros(12); // page header and length
    out.u32(kColumnMagic);
    out.u32(d.rowCount);
    out.u32(d.lastAutoNumber);
    out.u32(d.autoIncrement);
    out.zeros(12);
    out.u8(d.tableType);
    out.u16(d.nextColumnId);
    out.u16(d.variableSlots);
    out.u16(static_cast<std::uint16_t>(d.columns.size()));
    out.u32(static_cast<std::uint32_t>(d.logicalIndexes.size()));
    out.u32(static_cast<std::uint32_t>(d.realIndexes.size()));
    out.pointer(d.ownedMap);
    out.pointer(d.freeSpaceMap);
}

} // namespace

Definition decodeDefinition(ByteView bytes, PageNumber page)
{
    static_assert(kHeaderBytes == kDefinitionStatistics);
    Reader in(bytes, page);
    Definition d;
    d.page = page;
    const Counts counts = readHeader(in, bytes.size(), d);
    d.realIndexes.resize(counts.realIndexes);
    for (RealIndex& index : d.realIndexes) {
        index.entriesAtBuild = in.u32();
        index.distinctKeys = in.u32();
        in.take(4);
    }
    for (std::size_t i = 0; i < counts.columns; ++i)
        d.columns.push_back(readColumn(in));
    for (ColumnDefinition& column : d.columns)
        column.name = in.name();
    for (RealIndex& index : d.realIndexes)
        readRealIndex(in, index);
    for (std::size_t i = 0; i < counts.logicalIndexes; ++i)
        d.logicalIndexes.push_back(readLogicalIndex(in));
    for (LogicalIndex& index : d.logicalIndexes)
        index.name = in.name();
    readColumnMaps(in, d);
    if (in.at() != bytes.size())
        damaged("за ним лежит лишнее", page);
    checkColumns(d);
    checkIndexes(d);
    return d;
}

Bytes encodeDefinition(const Definition& d)
{
    Writer out;
    writeHeader(out, d);
    for (const RealIndex& index : d.realIndexes) {
        out.u32(index.entriesAtBuild);
        out.u32(index.distinctKeys);
        out.u32(0);
    }
    for (const ColumnDefinition& column : d.columns)
        writeColumn(out, column);
    for (const ColumnDefinition& column : d.columns)
        out.name(column.name);
    for (const RealIndex& index : d.realIndexes)
        writeRealIndex(out, index);
    for (const LogicalIndex& index : d.logicalIndexes)
        writeLogicalIndex(out, index);
    for (const LogicalIndex& index : d.logicalIndexes)
        out.name(index.name);
    for (const ColumnMaps& maps : d.columnMaps) {
        out.u16(maps.columnId);
        out.pointer(maps.owned);
        out.pointer(maps.freeSpace);
    }
    out.u16(kNoColumn);
    put32(out.bytes, 8, static_cast<std::uint32_t>(out.bytes.size()));
    return out.bytes;
}

} // namespace jet
