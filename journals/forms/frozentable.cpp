#include "journals/forms/frozentable.h"

#include "journals/forms/wrappingheader.h"

#include <QKeyEvent>
#include <QScrollBar>

#include <algorithm>

namespace journals {
namespace {

void setUpRows(QTableView& view)
{
    constexpr int kRoom = 8; // above and below the text, both together
    view.setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    view.setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    view.verticalHeader()->hide();
    view.verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    view.verticalHeader()->setDefaultSectionSize(view.fontMetrics().height() + kRoom);
    view.setEditTriggers(QAbstractItemView::NoEditTriggers);
    view.setSelectionMode(QAbstractItemView::ExtendedSelection);
    view.setSelectionBehavior(QAbstractItemView::SelectItems);
    view.setWordWrap(false);
    view.setShowGrid(false); // delegates draw it
}

} // namespace

FrozenTable::FrozenTable(QWidget* parent)
    : QTableView(parent)
    , m_frozen(new QTableView(this))
{
    setHorizontalHeader(new WrappingHeader(this));
    m_frozen->setHorizontalHeader(new WrappingHeader(m_frozen));
    setUpRows(*this);
    setUpRows(*m_frozen);
    m_frozen->setObjectName(QStringLiteral("frozenColumns"));
    m_frozen->setAccessibleName(QStringLiteral("Закрепленные графы"));
    m_frozen->setFrameShape(QFrame::NoFrame);
    m_frozen->setFocusPolicy(Qt::NoFocus);
    m_frozen->setFocusProxy(this);
    m_frozen->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_frozen->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_frozen->raise(); // above the header too, which came later

    connect(verticalScrollBar(), &QScrollBar::valueChanged, m_frozen->verticalScrollBar(),
            &QScrollBar::setValue);
    connect(m_frozen->verticalScrollBar(), &QScrollBar::valueChanged, verticalScrollBar(),
            &QScrollBar::setValue);
    connect(horizontalHeader(), &QHeaderView::sectionResized, this,
            [this](int section, int, int size) {
                if (section < m_frozenColumns)
                    m_frozen->setColumnWidth(section, size);
                placeFrozen();
            });
    connect(m_frozen->horizontalHeader(), &QHeaderView::sectionResized, this,
            [this](int section, int, int size) {
                if (section < m_frozenColumns && size > 0)
                    setColumnWidth(section, size);
            });
}

void FrozenTable::setFrozenColumns(int count)
{
    m_frozenColumns = count;
}

void FrozenTable::setDataArea(int firstColumn, int endColumn, int endRow)
{
    m_firstColumn = firstColumn;
    m_endColumn = endColumn;
    m_endRow = endRow;
}

void FrozenTable::setModel(QAbstractItemModel* model)
{
    QTableView::setModel(model);
    m_frozen->setModel(model);
    m_frozen->setSelectionModel(selectionModel());
    if (model)
        connect(model, &QAbstractItemModel::modelReset, this, &FrozenTable::hideUnfrozen);
    hideUnfrozen();
}

void FrozenTable::setDelegate(QAbstractItemDelegate* delegate)
{
    setItemDelegate(delegate);
    m_frozen->setItemDelegate(delegate);
}

void FrozenTable::hideUnfrozen()
{
    const int columns = model() ? model()->columnCount() : 0;
    for (int column = 0; column < columns; ++column)
        m_frozen->setColumnHidden(column, column >= m_frozenColumns);
    for (int column = 0; column < std::min(columns, m_frozenColumns); ++column)
        m_frozen->setColumnWidth(column, columnWidth(column));
    placeFrozen();
}

int FrozenTable::frozenWidth() const
{
    int width = 0;
    for (int column = 0; column < m_frozenColumns; ++column)
        width += columnWidth(column);
    return std::min(width, viewport()->width() * 2 / 3); // the rest stays within reach
}

void FrozenTable::placeFrozen()
{
    const int header = horizontalHeader()->height();
    m_frozen->horizontalHeader()->setFixedHeight(header);
    m_frozen->setGeometry(frameWidth(), frameWidth(), frozenWidth(), header + viewport()->height());
    m_frozen->setVisible(model() && model()->columnCount() > 0);
    m_frozen->verticalScrollBar()->setValue(verticalScrollBar()->value());
}

void FrozenTable::updateGeometries()
{
    QTableView::updateGeometries();
    placeFrozen();
}

void FrozenTable::scrollTo(const QModelIndex& index, ScrollHint hint)
{
    if (index.column() < m_frozenColumns) { // always in sight: bring up its row only
        const int sideways = horizontalScrollBar()->value();
        QTableView::scrollTo(index, hint);
        horizontalScrollBar()->setValue(sideways);
        return;
    }
    QTableView::scrollTo(index, hint);
    const int covered = frozenWidth() - visualRect(index).left();
    if (covered > 0)
        horizontalScrollBar()->setValue(horizontalScrollBar()->value() - covered);
}

void FrozenTable::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        const bool back = event->modifiers().testFlag(Qt::ShiftModifier);
        const QModelIndex next = moveCursor(back ? MoveUp : MoveDown, Qt::NoModifier);
        if (next.isValid())
            setCurrentIndex(next);
        event->accept();
        return;
    }
    QTableView::keyPressEvent(event);
}

