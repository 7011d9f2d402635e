#include "refbooks/forms/recordcontrols.h"

#include "refbooks/forms/datebox.h"
#include "refbooks/forms/lookupbox.h"
#include "refbooks/forms/noteedit.h"
#include "refbooks/typedvalue.h"

#include <QAction>
#include <QCheckBox>
#include <QLineEdit>
#include <QStyle>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace refbooks {
namespace {

// Optional texts from this length on wrap.
constexpr int kNoteLength = 150;
constexpr int kShortLength = 30;
constexpr int kDateLetters = 14, kTimeLetters = 8;

// A short text gets a short line.
void limitWidth(QWidget& line, int letters)
{
    constexpr int kMargin = 4;
    const int letter = line.fontMetrics().horizontalAdvance(u'Ж');
    line.setMaximumWidth(letter * (letters + kMargin));
}

// The line in which the control's text is typed, null when it has none.
QLineEdit* lineOf(QWidget* control)
{
    if (auto* box = qobject_cast<QComboBox*>(control))
        return box->lineEdit();
    return qobject_cast<QLineEdit*>(control);
}

// A sign within the line and its reason; an empty reason takes them away.
void mark(QLineEdit& line, const QString& reason)
{
    const QString name = u"wrongSign"_s;
    auto* sign = line.findChild<QAction*>(name, Qt::FindDirectChildrenOnly);
    if (!reason.isEmpty() && !sign) {
        sign = line.addAction(line.style()->standardIcon(QStyle::SP_MessageBoxWarning),
                              QLineEdit::TrailingPosition);
        sign->setObjectName(name);
        sign->setText(u"Значение не принято"_s);
    }
    if (sign) {
        sign->setVisible(!reason.isEmpty());
        sign->setToolTip(reason);
    }
    line.setAccessibleDescription(reason);
}

} // namespace

RecordControls::RecordControls(BookRecord& record, QDate today, QWidget* parent)
    : QObject(parent)
    , m_record(record)
    , m_today(today)
    , m_problems(record.fields().size())
{
    for (int field = 0; field < static_cast<int>(record.fields().size()); ++field) {
        QWidget* widget = makeControl(field, parent);
        const std::string_view column = info(field).field;
        QString name = QString::fromLatin1(column.data(), static_cast<qsizetype>(column.size()));
        if (parent->findChild<QWidget*>(name))
            name += u"Again"_s; // the second password
        widget->setObjectName(name);
        const bool required = info(field).requirement != Requirement::Optional;
        const QString spoken = info(field).name() + (required ? u", обязательное поле"_s : u""_s);
        widget->setAccessibleName(spoken);
        if (QLineEdit* line = lineOf(widget))
            line->setAccessibleName(spoken);
        m_widgets.push_back(widget);
    }
}

const RecordField& RecordControls::info(int field) const
{
    return m_record.fields()[static_cast<std::size_t>(field)];
}

QWidget* RecordControls::makeControl(int field, QWidget* parent)
{
    const bool isNote = info(field).kind == FieldKind::Text && info(field).limit >= kNoteLength
                        && info(field).requirement == Requirement::Optional;
    if (isNote)
        return makeNote(field, parent);
    if (info(field).kind == FieldKind::CheckBox)
        return makeCheck(field, parent);
    if (m_record.isViewOnly())
        return makeShown(field, parent);
    switch (info(field).kind) {
    case FieldKind::List:
        return makeList(field, parent);
    case FieldKind::Date:
        return makeDate(field, parent);
    case FieldKind::TimeOfDay:
        return makeTime(field, parent);
    default:
        return makeText(field, parent);
    }
}

QWidget* RecordControls::makeShown(int field, QWidget* parent)
{
    auto* line = new QLineEdit(shownText(field), parent);
    line->setReadOnly(true);
    line->setCursorPosition(0);
    return line;
}

QWidget* RecordControls::makeText(int field, QWidget* parent)
{
    auto* line = new QLineEdit(parent);
    line->setMaxLength(m_record.maxLength(field));
    line->setText(m_record.value(field).text);
    line->setCursorPosition(0);
    if (info(field).kind == FieldKind::Password)
        line->setEchoMode(QLineEdit::Password);
    if (info(field).kind == FieldKind::LessonTime && !info(field).wholeNumber)
        line->setPlaceholderText(u"8:30-10:00"_s);
    else if (info(field).limit < kShortLength)
        limitWidth(*line, info(field).limit);
    connect(line, &QLineEdit::textChanged, this,
            [this, field](const QString& text) { m_record.setText(field, text); });
    return line;
}

