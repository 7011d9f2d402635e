#pragma once

#include "jet/storage/types.h"

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

// Reads the whole file and compares everything that is stored twice: page maps with pages,
// definitions with rows, every row with the entries of every index, long values with what
// names them, the catalogue with the tables. Changes nothing, and never throws for what it
// finds in the file; what cannot be read is a finding. Runs in the time of reading all rows
// a few times and holds the keys of one table's indexes in memory.
std::vector<Finding> checkDatabase(Store& store);
// The same for a file whose catalogue is too damaged to make a Store.
std::vector<Finding> checkDatabase(Pager& pager);

} // namespace jet
