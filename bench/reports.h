#pragma once

#include "bench/ratios.h"

#include <vector>

namespace bench {

struct Bench;
class OpenJournal;

// Whole reports: each truancy report of a month and the ranking of all specialities, beside the
// same figures added up in a single pass by hand-written queries of native SQLite.
std::vector<Comparison> reports(Bench& bench);

// Processor time of each. Gives the number of limits missed.
int checkReports(OpenJournal& journal);

} // namespace bench
