#include "journals/forms/frmavtor.h"

#include "journals/history.h"
#include "journals/lists.h"
#include "journals/worded.h"
#include "shell/forms/runcommand.h"
#include "shell/prompt.h"
#include "shell/session.h"
#include "shell/statusline.h"
#include "ui_frmavtor.h"

#include <QKeyEvent>
#include <QSignalBlocker>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace journals {
namespace {

enum Column { Student, MonthName, Now, Becomes, Average, Marks };

// The key of the entry, nothing when none is chosen.
template <class Key>
std::optional<Key> chosenKey(const QComboBox& box)
{
    return box.currentIndex() < 0 ? std::nullopt : std::optional(Key{box.currentData().toInt()});
}

template <class Key>
void fill(QComboBox& box, const std::vector<ListEntry<Key>>& entries, std::optional<Key> chosen)
{
    const QSignalBlocker quiet(box);
    box.clear();
    for (const ListEntry<Key>& entry : entries)
        box.addItem(entry.name, static_cast<int>(keyNumber(entry.key)));
    box.setCurrentIndex(chosen ? box.findData(static_cast<int>(keyNumber(*chosen))) : -1);
}

QTreeWidgetItem* itemOf(const PlannedGrade& row)
{
    auto* item = new QTreeWidgetItem;
    item->setText(Student, row.name);
    item->setText(MonthName, row.month.chosen() ? monthTitle(row.month) : QString());
    item->setText(Now, row.now.empty() ? u"-"_s : nowText(row));
    item->setText(Becomes, row.becomes ? becomesText(row) : u"удаляется"_s);
    item->setText(Average, row.marks.text());
    item->setText(Marks, QString::number(row.marks.count));
    for (const Column column : {Now, Becomes, Average, Marks})
        item->setTextAlignment(column, Qt::AlignHCenter | Qt::AlignVCenter);
    if (nowText(row) != becomesText(row)) {
        QFont bold = item->font(Becomes);
        bold.setBold(true);
        item->setFont(Becomes, bold);
    }
    item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsUserCheckable);
    item->setCheckState(Student, Qt::Checked);
    return item;
}

} // namespace

FrmAvtoR::FrmAvtoR(shell::Session& session, shell::Prompt& prompt, shell::StatusLine& status,
                   History& history, std::optional<GroupId> group,
                   std::optional<DisciplineId> discipline, Month month, QWidget* parent)
    : QDialog(parent)
    , m_session(session)
    , m_prompt(prompt)
    , m_status(status)
    , m_history(history)
    , m_finals(session, prompt)
    , ui(std::make_unique<Ui::FrmAvtoR>())
{
    ui->setupUi(this);
    setUpTexts();
    setUpTable();
    fillMonths(month);
    shell::runCommand(m_prompt, u"Списки не заполнены."_s, [&] {
        fill(*ui->cboGroup, groupList(m_session.database()), group);
        if (group)
            fill(*ui->cboDiscipline, disciplinesOfGroup(m_session.database(), *group), discipline);
    });
    connectControls();
    choiceChanged();
    (group ? discipline ? static_cast<QWidget*>(ui->Op1_0) : ui->cboDiscipline : ui->cboGroup)
        ->setFocus();
}

FrmAvtoR::~FrmAvtoR() = default;

void FrmAvtoR::setUpTexts()
{
    const shell::Wording& wording = m_session.wording();
    const auto captioned = [&](QLabel* label, QChar key) {
        QString text = worded(wording, label->text());
        label->setText(text.insert(text.indexOf(key, 0, Qt::CaseInsensitive), u'&'));
    };
    captioned(ui->lblGroup, wording.isSchool() ? u'к' : u'г');
    captioned(ui->lblDiscipline, u'д');
    for (QComboBox* box : {ui->cboGroup, ui->cboDiscipline})
        box->setPlaceholderText(worded(wording, box->placeholderText()));
    ui->lvResults->headerItem()->setText(
        Student, worded(wording, ui->lvResults->headerItem()->text(Student)));
}

