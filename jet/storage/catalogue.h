#pragma once

#include "jet/storage/catalogueobject.h"
#include "jet/storage/opentables.h"
#include "jet/storage/pager.h"
#include "jet/storage/properties.h"
#include "jet/value.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace jet {

// The system tables MSysObjects (what there is in the file), MSysACEs (who may use it) and
// MSysRelationships. Changes need an open transaction.
class Catalogue
{
public:
    Catalogue(Pager& pager, OpenTables& tables);

    const std::vector<CatalogueObject>& objects();
    // A local table; null when there is none of that name.
    const CatalogueObject* findTable(std::string_view name);
    // Anything that shares the name space of tables: linked tables and queries as well.
    const CatalogueObject* findName(std::string_view name);

    // The table's row and its permissions, by the inheritable rules of its container.
    void addTable(PageNumber definitionPage, const std::string& name, const Properties& properties);
    // The object's row and permissions.
    void remove(std::uint32_t id);
    // Sets the date of the last change, and the properties if given.
    void touch(std::uint32_t id);
    void touch(std::uint32_t id, const Properties& properties);
    Properties properties(std::uint32_t id);

    // The table is one side of a relationship, which forbids dropping it.
    bool hasRelationship(std::string_view table);

private:
    void reload();
    RowPointer rowOf(std::uint32_t id);
    void update(std::uint32_t id, const Properties* properties);
    void addPermissions(std::uint32_t id, std::uint32_t container);

    Table& m_objectsTable;
    Table& m_permissionsTable;
    Table& m_relationshipsTable;
    Pager& m_pager;

    std::vector<CatalogueObject> m_objects;
    std::vector<RowPointer> m_rows; // of each in m_objects
    bool m_loaded = false;
    std::uint64_t m_rollbacks = 0; // of the pager when loaded
};

} // namespace jet
