#include "shell/forms/servicecommands.h"

#include "shell/forms/commands.h"
#include "shell/forms/filechooser.h"
#include "shell/forms/frmabout.h"
#include "shell/forms/frmcalend.h"
#include "shell/forms/frmhelp.h"
#include "shell/forms/fullscreen.h"
#include "shell/forms/qtlongwork.h"
#include "shell/forms/qtprogramstarter.h"
#include "shell/forms/runcommand.h"
#include "shell/service/helppage.h"
#include "shell/service/letter.h"
#include "shell/service/logfile.h"
#include "shell/service/outsideprograms.h"
#include "shell/service/programdetails.h"
#include "shell/session.h"
#include "shell/statusline.h"

#include <QAction>
#include <QApplication>
#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>
#include <QTimer>

using namespace Qt::StringLiterals;

namespace shell {

namespace {

QString letterFolder()
{
    return QDir(QStandardPaths::writableLocation(QStandardPaths::CacheLocation))
        .filePath(u"letters"_s);
}

} // namespace

ServiceCommands::ServiceCommands(const MainParts& parts, frmMain& window)
    : QObject(&window)
    , m_parts(parts)
    , m_window(window)
    , m_ownStarter(parts.starter ? nullptr : std::make_unique<QtProgramStarter>())
    , m_ownWork(parts.work ? nullptr : std::make_unique<QtLongWork>())
    , m_starter(parts.starter ? *parts.starter : *m_ownStarter)
    , m_letterTimer(new QTimer(this))
{
    m_letterTimer->setObjectName(u"Timer1"_s);
    m_letterTimer->setSingleShot(true);
    connect(m_letterTimer, &QTimer::timeout, this, &ServiceCommands::sendJournal);
    connect(&parts.session, &Session::journalChanged, this, &ServiceCommands::refreshCalendar);
    connect(&parts.session, &Session::settingsChanged, this, &ServiceCommands::refreshCalendar);
    removeOldLetterCopies(letterFolder(), QDateTime::currentDateTime());
}

ServiceCommands::~ServiceCommands() = default;

void ServiceCommands::bind(Commands& commands)
{
    bindService(commands);
    bindHelp(commands);
    auto* fullScreen = new FullScreen(m_window, *action(u"mnuFullScreen"_s));
    commands.bind(action(u"mnuFullScreen"_s), Needs::Nothing,
                  [fullScreen] { fullScreen->toggle(); });
}

void ServiceCommands::bindService(Commands& commands)
{
    const auto bind = [&](const QString& name, Needs needs, auto body) {
        commands.bind(action(name), needs, body);
    };
    bind(u"mnuToolsCacl"_s, Needs::Nothing, [this] { startCalculator(m_starter, m_parts.prompt); });
    bind(u"mnuToolsDay"_s, Needs::Nothing, [this] { showCalendar(); });
    bind(u"mnuToolsMail"_s, Needs::OpenFile, [this] { m_letterTimer->start(0); });
    bind(u"mnuObnovlenie"_s, Needs::Nothing, [this] {
        m_parts.prompt.information(updateText(QCoreApplication::applicationFilePath()));
    });
    bind(u"mnuAnyDesk"_s, Needs::Nothing,
         [this] { startRemoteHelp(m_starter, m_parts.prompt, RemoteHelp::AnyDesk); });
    bind(u"mnuAA"_s, Needs::Nothing,
         [this] { startRemoteHelp(m_starter, m_parts.prompt, RemoteHelp::AmmyyAdmin); });
}

void ServiceCommands::bindHelp(Commands& commands)
{
    const auto bind = [&](const QString& name, auto body) {
        commands.bind(action(name), Needs::Nothing, body);
    };
    bind(u"mnuSpravUD"_s, [this] { showHelp(helppage::kRemoteHelp); });
    bind(u"mnuHelpManual"_s, [this] { showHelp({}); });
    bind(u"mnuBrowser"_s, [this] { showHelp(helppage::kStart); });
    bind(u"mnuTPemail"_s, [this] { writeToSupport(); });
    bind(u"mnuErrorLog"_s, [this] { showLog(); });
    bind(u"mnuoproge"_s, [this] { frmAbout(&m_window).exec(); });
}

void ServiceCommands::showCalendar()
{
    if (!m_calendar) {
        m_calendar = new frmCalend(&m_window);
        const QDate working = m_parts.session.workingDate();
        m_calendar->showDate(working.isValid() ? working : QDate::currentDate());
    }
    m_calendar->show();
    refreshCalendar(); // the holidays book may have changed
    m_calendar->raise();
    m_calendar->activateWindow();
}

void ServiceCommands::refreshCalendar()
{
    if (m_calendar && m_calendar->isVisible()) {
        runCommand(m_parts.prompt, u"Праздники не прочитаны."_s,
                   [this] { m_calendar->setDays(StudyCalendar::of(m_parts.session)); });
    }
}

// A dialog that is open blocks every window but its own children.
void ServiceCommands::showHelp(const QString& page)
{
    QWidget* owner = QApplication::activeModalWidget();
    if (!owner) {
        owner = &m_window;
    }
    if (m_help && m_help->parentWidget() != owner) {
        delete m_help;
    }
    if (!m_help) {
        m_help = new frmHelp(owner);
    }
    m_help->open(page);
}

void ServiceCommands::writeToSupport()
{
    if (!m_starter.open(supportLetter())) {
        m_parts.prompt.exclamation(
            u"Почтовая программа не найдена. Сведения о программе для письма: «Справка», «О "
            "программе...», кнопка «Копировать сведения»."_s);
    }
}

void ServiceCommands::sendJournal()
{
    if (!m_parts.session.isOpen()) {
        return;
    }
    runCommand(m_parts.prompt, u"Письмо с базой данных не создано."_s, [this] {
        data::Journal& journal = m_parts.session.journal();
        const LetterCopy copy =
            copyForLetter(journal.path(), journal.filePath(), letterFolder(), work());
        if (!copy.path.isEmpty()) {
            writeLetter(
                copy, m_starter, m_parts.prompt,
                [&chooser = m_parts.chooser](const QString& path) { return chooser.reveal(path); });
            m_window.statusLine().show(u"Копия базы данных подготовлена для письма."_s);
        }
    });
}

void ServiceCommands::showLog()
{
    const QString path = logPath();
    if (!QFileInfo(path).isFile()) {
        m_parts.prompt.information(u"Журнал ошибок пуст."_s);
    } else if (!m_starter.open(QUrl::fromLocalFile(path))) {
        m_parts.chooser.reveal(path);
    }
}

QAction* ServiceCommands::action(const QString& name) const
{
    return m_window.findChild<QAction*>(name);
}

} // namespace shell
