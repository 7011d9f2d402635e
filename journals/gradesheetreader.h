#pragma once

#include "journals/gradesheet.h"

namespace jet {
class Database;
}

namespace journals {

// Fills the sheet of a complete selection: its columns, students and grades. Throws jet::Error.
GradeSheet readGradeSheet(jet::Database& database, const GradeSelection& selection);

} // namespace journals
