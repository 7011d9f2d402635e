#include "jet/storage/check/findings.h"

#include <algorithm>

namespace jet::check {
namespace {

constexpr std::size_t kKeptHarmful = 20; // of one kind
constexpr std::size_t kKeptHarmless = 3;
constexpr std::size_t kMostFindings = 5000;

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

std::string kindOf(const Finding& finding)
{
    std::string kind = finding.text;
    std::erase_if(kind, isDigit);
    return finding.table + '\n' + static_cast<char>(finding.severity) + kind;
}

std::size_t keptOf(const Finding& finding)
{
    return finding.severity == Severity::Harmful ? kKeptHarmful : kKeptHarmless;
}

// Error adds place and table to its clause in brackets; a finding has them beside it.
std::string clauseOf(const Error& error)
{
    const std::string text = error.what();
    const bool hasPlace = error.page().has_value() || !error.table().empty();
    return hasPlace ? text.substr(0, text.rfind(" (")) : text;
}

} // namespace

void Findings::add(Finding finding)
{
    ++(finding.severity == Severity::Harmful ? m_totals.harmful : m_totals.harmless);
    const std::size_t count = ++m_counts[kindOf(finding)];
    if (count <= keptOf(finding) && m_findings.size() < kMostFindings)
        m_findings.push_back(std::move(finding));
}

void Findings::addError(const std::string& table, const Error& error, PageNumber page, int row)
{
    if (const auto* damage = dynamic_cast<const RowDamage*>(&error))
        harmful(table, clauseOf(error), error.page().value_or(page), damage->row());
    else
        harmful(table, clauseOf(error), page != 0 ? page : error.page().value_or(0), row);
}

std::vector<Finding> Findings::take()
{
    for (Finding& finding : m_findings) {
        const auto count = m_counts.find(kindOf(finding));
        if (count == m_counts.end() || count->second <= keptOf(finding))
            continue;
        finding.text += " (всего таких мест: " + std::to_string(count->second) + ")";
        m_counts.erase(count);
    }
    std::stable_partition(m_findings.begin(), m_findings.end(), [](const Finding& finding) {
        return finding.severity == Severity::Harmful;
    });
    return std::move(m_findings);
}

} // namespace jet::check
