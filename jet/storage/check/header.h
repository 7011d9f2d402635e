#pragma once

#include "jet/storage/check/findings.h"
#include "jet/storage/pager.h"

namespace jet::check {

// Checks of page 0 what opening the file does not.
void checkHeader(Pager& pager, Findings& findings);

} // namespace jet::check
