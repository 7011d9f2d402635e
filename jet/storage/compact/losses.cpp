#include "jet/storage/compact/losses.h"

#include "jet/error.h"

#include <utility>

namespace jet::compact {

void Losses::add(const std::string& table, const std::string& text, PageNumber page, int row)
{
    if (!m_repair)
        throw Error(Fault::Damaged, text, page, table);
    ++m_count;
    m_findings.harmful(table, text, page, row);
}

std::vector<Loss> Losses::take()
{
    std::vector<Loss> losses;
    for (Finding& finding : m_findings.take())
        losses.push_back(
            {std::move(finding.table), finding.page, finding.row, std::move(finding.text)});
    return losses;
}

} // namespace jet::compact
