// All disciplines of the group, the grades of all months of the study year together.
#include "journals/gradesheetreader.h"
#include "reports/statements/gradetable.h"
#include "reports/statements/subjectviews.h"
#include "reports/worded.h"

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace reports {

using namespace papers;

namespace {

constexpr double kDisciplineWidth = 52, kTeacherWidth = 33, kFigureWidth = 8.8; // mm
constexpr int kLead = 3, kFigures = 10;                                         // columns

struct Discipline
{
    QString name;
    QString teacher;
    GradeCounts counts;
    int without = 0; // students without a grade
};

Discipline disciplineOf(const journals::DisciplineSheet& found)
{
    const std::size_t months = found.sheet.columns.size() - 1; // the final grade stands last
    Discipline result{found.name, {}, {}, 0};
    for (const auto& student : found.sheet.students) {
        GradeCounts own;
        for (std::size_t month = 0; month < months; ++month)
            own.add(student.cells[month].grade);
        result.without += own.graded() == 0;
        result.counts += own;
    }
    return result;
}

std::vector<Row> headOf(const StatementSource& source)
{
    Row head{heading(u"№"_s), heading(worded(source.wording, u"Дисциплина"_s)),
             heading(worded(source.wording, u"Преподаватель"_s))};
    for (const QString& figure :
         {u"Всего оценок"_s, u"«5»"_s, u"«4»"_s, u"«3»"_s, u"«2»"_s, u"Зачет"_s, u"Без оценки"_s,
          u"Средний балл"_s, u"Качественная, %"_s, u"Общая, %"_s})
        head.push_back(rotatedHeading(figure));
    return {head};
}

// The averages and rates of a row, computed from its counts.
void addRates(Row& row, const GradeCounts& counts, int line)
{
    const auto at = [line](int figure) { return place(kLead + figure, line); };
    const QString marks = u"SUM(%1:%2)"_s.arg(at(1), at(4));
    const auto share = [&marks](const QString& part) {
        return u"IF(%1=0,\"—\",(%2)/%1*100)"_s.arg(marks, part);
    };
    row.push_back(averageCell(counts.average(), u"IF(%1=0,\"\",(5*%2+4*%3+3*%4+2*%5)/%1)"_s.arg(
                                                    marks, at(1), at(2), at(3), at(4))));
    row.push_back(rateCell(counts.quality(), share(at(1) + u'+' + at(2))));
    row.push_back(rateCell(counts.passRate(), share(at(1) + u'+' + at(2) + u'+' + at(3))));
}

Row disciplineRow(const Discipline& discipline, int line)
{
    Row row{number(line + 1), text(discipline.name), text(discipline.teacher)};
    row.push_back(
        countCell(discipline.counts.graded(), u"SUM(%1)"_s.arg(across(line, kLead + 1, 5))));
    for (int grade = 5; grade >= journals::kPassGrade; --grade)
        row.push_back(number(discipline.counts.of[static_cast<std::size_t>(grade)]));
    row.push_back(number(discipline.without));
    addRates(row, discipline.counts, line);
    return row;
}

Row totalRow(const std::vector<Discipline>& disciplines)
{
    const int rows = static_cast<int>(disciplines.size());
    GradeCounts all;
    for (const Discipline& discipline : disciplines)
        all += discipline.counts;
    Row row{totalLabel(u"Итого"_s, kLead), sumCell(all.graded(), kLead, rows)};
    for (int grade = 5; grade >= journals::kPassGrade; --grade)
        row.push_back(sumCell(all.of[static_cast<std::size_t>(grade)], kLead + 6 - grade, rows));
    row.push_back(emptyCell());
    addRates(row, all, rows);
    for (Cell& cell : row)
        cell.bold = true;
    return row;
}

} // namespace

Paper combinedView(const StatementSource& source, const ReportRequest&, journals::GroupId group)
{
    const journals::GradeSelection selection = yearGrades(source, group);
    const auto teachers = readTeachers(source.database, group, selection.year);
    std::vector<Discipline> disciplines;
    for (const auto& found : journals::readYearSheets(source.database, selection)) {
        disciplines.push_back(disciplineOf(found));
        if (const auto teacher = teachers.find(*found.sheet.selection.discipline);
            teacher != teachers.end())
            disciplines.back().teacher = teacher->second;
    }

    const GroupRow row = readGroup(source.database, group);
    Paper paper = groupPaper(source, row, u"СВОДНАЯ ВЕДОМОСТЬ УСПЕВАЕМОСТИ ПО ПРЕДМЕТАМ"_s,
                             yearText(selection.year));
    paper.landscape = false;
    paper.widths = {kNumberWidth, kDisciplineWidth, kTeacherWidth};
    paper.widths.insert(paper.widths.end(), kFigures, kFigureWidth);
    paper.head = headOf(source);
    for (std::size_t i = 0; i < disciplines.size(); ++i)
        paper.body.push_back(disciplineRow(disciplines[i], static_cast<int>(i)));
    paper.body.push_back(totalRow(disciplines));
    paper.notes = {worded(source.wording, u"Оценки за все месяцы учебного года. Без оценки - число "
                                          "студентов, у которых по дисциплине нет ни одной."_s),
                   gradeFormulasLine()};
    paper.signatures = {curatorSignature(source, row)};
    return paper;
}

} // namespace reports
