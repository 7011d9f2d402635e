#include "jet/storage/check/catalogue.h"

#include "jet/storage/check/properties.h"
#include "jet/storage/check/table.h"
#include "jet/storage/sid.h"
#include "jet/text.h"

#include <algorithm>
#include <set>
#include <string_view>
#include <utility>

namespace jet::check {
namespace {

constexpr PageNumber kObjectsPage = 2;
constexpr PageNumber kPermissionsPage = 3;
constexpr PageNumber kQueriesPage = 4;
constexpr PageNumber kRelationsPage = 5;
constexpr std::string_view kObjects = "MSysObjects";
constexpr std::string_view kPermissions = "MSysACEs";
constexpr std::string_view kRelations = "MSysRelationships";
constexpr std::uint32_t kRootParent = 0x0F000000;
constexpr std::uint8_t kReferenced = 1; // sides of a relationship
constexpr std::uint8_t kReferencing = 2;

// The value of a column by name; NULL when there is none.
Value valueOf(const Definition& definition, const CheckedRow& row, std::string_view column)
{
    const int position = definition.columnPosition(column);
    return position < 0 ? Value() : row.values[static_cast<std::size_t>(position)];
}

std::uint32_t numberOf(const Definition& definition, const CheckedRow& row, std::string_view column)
{
    return static_cast<std::uint32_t>(valueOf(definition, row, column).toInteger());
}

void requireValues(const Definition& definition, const CheckedRow& row,
                   std::initializer_list<std::string_view> columns)
{
    for (const std::string_view column : columns) {
        if (valueOf(definition, row, column).isNull())
            throw Error(Fault::Damaged, "не заполнено поле " + std::string(column));
    }
}

} // namespace

Catalogue::Catalogue(Space& space, Findings& findings)
    : m_space(space)
    , m_findings(findings)
    , m_permissions(findings)
{}

void Catalogue::run()
{
    readObjects();
    checkTables();
    checkObjects();
    m_permissions.check(m_objects);
    checkRelations();
    checkPartners();
}

// The visitors need the definitions before checkTable() has given them back.
void Catalogue::readObjects()
{
    const std::string table(kObjects);
    Definition definition;
    try {
        definition = readDefinition(m_space.pager(), kObjectsPage);
    } catch (const Error&) { // checkTable() tells about it
    }
    auto checked = checkTable(m_space, m_findings, table, kObjectsPage,
                              [&](const CheckedRow& row) { addObject(definition, row); });
    if (checked)
        m_tables.emplace(kObjectsPage, std::move(*checked));
    m_tableNames.emplace(kObjectsPage, table);
}

Bytes Catalogue::accountOf(const Value& sid) const
{
    const auto* bytes = sid.as<Bytes>();
    return bytes ? sid::coded(*bytes, m_space.pager().header().sidKey) : Bytes();
}

void Catalogue::addObject(const Definition& definition, const CheckedRow& row)
{
    requireValues(definition, row, {"Id", "ParentId", "Name", "Type"});
    Object object;
    object.id = numberOf(definition, row, "Id");
    object.parent = numberOf(definition, row, "ParentId");
    object.flags = numberOf(definition, row, "Flags");
    object.type = static_cast<int>(valueOf(definition, row, "Type").toInteger());
    object.name = valueOf(definition, row, "Name").toText();
    object.owner = accountOf(valueOf(definition, row, "Owner"));
    if (const Value blob = valueOf(definition, row, "LvProp"); blob.as<Bytes>())
        object.properties = *blob.as<Bytes>();
    object.row = row.pointer;
    if (!isKnownAccount(object.owner))
        m_findings.harmful(std::string(kObjects), "объект неизвестного владельца", row.pointer.page,
                           row.pointer.row);
    m_objects.push_back(std::move(object));
}

void Catalogue::checkTables()
{
    for (const Object& object : m_objects) {
        if (!object.isLocalTable())
            continue;
        m_tablePages.emplace(foldName(object.name), object.id);
        if (object.id == kObjectsPage)
            continue;
        if (!m_tableNames.emplace(object.id, object.name).second) {
            m_findings.harmful(std::string(kObjects), "номер объекта повторяется", object.row.page,
                               object.row.row);
            continue;
        }
        Definition definition;
        const Rows::Visitor visit = visitorOf(object.id, definition);
        if (auto checked = checkTable(m_space, m_findings, object.name, object.id, visit))
            m_tables.emplace(object.id, std::move(*checked));
    }
}

// Who needs the rows of a table besides its own check: nobody but for two of them. Fills
// `definition`, which the visitor uses.
Rows::Visitor Catalogue::visitorOf(PageNumber table, Definition& definition)
{
    if (table != kPermissionsPage && table != kRelationsPage)
        return {};
    try {
        definition = readDefinition(m_space.pager(), table);
    } catch (const Error&) {
        return {}; // checkTable() tells about it
    }
    if (table == kPermissionsPage)
        return [&](const CheckedRow& row) { addPermission(definition, row); };
    return [&](const CheckedRow& row) { addRelation(definition, row); };
}

void Catalogue::addPermission(const Definition& definition, const CheckedRow& row)
{
    requireValues(definition, row, {"ObjectId", "ACM", "SID"});
    Permission permission;
    permission.object = numberOf(definition, row, "ObjectId");
    permission.rights = numberOf(definition, row, "ACM");
    permission.account = accountOf(valueOf(definition, row, "SID"));
    permission.inheritable = numberOf(definition, row, "FInheritable") != 0;
    permission.row = row.pointer;
    m_permissions.add(std::move(permission));
}

void Catalogue::addRelation(const Definition& definition, const CheckedRow& row)
{
    const auto text = [&](const char* column) { return valueOf(definition, row, column).toText(); };
    m_relations.push_back({text("szRelationship"), text("szObject"), text("szColumn"),
                           text("szReferencedObject"), text("szReferencedColumn"), row.pointer});
}

void Catalogue::checkObjects()
{
    const std::string table(kObjects);
    if (m_objects.empty()) {
        m_findings.harmful(table, "не удалось прочесть ни одного объекта", kObjectsPage);
        return;
    }
    std::set<std::uint32_t> ids{kRootParent};
    for (const Object& object : m_objects)
        ids.insert(object.id);
    std::set<std::pair<std::uint32_t, std::string>> names;
    for (const Object& object : m_objects) {
        if (object.name.empty())
            m_findings.harmful(table, "объект без имени", object.row.page, object.row.row);
        if (!ids.contains(object.parent))
            m_findings.harmful(table, "нет объекта, в который вложен «" + object.name + "»",
                               object.row.page, object.row.row);
        if (!names.emplace(object.parent, foldName(object.name)).second)
            m_findings.harmful(table, "имя «" + object.name + "» повторяется", object.row.page,
                               object.row.row);
        checkProperties(object);
    }
    checkSystemTables();
}

void Catalogue::checkSystemTables()
{
    constexpr std::pair<PageNumber, std::string_view> kSystemTables[] = {
        {kObjectsPage, kObjects},
        {kPermissionsPage, kPermissions},
        {kQueriesPage, "MSysQueries"},
        {kRelationsPage, kRelations},
    };
    for (const auto& [page, name] : kSystemTables) {
        const auto tablePage = m_tablePages.find(foldName(name));
        if (tablePage == m_tablePages.end() || tablePage->second != page)
            m_findings.harmful(std::string(name), "системной таблицы нет в каталоге", page);
    }
}

void Catalogue::checkProperties(const Object& object)
{
    m_findings.attempt(
        std::string(kObjects),
        [&] {
            const std::vector<std::string> columns = checkPropertyBlob(object.properties);
            const auto table = m_tables.find(object.id);
            if (!object.isLocalTable() || table == m_tables.end())
                return;
            for (const std::string& column : columns) {
                if (table->second.columnPosition(column) < 0)
                    m_findings.harmless(object.name, "свойства поля, которого нет: " + column,
                                        object.row.page, object.row.row);
            }
        },
        object.row.page, object.row.row);
}

bool Catalogue::hasColumn(const std::string& table, const std::string& column) const
{
    const auto page = m_tablePages.find(foldName(table));
    if (page == m_tablePages.end())
        return true; // a linked table perhaps
    const auto definition = m_tables.find(page->second);
    return definition == m_tables.end() || definition->second.columnPosition(column) >= 0;
}

void Catalogue::checkRelations()
{
    std::set<std::string> names;
    for (const Object& object : m_objects) {
        if (object.isRelationship())
            names.insert(foldName(object.name));
    }
    for (const Relation& relation : m_relations) {
        const auto harmless = [&](const char* what) {
            m_findings.harmless(std::string(kRelations), what, relation.row.page, relation.row.row);
        };
        if (!names.contains(foldName(relation.name)))
            harmless("связи нет в каталоге");
        if (!hasColumn(relation.table, relation.column)
            || !hasColumn(relation.otherTable, relation.otherColumn))
            harmless("связь по полю, которого нет");
    }
}

bool Catalogue::hasPartner(PageNumber table, const LogicalIndex& index) const
{
    const auto other = m_tables.find(index.partnerTable);
    return other != m_tables.end()
           && std::ranges::any_of(other->second.logicalIndexes, [&](const LogicalIndex& o) {
                  return static_cast<std::int32_t>(o.number) == index.partner
                         && o.partner == static_cast<std::int32_t>(index.number)
                         && o.partnerTable == table
                         && o.relationSide * index.relationSide == kReferenced * kReferencing;
              });
}

// The two indexes of a relationship name each other.
void Catalogue::checkPartners()
{
    for (const auto& entry : m_tables) {
        for (const LogicalIndex& index : entry.second.logicalIndexes) {
            if (index.type == kForeignKey && !hasPartner(entry.first, index))
                m_findings.harmful(m_tableNames.at(entry.first),
                                   "индекс «" + index.name + "»: у связи нет ответного индекса",
                                   entry.first);
        }
    }
}

} // namespace jet::check
