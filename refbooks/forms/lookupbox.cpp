#include "refbooks/forms/lookupbox.h"

#include "refbooks/typedvalue.h"

#include <QCompleter>
#include <QLineEdit>
#include <QWheelEvent>

namespace refbooks {

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
        connect(lineEdit(), &QLineEdit::editingFinished, this, &LookupBox::complete);
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

// A part that only one row has is enough, once the box is left.
void LookupBox::complete()
{
    if (currentText().trimmed().isEmpty() || hasFocus())
        return;
    const int named = row();
    const int only = named >= 0 ? named : onlyRowWith(m_choices, currentText());
    if (only >= 0)
        setCurrentIndex(only);
}

void LookupBox::wheelEvent(QWheelEvent* event)
{
    if (hasFocus())
        QComboBox::wheelEvent(event);
    else
        event->ignore();
}

} // namespace refbooks
