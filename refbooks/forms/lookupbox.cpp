#include "refbooks/forms/lookupbox.h"

#include "refbooks/typedvalue.h"

#include <QAbstractItemView>
#include <QCompleter>
#include <QKeyEvent>
#include <QLineEdit>
#include <QWheelEvent>

namespace refbooks {
namespace {

bool isEnter(const QKeyEvent& event)
{
    return event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter;
}

} // namespace

LookupBox::LookupBox(const Choices& choices, bool typing, QWidget* parent)
    : QComboBox(parent)
    , m_choices(choices)
{
    constexpr int kRowsShown = 20, kLetters = 24;
    for (const Choice& choice : choices)
        addItem(choice.text);
    setMaxVisibleItems(kRowsShown);
    setMinimumContentsLength(kLetters);
    setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    setFocusPolicy(Qt::StrongFocus); // not by the wheel
    if (typing) {
        setEditable(true);
        setInsertPolicy(QComboBox::NoInsert);
        completer()->setCompletionMode(QCompleter::PopupCompletion);
        completer()->setFilterMode(Qt::MatchContains);
        completer()->setCaseSensitivity(Qt::CaseInsensitive);
        completer()->popup()->installEventFilter(this); // before the completer's own
        connect(lineEdit(), &QLineEdit::editingFinished, this, &LookupBox::completeOnLeaving);
    }
    setCurrentIndex(-1);
    connect(this, &QComboBox::currentTextChanged, this, &LookupBox::changed);
    connect(this, &QComboBox::currentIndexChanged, this, &LookupBox::changed);
}

int LookupBox::row() const
{
    const int row = currentIndex();
    if (row >= 0 && itemText(row) == currentText())
        return row; // rows may share a text
    return rowOfText(m_choices, currentText());
}

void LookupBox::completeOnLeaving()
{
    if (!hasFocus())
        complete();
}

// True when the text was only a part of the one row that has it, which is now chosen.
bool LookupBox::complete()
{
    if (currentText().trimmed().isEmpty())
        return false;
    const int named = row();
    const int only = named >= 0 ? named : onlyRowWith(m_choices, currentText());
    if (only >= 0)
        setCurrentIndex(only);
    return named < 0 && only >= 0;
}

void LookupBox::keyPressEvent(QKeyEvent* event)
{
    if (!isEnter(*event) || !isEditable() || !complete())
        QComboBox::keyPressEvent(event);
}

// The list of what matches: a single row needs no arrow key before Enter.
bool LookupBox::eventFilter(QObject* object, QEvent* event)
{
    if (event->type() == QEvent::KeyPress && isEnter(*static_cast<QKeyEvent*>(event))
        && completer()->completionCount() == 1) {
        auto* popup = static_cast<QAbstractItemView*>(object);
        popup->setCurrentIndex(popup->model()->index(0, completer()->completionColumn()));
    }
    return QComboBox::eventFilter(object, event);
}

void LookupBox::wheelEvent(QWheelEvent* event)
{
    if (hasFocus())
        QComboBox::wheelEvent(event);
    else
        event->ignore();
}

} // namespace refbooks
