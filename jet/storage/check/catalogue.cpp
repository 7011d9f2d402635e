#include "jet/storage/check/catalogue.h"

#include "jet/storage/catalogueobject.h"
#include "jet/storage/check/table.h"
#include "jet/storage/properties.h"
#include "jet/storage/sid.h"
#include "jet/text.h"

#include <algorithm>
#include <iterator>
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
constexpr std::uint8_t kForeignKey = 2; // type of a logical index
constexpr int kLocalTable = 1;
constexpr std::uint32_t kAllRights = 0xFFFFF;

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

// `coded` as it stands in the file.
bool isKnownSid(const Value& coded, std::uint32_t sidKey)
{
    const auto* bytes = coded.as<Bytes>();
    const Bytes plain = bytes ? sid::coded(*bytes, sidKey) : Bytes();
    return plain.size() > 2 // of an account in a workgroup file
           || plain == sid::kAdmin || plain == sid::kUsers || plain == sid::kEngine
           || plain == sid::kCreator;
}

} // namespace

Catalogue::Catalogue(Space& space, Findings& findings)
    : m_space(space)
    , m_findings(findings)
{}

void Catalogue::run()
{
    readObjects();
    checkTables();
    checkObjects();
    checkPermissions();
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
}

void Catalogue::addObject(const Definition& definition, const CheckedRow& row)
{
    Object object;
    object.id = numberOf(definition, row, "Id");
    object.parent = numberOf(definition, row, "ParentId");
    object.flags = numberOf(definition, row, "Flags");
    object.type = static_cast<int>(valueOf(definition, row, "Type").toInteger());
    object.name = valueOf(definition, row, "Name").toText();
    if (const Value blob = valueOf(definition, row, "LvProp"); blob.as<Bytes>())
        object.properties = *blob.as<Bytes>();
    object.row = row.pointer;
    m_objects.push_back(std::move(object));
    if (!isKnownSid(valueOf(definition, row, "Owner"), m_space.pager().header().sidKey))
        m_findings.harmful(std::string(kObjects), "объект неизвестного владельца", row.pointer.page,
                           row.pointer.row);
}

void Catalogue::checkTables()
{
    for (const Object& object : m_objects) {
        if (object.type != kLocalTable)
            continue;
        m_tablePages.emplace(foldName(object.name), object.id);
        if (object.id == kObjectsPage)
            continue;
        if (m_tables.contains(object.id)) {
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
    if (table == kPermissionsPage) {
        return [&](const CheckedRow& row) {
            addPermission(numberOf(definition, row, "ObjectId"), numberOf(definition, row, "ACM"),
                          valueOf(definition, row, "SID"), row.pointer);
        };
    }
    return [&](const CheckedRow& row) {
        const auto text = [&](const char* column) {
            return valueOf(definition, row, column).toText();
        };
        m_relations.push_back({text("szObject"), text("szColumn"), text("szReferencedObject"),
                               text("szReferencedColumn"), row.pointer});
    };
}

void Catalogue::addPermission(std::uint32_t object, std::uint32_t rights, const Value& sid,
                              RowPointer row)
{
    if ((rights & ~kAllRights) != 0)
        m_findings.harmful(std::string(kPermissions), "неизвестные права", row.page, row.row);
    if (!isKnownSid(sid, m_space.pager().header().sidKey))
        m_findings.harmful(std::string(kPermissions), "права неизвестного пользователя", row.page,
                           row.row);
    m_permitted.insert(object);
    m_permissions.emplace_back(object, row);
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
        std::string(kObjects), [&] { const Properties parsed(object.properties); }, object.row.page,
        object.row.row);
}

void Catalogue::checkPermissions()
{
    std::set<std::uint32_t> ids;
    for (const Object& object : m_objects) {
        ids.insert(object.id);
        const bool system =
            (object.flags & (objectflag::kEngineSystem | objectflag::kAccessSystem)) != 0;
        if (object.type == kLocalTable && !system && !m_permitted.contains(object.id))
            m_findings.harmful(object.name, "на таблицу ни у кого нет прав", object.row.page,
                               object.row.row);
    }
    for (const auto& [object, row] : m_permissions) {
        if (!ids.contains(object))
            m_findings.harmful(std::string(kPermissions), "права на объект, которого нет", row.page,
                               row.row);
    }
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
    for (const Relation& relation : m_relations) {
        if (!hasColumn(relation.table, relation.column)
            || !hasColumn(relation.otherTable, relation.otherColumn))
            m_findings.harmless(std::string(kRelations), "связь по полю, которого нет",
                                relation.row.page, relation.row.row);
    }
}

// The two indexes of a relationship name each other.
void Catalogue::checkPartners()
{
    for (const auto& entry : m_tables) {
        const PageNumber page = entry.first;
        for (const LogicalIndex& index : entry.second.logicalIndexes) {
            if (index.type != kForeignKey)
                continue;
            const auto other = m_tables.find(index.partnerTable);
            const bool found =
                other != m_tables.end()
                && std::any_of(other->second.logicalIndexes.begin(),
                               other->second.logicalIndexes.end(), [&](const LogicalIndex& o) {
                                   return static_cast<std::int32_t>(o.number) == index.partner
                                          && o.partner == static_cast<std::int32_t>(index.number)
                                          && o.partnerTable == page
                                          && o.relationSide != index.relationSide;
                               });
            if (!found)
                m_findings.harmful("", "у индекса связи «" + index.name + "» нет ответного индекса",
                                   page);
        }
    }
}

} // namespace jet::check
