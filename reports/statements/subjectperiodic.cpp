// One discipline, the months of the study year.
#include "journals/gradesheetreader.h"
#include "reports/statements/gradetable.h"
#include "reports/statements/subjectviews.h"
#include "shell/names.h"

#include <utility>

using namespace Qt::StringLiterals;

namespace reports {

using namespace papers;

namespace {

using journals::GradeSheet;

constexpr double kWideName = 50, kMonthsWidth = 100, kAverageWidth = 11, kFinalWidth = 12; // mm

struct PeriodicContent
{
    GradeSheet sheet; // months, then the final grade

    int students() const { return static_cast<int>(sheet.students.size()); }
    int months() const { return static_cast<int>(sheet.columns.size()) - 1; }
    std::size_t finals() const { return sheet.columns.size() - 1; }
};

// "сен".
QString shortName(QDate month)
{
    constexpr int kLetters = 3;
    return shell::monthName(month.month()).first(kLetters).toLower();
}

std::vector<Row> headOf(const PeriodicContent& content)
{
    Row head = studentHeads(1);
    for (std::size_t month = 0; month < content.finals(); ++month)
        head.push_back(heading(shortName(content.sheet.columns[month].span.from)));
    head.push_back(heading(u"Ср."_s));
    head.push_back(heading(u"Итог"_s));
    return {head};
}

// Of the months' grades.
GradeCounts countsOf(const PeriodicContent& content, const journals::GradeStudent& student)
{
    GradeCounts counts;
    for (std::size_t month = 0; month < content.finals(); ++month)
        counts.add(student.cells[month].grade);
    return counts;
}

Row studentRow(const PeriodicContent& content, std::size_t student)
{
    const auto& row = content.sheet.students[student];
    Row cells = studentCells(student + 1, row.name);
    for (std::size_t month = 0; month < content.finals(); ++month)
        cells.push_back(gradeCell(row.cells[month].grade));
    const QString range = across(static_cast<int>(student), kNumberColumns, content.months());
    cells.push_back(averageCell(countsOf(content, row).average(), averageFormula(range)));
    cells.push_back(bold(gradeCell(row.cells[content.finals()].grade)));
    return cells;
}

// One row of totals: of each month, of all months together and of the final grades.
Row totalRow(const PeriodicContent& content, const QString& label,
             Cell (*cell)(const Rate&, const QString&), Rate (GradeCounts::*rate)() const,
             QString (*formula)(const QString&))
{
    const int rows = content.students(), months = content.months();
    const auto add = [&](Row& row, const GradeCounts& counts, const QString& range) {
        row.push_back(cell((counts.*rate)(), rows == 0 ? QString() : formula(range)));
    };
    Row row{totalLabel(label)};
    GradeCounts all;
    for (std::size_t month = 0; month < content.finals(); ++month) {
        const GradeCounts counts = columnCounts(content.sheet, month);
        add(row, counts, down(kNumberColumns + static_cast<int>(month), rows));
        all += counts;
    }
    add(row, all, place(kNumberColumns, 0) + u':' + place(kNumberColumns + months - 1, rows - 1));
    add(row, columnCounts(content.sheet, content.finals()),
        down(kNumberColumns + months + 1, rows));
    return row;
}

QString countsLine(const PeriodicContent& content)
{
    const GradeCounts finals = columnCounts(content.sheet, content.finals());
    return u"Итоговых оценок: «5» - %1; «4» - %2; «3» - %3; «2» - %4; зачет - %5; не аттестовано "
           "- %6."_s.arg(finals.of[5])
               .arg(finals.of[4])
               .arg(finals.of[3])
               .arg(finals.of[2])
               .arg(finals.of[journals::kPassGrade])
               .arg(content.students() - finals.graded());
}

} // namespace

Paper periodicView(const StatementSource& source, const ReportRequest& request,
                   journals::GroupId group)
{
    journals::GradeSelection selection = yearGrades(source, group);
    selection.allDisciplines = false;
    selection.discipline = request.discipline;
    selection.mode = journals::GradeMode::Monthly;
    const PeriodicContent content{readGradeSheet(source.database, selection)};

    Paper paper = subjectPaper(source, request, group, selection.year, yearText(selection.year));
    paper.landscape = false;
    paper.widths = {kNumberWidth, kWideName};
    paper.widths.insert(paper.widths.end(), content.finals(), kMonthsWidth / content.months());
    paper.widths.push_back(kAverageWidth);
    paper.widths.push_back(kFinalWidth);
    paper.head = headOf(content);
    for (std::size_t student = 0; student < content.sheet.students.size(); ++student)
        paper.body.push_back(studentRow(content, student));
    paper.body.push_back(
        totalRow(content, u"Средний балл"_s, averageCell, &GradeCounts::average, averageFormula));
    paper.body.push_back(
        totalRow(content, u"Качественная, %"_s, rateCell, &GradeCounts::quality, qualityFormula));
    paper.body.push_back(
        totalRow(content, u"Общая, %"_s, rateCell, &GradeCounts::passRate, passFormula));
    paper.notes = {countsLine(content), gradeFormulasLine()};
    return paper;
}

} // namespace reports
