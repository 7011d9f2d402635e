#include "shell/forms/frmoption.h"

#include "jet/database.h"
#include "shell/forms/optionfields.h"
#include "shell/forms/runcommand.h"
#include "shell/session.h"
#include "shell/settings.h"

#include <QCheckBox>
#include <QDateEdit>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSpinBox>
#include <QTabWidget>

using namespace Qt::StringLiterals;

namespace shell {

namespace {

const QDate kNoDateShown(2000, 1, 1); // what a picker shows for an empty date
const QString kNetworkOnly = u"Параметры настраиваются в сетевой версии программы."_s;

QDate shown(QDate stored)
{
    return stored.isValid() ? stored : kNoDateShown;
}

QSpinBox* networkNumber(const QString& name, const QString& meaning, int value)
{
    auto* number = new QSpinBox;
    number->setObjectName(name);
    number->setAccessibleName(meaning);
    number->setRange(0, 999);
    number->setValue(value);
    return number;
}

QLayout* inRow(const QString& before, QWidget* field, const QString& after)
{
    auto* row = new QHBoxLayout;
    row->addWidget(new QLabel(before));
    row->addWidget(field);
    row->addWidget(new QLabel(after));
    row->addStretch();
    return row;
}

// Shown, but not to be changed here.
QGroupBox* networkGroup(const QString& title, QCheckBox* first, QLayout* second)
{
    auto* column = new QVBoxLayout;
    column->addWidget(first);
    column->addLayout(second);
    auto* group = optionGroup(title, column);
    group->setEnabled(false);
    return group;
}

} // namespace

frmOption::frmOption(Session& session, Settings& settings, Prompt& prompt, QWidget* parent)
    : QDialog(parent)
    , m_session(session)
    , m_settings(settings)
    , m_prompt(prompt)
    , m_tabs(new QTabWidget)
{
    setObjectName(u"frmOption"_s);
    setWindowTitle(u"Параметры"_s);
    m_tabs->setObjectName(u"tbsOptions"_s);
    m_tabs->setUsesScrollButtons(false); // the dialog grows until every tab is seen
    const Wording& wording = session.wording();
    m_tabs->addTab(institutionPage(), u"&Учебное заведение"_s);
    m_tabs->addTab(studyPage(), u"Учебный &период"_s);
    m_tabs->addTab(interfacePage(), wording.translate(u"&Интерфейс"_s));
    m_tabs->addTab(networkPage(), u"&Сетевая версия"_s);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_tabs);
    setUpButtons();
    fill();
    m_institution->setFocus();
}

void frmOption::setUpButtons()
{
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel
                                         | QDialogButtonBox::Help);
    const auto name = [buttons](QDialogButtonBox::StandardButton which, const QString& control,
                                const QString& caption) {
        buttons->button(which)->setObjectName(control);
        buttons->button(which)->setText(caption);
    };
    name(QDialogButtonBox::Ok, u"cmdOK"_s, u"OK"_s);
    name(QDialogButtonBox::Cancel, u"cmdCancel"_s, u"Отмена"_s);
    name(QDialogButtonBox::Help, u"cmdApply"_s, u"Помощь"_s);
    buttons->button(QDialogButtonBox::Ok)->setEnabled(!m_session.database().readOnly());
    connect(buttons, &QDialogButtonBox::accepted, this, &frmOption::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &frmOption::reject);
    connect(buttons, &QDialogButtonBox::helpRequested, this, &frmOption::helpWanted);
    layout()->addWidget(buttons);
}

