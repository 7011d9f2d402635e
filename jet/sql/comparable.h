#pragma once

#include "jet/sql/fragment.h"

#include <span>

namespace jet::sql {

// Makes values comparable as Jet compares them: text against a date is read as a date, text
// against a number that is no column of a table as a number; text without case.
void makeComparable(Fragment& left, std::span<Fragment> others);

} // namespace jet::sql
