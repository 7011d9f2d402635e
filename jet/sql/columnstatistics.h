#pragma once

#include "jet/storage/table.h"

#include <cstdint>
#include <vector>

namespace jet::sql {

// Guesses how many rows share a value of a column, from a sample of the table's first rows.
// Serves the choice of a plan only, so it may be stale or wrong without harm to results.
class ColumnStatistics
{
public:
    // Rows of the table, at least the number below which plans should not tell tables apart:
    // a plan made while a table was empty is still in use when it has filled.
    static double rowCount(Table& table);
    // Rows that an equality on the column is likely to give.
    double rowsPerValue(Table& table, int column);

private:
    struct Sample
    {
        double rowsThen = 0; // table size when it was taken; 0: never
        double distinctValues = 1;
    };
    std::vector<Sample> m_samples; // by position in Definition::columns
};

} // namespace jet::sql
