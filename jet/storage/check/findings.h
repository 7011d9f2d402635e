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

// Collects findings. Of each kind (table and text) only the first ones are kept, the rest is
// counted, so that a badly damaged file gives a list that one can read.
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

    // All of them, harmful ones first.
    std::vector<Finding> take();

private:
    void add(Finding finding);
    void addError(const std::string& table, const Error& error, PageNumber page, int row);

    std::vector<Finding> m_findings;
    std::map<std::string, std::size_t> m_counts; // by kind
};

} // namespace jet::check
