#include "shell/forms/frmmain.h"

#include "shell/files/uncleanend.h"
#include "shell/forms/commands.h"
#include "shell/forms/filedrop.h"
#include "shell/forms/fileservices.h"
#include "shell/forms/frmloginmulti.h"
#include "shell/forms/frmoption.h"
#include "shell/forms/frmpassword.h"
#include "shell/forms/frmworkdate.h"
#include "shell/forms/mdiarrangement.h"
#include "shell/forms/menuwording.h"
#include "shell/forms/programfolders.h"
#include "shell/forms/recentmenu.h"
#include "shell/forms/runcommand.h"
#include "shell/forms/servicecommands.h"
#include "shell/forms/startpage.h"
#include "shell/forms/statuspanels.h"
#include "shell/forms/statustips.h"
#include "shell/forms/toolbarkeys.h"
#include "shell/forms/windowlist.h"
#include "shell/forms/windowplace.h"
#include "shell/forms/windowregistry.h"
#include "shell/session.h"
#include "shell/settings.h"
#include "ui_frmmain.h"

#include <QCloseEvent>
#include <QDir>
#include <QFileInfo>
#include <QMdiSubWindow>

using namespace Qt::StringLiterals;

namespace shell {

namespace {

// A shade behind the child windows, calmer than the style's own.
QColor areaColor(const QPalette& palette)
{
    return palette.color(QPalette::Window).darker(108);
}

} // namespace

frmMain::frmMain(const MainParts& parts, QWidget* parent)
    : QMainWindow(parent)
    , m_parts(parts)
    , ui(std::make_unique<Ui::frmMain>())
{
    ui->setupUi(this);
    m_status = new StatusPanels(*ui->sbStatusBar, parts.session);
    m_files = new FileCommands(parts.session, parts.settings, parts.prompt, parts.chooser,
                               *m_status, this);
    m_files->setReleaseWindows([this] { return closeWindows(); });
    m_files->setAskUser([this](const Users& users) {
        return frmLoginMulti::ask(users, m_parts.settings, m_parts.prompt, this);
    });
    m_commands =
        new Commands(findChildren<QAction*>(Qt::FindDirectChildrenOnly), parts.prompt, this);
    setUpMenus();
    setUpStartPage();
    bindCommands();
    bindJournal();
    connect(ui->mdiArea, &QMdiArea::subWindowActivated, this, &frmMain::refreshCommands);
    connect(&parts.session, &Session::journalChanged, this, &frmMain::showFile);
    connect(&parts.session, &Session::userChanged, this, &frmMain::refreshCommands);
    // Later, when whoever opens the file is done.
    connect(&parts.session, &Session::journalChanged, this, &frmMain::askWorkingDate,
            Qt::QueuedConnection);
    showFile();
}

// The child windows are destroyed after this object's own part and still report then.
frmMain::~frmMain()
{
    ui->mdiArea->disconnect(this);
}

StatusLine& frmMain::statusLine()
{
    return *m_status;
}

void frmMain::load(const QString& file, Access access)
{
    const bool uncleanEnd = m_parts.settings.flag(Setting::AppClose); // of the last run
    m_parts.settings.setFlag(Setting::AppClose, true);
    m_parts.settings.sync();
    restoreBars();
    restorePlace(*this, m_parts.settings);
    ProgramFolders folders{QDir(m_parts.userFolder).filePath(u"Архив"_s), {}};
    runCommand(m_parts.prompt, u"Папки программы не созданы."_s,
               [&] { folders = makeProgramFolders(m_parts.programFolder, m_parts.userFolder); });
    m_services = new FileServices(m_parts, *this, folders.archive);
    m_services->bind(*m_commands);
    (new ServiceCommands(m_parts, *this))->bind(*m_commands);
    bindWindows();
    m_startPage->setDemoOffered(m_files->hasDemo());
    if (!file.isEmpty()) {
        m_files->open(file, access);
    }
    if (uncleanEnd && m_parts.session.isOpen()) {
        verifyFile();
    }
    m_status->show(u"Готово"_s);
}

void frmMain::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::PaletteChange && ui->mdiArea) {
        ui->mdiArea->setBackground(areaColor(palette())); // else it stays that of the start
    }
    if (event->type() == QEvent::ActivationChange && isActiveWindow() && m_services) {
        QMetaObject::invokeMethod(m_services, &FileServices::lookAtFile, Qt::QueuedConnection);
    }
    QMainWindow::changeEvent(event);
}

void frmMain::closeEvent(QCloseEvent* event)
{
    if (!closeWindows()) {
        event->ignore();
        return;
    }
    saveState();
    m_parts.session.closeJournal();
    event->accept();
}

