#include "jet/storage/jet3/convert.h"

#include "jet/error.h"
#include "jet/storage/jet3/copytable.h"
#include "jet/storage/jet3/definition.h"
#include "jet/storage/jet3/privatefiles.h"
#include "jet/storage/jet3/rows.h"
#include "jet/storage/properties.h"
#include "jet/storage/sid.h"
#include "jet/storage/store.h"

#include <algorithm>
#include <array>
#include <functional>
#include <map>

namespace jet::jet3 {

namespace {

constexpr std::array<const char*, 4> kSystemTables = {"MSysObjects", "MSysACEs", "MSysQueries",
                                                      "MSysRelationships"};
constexpr PageNumber kFirstSystemTable = 2; // of the new database
constexpr int kLocalTable = 1;

// Text doubles, indexes come on top; whatever needs more leads in circles.
constexpr std::uint64_t kMostGrowth = 6;
constexpr std::uint64_t kEmptyDatabase = std::uint64_t{16} << 20;

Value signedValue(std::uint32_t number)
{
    return std::int64_t{static_cast<std::int32_t>(number)};
}

// The rows of a system table by column name.
class SystemRows
{
public:
    SystemRows(const Pages& pages, PageNumber page)
        : m_definition(readDefinition(pages, page))
        , m_reader(pages, m_definition)
    {}
    bool next() { return m_reader.next(); }
    Value value(std::string_view column) const
    {
        const int position = m_definition.columnPosition(column);
        return position < 0 ? Value() : m_reader.value(static_cast<std::size_t>(position));
    }
    std::uint32_t number(std::string_view column) const
    {
        return static_cast<std::uint32_t>(value(column).toInteger());
    }

private:
    Definition m_definition;
    RowReader m_reader;
};

class Conversion
{
public:
    Conversion(const Pages& from, Store& into)
        : m_from(from)
        , m_into(into)
        , m_sidKey(into.pager().header().sidKey)
    {}

    void run()
    {
        copyTables();
        for (std::size_t i = 0; i < kSystemTables.size(); ++i)
            copySystemTable(i);
    }

private:
    void copyTables();
    void copySystemTable(std::size_t which);
    void clear(Table& table);
    Value converted(std::string_view column, Value value) const;
    Value newId(const Value& id) const;
    Value coded(const Value& sid) const;
    Value properties(const Value& blob) const;

    const Pages& m_from;
    Store& m_into;
    std::uint32_t m_sidKey;
    std::map<std::uint32_t, PageNumber> m_newPages; // of tables, by old page
};

void Conversion::copyTables()
{
    const auto& system = m_from.header().systemTables;
    for (std::size_t i = 0; i < system.size(); ++i)
        m_newPages[system[i]] = kFirstSystemTable + static_cast<PageNumber>(i);
    std::vector<TableCopy> tables;
    for (SystemRows objects(m_from, system[0]); objects.next();) {
        const std::uint32_t id = objects.number("Id");
        if (objects.number("Type") == kLocalTable && m_newPages.count(id) == 0)
            tables.emplace_back(m_from, m_into, id, objects.value("Name").toText());
    }
    for (TableCopy& table : tables) {
        table.createTable();
        m_newPages[table.oldPage()] = table.newPage();
        table.copyRows();
        table.buildIndexes();
    }
    for (TableCopy& table : tables)
        table.nameIndexes(tables);
}

void Conversion::clear(Table& table)
{
    std::vector<RowPointer> rows;
    for (TableScan scan = table.scan(); scan.next();)
        rows.push_back(scan.row().pointer());
    for (const RowPointer row : rows)
        table.erase(row);
}

// The catalogue's own rows give way to those of the older file.
void Conversion::copySystemTable(std::size_t which)
{
    StatementScope scope(m_into);
    Table table(m_into.pager(), m_into.allocator(),
                kFirstSystemTable + static_cast<PageNumber>(which), kSystemTables[which]);
    clear(table);
    const std::vector<ColumnDefinition> columns = table.definition().columns;
    std::vector<Value> row(columns.size());
    for (SystemRows rows(m_from, m_from.header().systemTables[which]); rows.next();) {
        for (std::size_t i = 0; i < columns.size(); ++i)
            row[i] = converted(columns[i].name, rows.value(columns[i].name));
        table.insert(row);
    }
    scope.done();
}

Value Conversion::converted(std::string_view column, Value value) const
{
    if (column == "Id" || column == "ObjectId")
        return newId(value);
    if (column == "Owner" || column == "SID")
        return coded(value);
    if (column == "LvProp")
        return properties(value);
    return value;
}

Value Conversion::newId(const Value& id) const
{
    const auto found = m_newPages.find(static_cast<std::uint32_t>(id.toInteger()));
    return found == m_newPages.end() ? id : signedValue(found->second);
}

// Access 97 keeps accounts plain.
Value Conversion::coded(const Value& account) const
{
    const Bytes* const bytes = account.as<Bytes>();
    return bytes ? Value(sid::coded(*bytes, m_sidKey)) : Value();
}

// Damaged properties are left out, as readers of the present format ignore them too.
Value Conversion::properties(const Value& blob) const
{
    const Bytes* const bytes = blob.as<Bytes>();
    if (!bytes)
        return {};
    try {
        Bytes now = Properties::fromJet3(*bytes, m_from.codePage()).encode();
        return now.empty() ? Value() : Value(std::move(now));
    } catch (const Error&) {
        return {};
    }
}

} // namespace

std::unique_ptr<FileSystem> convertInMemory(std::unique_ptr<File> older,
                                            const std::filesystem::path& path)
{
    const Pages from(std::move(older));
    auto files = std::make_unique<PrivateFiles>(kEmptyDatabase + kMostGrowth * from.fileBytes());
    CreateOptions options;
    options.codePage = from.codePage().number();
    const auto into = Store::create(*files, path, options);
    Conversion(from, *into).run();
    return files;
}

} // namespace jet::jet3
