#include "reports/forms/frmdocument.h"

#include "journals/month.h"
#include "reports/choices.h"
#include "reports/report.h"
#include "reports/worded.h"
#include "shell/forms/runcommand.h"
#include "shell/forms/workprogress.h"
#include "shell/names.h"
#include "shell/prompt.h"
#include "shell/session.h"
#include "shell/settings.h"
#include "ui_frmdocument.h"

#include <QSignalBlocker>

#include <functional>
#include <initializer_list>
#include <utility>

using namespace Qt::StringLiterals;

namespace reports {
namespace {

using journals::DisciplineId;
using journals::GroupId;
using journals::StudentId;

const QString kRemembered = u"frmDocument/choice"_s;
const QString kNotFilled = u"Списки не заполнены."_s;

// The position of the one that is checked.
int checkedOf(std::initializer_list<const QRadioButton*> buttons)
{
    int position = 0;
    for (const QRadioButton* button : buttons) {
        if (button->isChecked())
            return position;
        ++position;
    }
    return 0;
}

// The key of the entry, nothing for the first one, which stands for all.
template <class Key>
std::optional<Key> chosenKey(const QComboBox& box)
{
    const QVariant key = box.currentData();
    return key.isValid() ? std::optional(Key{key.toInt()}) : std::nullopt;
}

// Keeps what was chosen as long as it is there.
template <class Key>
void fill(QComboBox& box, const QString& all, const std::vector<journals::ListEntry<Key>>& entries)
{
    const QSignalBlocker quiet(box);
    const QVariant kept = box.currentData();
    box.clear();
    box.addItem(all);
    for (const auto& entry : entries)
        box.addItem(entry.name, static_cast<int>(journals::keyNumber(entry.key)));
    const int index = kept.isValid() ? box.findData(kept) : 0;
    box.setCurrentIndex(index < 0 ? 0 : index);
}

QDate today(const shell::Session& session)
{
    const QDate working = session.workingDate();
    return working.isValid() ? working : QDate::currentDate();
}

} // namespace

frmDocument::frmDocument(DocumentOption option, const DocumentParts& parts, QWidget* parent)
    : QDialog(parent)
    , m_parts(parts)
    , m_files(parts)
    , ui(std::make_unique<Ui::frmDocument>())
{
    ui->setupUi(this);
    setUpTexts();
    ui->cboMonth->addItems(shell::monthNames());
    const auto buttons = {ui->Op1_0, ui->Op1_1, ui->Op1_2, ui->Op1_3,
                          ui->Op1_4, ui->Op1_5, ui->Op1_6, ui->Op1_7};
    QRadioButton* preselected = buttons.begin()[static_cast<int>(option)];
    preselected->setChecked(true);
    restoreChoice();
    connectControls();
    refreshInputs();
    preselected->setFocus();
}

frmDocument::~frmDocument() = default;

void frmDocument::setUpTexts()
{
    const shell::Wording& wording = m_parts.session.wording();
    for (QAbstractButton* button : findChildren<QAbstractButton*>())
        button->setText(worded(wording, button->text()));
    for (QLabel* label : {ui->lblGroup, ui->lblStudent})
        label->setText(worded(wording, label->text()));
    ui->Op3->setTitle(worded(wording, ui->Op3->title()));
}

void frmDocument::fillGroups()
{
    fill(*ui->cboGroup, worded(m_parts.session.wording(), u"Все группы"_s),
         journals::groupList(m_parts.session.database()));
}

void frmDocument::fillOfGroup()
{
    const auto group = chosenKey<GroupId>(*ui->cboGroup);
    fill(*ui->cboDiscipline, u"Все предметы"_s,
         disciplineChoices(m_parts.session.database(), group));
    fill(*ui->cboStudent,
         worded(m_parts.session.wording(), group ? u"Все студенты группы"_s : u"Все студенты"_s),
         studentChoices(m_parts.session.database(), group));
}

// "month;year;group" of the last document; at first what the attendance journal last showed.
void frmDocument::restoreChoice()
{
    const shell::Settings& settings = m_parts.settings;
    const auto parts = QString::fromLatin1(settings.remembered(kRemembered)).split(u';');
    const QDate day = today(m_parts.session);
    int month = settings.number(shell::Setting::JournalMonth);
    int year = settings.number(shell::Setting::JournalYear);
    constexpr qsizetype kParts = 3;
    if (parts.size() == kParts) {
        month = parts[0].toInt();
        year = parts[1].toInt();
    }
    if (!journals::Month{year, month}.valid() || !journals::Month{year, month}.validYear()) {
        month = day.month();
        year = day.year();
    }
    ui->cboMonth->setCurrentIndex(month - 1);
    ui->spnYear->setValue(year);
    const journals::Period period = journals::studyPeriod(m_parts.session.settings(), day);
    ui->DTPicker1->setDate(period.from);
    ui->DTPicker2->setDate(period.kept(day));
    shell::runCommand(m_parts.prompt, kNotFilled, [&] {
        fillGroups();
        const int group =
            parts.size() == kParts ? ui->cboGroup->findData(QVariant(parts[2].toInt())) : 0;
        ui->cboGroup->setCurrentIndex(group < 0 ? 0 : group);
        fillOfGroup();
    });
}

void frmDocument::rememberChoice()
{
    const int group = ui->cboGroup->currentData().toInt(); // 0 for all
    m_parts.settings.remember(kRemembered, u"%1;%2;%3"_s.arg(ui->cboMonth->currentIndex() + 1)
                                               .arg(ui->spnYear->value())
                                               .arg(group)
                                               .toLatin1());
}

void frmDocument::connectControls()
{
    for (const QRadioButton* button : findChildren<QRadioButton*>())
        connect(button, &QRadioButton::toggled, this, &frmDocument::refreshInputs);
    connect(ui->cboGroup, &QComboBox::currentIndexChanged, this, [this] {
        shell::runCommand(m_parts.prompt, kNotFilled, [this] { fillOfGroup(); });
        refreshInputs();
    });
    connect(ui->cboStudent, &QComboBox::currentIndexChanged, this, &frmDocument::refreshInputs);
    connect(ui->cmdCreate, &QPushButton::clicked, this, &frmDocument::create);
    connect(ui->cmdPrint, &QPushButton::clicked, this, &frmDocument::print);
    connect(ui->cmdPdf, &QPushButton::clicked, this, &frmDocument::writePdf);
    connect(ui->cmdClose, &QPushButton::clicked, this, &QDialog::reject);
}

DocumentOption frmDocument::option() const
{
    return static_cast<DocumentOption>(checkedOf(
        {ui->Op1_0, ui->Op1_1, ui->Op1_2, ui->Op1_3, ui->Op1_4, ui->Op1_5, ui->Op1_6, ui->Op1_7}));
}

ReportRequest frmDocument::request() const
{
    static_assert(static_cast<int>(DocumentOption::Summary)
                  == static_cast<int>(ReportKind::Summary));
    static_assert(static_cast<int>(DocumentOption::Truancy)
                  == static_cast<int>(ReportKind::TruancyTeachers));
    ReportRequest request;
    request.kind = static_cast<ReportKind>(option());
    if (option() == DocumentOption::Truancy)
        request.kind = static_cast<ReportKind>(static_cast<int>(ReportKind::TruancyTeachers)
                                               + checkedOf({ui->Op3_0, ui->Op3_1, ui->Op3_2}));
    request.view = static_cast<SubjectView>(checkedOf({ui->Op2_0, ui->Op2_1, ui->Op2_2}));
    request.month = {ui->spnYear->value(), ui->cboMonth->currentIndex() + 1};
    if (takes(request, Input::Months))
        request.months = ui->spnMonths->value();
    request.period = {ui->DTPicker1->date(), ui->DTPicker2->date()};
    request.balances = takes(request, Input::Balances) && ui->chkBalances->isChecked();
    if (takes(request, Input::Group))
        request.group = chosenKey<GroupId>(*ui->cboGroup);
    if (takes(request, Input::Discipline))
        request.discipline = chosenKey<DisciplineId>(*ui->cboDiscipline);
    if (takes(request, Input::Student))
        request.student = chosenKey<StudentId>(*ui->cboStudent);
    return request;
}

void frmDocument::refreshInputs()
{
    const bool ranking = option() == DocumentOption::Ranking;
    const ReportRequest wanted = ranking ? ReportRequest() : request();
    const auto enable = [&](Input input, std::initializer_list<QWidget*> widgets) {
        for (QWidget* widget : widgets)
            widget->setEnabled(!ranking && takes(wanted, input));
    };
    enable(Input::Month, {ui->lblMonth, ui->cboMonth, ui->lblYear, ui->spnYear});
    enable(Input::Months, {ui->lblMonths, ui->spnMonths});
    enable(Input::Period, {ui->lblFrom, ui->DTPicker1, ui->lblTo, ui->DTPicker2});
    enable(Input::Group, {ui->lblGroup, ui->cboGroup});
    enable(Input::Discipline, {ui->lblDiscipline, ui->cboDiscipline});
    ui->cboDiscipline->setItemText(
        0, option() == DocumentOption::GradesSubject ? u"Выберите предмет"_s : u"Все предметы"_s);
    enable(Input::Student, {ui->lblStudent, ui->cboStudent});
    ui->chkEach->setEnabled(!ranking && takes(wanted, Input::Student) && !wanted.student);
    enable(Input::Balances, {ui->chkBalances});
    enable(Input::View, {ui->Op2});
    ui->Op3->setEnabled(option() == DocumentOption::Truancy);
    ui->cmdCreate->setText(ranking ? u"О&ткрыть анализ"_s : u"Со&здать .xlsx"_s);
    ui->cmdPrint->setEnabled(!ranking);
    ui->cmdPdf->setEnabled(!ranking);
}

void frmDocument::focusMissing(const ReportRequest& request)
{
    if (takes(request, Input::Period))
        ui->DTPicker1->setFocus();
    else if (takes(request, Input::Student) && request.student)
        ui->cboGroup->setFocus();
    else if (takes(request, Input::Discipline) && !request.discipline)
        ui->cboDiscipline->setFocus();
    else
        ui->cboMonth->setFocus();
}

std::optional<papers::Document> frmDocument::make()
{
    const ReportRequest wanted = request();
    if (const auto problem = requestProblem(wanted)) {
        m_parts.prompt.exclamation(*problem);
        focusMissing(wanted);
        return std::nullopt;
    }
    rememberChoice();
    std::optional<papers::Document> document;
    shell::runCommand(m_parts.prompt, u"Документ не составлен."_s, [&] {
        shell::Session& session = m_parts.session;
        shell::WorkProgress progress(u"documentProgress"_s, u"Документ составляется..."_s, this);
        document = makeReport({session.database(), session.settings(), session.wording()}, wanted,
                              std::ref(progress));
    });
    if (document && document->papers.empty()) {
        m_parts.prompt.exclamation(
            worded(m_parts.session.wording(),
                   u"Документ пуст: нет ни одной группы или ни одного студента."_s));
        return std::nullopt;
    }
    return document;
}

void frmDocument::create()
{
    if (option() == DocumentOption::Ranking) {
        m_wantsRanking = true;
        accept();
        return;
    }
    const auto document = make();
    if (document && !hasWrittenEach(FileKind::Workbook, *document))
        m_files.writeWorkbook(*document, notSaved());
}

void frmDocument::print()
{
    if (const auto document = make())
        shell::runCommand(m_parts.prompt, u"Документ не напечатан."_s,
                          [&] { m_files.print(*document, this); });
}

void frmDocument::writePdf()
{
    const auto document = make();
    if (document && !hasWrittenEach(FileKind::Pdf, *document))
        m_files.writePdf(*document, notSaved());
}

NotSavedText frmDocument::notSaved() const
{
    return [kind = request().kind](bool named) { return notSavedText(kind, named); };
}

bool frmDocument::hasWrittenEach(FileKind kind, const papers::Document& document)
{
    const bool wanted = ui->chkEach->isEnabled() && ui->chkEach->isChecked();
    if (wanted)
        m_files.writeEach(kind, document, notSaved(), this);
    return wanted;
}

} // namespace reports
