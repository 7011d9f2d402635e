#pragma once

#include "journals/attendancesheet.h"
#include "journals/studyperiod.h"

#include <vector>

namespace jet {
class Database;
}

// What the attendance journal reads from the file. Each throws jet::Error.
namespace journals {

struct AbsenceRow
{
    StudentId student{};
    DisciplineId discipline{}; // set in readDisciplineAbsences() only
    QDate date;                // not set in sums
    int lesson = 0;            // 0 where lessons of a day are summed
    Absence hours;
};

// The enrolled students in order of surname, first name, patronymic; without cells.
std::vector<AttendanceStudent> readStudents(jet::Database& database,
                                            const AttendanceSelection& selection);

// One column for each day of the month, those without lessons not in force.
std::vector<AttendanceColumn> readDayColumns(jet::Database& database,
                                             const AttendanceSelection& selection);
// One column for each lesson of the discipline. Requires selection.discipline.
std::vector<AttendanceColumn>
readLessonColumns(jet::Database& database, const AttendanceSelection& selection, int lessonHours);

// The hours of each student from 1 September to the day before the month.
std::vector<AbsenceRow> readStartBalances(jet::Database& database,
                                          const AttendanceSelection& selection);
// The hours of the month by student and day, or by student, day and lesson.
std::vector<AbsenceRow> readMonthAbsences(jet::Database& database,
                                          const AttendanceSelection& selection);

// The hours of each student in the period, whatever month the selection names.
std::vector<AbsenceRow> readAbsenceSums(jet::Database& database,
                                        const AttendanceSelection& selection, const Period& period);
// The hours of the month by student and discipline.
std::vector<AbsenceRow> readDisciplineAbsences(jet::Database& database,
                                               const AttendanceSelection& selection);

} // namespace journals
