#include "shell/forms/windowlist.h"

#include <QAction>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>

using namespace Qt::StringLiterals;

namespace shell {

WindowList::WindowList(QMenu& menu, QMdiArea& area)
    : QObject(&menu)
    , m_menu(menu)
    , m_area(area)
{
    connect(&menu, &QMenu::aboutToShow, this, &WindowList::refresh);
}

void WindowList::refresh()
{
    qDeleteAll(m_items);
    m_items.clear();
    const auto windows = m_area.subWindowList();
    if (!windows.isEmpty()) {
        m_items.append(m_menu.addSeparator());
    }
    for (QMdiSubWindow* window : windows) {
        const QString number = QString::number(m_items.size());
        QAction* item = m_menu.addAction(u"&%1 %2"_s.arg(number, window->windowTitle()));
        item->setCheckable(true);
        item->setChecked(window == m_area.currentSubWindow());
        connect(item, &QAction::triggered, window,
                [this, window] { m_area.setActiveSubWindow(window); });
        m_items.append(item);
    }
}

} // namespace shell
