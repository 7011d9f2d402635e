#pragma once

#include <QModelIndexList>
#include <QString>

class QAction;
class QTableView;
class QToolBar;
class QWidget;

// What the grids of both journals do alike.
namespace journals {

// The cells that a command acts on: those selected, if the current one is among them, else
// the current one alone.
QModelIndexList chosenCells(const QTableView& grid);

// Puts the chosen cells on the clipboard.
void copyCells(const QTableView& grid);

// Adds the command to the grid's context menu under a text of its own, which may name keys
// after a tab: they are handled by the window, so that a letter typed into a selector is never
// a command.
void offerInMenu(QTableView& grid, QAction& command, const QString& text);

// Gives the commands of a journal's toolbar their icons.
void dressToolbar(QToolBar& bar);

// Lets the key press the command wherever the focus stands in the journal's window.
void addShortcut(QWidget& window, QAction& command, const QString& key);

} // namespace journals
