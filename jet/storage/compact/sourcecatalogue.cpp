#include "jet/storage/compact/sourcecatalogue.h"

#include "jet/error.h"
#include "jet/storage/catalogueobject.h"
#include "jet/storage/compact/freshdefinition.h"
#include "jet/storage/compact/rowreader.h"
#include "jet/storage/systemtables.h"
#include "jet/text.h"

#include <algorithm>
#include <array>
#include <limits>
#include <utility>

namespace jet::compact {

namespace {

constexpr std::array<const char*, 4> kSystemNames = {"MSysObjects", "MSysACEs", "MSysQueries",
                                                     "MSysRelationships"};

std::uint32_t numberIn(const RowCopy& row, const Definition& definition, const char* column)
{
    return static_cast<std::uint32_t>(row.value(definition.columnPosition(column)).toInteger());
}

// Throws Error (Damaged) unless it has the columns of the standard one.
void requireColumns(const Definition& definition, const Definition& standard)
{
    for (const ColumnDefinition& column : standard.columns) {
        const int position = definition.columnPosition(column.name);
        if (position < 0
            || definition.columns[static_cast<std::size_t>(position)].storedType
                   != column.storedType)
            throw Error(Fault::Damaged, "в описании системной таблицы нет поля " + column.name,
                        definition.page);
    }
}

// A list of pages that one can read.
std::string listOf(const std::vector<PageNumber>& pages)
{
    constexpr std::size_t kMost = 20;
    std::string list;
    for (std::size_t i = 0; i < std::min(pages.size(), kMost); ++i)
        list += (i == 0 ? "" : ", ") + std::to_string(pages[i]);
    return pages.size() > kMost ? list + " и ещё " + std::to_string(pages.size() - kMost) : list;
}

} // namespace

SourceCatalogue::SourceCatalogue(Pager& pager, Losses& losses)
    : m_pager(pager)
    , m_losses(losses)
    , m_pages(pager, losses)
{
    addSystemTables();
    readObjects();
    addTables();
    if (m_losses.repairing()) {
        if (m_incomplete)
            addForgottenTables();
        settleParents();
        settleNames();
    }
}

void SourceCatalogue::addSystemTables()
{
    const auto standard = systemTableDefinitions(m_pager.header().collation);
    for (std::size_t i = 0; i < standard.size(); ++i) {
        SourceTable table;
        table.name = kSystemNames[i];
        const bool readable = m_losses.attempt(
            table.name,
            [&] {
                Definition definition = readDefinition(m_pager, standard[i].page);
                requireColumns(definition, standard[i]);
                if (m_losses.repairing())
                    mendDefinition(definition);
                table.definition = std::move(definition);
            },
            standard[i].page);
        if (!readable) {
            // The tables of all files are alike; only their pages are not known then.
            table.definition = standard[i];
            table.definition.rowCount = std::numeric_limits<std::uint32_t>::max();
        }
        table.pages = m_pages.dataPages(table.definition, table.name);
        m_tables.push_back(std::move(table));
    }
}

void SourceCatalogue::readObjects()
{
    const SourceTable& table = m_tables.front();
    const std::size_t lossesBefore = m_losses.count();
    RowReader reader(m_pager, table.definition, table.name, m_losses);
    for (const RowPointer place : reader.rows(table.pages)) {
        RowCopy row(table.definition, table.definition, table.name);
        row.read(reader.at(place), m_pager, m_losses);
        addObject(place, row);
    }
    m_incomplete = m_losses.count() > lossesBefore;
}

void SourceCatalogue::addObject(RowPointer place, const RowCopy& row)
{
    const Definition& definition = m_tables.front().definition;
    SourceObject object;
    object.id = numberIn(row, definition, "Id");
    object.parent = numberIn(row, definition, "ParentId");
    object.name = row.value(definition.columnPosition("Name")).toText();
    object.type = static_cast<int>(row.value(definition.columnPosition("Type")).toInteger());
    object.flags = numberIn(row, definition, "Flags");
    if (!m_ids.insert(object.id).second) {
        m_losses.add(m_tables.front().name,
                     "номер объекта «" + object.name + "» уже занят, объект потерян", place.page,
                     place.row);
        return;
    }
    m_objects.emplace(place, std::move(object));
}

void SourceCatalogue::addTables()
{
    for (auto at = m_objects.begin(); at != m_objects.end();) {
        SourceObject& object = at->second;
        const bool kept =
            object.type != kTableType || object.id < kFirstFreePage || addTable(object);
        if (kept) {
            ++at;
            continue;
        }
        loseTable(object);
        at = m_objects.erase(at);
    }
}

bool SourceCatalogue::addTable(const SourceObject& object)
{
    return m_losses.attempt(
        object.name,
        [&] {
            SourceTable table;
            table.definition = readDefinition(m_pager, object.id);
            if (m_losses.repairing())
                mendDefinition(table.definition);
            table.name = object.name;
            table.ofUser =
                (object.flags & (objectflag::kEngineSystem | objectflag::kAccessSystem)) == 0;
            table.pages = m_pages.dataPages(table.definition, table.name);
            m_tables.push_back(std::move(table));
        },
        object.id);
}

void SourceCatalogue::loseTable(const SourceObject& object)
{
    const auto& pages = m_pages.pagesNaming(object.id);
    m_losses.add(object.name,
                 "таблица потеряна: её описание не читается"
                     + (pages.empty() ? std::string()
                                      : "; её записи остались на страницах " + listOf(pages)),
                 object.id);
    m_ids.erase(object.id);
    m_lostTables.insert(foldName(object.name));
}

// Only where the catalogue has lost rows: definitions that nobody names may also be left
// over from dropped tables.
void SourceCatalogue::addForgottenTables()
{
    for (const PageNumber page : m_pages.definitions()) {
        if (page < kFirstFreePage || m_ids.contains(page))
            continue;
        SourceObject object;
        object.id = page;
        object.name = "Восстановленная таблица " + std::to_string(page);
        if (!addTable(object))
            continue;
        m_losses.add(object.name, "таблица не записана в каталоге, её имя потеряно", page);
    }
}

// Objects without their container could not be found; tables, queries and relationships
// have containers that every file has.
void SourceCatalogue::settleParents()
{
    for (auto& [place, object] : m_objects) {
        if (object.parent == kRootParent || object.parent == kTablesContainer
            || object.parent == kRelationsContainer || m_ids.contains(object.parent))
            continue;
        m_losses.add(m_tables.front().name,
                     "потеряна папка, в которой лежал объект «" + object.name + "»", place.page,
                     place.row);
        object.parent = object.type == kRelationType ? kRelationsContainer : kTablesContainer;
        object.changed = true;
    }
}

void SourceCatalogue::settleNames()
{
    std::set<std::pair<std::uint32_t, std::string>> taken;
    for (auto& [place, object] : m_objects) {
        const std::string old = object.name;
        std::string name = old.empty() ? "Объект " + std::to_string(object.id) : old;
        for (int copy = 2; !taken.emplace(object.parent, foldName(name)).second; ++copy)
            name = std::string(old).append(" (").append(std::to_string(copy)).append(")");
        if (name == old)
            continue;
        const std::string renamed =
            std::string("объект «").append(old).append("» переименован в «").append(name);
        m_losses.add(m_tables.front().name, renamed + "»", place.page, place.row);
        object.name = name;
        object.changed = true;
        for (SourceTable& table : m_tables) {
            if (object.type == kTableType && table.definition.page == object.id)
                table.name = name;
        }
    }
}

} // namespace jet::compact
