#include "shell/forms/fullscreen.h"

#include <QAction>
#include <QEvent>
#include <QWidget>

namespace shell {

FullScreen::FullScreen(QWidget& window, QAction& command)
    : QObject(&window)
    , m_window(window)
    , m_command(command)
{
    window.installEventFilter(this);
}

// What was maximised before is maximised again.
void FullScreen::toggle()
{
    m_window.setWindowState(m_window.windowState() ^ Qt::WindowFullScreen);
}

bool FullScreen::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == &m_window && event->type() == QEvent::WindowStateChange) {
        m_command.setChecked(m_window.isFullScreen());
    }
    return QObject::eventFilter(watched, event);
}

} // namespace shell