QWidget* RecordControls::makeNote(int field, QWidget* parent)
{
    auto* note = new NoteEdit(m_record.value(field).text, m_record.maxLength(field), parent);
    note->setReadOnly(m_record.isViewOnly());
    connect(note, &NoteEdit::textChanged, this,
            [this, field, note] { m_record.setText(field, note->toPlainText()); });
    return note;
}

QWidget* RecordControls::makeList(int field, QWidget* parent)
{
    const auto lookup = info(field).lookup;
    const bool typing = lookup != Lookup::Sexes && lookup != Lookup::Roles;
    auto* box = new LookupBox(m_record.choices(field), typing, parent);
    box->setCurrentIndex(m_record.chosenRow(field));
    connect(box, &LookupBox::changed, this, [this, field, box] { takeChoice(field, *box); });
    if (typing)
        markOnLeaving(field, box->lineEdit());
    return box;
}

void RecordControls::takeChoice(int field, const LookupBox& box)
{
    const int row = box.row();
    const bool isEmpty = box.currentText().trimmed().isEmpty();
    const auto key =
        row < 0 ? std::optional<int>() : m_record.choices(field)[static_cast<std::size_t>(row)].key;
    m_record.setChoice(field, key);
    setProblem(field, row < 0 && !isEmpty ? wrongText(info(field), box.currentText()) : u""_s);
}

QWidget* RecordControls::makeCheck(int field, QWidget* parent)
{
    auto* box = new QCheckBox(parent);
    box->setChecked(m_record.value(field).checked);
    box->setEnabled(!m_record.isViewOnly());
    connect(box, &QCheckBox::toggled, this,
            [this, field](bool checked) { m_record.setChecked(field, checked); });
    return box;
}

QWidget* RecordControls::makeDate(int field, QWidget* parent)
{
    auto* line = new DateBox(m_today, parent);
    line->setText(shownText(field));
    limitWidth(*line, kDateLetters);
    connect(line, &QLineEdit::textChanged, this, [this, field](const QString& text) {
        const auto date = typedDate(text);
        m_record.setDate(field, date.value_or(QDate()));
        setProblem(field, date ? u""_s : wrongText(info(field), text));
    });
    markOnLeaving(field, line);
    return line;
}

QWidget* RecordControls::makeTime(int field, QWidget* parent)
{
    auto* line = new QLineEdit(shownText(field), parent);
    line->setPlaceholderText(u"чч:мм"_s);
    limitWidth(*line, kTimeLetters);
    connect(line, &QLineEdit::textChanged, this, [this, field](const QString& text) {
        const auto time = typedTime(text);
        m_record.setTime(field, time.value_or(QTime()));
        setProblem(field, time ? u""_s : wrongText(info(field), text));
    });
    markOnLeaving(field, line);
    return line;
}

QString RecordControls::shownText(int field) const
{
    const FieldValue& value = m_record.value(field);
    switch (info(field).kind) {
    case FieldKind::List: {
        const int row = m_record.chosenRow(field);
        return row < 0 ? QString() : m_record.choices(field)[static_cast<std::size_t>(row)].text;
    }
    case FieldKind::Date:
        return dateText(value.date);
    case FieldKind::TimeOfDay:
        return timeText(value.time);
    case FieldKind::Password:
        return {};
    default:
        return value.text;
    }
}

void RecordControls::setProblem(int field, const QString& problem)
{
    m_problems[static_cast<std::size_t>(field)] = problem;
    if (!problem.isEmpty())
        return; // still being typed
    if (QLineEdit* line = lineOf(m_widgets[static_cast<std::size_t>(field)]))
        mark(*line, {});
    emit problemsShown();
}

// What was understood is shown as it is written here; what was not gets its mark.
void RecordControls::markOnLeaving(int field, QLineEdit* line)
{
    connect(line, &QLineEdit::editingFinished, this, [this, field, line] {
        mark(*line, problem(field));
        const FieldKind kind = info(field).kind;
        if (problem(field).isEmpty() && kind != FieldKind::List)
            line->setText(shownText(field));
        emit problemsShown();
    });
}

std::optional<int> RecordControls::wrongField() const
{
    const auto wrong =
        std::ranges::find_if(m_problems, [](const QString& problem) { return !problem.isEmpty(); });
    if (wrong == m_problems.end())
        return {};
    return static_cast<int>(wrong - m_problems.begin());
}

void RecordControls::select(int field)
{
    QWidget& widget = *m_widgets[static_cast<std::size_t>(field)];
    widget.setFocus();
    if (QLineEdit* line = lineOf(&widget))
        line->selectAll();
    else if (auto* note = qobject_cast<QPlainTextEdit*>(&widget))
        note->selectAll();
}

} // namespace refbooks
