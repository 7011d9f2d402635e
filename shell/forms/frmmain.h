#pragma once

#include "shell/forms/filecommands.h"

#include <QMainWindow>
#include <QPointer>

#include <map>
#include <memory>

class QMdiSubWindow;

namespace shell {

class Commands;
class Drives;
class FileServices;
class LongWork;
class ProgramStarter;
class StartPage;
class StatusPanels;
class WindowRegistry;

namespace Ui {
class frmMain;
}

// What the main window works with. main() owns all of it; it must outlive the window.
struct MainParts
{
    Session& session;
    Settings& settings;
    Prompt& prompt;
    FileChooser& chooser;
    const WindowRegistry& windows;
    QString programFolder;
    QString userFolder;                // the user's documents
    const Drives* drives = nullptr;    // the system's when null
    LongWork* work = nullptr;          // in another thread, behind a progress box, when null
    ProgramStarter* starter = nullptr; // of this computer's programs when null
};

// The multiple-document main window: menus, toolbar, status bar, and the area in which every
// other window opens. It passes each command on to what carries it out.
class frmMain final : public QMainWindow
{
    Q_OBJECT

public:
    explicit frmMain(const MainParts& parts, QWidget* parent = nullptr);
    ~frmMain() override;

    StatusLine& statusLine();
    FileCommands& files() { return *m_files; }
    // Requires load().
    FileServices& services() { return *m_services; }

    // Restores the window, makes the program's folders and opens `file` ("" for none).
    void load(const QString& file, Access access = Access::Full);
    // Opens the window that the registry offers for a menu command, or brings it to the front
    // when it is open, and gives its content. Throws what the window throws.
    QWidget* openWindow(const QString& command);
    // Keeps what the next start needs; the journal's own data is in its file at all times.
    void saveState();

protected:
    void changeEvent(QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

private:
    void setUpMenus();
    void setUpStartPage();
    void bindCommands();
    void bindJournal();
    void bindWindows();
    void restoreBars();
    bool closeWindows();
    void showFile();
    void refreshCommands();
    void verifyFile();
    void showOptions();
    void askWorkingDate();

    MainParts m_parts;
    std::unique_ptr<Ui::frmMain> ui;
    StatusPanels* m_status = nullptr;
    FileCommands* m_files = nullptr;
    FileServices* m_services = nullptr;
    Commands* m_commands = nullptr;
    StartPage* m_startPage = nullptr;
    QAction* m_fileKey = nullptr;                         // keyStart of the toolbar
    std::map<QString, QPointer<QMdiSubWindow>> m_windows; // by the command that opened it
};

} // namespace shell
