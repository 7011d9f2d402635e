#pragma once

#include "jet/sql/ast.h"

namespace jet::sql {

// Turns outer joins into inner joins where WHERE refuses every row that the outer join adds:
// "A LEFT JOIN B ... WHERE B.DAT = #...#". The result is the same, and SQLite may begin with
// B. SQLite does that by itself for its own tables, but not for virtual ones.
void simplifyOuterJoins(Statement& statement);

} // namespace jet::sql
