#pragma once

#include <QPlainTextEdit>

namespace refbooks {

// A box of two lines for a text that wraps. Tab and Enter mean what they mean in a line, and
// pasted line ends become blanks.
class NoteEdit final : public QPlainTextEdit
{
    Q_OBJECT

public:
    // Shows a text; at most `limit` characters can be entered.
    NoteEdit(const QString& text, int limit, QWidget* parent = nullptr);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void insertFromMimeData(const QMimeData* source) override;

private:
    void cutExcess();

    int m_limit;
    int m_insertedEnd = 0; // of what was put in last
};

} // namespace refbooks
