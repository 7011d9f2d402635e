#include "journals/gradebook.h"

#include "data/settingsrow.h"
#include "jet/database.h"
#include "journals/counted.h"
#include "journals/gradesheetreader.h"
#include "journals/openday.h"
#include "journals/students.h"
#include "journals/worded.h"
#include "shell/names.h"
#include "shell/prompt.h"
#include "shell/statusline.h"

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace journals {
namespace {

// "12.11", "ноябрь", "итог".
QString placeText(const GradeColumn& column)
{
    switch (column.kind) {
    case GradeKind::Current:
        return column.date.toString(u"dd.MM"_s);
    case GradeKind::Monthly:
        return shell::monthName(column.date.month()).toLower();
    case GradeKind::Final:
        break;
    }
    return u"итог"_s;
}

bool usable(const GradeSelection& selection)
{
    constexpr qint64 kLongestYear = 800; // days; a typing error would make a thousand columns
    if (selection.byMonth())
        return selection.month.valid() && selection.month.validYear();
    return selection.year.valid() && selection.year.from.daysTo(selection.year.to) <= kLongestYear;
}

} // namespace

GradeBook::GradeBook(jet::Database& database, shell::Wording wording, shell::Prompt& prompt,
                     shell::StatusLine& status)
    : m_database(database)
    , m_wording(wording)
    , m_prompt(prompt)
    , m_status(status)
    , m_history(database)
{}

std::vector<ListEntry<DisciplineId>> GradeBook::disciplines(const GradeSelection& selection) const
{
    if (!selection.group || !usable(selection))
        return {};
    return disciplineList(m_database, *selection.group, selection.subgroup, selection.span());
}

bool GradeBook::complete(const GradeSelection& selection)
{
    const QString problem = selection.byMonth() ? problemOf(selection.month) : QString();
    if (!problem.isEmpty())
        say(problem);
    else if (!selection.group)
        say(u"Ошибка: не выбрана группа."_s);
    else if (!usable(selection))
        say(u"Ошибка: неверный учебный год."_s);
    else if (!selection.allDisciplines && !selection.discipline)
        say(u"Выберите дисциплину."_s);
    else
        return true;
    return false;
}

bool GradeBook::load(GradeSelection selection)
{
    if (selection.allDisciplines) {
        selection.discipline.reset();
        if (selection.mode == GradeMode::Current)
            selection.mode = GradeMode::Monthly;
    }
    if (!complete(selection)) {
        clear();
        return false;
    }
    say(u"Идет заполнение таблицы успеваемости..."_s);
    m_sheet = readGradeSheet(m_database, selection);
    forgetSteps();
    if (const QString finals = m_sheet->finalsText(); !finals.isEmpty())
        say(finals);
    say(u"Готово."_s);
    return true;
}

void GradeBook::clear()
{
    m_sheet.reset();
    forgetSteps();
}

bool GradeBook::readOnly() const
{
    return m_database.readOnly();
}

bool GradeBook::offers(GradePlace place) const
{
    return m_sheet && m_sheet->selection.discipline && !readOnly() && m_sheet->holds(place)
           && m_sheet->open(place);
}

bool GradeBook::checkPlaces(std::span<const GradePlace> places, std::size_t open)
{
    if (!m_sheet->selection.discipline) {
        say(u"Выберите дисциплину."_s);
        return false;
    }
    if (readOnly()) {
        const QString text = u"Файл открыт только для чтения: изменить оценки нельзя."_s;
        say(text);
        m_prompt.exclamation(text);
        return false;
    }
    if (open == 0 && !places.empty()) {
        const QString text = closedCellText();
        say(text);
        m_prompt.exclamation(text);
    }
    return open > 0;
}

int GradeBook::set(int grade, std::span<const GradePlace> places)
{
    if (!m_sheet)
        return 0;
    std::vector<GradePlace> open;
    std::copy_if(places.begin(), places.end(), std::back_inserter(open), [this](GradePlace place) {
        return m_sheet->holds(place) && m_sheet->open(place);
    });
    if (!checkPlaces(places, open.size()))
        return 0;
    std::vector<Change> changes;
    for (const GradePlace place : open)
        if (m_sheet->cell(place).grade != grade)
            changes.push_back({place, m_sheet->cell(place).grade, grade});
    if (!changes.empty()) {
        const QString text = stepText(grade, changes);
        const bool atOnce = data::readSettingsRow(m_database).autoSaveGrades;
        if (atOnce && unsaved() == 0) {
            write(text, changes);
            forgetSteps();
        } else {
            m_steps.resize(m_done);
            m_steps.push_back({text, std::move(changes)});
            applyNextStep();
            if (atOnce) // the option was changed meanwhile
                save();
        }
    }
    say(u"Готово."_s);
    return static_cast<int>(open.size());
}

QString GradeBook::stepText(int grade, const std::vector<Change>& changes) const
{
    const QString what = grade == kNoGrade ? u"удаление оценки"_s : spokenGrade(grade);
    if (changes.size() > 1)
        return what + u", "_s
               + counted(static_cast<int>(changes.size()), u"клетка"_s, u"клетки"_s, u"клеток"_s);
    const GradePlace place = changes.front().place;
    const auto& student = m_sheet->students[static_cast<std::size_t>(place.student)];
    return what + u", "_s + withInitials(student.name) + u", "_s
           + placeText(m_sheet->columns[static_cast<std::size_t>(place.column)]);
}

GradeRow GradeBook::rowAt(GradePlace place) const
{
    const GradeColumn& column = m_sheet->columns[static_cast<std::size_t>(place.column)];
    return {m_sheet->students[static_cast<std::size_t>(place.student)].id, column.discipline,
            column.kind, column.span, column.date};
}

// The sheet follows the file.
void GradeBook::write(const QString& text, const std::vector<Change>& changes)
{
    std::vector<RowScope> scopes;
    for (const Change& change : changes) {
        const GradeRow row = rowAt(change.place);
        scopes.push_back(
            {JournalTable::Grades, row.student, row.discipline, row.span.from, row.span.to});
    }
    m_history.record(text, scopes, [&] {
        for (const Change& change : changes)
            storeGrade(m_database, rowAt(change.place), change.after);
    });
    for (const Change& change : changes)
        m_sheet->cell(change.place) = {change.after, change.after};
}

void GradeBook::save()
{
    if (!m_sheet)
        return;
    std::vector<Change> changes;
    for (int student = 0; std::cmp_less(student, m_sheet->students.size()); ++student)
        for (int column = 0; std::cmp_less(column, m_sheet->columns.size()); ++column)
            if (const GradeCell& cell = m_sheet->cell({student, column}); cell.unsaved())
                changes.push_back({{student, column}, cell.stored, cell.grade});
    if (changes.empty())
        return;
    const QString text = m_done == 1 ? m_steps.front().text
                                     : u"сохранение, "_s
                                           + counted(static_cast<int>(changes.size()), u"оценка"_s,
                                                     u"оценки"_s, u"оценок"_s);
    write(text, changes);
    forgetSteps();
    say(u"Сохранено."_s);
}

void GradeBook::discard()
{
    if (!m_sheet)
        return;
    for (GradeStudent& student : m_sheet->students)
        for (GradeCell& cell : student.cells)
            cell.grade = cell.stored;
    forgetSteps();
}

bool GradeBook::mayLeave()
{
    const int count = unsaved();
    if (count == 0)
        return true;
    switch (m_prompt.saveQuestion(
        u"В журнале успеваемости есть несохраненные изменения: %1. Сохранить?"_s.arg(
            counted(count, u"оценка"_s, u"оценки"_s, u"оценок"_s)))) {
    case shell::Answer::Yes:
        save();
        return true;
    case shell::Answer::No:
        discard();
        return true;
    case shell::Answer::Cancel:
        break;
    }
    return false;
}

void GradeBook::forgetSteps()
{
    m_steps.clear();
    m_done = 0;
}

QString GradeBook::undoText() const
{
    return m_done > 0 ? m_steps[m_done - 1].text : m_history.undoText();
}

// Written steps come after the unsaved ones are saved or taken back.
QString GradeBook::redoText() const
{
    if (m_done < m_steps.size())
        return m_steps[m_done].text;
    return m_steps.empty() ? m_history.redoText() : QString();
}

void GradeBook::undo()
{
    if (m_done == 0) {
        walkHistory(true);
        return;
    }
    for (const Change& change : m_steps[--m_done].changes)
        m_sheet->cell(change.place).grade = change.before;
    sayStep(u"Отменено: "_s, redoText());
}

void GradeBook::applyNextStep()
{
    for (const Change& change : m_steps[m_done++].changes)
        m_sheet->cell(change.place).grade = change.after;
}

void GradeBook::redo()
{
    if (m_steps.empty()) {
        walkHistory(false);
        return;
    }
    if (m_done == m_steps.size())
        return;
    applyNextStep();
    sayStep(u"Повторено: "_s, undoText());
}

void GradeBook::walkHistory(bool back)
{
    const QString text = back ? m_history.undoText() : m_history.redoText();
    if (text.isEmpty())
        return;
    const bool done = back ? m_history.undo() : m_history.redo();
    if (m_sheet)
        load(GradeSelection(m_sheet->selection));
    if (done)
        sayStep(back ? u"Отменено: "_s : u"Повторено: "_s, text);
    else
        say(u"Оценки с тех пор изменены, отменить или повторить нельзя."_s);
}

// Past the wording, which would change names such as that of Парамонов.
void GradeBook::sayStep(const QString& what, const QString& step)
{
    m_status.show(what + step);
}

void GradeBook::say(const QString& text)
{
    m_status.show(worded(m_wording, text));
}

} // namespace journals
