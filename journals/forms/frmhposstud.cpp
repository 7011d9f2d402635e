#include "journals/forms/frmhposstud.h"

#include "journals/absencedaymodel.h"
#include "journals/forms/absencekeys.h"
#include "journals/forms/frmhposstudper.h"
#include "journals/forms/journaldelegate.h"
#include "journals/hours.h"
#include "journals/worded.h"
#include "shell/forms/runcommand.h"
#include "shell/prompt.h"
#include "shell/session.h"
#include "shell/statusline.h"
#include "ui_frmhposstud.h"

#include <QCloseEvent>
#include <QHeaderView>
#include <QKeyEvent>
#include <QSignalBlocker>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace journals {
namespace {

const QString kNotRead = u"Пропуски не прочитаны."_s;
const QString kEntryNotWritten = u"Пропуски не записаны."_s;

QString lessonNumbers(const std::vector<int>& lessons)
{
    QStringList numbers;
    for (const int lesson : lessons)
        numbers << QString::number(lesson);
    return numbers.join(u", "_s);
}

} // namespace

frmHPosStud::frmHPosStud(const JournalParts& parts, History& history, AbsenceEntry entry,
                         std::optional<DisciplineId> discipline, std::optional<int> lesson,
                         QWidget* parent)
    : QDialog(parent)
    , m_parts(parts)
    , m_history(history)
    , m_entry(std::move(entry))
    , m_discipline(discipline)
    , m_lesson(lesson)
    , ui(std::make_unique<Ui::frmHPosStud>())
{
    ui->setupUi(this);
    m_day = new AbsenceDayModel(parts.session.wording(), this);
    setUpTexts();
    setUpGrid();
    ui->chkDay->setChecked(!m_discipline);
    ui->chkDay->setVisible(m_discipline.has_value());
    if (m_discipline)
        resize(width(), minimumSizeHint().height());
    connectControls();
    load();
}

frmHPosStud::~frmHPosStud() = default;

void frmHPosStud::setUpTexts()
{
    const shell::Wording& wording = m_parts.session.wording();
    setWindowTitle(worded(wording, windowTitle()));
    for (QLabel* label : {ui->lblStudent, ui->lblGroup, ui->lblDiscipline})
        label->setText(worded(wording, label->text()));
    ui->chkDay->setToolTip(worded(wording, ui->chkDay->toolTip()));
    ui->cmdPeriod->setToolTip(worded(wording, ui->cmdPeriod->toolTip()));
    ui->HF1->setAccessibleName(worded(wording, ui->HF1->accessibleName()));

    const StudentHead& student = m_entry.student();
    ui->lblStudentName->setText(student.name);
    ui->lblGroupName->setText(student.subgroup == 0
                                  ? student.groupName
                                  : student.groupName + u", "_s + QString::number(student.subgroup)
                                        + u" п/г"_s);
    ui->lblDateText->setText(m_entry.date().toString(u"dd.MM.yyyy"_s));
}

void frmHPosStud::setUpGrid()
{
    ui->HF1->setModel(m_day);
    ui->HF1->setItemDelegate(new JournalDelegate(this));
    ui->HF1->installEventFilter(this);
    QHeaderView& header = *ui->HF1->horizontalHeader();
    header.setSectionResizeMode(QHeaderView::ResizeToContents);
    header.setSectionResizeMode(AbsenceDayModel::DisciplineColumn, QHeaderView::Stretch);
    header.setHighlightSections(false);
    header.setSectionsClickable(false);
}

