#pragma once

#include "demo/institution.h"

namespace demo {

// Fills disciplines, teachers and workloads: every group has each slot of the week taken
// once, and no teacher stands in two places. Requires groups and students.
void planTimetable(Institution& institution, Random& random);

} // namespace demo
