#pragma once

#include "jet/storage/catalogue.h"
#include "jet/storage/opentables.h"
#include "jet/storage/usagemap.h"
#include "jet/tabledef.h"

#include <string_view>

namespace jet {

// Changes definitions: pages, catalogue rows and properties together. Needs an open
// transaction; whoever calls undoes the statement when one of these throws. Rows that are
// there are not rewritten, except to number them for a new counter.
class SchemaEditor
{
public:
    SchemaEditor(Pager& pager, PageAllocator& allocator, OpenTables& tables, Catalogue& catalogue)
        : m_pager(pager)
        , m_allocator(allocator)
        , m_tables(tables)
        , m_catalogue(catalogue)
    {}

    void createTable(const TableDef& definition);
    void dropTable(const CatalogueObject& object);
    void appendField(Table& table, const Field& field);
    void dropField(Table& table, std::string_view name);
    void createIndex(Table& table, const Index& index);
    void dropIndex(Table& table, std::string_view name);

private:
    Definition newDefinition(const TableDef& definition);
    void addColumn(Definition& definition, const Field& field);
    void releaseDefinition(PageNumber page);
    void releaseColumnPages(const ColumnMaps& maps);
    void numberRows(Table& table, int column);
    // Adds the index to the definition and its empty tree to the file.
    void addIndex(Definition& definition, const Index& index);
    void removeRealIndex(Definition& definition, std::uint32_t number);
    void write(Table& table, const Definition& definition);

    Pager& m_pager;
    PageAllocator& m_allocator;
    OpenTables& m_tables;
    Catalogue& m_catalogue;
};

} // namespace jet
