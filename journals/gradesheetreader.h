#pragma once

#include "journals/gradesheet.h"

namespace jet {
class Database;
}

namespace journals {

// Fills the sheet of a complete selection: its columns, students and grades. Throws jet::Error.
GradeSheet readGradeSheet(jet::Database& database, const GradeSelection& selection);

// For each discipline of the selection's group and year a sheet of its monthly and final grades,
// by name; finalsDate is not set. Reads the grades once. Throws jet::Error.
struct DisciplineSheet
{
    QString name;
    GradeSheet sheet;
};
std::vector<DisciplineSheet> readYearSheets(jet::Database& database, GradeSelection selection);

} // namespace journals
