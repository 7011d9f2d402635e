#pragma once

#include <QModelIndexList>
#include <QString>

#include <algorithm>
#include <utility>

class QAction;
class QTableView;
class QToolBar;
class QWidget;

// What the grids of both journals do alike.
namespace journals {

// The cells that a command acts on: those selected, if the current one is among them, else
// the current one alone.
QModelIndexList chosenCells(const QTableView& grid);

// Makes one cell the chosen one, whatever modifier keys are held, as Ctrl is after Ctrl+Z; a block
// selected from there begins with it.
void selectCell(QTableView& grid, const QModelIndex& cell);

// Where the cursor goes that stood on a column of another sheet, counted from the first day or
// month: there, unless nothing can be entered in that day; then to the first open one. A column
// before or after the days stays as it is.
template <class Sheet>
int openColumn(const Sheet& sheet, int column)
{
    const auto isOpen = [](const auto& each) { return each.inForce; };
    if (column < 0 || std::cmp_greater_equal(column, sheet.columns.size())
        || isOpen(sheet.columns[static_cast<std::size_t>(column)]))
        return column;
    const auto first = std::ranges::find_if(sheet.columns, isOpen);
    return first == sheet.columns.end() ? 0 : static_cast<int>(first - sheet.columns.begin());
}

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
