#pragma once

#include "journals/gradesheet.h"
#include "reports/statements/pieces.h"

#include <map>
#include <vector>

// Students × disciplines: the table of the statement for a month and of the final one.
namespace reports {

GradeCounts columnCounts(const journals::GradeSheet& sheet, std::size_t column);

struct GradeTable
{
    const StatementSource& source;
    GroupRow group;
    journals::GradeSheet sheet; // a column for each discipline
    std::map<journals::DisciplineId, QString> teachers;
    std::vector<journals::Absence> missed = {}; // by student
    // By student: the columns in which he lacks the grade that he must have; final grades only.
    std::vector<std::vector<bool>> notAssessed = {};

    bool isFinal() const { return !sheet.selection.monthly(); }
    bool lacks(std::size_t student, std::size_t column) const;
    GradeCounts countsOf(std::size_t student) const;
    int lacking(std::size_t column) const; // students
    Performance performance() const;
    journals::Absence totalMissed() const;
};

// The choice of a month's or the study year's grades in all disciplines.
journals::GradeSelection monthGrades(const StatementSource& source, journals::Month month,
                                     journals::GroupId group);
journals::GradeSelection yearGrades(const StatementSource& source, journals::GroupId group);

// Reads the table of the group's grades and who teaches what; `missed` stays empty.
GradeTable readGradeTable(const StatementSource& source, const journals::GradeSelection& selection);
// The hours by the table's students.
std::vector<journals::Absence>
missedByStudent(const journals::GradeSheet& sheet,
                const std::map<journals::StudentId, journals::Absence>& hours);

// Fills widths, head and body.
void layOut(const GradeTable& table, papers::Paper& paper);

} // namespace reports