QModelIndex FrozenTable::moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers)
{
    const bool inData = currentIndex().isValid() && m_firstColumn < m_endColumn && m_endRow > 0;
    if (inData && (action == MoveNext || action == MovePrevious))
        return wrappingMove(action == MoveNext ? 1 : -1);
    const bool toEdge = modifiers.testFlag(Qt::ControlModifier);
    if (inData && (action == MoveHome || action == MoveEnd || toEdge)) {
        const QModelIndex next = dataMove(action, toEdge);
        if (next.isValid())
            return next;
    }
    return QTableView::moveCursor(action, modifiers);
}

QModelIndex FrozenTable::dataMove(CursorAction action, bool toEdge) const
{
    const int row = currentIndex().row(), column = currentIndex().column();
    switch (action) {
    case MoveHome:
        return model()->index(toEdge ? 0 : row, m_firstColumn);
    case MoveEnd:
        return model()->index(toEdge ? m_endRow - 1 : row, m_endColumn - 1);
    case MoveLeft:
        return model()->index(row, m_firstColumn);
    case MoveRight:
        return model()->index(row, m_endColumn - 1);
    case MoveUp:
        return model()->index(0, column);
    case MoveDown:
        return model()->index(m_endRow - 1, column);
    default:
        return {};
    }
}

// One cell on within the data, at the end of a row to the next one.
QModelIndex FrozenTable::wrappingMove(int step) const
{
    int row = currentIndex().row(), column = currentIndex().column() + step;
    if (column >= m_endColumn) {
        column = m_firstColumn;
        ++row;
    } else if (column < m_firstColumn) {
        column = step > 0 ? m_firstColumn : m_endColumn - 1;
        row += step > 0 ? 0 : -1;
    }
    return row < 0 || row >= m_endRow ? currentIndex() : model()->index(row, column);
}

QItemSelectionModel::SelectionFlags FrozenTable::selectionCommand(const QModelIndex& index,
                                                                  const QEvent* event) const
{
    if (event && event->type() == QEvent::KeyPress) {
        const auto* key = static_cast<const QKeyEvent*>(event);
        const bool arrow = key->key() >= Qt::Key_Home && key->key() <= Qt::Key_PageDown;
        if (arrow && key->modifiers().testFlag(Qt::ControlModifier))
            return key->modifiers().testFlag(Qt::ShiftModifier)
                       ? QItemSelectionModel::SelectCurrent
                       : QItemSelectionModel::ClearAndSelect;
    }
    return QTableView::selectionCommand(index, event);
}

} // namespace journals
