#pragma once

#include <QList>
#include <QObject>

class QAction;
class QMdiArea;
class QMenu;

namespace shell {

// The open child windows at the end of the menu "Окно", the active one ticked; choosing one
// brings it to the front.
class WindowList final : public QObject
{
    Q_OBJECT

public:
    // `menu` becomes the parent.
    WindowList(QMenu& menu, QMdiArea& area);

private:
    void refresh();

    QMenu& m_menu;
    QMdiArea& m_area;
    QList<QAction*> m_items;
};

} // namespace shell
