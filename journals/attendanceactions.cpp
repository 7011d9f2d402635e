// The cell actions of the attendance journal: checks, then writing, then the sheet.
#include "journals/attendance.h"

#include "journals/absences.h"
#include "journals/history.h"
#include "journals/openday.h"
#include "journals/studenthead.h"
#include "journals/worded.h"
#include "shell/prompt.h"
#include "shell/statusline.h"

#include "jet/database.h"

#include <algorithm>
#include <utility>
#include <vector>

using namespace Qt::StringLiterals;

namespace journals {
namespace {

struct SheetCell
{
    std::size_t student;
    std::size_t column;
};

// The student's day or lesson at a grid position, if it is one.
std::optional<SheetCell> sheetCell(const AttendanceSheet& sheet, GridCell cell)
{
    const int column = cell.column - kLeadColumns;
    if (cell.row < 0 || std::cmp_greater_equal(cell.row, sheet.students.size()) || column < 0
        || std::cmp_greater_equal(column, sheet.columns.size()))
        return std::nullopt;
    return SheetCell{static_cast<std::size_t>(cell.row), static_cast<std::size_t>(column)};
}

bool changeable(const AttendanceSheet& sheet, GridCell cell)
{
    const auto place = sheetCell(sheet, cell);
    return place && sheet.state(place->student, place->column) != AbsenceState::NotInForce;
}

// False for a lesson that the student has in another column, of his own subgroup.
bool shownHere(const AttendanceSheet& sheet, GridCell cell)
{
    const SheetCell at = sheetCell(sheet, cell).value();
    const AttendanceColumn& column = sheet.columns[at.column];
    return sheet.columnOf(at.student, column.date, column.lesson) == at.column;
}

// Requires changeable() and a discipline.
AbsencePlace placeOf(const AttendanceSheet& sheet, GridCell cell)
{
    const SheetCell at = sheetCell(sheet, cell).value();
    AbsencePlace place;
    place.student = sheet.students[at.student].id;
    place.discipline = sheet.selection.discipline.value();
    place.date = sheet.columns[at.column].date;
    if (sheet.selection.mode == AttendanceMode::Lessons)
        place.lesson = sheet.columns[at.column].lesson;
    return place;
}

// Of several cells those that are empty, if any is: one more mark must not count down what the
// others hold already.
void preferEmpty(const AttendanceSheet& sheet, std::vector<GridCell>& cells)
{
    const auto empty = [&](GridCell cell) {
        const SheetCell at = sheetCell(sheet, cell).value();
        return sheet.cell(at.student, at.column).total() == 0;
    };
    if (std::ranges::any_of(cells, empty))
        std::erase_if(cells, [&](GridCell cell) { return !empty(cell); });
}

std::vector<RowScope> scopesOf(const AttendanceSheet& sheet, const std::vector<GridCell>& cells)
{
    std::vector<RowScope> scopes;
    for (const GridCell cell : cells) {
        const AbsencePlace place = placeOf(sheet, cell);
        scopes.push_back(
            {JournalTable::Absences, place.student, place.discipline, place.date, place.date});
    }
    return scopes;
}

QString stepName(AbsenceAction action, const AttendanceSheet& sheet,
                 const std::vector<GridCell>& cells)
{
    const bool one = cells.size() == 1;
    QString what;
    switch (action) {
    case AbsenceAction::Mark:
        what = one ? u"пропуск"_s : u"пропуски"_s;
        break;
    case AbsenceAction::MakeExcused:
        what = u"уважительная причина"_s;
        break;
    case AbsenceAction::MakeUnexcused:
        what = u"неуважительная причина"_s;
        break;
    case AbsenceAction::Remove:
        what = u"удаление"_s;
        break;
    }
    if (!one)
        return cellsStepText(what, static_cast<int>(cells.size()));
    const SheetCell at = sheetCell(sheet, cells.front()).value();
    return stepText(what, sheet.students[at.student].name, sheet.columns[at.column].date);
}

QString statusText(const Marked& marked)
{
    switch (marked.result) {
    case MarkResult::UnexcusedDown:
        return u"Количество неуважительных пропусков: "_s + QString::number(marked.left.unexcused);
    case MarkResult::ExcusedDown:
        return u"Количество уважительных пропусков: "_s + QString::number(marked.left.excused);
    case MarkResult::NothingLeft:
        return u"Количество пропусков: 0"_s;
    case MarkResult::Added:
        break;
    }
    return u"Готово."_s;
}

// Reads the hours of the cell again, which is where they are shown: the student's own
// column, should lessons of several subgroups share the time.
void refreshCell(jet::Database& database, AttendanceSheet& sheet, GridCell cell)
{
    const SheetCell at = sheetCell(sheet, cell).value();
    const AttendanceColumn& column = sheet.columns[at.column];
    const auto shown = sheet.columnOf(at.student, column.date, column.lesson);
    sheet.setCell(at.student, shown.value_or(at.column),
                  readAbsence(database, placeOf(sheet, cell)));
}

} // namespace

bool Attendance::offers(AbsenceAction action, const AttendanceSheet& sheet, GridCell cell)
{
    const auto place = sheetCell(sheet, cell);
    switch (action) {
    case AbsenceAction::MakeExcused:
        return place && sheet.state(place->student, place->column) == AbsenceState::Unexcused;
    case AbsenceAction::MakeUnexcused:
        return place && sheet.state(place->student, place->column) == AbsenceState::Excused;
    case AbsenceAction::Mark:
    case AbsenceAction::Remove:
        break;
    }
    return true; // what cannot be done is refused with its message
}

bool Attendance::checkCell(const AttendanceSheet& sheet, GridCell cell)
{
    if (!changeable(sheet, cell)) {
        const QString text = closedCellText();
        say(text);
        m_prompt.exclamation(text);
        return false;
    }
    if (!sheet.selection.discipline) {
        m_prompt.information(
            worded(m_wording, u"Для установки пропуска выберите дисциплину из списка."_s));
        return false;
    }
    if (!checkMonth(sheet.selection.month))
        return false;
    const SheetCell at = sheetCell(sheet, cell).value();
    if (!sheet.columns[at.column].date.isValid()) {
        say(u"Ошибка: неверный день."_s);
        return false;
    }
    if (sheet.students[at.student].id == StudentId{}) {
        say(u"Ошибка: невозможно идентифицировать студента."_s);
        return false;
    }
    return true;
}

int Attendance::apply(AbsenceAction action, AttendanceSheet& sheet, std::span<const GridCell> cells)
{
    std::vector<GridCell> targets;
    std::copy_if(cells.begin(), cells.end(), std::back_inserter(targets), [&](GridCell cell) {
        return changeable(sheet, cell) && offers(action, sheet, cell)
               && (cells.size() == 1 || shownHere(sheet, cell)); // or it would be marked twice
    });
    if (cells.empty() || !checkCell(sheet, targets.empty() ? cells.front() : targets.front())
        || targets.empty())
        return 0;

    if (action == AbsenceAction::Mark)
        preferEmpty(sheet, targets);
    QString text;
    const auto write = [&] {
        for (const GridCell cell : targets)
            text = carryOut(action, sheet, cell);
    };
    if (m_history) {
        m_history->record(stepName(action, sheet, targets), scopesOf(sheet, targets), write);
    } else {
        jet::Transaction transaction(m_database);
        write();
        transaction.commit();
    }
    for (const GridCell cell : targets)
        refreshCell(m_database, sheet, cell);
    say(targets.size() == 1 ? text : u"Готово."_s);
    return static_cast<int>(targets.size());
}

QString Attendance::carryOut(AbsenceAction action, const AttendanceSheet& sheet, GridCell cell)
{
    AbsencePlace place = placeOf(sheet, cell);
    switch (action) {
    case AbsenceAction::Mark:
        if (!place.lesson)
            place.lesson =
                lessonToMark(m_database, place, sheet.selection.group.value(),
                             sheet.students[static_cast<std::size_t>(cell.row)].subgroup);
        return mark(place.student, place.discipline, place.date, *place.lesson);
    case AbsenceAction::MakeExcused:
        makeExcused(m_database, place);
        break;
    case AbsenceAction::MakeUnexcused:
        makeUnexcused(m_database, place);
        break;
    case AbsenceAction::Remove:
        removeAbsence(m_database, place);
        break;
    }
    return u"Готово."_s;
}

QString Attendance::mark(StudentId student, DisciplineId discipline, QDate date, int lesson)
{
    return statusText(
        markAbsence(m_database, {student, discipline, date, lesson}, lessonHours(m_database)));
}

} // namespace journals