void frmMain::saveState()
{
    Settings& settings = m_parts.settings;
    savePlace(*this, settings);
    settings.setFlag(Setting::ShowToolbar, ui->mnupanels->isChecked());
    settings.setFlag(Setting::ShowStatus, ui->mnustatusbar->isChecked());
    settings.setFlag(Setting::AppClose, false);
    settings.sync();
}

void frmMain::setUpMenus()
{
    for (QAction* bar : {ui->mnuFileBar0, ui->mnuFileBar7, ui->mnuFileBar1, ui->mnuFileBar3,
                         ui->mnuFileBar5, ui->mnubar11, ui->mnubar12, ui->mnubar13, ui->mnubar14,
                         ui->mnuSprBar7, ui->mnubar16, ui->mnuSRzd0, ui->mnuSRazd1, ui->mnuSRazd2,
                         ui->mnuSRazd3, ui->mnuTools12, ui->mnuTools15, ui->mnuSRazd4}) {
        bar->setSeparator(true);
    }
    applyWording(m_parts.session.wording(), *ui->menuBar);
    addStatusTips(*this, m_parts.session.wording());
    m_fileKey = fillToolbar(*ui->Toolbar1, *this);
    auto* recent = new RecentMenu(*ui->mnuFile, ui->mnuFileBar5, m_parts.settings);
    connect(recent, &RecentMenu::chosen, m_files,
            [this](const QString& path) { m_files->open(path); });
    auto* drop = new FileDrop(*this);
    connect(drop, &FileDrop::dropped, m_files,
            [this](const QString& path) { m_files->open(path); });
    new WindowList(*ui->mnuwindow, *ui->mdiArea);
    ui->mdiArea->setBackground(areaColor(palette()));
}

void frmMain::setUpStartPage()
{
    m_startPage = new StartPage(m_parts.settings, ui->pages);
    ui->pages->addWidget(m_startPage);
    connect(m_startPage, &StartPage::createWanted, ui->mnuFileCr, &QAction::trigger);
    connect(m_startPage, &StartPage::openWanted, ui->mnuFileOpen, &QAction::trigger);
    connect(m_startPage, &StartPage::demoWanted, m_files, &FileCommands::demonstrate);
    connect(m_startPage, &StartPage::fileWanted, m_files,
            [this](const QString& path) { m_files->open(path); });
}

void frmMain::bindCommands()
{
    const auto bind = [this](QAction* action, Needs needs, auto body) {
        m_commands->bind(action, needs, body);
    };
    bind(ui->mnuFileCr, Needs::Nothing, [this] { m_files->create(); });
    bind(ui->mnuFileOpen, Needs::Nothing, [this] { m_files->open(); });
    bind(ui->mnuFileOpenR, Needs::OpenFile, [this] { m_files->reveal(); });
    bind(ui->mnuFileClose, Needs::OpenFile, [this] { m_files->close(); });
    bind(ui->mnuUserChange, Needs::OpenFile, [this] { m_files->changeUser(); });
    bind(ui->mnuToolsLock, Needs::Nothing,
         [this] { frmPassword(m_parts.settings, m_parts.prompt, this).exec(); });
    bind(ui->mnuNastroiki, Needs::OpenFile, [this] { showOptions(); });
    bind(ui->mnuexit, Needs::Nothing, [this] { close(); });
    bind(ui->mnustatusbar, Needs::Nothing,
         [this] { ui->sbStatusBar->setVisible(ui->mnustatusbar->isChecked()); });
    bind(ui->mnupanels, Needs::Nothing,
         [this] { ui->Toolbar1->setVisible(ui->mnupanels->isChecked()); });
    bind(ui->mnuKaskadom, Needs::ChildWindow, [this] { ui->mdiArea->cascadeSubWindows(); });
    bind(ui->mnugorizont, Needs::ChildWindow, [this] { stackRows(*ui->mdiArea); });
    bind(ui->mnuVertikal, Needs::ChildWindow, [this] { standSideBySide(*ui->mdiArea); });
}

void frmMain::bindJournal()
{
    m_commands->bindJournal(ui->mnuins_oc, JournalAction::SetGrade);
    m_commands->bindJournal(ui->mnudel_oc, JournalAction::RemoveGrade);
    m_commands->bindJournal(ui->mnuinsert, JournalAction::Mark);
    m_commands->bindJournal(ui->mnuins_uv, JournalAction::MakeExcused);
    m_commands->bindJournal(ui->mnuins_nuv, JournalAction::MakeUnexcused);
    m_commands->bindJournal(ui->mnudelet, JournalAction::Delete);
    m_commands->bindJournal(ui->mnuotmena, JournalAction::Undo);
    m_commands->bindJournal(ui->mnupovtor, JournalAction::Redo);
    ui->mnuotmena->setShortcuts({QKeySequence(u"Ctrl+Z"_s), QKeySequence(u"Alt+Backspace"_s)});
    ui->mnupovtor->setShortcuts({QKeySequence(u"Ctrl+Y"_s), QKeySequence(u"Ctrl+Shift+Z"_s)});
    m_commands->bindJournal(ui->mnuprint, JournalAction::Print);
    auto* refresh = new QAction(u"Обновить"_s, this); // a key alone: the menu has no such item
    refresh->setObjectName(u"actRefresh"_s);
    refresh->setShortcut(QKeySequence(QKeySequence::Refresh));
    addAction(refresh);
    m_commands->bindJournal(refresh, JournalAction::Refresh);
}

