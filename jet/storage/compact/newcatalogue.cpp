#include "jet/storage/compact/newcatalogue.h"

#include "jet/storage/catalogueobject.h"
#include "jet/storage/compact/freshdefinition.h"
#include "jet/storage/compact/sourcecatalogue.h"
#include "jet/storage/sid.h"
#include "jet/storage/systemtables.h"
#include "jet/storage/table.h"

#include <algorithm>
#include <initializer_list>
#include <map>
#include <set>
#include <string_view>
#include <utility>

namespace jet::compact {

namespace {

constexpr std::int32_t kEngineFlags = static_cast<std::int32_t>(objectflag::kEngineSystem);

// Objects that the engine makes with every database.
struct StandardObject
{
    std::uint32_t id, parent;
    const char* name;
    int type;
    bool ofEngine; // else of Admin
};
constexpr StandardObject kStandardObjects[] = {
    {0x0F000001, 0x0F000000, "Tables", 3, true},
    {0x0F000002, 0x0F000000, "Databases", 3, true},
    {0x0F000003, 0x0F000000, "Relationships", 3, true},
    {0x10000000, 0x0F000002, "MSysDb", 2, false},
    {2, kTablesContainer, "MSysObjects", kTableType, true},
    {3, kTablesContainer, "MSysACEs", kTableType, true},
    {4, kTablesContainer, "MSysQueries", kTableType, true},
    {5, kTablesContainer, "MSysRelationships", kTableType, true},
};

// What new objects get in a database that no workgroup file secures.
constexpr std::int64_t kAdminRights = 0x000F00FE;
constexpr std::int64_t kUsersRights = 0x000FFEFF;

bool hasPartner(const std::vector<Definition>& tables, PageNumber page, const LogicalIndex& index)
{
    return std::ranges::any_of(tables, [&](const Definition& other) {
        return other.page == index.partnerTable
               && std::ranges::any_of(other.logicalIndexes, [&](const LogicalIndex& o) {
                      return static_cast<std::int32_t>(o.number) == index.partner
                             && o.partner == static_cast<std::int32_t>(index.number)
                             && o.partnerTable == page && o.relationSide != index.relationSide;
                  });
    });
}

std::set<std::uint32_t> numbersIn(Table& table, std::string_view column)
{
    std::set<std::uint32_t> numbers;
    const int position = table.definition().columnPosition(column);
    for (TableScan rows = table.scan(); rows.next();) {
        if (!rows.row().isNull(position))
            numbers.insert(static_cast<std::uint32_t>(rows.row().integer(position)));
    }
    return numbers;
}

void insertObject(Table& objects, const StandardObject& object, std::int64_t flags,
                  std::uint32_t sidKey)
{
    const DateTime now = DateTime::now();
    insertRow(objects, {{"Id", std::int64_t{static_cast<std::int32_t>(object.id)}},
                        {"ParentId", std::int64_t{static_cast<std::int32_t>(object.parent)}},
                        {"Name", object.name},
                        {"Type", object.type},
                        {"DateCreate", now},
                        {"DateUpdate", now},
                        {"Owner", sid::coded(object.ofEngine ? sid::kEngine : sid::kAdmin, sidKey)},
                        {"Flags", flags}});
}

} // namespace

void settlePartners(const std::vector<SourceTable>& tables, std::vector<Definition>& fresh,
                    Losses& losses)
{
    std::map<PageNumber, PageNumber> newPages;
    for (const SourceTable& table : tables)
        newPages[table.definition.page] = table.newPage;
    for (Definition& definition : fresh) {
        for (LogicalIndex& index : definition.logicalIndexes) {
            const auto found = newPages.find(index.partnerTable);
            index.partnerTable = found == newPages.end() ? 0 : found->second;
        }
    }
    for (std::size_t i = 0; i < fresh.size(); ++i) {
        for (LogicalIndex& index : fresh[i].logicalIndexes) {
            const bool related = index.partner != -1 || index.relationSide != 0;
            if (!related || hasPartner(fresh, fresh[i].page, index))
                continue;
            losses.add(tables[i].name,
                       "индекс связи «" + index.name + "» стал обычным: второй таблицы связи нет");
            forgetPartner(index);
        }
    }
}

void completeCatalogue(Pager& target, PageAllocator& allocator,
                       const std::vector<SourceTable>& tables)
{
    const std::uint32_t sidKey = target.header().sidKey;
    Table objects(target, allocator, kObjectsPage, "MSysObjects");
    Table permissions(target, allocator, kPermissionsPage, "MSysACEs");
    std::set<std::uint32_t> known = numbersIn(objects, "Id");
    std::set<std::uint32_t> wanting; // permissions, if they have none
    for (const StandardObject& object : kStandardObjects) {
        if (known.insert(object.id).second) {
            insertObject(objects, object, kEngineFlags, sidKey);
            wanting.insert(object.id);
        }
    }
    for (const SourceTable& table : tables) {
        if (table.ofUser)
            wanting.insert(table.newPage);
        if (known.insert(table.newPage).second)
            insertObject(objects,
                         {table.newPage, kTablesContainer, table.name.c_str(), kTableType, false},
                         0, sidKey);
    }
    const std::set<std::uint32_t> permitted = numbersIn(permissions, "ObjectId");
    for (const std::uint32_t object : wanting) {
        if (permitted.contains(object))
            continue;
        for (const auto& [who, rights] :
             {std::pair{&sid::kAdmin, kAdminRights}, {&sid::kUsers, kUsersRights}})
            insertRow(permissions, {{"ObjectId", std::int64_t{static_cast<std::int32_t>(object)}},
                                    {"SID", sid::coded(*who, sidKey)},
                                    {"ACM", rights},
                                    {"FInheritable", false}});
    }
}

} // namespace jet::compact
