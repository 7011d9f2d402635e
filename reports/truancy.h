#pragma once

#include "journals/attendancesheet.h"
#include "journals/studyperiod.h"

#include <QDate>
#include <QString>

#include <cstddef>
#include <vector>

namespace jet {
class Database;
}

namespace reports {

// Whose hours a truancy report adds up, and what its columns are.
enum class TruancyKind {
    TeachersByDay,   // the teachers, over the dates of the period on which anybody was absent
    GroupsByDay,     // the groups, over these dates
    TeachersByGroup, // the teachers, over the groups
};

// What ties an absence to a teacher.
enum class TruancyRule {
    Lessons,  // a lesson that he held that day
    Workload, // his workload
};

// Hours missed by enrolled students.
struct TruancyReport
{
    TruancyKind kind = TruancyKind::GroupsByDay;
    TruancyRule rule = TruancyRule::Lessons; // says nothing by groups
    journals::Period period;
    std::vector<QString> rows;            // all teachers or groups, by name
    std::vector<QString> columns;         // dates as "12.11.2025", or all groups by name
    std::vector<journals::Absence> cells; // row by row

    const journals::Absence& cell(std::size_t row, std::size_t column) const
    {
        return cells[row * columns.size() + column];
    }
    journals::Absence rowTotal(std::size_t row) const;
    journals::Absence columnTotal(std::size_t column) const;
    journals::Absence total() const;
};

// By lessons when any were held in the period, by workload otherwise. Throws jet::Error.
TruancyRule truancyRule(jet::Database& database, const journals::Period& period);

// Reads each table once. An absence belongs to a teacher when a lesson of his that day (or a row
// of his workload) is of the student's group and subgroup and of the absence's discipline; a
// student without a subgroup, or a lesson without one, never matches. By lessons, absences of one
// student that agree in date, discipline and hours count once for a teacher; by workload an
// absence counts for each row that matches. Throws jet::Error. Requires a valid period.
TruancyReport truancyReport(jet::Database& database, TruancyKind kind,
                            const journals::Period& period, TruancyRule rule);

} // namespace reports
