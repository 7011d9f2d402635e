#include "refbooks/forms/frmsd1.h"

#include "refbooks/forms/accesskeys.h"
#include "refbooks/forms/recordcontrols.h"
#include "shell/forms/runcommand.h"
#include "shell/session.h"

#include <QCheckBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QScrollArea>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace refbooks {
namespace {

constexpr QChar kMoreKey = u'д'; // of the button that stores and goes on

// The rows of fields from here on, in a frame of their own when the field begins one.
QFormLayout* sectionFor(const RecordField& field, QVBoxLayout& column)
{
    auto* form = new QFormLayout;
    if (field.frame.isEmpty()) {
        column.addLayout(form);
    } else {
        auto* frame = new QGroupBox(field.frame);
        frame->setLayout(form);
        column.addWidget(frame);
    }
    return form;
}

// The controls of all frames begin at the same place.
void alignLabels(const QWidget& page)
{
    const auto labels = page.findChildren<QLabel*>();
    int width = 0;
    for (const QLabel* label : labels)
        width = std::max(width, label->sizeHint().width());
    for (QLabel* label : labels)
        label->setMinimumWidth(width);
}

} // namespace

frmSD1::frmSD1(std::unique_ptr<BookRecord> record, shell::Session& session, shell::Prompt& prompt,
               QWidget* parent)
    : QDialog(parent)
    , m_record(std::move(record))
    , m_session(session)
    , m_prompt(prompt)
    , m_area(new QScrollArea)
    , m_problem(new QLabel)
{
    setObjectName(u"frmSD1"_s);
    auto* column = new QVBoxLayout(this);
    m_area->setFrameShape(QFrame::NoFrame);
    m_area->setWidgetResizable(true);
    m_area->setFocusPolicy(Qt::NoFocus);
    column->addWidget(m_area);
    m_problem->setObjectName(u"lblProblem"_s);
    m_problem->setWordWrap(true);
    m_problem->setMinimumHeight(fontMetrics().lineSpacing());
    QSizePolicy keepsPlace = m_problem->sizePolicy();
    keepsPlace.setRetainSizeWhenHidden(true); // the fields do not move under the hand
    m_problem->setSizePolicy(keepsPlace);
    column->addWidget(m_problem);
    setUpButtons();
    showRecord();
    fitOnScreen();
}

frmSD1::~frmSD1() = default;

void frmSD1::setUpButtons()
{
    auto* row = new QHBoxLayout;
    static_cast<QVBoxLayout*>(layout())->addLayout(row);
    if (m_record->isViewOnly()) {
        row->addStretch();
        addButton(*row, u"cmdCancel"_s, u"Закрыть"_s, &frmSD1::leave)->setDefault(true);
        return;
    }
    if (m_record->isNew())
        addButton(*row, u"cmdMore"_s, u"Сохранить и &добавить ещё"_s, &frmSD1::storeAndGoOn);
    row->addStretch();
    addButton(*row, u"cmdOK"_s, u"OK"_s, &frmSD1::accept)->setDefault(true);
    addButton(*row, u"cmdCancel"_s, u"Отмена"_s, &frmSD1::leave);
}

QPushButton* frmSD1::addButton(QLayout& row, const QString& name, const QString& text,
                               void (frmSD1::*action)())
{
    auto* button = new QPushButton(text);
    button->setObjectName(name);
    connect(button, &QPushButton::clicked, this, action);
    row.addWidget(button);
    return button;
}

void frmSD1::showRecord()
{
    setWindowTitle(m_record->caption());
    delete m_controls; // before their widgets, which tell of losing the focus
    m_page = new QWidget;
    m_controls = new RecordControls(*m_record, m_session.workingDate(), m_page);
    connect(m_controls, &RecordControls::problemsShown, this, &frmSD1::showProblem);
    fillForm(*m_page);
    m_area->setWidget(m_page); // takes the place of the record before
    m_page->show();
    QWidget* before = nullptr;
    for (QWidget* control : m_controls->widgets()) {
        if (before)
            setTabOrder(before, control);
        before = control;
    }
    for (QPushButton* button : findChildren<QPushButton*>(Qt::FindDirectChildrenOnly)) {
        setTabOrder(before, button);
        before = button;
    }
    m_controls->select(0);
    showProblem();
}

void frmSD1::fillForm(QWidget& page)
{
    const auto& fields = m_record->fields();
    QStringList captions;
    for (const RecordField& field : fields)
        captions << field.caption;
    captions = withAccessKeys(captions, m_record->isNew() ? QString(kMoreKey) : QString());

    auto* column = new QVBoxLayout(&page);
    column->setContentsMargins({});
    QFormLayout* form = nullptr;
    for (std::size_t i = 0; i < fields.size(); ++i) {
        if (!form || !fields[i].frame.isEmpty())
            form = sectionFor(fields[i], *column);
        QWidget* control = m_controls->widgets()[i];
        const QString& caption = captions[static_cast<qsizetype>(i)];
        if (auto* box = qobject_cast<QCheckBox*>(control)) {
            box->setText(caption);
            form->addRow(box);
        } else {
            form->addRow(caption, control); // the label becomes its buddy
        }
    }
    column->addStretch();
    alignLabels(page);
}

// The first text that was left without being understood, for as long as it stands there.
void frmSD1::showProblem()
{
    const auto wrong = m_controls->wrongField();
    m_problem->setText(wrong ? m_controls->problem(*wrong) : QString());
    m_problem->setVisible(wrong.has_value());
}

// A scroll area of its own accord asks for less than its content needs.
void frmSD1::fitOnScreen()
{
    constexpr int kLetters = 84;
    const QSize content = m_page->sizeHint();
    const QSize around = sizeHint() - m_area->sizeHint();
    const QSize screenSize = screen()->availableSize() * 9 / 10;
    const int width =
        std::max(content.width() + around.width(), fontMetrics().averageCharWidth() * kLetters);
    m_area->setMinimumWidth(m_page->minimumSizeHint().width());
    resize(QSize(width, content.height() + around.height()).boundedTo(screenSize));
}

bool frmSD1::store()
{
    if (const auto wrong = m_controls->wrongField()) {
        m_prompt.exclamation(m_controls->problem(*wrong));
        m_controls->select(*wrong);
        return false;
    }
    bool stored = false;
    shell::runCommand(m_prompt, u"Запись не сохранена."_s, [&] { stored = m_record->save(); });
    if (stored)
        m_key = m_record->key();
    else if (const auto failed = m_record->failedField())
        m_controls->select(*failed);
    return stored;
}

void frmSD1::accept()
{
    if (m_record->isViewOnly() || store())
        QDialog::accept();
}

void frmSD1::storeAndGoOn()
{
    if (!store())
        return;
    std::unique_ptr<BookRecord> next;
    shell::runCommand(m_prompt, u"Новая запись не открыта."_s, [&] { next = m_record->another(); });
    if (!next) {
        QDialog::accept();
        return;
    }
    std::swap(m_record, next); // the one before is referred to until its controls are gone
    showRecord();
}

void frmSD1::reject()
{
    const bool changed = m_record->isChanged() || m_controls->wrongField();
    if (m_record->isViewOnly() || !changed) {
        leave();
        return;
    }
    switch (m_prompt.saveQuestion(u"Сохранить изменения?"_s)) {
    case shell::Answer::Yes:
        accept();
        break;
    case shell::Answer::No:
        leave();
        break;
    case shell::Answer::Cancel:
        break;
    }
}

// Rows stored before this one stay stored.
void frmSD1::leave()
{
    done(m_key == 0 ? Rejected : Accepted);
}

} // namespace refbooks
