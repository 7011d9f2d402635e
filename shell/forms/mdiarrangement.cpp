#include "shell/forms/mdiarrangement.h"

#include <QMdiArea>
#include <QMdiSubWindow>

namespace shell {

namespace {

void layOut(QMdiArea& area, bool rows)
{
    QList<QMdiSubWindow*> windows;
    for (QMdiSubWindow* window : area.subWindowList(QMdiArea::CreationOrder)) {
        if (window->isVisible() && !window->isMinimized()) {
            windows.append(window);
        }
    }
    const QSize size = area.viewport()->size();
    const int count = static_cast<int>(windows.size());
    for (int i = 0; i < count; ++i) {
        const int length = rows ? size.height() : size.width();
        const int from = length * i / count;
        const int to = length * (i + 1) / count;
        windows[i]->showNormal();
        windows[i]->setGeometry(rows ? QRect(0, from, size.width(), to - from)
                                     : QRect(from, 0, to - from, size.height()));
    }
}

} // namespace

void stackRows(QMdiArea& area)
{
    layOut(area, true);
}

void standSideBySide(QMdiArea& area)
{
    layOut(area, false);
}

} // namespace shell
