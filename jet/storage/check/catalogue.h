#pragma once

#include "jet/storage/check/rows.h"
#include "jet/storage/check/space.h"
#include "jet/storage/definition.h"
#include "jet/value.h"

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace jet::check {

// Checks the system tables, every table they name, and what these say about each other.
class Catalogue
{
public:
    Catalogue(Space& space, Findings& findings);

    void run();
    // False when no object could be read, so that nearly all pages seem to belong to nobody.
    bool isReadable() const { return !m_objects.empty(); }

private:
    struct Object
    {
        std::uint32_t id = 0, parent = 0, flags = 0;
        int type = 0;
        std::string name;
        Bytes properties;
        RowPointer row;
    };
    struct Relation
    {
        std::string table, column, otherTable, otherColumn;
        RowPointer row;
    };

    void readObjects();
    void addObject(const Definition& definition, const CheckedRow& row);
    void checkTables();
    Rows::Visitor visitorOf(PageNumber table, Definition& definition);
    void addPermission(std::uint32_t object, std::uint32_t rights, const Value& sid,
                       RowPointer row);
    void checkObjects();
    void checkSystemTables();
    void checkProperties(const Object& object);
    void checkPermissions();
    void checkRelations();
    void checkPartners();
    bool hasColumn(const std::string& table, const std::string& column) const;

    Space& m_space;
    Findings& m_findings;
    std::vector<Object> m_objects;
    std::map<PageNumber, Definition> m_tables;      // local tables that can be read
    std::map<std::string, PageNumber> m_tablePages; // by folded name
    std::set<std::uint32_t> m_permitted;            // objects with permissions
    std::vector<std::pair<std::uint32_t, RowPointer>> m_permissions;
    std::vector<Relation> m_relations;
};

} // namespace jet::check