QWidget* frmOption::institutionPage()
{
    m_institution = optionLine(u"txtNaim"_s, u"Наименование учебного заведения"_s,
                               data::settingsTextLimit("NAIM"));
    m_address = optionLine(u"txtAdres"_s, u"Адрес"_s, data::settingsTextLimit("ADR"));
    auto* page = new QWidget;
    auto* column = new QVBoxLayout(page);
    const auto addLine = [column](const QString& caption, QLineEdit* line) {
        auto* label = new QLabel(caption);
        label->setBuddy(line);
        column->addWidget(label);
        column->addWidget(line);
    };
    addLine(u"&Наименование учебного заведения:"_s, m_institution);
    addLine(u"&Адрес:"_s, m_address);
    m_printHead = optionBox(u"RukCH"_s, u"Печатать УТВЕРЖДАЮ"_s);
    m_printResponsible = optionBox(u"dolCH"_s, u"Печать подписи отв. лица"_s);
    column->addWidget(signatureBox(u"Руководитель"_s, m_headPost, m_headName, m_printHead));
    column->addWidget(signatureBox(u"Ответственное лицо"_s, m_responsiblePost, m_responsibleName,
                                   m_printResponsible));
    m_headPost->setObjectName(u"txtRuk1_0"_s);
    m_headName->setObjectName(u"txtRuk1_1"_s);
    m_responsiblePost->setObjectName(u"txtDol1_0"_s);
    m_responsibleName->setObjectName(u"txtDol1_1"_s);
    column->addStretch();
    return page;
}

QWidget* frmOption::signatureBox(const QString& title, QLineEdit*& post, QLineEdit*& name,
                                 QCheckBox*& print)
{
    const int limit = data::settingsTextLimit("DIR_D"); // the four fields are alike
    post = optionLine({}, u"%1: должность"_s.arg(title), limit);
    name = optionLine({}, u"%1: И.О. Фамилия"_s.arg(title), limit);
    auto* form = new QFormLayout;
    form->addRow(u"Должность:"_s, post);
    form->addRow(u"И.О. Фамилия:"_s, name);
    form->addRow(print);
    return optionGroup(title, form);
}

QWidget* frmOption::studyPage()
{
    m_workingDate = optionDate(u"DT0"_s, u"Рабочая дата"_s);
    m_askDate = optionBox(u"Ch1_2"_s, u"&Запрашивать рабочую дату при загрузке"_s);
    auto* workingDate = new QVBoxLayout;
    workingDate->addWidget(m_workingDate, 0, Qt::AlignLeft);
    workingDate->addWidget(m_askDate);

    m_yearBegin = optionDate(u"DT1_0"_s, u"Начало учебного периода"_s);
    m_yearEnd = optionDate(u"DT1_1"_s, u"Конец учебного периода"_s);
    auto* year = new QFormLayout;
    year->setFieldGrowthPolicy(QFormLayout::FieldsStayAtSizeHint);
    year->addRow(u"Н&ачало:"_s, m_yearBegin);
    year->addRow(u"&Конец:"_s, m_yearEnd);

    m_hours = new QSpinBox;
    m_hours->setObjectName(u"Text12"_s);
    m_hours->setRange(1, data::kMostHoursPerLesson);
    const QString lesson = m_session.wording().translate(u"Занятие, час."_s);
    m_hours->setAccessibleName(lesson);
    auto* length = new QVBoxLayout;
    length->addWidget(m_hours, 0, Qt::AlignLeft);

    auto* page = new QWidget;
    auto* column = new QVBoxLayout(page);
    column->addWidget(optionGroup(u"Рабочая дата"_s, workingDate));
    column->addWidget(optionGroup(u"Учебный период"_s, year));
    column->addWidget(optionGroup(lesson, length));
    column->addStretch();
    return page;
}

