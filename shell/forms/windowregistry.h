#pragma once

#include <QString>

#include <functional>
#include <map>
#include <utility>

class QWidget;

namespace shell {

// Makes the widget of a child window. The main window puts it into its area, shows it and
// owns it. It may throw: the command then ends with the error text and no window.
using WindowFactory = std::function<QWidget*(QWidget* parent)>;
// Shows a dialog over the main window until it is closed. It may throw as well.
using DialogRunner = std::function<void(QWidget* parent)>;

// The windows that other folders offer to the main window, each by the control name of the
// menu command that opens it. The program fills it; a command without a window is disabled.
class WindowRegistry final
{
public:
    void offer(const QString& command, WindowFactory factory)
    {
        m_factories[command] = std::move(factory);
    }
    void offerDialog(const QString& command, DialogRunner runner)
    {
        m_dialogs[command] = std::move(runner);
    }
    // The factory of a command, or null when nobody offers one.
    const WindowFactory* find(const QString& command) const
    {
        const auto found = m_factories.find(command);
        return found == m_factories.end() ? nullptr : &found->second;
    }
    // The same of a dialog.
    const DialogRunner* findDialog(const QString& command) const
    {
        const auto found = m_dialogs.find(command);
        return found == m_dialogs.end() ? nullptr : &found->second;
    }

private:
    std::map<QString, WindowFactory> m_factories;
    std::map<QString, DialogRunner> m_dialogs;
};

} // namespace shell
