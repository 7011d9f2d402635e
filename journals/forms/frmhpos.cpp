#include "journals/forms/frmhpos.h"

#include "journals/forms/absencekeys.h"
#include "journals/forms/attendancedelegate.h"
#include "journals/forms/attendancewidths.h"
#include "journals/forms/captions.h"
#include "journals/forms/tableclip.h"
#include "journals/lists.h"
#include "journals/worded.h"
#include "shell/forms/paletteicon.h"
#include "shell/forms/runcommand.h"
#include "shell/names.h"
#include "shell/prompt.h"
#include "shell/session.h"
#include "shell/settings.h"
#include "shell/statusline.h"
#include "ui_frmhpos.h"

#include <QClipboard>
#include <QCloseEvent>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QSignalBlocker>

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
    applyWording();
    setUpGrid();
    setUpCommands();
    loadSettings();
    fillGroups();
    connectSelectors();
    refreshCommands();
    setFocusProxy(ui->cboGroup);
}

frmHPos::~frmHPos() = default;

void frmHPos::setUpGrid()
{
    ui->HF1->setFrozenColumns(kLeadColumns);
    ui->HF1->setModel(m_model);
    ui->HF1->setDelegate(new AttendanceDelegate(this));
    ui->HF1->installEventFilter(this);
    m_widths = new AttendanceWidths(*ui->HF1);
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
    for (QComboBox* box : {ui->cboGroup, ui->cboSubgroup, ui->cboDiscipline})
        box->setPlaceholderText(worded(wording, box->placeholderText()));
    ui->keyCal->setText(worded(wording, u"По занятиям"_s));
    ui->keyCal->setToolTip(worded(wording, ui->keyCal->toolTip()));
}

void frmHPos::loadSettings()
{
    ui->cboMonth->addItems(shell::monthNames());
    const int month = m_parts.settings.number(Setting::JournalMonth);
    ui->cboMonth->setCurrentIndex(month >= 1 && month <= 12 ? month - 1 : -1);
    const int year = m_parts.settings.number(Setting::JournalYear);
    const QDate today = m_parts.session.workingDate().isValid() ? m_parts.session.workingDate()
                                                                : QDate::currentDate();
    ui->spinYear->setValue(year > 0 ? year : today.year());
    setMode(m_parts.settings.flag(Setting::LessonMode) && !m_parts.settings.flag(Setting::DayMode)
                ? AttendanceMode::Lessons
                : AttendanceMode::Days);
    m_widths->restore(m_parts.settings.remembered(kWidths));
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

void frmHPos::connectSelectors()
{
    connect(ui->cboGroup, &QComboBox::currentIndexChanged, this, &frmHPos::groupChanged);
    connect(ui->cboSubgroup, &QComboBox::currentIndexChanged, this, &frmHPos::selectionChanged);
    connect(ui->cboMonth, &QComboBox::currentIndexChanged, this, &frmHPos::selectionChanged);
    connect(ui->spinYear, &QSpinBox::valueChanged, this, &frmHPos::selectionChanged);
    connect(ui->cboDiscipline, &QComboBox::currentIndexChanged, this, &frmHPos::refill);
    connect(&m_parts.session, &shell::Session::settingsChanged, this, [this] {
        if (m_parts.session.isOpen())
            selectionChanged();
    });
}

void frmHPos::fillGroups()
{
    shell::runCommand(m_parts.prompt, kNotFilled, [this] {
        for (const auto& group : groupList(m_parts.session.database()))
            ui->cboGroup->addItem(group.name, static_cast<int>(group.key));
    });
    ui->cboGroup->setCurrentIndex(-1);
    const QSignalBlocker quiet(ui->cboDiscipline);
    ui->cboDiscipline->addItem(worded(m_parts.session.wording(), u"Все дисциплины"_s));
    ui->cboDiscipline->setCurrentIndex(0);
}

void frmHPos::groupChanged()
{
    const bool filled = shell::runCommand(m_parts.prompt, kNotFilled, [this] {
        const QSignalBlocker quiet(ui->cboSubgroup);
        const int kept = std::max(0, ui->cboSubgroup->currentIndex());
        ui->cboSubgroup->clear();
        if (const auto group = selection().group)
            for (const auto& subgroup : subgroupList(m_parts.session.database(), *group))
                ui->cboSubgroup->addItem(worded(m_parts.session.wording(), subgroup.name),
                                         subgroup.key ? QVariant(*subgroup.key) : QVariant());
        ui->cboSubgroup->setCurrentIndex(kept < ui->cboSubgroup->count() ? kept : 0);
    });
    if (filled)
        selectionChanged();
}

void frmHPos::selectionChanged()
{
    if (shell::runCommand(m_parts.prompt, kNotFilled, [this] { fillDisciplines(); }))
        refill();
}

// Keeps the chosen discipline as long as it is taught. The lesson journal needs one, so it
// takes the first where the day journal falls back on all.
void frmHPos::fillDisciplines()
{
    const auto disciplines = m_attendance.disciplines(selection());
    const QSignalBlocker quiet(ui->cboDiscipline);
    const QVariant kept = ui->cboDiscipline->currentData();
    while (ui->cboDiscipline->count() > 1)
        ui->cboDiscipline->removeItem(1);
    for (const auto& discipline : disciplines)
        ui->cboDiscipline->addItem(discipline.name, static_cast<int>(discipline.key));
    const int index = kept.isValid() ? ui->cboDiscipline->findData(kept) : -1;
    const int fallback = m_mode == AttendanceMode::Lessons && !disciplines.empty() ? 1 : 0;
    ui->cboDiscipline->setCurrentIndex(index > 0 ? index : fallback);
}

AttendanceSelection frmHPos::selection() const
{
    AttendanceSelection chosen;
    if (ui->cboGroup->currentIndex() >= 0)
        chosen.group = GroupId{ui->cboGroup->currentData().toInt()};
    if (ui->cboSubgroup->currentData().isValid())
        chosen.subgroup = ui->cboSubgroup->currentData().toInt();
    if (ui->cboDiscipline->currentData().isValid())
        chosen.discipline = DisciplineId{ui->cboDiscipline->currentData().toInt()};
    chosen.month = {ui->spinYear->value(), ui->cboMonth->currentIndex() + 1};
    chosen.mode = m_mode;
    return chosen;
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
    m_widths->apply(m_mode == AttendanceMode::Lessons);
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

void frmHPos::setMode(AttendanceMode mode)
{
    m_mode = mode;
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
