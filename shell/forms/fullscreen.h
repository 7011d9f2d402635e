#pragma once

#include <QObject>

class QAction;
class QWidget;

namespace shell {

// Lets a checkable command show the window on the whole screen, and keeps its check mark true
// when the desktop changes the window's state by itself.
class FullScreen final : public QObject
{
    Q_OBJECT

public:
    FullScreen(QWidget& window, QAction& command);

    void toggle();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QWidget& m_window;
    QAction& m_command;
};

} // namespace shell