void frmHPosStud::connectControls()
{
    connect(ui->txtNuv, &QLineEdit::textEdited, this,
            [this] { typeHours(*ui->txtNuv, m_counts.hours.unexcused); });
    connect(ui->txtUv, &QLineEdit::textEdited, this,
            [this] { typeHours(*ui->txtUv, m_counts.hours.excused); });
    for (QLineEdit* field : {ui->txtNuv, ui->txtUv})
        field->installEventFilter(this);
    connect(ui->HF1, &QTableView::clicked, m_day, &AbsenceDayModel::toggle);
    connect(ui->HF1->selectionModel(), &QItemSelectionModel::currentChanged, this,
            [this] { m_typing = false; });
    connect(m_day, &AbsenceDayModel::dataChanged, this,
            [this] { ui->cmdApply->setEnabled(modified()); });
    connect(ui->chkDay, &QCheckBox::toggled, this, &frmHPosStud::switchWay);
    connect(ui->Command1, &QPushButton::clicked, this, &frmHPosStud::saveAndClose);
    connect(ui->cmdApply, &QPushButton::clicked, this, [this] {
        if (save())
            load();
    });
    connect(ui->Command2, &QPushButton::clicked, this, &frmHPosStud::leave);
    connect(ui->cmdPeriod, &QPushButton::clicked, this, &frmHPosStud::enterPeriod);
}

bool frmHPosStud::wholeDay() const
{
    return ui->chkDay->isChecked();
}

bool frmHPosStud::modified() const
{
    return wholeDay() ? m_day->modified() : m_countsModified;
}

void frmHPosStud::load()
{
    shell::runCommand(m_parts.prompt, kNotRead, [this] {
        if (wholeDay())
            showDay();
        else
            showDiscipline();
    });
    ui->cmdApply->setEnabled(false);
    ui->lblNotice->setVisible(!ui->lblNotice->text().isEmpty());
}

void frmHPosStud::showDiscipline()
{
    m_counts = m_entry.readDiscipline(m_discipline.value(), m_lesson);
    m_countsModified = false;
    ui->ways->setCurrentWidget(ui->pageDiscipline);
    ui->lblDisciplineName->setText(m_counts.disciplineName);
    ui->txtNuv->setText(QString::number(m_counts.hours.unexcused));
    ui->txtUv->setText(QString::number(m_counts.hours.excused));
    ui->lblNotice->clear();
    if (m_counts.lessonsHeld.size() > 1)
        ui->lblNotice->setText(worded(
            m_parts.session.wording(),
            u"Записаны занятия № %1. После изменения часы будут записаны одним занятием № %2; "
            "по занятиям их показывает весь день."_s.arg(lessonNumbers(m_counts.lessonsHeld),
                                                         QString::number(m_counts.lesson))));
    ui->txtNuv->setFocus();
    ui->txtNuv->selectAll();
}

void frmHPosStud::showDay()
{
    m_day->setDay(m_entry.readDay(), m_entry.lessonHours());
    ui->ways->setCurrentWidget(ui->pageDay);
    constexpr int kDayHeight = 430;
    resize(width(), std::max(height(), kDayHeight));
    const QStringList lost = m_day->day().unplacedTexts();
    QString notice;
    if (m_day->day().lessons.empty())
        notice = u"Занятий в этот день нет."_s;
    if (!lost.isEmpty())
        notice += (notice.isEmpty() ? QString() : u" "_s)
                  + u"Не относятся ни к одному занятию и при сохранении будут удалены: "_s
                  + lost.join(u"; "_s) + u'.';
    ui->lblNotice->setText(worded(m_parts.session.wording(), notice));
    const auto own = m_day->day().attended(m_entry.student().subgroup);
    const int first = own.empty() ? 0 : static_cast<int>(own.front());
    ui->HF1->setCurrentIndex(m_day->index(first, AbsenceDayModel::UnexcusedColumn));
    ui->HF1->setFocus();
}

// What is no count is refused and the field shows the count before it.
void frmHPosStud::typeHours(QLineEdit& field, int& hours)
{
    const auto typed = typedHours(field.text());
    if (!typed) {
        field.setText(QString::number(hours));
        field.selectAll();
        m_parts.prompt.exclamation(digitsOnlyText());
        return;
    }
    hours = *typed;
    m_countsModified = true;
    ui->cmdApply->setEnabled(true);
}

bool frmHPosStud::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() != QEvent::KeyPress)
        return QDialog::eventFilter(watched, event);
    const auto& key = *static_cast<const QKeyEvent*>(event);
    if (watched == ui->HF1)
        return gridKey(key) || QDialog::eventFilter(watched, event);
    if (key.key() == Qt::Key_Up || key.key() == Qt::Key_Down) { // from one count to the other
        QLineEdit* next = watched == ui->txtNuv ? ui->txtUv : ui->txtNuv;
        next->setFocus();
        next->selectAll();
        return true;
    }
    return QDialog::eventFilter(watched, event);
}

