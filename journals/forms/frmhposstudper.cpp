#include "journals/forms/frmhposstudper.h"

#include "journals/history.h"
#include "journals/worded.h"
#include "shell/forms/frmhelp.h"
#include "shell/forms/runcommand.h"
#include "shell/prompt.h"
#include "shell/session.h"
#include "ui_frmhposstudper.h"

#include <QShortcut>

using namespace Qt::StringLiterals;

namespace journals {
namespace {

const QString kPeriodNotWritten = u"Пропуски не записаны."_s;
const QString kHelpPage = u"пропуск-на-период"_s;

} // namespace

frmHPosStudPer::frmHPosStudPer(const JournalParts& parts, History& history,
                               const std::vector<Candidate>& students, QDate from, QDate to,
                               QWidget* parent)
    : QDialog(parent)
    , m_parts(parts)
    , m_history(history)
    , ui(std::make_unique<Ui::frmHPosStudPer>())
{
    ui->setupUi(this);
    setUpTexts();
    ui->conflict->hide();
    ui->O2->setChecked(true);
    ui->DT1->setDate(from);
    ui->DT2->setDate(to);
    QListWidgetItem* first = nullptr;
    for (const Candidate& student : students) {
        auto* item = new QListWidgetItem(student.name, ui->lstStudents);
        item->setData(Qt::UserRole, static_cast<int>(student.id));
        item->setCheckState(student.checked ? Qt::Checked : Qt::Unchecked);
        if (student.checked && !first)
            first = item;
    }
    ui->lstStudents->setCurrentItem(first);
    ui->lstStudents->scrollToItem(first, QAbstractItemView::PositionAtCenter);
    ui->DT1->setFocus();
    connect(ui->cmdOk, &QPushButton::clicked, this, &frmHPosStudPer::goOn);
    connect(ui->pred1, &QListWidget::itemDoubleClicked, this, &frmHPosStudPer::goOn);
    connect(ui->cmdCancel, &QPushButton::clicked, this, &frmHPosStudPer::reject);
    connect(ui->cmdHelp, &QPushButton::clicked, this, &frmHPosStudPer::showHelp);
    connect(new QShortcut(QKeySequence::HelpContents, this), &QShortcut::activated, this,
            &frmHPosStudPer::showHelp);
}

frmHPosStudPer::~frmHPosStudPer() = default;

void frmHPosStudPer::setUpTexts()
{
    const shell::Wording& wording = m_parts.session.wording();
    ui->lblStudents->setText(worded(wording, ui->lblStudents->text()));
    ui->Ch1->setText(worded(wording, ui->Ch1->text()));
    for (QListWidget* list : {ui->lstStudents, ui->pred1})
        list->setAccessibleName(worded(wording, list->accessibleName()));
}

PeriodRequest frmHPosStudPer::request() const
{
    PeriodRequest asked;
    for (int row = 0; row < ui->lstStudents->count(); ++row) {
        const QListWidgetItem* item = ui->lstStudents->item(row);
        if (item->checkState() == Qt::Checked)
            asked.students.push_back(StudentId{item->data(Qt::UserRole).toInt()});
    }
    asked.from = ui->DT1->date();
    asked.to = ui->DT2->date();
    asked.reason = ui->O1->isChecked() ? AbsenceKind::Excused : AbsenceKind::Unexcused;
    return asked;
}

void frmHPosStudPer::goOn()
{
    shell::runCommand(m_parts.prompt, kPeriodNotWritten, [this] {
        if (!m_period) {
            begin();
        } else if (ui->pred1->currentRow() >= 0) {
            m_period->choose(static_cast<std::size_t>(ui->pred1->currentRow()),
                             ui->Ch1->isChecked());
        }
        if (!m_period)
            return;
        if (const auto conflict = m_period->conflict())
            showConflict(*conflict);
        else
            finish();
    });
}

void frmHPosStudPer::begin()
{
    PeriodAbsence period(m_parts.session.database(), request());
    const QString problem = period.problem();
    if (problem.isEmpty()) {
        const QString question = period.namesakesQuestion();
        if (question.isEmpty() || m_parts.prompt.question(question))
            m_period.emplace(std::move(period));
        return;
    }
    m_parts.prompt.exclamation(worded(m_parts.session.wording(), problem));
    if (request().students.empty())
        ui->lstStudents->setFocus();
    else
        ui->DT1->setFocus();
}

void frmHPosStudPer::showConflict(const PeriodConflict& conflict)
{
    ++m_asked;
    const shell::Wording& wording = m_parts.session.wording();
    ui->request->setEnabled(false);
    ui->conflict->show();
    ui->conflict->setTitle(u"Конфликт %1 из %2"_s.arg(
        QString::number(m_asked), QString::number(m_asked - 1 + m_period->conflictsLeft())));
    ui->lblConflict->setText(conflict.student.name + u", "_s
                             + conflict.lessons.front().date.toString(u"dd.MM.yyyy"_s));
    ui->pred1->clear();
    for (const QString& text : conflict.texts())
        ui->pred1->addItem(worded(wording, text));
    ui->pred1->setCurrentRow(static_cast<int>(conflict.preset));
    ui->pred1->setFocus();
}

void frmHPosStudPer::finish()
{
    // A failure leaves the window on its first page: the choices hold for what was read.
    const PeriodAbsence period = *m_period;
    m_period.reset();
    m_asked = 0;
    ui->request->setEnabled(true);
    ui->conflict->hide();
    const PeriodOutcome outcome = period.write(m_history, m_parts.status);
    m_wrote = true;
    m_parts.prompt.information(worded(m_parts.session.wording(), outcome.text()));
    accept();
}

// Its own window of the manual: the program's is out of reach while this one waits.
void frmHPosStudPer::showHelp()
{
    auto* help = new shell::frmHelp(this);
    help->setAttribute(Qt::WA_DeleteOnClose);
    help->open(kHelpPage);
}

} // namespace journals
