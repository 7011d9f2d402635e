#include "jet/storage/compact/objectrules.h"

#include "jet/error.h"
#include "jet/storage/properties.h"
#include "jet/storage/sid.h"
#include "jet/text.h"

#include <utility>

namespace jet::compact {

namespace {

constexpr std::int64_t kAllRights = 0xFFFFF;

std::uint32_t number(const RowCopy& row, int column)
{
    return static_cast<std::uint32_t>(row.value(column).toInteger());
}

// Access's own lists of objects, for its navigation pane. (MSysNameMap counts for itself.)
constexpr std::pair<const char*, const char*> kListsOfObjects[] = {
    {"MSysNavPaneObjectIDs", "Id"},
    {"MSysNavPaneGroupToObjects", "ObjectID"},
    {"MSysNavPaneGroups", "ObjectID"},
};

// The column that holds numbers of objects, -1 if none.
int referringColumn(const SourceTable& table)
{
    for (const auto& [name, column] : kListsOfObjects) {
        const int position = table.definition.columnPosition(column);
        if (sameName(table.name, name) && position >= 0
            && table.definition.columns[static_cast<std::size_t>(position)].type()
                   == FieldType::Long)
            return position;
    }
    return -1;
}

Value signedValue(std::uint32_t number)
{
    return std::int64_t{static_cast<std::int32_t>(number)};
}

} // namespace

ObjectRules::ObjectRules(const SourceCatalogue& catalogue, Losses& losses, std::uint32_t sidKey)
    : m_catalogue(catalogue)
    , m_losses(losses)
    , m_sidKey(sidKey)
{
    for (const SourceTable& table : catalogue.tables())
        m_newNumbers.emplace(table.definition.page, table.newPage);
}

// Numbers of other objects are far above any page.
std::uint32_t ObjectRules::newNumber(std::uint32_t old) const
{
    const auto found = m_newNumbers.find(old);
    return found == m_newNumbers.end() ? old : found->second;
}

void ObjectRules::renumber(RowCopy& row, int column) const
{
    const Value old = row.value(column);
    if (old.isNull())
        return;
    const auto before = static_cast<std::uint32_t>(old.toInteger());
    if (const std::uint32_t after = newNumber(before); after != before)
        row.set(column, signedValue(after));
}

RowRule ObjectRules::of(const SourceTable& table) const
{
    const Definition& definition = table.definition;
    switch (definition.page) {
    case kObjectsPage:
        return [&](RowPointer place, RowCopy& row) { return keepObject(definition, place, row); };
    case kPermissionsPage:
        return
            [&](RowPointer place, RowCopy& row) { return keepPermission(definition, place, row); };
    case kQueriesPage:
        return [&](RowPointer place, RowCopy& row) { return keepQuery(definition, place, row); };
    case kRelationsPage:
        return [&](RowPointer place, RowCopy& row) { return keepRelation(definition, place, row); };
    default:
        break;
    }
    const int column = table.ofUser ? -1 : referringColumn(table);
    if (column < 0)
        return {};
    return [this, column](RowPointer, RowCopy& row) {
        renumber(row, column);
        return true;
    };
}

bool ObjectRules::keepObject(const Definition& definition, RowPointer place, RowCopy& row) const
{
    if (!m_catalogue.objects().contains(place))
        return false;
    if (m_losses.repairing())
        repairObject(definition, place, row);
    renumber(row, definition.columnPosition("Id"));
    renumber(row, definition.columnPosition("ParentId"));
    return true;
}

void ObjectRules::repairObject(const Definition& definition, RowPointer place, RowCopy& row) const
{
    const SourceObject& object = m_catalogue.objects().at(place);
    const auto lose = [&](const std::string& what) {
        m_losses.add("MSysObjects", "объект «" + object.name + "»: " + what, place.page, place.row);
    };
    if (object.changed) {
        row.set(definition.columnPosition("Name"), object.name);
        row.set(definition.columnPosition("ParentId"), signedValue(object.parent));
    }
    const int owner = definition.columnPosition("Owner");
    if (!isKnownSid(row.value(owner))) {
        lose("неизвестный владелец заменён на обычного");
        row.set(owner, sid::coded(sid::kAdmin, m_sidKey));
    }
    const int properties = definition.columnPosition("LvProp");
    const Value blob = row.value(properties);
    if (const Bytes* bytes = blob.as<Bytes>()) {
        try {
            const Properties parsed(*bytes);
        } catch (const Error&) {
            lose("свойства повреждены и удалены");
            row.set(properties, {});
        }
    }
}

bool ObjectRules::isKnownSid(const Value& coded) const
{
    const Bytes* const bytes = coded.as<Bytes>();
    const Bytes plain = bytes ? sid::coded(*bytes, m_sidKey) : Bytes();
    return plain.size() > 2 // of an account in a workgroup file
           || plain == sid::kAdmin || plain == sid::kUsers || plain == sid::kEngine
           || plain == sid::kCreator;
}

bool ObjectRules::refersTo(const RowCopy& row, int column) const
{
    const std::uint32_t object = number(row, column);
    return m_catalogue.hasObject(object) || m_newNumbers.contains(object);
}

bool ObjectRules::keepPermission(const Definition& definition, RowPointer place, RowCopy& row) const
{
    const int object = definition.columnPosition("ObjectId");
    const int rights = definition.columnPosition("ACM");
    if (m_losses.repairing()) {
        if (!refersTo(row, object))
            return false;
        if (!isKnownSid(row.value(definition.columnPosition("SID")))
            || (number(row, rights) & ~kAllRights) != 0) {
            m_losses.add("MSysACEs", "непонятные права удалены", place.page, place.row);
            return false;
        }
    }
    renumber(row, object);
    return true;
}

bool ObjectRules::keepQuery(const Definition& definition, RowPointer place, RowCopy& row) const
{
    const int object = definition.columnPosition("ObjectId");
    if (m_losses.repairing() && !refersTo(row, object)) {
        m_losses.add("MSysQueries", "строка запроса, которого нет", place.page, place.row);
        return false;
    }
    renumber(row, object);
    return true;
}

bool ObjectRules::keepRelation(const Definition& definition, RowPointer place, RowCopy& row) const
{
    for (const char* const column : {"szObject", "szReferencedObject"}) {
        const std::string table = row.value(definition.columnPosition(column)).toText();
        if (!m_catalogue.lostTables().contains(foldName(table)))
            continue;
        m_losses.add("MSysRelationships", "связь с потерянной таблицей «" + table + "» удалена",
                     place.page, place.row);
        return false;
    }
    return true;
}

} // namespace jet::compact
