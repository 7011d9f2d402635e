#include "journals/forms/attendancecommands.h"

#include "journals/absenceentry.h"
#include "journals/attendancemodel.h"
#include "journals/forms/frmhposstud.h"
#include "journals/forms/frmhposstudper.h"
#include "journals/forms/gridcells.h"
#include "journals/history.h"
#include "journals/openday.h"
#include "journals/worded.h"
#include "shell/forms/runcommand.h"
#include "shell/prompt.h"
#include "shell/session.h"
#include "shell/statusline.h"

#include <QAction>
#include <QHeaderView>
#include <QMenu>
#include <QTableView>

#include <algorithm>
#include <set>
#include <utility>
#include <vector>

using namespace Qt::StringLiterals;

namespace journals {
namespace {

const QString kNotWritten = u"Пропуски не записаны."_s;

} // namespace

AttendanceCommands::AttendanceCommands(const JournalParts& parts, QTableView& grid,
                                       AttendanceModel& model, QObject* parent)
    : QObject(parent)
    , m_parts(parts)
    , m_grid(grid)
    , m_model(model)
    , m_history(std::make_unique<History>(parts.session.database()))
{}

AttendanceCommands::~AttendanceCommands() = default;

void AttendanceCommands::offer(QAction* command, const QString& text)
{
    offerInMenu(m_grid, *command, worded(m_parts.session.wording(), text));
}

void AttendanceCommands::offerInMenus()
{
    const auto add = [this](const QString& text, auto command) {
        auto* item = new QAction(worded(m_parts.session.wording(), text), &m_grid);
        connect(item, &QAction::triggered, this, command);
        m_grid.addAction(item);
    };
    add(u"Отметить &всех в этот день...\tCtrl+Пробел"_s,
        [this] { markColumn(m_grid.currentIndex().column()); });
    add(u"Отметить &день студента\tShift+Пробел"_s, &AttendanceCommands::markDays);
    add(u"&Копировать\tCtrl+C"_s, &AttendanceCommands::copy);
    QHeaderView& header = *m_grid.horizontalHeader();
    header.setContextMenuPolicy(Qt::CustomContextMenu);
    connect(&header, &QHeaderView::customContextMenuRequested, this,
            &AttendanceCommands::showHeaderMenu);
}

QModelIndexList AttendanceCommands::chosenCells() const
{
    return journals::chosenCells(m_grid);
}

void AttendanceCommands::copy() const
{
    copyCells(m_grid);
}

void AttendanceCommands::showHeaderMenu(const QPoint& at)
{
    const int column = m_grid.horizontalHeader()->logicalIndexAt(at);
    if (column < m_model.firstCellColumn() || column >= m_model.endCellColumn())
        return;
    auto* menu = new QMenu(&m_grid);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    const QAction* mark = menu->addAction(u"Отметить &всех в этот день..."_s);
    connect(mark, &QAction::triggered, this, [this, column] { markColumn(column); });
    menu->popup(m_grid.horizontalHeader()->mapToGlobal(at));
}

bool AttendanceCommands::isCell(const QModelIndex& index) const
{
    return hasStudent() && index.column() >= m_model.firstCellColumn()
           && index.column() < m_model.endCellColumn();
}

bool AttendanceCommands::hasStudent() const
{
    const QModelIndex index = m_grid.currentIndex();
    return m_model.sheet() && index.isValid()
           && std::cmp_less(index.row(), m_model.sheet()->students.size());
}

bool AttendanceCommands::hasCell() const
{
    return isCell(m_grid.currentIndex());
}

// Says why not when there is none.
std::optional<StudentHead> AttendanceCommands::studentOf(int row)
{
    const AttendanceStudent& student = m_model.sheet()->students[static_cast<std::size_t>(row)];
    auto head = readStudentHead(m_parts.session.database(), student.id);
    if (!head)
        m_parts.status.show(
            worded(m_parts.session.wording(), u"Ошибка: невозможно идентифицировать студента."_s));
    return head;
}

void AttendanceCommands::enterHours()
{
    const QModelIndex at = m_grid.currentIndex();
    const auto day = static_cast<std::size_t>(std::max(0, at.column() - kLeadColumns));
    if (!isCell(at)
        || m_model.sheet()->state(static_cast<std::size_t>(at.row()), day)
               == AbsenceState::NotInForce) {
        m_parts.status.show(closedCellText());
        m_parts.prompt.exclamation(closedCellText());
        return;
    }
    shell::runCommand(m_parts.prompt, kNotWritten, [&] {
        auto student = studentOf(at.row());
        if (!student)
            return;
        const AttendanceSheet& sheet = *m_model.sheet();
        const AttendanceColumn& column = sheet.columns[day];
        const auto lesson = sheet.selection.mode == AttendanceMode::Lessons
                                ? std::optional(column.lesson)
                                : std::nullopt;
        frmHPosStud dialog(
            m_parts, *m_history,
            AbsenceEntry(m_parts.session.database(), std::move(*student), column.date),
            sheet.selection.discipline, lesson, &m_grid);
        dialog.exec();
        if (dialog.wrote())
            emit written();
    });
}

// From the day of the cursor to itself; of a block from its first to its last day.
void AttendanceCommands::enterPeriod()
{
    if (!hasStudent()) {
        m_parts.status.show(worded(m_parts.session.wording(), u"Выберите студента."_s));
        return;
    }
    const AttendanceSheet& sheet = *m_model.sheet();
    std::set<int> rows{m_grid.currentIndex().row()};
    std::set<QDate> days;
    for (const QModelIndex& index : m_grid.selectionModel()->selectedIndexes()) {
        rows.insert(index.row());
        if (isCell(index))
            days.insert(
                sheet.columns[static_cast<std::size_t>(index.column() - kLeadColumns)].date);
    }
    if (days.empty())
        days = {sheet.selection.month.first(), sheet.selection.month.last()};
    std::vector<frmHPosStudPer::Candidate> students;
    for (std::size_t row = 0; row < sheet.students.size(); ++row)
        students.push_back({sheet.students[row].id, sheet.students[row].name,
                            rows.contains(static_cast<int>(row))});
    frmHPosStudPer dialog(m_parts, *m_history, students, *days.begin(), *days.rbegin(), &m_grid);
    dialog.exec();
    if (dialog.wrote())
        emit written();
}

void AttendanceCommands::markColumn(int column)
{
    if (!m_model.sheet() || column < m_model.firstCellColumn()
        || column >= m_model.endCellColumn()) {
        m_parts.status.show(closedCellText());
        return;
    }
    const AttendanceSheet& sheet = *m_model.sheet();
    const auto day = static_cast<std::size_t>(column - kLeadColumns);
    QModelIndexList cells;
    for (std::size_t row = 0; row < sheet.students.size(); ++row)
        if (sheet.state(row, day) == AbsenceState::None)
            cells << m_model.index(static_cast<int>(row), column);
    if (cells.isEmpty()) {
        m_parts.status.show(u"В этот день отмечать некого."_s);
        return;
    }
    if (sheet.selection.discipline
        && !m_parts.prompt.question(worded(m_parts.session.wording(),
                                           u"Поставить пропуск за %1 всем, у кого его еще нет "
                                           "(студентов: %2)?"_s)
                                        .arg(sheet.columns[day].date.toString(u"dd.MM.yyyy"_s),
                                             QString::number(cells.size())),
                                    shell::Answer::Yes))
        return;
    shell::runCommand(m_parts.prompt, kNotWritten, [&] {
        const int marked = m_model.apply(AbsenceAction::Mark, cells);
        if (marked > 0)
            m_parts.status.show(u"Поставлено пропусков: "_s + QString::number(marked) + u'.');
    });
    emit historyMoved();
}

void AttendanceCommands::markDays()
{
    shell::runCommand(m_parts.prompt, kNotWritten, [&] {
        std::set<std::pair<int, QDate>> days;
        for (const QModelIndex& index : chosenCells())
            if (isCell(index) && std::cmp_less(index.row(), m_model.sheet()->students.size()))
                days.emplace(index.row(),
                             m_model.sheet()
                                 ->columns[static_cast<std::size_t>(index.column() - kLeadColumns)]
                                 .date);
        std::vector<AbsenceEntry> entries;
        std::vector<RowScope> scopes;
        for (const auto& day : days)
            if (auto student = studentOf(day.first)) {
                scopes.push_back(
                    {JournalTable::Absences, student->id, std::nullopt, day.second, day.second});
                entries.emplace_back(m_parts.session.database(), std::move(*student), day.second);
            }
        if (entries.empty()) {
            m_parts.status.show(closedCellText());
            return;
        }
        int marked = 0;
        const QString step =
            entries.size() == 1
                ? stepText(u"пропуск дня"_s, entries.front().student().name, entries.front().date())
                : cellsStepText(u"пропуски дней"_s, static_cast<int>(entries.size()));
        m_history->record(step, scopes, [&] {
            for (const AbsenceEntry& entry : entries)
                marked += entry.markAllLessons();
        });
        if (marked > 0)
            emit written();
        m_parts.status.show(
            worded(m_parts.session.wording(), u"Отмечено занятий: %1."_s).arg(marked));
    });
}

void AttendanceCommands::undo()
{
    takeSteps(&History::undo, u"Действие не отменено."_s);
}

void AttendanceCommands::redo()
{
    takeSteps(&History::redo, u"Действие не повторено."_s);
}

void AttendanceCommands::takeSteps(bool (History::*move)(), const QString& failed)
{
    const QString text = move == &History::undo ? undoCaption() : redoCaption();
    if (text.isEmpty())
        return;
    const bool ran = shell::runCommand(m_parts.prompt, failed, [&] {
        const bool done = (*m_history.*move)();
        emit written();
        if (done)
            m_parts.status.show(text + u" - готово."_s);
        else
            m_parts.prompt.exclamation(
                failed
                + u" Эти пропуски с тех пор изменены в другом месте, прежние шаги забыты."_s);
    });
    if (!ran)
        emit historyMoved();
}

QString AttendanceCommands::undoCaption() const
{
    const QString step = m_history->undoText();
    return step.isEmpty() ? QString() : u"Отменить: "_s + step;
}

QString AttendanceCommands::redoCaption() const
{
    const QString step = m_history->redoText();
    return step.isEmpty() ? QString() : u"Повторить: "_s + step;
}

} // namespace journals