bool frmHPosStud::gridKey(const QKeyEvent& key)
{
    const QModelIndex current = ui->HF1->currentIndex();
    const QString text = key.text();
    if (text.size() == 1 && text[0] >= u'0' && text[0] <= u'9') {
        typeDigit(text[0].digitValue());
        return true;
    }
    m_typing = false;
    const auto meaning = absenceKey(key);
    const int row = current.row();
    if (key.isAutoRepeat() && meaning)
        return true;
    if (meaning == AbsenceKey::Mark)
        m_day->toggle(current);
    else if (meaning == AbsenceKey::MarkOrUnexcuse)
        m_day->toggle(m_day->index(row, AbsenceDayModel::UnexcusedColumn));
    else if (meaning == AbsenceKey::Excuse)
        m_day->toggle(m_day->index(row, AbsenceDayModel::ExcusedColumn));
    else if (meaning == AbsenceKey::Remove || key.key() == Qt::Key_Backspace)
        m_day->setHours(current, 0);
    else if (!text.isEmpty() && text[0].isPrint()
             && !(key.modifiers() & (Qt::ControlModifier | Qt::AltModifier)))
        m_parts.prompt.exclamation(digitsOnlyText());
    else
        return false;
    return true;
}

// The first digit replaces the hours, those after it go on as long as the cursor stays.
void frmHPosStud::typeDigit(int digit)
{
    const QModelIndex current = ui->HF1->currentIndex();
    constexpr int kBase = 10;
    const int before = m_typing ? m_day->hours(current) : 0;
    if (!m_day->enterable(current) || before * kBase + digit > kMostAbsenceHours) {
        m_parts.prompt.exclamation(digitsOnlyText());
        return;
    }
    m_day->setHours(current, before * kBase + digit);
    m_typing = true;
}

bool frmHPosStud::save()
{
    if (wholeDay() && !mayLoseUnplaced())
        return false;
    const bool done = shell::runCommand(m_parts.prompt, kEntryNotWritten, [this] {
        if (wholeDay())
            m_entry.saveDay(m_history, m_day->day());
        else if (m_countsModified) // or lessons entered one by one would become one
            m_entry.saveDiscipline(m_history, m_counts);
        m_wrote = true;
    });
    if (done)
        m_parts.status.show(u"Готово."_s);
    return done;
}

bool frmHPosStud::mayLoseUnplaced()
{
    const QStringList lost = m_day->day().unplacedTexts();
    return lost.isEmpty()
           || m_parts.prompt.question(
               worded(m_parts.session.wording(),
                      u"Будут удалены пропуски, которые не относятся ни к одному занятию:\n"_s
                          + lost.join(u'\n') + u"\n\nСохранить?"_s));
}

void frmHPosStud::saveAndClose()
{
    if (save())
        accept();
}

bool frmHPosStud::keepChanges()
{
    if (!modified())
        return true;
    switch (m_parts.prompt.saveQuestion(u"Часы изменены. Сохранить?"_s)) {
    case shell::Answer::Yes:
        return save();
    case shell::Answer::No:
        return true;
    case shell::Answer::Cancel:
        break;
    }
    return false;
}

void frmHPosStud::switchWay()
{
    const auto put = [this](bool day) {
        const QSignalBlocker quiet(ui->chkDay);
        ui->chkDay->setChecked(day);
    };
    const bool day = wholeDay();
    put(!day); // what would go is what was shown so far
    if (!keepChanges())
        return;
    put(day);
    load();
}

void frmHPosStud::enterPeriod()
{
    if (!keepChanges())
        return;
    frmHPosStudPer dialog(m_parts, m_history, {{m_entry.student().id, m_entry.student().name}},
                          m_entry.date(), m_entry.date(), this);
    dialog.exec();
    m_wrote = m_wrote || dialog.wrote();
    load();
}

void frmHPosStud::leave()
{
    if (keepChanges())
        reject();
}

void frmHPosStud::closeEvent(QCloseEvent* event)
{
    event->ignore();
    leave();
}

} // namespace journals
