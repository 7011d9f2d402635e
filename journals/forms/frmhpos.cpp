#include "journals/forms/frmhpos.h"

#include "journals/forms/absencekeys.h"
#include "journals/forms/attendancecommands.h"
#include "journals/forms/captions.h"
#include "journals/forms/columnwidths.h"
#include "journals/forms/gridcells.h"
#include "journals/forms/journaldelegate.h"
#include "journals/forms/journalprint.h"
#include "journals/forms/journalselectors.h"
#include "journals/worded.h"
#include "shell/forms/runcommand.h"
#include "shell/prompt.h"
#include "shell/session.h"
#include "shell/settings.h"
#include "shell/statusline.h"
#include "ui_frmhpos.h"

#include <QCloseEvent>
#include <QKeyEvent>

#include <algorithm>
#include <optional>

using namespace Qt::StringLiterals;
using shell::JournalAction;
using shell::Setting;

namespace journals {
namespace {

const QString kWidths = u"frmHPos/columns"_s;
const QString kNotFilled = u"Таблица посещаемости не заполнена."_s;
const QString kAbsenceNotWritten = u"Пропуск не записан."_s;

} // namespace

frmHPos::frmHPos(const JournalParts& parts, QWidget* parent)
    : JournalActions(parent)
    , m_parts(parts)
    , ui(std::make_unique<Ui::frmHPos>())
    , m_attendance(parts.session.database(), parts.session.wording(), parts.prompt, parts.status)
{
    ui->setupUi(this);
    m_model = new AttendanceModel(m_attendance, parts.session.wording(), this);
    ui->lblNotice->hide();
    m_selectors = new JournalSelectors(
        parts, {ui->cboGroup, ui->cboSubgroup, ui->cboDiscipline, ui->cboMonth, ui->spinYear},
        u"Все дисциплины"_s, kNotFilled, this);
    m_selectors->setDisciplineSource([this] { return m_attendance.disciplines(selection()); });
    applyWording();
    setUpGrid();
    setUpCommands();
    loadSettings();
    m_selectors->start();
    connect(m_selectors, &JournalSelectors::changed, this, &frmHPos::refill);
    refreshCommands();
    setFocusProxy(ui->cboGroup);
}

frmHPos::~frmHPos() = default;

void frmHPos::setUpGrid()
{
    ui->HF1->setFrozenColumns(kLeadColumns);
    ui->HF1->setModel(m_model);
    ui->HF1->setDelegate(new JournalDelegate(this));
    ui->HF1->installEventFilter(this);
    m_widths = attendanceWidths(*ui->HF1, *m_model);
    connect(ui->HF1, &QTableView::doubleClicked, this, [this] { act(AbsenceAction::Mark); });
    m_commands = new AttendanceCommands(m_parts, *ui->HF1, *m_model, this);
    m_attendance.recordIn(m_commands->history());
    connect(m_commands, &AttendanceCommands::written, this, &frmHPos::refill);
    connect(m_commands, &AttendanceCommands::historyMoved, this, &frmHPos::refreshCommands);
    const QItemSelectionModel* chosen = ui->HF1->selectionModel();
    connect(chosen, &QItemSelectionModel::currentChanged, this, &frmHPos::refreshCommands);
    connect(chosen, &QItemSelectionModel::selectionChanged, this, &frmHPos::refreshCommands);
}

void frmHPos::setUpCommands()
{
    dressToolbar(*ui->Toolbar1);
    connect(ui->keyDay, &QAction::triggered, this, [this] { wantMode(AttendanceMode::Days); });
    connect(ui->keyCal, &QAction::triggered, this, [this] { wantMode(AttendanceMode::Lessons); });
    connect(ui->keyIns, &QAction::triggered, this, [this] { act(AbsenceAction::Mark); });
    connect(ui->uv, &QAction::triggered, this, [this] { act(AbsenceAction::MakeExcused); });
    connect(ui->nuv, &QAction::triggered, this, [this] { act(AbsenceAction::MakeUnexcused); });
    connect(ui->keyDel, &QAction::triggered, this, [this] { act(AbsenceAction::Remove); });
    connect(ui->keyRefresh, &QAction::triggered, this, &frmHPos::refill);
    addShortcut(*this, *ui->keyExport, u"Ctrl+E"_s);
    connect(ui->keyExport, &QAction::triggered, this,
            [this] { exportJournal(*m_model, heading(), m_parts); });
    connect(ui->keyEntry, &QAction::triggered, m_commands, &AttendanceCommands::enterHours);
    connect(ui->keyPer, &QAction::triggered, m_commands, &AttendanceCommands::enterPeriod);

    // The context menu names the keys; they are handled in gesture(), so that a letter typed
    // into a selector is never a command.
    m_commands->offer(ui->keyIns, u"Поставить &пропуск\tПробел, Н"_s);
    m_commands->offer(ui->uv, u"Сделать &уважительным\tУ"_s);
    m_commands->offer(ui->nuv, u"Сделать &неуважительным\tН"_s);
    m_commands->offer(ui->keyDel, u"У&далить пропуск\tDelete"_s);
    m_commands->offer(ui->keyEntry, u"&Ввод часов...\tF2"_s);
    m_commands->offer(ui->keyPer, u"Пропуск на п&ериод...\tF4"_s);
    m_commands->offerInMenus();
    m_commands->offer(ui->keyRefresh, u"&Обновить\tF3"_s);
    m_commands->offer(ui->keyExport, u"Э&кспорт в файл...\tCtrl+E"_s);
}

void frmHPos::applyWording()
{
    const shell::Wording& wording = m_parts.session.wording();
    wordCaptions({ui->lblGroup, ui->lblSubgroup, ui->lblDiscipline, ui->lblMonth, ui->lblYear},
                 wording);
    ui->keyCal->setText(worded(wording, u"По занятиям"_s));
    ui->keyCal->setToolTip(worded(wording, ui->keyCal->toolTip()));
}

void frmHPos::loadSettings()
{
    m_selectors->setMonth(m_parts.settings.number(Setting::JournalMonth),
                          m_parts.settings.number(Setting::JournalYear));
    setMode(m_parts.settings.flag(Setting::LessonMode) && !m_parts.settings.flag(Setting::DayMode)
                ? AttendanceMode::Lessons
                : AttendanceMode::Days);
    m_widths->restore(m_parts.settings.remembered(kWidths));
}

void frmHPos::choose(GroupId group, std::optional<int> subgroup, DisciplineId discipline)
{
    if (m_selectors->chosen().month.month == 0) {
        const QDate day = m_parts.session.workingDate();
        m_selectors->setMonth((day.isValid() ? day : QDate::currentDate()).month(), 0);
    }
    JournalSelectors::Chosen wanted = m_selectors->chosen();
    wanted.group = group;
    wanted.subgroup = subgroup;
    wanted.allDisciplines = false;
    wanted.discipline = discipline;
    m_selectors->restore(wanted);
    const bool taught = m_selectors->chosen().discipline == discipline;
    if (!taught) {
        wanted.allDisciplines = true;
        wanted.discipline.reset();
        m_selectors->restore(wanted);
    }
    refill();
    if (!taught)
        m_parts.status.show(
            worded(m_parts.session.wording(), u"В выбранном месяце эта дисциплина не ведется."_s));
}

void frmHPos::saveSettings()
{
    shell::Settings& settings = m_parts.settings;
    settings.setNumber(Setting::JournalMonth, ui->cboMonth->currentIndex() + 1);
    settings.setNumber(Setting::JournalYear, ui->spinYear->value());
    settings.setFlag(Setting::DayMode, m_mode == AttendanceMode::Days);
    settings.setFlag(Setting::LessonMode, m_mode == AttendanceMode::Lessons);
    settings.remember(kWidths, m_widths->save());
}

void frmHPos::closeEvent(QCloseEvent* event)
{
    saveSettings();
    JournalActions::closeEvent(event);
}

AttendanceSelection frmHPos::selection() const
{
    const JournalSelectors::Chosen chosen = m_selectors->chosen();
    return {chosen.group, chosen.subgroup, chosen.discipline, chosen.month, m_mode};
}

void frmHPos::refill()
{
    if (m_mode == AttendanceMode::Lessons && !selection().discipline)
        setMode(AttendanceMode::Days); // all disciplines are shown by days only
    const bool sameGroup =
        m_model->sheet() && m_model->sheet()->selection.group == selection().group;
    const QModelIndex place = sameGroup ? ui->HF1->currentIndex() : QModelIndex();
    const int row = place.row(), column = place.column();
    if (!shell::runCommand(m_parts.prompt, kNotFilled, [this] { m_model->load(selection()); }))
        m_model->clear();
    showSheet();
    goTo(row, column);
    refreshCommands();
}

void frmHPos::showSheet()
{
    const AttendanceSheet* sheet = m_model->sheet();
    m_widths->apply();
    ui->HF1->setDataArea(m_model->firstCellColumn(), m_model->endCellColumn(),
                         sheet ? static_cast<int>(sheet->students.size()) : 0);
    constexpr qsizetype kShown = 3;
    const QStringList notices = sheet ? sheet->notices : QStringList();
    QString text = notices.mid(0, kShown).join(u' ');
    if (notices.size() > kShown)
        text += u" И еще: "_s + QString::number(notices.size() - kShown) + u'.';
    ui->lblNotice->setText(text);
    ui->lblNotice->setToolTip(notices.join(u'\n'));
    ui->lblNotice->setVisible(!notices.isEmpty());
}

// The cell where the cursor was if it is open, else the first lesson.
void frmHPos::goTo(int row, int column)
{
    const AttendanceSheet* sheet = m_model->sheet();
    if (!sheet || sheet->students.empty())
        return;
    const int day = row < 0 ? 0 : column - kLeadColumns;
    column = kLeadColumns + openColumn(*sheet, day);
    row = std::max(row, 0);
    selectCell(*ui->HF1, m_model->index(std::min(row, m_model->rowCount() - 1),
                                        std::min(column, m_model->columnCount() - 1)));
}

// The lesson journal needs a discipline, so it takes the first where the day journal falls
// back on all.
void frmHPos::setMode(AttendanceMode mode)
{
    m_mode = mode;
    m_selectors->setFallback(mode == AttendanceMode::Lessons
                                 ? JournalSelectors::Fallback::FirstDiscipline
                                 : JournalSelectors::Fallback::AllDisciplines);
    ui->keyDay->setChecked(mode == AttendanceMode::Days);
    ui->keyCal->setChecked(mode == AttendanceMode::Lessons);
}

void frmHPos::wantMode(AttendanceMode mode)
{
    bool allowed = mode == AttendanceMode::Days;
    shell::runCommand(m_parts.prompt, kNotFilled,
                      [&] { allowed = allowed || m_attendance.allowLessonMode(selection()); });
    setMode(allowed ? mode : m_mode);
    if (!allowed)
        return;
    refill();
    m_attendance.announceMode(mode);
}

void frmHPos::act(AbsenceAction action)
{
    if (!m_model->sheet()) {
        refill(); // which says what is missing
        return;
    }
    shell::runCommand(m_parts.prompt, kAbsenceNotWritten,
                      [&] { m_model->apply(action, m_commands->chosenCells()); });
    refreshCommands();
}

bool frmHPos::available(JournalAction action) const
{
    switch (action) {
    case JournalAction::Mark:
        return ui->keyIns->isEnabled();
    case JournalAction::MakeExcused:
        return ui->uv->isEnabled();
    case JournalAction::MakeUnexcused:
        return ui->nuv->isEnabled();
    case JournalAction::Delete:
        return ui->keyDel->isEnabled();
    case JournalAction::Undo:
    case JournalAction::Redo:
        return !caption(action).isEmpty();
    case JournalAction::Refresh:
        return true;
    case JournalAction::Print:
        return m_model->sheet();
    default:
        return false;
    }
}

QString frmHPos::caption(JournalAction action) const
{
    return action == JournalAction::Undo   ? m_commands->undoCaption()
           : action == JournalAction::Redo ? m_commands->redoCaption()
                                           : QString();
}

void frmHPos::run(JournalAction action)
{
    if (const auto absence = absenceAction(action))
        act(*absence);
    else if (action == JournalAction::Undo)
        m_commands->undo();
    else if (action == JournalAction::Redo)
        m_commands->redo();
    else if (action == JournalAction::Refresh)
        refill();
    else if (action == JournalAction::Print && m_model->sheet())
        printJournal(*m_model, u"attendance"_s, heading(), m_parts, this);
}

JournalHeading frmHPos::heading() const
{
    return attendanceHeading(m_model->sheet()->selection,
                             {ui->cboGroup->currentText(), ui->cboDiscipline->currentText()},
                             m_parts.session.wording());
}

void frmHPos::refreshCommands()
{
    const QModelIndexList cells = m_commands->chosenCells();
    const auto offered = [&](AbsenceAction action) {
        return std::any_of(cells.begin(), cells.end(),
                           [&](const QModelIndex& cell) { return m_model->offers(action, cell); });
    };
    ui->keyIns->setEnabled(!cells.isEmpty());
    ui->keyDel->setEnabled(!cells.isEmpty());
    ui->keyExport->setEnabled(m_parts.exportTable && m_model->sheet());
    ui->keyEntry->setEnabled(m_commands->hasCell());
    ui->keyPer->setEnabled(m_commands->hasStudent());
    ui->uv->setEnabled(offered(AbsenceAction::MakeExcused));
    ui->nuv->setEnabled(offered(AbsenceAction::MakeUnexcused));
    emit availabilityChanged();
}

bool frmHPos::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == ui->HF1 && event->type() == QEvent::KeyPress
        && gesture(*static_cast<const QKeyEvent*>(event)))
        return true;
    return JournalActions::eventFilter(watched, event);
}

