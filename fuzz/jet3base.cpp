#include "fuzz/jet3base.h"

#include "jet/storage/bytes.h"
#include "jet/storage/definition.h"
#include "jet/storage/jet3/pages.h"
#include "jet/storage/longvalue.h"
#include "jet/storage/rc4.h"

#include <algorithm>
#include <string_view>
#include <vector>

// The layouts stand in jet/storage/jet3; what the reader does not look at is left zero.

namespace jet::fuzz {

namespace {

using jet3::kPageSize;

constexpr std::uint8_t kBoolean = 1, kInteger = 3, kLong = 4, kDate = 8, kBinary = 9, kText = 10,
                       kLongBinary = 11, kMemo = 12;
constexpr std::uint8_t kUserTable = 0x4E, kSystemTable = 0x53;
constexpr std::uint32_t kRegionKey = 0x6B39DAC7; // of the header
constexpr PageNumber kMaps = 6;                  // map rows of all tables
constexpr std::size_t kMapBytes = 5 + 8;         // kind, first page, 64 pages

struct Column
{
    const char* name;
    std::uint8_t type;
    std::uint16_t length; // 0 for types of variable length is fine
    std::uint8_t flags = 0;

    bool isFixed() const { return type <= kDate; }
};

// Little-endian, to the end of the vector.
void add(Bytes& out, std::uint32_t number, int bytes)
{
    for (; bytes > 0; --bytes, number >>= 8)
        out.push_back(static_cast<std::uint8_t>(number));
}

void add(Bytes& out, std::string_view text)
{
    out.insert(out.end(), text.begin(), text.end());
}

class Table
{
public:
    Table(PageNumber page, std::uint8_t type, std::vector<Column> columns)
        : m_page(page)
        , m_type(type)
        , m_columns(std::move(columns))
    {}

    PageNumber page() const { return m_page; }

    // Items as stored, one a column; nothing for NULL. A Boolean is True when not empty.
    void addRow(const std::vector<Bytes>& items)
    {
        Bytes row = {static_cast<std::uint8_t>(m_columns.size())};
        for (std::size_t i = 0; i < items.size(); ++i) {
            Bytes item = items[i];
            if (m_columns[i].isFixed()) {
                item.resize(m_columns[i].type == kBoolean ? 0 : m_columns[i].length);
                row.insert(row.end(), item.begin(), item.end());
            }
        }
        Bytes offsets;
        for (std::size_t i = 0; i < items.size(); ++i) {
            if (m_columns[i].isFixed())
                continue;
            add(offsets, static_cast<std::uint32_t>(row.size()), 1);
            row.insert(row.end(), items[i].begin(), items[i].end());
        }
        add(row, static_cast<std::uint32_t>(row.size()), 1);
        row.insert(row.end(), offsets.rbegin(), offsets.rend());
        add(row, static_cast<std::uint32_t>(offsets.size()), 1);
        std::uint32_t mask = 0;
        for (std::size_t i = 0; i < items.size(); ++i)
            mask |= (items[i].empty() ? 0U : 1U) << i;
        add(row, mask, static_cast<int>(m_columns.size() + 7) / 8);
        m_rows.push_back(std::move(row));
    }
    const std::vector<Bytes>& rows() const { return m_rows; }

    // With an index on the first column where `indexed`.
    Bytes definition(std::uint8_t mapRow, bool indexed) const
    {
        Bytes out = {2, 1, 0x56, 0x43};
        const auto columns = static_cast<std::uint32_t>(m_columns.size());
        const auto variable = static_cast<std::uint32_t>(std::count_if(
            m_columns.begin(), m_columns.end(), [](const Column& c) { return !c.isFixed(); }));
        add(out, 0, 4);
        add(out, 0, 4); // length, set below
        add(out, static_cast<std::uint32_t>(m_rows.size()), 4);
        add(out, 9, 4);
        out.push_back(m_type);
        add(out, columns, 2);
        add(out, variable, 2);
        add(out, columns, 2);
        add(out, indexed ? 1 : 0, 4);
        add(out, indexed ? 1 : 0, 4);
        add(out, RowPointer{kMaps, mapRow}.packed(), 4);
        add(out, RowPointer{kMaps, 0}.packed(), 4);
        out.resize(out.size() + (indexed ? 8 : 0));
        addColumns(out);
        if (indexed)
            addIndex(out);
        put32(out, 8, static_cast<std::uint32_t>(out.size()));
        return out;
    }

private:
    void addColumns(Bytes& out) const
    {
        std::uint32_t id = 0, slot = 0, offset = 0;
        for (const Column& column : m_columns) {
            out.push_back(column.type);
            add(out, id, 2);
            add(out, slot, 2);
            add(out, id++, 2);
            add(out, 0, 4);
            add(out, 0, 2);
            add(out, (column.isFixed() ? columnflag::kFixed : 0U) | column.flags, 1);
            add(out, offset, 2);
            add(out, column.length, 2);
            if (column.isFixed())
                offset += column.type == kBoolean ? 0 : column.length;
            else
                ++slot;
        }
        for (const Column& column : m_columns) {
            const std::string_view name = column.name;
            add(out, static_cast<std::uint32_t>(name.size()), 1);
            add(out, name);
        }
    }

