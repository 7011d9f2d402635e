#pragma once

class QAction;
class QToolBar;
class QWidget;

namespace shell {

// Fills the toolbar with its keys. Each key is an action named by the key that triggers the
// menu command of the same meaning, found by its control name below `menus`, and is enabled
// while that is. Gives the first key, "keyStart", which carries out nothing and stands for
// the open file.
QAction* fillToolbar(QToolBar& bar, QWidget& menus);

} // namespace shell
