#include "journals/attendancequeries.h"
#include "journals/lists.h"
#include "journals/students.h"
#include "papers/frame.h"
#include "reports/statements.h"
#include "reports/statements/gradetable.h"
#include "reports/worded.h"

#include <algorithm>
#include <set>
#include <utility>

using namespace Qt::StringLiterals;

namespace reports {
namespace {

using journals::DisciplineId;
using Disciplines = std::set<DisciplineId>;

Disciplines taughtTo(const StatementSource& source, const journals::GradeSelection& selection,
                     std::optional<int> subgroup)
{
    Disciplines taught;
    for (const auto& each : journals::disciplineList(source.database, selection.group.value(),
                                                     subgroup, selection.year))
        taught.insert(each.key);
    return taught;
}

// What a student must be assessed in: what is taught to his group and subgroup, to one without a
// subgroup everything.
Disciplines requiredOf(const StatementSource& source, const journals::GradeSelection& selection,
                       int subgroup)
{
    if (subgroup == 0)
        return taughtTo(source, selection, std::nullopt);
    Disciplines taught = taughtTo(source, selection, 0);
    taught.merge(taughtTo(source, selection, subgroup));
    return taught;
}

void findNotAssessed(GradeTable& table)
{
    const auto& sheet = table.sheet;
    std::map<journals::StudentId, int> subgroups;
    for (const auto& student :
         journals::readStudents(table.source.database, sheet.selection.group.value(), std::nullopt))
        subgroups.emplace(student.id, student.subgroup);
    std::map<int, Disciplines> required;
    for (const auto& student : sheet.students) {
        const int subgroup = subgroups[student.id];
        if (!required.contains(subgroup))
            required.emplace(subgroup, requiredOf(table.source, sheet.selection, subgroup));
        auto& lacking = table.notAssessed.emplace_back();
        for (std::size_t column = 0; column < sheet.columns.size(); ++column)
            lacking.push_back(student.cells[column].grade == journals::kNoGrade
                              && required[subgroup].contains(sheet.columns[column].discipline));
    }
}

void readMissed(GradeTable& table)
{
    journals::AttendanceSelection group;
    group.group = table.sheet.selection.group;
    std::map<journals::StudentId, journals::Absence> hours;
    for (const auto& row :
         journals::readAbsenceSums(table.source.database, group, table.sheet.selection.year))
        hours.emplace(row.student, row.hours);
    table.missed = missedByStudent(table.sheet, hours);
}

// "Иванов И. И. (Физика - 2, Химия - н/а)", of each student with debts.
QStringList debts(const GradeTable& table)
{
    QStringList names;
    for (std::size_t student = 0; student < table.sheet.students.size(); ++student) {
        const auto& row = table.sheet.students[student];
        QStringList disciplines;
        for (std::size_t column = 0; column < row.cells.size(); ++column)
            if (table.lacks(student, column))
                disciplines << table.sheet.columns[column].title + u" - н/а"_s;
            else if (row.cells[column].grade == 2)
                disciplines << table.sheet.columns[column].title + u" - 2"_s;
        if (!disciplines.isEmpty())
            names << journals::withInitials(row.name) + u" ("_s + disciplines.join(u", "_s) + u')';
    }
    return names;
}

QStringList notesOf(const GradeTable& table)
{
    const auto& wording = table.source.wording;
    const Performance sums = table.performance();
    const auto passing =
        sums.of(Standing::Fives) + sums.of(Standing::Fours) + sums.of(Standing::Threes);
    const journals::Period year = table.sheet.selection.year;
    const AttendanceFigures attendance = AttendanceFigures::ofGroup(
        sums.all(), taughtHours(table.source.database, table.sheet.selection.group.value(), year),
        table.totalMissed());
    QStringList notes{
        u"Всего %1 %2: отличников - %3; хорошистов - %4; с «3» - %5, из них с одной «3» - %6; "
        "успевающих - %7; имеют «2» или н/а - %8; без оценок - %9."_s
            .arg(worded(wording, u"студентов"_s))
            .arg(sums.all())
            .arg(sums.of(Standing::Fives))
            .arg(sums.of(Standing::Fours))
            .arg(sums.of(Standing::Threes))
            .arg(sums.oneThree)
            .arg(passing)
            .arg(sums.of(Standing::Failed))
            .arg(sums.of(Standing::NoMarks)),
        u"Качественная успеваемость %1, общая успеваемость %2, средний балл %3. "_s.arg(
            rateText(sums.quality()), rateText(sums.passRate()),
            papers::shownText(averageCell(sums.grades.average())))
            + attendanceLine(attendance) + u'.'};
    if (const QStringList owing = debts(table); !owing.isEmpty())
        notes << u"Имеют задолженности: "_s + owing.join(u"; "_s) + u'.';
    notes << worded(wording, u"н/а - дисциплина есть в нагрузке, а итоговой оценки нет."_s)
          << worded(wording, u"По группе: качественная = студенты только с «4» и «5», без н/а / "
                             "состав × 100; общая = студенты с оценками без «2» и н/а / состав × "
                             "100."_s)
          << gradeFormulasLine();
    return notes + attendanceFormulas(table.source);
}

} // namespace

std::vector<papers::Paper> finalStatement(const StatementSource& source, const ReportRequest&,
                                          journals::GroupId group)
{
    GradeTable table = readGradeTable(source, yearGrades(source, group));
    findNotAssessed(table);
    readMissed(table);
    const journals::Period year = table.sheet.selection.year;
    const QString pattern = u"dd.MM.yyyy"_s;
    papers::Paper paper = groupPaper(
        source, table.group, u"ИТОГОВЫЙ ОТЧЕТ ОБ УСПЕВАЕМОСТИ"_s,
        yearText(year)
            + u" (%1 - %2)"_s.arg(year.from.toString(pattern), year.to.toString(pattern)));
    layOut(table, paper);
    paper.notes = notesOf(table);
    paper.signatures = {curatorSignature(source, table.group)};
    if (!source.wording.isSchool())
        paper.signatures.push_back({u"Заведующий отделением"_s, {}});
    addFrame(paper, source.settings);
    return {std::move(paper)};
}

} // namespace reports
