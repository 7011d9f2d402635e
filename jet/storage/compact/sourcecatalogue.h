#pragma once

#include "jet/storage/compact/losses.h"
#include "jet/storage/compact/rowcopy.h"
#include "jet/storage/compact/sourcepages.h"
#include "jet/storage/compact/tablecopy.h"
#include "jet/storage/pager.h"
#include "jet/storage/types.h"

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace jet::compact {

// Pages of the definitions of the system tables, which page 0 names.
inline constexpr PageNumber kObjectsPage = 2;
inline constexpr PageNumber kPermissionsPage = 3;
inline constexpr PageNumber kQueriesPage = 4;
inline constexpr PageNumber kRelationsPage = 5;
inline constexpr PageNumber kFirstFreePage = 6;

inline constexpr std::uint32_t kRootParent = 0x0F000000;
inline constexpr std::uint32_t kTablesContainer = 0x0F000001;
inline constexpr std::uint32_t kRelationsContainer = 0x0F000003;
inline constexpr int kTableType = 1;
inline constexpr int kRelationType = 8;

// A row of MSysObjects that goes into the new file.
struct SourceObject
{
    std::uint32_t id = 0, parent = 0;
    std::string name;
    int type = 0;
    std::uint32_t flags = 0;
    bool changed = false; // name or parent are not those of the row
};

// What there is in the source: its objects, and of its tables the definitions and pages. In
// a repair also tables that the catalogue has lost; and nothing that would make the new
// catalogue contradict itself.
class SourceCatalogue
{
public:
    SourceCatalogue(Pager& pager, Losses& losses);

    // The four system tables come first.
    std::vector<SourceTable>& tables() { return m_tables; }
    const std::vector<SourceTable>& tables() const { return m_tables; }
    // By place of the row in MSysObjects.
    const std::map<RowPointer, SourceObject>& objects() const { return m_objects; }
    bool hasObject(std::uint32_t id) const { return m_ids.contains(id); }
    // Tables whose definition cannot be read, by folded name.
    const std::set<std::string>& lostTables() const { return m_lostTables; }

private:
    void addSystemTables();
    void readObjects();
    void addObject(RowPointer place, const RowCopy& row);
    void addTables();
    bool addTable(const SourceObject& object);
    void loseTable(const SourceObject& object);
    void addForgottenTables();
    void settleNames();
    void settleParents();

    Pager& m_pager;
    Losses& m_losses;
    SourcePages m_pages;
    std::vector<SourceTable> m_tables;
    std::map<RowPointer, SourceObject> m_objects;
    std::set<std::uint32_t> m_ids;
    std::set<std::string> m_lostTables;
    bool m_incomplete = false; // some rows of MSysObjects could not be read
};

} // namespace jet::compact
