#include "jet/storage/catalogue.h"

#include "jet/error.h"
#include "jet/storage/sid.h"
#include "jet/text.h"

#include <algorithm>

namespace jet {

namespace {

constexpr PageNumber kObjectsPage = 2;
constexpr PageNumber kPermissionsPage = 3;
constexpr PageNumber kRelationshipsPage = 5;

constexpr std::uint32_t kTablesContainer = 0x0F000001;
constexpr int kTableType = 1;

// What new tables give in a database that no workgroup file secures.
constexpr std::uint32_t kAdminRights = 0x000F00FE;
constexpr std::uint32_t kUsersRights = 0x000FFEFF;

int column(Table& table, std::string_view name)
{
    const int position = table.definition().columnPosition(name);
    if (position < 0)
        throw Error(Fault::Damaged, "в системной таблице нет поля " + std::string(name),
                    table.name());
    return position;
}

std::uint32_t unsignedAt(const RowView& row, int position)
{
    return row.isNull(position) ? 0 : static_cast<std::uint32_t>(row.integer(position));
}

Value signedValue(std::uint32_t number)
{
    return std::int64_t{static_cast<std::int32_t>(number)};
}

std::string textAt(const RowView& row, int position)
{
    std::string text;
    if (!row.isNull(position))
        row.text(position, text);
    return text;
}

std::vector<Value> allValues(Table& table, const RowView& row)
{
    std::vector<Value> values;
    const auto count = static_cast<int>(table.definition().columns.size());
    values.reserve(table.definition().columns.size());
    for (int position = 0; position < count; ++position)
        values.push_back(row.value(position));
    return values;
}

Value blobValue(const Properties& properties)
{
    Bytes blob = properties.encode();
    return blob.empty() ? Value() : Value(std::move(blob));
}

// Builds the values of a new row by column name.
class NewRow
{
public:
    explicit NewRow(Table& table)
        : m_table(table)
        , m_values(table.definition().columns.size())
    {}
    void set(std::string_view name, Value value)
    {
        m_values[static_cast<std::size_t>(column(m_table, name))] = std::move(value);
    }
    void insert() { m_table.insert(m_values); }

private:
    Table& m_table;
    std::vector<Value> m_values;
};

} // namespace

Catalogue::Catalogue(Pager& pager, OpenTables& tables)
    : m_objectsTable(tables.get(kObjectsPage, "MSysObjects"))
    , m_permissionsTable(tables.get(kPermissionsPage, "MSysACEs"))
    , m_relationshipsTable(tables.get(kRelationshipsPage, "MSysRelationships"))
    , m_pager(pager)
{}

const std::vector<CatalogueObject>& Catalogue::objects()
{
    if (!m_loaded || m_rollbacks != m_pager.rollbackCount())
        reload();
    return m_objects;
}

void Catalogue::reload()
{
    Table& table = m_objectsTable;
    const int id = column(table, "Id"), parent = column(table, "ParentId"),
              name = column(table, "Name"), type = column(table, "Type"),
              flags = column(table, "Flags"), created = column(table, "DateCreate"),
              updated = column(table, "DateUpdate");
    m_loaded = false;
    m_objects.clear();
    m_rows.clear();
    for (TableScan scan = table.scan(); scan.next();) {
        const RowView& row = scan.row();
        CatalogueObject object;
        object.id = unsignedAt(row, id);
        object.parent = unsignedAt(row, parent);
        object.name = textAt(row, name);
        object.type = row.isNull(type) ? 0 : static_cast<int>(row.integer(type));
        object.flags = unsignedAt(row, flags);
        object.created = {row.isNull(created) ? 0 : row.number(created)};
        object.updated = {row.isNull(updated) ? 0 : row.number(updated)};
        m_objects.push_back(std::move(object));
        m_rows.push_back(row.pointer());
    }
    m_rollbacks = m_pager.rollbackCount();
    m_loaded = true;
}

const CatalogueObject* Catalogue::findTable(std::string_view name)
{
    const auto& all = objects();
    const auto found = std::find_if(all.begin(), all.end(), [name](const CatalogueObject& o) {
        return o.isLocalTable() && sameName(o.name, name);
    });
    return found == all.end() ? nullptr : &*found;
}

const CatalogueObject* Catalogue::findName(std::string_view name)
{
    const auto& all = objects();
    const auto found = std::find_if(all.begin(), all.end(), [name](const CatalogueObject& o) {
        return o.parent == kTablesContainer && sameName(o.name, name);
    });
    return found == all.end() ? nullptr : &*found;
}

RowPointer Catalogue::rowOf(std::uint32_t id)
{
    const auto& all = objects();
    const auto found =
        std::find_if(all.begin(), all.end(), [id](const CatalogueObject& o) { return o.id == id; });
    if (found == all.end())
        throw Error(Fault::Damaged, "таблица не записана в каталоге", id);
    return m_rows[static_cast<std::size_t>(found - all.begin())];
}

void Catalogue::addTable(PageNumber definitionPage, const std::string& name,
                         const Properties& properties)
{
    const DateTime now = DateTime::now();
    NewRow row(m_objectsTable);
    row.set("Id", signedValue(definitionPage));
    row.set("ParentId", signedValue(kTablesContainer));
    row.set("Name", name);
    row.set("Type", kTableType);
    row.set("DateCreate", now);
    row.set("DateUpdate", now);
    row.set("Owner", sid::coded(sid::kAdmin, m_pager.header().sidKey));
    row.set("Flags", 0);
    row.set("LvProp", blobValue(properties));
    row.insert();
    m_loaded = false;
    addPermissions(definitionPage, kTablesContainer);
}

void Catalogue::addPermissions(std::uint32_t id, std::uint32_t container)
{
    Table& table = m_permissionsTable;
    const int objectId = column(table, "ObjectId"), inheritable = column(table, "FInheritable"),
              account = column(table, "SID"), mask = column(table, "ACM");
    const std::uint32_t key = m_pager.header().sidKey;
    const Bytes creator = sid::coded(sid::kCreator, key);
    std::vector<std::pair<Bytes, std::uint32_t>> rights;
    const auto grant = [&rights](const Bytes& who, std::uint32_t what) {
        const auto found = std::find_if(rights.begin(), rights.end(),
                                        [&who](const auto& entry) { return entry.first == who; });
        if (found == rights.end())
            rights.emplace_back(who, what);
        else
            found->second |= what;
    };
    for (TableScan scan = table.scan(); scan.next();) {
        const RowView& row = scan.row();
        if (unsignedAt(row, objectId) != container || row.integer(inheritable) == 0)
            continue;
        const Value who = row.value(account);
        if (const Bytes* bytes = who.as<Bytes>())
            grant(*bytes == creator ? sid::coded(sid::kAdmin, key) : *bytes, unsignedAt(row, mask));
    }
    if (rights.empty()) {
        grant(sid::coded(sid::kAdmin, key), kAdminRights);
        grant(sid::coded(sid::kUsers, key), kUsersRights);
    }
    for (const auto& [who, what] : rights) {
        NewRow row(table);
        row.set("ObjectId", signedValue(id));
        row.set("SID", who);
        row.set("ACM", signedValue(what));
        row.set("FInheritable", false);
        row.insert();
    }
}

void Catalogue::remove(std::uint32_t id)
{
    m_objectsTable.erase(rowOf(id));
    m_loaded = false;
    const int objectId = column(m_permissionsTable, "ObjectId");
    std::vector<RowPointer> rows;
    for (TableScan scan = m_permissionsTable.scan(); scan.next();) {
        if (unsignedAt(scan.row(), objectId) == id)
            rows.push_back(scan.row().pointer());
    }
    for (const RowPointer row : rows)
        m_permissionsTable.erase(row);
}

void Catalogue::touch(std::uint32_t id)
{
    update(id, nullptr);
}

void Catalogue::touch(std::uint32_t id, const Properties& properties)
{
    update(id, &properties);
}

void Catalogue::update(std::uint32_t id, const Properties* properties)
{
    const RowPointer pointer = rowOf(id);
    const std::optional<RowView> row = m_objectsTable.find(pointer);
    if (!row)
        throw Error(Fault::Damaged, "таблица не записана в каталоге", id);
    std::vector<Value> values = allValues(m_objectsTable, *row);
    values[static_cast<std::size_t>(column(m_objectsTable, "DateUpdate"))] = DateTime::now();
    if (properties)
        values[static_cast<std::size_t>(column(m_objectsTable, "LvProp"))] = blobValue(*properties);
    m_objectsTable.update(pointer, values);
    m_loaded = false;
}

Properties Catalogue::properties(std::uint32_t id)
{
    const std::optional<RowView> row = m_objectsTable.find(rowOf(id));
    if (!row)
        throw Error(Fault::Damaged, "таблица не записана в каталоге", id);
    const Value blob = row->value(column(m_objectsTable, "LvProp"));
    const Bytes* const bytes = blob.as<Bytes>();
    return bytes ? Properties(*bytes) : Properties();
}

bool Catalogue::hasRelationship(std::string_view name)
{
    Table& table = m_relationshipsTable;
    const int referencing = column(table, "szObject");
    const int referenced = column(table, "szReferencedObject");
    for (TableScan scan = table.scan(); scan.next();) {
        if (sameName(textAt(scan.row(), referencing), name)
            || sameName(textAt(scan.row(), referenced), name))
            return true;
    }
    return false;
}

} // namespace jet