bool frmHPos::gesture(const QKeyEvent& key)
{
    const auto meaning = absenceKey(key);
    if (!meaning)
        return false;
    if (key.isAutoRepeat()) // a key held down would count the hours down
        return true;
    switch (*meaning) {
    case AbsenceKey::Mark:
        act(AbsenceAction::Mark);
        break;
    case AbsenceKey::MarkOrUnexcuse:
        act(m_model->offers(AbsenceAction::MakeUnexcused, ui->HF1->currentIndex())
                ? AbsenceAction::MakeUnexcused
                : AbsenceAction::Mark);
        break;
    case AbsenceKey::Excuse:
        if (ui->uv->isEnabled())
            act(AbsenceAction::MakeExcused);
        break;
    case AbsenceKey::Remove:
        act(AbsenceAction::Remove);
        break;
    case AbsenceKey::Enter:
        m_commands->enterHours();
        break;
    case AbsenceKey::Period:
        m_commands->enterPeriod();
        break;
    case AbsenceKey::MarkColumn:
        m_commands->markColumn(ui->HF1->currentIndex().column());
        break;
    case AbsenceKey::MarkDay:
        m_commands->markDays();
        break;
    case AbsenceKey::Undo:
        m_commands->undo();
        break;
    case AbsenceKey::Redo:
        m_commands->redo();
        break;
    case AbsenceKey::Copy:
        m_commands->copy();
        break;
    }
    return true;
}

void frmHPos::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_F3 || event->key() == Qt::Key_F5)
        refill();
    else
        JournalActions::keyPressEvent(event);
}

} // namespace journals
