#include "tests/support/jet3file.h"

#include "jet/storage/bytes.h"
#include "jet/storage/rc4.h"

#include <algorithm>
#include <cstring>

namespace jet::test {

namespace {

using Bytes = Jet3File::Bytes;

constexpr std::uint32_t kLongValueOwner = 0x4C41564C;
constexpr std::size_t kSlots = 10;
constexpr std::size_t kInlineLimit = 32;
constexpr std::size_t kMostInRow = 2034;
constexpr unsigned kMoved = 0x4000, kDataOfMoved = 0x8000, kDeleted = 0xC000;

void add(Bytes& out, std::uint64_t value, std::size_t size)
{
    for (; size > 0; --size, value >>= 8)
        out.push_back(static_cast<std::uint8_t>(value));
}

void append(Bytes& out, const Bytes& more)
{
    out.insert(out.end(), more.begin(), more.end());
}

void addName(Bytes& out, const std::string& name)
{
    out.push_back(static_cast<std::uint8_t>(name.size()));
    append(out, Jet3File::text(name));
}

bool isFixed(const Jet3File::Column& column)
{
    return (column.flags & 1) != 0;
}

bool isBoolean(const Jet3File::Column& column)
{
    return column.type == 1;
}

// Offsets of slots 0..v, the last being the end, behind the items; then jumps, count of slots.
Bytes trailer(const std::vector<std::size_t>& offsets, std::size_t maskBytes)
{
    const std::size_t dataEnd = offsets.back();
    std::size_t jumps = 0;
    while (jumps != (dataEnd + offsets.size() + jumps + 1 + maskBytes - 1) / 256)
        ++jumps;
    Bytes out;
    for (std::size_t slot = offsets.size(); slot-- > 0;)
        out.push_back(static_cast<std::uint8_t>(offsets[slot]));
    for (std::size_t jump = jumps; jump-- > 0;) {
        const auto first = std::find_if(offsets.begin(), offsets.end(),
                                        [&](std::size_t o) { return o >= 256 * (jump + 1); });
        out.push_back(first == offsets.end() ? std::uint8_t{0xFF}
                                             : static_cast<std::uint8_t>(first - offsets.begin()));
    }
    out.push_back(static_cast<std::uint8_t>(offsets.size() - 1));
    return out;
}

} // namespace

Bytes Jet3File::text(const std::string& characters)
{
    return {characters.begin(), characters.end()};
}

Bytes Jet3File::number(std::uint64_t value, std::size_t size)
{
    Bytes out;
    add(out, value, size);
    return out;
}

Bytes Jet3File::real(double value)
{
    std::uint64_t bits;
    std::memcpy(&bits, &value, sizeof bits);
    return number(bits, sizeof bits);
}

std::uint32_t Jet3File::addPage(std::uint8_t type, std::uint32_t owner)
{
    Page page{};
    page[0] = type;
    page[1] = 1;
    put32(page, 4, owner);
    if (type == 1)
        put16(page, 2, kPageSize - kSlots);
    m_pages.push_back(page);
    return static_cast<std::uint32_t>(m_pages.size() - 1);
}

std::optional<Jet3File::Place> Jet3File::addRow(std::uint32_t number, const Bytes& row,
                                                unsigned flags)
{
    Page& page = m_pages[number];
    const std::size_t count = get16(page, 8);
    const std::size_t end =
        count == 0 ? kPageSize : get16(page, kSlots + 2 * (count - 1)) & std::size_t{0x1FFF};
    if (count == 255 || end < kSlots + 2 * (count + 1) + row.size())
        return std::nullopt;
    const std::size_t offset = end - row.size();
    std::copy(row.begin(), row.end(), page.begin() + static_cast<std::ptrdiff_t>(offset));
    put16(page, kSlots + 2 * count, static_cast<std::uint16_t>(offset | flags));
    put16(page, 8, static_cast<std::uint16_t>(count + 1));
    put16(page, 2, static_cast<std::uint16_t>(offset - kSlots - 2 * (count + 1)));
    return Place{number, static_cast<std::uint8_t>(count)};
}

Jet3File::Place Jet3File::place(std::vector<std::uint32_t>& pages, std::uint32_t owner,
                                const Bytes& row, unsigned flags)
{
    if (!pages.empty()) {
        if (const auto placed = addRow(pages.back(), row, flags))
            return *placed;
    }
    pages.push_back(addPage(1, owner));
    return addRow(pages.back(), row, flags).value();
}

Bytes Jet3File::longValue(const Bytes& data)
{
    Bytes item;
    if (data.size() <= kInlineLimit) {
        add(item, data.size() | 0x80000000u, 12);
        append(item, data);
        return item;
    }
    if (data.size() <= kMostInRow) {
        const Place row = place(m_longValuePages, kLongValueOwner, data, 0);
        add(item, data.size() | 0x40000000u, 4);
        add(item, row.page << 8 | row.row, 8);
        return item;
    }
    std::uint32_t next = 0; // written from the end
    std::size_t end = data.size();
    while (end > 0) {
        const std::size_t begin = end - 1 - (end - 1) % (kMostInRow - 4);
        Bytes part;
        add(part, next, 4);
        part.insert(part.end(), data.begin() + static_cast<std::ptrdiff_t>(begin),
                    data.begin() + static_cast<std::ptrdiff_t>(end));
        const Place row = *addRow(addPage(1, kLongValueOwner), part, 0);
        next = row.page << 8 | row.row;
        end = begin;
    }
    add(item, data.size(), 4);
    add(item, next, 8);
    return item;
}

Bytes Jet3File::encodeRow(const Table& table, const Row& row)
{
    Bytes out = {static_cast<std::uint8_t>(table.columns.size())};
    Bytes mask((table.columns.size() + 7) / 8);
    for (std::size_t i = 0; i < table.columns.size(); ++i) {
        const Column& column = table.columns[i];
        if (row[i])
            mask[i / 8] = static_cast<std::uint8_t>(mask[i / 8] | 1u << i % 8);
        if (isFixed(column) && !isBoolean(column)) {
            Bytes item = row[i].value_or(Bytes());
            item.resize(column.length);
            append(out, item);
        }
    }
    std::vector<std::size_t> offsets;
    for (std::size_t i = 0; i < table.columns.size(); ++i) {
        const Column& column = table.columns[i];
        if (isFixed(column))
            continue;
        offsets.push_back(out.size());
        if (row[i])
            append(out, column.type == 11 || column.type == 12 ? longValue(*row[i]) : *row[i]);
    }
    if (!offsets.empty()) {
        offsets.push_back(out.size());
        append(out, trailer(offsets, mask.size()));
    }
    append(out, mask);
    return out;
}

Bytes Jet3File::map(const std::vector<std::uint32_t>& pages, bool byReference)
{
    Bytes row(133);
    if (!byReference) {
        for (const std::uint32_t page : pages)
            row.at(5 + page / 8) = static_cast<std::uint8_t>(row.at(5 + page / 8) | 1u << page % 8);
        return row;
    }
    row[0] = 1;
    for (const std::uint32_t page : pages) {
        const std::size_t entry = 1 + 4 * (page / 16352);
        if (get32(row, entry) == 0)
            put32(row, entry, addPage(5, 0));
        std::uint8_t& bits = m_pages[get32(row, entry)].at(4 + page % 16352 / 8);
        bits = static_cast<std::uint8_t>(bits | 1u << page % 8);
    }
    return row;
}

void Jet3File::writeTable(const Table& table, std::uint32_t page)
{
    std::vector<std::uint32_t> pages;
    std::vector<std::uint32_t> movedPages;
    int number = 0;
    for (const Row& row : table.rows) {
        ++number;
        const Bytes bytes = encodeRow(table, row);
        if (table.deleteEvery != 0 && number % table.deleteEvery == 0)
            place(pages, page, bytes, kDeleted);
        if (table.moveEvery == 0 || number % table.moveEvery != 0) {
            place(pages, page, bytes, 0);
            continue;
        }
        const Place moved = place(movedPages, page, bytes, kDataOfMoved);
        Bytes pointer;
        add(pointer, moved.page << 8 | moved.row, 4);
        pointer.resize(bytes.size(), 0xEE);
        place(pages, page, pointer, kMoved);
    }
    pages.insert(pages.end(), movedPages.begin(), movedPages.end());
    const bool byReference =
        table.mapOfMaps
        || (!pages.empty() && *std::max_element(pages.begin(), pages.end()) >= 1024);
    const Bytes owned = map(pages, byReference);
    const std::uint32_t mapPage = addPage(1, 0);
    addRow(mapPage, owned, 0);
    addRow(mapPage, Bytes(133), 0);
    writeDefinition(definition(table, mapPage), page);
}

Bytes Jet3File::definition(const Table& table, std::uint32_t mapPage) const
{
    const std::size_t indexes = table.indexes.size();
    const auto variable = static_cast<std::size_t>(
        std::count_if(table.columns.begin(), table.columns.end(),
                      [](const Column& column) { return !isFixed(column); }));
    Bytes out(12);
    add(out, table.rows.size(), 4);
    add(out, table.lastCounter, 4);
    out.push_back(table.name.starts_with("MSys") ? 0x53 : 0x4E);
    add(out, table.columns.size(), 2);
    add(out, variable, 2);
    add(out, table.columns.size(), 2);
    add(out, indexes, 4);
    add(out, indexes, 4);
    add(out, mapPage << 8, 4);
    add(out, mapPage << 8 | 1, 4);
    out.resize(out.size() + 8 * indexes);
    std::size_t id = 0, slot = 0, offset = 0;
    for (const Column& column : table.columns) {
        out.push_back(column.type);
        add(out, id, 2);
        add(out, slot, 2);
        add(out, id, 2);
        add(out, 0, 2);
        add(out, 0x0409, 2);
        add(out, codePage, 2);
        out.push_back(column.flags);
        add(out, isFixed(column) ? offset : 0, 2);
        add(out, column.length, 2);
        if (!isFixed(column))
            ++slot;
        else if (!isBoolean(column))
            offset += column.length;
        ++id;
    }
    for (const Column& column : table.columns)
        addName(out, column.name);
    for (const Index& index : table.indexes) {
        for (std::size_t i = 0; i < 10; ++i) {
            add(out, i < index.columns.size() ? index.columns[i] : 0xFFFFu, 2);
            out.push_back(1);
        }
        add(out, 0, 8);
        out.push_back(index.flags);
    }
    for (std::size_t i = 0; i < indexes; ++i) {
        const Index& index = table.indexes[i];
        const bool linked = index.partnerTable >= 0;
        add(out, i, 4);
        add(out, i, 4);
        out.push_back(index.side);
        add(out, static_cast<std::uint32_t>(index.partner), 4);
        add(out, linked ? m_tablePages[static_cast<std::size_t>(index.partnerTable)] : 0, 4);
        add(out, linked ? 0 : 0x0404, 2);
        out.push_back(index.type);
    }
    for (const Index& index : table.indexes)
        addName(out, index.name);
    add(out, 0xFFFF, 2);
    put32(out, 8, static_cast<std::uint32_t>(out.size()));
    return out;
}

void Jet3File::writeDefinition(const Bytes& bytes, std::uint32_t page)
{
    std::size_t at = 0;
    for (std::uint32_t number = page; at < bytes.size();) {
        const std::size_t from = at == 0 ? 0 : 8;
        const std::size_t count = std::min(bytes.size() - at, kPageSize - from);
        std::copy_n(bytes.begin() + static_cast<std::ptrdiff_t>(at), count,
                    m_pages[number].begin() + static_cast<std::ptrdiff_t>(from));
        at += count;
        const std::uint32_t next = at < bytes.size() ? addPage(2, 0) : 0;
        Page& written = m_pages[number];
        put32(written, 0, 0x43560102); // 02 01 "VC"
        put32(written, 4, next);
        number = next;
    }
}

void Jet3File::writeHeader()
{
    Page& page = m_pages[0];
    page[1] = 1;
    const std::string name = "Standard Jet DB";
    std::copy(name.begin(), name.end(), page.begin() + 4);
    put32(page, 0x18, 0x100);
    put32(page, 0x1C, 0x101);
    for (std::uint32_t i = 0; i < 4; ++i)
        put32(page, 0x20 + std::size_t{4} * i, 2 + i);
    put16(page, 0x3A, 0x0409);
    put16(page, 0x3C, codePage);
    put32(page, 0x3E, key);
    std::copy(password.begin(), password.end(), page.begin() + 0x42);
    applyRc4(0x6B39DAC7, ByteSpan(page).subspan(0x18, 126));
}

Jet3File::Row Jet3File::objectRow(const Object& object, const Bytes& properties) const
{
    return {number(object.id, 4),
            number(object.parent, 4),
            text(object.name),
            number(static_cast<std::uint16_t>(object.type), 2),
            real(36000.5),
            real(36001.25),
            Bytes{0x03, 0x01},
            number(object.flags, 4),
            properties.empty() ? Item() : Item(properties)};
}

std::vector<Jet3File::Column> Jet3File::queryColumns()
{
    return {{"ObjectId", 4, 4, 3}, {"Attribute", 2, 1, 3}, {"Order", 9, 255, 2},
            {"Name1", 10, 255, 2}, {"Name2", 10, 255, 2},  {"Expression", 12, 0, 2},
            {"Flag", 3, 2, 3}};
}

std::vector<Jet3File::Column> Jet3File::relationshipColumns()
{
    return {{"szRelationship", 10, 255, 2},
            {"grbit", 4, 4, 3},
            {"ccolumn", 4, 4, 3},
            {"icolumn", 4, 4, 3},
            {"szObject", 10, 255, 2},
            {"szColumn", 10, 255, 2},
            {"szReferencedObject", 10, 255, 2},
            {"szReferencedColumn", 10, 255, 2}};
}

Bytes Jet3File::bytes()
{
    m_pages.assign(1, Page{});
    m_longValuePages.clear();
    m_tablePages.clear();
    const std::uint32_t globalMap = addPage(1, 1);
    addRow(globalMap, Bytes(133), 0);
    addRow(globalMap, Bytes(133), 0);
    for (int i = 0; i < 4; ++i)
        addPage(2, 0);
    Table catalogue{"MSysObjects",
                    {{"Id", 4, 4, 3},
                     {"ParentId", 4, 4, 3},
                     {"Name", 10, 64, 2},
                     {"Type", 3, 2, 3},
                     {"DateCreate", 8, 8, 3},
                     {"DateUpdate", 8, 8, 3},
                     {"Owner", 9, 255, 2},
                     {"Flags", 4, 4, 3},
                     {"LvProp", 11, 0, 2}},
                    {}};
    Table system[] = {
        {"MSysACEs",
         {{"ObjectId", 4, 4, 3}, {"SID", 9, 255, 2}, {"ACM", 4, 4, 3}, {"FInheritable", 1, 1, 3}},
         {{number(0x0F000001, 4), Bytes{0x03, 0x01}, number(0xF00FE, 4), Bytes()}}},
        {"MSysQueries", queryColumns(), queries},
        {"MSysRelationships", relationshipColumns(), relationships}};
    const auto list = [&](const Object& object, const Bytes& properties = {}) {
        catalogue.rows.push_back(objectRow(object, properties));
    };
    list({0x0F000001, 0x0F000000, "Tables", 3, 0x80000000});
    list({0x0F000002, 0x0F000000, "Databases", 3, 0x80000000});
    list({0x0F000003, 0x0F000000, "Relationships", 3, 0x80000000});
    list({2, 0x0F000001, "MSysObjects", 1, 0x80000000});
    for (std::uint32_t i = 0; i < 3; ++i)
        list({3 + i, 0x0F000001, system[i].name, 1, 0x80000000});
    for (const Table& table : tables) {
        m_tablePages.push_back(addPage(2, 0));
        list({m_tablePages.back(), 0x0F000001, table.name, 1, 0}, table.properties);
        system[0].rows.push_back(
            {number(m_tablePages.back(), 4), Bytes{0x03, 0x01}, number(0xF00FE, 4), std::nullopt});
    }
    for (const Object& object : objects)
        list(object);
    writeTable(catalogue, 2);
    for (std::uint32_t i = 0; i < 3; ++i)
        writeTable(system[i], 3 + i);
    for (std::size_t i = 0; i < tables.size(); ++i)
        writeTable(tables[i], m_tablePages[i]);
    writeHeader();
    Bytes file;
    for (std::uint32_t number = 0; number < m_pages.size(); ++number) {
        if (key != 0 && number != 0)
            applyRc4(key ^ number, m_pages[number]);
        file.insert(file.end(), m_pages[number].begin(), m_pages[number].end());
    }
    return file;
}

} // namespace jet::test
