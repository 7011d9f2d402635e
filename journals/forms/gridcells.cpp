#include "journals/forms/gridcells.h"

#include "journals/forms/tableclip.h"
#include "shell/forms/paletteicon.h"

#include <QAction>
#include <QClipboard>
#include <QGuiApplication>
#include <QTableView>
#include <QToolBar>

// In the global namespace, as the macro wants; a static library's resources need the call.
static void initJournalIcons()
{
    Q_INIT_RESOURCE(journalicons);
}

using namespace Qt::StringLiterals;

namespace journals {

QModelIndexList chosenCells(const QTableView& grid)
{
    const QModelIndex current = grid.currentIndex();
    QModelIndexList selected = grid.selectionModel()->selectedIndexes();
    if (selected.contains(current))
        return selected;
    return current.isValid() ? QModelIndexList{current} : QModelIndexList();
}

void selectCell(QTableView& grid, const QModelIndex& cell)
{
    grid.setCurrentIndex(cell); // where the view begins a block
    grid.selectionModel()->setCurrentIndex(cell, QItemSelectionModel::ClearAndSelect);
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

void dressToolbar(QToolBar& bar)
{
    initJournalIcons();
    for (QAction* command : bar.actions())
        if (!command->isSeparator())
            command->setIcon(shell::paletteIcon(command->objectName()));
    if (auto* more = bar.findChild<QWidget*>(u"qt_toolbar_ext_button"_s))
        more->setAccessibleName(u"Еще команды"_s); // Qt leaves it nameless
}

void addShortcut(QWidget& window, QAction& command, const QString& key)
{
    command.setShortcut(QKeySequence(key));
    command.setShortcutContext(Qt::WidgetWithChildrenShortcut);
    window.addAction(&command);
}

} // namespace journals
