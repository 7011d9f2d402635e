#include "refbooks/forms/noteedit.h"

#include <QKeyEvent>
#include <QMimeData>
#include <QRegularExpression>
#include <QTextCursor>
#include <QTextDocument>

#include <algorithm>

namespace refbooks {

NoteEdit::NoteEdit(const QString& text, int limit, QWidget* parent)
    : QPlainTextEdit(text, parent)
    , m_limit(limit)
{
    setTabChangesFocus(true);
    setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    connect(document(), &QTextDocument::contentsChange, this,
            [this](int position, int, int added) { m_insertedEnd = position + added; });
    connect(this, &QPlainTextEdit::textChanged, this, &NoteEdit::cutExcess);
}

QSize NoteEdit::sizeHint() const
{
    constexpr int kLines = 2, kLetters = 40;
    const int frame = 2 * (frameWidth() + static_cast<int>(document()->documentMargin()));
    return {fontMetrics().averageCharWidth() * kLetters,
            fontMetrics().lineSpacing() * kLines + frame};
}

void NoteEdit::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        event->ignore(); // the dialog's default button
    else
        QPlainTextEdit::keyPressEvent(event);
}

void NoteEdit::insertFromMimeData(const QMimeData* source)
{
    static const QRegularExpression lineEnds(QStringLiteral("[\\r\\n]+"));
    insertPlainText(source->text().trimmed().replace(lineEnds, QStringLiteral(" ")));
}

void NoteEdit::cutExcess()
{
    const int length = document()->characterCount() - 1; // without the final block end
    if (length <= m_limit)
        return;
    QTextCursor excess(document());
    excess.setPosition(std::min(m_insertedEnd, length));
    excess.setPosition(std::max(0, excess.position() - (length - m_limit)),
                       QTextCursor::KeepAnchor);
    excess.removeSelectedText();
}

} // namespace refbooks
