#include "jet/sql/statementcache.h"

#include <utility>

namespace jet::sql {

namespace {

constexpr std::size_t kCapacity = 100;

} // namespace

StatementCache::Pointer StatementCache::find(std::string_view text)
{
    const auto found = m_byText.find(text);
    if (found == m_byText.end())
        return nullptr;
    m_entries.splice(m_entries.begin(), m_entries, found->second);
    const Pointer& statement = found->second->statement;
    return statement.use_count() == 1 ? statement : nullptr;
}

void StatementCache::add(std::string text, Pointer statement)
{
    remove(text);
    m_entries.push_front({std::move(text), std::move(statement)});
    m_byText.emplace(m_entries.front().text, m_entries.begin());
    if (m_entries.size() > kCapacity) {
        m_byText.erase(m_entries.back().text);
        m_entries.pop_back();
    }
}

void StatementCache::remove(std::string_view text)
{
    const auto found = m_byText.find(text);
    if (found == m_byText.end())
        return;
    const auto entry = found->second;
    m_byText.erase(found);
    m_entries.erase(entry);
}

void StatementCache::clear()
{
    m_byText.clear();
    m_entries.clear();
}

} // namespace jet::sql
