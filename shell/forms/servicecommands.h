#pragma once

#include "shell/forms/frmmain.h"

#include <QObject>
#include <QPointer>

#include <memory>

class QTimer;

namespace shell {

class Commands;
class ProgramStarter;
class frmCalend;
class frmHelp;

// The commands of the service and help menus, and the windows that they open.
class ServiceCommands final : public QObject
{
    Q_OBJECT

public:
    // `window` becomes the parent.
    ServiceCommands(const MainParts& parts, frmMain& window);
    ~ServiceCommands() override;

    // Ties the menu's actions to the commands.
    void bind(Commands& commands);

private:
    void bindService(Commands& commands);
    void bindHelp(Commands& commands);
    void showCalendar();
    void refreshCalendar();
    // The page of the manual; "" for where the user was.
    void showHelp(const QString& page);
    void writeToSupport();
    void sendJournal();
    void showLog();
    QAction* action(const QString& name) const;
    LongWork& work() { return m_parts.work ? *m_parts.work : *m_ownWork; }

    MainParts m_parts;
    frmMain& m_window;
    std::unique_ptr<ProgramStarter> m_ownStarter; // null when the parts bring theirs
    std::unique_ptr<LongWork> m_ownWork;
    ProgramStarter& m_starter;
    QTimer* m_letterTimer; // "Timer1": the letter is made after the menu has closed
    QPointer<frmCalend> m_calendar;
    QPointer<frmHelp> m_help;
};

} // namespace shell
