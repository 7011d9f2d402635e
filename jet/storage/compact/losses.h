#pragma once

#include "jet/compact.h"
#include "jet/storage/check/findings.h"
#include "jet/storage/types.h"

#include <cstddef>
#include <string>
#include <vector>

namespace jet::compact {

// Where everything goes that cannot be read from the source: a repair notes it and goes on,
// an ordinary compaction stops with an Error (Damaged).
class Losses
{
public:
    explicit Losses(bool repair)
        : m_repair(repair)
    {}

    bool repairing() const { return m_repair; }
    void add(const std::string& table, const std::string& text, PageNumber page = 0, int row = -1);

    // Runs a part that only reads the source. False when it could not be read.
    template <class Part>
    bool attempt(const std::string& table, Part part, PageNumber page = 0, int row = -1)
    {
        if (!m_repair) {
            part();
            return true;
        }
        const bool whole = m_findings.attempt(table, part, page, row);
        m_count += whole ? 0 : 1;
        return whole;
    }

    std::size_t count() const { return m_count; }
    std::vector<Loss> take();

private:
    bool m_repair;
    std::size_t m_count = 0;    // of all, also those not listed one by one
    check::Findings m_findings; // sums up what would make the list too long
};

} // namespace jet::compact
