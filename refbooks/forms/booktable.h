#pragma once

#include <QElapsedTimer>
#include <QTableView>

namespace refbooks {

// The list of a book: whole rows are selected, headers sort, and typing goes to the row whose
// name begins with what was typed. Shows a BookListModel.
class BookTable final : public QTableView
{
    Q_OBJECT

public:
    explicit BookTable(QWidget* parent = nullptr);

    // Begins to work on the model, which must be a BookListModel.
    void setModel(QAbstractItemModel* model) override;
    void keyboardSearch(const QString& typed) override;
    // Makes the row the current and only selected one; -1 selects none.
    void goToRow(int row);
    // The selected rows in the list's order; quick however many there are.
    std::vector<int> selectedRowNumbers() const;
    int selectedRowCount() const;

signals:
    // What was typed so far, and whether a row begins so.
    void searched(const QString& typed, bool found);

protected:
    void keyPressEvent(QKeyEvent* event) override;
    QModelIndex moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) override;

private:
    bool isTyping() const;

    QString m_typed;
    QElapsedTimer m_sinceKey;
};

} // namespace refbooks
