#pragma once

#include "jet/database.h"

namespace jet::test {

// What step 1 starts from.
void makeNumberedDatabase(Database& database);

// The durable step of that number, always the same one; each changes the content. Requires
// that the steps before it were run.
void runNumberedStep(Database& database, int number);

} // namespace jet::test
