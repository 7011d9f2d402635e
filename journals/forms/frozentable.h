#pragma once

#include <QTableView>

namespace journals {

// A table whose first columns stay in place while the others scroll beneath them. A second
// view of the same model and selection lies over the first columns; rows, widths and the
// vertical position of both are kept in step. Moves as a spreadsheet does: Enter down, Tab
// right, Home and End within the data, Ctrl and an arrow to the data's edge.
class FrozenTable final : public QTableView
{
    Q_OBJECT

public:
    explicit FrozenTable(QWidget* parent = nullptr);

    // To be set before the model.
    void setFrozenColumns(int count);
    // The cells that Home, End, Tab and Ctrl with an arrow stay in: columns first..end-1 of
    // the rows 0..endRow-1.
    void setDataArea(int firstColumn, int endColumn, int endRow);

    void setModel(QAbstractItemModel* model) override;
    void setDelegate(QAbstractItemDelegate* delegate);
    void scrollTo(const QModelIndex& index, ScrollHint hint = EnsureVisible) override;
    void keyboardSearch(const QString&) override {} // letters are commands

protected:
    void keyPressEvent(QKeyEvent* event) override;
    QModelIndex moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) override;
    QItemSelectionModel::SelectionFlags selectionCommand(const QModelIndex& index,
                                                         const QEvent* event) const override;
    void updateGeometries() override;

private:
    void hideUnfrozen();
    void placeFrozen();
    int frozenWidth() const;
    QModelIndex dataMove(CursorAction action, bool toEdge) const;
    QModelIndex wrappingMove(int step) const;

    QTableView* m_frozen;
    int m_frozenColumns = 0;
    int m_firstColumn = 0;
    int m_endColumn = 0;
    int m_endRow = 0;
};

} // namespace journals