void FrmAvtoR::setUpTable()
{
    for (const Column column : {Now, Becomes, Average, Marks})
        ui->lvResults->headerItem()->setTextAlignment(column, Qt::AlignCenter);
    ui->lvResults->header()->setStretchLastSection(false);
    ui->lvResults->header()->setSectionResizeMode(Student, QHeaderView::Stretch);
    for (const Column column : {MonthName, Now, Becomes, Average, Marks})
        ui->lvResults->header()->setSectionResizeMode(column, QHeaderView::ResizeToContents);
    ui->lvResults->installEventFilter(this);
    resize(fontMetrics().averageCharWidth() * 105, fontMetrics().height() * 40);
}

void FrmAvtoR::fillMonths(Month month)
{
    auto months = monthsOf(studyPeriod(m_session.settings()));
    if (month.valid() && std::ranges::find(months, month) == months.end())
        months.push_back(month);
    for (const Month each : months)
        ui->Combo1->addItem(monthTitle(each), each.first());
    ui->Combo1->setCurrentIndex(
        std::max(0, ui->Combo1->findText(month.valid() ? monthTitle(month) : QString())));
}

void FrmAvtoR::connectControls()
{
    connect(ui->cboGroup, &QComboBox::currentIndexChanged, this, &FrmAvtoR::groupChanged);
    connect(ui->cboDiscipline, &QComboBox::currentIndexChanged, this, &FrmAvtoR::forgetPlan);
    for (QRadioButton* choice : {ui->Op1_0, ui->Op1_1, ui->Op1_2, ui->Op1_3})
        connect(choice, &QRadioButton::toggled, this, [this](bool on) {
            if (on)
                choiceChanged();
        });
    connect(ui->Combo1, &QComboBox::currentIndexChanged, this, &FrmAvtoR::choiceChanged);
    for (QDateEdit* date : {ui->DTPicker1, ui->DTPicker2})
        connect(date, &QDateEdit::dateChanged, this, &FrmAvtoR::forgetPlan);
    connect(ui->lvResults, &QTreeWidget::itemChanged, this, &FrmAvtoR::ticksChanged);
    connect(ui->chkAll, &QCheckBox::clicked, this, [this] { tickAll(); });
    connect(ui->cmdCount, &QPushButton::clicked, this, &FrmAvtoR::count);
    connect(ui->cmdWrite, &QPushButton::clicked, this, &FrmAvtoR::write);
    connect(ui->cmdCancel, &QPushButton::clicked, this, &QDialog::reject);
}

FinalsKind FrmAvtoR::kind() const
{
    return ui->Op1_1->isChecked()   ? FinalsKind::Period
           : ui->Op1_2->isChecked() ? FinalsKind::Month
           : ui->Op1_3->isChecked() ? FinalsKind::Year
                                    : FinalsKind::Final;
}

FinalsRequest FrmAvtoR::request() const
{
    FinalsRequest request;
    request.kind = kind();
    request.group = chosenKey<GroupId>(*ui->cboGroup);
    request.discipline = chosenKey<DisciplineId>(*ui->cboDiscipline);
    request.month = monthOf(ui->Combo1->currentData().toDate());
    request.period = {ui->DTPicker1->date(), ui->DTPicker2->date()};
    return request;
}

void FrmAvtoR::groupChanged()
{
    const auto group = chosenKey<GroupId>(*ui->cboGroup);
    const auto discipline = chosenKey<DisciplineId>(*ui->cboDiscipline);
    shell::runCommand(m_prompt, u"Список не заполнен."_s, [&] {
        fill(*ui->cboDiscipline,
             group ? disciplinesOfGroup(m_session.database(), *group)
                   : std::vector<ListEntry<DisciplineId>>(),
             discipline);
    });
    forgetPlan();
}

// The dates always show the days whose marks count; "За период" goes on from those last shown.
void FrmAvtoR::choiceChanged()
{
    const FinalsKind chosen = kind();
    const bool dates = chosen == FinalsKind::Final || chosen == FinalsKind::Period;
    const Period days = chosen == FinalsKind::Final ? studyPeriod(m_session.settings())
                                                    : m_finals.period(request());
    {
        const QSignalBlocker first(ui->DTPicker1), last(ui->DTPicker2);
        ui->DTPicker1->setDate(days.from);
        ui->DTPicker2->setDate(days.to);
    }
    for (QWidget* widget :
         std::initializer_list<QWidget*>{ui->lblFrom, ui->DTPicker1, ui->lblTo, ui->DTPicker2})
        widget->setEnabled(dates);
    for (QWidget* widget : std::initializer_list<QWidget*>{ui->lblMonth, ui->Combo1})
        widget->setEnabled(chosen == FinalsKind::Month);
    forgetPlan();
}

