#include "jet/error.h"

#include <utility>

namespace jet {

namespace {

std::string withPage(const std::string& clause, std::uint32_t page)
{
    return clause + " (страница " + std::to_string(page) + ")";
}

std::string withTable(const std::string& clause, const std::string& table)
{
    return table.empty() ? clause : clause + " (таблица «" + table + "»)";
}

std::string withBoth(const std::string& clause, std::uint32_t page, const std::string& table)
{
    if (table.empty())
        return withPage(clause, page);
    return clause + " (таблица «" + table + "», страница " + std::to_string(page) + ")";
}

} // namespace

Error::Error(Fault fault, const std::string& clause)
    : std::runtime_error(clause)
    , m_fault(fault)
{}

Error::Error(Fault fault, const std::string& clause, std::uint32_t page)
    : std::runtime_error(withPage(clause, page))
    , m_fault(fault)
    , m_page(page)
{}

Error::Error(Fault fault, const std::string& clause, std::string table)
    : std::runtime_error(withTable(clause, table))
    , m_fault(fault)
    , m_table(std::move(table))
{}

Error::Error(Fault fault, const std::string& clause, std::uint32_t page, std::string table)
    : std::runtime_error(withBoth(clause, page, table))
    , m_fault(fault)
    , m_page(page)
    , m_table(std::move(table))
{}

} // namespace jet
