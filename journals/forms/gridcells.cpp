#include "journals/forms/gridcells.h"

#include "journals/forms/tableclip.h"

#include <QAction>
#include <QClipboard>
#include <QGuiApplication>
#include <QTableView>

namespace journals {

QModelIndexList chosenCells(const QTableView& grid)
{
    const QModelIndex current = grid.currentIndex();
    QModelIndexList selected = grid.selectionModel()->selectedIndexes();
    if (selected.contains(current))
        return selected;
    return current.isValid() ? QModelIndexList{current} : QModelIndexList();
}

void copyCells(const QTableView& grid)
{
    const QModelIndexList cells = chosenCells(grid);
    if (!cells.isEmpty())
        QGuiApplication::clipboard()->setText(tableText(cells));
}

void offerInMenu(QTableView& grid, QAction& command, const QString& text)
{
    auto* item = new QAction(text, &grid);
    QObject::connect(item, &QAction::triggered, &command, &QAction::trigger);
    QObject::connect(&command, &QAction::changed, item,
                     [item, &command] { item->setEnabled(command.isEnabled()); });
    item->setEnabled(command.isEnabled());
    grid.addAction(item);
}

void addShortcut(QWidget& window, QAction& command, const QString& key)
{
    command.setShortcut(QKeySequence(key));
    command.setShortcutContext(Qt::WidgetWithChildrenShortcut);
    window.addAction(&command);
}

} // namespace journals
