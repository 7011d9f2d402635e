#pragma once

#include "jet/storage/definition.h"
#include "jet/storage/jet3/pages.h"
#include "jet/storage/store.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace jet::jet3 {

// One table of an Access 95/97 file on its way into a new database: its columns, rows and
// indexes. The order of Access 97 is not known here, so indexes are built anew in the present
// General order. Where rows equal in that order forbid it, an index loses its uniqueness;
// where a character has no known key there, the index is left out.
class TableCopy
{
public:
    TableCopy(const Pages& from, Store& into, PageNumber page, std::string name);

    void createTable();
    void copyRows();
    void buildIndexes();

    PageNumber oldPage() const { return m_old.page; }
    PageNumber newPage() const { return m_newPage; }

    // Gives the indexes their names, kinds and partners in relationships. Needs all tables'
    // indexes built.
    void nameIndexes(const std::vector<TableCopy>& tables);

private:
    std::vector<std::size_t> fieldOrder() const;
    std::optional<std::uint8_t> buildIndex(std::size_t real);
    bool hasIndex(std::uint32_t logicalNumber) const;
    void keepCounter();

    const Pages& m_from;
    Store& m_into;
    std::string m_name;
    Definition m_old;
    PageNumber m_newPage = 0;
    std::vector<int> m_newReal; // by number of the old real index; -1 for one left out
};

} // namespace jet::jet3
