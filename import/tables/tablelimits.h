#pragma once

#include "import/tables/texttable.h"

namespace imports {

// Collects rows and throws jet::Error (Limit) for a table that is too large to be a list.
class RowCollector
{
public:
    // Drops a row without texts, and empty cells at a row's end.
    void add(int number, QStringList cells);
    std::vector<TextRow> take() { return std::move(m_rows); }

private:
    std::vector<TextRow> m_rows;
    qsizetype m_cells = 0;
};

// Throws jet::Error (Limit).
void checkColumn(qsizetype column);

} // namespace imports