void FrmAvtoR::forgetPlan()
{
    m_plan.reset();
    showPlan();
}

void FrmAvtoR::count()
{
    shell::runCommand(m_prompt, u"Расчет не выполнен."_s,
                      [&] { m_plan = m_finals.plan(request()); });
    showPlan();
    if (m_plan && !m_plan->rows.empty())
        ui->lvResults->setFocus();
}

void FrmAvtoR::showPlan()
{
    {
        const QSignalBlocker quiet(ui->lvResults);
        ui->lvResults->clear();
        if (m_plan)
            for (const PlannedGrade& row : m_plan->rows)
                ui->lvResults->addTopLevelItem(itemOf(row));
        ui->lvResults->setCurrentItem(ui->lvResults->topLevelItem(0));
        ui->lvResults->setColumnHidden(MonthName, kind() == FinalsKind::Final);
    }
    ticksChanged();
}

std::vector<std::size_t> FrmAvtoR::tickedRows() const
{
    std::vector<std::size_t> rows;
    for (int row = 0; row < ui->lvResults->topLevelItemCount(); ++row)
        if (ui->lvResults->topLevelItem(row)->checkState(Student) == Qt::Checked)
            rows.push_back(static_cast<std::size_t>(row));
    return rows;
}

void FrmAvtoR::ticksChanged()
{
    const auto rows = tickedRows();
    const auto all = static_cast<std::size_t>(ui->lvResults->topLevelItemCount());
    ui->chkAll->setCheckState(rows.empty()         ? Qt::Unchecked
                              : rows.size() == all ? Qt::Checked
                                                   : Qt::PartiallyChecked);
    ui->chkAll->setEnabled(all > 0);
    ui->cmdWrite->setEnabled(!rows.empty());
    ui->cmdWrite->setDefault(!rows.empty());
    ui->cmdCount->setDefault(rows.empty());
    ui->lblSummary->setText(!m_plan ? u"Нажмите \"Рассчитать\", чтобы увидеть, что изменится."_s
                            : all == 0 ? u"За выбранный период текущих оценок нет."_s
                                       : u"Отмечено строк: %1 из %2; "_s.arg(rows.size()).arg(all)
                                             + outcomeText(outcomeOf(*m_plan, rows)) + u'.');
}

void FrmAvtoR::tickAll()
{
    const bool tick =
        tickedRows().size() < static_cast<std::size_t>(ui->lvResults->topLevelItemCount());
    const QSignalBlocker quiet(ui->lvResults);
    for (int row = 0; row < ui->lvResults->topLevelItemCount(); ++row)
        ui->lvResults->topLevelItem(row)->setCheckState(Student,
                                                        tick ? Qt::Checked : Qt::Unchecked);
    ticksChanged();
}

// Space ticks all selected rows alike.
bool FrmAvtoR::eventFilter(QObject* watched, QEvent* event)
{
    const auto* current = ui->lvResults->currentItem();
    if (watched != ui->lvResults || event->type() != QEvent::KeyPress || !current
        || static_cast<QKeyEvent*>(event)->key() != Qt::Key_Space)
        return QDialog::eventFilter(watched, event);
    const auto state = current->checkState(Student) == Qt::Checked ? Qt::Unchecked : Qt::Checked;
    for (QTreeWidgetItem* item : ui->lvResults->selectedItems())
        item->setCheckState(Student, state);
    return true;
}

void FrmAvtoR::write()
{
    const auto rows = tickedRows();
    bool done = false;
    shell::runCommand(m_prompt, u"Оценки не записаны."_s,
                      [&] { done = m_finals.carryOut(*m_plan, rows, m_history); });
    if (!done)
        return;
    emit written();
    m_status.show(u"Автоматический расчет итогов: "_s + outcomeText(outcomeOf(*m_plan, rows))
                  + u'.');
    accept();
}

} // namespace journals
