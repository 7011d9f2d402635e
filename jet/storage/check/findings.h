#pragma once

#include "jet/error.h"
#include "jet/storage/checker.h"

#include <cstddef>
#include <exception>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace jet::check {

// Damage to one row of a page; Error by itself knows the page only.
class RowDamage : public Error
{
public:
    RowDamage(const std::string& clause, RowPointer row)
        : Error(Fault::Damaged, clause, row.page)
        , m_row(row.row)
    {}
    int row() const { return m_row; }

private:
    int m_row;
};

// Collects findings. Of each kind (table and text but for its numbers) only the first ones
// are kept, the rest is counted, so that a badly damaged file gives a list that one can read.
class Findings
{
public:
    void harmful(const std::string& table, std::string text, PageNumber page = 0, int row = -1)
    {
        add({Severity::Harmful, table, page, row, std::move(text)});
    }
    void harmless(const std::string& table, std::string text, PageNumber page = 0, int row = -1)
    {
        add({Severity::Harmless, table, page, row, std::move(text)});
    }

    // Runs a part of the check; what it throws becomes a harmful finding. False if it threw.
    template <class Part>
    bool attempt(const std::string& table, Part part, PageNumber page = 0, int row = -1)
    {
        try {
            part();
            return true;
        } catch (const Error& error) {
            addError(table, error, page, row);
        } catch (const std::exception& error) {
            harmful(table, error.what(), page, row);
        }
        return false;
    }

    // To be counted up by the parts of the check; harmful and harmless count themselves.
    CheckTotals& totals() { return m_totals; }
    // All of them, harmful ones first.
    std::vector<Finding> take();

private:
    void add(Finding finding);
    void addError(const std::string& table, const Error& error, PageNumber page, int row);

    std::vector<Finding> m_findings;
    std::map<std::string, std::size_t> m_counts; // by kind
    CheckTotals m_totals;
};

} // namespace jet::check
