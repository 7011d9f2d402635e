#pragma once

#include "jet/storage/table.h"

#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace jet {

// The one Table object of each table in use, so that its cached rows and indexes are seen by
// everyone. A table taken out stays alive, since prepared statements may still name it.
class OpenTables
{
public:
    OpenTables(Pager& pager, PageAllocator& allocator)
        : m_pager(pager)
        , m_allocator(allocator)
    {}

    Table& get(PageNumber definitionPage, const std::string& name)
    {
        std::unique_ptr<Table>& table = m_tables[definitionPage];
        if (table && table->name() != name)
            m_retired.push_back(std::exchange(table, nullptr));
        if (!table)
            table = std::make_unique<Table>(m_pager, m_allocator, definitionPage, name);
        return *table;
    }

    void retire(PageNumber definitionPage)
    {
        if (auto node = m_tables.extract(definitionPage); !node.empty())
            m_retired.push_back(std::move(node.mapped()));
    }

private:
    Pager& m_pager;
    PageAllocator& m_allocator;
    std::map<PageNumber, std::unique_ptr<Table>> m_tables;
    std::vector<std::unique_ptr<Table>> m_retired;
};

} // namespace jet
