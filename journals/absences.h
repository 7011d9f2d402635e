#pragma once

#include "journals/attendancesheet.h"

#include <QDate>

#include <optional>

namespace jet {
class Database;
}

// What the attendance journal writes: the absences of one student in one discipline on one
// date. Each throws jet::Error and then leaves the file as it was.
namespace journals {

struct AbsencePlace
{
    StudentId student{};
    DisciplineId discipline{};
    QDate date;
    std::optional<int> lesson; // not given: all lessons of the day
};

enum class MarkResult {
    Added,         // a new absence, or one without hours that counts again
    UnexcusedDown, // one unexcused hour less
    ExcusedDown,   // one excused hour less
    NothingLeft,   // that was the last hour
};

struct Marked
{
    MarkResult result = MarkResult::Added;
    Absence left; // hours of the lesson afterwards
};

// The hours that one missed lesson counts, whatever the file says: from 1 to what POS can keep.
int lessonHours(jet::Database& database);

// The hours recorded at the place.
Absence readAbsence(jet::Database& database, const AbsencePlace& place);

// Quick marking of one lesson: a new absence counts `lessonHours` unexcused, a recorded one
// is counted down by an hour, the unexcused hours first. Requires place.lesson.
Marked markAbsence(jet::Database& database, const AbsencePlace& place, int lessonHours);

// The lesson that quick marking of a whole day acts on: of the recorded ones the first with
// unexcused hours, else with excused hours, else the first; with nothing recorded the first
// lesson that the timetable holds for the student that day, else 1.
int lessonToMark(jet::Database& database, const AbsencePlace& place, GroupId group, int subgroup);

void makeExcused(jet::Database& database, const AbsencePlace& place);
void makeUnexcused(jet::Database& database, const AbsencePlace& place);
void removeAbsence(jet::Database& database, const AbsencePlace& place);

} // namespace journals
