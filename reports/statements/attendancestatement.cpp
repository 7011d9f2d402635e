#include "journals/attendancesheetreader.h"
#include "journals/lists.h"
#include "journals/students.h"
#include "papers/frame.h"
#include "reports/statements.h"
#include "reports/statements/pieces.h"
#include "reports/worded.h"

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace reports {

using namespace papers;

namespace {

using journals::Absence;
using journals::AbsenceState;
using journals::AttendanceSheet;

constexpr int kBalanceColumns = 2;
constexpr double kDaysWidth = 161, kHoursWidth = 13, kShareWidth = 14; // mm
constexpr double kTooMuch = 30; // percent of the hours missed without a good reason

struct AttendanceContent
{
    const StatementSource& source;
    GroupRow group;
    AttendanceSheet sheet;
    QString discipline; // empty: all
    int hours = 0;      // taught
    bool balances = false;

    int days() const { return static_cast<int>(sheet.columns.size()); }
    int students() const { return static_cast<int>(sheet.students.size()); }
    int totalColumn() const { return kNumberColumns + days(); }
    int balanceColumn() const { return totalColumn() + 4; }
    AttendanceFigures figures() const
    {
        return AttendanceFigures::ofGroup(students(), hours, sheet.monthTotal());
    }
};

Ink inkOf(AbsenceState state)
{
    return state == AbsenceState::Unexcused ? Ink::Unexcused
           : state == AbsenceState::Excused ? Ink::Excused
                                            : Ink::Plain;
}

std::vector<Row> headOf(const AttendanceContent& content)
{
    std::vector<Row> head{studentHeads(), {}};
    for (const auto& day : content.sheet.columns)
        addDayHead(head, day.date, day.dayOff);
    head[0].push_back(heading(u"Пропущено, час."_s, 3));
    head[0].push_back(heading(u"Посещ., %"_s, 1, 2));
    for (const QString& kind : {u"всего"_s, u"уваж."_s, u"неуваж."_s})
        head[1].push_back(heading(kind));
    if (content.balances) {
        head[0].push_back(heading(u"С 1 сентября, час."_s, kBalanceColumns));
        for (const QString& day : {u"на начало"_s, u"на конец"_s})
            head[1].push_back(heading(day));
    }
    return head;
}

Cell dayCell(const AttendanceContent& content, std::size_t student, std::size_t day)
{
    const AttendanceSheet& sheet = content.sheet;
    const AbsenceState state = sheet.state(student, day);
    Cell cell = hours(sheet.cell(student, day).total(), inkOf(state));
    if (state == AbsenceState::NotInForce && !content.discipline.isEmpty())
        cell = text(u"X"_s, Align::Centre);
    cell.shaded = sheet.columns[day].dayOff;
    return cell;
}

QString shareFormula(const AttendanceContent& content, int row)
{
    const QString missed = place(content.totalColumn(), row);
    return content.hours == 0 ? QString()
                              : u"(%1-%2)/%1*100"_s.arg(QString::number(content.hours), missed);
}

Row studentRow(const AttendanceContent& content, std::size_t student)
{
    const auto& row = content.sheet.students[student];
    const int line = static_cast<int>(student);
    Row cells = studentCells(student + 1, row.name);
    for (std::size_t day = 0; day < row.cells.size(); ++day)
        cells.push_back(dayCell(content, student, day));
    Cell total = bold(hours(row.month.total()));
    total.formula = u"SUM(%1)"_s.arg(across(line, kNumberColumns, content.days()));
    cells.push_back(total);
    cells.push_back(hours(row.month.excused, Ink::Excused));
    cells.push_back(hours(row.month.unexcused, Ink::Unexcused));
    cells.push_back(rateCell(AttendanceFigures::ofGroup(1, content.hours, row.month).attendance(),
                             shareFormula(content, line)));
    if (content.balances) {
        cells.push_back(hours(row.start.total()));
        Cell end = hours(row.end().total());
        end.formula =
            place(content.balanceColumn(), line) + u'+' + place(content.totalColumn(), line);
        cells.push_back(end);
    }
    return cells;
}

// Hours of the days that `part` picks, without formulas.
Cell daySum(int value, bool dayOff)
{
    Cell cell = bold(hours(value));
    cell.shaded = dayOff;
    return cell;
}

std::vector<Row> totalRows(const AttendanceContent& content)
{
    const AttendanceSheet& sheet = content.sheet;
    const Absence total = sheet.monthTotal();
    const int rows = content.students(), last = content.totalColumn();
    Row all{totalLabel(u"Итого за день, час."_s)}, unexcused{totalLabel(u"из них неуваж."_s)};
    for (std::size_t day = 0; day < sheet.columns.size(); ++day) {
        const bool off = sheet.columns[day].dayOff;
        all.push_back(daySum(sheet.columnTotals[day].total(), off));
        if (rows > 0)
            all.back().formula = sumFormula(kNumberColumns + static_cast<int>(day), rows);
        unexcused.push_back(daySum(sheet.columnTotals[day].unexcused, off));
    }
    all.push_back(sumCell(total.total(), last, rows));
    all.push_back(sumCell(total.excused, last + 1, rows));
    all.push_back(sumCell(total.unexcused, last + 2, rows));
    all.push_back(bold(rateCell(content.figures().attendance())));
    unexcused.push_back(sumCell(total.unexcused, last + 2, rows));
    unexcused.push_back(emptyCell(3));
    if (content.balances) {
        const Absence start = sheet.startTotal(), end = sheet.endTotal();
        all.push_back(sumCell(start.total(), content.balanceColumn(), rows));
        all.push_back(sumCell(end.total(), content.balanceColumn() + 1, rows));
        unexcused.push_back(bold(hours(start.unexcused)));
        unexcused.push_back(bold(hours(end.unexcused)));
    }
    return {all, unexcused};
}

QString worstLine(const AttendanceContent& content)
{
    QStringList names;
    for (const auto& student : content.sheet.students) {
        const Rate share = AttendanceFigures::ofGroup(1, content.hours, student.month).unexcused();
        if (share && *share > kTooMuch)
            names << journals::withInitials(student.name) + u" ("_s + rateText(share) + u')';
    }
    return names.isEmpty() ? QString()
                           : u"Без уважительной причины пропущено более 30 % часов: "_s
                                 + names.join(u", "_s) + u'.';
}

QStringList notesOf(const AttendanceContent& content)
{
    const auto& wording = content.source.wording;
    const AttendanceFigures figures = content.figures();
    const auto without = std::ranges::count_if(
        content.sheet.students, [](const auto& each) { return each.month.total() == 0; });
    QStringList notes{
        u"Списочный состав: %1. Выдано учебных часов: %2. Человеко-часов: %3."_s.arg(
            QString::number(figures.students), QString::number(figures.hours),
            QString::number(figures.personHours)),
        u"Пропущено часов: всего %1, по уважительным причинам %2, без уважительных %3; %4 %5."_s
            .arg(QString::number(figures.missed.total()), QString::number(figures.missed.excused),
                 QString::number(figures.missed.unexcused),
                 worded(wording, u"на одного студента"_s), figureText(figures.perStudent())),
        attendanceLine(figures)
            + u"; %1 без пропусков: %2."_s.arg(worded(wording, u"студентов"_s)).arg(without)};
    if (const QString worst = worstLine(content); !worst.isEmpty())
        notes << worst;
    notes << u"Обозначения: "_s
                 + worded(wording, u"прямой жирный - неуважительные, курсив - уважительные, "
                                   "обычный - смешанные; серый - нерабочий день; X - нет "
                                   "занятия."_s);
    return notes + attendanceFormulas(content.source) + content.sheet.notices;
}

QString disciplineText(const AttendanceContent& content)
{
    return content.discipline.isEmpty() ? worded(content.source.wording, u"по всем дисциплинам"_s)
                                        : content.discipline;
}

} // namespace

std::vector<Paper> attendanceStatement(const StatementSource& source, const ReportRequest& request,
                                       journals::GroupId group)
{
    AttendanceContent content{source, readGroup(source.database, group), {}, {}};
    content.balances = request.balances;
    journals::AttendanceSelection selection;
    selection.group = group;
    selection.discipline = request.discipline;
    selection.month = request.month;
    content.sheet = journals::readAttendanceSheet(source.database, selection);
    if (request.discipline)
        content.discipline = disciplineName(source.database, *request.discipline);
    content.hours = taughtHours(source.database, group,
                                {request.month.first(), request.month.last()}, request.discipline);

    Paper paper =
        groupPaper(source, content.group, u"ВЕДОМОСТЬ ПОСЕЩАЕМОСТИ ЗА МЕСЯЦ"_s,
                   journals::monthText(request.month) + u" · "_s + disciplineText(content));
    paper.widths.insert(paper.widths.end(), content.sheet.columns.size(),
                        kDaysWidth / content.days());
    for (const double width : {kHoursWidth, kHoursWidth, kHoursWidth, kShareWidth})
        paper.widths.push_back(width);
    if (content.balances) // wider than the page: all is set a little smaller
        paper.widths.insert(paper.widths.end(), kBalanceColumns, kHoursWidth);
    paper.head = headOf(content);
    for (std::size_t student = 0; student < content.sheet.students.size(); ++student)
        paper.body.push_back(studentRow(content, student));
    std::ranges::move(totalRows(content), std::back_inserter(paper.body));
    paper.notes = notesOf(content);
    paper.signatures = {curatorSignature(source, content.group)};
    addFrame(paper, source.settings);
    return {std::move(paper)};
}

} // namespace reports