void frmMain::bindWindows()
{
    for (QAction* action : findChildren<QAction*>(Qt::FindDirectChildrenOnly)) {
        const QString command = action->objectName();
        if (m_parts.windows.find(command)) {
            m_commands->bind(action, Needs::OpenFile, [this, command] { openWindow(command); });
        } else if (m_parts.windows.findDialog(command)) {
            m_commands->bind(action, Needs::OpenFile,
                             [this, command] { (*m_parts.windows.findDialog(command))(this); });
        }
    }
    refreshCommands();
}

void frmMain::restoreBars()
{
    const Settings& settings = m_parts.settings;
    ui->mnupanels->setChecked(settings.flag(Setting::ShowToolbar));
    ui->Toolbar1->setVisible(ui->mnupanels->isChecked());
    ui->mnustatusbar->setChecked(settings.flag(Setting::ShowStatus));
    ui->sbStatusBar->setVisible(ui->mnustatusbar->isChecked());
}

QWidget* frmMain::openWindow(const QString& command)
{
    QPointer<QMdiSubWindow>& window = m_windows[command];
    if (window) {
        ui->mdiArea->setActiveSubWindow(window);
        window->widget()->setFocus(); // where it begins, as if it had been opened now
        return window->widget();
    }
    const bool alone = ui->mdiArea->subWindowList().isEmpty();
    QWidget* content = (*m_parts.windows.find(command))(ui->mdiArea);
    window = ui->mdiArea->addSubWindow(content);
    window->setAttribute(Qt::WA_DeleteOnClose);
    alone ? window->showMaximized() : window->show();
    content->setFocus();
    return content;
}

bool frmMain::closeWindows()
{
    ui->mdiArea->closeAllSubWindows();
    for (const QMdiSubWindow* window : ui->mdiArea->subWindowList()) {
        if (window->isVisible()) {
            return false; // it asked, and the user chose to stay
        }
    }
    return true;
}

void frmMain::showFile()
{
    const bool open = m_parts.session.isOpen();
    const QString path = open ? m_parts.session.journal().path() : QString();
    const bool readOnly = open && m_parts.session.database().readOnly();
    const QString title = QFileInfo(path).fileName() + (readOnly ? u" [только чтение]"_s : u""_s);
    setWindowTitle(open ? title : QGuiApplication::applicationDisplayName());
    m_fileKey->setEnabled(open);
    m_fileKey->setText(open ? u"Открыт файл: %1"_s.arg(QDir::toNativeSeparators(path))
                            : u"Файл не открыт"_s);
    ui->pages->setCurrentWidget(open ? static_cast<QWidget*>(ui->mdiArea) : m_startPage);
    if (!open) {
        m_startPage->focusFirst(); // changing the page has put the focus where it was before
    }
    refreshCommands();
}

void frmMain::refreshCommands()
{
    const QMdiSubWindow* window = ui->mdiArea->currentSubWindow();
    m_commands->setWritable(!m_parts.session.isOpen() || !m_parts.session.database().readOnly());
    m_commands->refresh(m_parts.session.isOpen(), window ? window->widget() : nullptr,
                        m_parts.session.user().role);
}

void frmMain::verifyFile()
{
    m_status->show(u"Проверка базы данных..."_s);
    const CheckVerdict verdict = verifyAfterUncleanEnd(m_parts.session.database());
    verdict.sound ? m_parts.prompt.information(verdict.text) : m_services->offerCopy(verdict.text);
}

void frmMain::showOptions()
{
    frmOption options(m_parts.session, m_parts.settings, m_parts.prompt, this);
    connect(&options, &frmOption::helpWanted, ui->mnuHelpManual, &QAction::trigger);
    options.exec();
}

void frmMain::askWorkingDate()
{
    Session& session = m_parts.session;
    if (!session.isOpen() || !session.settings().askWorkingDate || session.database().readOnly()) {
        return;
    }
    frmWorkDate dialog(session.workingDate(), this);
    if (dialog.exec() != QDialog::Accepted || dialog.date() == session.workingDate()) {
        return;
    }
    runCommand(m_parts.prompt, u"Рабочая дата не сохранена."_s, [&] {
        data::SettingsRow row = session.settings();
        row.workingDate = dialog.date();
        session.saveSettings(row);
    });
}

} // namespace shell
