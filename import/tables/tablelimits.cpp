#include "import/tables/tablelimits.h"

#include "jet/error.h"

namespace imports {

void RowCollector::add(int number, QStringList cells)
{
    while (!cells.isEmpty() && cells.back().trimmed().isEmpty())
        cells.removeLast();
    if (cells.isEmpty())
        return;
    checkColumn(cells.size() - 1);
    m_cells += cells.size();
    if (m_rows.size() >= kMostRows || m_cells > kMostCells)
        throw jet::Error(jet::Fault::Limit, "в таблице слишком много строк, наибольшее число "
                                                + std::to_string(kMostRows));
    m_rows.push_back({number, std::move(cells)});
}

void checkColumn(qsizetype column)
{
    if (column >= kMostColumns)
        throw jet::Error(jet::Fault::Limit, "в таблице слишком много граф, наибольшее число "
                                                + std::to_string(kMostColumns));
}

} // namespace imports
