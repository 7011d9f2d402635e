#pragma once

#include "jet/sql/virtualtable.h"

#include <string>
#include <string_view>
#include <vector>

namespace jet::sql {

// How a cursor reaches its rows.
enum class Access {
    Scan,   // all rows in page order
    Row,    // the row of the number in the first argument
    Lookup, // rows with the first argument in the column of the first term
};

// A condition that the cursor tests before SQLite sees the row; SQLite tests it again.
struct PlanTerm
{
    unsigned char op = 0; // SQLITE_INDEX_CONSTRAINT_...
    int position = 0;     // in Definition::columns, -1 for the row number
};

// What xBestIndex tells xFilter: the access as idxNum, and one term for each argument as
// idxStr, two bytes each: operator, position + 1 (1 to 255, a table has at most 255 columns;
// no byte may be 0). The first term of Access::Row is the row number.
struct TablePlan
{
    Access access = Access::Scan;
    std::vector<PlanTerm> terms;

    std::string encoded() const;
    static TablePlan decode(int access, std::string_view text);
};

// xBestIndex.
void choosePlan(VirtualTable& table, sqlite3_index_info& info);

} // namespace jet::sql
