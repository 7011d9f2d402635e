#pragma once

#include "bench/ratios.h"

#include <vector>

namespace bench {

struct Bench;

// Cells of the truancy reports, one query a cell as the reports define them, by each of the
// rules: all teachers on one date, all groups on one date, all teachers beside one group.
std::vector<Comparison> truancy(Bench& bench);

} // namespace bench
