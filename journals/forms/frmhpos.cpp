#include "journals/forms/frmhpos.h"

#include "journals/forms/absencekeys.h"
#include "journals/forms/captions.h"
#include "journals/forms/columnwidths.h"
#include "journals/forms/journaldelegate.h"
#include "journals/forms/journalselectors.h"
#include "journals/forms/tableclip.h"
#include "journals/worded.h"
#include "shell/forms/paletteicon.h"
#include "shell/forms/runcommand.h"
#include "shell/prompt.h"
#include "shell/session.h"
#include "shell/settings.h"
#include "shell/statusline.h"
#include "ui_frmhpos.h"

#include <QClipboard>
#include <QCloseEvent>
#include <QGuiApplication>
#include <QKeyEvent>

#include <algorithm>
#include <optional>

// In the global namespace, as the macro wants; a static library's resources need the call.
static void initJournalIcons()
{
    Q_INIT_RESOURCE(journalicons);
}

using namespace Qt::StringLiterals;
using shell::JournalAction;
using shell::Setting;

namespace journals {
namespace {

const QString kWidths = u"frmHPos/columns"_s;
const QString kNotFilled = u"Таблица посещаемости не заполнена."_s;
const QString kNotWritten = u"Пропуск не записан."_s;

std::optional<AbsenceAction> absenceAction(JournalAction action)
{
    switch (action) {
    case JournalAction::Mark:
        return AbsenceAction::Mark;
    case JournalAction::MakeExcused:
        return AbsenceAction::MakeExcused;
    case JournalAction::MakeUnexcused:
        return AbsenceAction::MakeUnexcused;
    case JournalAction::Delete:
        return AbsenceAction::Remove;
    default:
        return std::nullopt;
    }
}

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
    const QItemSelectionModel* chosen = ui->HF1->selectionModel();
    connect(chosen, &QItemSelectionModel::currentChanged, this, &frmHPos::refreshCommands);
    connect(chosen, &QItemSelectionModel::selectionChanged, this, &frmHPos::refreshCommands);
}

void frmHPos::setUpCommands()
{
    initJournalIcons();
    for (QAction* command : ui->Toolbar1->actions())
        if (!command->isSeparator())
            command->setIcon(shell::paletteIcon(command->objectName()));
    connect(ui->keyDay, &QAction::triggered, this, [this] { wantMode(AttendanceMode::Days); });
    connect(ui->keyCal, &QAction::triggered, this, [this] { wantMode(AttendanceMode::Lessons); });
    connect(ui->keyIns, &QAction::triggered, this, [this] { act(AbsenceAction::Mark); });
    connect(ui->uv, &QAction::triggered, this, [this] { act(AbsenceAction::MakeExcused); });
    connect(ui->nuv, &QAction::triggered, this, [this] { act(AbsenceAction::MakeUnexcused); });
    connect(ui->keyDel, &QAction::triggered, this, [this] { act(AbsenceAction::Remove); });
    connect(ui->keyRefresh, &QAction::triggered, this, &frmHPos::refill);
    ui->keyEntry->setEnabled(false);

    // The context menu names the keys; they are handled in gesture(), so that a letter typed
    // into a selector is never a command.
    const auto offer = [this](QAction* command, const QString& text) {
        auto* item = new QAction(text, ui->HF1);
        connect(item, &QAction::triggered, command, &QAction::trigger);
        connect(command, &QAction::changed, item,
                [item, command] { item->setEnabled(command->isEnabled()); });
        item->setEnabled(command->isEnabled());
        ui->HF1->addAction(item);
    };
    offer(ui->keyIns, u"Поставить &пропуск\tПробел, Н"_s);
    offer(ui->uv, u"Сделать &уважительным\tУ"_s);
    offer(ui->nuv, u"Сделать &неуважительным\tН"_s);
    offer(ui->keyDel, u"У&далить пропуск\tDelete"_s);
    offer(ui->keyEntry, u"&Ввод часов...\tF2"_s);
    auto* copy = new QAction(u"&Копировать\tCtrl+C"_s, ui->HF1);
    connect(copy, &QAction::triggered, this, &frmHPos::copySelection);
    ui->HF1->addAction(copy);
    offer(ui->keyRefresh, u"&Обновить\tF3"_s);
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

// The cell where the cursor was, else the first student's first lesson.
void frmHPos::goTo(int row, int column)
{
    const AttendanceSheet* sheet = m_model->sheet();
    if (!sheet || sheet->students.empty())
        return;
    if (row < 0) {
        const auto first = std::find_if(sheet->columns.begin(), sheet->columns.end(),
                                        [](const auto& day) { return day.inForce; });
        row = 0;
        column = kLeadColumns;
        if (first != sheet->columns.end())
            column += static_cast<int>(first - sheet->columns.begin());
    }
    ui->HF1->setCurrentIndex(m_model->index(std::min(row, m_model->rowCount() - 1),
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

QModelIndexList frmHPos::actionCells() const
{
    const QModelIndex current = ui->HF1->currentIndex();
    QModelIndexList selected = ui->HF1->selectionModel()->selectedIndexes();
    if (selected.contains(current))
        return selected;
    return current.isValid() ? QModelIndexList{current} : QModelIndexList();
}

void frmHPos::act(AbsenceAction action)
{
    if (!m_model->sheet()) {
        refill(); // which says what is missing
        return;
    }
    shell::runCommand(m_parts.prompt, kNotWritten, [&] { m_model->apply(action, actionCells()); });
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
    case JournalAction::Refresh:
        return true;
    default:
        return false;
    }
}

void frmHPos::run(JournalAction action)
{
    if (const auto absence = absenceAction(action))
        act(*absence);
    else if (action == JournalAction::Refresh)
        refill();
}

void frmHPos::refreshCommands()
{
    const QModelIndexList cells = actionCells();
    const auto offered = [&](AbsenceAction action) {
        return std::any_of(cells.begin(), cells.end(),
                           [&](const QModelIndex& cell) { return m_model->offers(action, cell); });
    };
    ui->keyIns->setEnabled(!cells.isEmpty());
    ui->keyDel->setEnabled(!cells.isEmpty());
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
        m_parts.status.show(u"Ввод пропущенных часов пока недоступен."_s);
        break;
    case AbsenceKey::Copy:
        copySelection();
        break;
    }
    return true;
}

void frmHPos::copySelection()
{
    const QModelIndexList cells = actionCells();
    if (!cells.isEmpty())
        QGuiApplication::clipboard()->setText(tableText(cells));
}

void frmHPos::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_F3 || event->key() == Qt::Key_F5)
        refill();
    else
        JournalActions::keyPressEvent(event);
}

} // namespace journals
