#include "jet/storage/schemaeditor.h"

#include "jet/error.h"
#include "jet/storage/definitionrules.h"
#include "jet/text.h"

#include <set>

namespace jet {

namespace {

Properties propertiesOf(const TableDef& definition)
{
    Properties properties;
    for (const Field& field : definition.fields)
        properties.addField(field);
    return properties;
}

void checkTable(const TableDef& definition)
{
    rules::checkName(definition.name, "таблицы");
    if (definition.fields.empty())
        throw Error(Fault::Unsupported, "в таблице «" + definition.name + "» нет полей");
    std::set<std::string> names;
    for (const Field& field : definition.fields) {
        if (!names.insert(foldName(field.name)).second)
            throw Error(Fault::Exists, "поле «" + field.name + "» уже есть", definition.name);
    }
}

} // namespace

void SchemaEditor::createTable(const TableDef& wanted)
{
    checkTable(wanted);
    if (m_catalogue.findName(wanted.name))
        throw Error(Fault::Exists, "таблица «" + wanted.name + "» уже есть");
    const Definition definition = newDefinition(wanted);
    writeDefinition(m_pager, m_allocator, definition);
    m_catalogue.addTable(definition.page, wanted.name, propertiesOf(wanted));
    Table& table = m_tables.get(definition.page, wanted.name);
    for (const Index& index : wanted.indexes) {
        Definition changed = table.definition();
        addIndex(changed, index);
        write(table, changed);
    }
}

// Page of the definition, then the page of its maps: row 0 the owned pages, row 1 those with
// free space, then two rows for each long-value column.
Definition SchemaEditor::newDefinition(const TableDef& wanted)
{
    Definition definition;
    definition.page = m_allocator.allocate();
    definition.ownedMap = m_allocator.createMap(0);
    definition.freeSpaceMap = m_allocator.createMap(definition.ownedMap.page);
    for (const Field& field : wanted.fields)
        addColumn(definition, field);
    return definition;
}

void SchemaEditor::dropTable(const CatalogueObject& object)
{
    if (!object.isUserTable())
        throw Error(Fault::Unsupported, "системную таблицу удалить нельзя", object.name);
    if (m_catalogue.hasRelationship(object.name))
        throw Error(Fault::Unsupported, "таблица участвует в связи, сначала удалите связь",
                    object.name);
    const std::uint32_t id = object.id;
    m_tables.get(id, object.name).releasePages();
    releaseDefinition(id);
    m_tables.retire(id);
    m_catalogue.remove(id);
}

void SchemaEditor::releaseDefinition(PageNumber page)
{
    while (page != 0) {
        const PageNumber next = get32(m_pager.read(page).bytes(), 4);
        m_allocator.release(page, PageType::FreedDefinition);
        page = next;
    }
}

void SchemaEditor::write(Table& table, const Definition& definition)
{
    writeDefinition(m_pager, m_allocator, definition);
    table.reload();
}

} // namespace jet
