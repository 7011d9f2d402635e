#include "reports/statements/gradetable.h"

#include "journals/gradesheetreader.h"

#include <algorithm>
#include <numeric>
#include <utility>

namespace reports {

using journals::Absence;
using journals::GradeSheet;

GradeCounts columnCounts(const GradeSheet& sheet, std::size_t column)
{
    GradeCounts counts;
    for (const auto& student : sheet.students)
        counts.add(student.cells[column].grade);
    return counts;
}

bool GradeTable::lacks(std::size_t student, std::size_t column) const
{
    return !notAssessed.empty() && notAssessed[student][column];
}

GradeCounts GradeTable::countsOf(std::size_t student) const
{
    GradeCounts counts;
    const auto& cells = sheet.students[student].cells;
    for (std::size_t column = 0; column < cells.size(); ++column) {
        counts.add(cells[column].grade);
        counts.notAssessed += lacks(student, column);
    }
    return counts;
}

int GradeTable::lacking(std::size_t column) const
{
    int count = 0;
    for (std::size_t student = 0; student < sheet.students.size(); ++student)
        count += lacks(student, column);
    return count;
}

Performance GradeTable::performance() const
{
    Performance sum;
    for (std::size_t student = 0; student < sheet.students.size(); ++student)
        sum.add(countsOf(student));
    return sum;
}

Absence GradeTable::totalMissed() const
{
    return std::accumulate(missed.begin(), missed.end(), Absence());
}

journals::GradeSelection monthGrades(const StatementSource& source, journals::Month month,
                                     journals::GroupId group)
{
    journals::GradeSelection selection = yearGrades(source, group);
    selection.month = month;
    selection.mode = journals::GradeMode::Monthly;
    return selection;
}

journals::GradeSelection yearGrades(const StatementSource& source, journals::GroupId group)
{
    journals::GradeSelection selection;
    selection.group = group;
    selection.allDisciplines = true;
    selection.year = journals::studyPeriod(source.settings);
    selection.month = journals::monthOf(selection.year.from);
    selection.mode = journals::GradeMode::Final;
    return selection;
}

GradeTable readGradeTable(const StatementSource& source, const journals::GradeSelection& selection)
{
    const journals::GroupId group = selection.group.value();
    return {source, readGroup(source.database, group),
            journals::readGradeSheet(source.database, selection),
            readTeachers(source.database, group, selection.span())};
}

std::vector<Absence> missedByStudent(const GradeSheet& sheet,
                                     const std::map<journals::StudentId, Absence>& hours)
{
    std::vector<Absence> missed;
    for (const auto& student : sheet.students) {
        const auto found = hours.find(student.id);
        missed.push_back(found == hours.end() ? Absence() : found->second);
    }
    return missed;
}

} // namespace reports
