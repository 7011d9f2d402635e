#include "jet/storage/newdatabase.h"

#include "jet/error.h"
#include "jet/storage/btree.h"
#include "jet/storage/catalogueobject.h"
#include "jet/storage/imagepager.h"
#include "jet/storage/maprow.h"
#include "jet/storage/sid.h"
#include "jet/storage/systemtables.h"
#include "jet/storage/table.h"

#include <random>
#include <vector>

// Pages of a new database:
//
//      0  header
//      1  map of free pages and a second, empty map
//    2-5  definitions of MSysObjects, MSysACEs, MSysQueries, MSysRelationships
//      6  31 map rows of these tables
//   7-13  roots of their indexes
//     14  rows of MSysObjects
//     15  rows of MSysACEs

namespace jet {

namespace {

constexpr PageNumber kMapPage = 6;
constexpr std::size_t kMapRows = 31;
constexpr PageNumber kPagesWithoutRows = 14;

// The rows that hold the maps of the system tables.
void writeMapRows(Pager& pager)
{
    const ByteSpan page = pager.modify(kMapPage);
    maprow::initialise(page);
    for (std::size_t row = 0; row < kMapRows; ++row)
        maprow::append(page, kMapPage);
}

void writeDefinitions(Pager& pager, PageAllocator& allocator, std::uint16_t collation)
{
    for (const Definition& definition : systemTableDefinitions(collation)) {
        writeDefinition(pager, allocator, definition);
        for (const RealIndex& index : definition.realIndexes) {
            BTree::initialiseRoot(pager, definition.page, index.root);
            UsageMap(pager, allocator, index.pageMap).add(index.root);
        }
    }
}

void insertObjects(Table& table, const DatabaseHeader& header)
{
    const struct
    {
        std::int64_t id, parent;
        const char* name;
        int type;
        const Bytes& owner;
    } objects[] = {
        {0x0F000001, 0x0F000000, "Tables", 3, sid::kEngine},
        {0x0F000002, 0x0F000000, "Databases", 3, sid::kEngine},
        {0x0F000003, 0x0F000000, "Relationships", 3, sid::kEngine},
        {0x10000000, 0x0F000002, "MSysDb", 2, sid::kAdmin},
        {2, 0x0F000001, "MSysObjects", 1, sid::kEngine},
        {3, 0x0F000001, "MSysACEs", 1, sid::kEngine},
        {4, 0x0F000001, "MSysQueries", 1, sid::kEngine},
        {5, 0x0F000001, "MSysRelationships", 1, sid::kEngine},
    };
    const std::int64_t flags = static_cast<std::int32_t>(objectflag::kEngineSystem);
    for (const auto& o : objects)
        insertRow(table, {{"Id", o.id},
                          {"ParentId", o.parent},
                          {"Name", o.name},
                          {"Type", o.type},
                          {"DateCreate", header.created},
                          {"DateUpdate", header.created},
                          {"Owner", sid::coded(o.owner, header.sidKey)},
                          {"Flags", flags}});
}

void insertPermissions(Table& table, const DatabaseHeader& header)
{
    const struct
    {
        std::int64_t object;
        const Bytes& account;
        std::int64_t mask;
        bool inheritable;
    } entries[] = {
        {2, sid::kAdmin, 0x00060000, false},           {3, sid::kAdmin, 0x00060000, false},
        {4, sid::kAdmin, 0x00060000, false},           {5, sid::kAdmin, 0x000E0000, false},
        {0x0F000001, sid::kCreator, 0x000F00FE, true}, {0x0F000001, sid::kAdmin, 0x00060001, false},
        {0x0F000003, sid::kCreator, 0x000F00FE, true}, {0x0F000003, sid::kAdmin, 0x00060001, false},
        {0x0F000002, sid::kAdmin, 0x00060000, false},  {0x10000000, sid::kAdmin, 0x0006000E, false},
        {0x10000000, sid::kUsers, 0x0000000E, false},  {4, sid::kUsers, 0x00000014, false},
        {5, sid::kUsers, 0x00000014, false},           {2, sid::kUsers, 0x00000014, false},
        {0x0F000001, sid::kUsers, 0x000FFEFF, true},   {0x0F000003, sid::kUsers, 0x000FFFFF, true},
    };
    for (const auto& e : entries)
        insertRow(table, {{"ObjectId", e.object},
                          {"SID", sid::coded(e.account, header.sidKey)},
                          {"ACM", e.mask},
                          {"FInheritable", e.inheritable}});
}

} // namespace

Bytes newDatabaseImage(const DatabaseHeader& header)
{
    ImagePager start(header, kPagesWithoutRows);
    Pager& pager = start.pager();
    PageAllocator allocator(pager);
    writeMapRows(pager);
    writeDefinitions(pager, allocator, header.collation);
    Table objects(pager, allocator, 2, "MSysObjects");
    Table permissions(pager, allocator, 3, "MSysACEs");
    insertObjects(objects, pager.header());
    insertPermissions(permissions, pager.header());
    Bytes image = encodeHeader(header);
    for (PageNumber page = 1; page < pager.pageCount(); ++page) {
        const PageRef ref = pager.read(page);
        image.insert(image.end(), ref.bytes().begin(), ref.bytes().end());
    }
    return image;
}

DatabaseHeader newHeader(const CreateOptions& options)
{
    DatabaseHeader header;
    header.created = DateTime::now();
    header.collation = options.collation;
    header.codePage = options.codePage;
    std::random_device random;
    while (options.encoded && header.databaseKey == 0)
        header.databaseKey = static_cast<std::uint32_t>(random());
    return header;
}

} // namespace jet
