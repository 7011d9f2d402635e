#pragma once

#include "bench/ratios.h"

#include <vector>

namespace bench {

struct Bench;

// Cells of the truancy reports, one query a cell as the reports define them, by each of the
// rules: teachers on one date, groups on one date, teachers beside one group in a month.
std::vector<Comparison> truancy(Bench& bench);

} // namespace bench
