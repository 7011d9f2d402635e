#pragma once

#include "jet/storage/check/object.h"
#include "jet/storage/check/permissions.h"
#include "jet/storage/check/rows.h"
#include "jet/storage/check/space.h"
#include "jet/storage/definition.h"
#include "jet/value.h"

#include <cstdint>
#include <map>
#include <string>
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
    struct Relation
    {
        std::string name, table, column, otherTable, otherColumn;
        RowPointer row;
    };

    void readObjects();
    void addObject(const Definition& definition, const CheckedRow& row);
    void checkTables();
    Rows::Visitor visitorOf(PageNumber table, Definition& definition);
    void addPermission(const Definition& definition, const CheckedRow& row);
    void addRelation(const Definition& definition, const CheckedRow& row);
    Bytes accountOf(const Value& sid) const;
    void checkObjects();
    void checkSystemTables();
    void checkProperties(const Object& object);
    void checkRelations();
    void checkPartners();
    bool hasPartner(PageNumber table, const LogicalIndex& index) const;
    bool hasColumn(const std::string& table, const std::string& column) const;

    Space& m_space;
    Findings& m_findings;
    std::vector<Object> m_objects;
    std::map<PageNumber, Definition> m_tables;      // local tables that can be read
    std::map<std::string, PageNumber> m_tablePages; // by folded name
    std::map<PageNumber, std::string> m_tableNames;
    Permissions m_permissions;
    std::vector<Relation> m_relations;
};

} // namespace jet::check