QWidget* frmOption::interfacePage()
{
    const Wording& wording = m_session.wording();
    m_useTimetable =
        optionBox(u"Ch1_0"_s, wording.translate(u"Использовать &расписание занятий"_s));
    m_autoSave = optionBox(u"Ch1_1"_s, u"&Автосохранение успеваемости"_s);
    auto* journals = new QVBoxLayout;
    journals->addWidget(m_useTimetable);
    journals->addWidget(m_autoSave);

    auto* college = new QRadioButton(u"&Колледж, техникум (пара, группа, студент)"_s);
    college->setObjectName(u"optCollege"_s);
    college->setChecked(true);
    m_school = new QRadioButton(u"&Школа (урок, класс, учащийся)"_s);
    m_school->setObjectName(u"optSchool"_s);
    auto* words = new QVBoxLayout;
    words->addWidget(college);
    words->addWidget(m_school);
    words->addWidget(new QLabel(u"Действует со следующего запуска программы."_s));

    auto* page = new QWidget;
    auto* column = new QVBoxLayout(page);
    column->addWidget(optionGroup(u"Интерфейс"_s, journals));
    column->addWidget(optionGroup(u"Слова, которыми говорит программа"_s, words));
    column->addStretch();
    return page;
}

QWidget* frmOption::networkPage()
{
    auto* days = networkNumber(u"txtLogDays"_s, u"Хранить журнал, дней"_s, 30);
    auto* seconds = networkNumber(u"txtRefresh"_s, u"Обновлять через, секунд"_s, 60);
    auto* page = new QWidget;
    auto* column = new QVBoxLayout(page);
    column->addWidget(networkGroup(
        u"Журнал изменений"_s,
        optionBox(u"chkLogClear"_s, u"Очищать журнал полностью при загрузке программы"_s),
        inRow(u"Хранить журнал"_s, days, u"дней"_s)));
    column->addWidget(networkGroup(u"Автообновление окон"_s,
                                   optionBox(u"chkRefresh"_s, u"Обновлять окна автоматически"_s),
                                   inRow(u"Через каждые"_s, seconds, u"секунд"_s)));
    column->addWidget(new QLabel(kNetworkOnly));
    column->addStretch();
    return page;
}

void frmOption::fill()
{
    const data::SettingsRow& row = m_session.settings();
    m_institution->setText(row.institution);
    m_address->setText(row.address);
    m_headPost->setText(row.headPost);
    m_headName->setText(row.headName);
    m_printHead->setChecked(row.printHead);
    m_responsiblePost->setText(row.responsiblePost);
    m_responsibleName->setText(row.responsibleName);
    m_printResponsible->setChecked(row.printResponsible);
    m_workingDate->setDate(shown(row.workingDate));
    m_yearBegin->setDate(shown(row.yearBegin));
    m_yearEnd->setDate(shown(row.yearEnd));
    m_useTimetable->setChecked(row.useTimetable);
    m_autoSave->setChecked(row.autoSaveGrades);
    m_askDate->setChecked(row.askWorkingDate);
    m_hours->setValue(row.hoursPerLesson);
    m_school->setChecked(m_settings.flag(Setting::School));
}

data::SettingsRow frmOption::entered() const
{
    data::SettingsRow row;
    row.institution = m_institution->text();
    row.address = m_address->text();
    row.headPost = m_headPost->text();
    row.headName = m_headName->text();
    row.printHead = m_printHead->isChecked();
    row.responsiblePost = m_responsiblePost->text();
    row.responsibleName = m_responsibleName->text();
    row.printResponsible = m_printResponsible->isChecked();
    row.workingDate = m_workingDate->date();
    row.yearBegin = m_yearBegin->date();
    row.yearEnd = m_yearEnd->date();
    row.useTimetable = m_useTimetable->isChecked();
    row.autoSaveGrades = m_autoSave->isChecked();
    row.askWorkingDate = m_askDate->isChecked();
    row.hoursPerLesson = m_hours->value();
    return row;
}

bool frmOption::store(const data::SettingsRow& row)
{
    return runCommand(m_prompt, u"Параметры не сохранены."_s, [&] { m_session.saveSettings(row); });
}

void frmOption::accept()
{
    const data::SettingsRow row = entered();
    if (const auto problem = data::settingsProblem(row)) {
        m_prompt.exclamation(*problem);
        return;
    }
    if (!store(row)) {
        return;
    }
    m_settings.setFlag(Setting::School, m_school->isChecked());
    QDialog::accept();
}

} // namespace shell