    void addIndex(Bytes& out) const
    {
        add(out, 0, 2);
        add(out, 1, 1);
        for (int i = 1; i < 10; ++i)
            add(out, 0x00FFFF, 3);
        add(out, RowPointer{kMaps, 0}.packed(), 4);
        add(out, 0, 4); // the tree is not read
        out.push_back(indexflag::kUnique | indexflag::kRequired);
        add(out, 0, 4);
        add(out, 0, 4);
        out.push_back(0);
        add(out, 0xFFFFFFFF, 4);
        out.resize(out.size() + 6);
        out.push_back(1); // primary key
        constexpr std::string_view kName = "PrimaryKey";
        add(out, kName.size(), 1);
        add(out, kName);
    }

    PageNumber m_page;
    std::uint8_t m_type;
    std::vector<Column> m_columns;
    std::vector<Bytes> m_rows;
};

Bytes number(std::uint32_t value, int bytes)
{
    Bytes out;
    add(out, value, bytes);
    return out;
}

Bytes text(std::string_view value)
{
    return {value.begin(), value.end()};
}

Bytes longValue(std::uint32_t place, std::uint32_t length, RowPointer row)
{
    Bytes out;
    add(out, place | length, 4);
    add(out, row.isNull() ? 0 : row.packed(), 4);
    add(out, 0, 4);
    return out;
}

Bytes dataPage(std::uint32_t owner, const std::vector<Bytes>& rows)
{
    Bytes page(kPageSize);
    page[0] = page[1] = 1;
    put32(page, 4, owner);
    put16(page, 8, static_cast<std::uint16_t>(rows.size()));
    std::size_t end = kPageSize;
    for (std::size_t i = 0; i < rows.size(); ++i) {
        end -= rows[i].size();
        std::copy(rows[i].begin(), rows[i].end(), page.begin() + static_cast<std::ptrdiff_t>(end));
        put16(page, 10 + 2 * i, static_cast<std::uint16_t>(end));
    }
    return page;
}

Bytes mapOf(PageNumber page)
{
    Bytes row(kMapBytes);
    if (page != 0)
        row[5 + page / 8] = static_cast<std::uint8_t>(1U << page % 8);
    return row;
}

Bytes headerPage(std::uint32_t databaseKey)
{
    Bytes page(kPageSize);
    constexpr std::string_view kStart("\0\1\0\0Standard Jet DB\0", 20);
    std::copy(kStart.begin(), kStart.end(), page.begin());
    put32(page, 0x18, RowPointer{1, 0}.packed());
    for (std::uint32_t i = 0; i < 4; ++i)
        put32(page, 0x20 + 4 * i, 2 + i);
    put16(page, 0x3C, 1251);
    put32(page, 0x3E, databaseKey);
    applyRc4(kRegionKey, ByteSpan(page).subspan(0x18, 126));
    return page;
}

// Page 13 holds a long value in its only row, pages 14 and 15 a chain.
constexpr PageNumber kLongRow = 13;
constexpr std::uint32_t kLongLength = 700, kChainLength = 2500;
constexpr std::uint32_t kLongOwner = 0x4C41564C; // "LVAL"

std::vector<Table> makeTables()
{
    const Column catalogue[] = {
        {"Id", kLong, 4},         {"ParentId", kLong, 4},   {"Type", kInteger, 2},
        {"DateCreate", kDate, 8}, {"DateUpdate", kDate, 8}, {"Flags", kLong, 4},
        {"Name", kText, 64},      {"Owner", kBinary, 255},  {"LvProp", kLongBinary, 0}};
    std::vector<Table> tables;
    tables.emplace_back(2, kSystemTable,
                        std::vector<Column>(std::begin(catalogue), std::end(catalogue)));
    tables.emplace_back(3, kSystemTable,
                        std::vector<Column>{{"ObjectId", kLong, 4},
                                            {"ACM", kLong, 4},
                                            {"FInheritable", kBoolean, 1},
                                            {"SID", kBinary, 255}});
    tables.emplace_back(4, kSystemTable,
                        std::vector<Column>{{"ObjectId", kLong, 4}, {"Name1", kText, 255}});
    tables.emplace_back(5, kSystemTable,
                        std::vector<Column>{{"ccolumn", kLong, 4}, {"szObject", kText, 255}});
    tables.emplace_back(7, kUserTable,
                        std::vector<Column>{{"ID", kLong, 4, columnflag::kAutoNumber},
                                            {"FAM", kText, 50},
                                            {"D_R", kDate, 8},
                                            {"POL", kBoolean, 1},
                                            {"MEMO", kMemo, 0}});
    return tables;
}

void fill(std::vector<Table>& tables)
{
    const auto object = [&](std::uint32_t id, std::uint32_t parent, std::uint32_t type,
                            std::uint32_t flags, const char* name) {
        tables[0].addRow({number(id, 4),
                          number(parent, 4),
                          number(type, 2),
                          number(0, 8),
                          number(0, 8),
                          number(flags, 4),
                          text(name),
                          number(0x0103, 2),
                          {}});
    };
    object(0x0F000001, 0x0F000000, 3, 0x80000000, "Tables");
    object(2, 0x0F000001, 1, 0x80000000, "MSysObjects");
    object(3, 0x0F000001, 1, 0x80000000, "MSysACEs");
    object(4, 0x0F000001, 1, 0x80000000, "MSysQueries");
    object(5, 0x0F000001, 1, 0x80000000, "MSysRelationships");
    object(7, 0x0F000001, 1, 0, "SPSTUD");
    tables[1].addRow({number(7, 4), number(0xFFFFF, 4), {}, number(0x0103, 2)});
    tables[1].addRow({number(0x0F000001, 4), number(0xFFFFF, 4), number(1, 1), number(0x0103, 2)});
    constexpr std::uint32_t kInline = 0x80000000, kRow = 0x40000000;
    Bytes inlined = longValue(kInline, 5, {});
    add(inlined, "memo.");
    const Bytes memos[] = {{},
                           inlined,
                           longValue(kRow, kLongLength, {kLongRow, 0}),
                           longValue(0, kChainLength, {kLongRow + 1, 0})};
    for (std::uint32_t i = 0; i < 8; ++i)
        tables[4].addRow({number(i + 1, 4), i == 5 ? Bytes() : text("\xC8\xE2\xE0\xED\xEE\xE2"),
                          number(0, 8), number(i % 2, i % 2 != 0 ? 1 : 0), memos[i % 4]});
}

void addLongValuePages(std::vector<Bytes>& pages)
{
    pages.push_back(dataPage(kLongOwner, {Bytes(kLongLength, 'r')}));
    Bytes first = number(RowPointer{kLongRow + 2, 0}.packed(), 4);
    Bytes second = number(0, 4);
    first.resize(first.size() + 1500, 'a');
    second.resize(second.size() + kChainLength - 1500, 'b');
    pages.push_back(dataPage(kLongOwner, {first}));
    pages.push_back(dataPage(kLongOwner, {second}));
}

} // namespace

// 0 header, 1 unused, 2-5 system tables, 6 maps, 7 user table, 8-12 rows, 13-15 long values.
Bytes jet3File(std::uint32_t databaseKey)
{
    constexpr PageNumber kFirstRows = 8;
    std::vector<Table> tables = makeTables();
    fill(tables);
    std::vector<Bytes> pages(kFirstRows, Bytes(kPageSize));
    pages[0] = headerPage(databaseKey);
    std::vector<Bytes> maps = {mapOf(0)};
    for (const Table& table : tables) {
        const auto rowsPage = static_cast<PageNumber>(pages.size());
        pages[table.page()] =
            table.definition(static_cast<std::uint8_t>(maps.size()), table.page() == 7);
        pages[table.page()].resize(kPageSize);
        maps.push_back(mapOf(table.rows().empty() ? 0 : rowsPage));
        pages.push_back(dataPage(table.page(), table.rows()));
    }
    pages[kMaps] = dataPage(0, maps);
    addLongValuePages(pages);
    Bytes file;
    for (const Bytes& page : pages)
        file.insert(file.end(), page.begin(), page.end());
    return file;
}

} // namespace jet::fuzz
