#include "jet/error.h"
#include "jet/storage/datapage.h"
#include "jet/storage/table.h"
#include "jet/storage/tableimpl.h"

namespace jet {

bool TableScan::next()
{
    while (true) {
        if (m_page && stepOnPage())
            return true;
        if (!openNextPage())
            return false;
    }
}

// To the next live row of the present page.
bool TableScan::stepOnPage()
{
    const ByteView page = m_page.bytes();
    // A change since the last step may have freed the page and used it for something else.
    if (!datapage::belongsTo(page, m_table->m_impl->page))
        return false;
    const std::size_t rows = datapage::rowCount(page);
    while (m_nextRow < rows) {
        if (m_table->show(m_row, m_page, m_nextRow++))
            return true;
    }
    return false;
}

// Pages of the table's own map must be data pages of the table. Freed pages (08, 09) and
// pages never written (zero) are passed over all the same, as the format asks of readers;
// anything else is damage, unless the table gave the page back during this scan.
bool TableScan::openNextPage()
{
    const PageNumber owner = m_table->m_impl->page;
    while (m_nextPage < m_pages->size()) {
        const PageNumber number = (*m_pages)[m_nextPage++];
        PageRef page = m_table->m_pager.read(number);
        const bool unused = page.type() == PageType::FreedData
                            || page.type() == PageType::FreedDefinition
                            || page.type() == PageType::Header;
        if (datapage::belongsTo(page.bytes(), owner)) {
            if (datapage::rowCount(page.bytes()) > datapage::kMostRows)
                throw Error(Fault::Damaged, "недопустимая страница данных", number,
                            m_table->name());
            m_page = std::move(page);
            m_nextRow = 0;
            return true;
        }
        if (!unused && m_table->owns(number))
            throw Error(Fault::Damaged, "здесь должны быть данные таблицы", number,
                        m_table->name());
    }
    m_page = {};
    return false;
}

} // namespace jet
