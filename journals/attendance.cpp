#include "journals/attendance.h"

#include "data/settingsrow.h"
#include "journals/attendancesheetreader.h"
#include "journals/worded.h"
#include "shell/prompt.h"
#include "shell/statusline.h"

#include "jet/database.h"

using namespace Qt::StringLiterals;

namespace journals {
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
    AttendanceSheet sheet = readAttendanceSheet(m_database, selection);
    if (selection.mode == AttendanceMode::Lessons && sheet.columns.empty())
        m_prompt.information(worded(m_wording, u"Справочник занятий не заполнен на этот месяц."_s));
    for (const QString& notice : sheet.notices)
        say(notice);
    say(u"Готово."_s);
    return sheet;
}

bool Attendance::checkMonth(Month month)
{
    const QString problem = problemOf(month);
    if (!problem.isEmpty())
        say(problem);
    return problem.isEmpty();
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
