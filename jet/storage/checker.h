#pragma once

#include "jet/storage/types.h"

#include <cstddef>
#include <string>
#include <vector>

namespace jet {

class Pager;
class Store;

enum class Severity {
    Harmful,  // data are lost or wrong, or other programs would refuse or damage the file
    Harmless, // a wrong counter, unused space: nothing that one can notice
};

// One thing that contradicts the file format.
struct Finding
{
    Severity severity = Severity::Harmful;
    std::string table;   // "" when it concerns the whole file
    PageNumber page = 0; // 0 when not known
    int row = -1;        // row of the page, -1 when it does not concern one
    std::string text;    // a Russian clause, without the three above
};

// How much was looked at and found. Counts every finding, also those that the list only sums
// up.
struct CheckTotals
{
    std::size_t tables = 0; // whose definition could be read, system tables included
    std::size_t rows = 0;
    std::size_t indexEntries = 0;
    std::size_t harmful = 0, harmless = 0;
};

// Reads the whole file and compares everything that is stored twice: page maps with pages,
// definitions with rows, every row with the entries of every index, long values with what
// names them, the catalogue with the tables. Changes nothing, and never throws for what it
// finds in the file; what cannot be read is a finding. Runs in the time of reading all rows
// a few times and holds the keys of one table's indexes in memory. Harmful findings come
// first. `totals`, unless null, is set.
std::vector<Finding> checkDatabase(Store& store, CheckTotals* totals = nullptr);
// The same for a file whose catalogue is too damaged to make a Store.
std::vector<Finding> checkDatabase(Pager& pager, CheckTotals* totals = nullptr);

} // namespace jet
