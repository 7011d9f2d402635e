#include "journals/attendance.h"

#include "data/convert.h"
#include "data/settingsrow.h"
#include "journals/attendancequeries.h"
#include "journals/worded.h"
#include "shell/prompt.h"
#include "shell/statusline.h"

#include "jet/database.h"

using namespace Qt::StringLiterals;

namespace journals {
namespace {

void placeStartBalances(AttendanceSheet& sheet, const std::vector<AbsenceRow>& balances)
{
    for (const AbsenceRow& balance : balances)
        if (const auto student = sheet.studentRow(balance.student))
            sheet.students[*student].start = balance.hours;
}

// Adds each absence to its cell; one without a place is noted and left out.
void placeAbsences(AttendanceSheet& sheet, const std::vector<AbsenceRow>& absences)
{
    for (const AbsenceRow& absence : absences) {
        const auto student = sheet.studentRow(absence.student);
        const auto column =
            student ? sheet.columnOf(*student, absence.date, absence.lesson) : std::nullopt;
        if (column)
            sheet.students[*student].cells[*column] += absence.hours;
        else
            sheet.notices << u"Невозможно отобразить пропуск: "_s
                                 + absence.date.toString(u"dd.MM.yyyy"_s) + u'.';
    }
}

} // namespace

Attendance::Attendance(jet::Database& database, shell::Wording wording, shell::Prompt& prompt,
                       shell::StatusLine& status)
    : m_database(database)
    , m_wording(wording)
    , m_prompt(prompt)
    , m_status(status)
{}

std::vector<ListEntry<DisciplineId>>
Attendance::disciplines(const AttendanceSelection& selection) const
{
    if (!selection.group || !selection.month.valid() || !selection.month.validYear())
        return {};
    return disciplineList(m_database, *selection.group, selection.subgroup,
                          {selection.month.first(), selection.month.last()});
}

std::optional<AttendanceSheet> Attendance::load(const AttendanceSelection& selection)
{
    if (!checkMonth(selection.month))
        return std::nullopt;
    if (!selection.group) {
        say(u"Ошибка: не выбрана группа."_s);
        return std::nullopt;
    }
    if (selection.mode == AttendanceMode::Lessons && !allowLessonMode(selection))
        return std::nullopt;

    say(u"Идет заполнение таблицы посещаемости..."_s);
    AttendanceSheet sheet;
    sheet.selection = selection;
    sheet.lessonHours = std::max(1, data::readSettingsRow(m_database).hoursPerLesson);
    loadColumns(sheet);
    sheet.students = readStudents(m_database, selection);
    for (AttendanceStudent& student : sheet.students)
        student.cells.resize(sheet.columns.size());
    placeStartBalances(sheet, readStartBalances(m_database, selection));
    placeAbsences(sheet, readMonthAbsences(m_database, selection));
    sheet.computeTotals();
    for (const QString& notice : sheet.notices)
        say(notice);
    say(u"Готово."_s);
    return sheet;
}

void Attendance::loadColumns(AttendanceSheet& sheet)
{
    if (sheet.selection.mode == AttendanceMode::Days) {
        sheet.columns = readDayColumns(m_database, sheet.selection);
        return;
    }
    sheet.columns = readLessonColumns(m_database, sheet.selection, sheet.lessonHours);
    if (sheet.columns.empty())
        m_prompt.information(worded(m_wording, u"Справочник занятий не заполнен на этот месяц."_s));
}

bool Attendance::checkMonth(Month month)
{
    if (!month.chosen())
        say(u"Ошибка: не выбран месяц."_s);
    else if (!month.valid())
        say(u"Ошибка: неверный месяц."_s);
    else if (!month.validYear())
        say(u"Ошибка: неверный год."_s);
    else
        return true;
    return false;
}

bool Attendance::allowLessonMode(const AttendanceSelection& selection)
{
    if (!selection.discipline) {
        m_prompt.information(worded(
            m_wording, u"Вывод посещаемости по ВСЕМ дисциплинам возможен только при отображении "
                       "ВСЕХ дней месяца. При выборе любой дисциплины из списка дисциплин "
                       "данный режим станет доступен, нажатием этой кнопки Вы сможете "
                       "отобразить Журнал занятий по дисциплине."_s));
        return false;
    }
    if (!data::readSettingsRow(m_database).useTimetable) {
        m_prompt.information(worded(m_wording,
                                    u"Данная функция будет доступна, если Вы включите в параметрах "
                                    "программы \"Использовать расписание занятий\"."_s));
        return false;
    }
    return true;
}

void Attendance::announceMode(AttendanceMode mode)
{
    say(mode == AttendanceMode::Days
            ? u"Пропуски по дням месяца."_s
            : u"Журнал занятий - каждая графа соответствует одному занятию."_s);
}

void Attendance::say(const QString& text)
{
    m_status.show(worded(m_wording, text));
}

} // namespace journals
