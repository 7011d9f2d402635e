#include "journals/gradesheetreader.h"

#include "data/convert.h"
#include "data/settingsrow.h"
#include "jet/database.h"
#include "jet/sqltext.h"
#include "journals/graderows.h"
#include "journals/lists.h"
#include "journals/openday.h"
#include "journals/students.h"

#include <algorithm>
#include <map>
#include <set>
#include <utility>

using namespace Qt::StringLiterals;
namespace sql = jet::sql;

namespace journals {
namespace {

std::vector<GradeColumn> dayColumns(jet::Database& database, const GradeSelection& selection)
{
    const GroupId group = selection.group.value();
    const bool byLessons = data::readSettingsRow(database).useTimetable;
    std::set<QDate> lessons;
    if (byLessons)
        lessons = daysWithLessons(database, group, selection.discipline, selection.span());
    const auto workload = workloadPeriods(database, group, selection.discipline);
    // The workload is asked even where lessons decide: outside it even a lesson takes no grade.
    const auto taught = [&](QDate day) {
        const bool planned =
            workload.empty()
            || std::any_of(workload.begin(), workload.end(),
                           [day](const Period& period) { return inForce(period, day); });
        return planned && (!byLessons || lessons.contains(day));
    };
    const DaysOff daysOff(database);
    std::vector<GradeColumn> columns;
    for (int number = 1; number <= selection.month.days(); ++number) {
        const QDate day = selection.month.first().addDays(number - 1);
        columns.push_back({GradeKind::Current,
                           selection.discipline.value(),
                           {day, day},
                           day,
                           QString::number(number),
                           taught(day),
                           daysOff.contains(day)});
    }
    return columns;
}

GradeColumn finalColumn(const GradeSelection& selection, DisciplineId discipline,
                        const QString& title)
{
    return {GradeKind::Final, discipline, selection.year, selection.year.to, title};
}

std::vector<GradeColumn> yearColumns(const GradeSelection& selection)
{
    std::vector<GradeColumn> columns;
    if (selection.monthly())
        for (const Month month : monthsOf(selection.year))
            columns.push_back({GradeKind::Monthly,
                               selection.discipline.value(),
                               {month.first(), month.last()},
                               selection.year.kept(month.last()),
                               monthTitle(month)});
    columns.push_back(finalColumn(selection, selection.discipline.value(), u"Итог"_s));
    return columns;
}

// What is taught, and what else has grades.
std::vector<GradeColumn> disciplineColumns(jet::Database& database, const GradeSelection& selection,
                                           const std::vector<FoundGrade>& grades)
{
    auto disciplines =
        disciplineList(database, selection.group.value(), std::nullopt, selection.span());
    std::set<DisciplineId> known;
    for (const auto& discipline : disciplines)
        known.insert(discipline.key);
    for (const FoundGrade& grade : grades)
        if (known.insert(grade.discipline).second)
            disciplines.push_back({grade.discipline, disciplineName(database, grade.discipline)});
    std::stable_sort(disciplines.begin(), disciplines.end(),
                     [](const auto& left, const auto& right) {
                         return QString::localeAwareCompare(left.name, right.name) < 0;
                     });
    std::vector<GradeColumn> columns;
    for (const auto& discipline : disciplines) {
        GradeColumn column = finalColumn(selection, discipline.key, discipline.name);
        if (selection.monthly()) {
            column.kind = GradeKind::Monthly;
            column.span = selection.span();
            column.date = column.span.to;
        }
        columns.push_back(std::move(column));
    }
    return columns;
}

GradeKind kindOf(const FoundGrade& grade, GradeMode mode)
{
    if (mode == GradeMode::Current)
        return GradeKind::Current;
    return grade.isFinal ? GradeKind::Final : GradeKind::Monthly;
}

void placeGrades(GradeSheet& sheet, const std::vector<FoundGrade>& grades)
{
    std::map<StudentId, std::size_t> rows;
    for (std::size_t row = 0; row < sheet.students.size(); ++row)
        rows.emplace(sheet.students[row].id, row);
    for (const FoundGrade& grade : grades) {
        const GradeKind kind = kindOf(grade, sheet.selection.mode);
        const auto row = rows.find(grade.student);
        const auto column =
            std::find_if(sheet.columns.begin(), sheet.columns.end(), [&](const GradeColumn& each) {
                return each.kind == kind && each.discipline == grade.discipline
                       && each.span.contains(grade.date);
            });
        if (row == rows.end() || column == sheet.columns.end())
            continue;
        const auto at = static_cast<std::size_t>(column - sheet.columns.begin());
        sheet.students[row->second].cells[at] = {grade.grade, grade.grade};
    }
}

} // namespace

GradeSheet readGradeSheet(jet::Database& database, const GradeSelection& selection)
{
    GradeSheet sheet;
    sheet.selection = selection;
    const auto grades = readGrades(database, selection);
    if (selection.allDisciplines)
        sheet.columns = disciplineColumns(database, selection, grades);
    else
        sheet.columns = selection.mode == GradeMode::Current ? dayColumns(database, selection)
                                                             : yearColumns(selection);
    for (Student& student :
         readStudents(database, selection.group.value(), selection.studentSubgroup()))
        sheet.students.push_back(
            {student.id, std::move(student.name), std::vector<GradeCell>(sheet.columns.size())});
    placeGrades(sheet, grades);
    if (!selection.allDisciplines)
        sheet.finalsDate = latestFinals(database, selection);
    return sheet;
}

std::vector<DisciplineSheet> readYearSheets(jet::Database& database, GradeSelection selection)
{
    selection.mode = GradeMode::Monthly;
    selection.allDisciplines = false;
    selection.discipline.reset();
    const auto grades = readGrades(database, selection);
    std::map<DisciplineId, std::vector<FoundGrade>> byDiscipline;
    for (const FoundGrade& grade : grades)
        byDiscipline[grade.discipline].push_back(grade);
    const auto students =
        readStudents(database, selection.group.value(), selection.studentSubgroup());
    std::vector<DisciplineSheet> sheets;
    for (const GradeColumn& discipline : disciplineColumns(database, selection, grades)) {
        DisciplineSheet& each = sheets.emplace_back();
        each.name = discipline.title;
        selection.discipline = discipline.discipline;
        each.sheet.selection = selection;
        each.sheet.columns = yearColumns(selection);
        for (const Student& student : students)
            each.sheet.students.push_back(
                {student.id, student.name, std::vector<GradeCell>(each.sheet.columns.size())});
        placeGrades(each.sheet, byDiscipline[discipline.discipline]);
    }
    return sheets;
}

} // namespace journals
