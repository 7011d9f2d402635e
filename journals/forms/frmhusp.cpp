#include "journals/forms/frmhusp.h"

#include "journals/counted.h"
#include "journals/forms/captions.h"
#include "journals/forms/columnwidths.h"
#include "journals/forms/frmavtor.h"
#include "journals/forms/gradekeys.h"
#include "journals/forms/gradeselectors.h"
#include "journals/forms/gridcells.h"
#include "journals/forms/journaldelegate.h"
#include "journals/forms/journalprint.h"
#include "shell/forms/paletteicon.h"
#include "shell/forms/runcommand.h"
#include "shell/names.h"
#include "shell/session.h"
#include "shell/settings.h"
#include "ui_frmhusp.h"

#include <QCloseEvent>
#include <QKeyEvent>
#include <QMenu>

#include <algorithm>
#include <optional>

using namespace Qt::StringLiterals;
using shell::JournalAction;

namespace journals {
namespace {

const QString kWidths = u"frmHUsp/columns"_s;
const QString kMoveRight = u"frmHUsp/moveRight"_s;
const QString kNotFilled = u"Таблица успеваемости не заполнена."_s;
const QString kGradeNotWritten = u"Оценка не записана."_s;

} // namespace

frmHUsp::frmHUsp(const JournalParts& parts, QWidget* parent)
    : JournalActions(parent)
    , m_parts(parts)
    , ui(std::make_unique<Ui::frmHUsp>())
    , m_book(parts.session.database(), parts.session.wording(), parts.prompt, parts.status)
{
    ui->setupUi(this);
    m_model = new GradeModel(m_book, parts.session.wording(), this);
    const GradeSelectors::Boxes boxes{
        {ui->cboGroup, ui->cboSubgroup, ui->cboDiscipline, ui->cboMonth, ui->spinYear},
        ui->cboMode,
        ui->cboPeriod,
        {ui->lblMonth, ui->cboMonth, ui->lblYear, ui->spinYear},
        {ui->lblPeriod, ui->cboPeriod}};
    m_selectors = new GradeSelectors(
        parts, boxes, kNotFilled,
        [this](const GradeSelection& selection) { return m_book.disciplines(selection); }, this);
    applyWording();
    setUpGrid();
    setUpCommands();
    m_widths->restore(parts.settings.remembered(kWidths));
    showSheet();
    connect(m_selectors, &GradeSelectors::changed, this, &frmHUsp::selectionChanged);
    m_selectors->start();
    refreshCommands();
    setFocusProxy(ui->cboGroup);
}

frmHUsp::~frmHUsp() = default;

void frmHUsp::setUpGrid()
{
    ui->HF1->setFrozenColumns(GradeModel::kLeadColumns);
    ui->HF1->setModel(m_model);
    ui->HF1->setDelegate(new JournalDelegate(this));
    ui->HF1->installEventFilter(this);
    m_widths = gradeWidths(*ui->HF1, *m_model);
    connect(m_model, &GradeModel::dataChanged, m_widths, &ColumnWidths::apply);
    connect(ui->HF1, &QTableView::doubleClicked, this, &frmHUsp::chooseGrade);
    const QItemSelectionModel* chosen = ui->HF1->selectionModel();
    connect(chosen, &QItemSelectionModel::currentChanged, this, &frmHUsp::refreshCommands);
    connect(chosen, &QItemSelectionModel::selectionChanged, this, &frmHUsp::refreshCommands);
}

void frmHUsp::setUpCommands()
{
    dressToolbar(*ui->Toolbar1);
    ui->keyIns->setIcon(shell::paletteIcon(u"keyGrade"_s));
    connect(ui->keyIns, &QAction::triggered, this, &frmHUsp::chooseGrade);
    connect(ui->keyDel, &QAction::triggered, this, [this] { setGrade(kNoGrade); });
    connect(ui->keySave, &QAction::triggered, this, &frmHUsp::save);
    connect(ui->keyAvtoR, &QAction::triggered, this, &frmHUsp::computeGrades);
    connect(ui->keyRefresh, &QAction::triggered, this, &frmHUsp::refresh);
    addShortcut(*this, *ui->keyExport, u"Ctrl+E"_s);
    connect(ui->keyExport, &QAction::triggered, this,
            [this] { exportJournal(*m_model, heading(), m_parts); });
    offerInMenu(*ui->HF1, *ui->keyIns, u"Поставить &оценку...\tF2"_s);
    offerInMenu(*ui->HF1, *ui->keyDel, u"У&далить оценку\tDelete"_s);
    offerInMenu(*ui->HF1, *ui->keySave, u"&Сохранить\tCtrl+S"_s);
    auto* copy = new QAction(u"&Копировать\tCtrl+C"_s, ui->HF1);
    connect(copy, &QAction::triggered, this, [this] { copyCells(*ui->HF1); });
    ui->HF1->addAction(copy);
    m_moveRight = new QAction(u"После оценки - впра&во"_s, ui->HF1);
    m_moveRight->setCheckable(true);
    m_moveRight->setChecked(!m_parts.settings.remembered(kMoveRight).isEmpty());
    ui->HF1->addAction(m_moveRight);
    offerInMenu(*ui->HF1, *ui->keyRefresh, u"О&бновить\tF3"_s);
    offerInMenu(*ui->HF1, *ui->keyExport, u"&Экспорт в файл...\tCtrl+E"_s);
}

void frmHUsp::applyWording()
{
    wordCaptions({ui->lblGroup, ui->lblSubgroup, ui->lblDiscipline, ui->lblMode, ui->lblMonth,
                  ui->lblYear, ui->lblPeriod},
                 m_parts.session.wording());
}

void frmHUsp::closeEvent(QCloseEvent* event)
{
    if (!mayLeave()) {
        event->ignore();
        return;
    }
    m_selectors->save();
    m_parts.settings.remember(kWidths, m_widths->save());
    m_parts.settings.remember(kMoveRight, m_moveRight->isChecked() ? "1" : QByteArray());
    JournalActions::closeEvent(event);
}

void frmHUsp::selectionChanged()
{
    if (mayLeave())
        refill();
    else if (m_model->sheet())
        m_selectors->restore(m_model->sheet()->selection);
}

// False when unsaved grades are to stay; they are not when saving fails.
bool frmHUsp::mayLeave()
{
    bool may = false;
    shell::runCommand(m_parts.prompt, kGradeNotWritten, [&] { may = m_model->mayLeave(); });
    refreshCommands();
    return may;
}

void frmHUsp::refresh()
{
    if (mayLeave())
        refill();
}

void frmHUsp::refill()
{
    const GradeSelection wanted = m_selectors->selection();
    const bool sameGrid = m_model->sheet() && m_model->sheet()->selection.group == wanted.group
                          && m_model->sheet()->selection.mode == wanted.mode;
    const QModelIndex place = sameGrid ? ui->HF1->currentIndex() : QModelIndex();
    const int row = place.row(), column = place.column();
    if (!shell::runCommand(m_parts.prompt, kNotFilled, [&] { m_model->load(wanted); }))
        m_model->clear();
    showSheet();
    goTo(row, column);
    refreshCommands();
}

void frmHUsp::showSheet()
{
    const GradeSheet* sheet = m_model->sheet();
    m_widths->apply();
    ui->HF1->setDataArea(m_model->firstCellColumn(), m_model->endCellColumn(),
                         sheet ? static_cast<int>(sheet->students.size()) : 0);
    QStringList notices;
    if (sheet)
        notices << sheet->finalsText();
    if (m_book.readOnly())
        notices << u"Файл открыт только для чтения."_s;
    notices.removeAll(QString());
    ui->lblNotice->setText(notices.join(u". "_s));
    ui->lblNotice->setVisible(!notices.isEmpty());
}

// The cell where the cursor was if it is open, else the first open one.
void frmHUsp::goTo(int row, int column)
{
    const GradeSheet* sheet = m_model->sheet();
    if (!sheet || sheet->students.empty() || sheet->columns.empty())
        return;
    const int place = row < 0 ? 0 : column - GradeModel::kLeadColumns;
    column = GradeModel::kLeadColumns + openColumn(*sheet, place);
    row = std::max(row, 0);
    selectCell(*ui->HF1, m_model->index(std::min(row, m_model->rowCount() - 1),
                                        std::min(column, m_model->columnCount() - 1)));
}

void frmHUsp::setGrade(int grade)
{
    if (!m_model->sheet()) {
        refill(); // which says what is missing
        return;
    }
    const QModelIndexList cells = chosenCells(*ui->HF1);
    int held = 0;
    shell::runCommand(m_parts.prompt, kGradeNotWritten, [&] { held = m_model->set(grade, cells); });
    if (held > 0 && cells.size() == 1)
        goOn();
    refreshCommands();
}

// Down the column, or to the next lesson of the student.
void frmHUsp::goOn()
{
    const bool right = m_moveRight->isChecked();
    QModelIndex next = ui->HF1->currentIndex();
    do
        next = right ? next.siblingAtColumn(next.column() + 1) : next.siblingAtRow(next.row() + 1);
    while (right && next.isValid() && !m_model->offers(next));
    if (m_model->offers(next))
        selectCell(*ui->HF1, next);
}

void frmHUsp::chooseGrade()
{
    const QModelIndexList cells = chosenCells(*ui->HF1);
    if (std::ranges::none_of(cells, [this](const auto& each) { return m_model->offers(each); })) {
        setGrade(kNoGrade); // which says why not
        return;
    }
    const QModelIndex cell = ui->HF1->currentIndex();
    auto* menu = new QMenu(ui->HF1);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->setObjectName(u"grades"_s);
    menu->setAccessibleName(u"Оценка"_s);
    const QString present = cell.data().toString();
    const auto offer = [&](const QString& text, int grade) {
        QAction* entry = menu->addAction(text, this, [this, grade] { setGrade(grade); });
        if (!present.isEmpty() && gradeText(grade) == present)
            menu->setActiveAction(entry);
    };
    for (const int grade : {5, 4, 3, 2, kPassGrade}) // NOLINT(readability-magic-numbers)
        offer(u'&' + shell::gradeName(grade), grade);
    menu->addSeparator();
    offer(u"&Удалить оценку"_s, kNoGrade);
    menu->popup(ui->HF1->viewport()->mapToGlobal(ui->HF1->visualRect(cell).bottomLeft()));
}

void frmHUsp::save()
{
    shell::runCommand(m_parts.prompt, kGradeNotWritten, [this] { m_model->save(); });
    refreshCommands();
}

void frmHUsp::step(bool back)
{
    const int row = ui->HF1->currentIndex().row(), column = ui->HF1->currentIndex().column();
    shell::runCommand(m_parts.prompt, kGradeNotWritten,
                      [&] { back ? m_model->undo() : m_model->redo(); });
    showSheet();
    goTo(row, column);
    refreshCommands();
}

void frmHUsp::computeGrades()
{
    if (!mayLeave())
        return;
    shell::runCommand(m_parts.prompt, kGradeNotWritten, [this] {
        const GradeSelection shown = m_selectors->selection();
        FrmAvtoR dialog(m_parts.session, m_parts.prompt, m_parts.status, m_book.history(),
                        shown.group, shown.discipline, shown.month, this);
        connect(&dialog, &FrmAvtoR::written, this, &frmHUsp::refill);
        dialog.exec();
    });
}

bool frmHUsp::available(JournalAction action) const
{
    switch (action) {
    case JournalAction::SetGrade:
        return ui->keyIns->isEnabled();
    case JournalAction::RemoveGrade:
        return ui->keyDel->isEnabled();
    case JournalAction::Undo:
        return !m_book.undoText().isEmpty();
    case JournalAction::Redo:
        return !m_book.redoText().isEmpty();
    case JournalAction::Refresh:
        return true;
    case JournalAction::Print:
        return m_model->sheet();
    default:
        return false;
    }
}

QString frmHUsp::caption(JournalAction action) const
{
    if (action == JournalAction::Undo && available(action))
        return u"Отменить: "_s + m_book.undoText();
    if (action == JournalAction::Redo && available(action))
        return u"Повторить: "_s + m_book.redoText();
    return {};
}

void frmHUsp::run(JournalAction action)
{
    switch (action) {
    case JournalAction::SetGrade:
        chooseGrade();
        break;
    case JournalAction::RemoveGrade:
        setGrade(kNoGrade);
        break;
    case JournalAction::Undo:
    case JournalAction::Redo:
        step(action == JournalAction::Undo);
        break;
    case JournalAction::Refresh:
        refresh();
        break;
    case JournalAction::Print:
        if (m_model->sheet())
            printJournal(*m_model, u"grades"_s, heading(), m_parts, this);
        break;
    default:
        break;
    }
}

JournalHeading frmHUsp::heading() const
{
    return gradesHeading(m_model->sheet()->selection,
                         {ui->cboGroup->currentText(), ui->cboDiscipline->currentText()},
                         m_parts.session.wording());
}

void frmHUsp::refreshCommands()
{
    const GradeSheet* sheet = m_model->sheet();
    const bool changeable = sheet && sheet->selection.discipline && !m_book.readOnly()
                            && !chosenCells(*ui->HF1).isEmpty();
    ui->keyIns->setEnabled(changeable);
    ui->keyDel->setEnabled(changeable);
    ui->keyExport->setEnabled(m_parts.exportTable && sheet);
    ui->keyAvtoR->setEnabled(!m_book.readOnly());
    const int unsaved = m_book.unsaved();
    ui->keySave->setEnabled(unsaved > 0);
    ui->lblUnsaved->setVisible(unsaved > 0);
    ui->lblUnsaved->setText(u"Не сохранено: "_s
                            + counted(unsaved, u"оценка"_s, u"оценки"_s, u"оценок"_s) + u'.');
    setWindowModified(unsaved > 0);
    emit availabilityChanged();
}

bool frmHUsp::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == ui->HF1 && event->type() == QEvent::KeyPress
        && gesture(*static_cast<const QKeyEvent*>(event)))
        return true;
    return JournalActions::eventFilter(watched, event);
}

bool frmHUsp::gesture(const QKeyEvent& key)
{
    const auto meaning = gradeKey(key);
    if (!meaning)
        return false;
    if (key.isAutoRepeat()) // a key held down would fill the column
        return true;
    switch (meaning->kind) {
    case GradeKey::Set:
    case GradeKey::Remove:
        setGrade(meaning->grade);
        break;
    case GradeKey::Choose:
        chooseGrade();
        break;
    case GradeKey::Save:
        save();
        break;
    case GradeKey::Undo:
    case GradeKey::Redo:
        step(meaning->kind == GradeKey::Undo);
        break;
    case GradeKey::Copy:
        copyCells(*ui->HF1);
        break;
    }
    return true;
}

void frmHUsp::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_F3 || event->key() == Qt::Key_F5)
        refresh();
    else
        JournalActions::keyPressEvent(event);
}

} // namespace journals
