// One discipline, the days of a month.
#include "journals/attendancesheetreader.h"
#include "journals/gradesheetreader.h"
#include "reports/statements/gradetable.h"
#include "reports/statements/subjectviews.h"
#include "reports/worded.h"

#include <utility>

using namespace Qt::StringLiterals;

namespace reports {

using namespace papers;

namespace {

using journals::GradeSheet;

constexpr double kSumWidth = 13; // mm
constexpr int kSums = 3;

struct CurrentContent
{
    GradeSheet sheet;                      // days
    std::vector<int> monthly;              // by student
    std::vector<journals::Absence> missed; // by student

    int days() const { return static_cast<int>(sheet.columns.size()); }
    int students() const { return static_cast<int>(sheet.students.size()); }
};

// The students' grades of the month in the discipline.
std::vector<int> monthlyGrades(const GradeSheet& table, journals::DisciplineId discipline)
{
    std::vector<int> grades(table.students.size(), journals::kNoGrade);
    for (std::size_t column = 0; column < table.columns.size(); ++column)
        if (table.columns[column].discipline == discipline)
            for (std::size_t student = 0; student < grades.size(); ++student)
                grades[student] = table.students[student].cells[column].grade;
    return grades;
}

CurrentContent readContent(const StatementSource& source, const ReportRequest& request,
                           journals::GroupId group)
{
    journals::GradeSelection days = monthGrades(source, request.month, group);
    CurrentContent content;
    content.monthly =
        monthlyGrades(readGradeSheet(source.database, days), request.discipline.value());
    days.mode = journals::GradeMode::Current;
    days.allDisciplines = false;
    days.discipline = request.discipline;
    content.sheet = readGradeSheet(source.database, days);
    journals::AttendanceSelection absences;
    absences.group = group;
    absences.discipline = request.discipline;
    absences.month = request.month;
    std::map<journals::StudentId, journals::Absence> hours;
    for (const auto& student : readAttendanceSheet(source.database, absences).students)
        hours.emplace(student.id, student.month);
    content.missed = missedByStudent(content.sheet, hours);
    return content;
}

std::vector<Row> headOf(const CurrentContent& content)
{
    std::vector<Row> head{studentHeads(), {}};
    for (const auto& day : content.sheet.columns)
        addDayHead(head, day.date, day.dayOff);
    for (const QString& sum : {u"Средний балл"_s, u"За месяц"_s, u"Пропу- щено, час."_s})
        head[0].push_back(heading(sum, 1, 2));
    return head;
}

GradeCounts countsOf(const journals::GradeStudent& student)
{
    GradeCounts counts;
    for (const auto& cell : student.cells)
        counts.add(cell.grade);
    return counts;
}

Row studentRow(const CurrentContent& content, std::size_t student)
{
    const GradeSheet& sheet = content.sheet;
    const int line = static_cast<int>(student);
    Row cells = studentCells(student + 1, sheet.students[student].name);
    for (std::size_t day = 0; day < sheet.columns.size(); ++day) {
        const journals::GradePlace place{line, static_cast<int>(day)};
        Cell cell = gradeCell(sheet.cell(place).grade, journals::kPassSign.toString());
        if (!sheet.open(place))
            cell = text(sheet.cellText(place), Align::Centre);
        cell.shaded = sheet.columns[day].dayOff;
        cells.push_back(cell);
    }
    cells.push_back(
        bold(averageCell(countsOf(sheet.students[student]).average(),
                         averageFormula(across(line, kNumberColumns, content.days())))));
    cells.push_back(gradeCell(content.monthly[student]));
    cells.push_back(hours(content.missed[student].total()));
    return cells;
}

std::vector<Row> totalRows(const CurrentContent& content)
{
    const int rows = content.students(), first = kNumberColumns, last = first + content.days();
    GradeCounts all, month;
    journals::Absence missed;
    for (std::size_t student = 0; student < content.sheet.students.size(); ++student) {
        all += countsOf(content.sheet.students[student]);
        month.add(content.monthly[student]);
        missed += content.missed[student];
    }
    const auto formula = [&](QString (*make)(const QString&), const QString& range) {
        return rows == 0 ? QString() : make(range);
    };
    const QString block = place(first, 0) + u':' + place(last - 1, rows - 1);
    const QString monthRange = down(last + 1, rows);

    Row counts{totalLabel(u"Оценок за день, средний балл"_s)};
    for (std::size_t day = 0; day < content.sheet.columns.size(); ++day) {
        const int at = first + static_cast<int>(day);
        const int marks = columnCounts(content.sheet, day).marks();
        Cell cell = hours(marks);
        cell.shaded = content.sheet.columns[day].dayOff;
        if (rows > 0)
            cell.formula = u"COUNT(%1)"_s.arg(down(at, rows));
        counts.push_back(cell);
    }
    counts.push_back(bold(averageCell(all.average(), formula(averageFormula, block))));
    counts.push_back(bold(averageCell(month.average(), formula(averageFormula, monthRange))));
    counts.push_back(sumCell(missed.total(), last + 2, rows));
    Row quality{totalLabel(u"Качественная, %"_s, last),
                rateCell(all.quality(), formula(qualityFormula, block)),
                rateCell(month.quality(), formula(qualityFormula, monthRange)), emptyCell()};
    Row pass{totalLabel(u"Общая, %"_s, last), rateCell(all.passRate(), formula(passFormula, block)),
             rateCell(month.passRate(), formula(passFormula, monthRange)), emptyCell()};
    return {counts, quality, pass};
}

} // namespace

Paper currentView(const StatementSource& source, const ReportRequest& request,
                  journals::GroupId group)
{
    const CurrentContent content = readContent(source, request, group);
    Paper paper =
        subjectPaper(source, request, group, {request.month.first(), request.month.last()},
                     journals::monthText(request.month));
    const double room = kLandscapeWidth - kNumberWidth - kNameWidth - kSums * kSumWidth;
    paper.widths.insert(paper.widths.end(), content.sheet.columns.size(), room / content.days());
    paper.widths.insert(paper.widths.end(), kSums, kSumWidth);
    paper.head = headOf(content);
    for (std::size_t student = 0; student < content.sheet.students.size(); ++student)
        paper.body.push_back(studentRow(content, student));
    for (Row& row : totalRows(content))
        paper.body.push_back(std::move(row));
    paper.notes << u"Обозначения: "_s
                       + worded(source.wording,
                                u"з - зачет, X - нет занятия, серый - нерабочий день."_s)
                << gradeFormulasLine();
    return paper;
}

} // namespace reports
