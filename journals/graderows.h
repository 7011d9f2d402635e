#pragma once

#include "journals/gradesheet.h"

#include <QDate>

#include <optional>
#include <vector>

namespace jet {
class Database;
}

// The rows of USP. Each function throws jet::Error, and what writes then leaves the file as it
// was.
namespace journals {

// A grade that there is one of: a student's in a discipline on a day, in a month or in a study
// year.
struct GradeRow
{
    StudentId student{};
    DisciplineId discipline{};
    GradeKind kind = GradeKind::Current;
    Period span; // one day, a month, or the study year
    QDate date;  // that a new row is stored with
};

// Adds the grade, or replaces the one there is; of several, as finals of two half-years are, the
// latest, which is the one shown. kNoGrade deletes all there are.
void storeGrade(jet::Database& database, const GradeRow& row, int grade);

struct FoundGrade
{
    StudentId student{};
    DisciplineId discipline{};
    int grade = kNoGrade;
    QDate date;
    bool isFinal = false;
};

// The current grades of the month, or the monthly and final grades of the span, of the enrolled
// students that the selection names, in one discipline or in all.
std::vector<FoundGrade> readGrades(jet::Database& database, const GradeSelection& selection);

// The latest day with final grades in the discipline, of any study year; invalid without.
// Requires selection.discipline.
QDate latestFinals(jet::Database& database, const GradeSelection& selection);

} // namespace journals
