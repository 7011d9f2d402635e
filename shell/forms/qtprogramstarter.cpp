#include "shell/forms/qtprogramstarter.h"

#include <QCoreApplication>
#include <QDesktopServices>
#include <QDir>
#include <QProcess>
#include <QStandardPaths>

#include <utility>

using namespace Qt::StringLiterals;

namespace shell {

namespace {

// Where programs stand that are not in the search path, each in a folder of its own name.
QStringList programFolders(const QString& program)
{
    QStringList folders;
    for (const char* base : {"ProgramFiles", "ProgramFiles(x86)", "LOCALAPPDATA"}) {
        if (const QString path = qEnvironmentVariable(base); !path.isEmpty()) {
            folders << QDir(path).filePath(program);
        }
    }
    return folders;
}

} // namespace

QString QtProgramStarter::find(const QStringList& programs) const
{
    for (const QString& program : programs) {
        QString path = QStandardPaths::findExecutable(program);
#ifdef Q_OS_WIN
        if (path.isEmpty()) {
            path = QStandardPaths::findExecutable(program, programFolders(program));
        }
#else
        Q_UNUSED(programFolders);
#endif
        if (!path.isEmpty()) {
            return path;
        }
    }
    return {};
}

bool QtProgramStarter::start(const QString& program, const QStringList& arguments)
{
    return QProcess::startDetached(program, arguments, QDir::homePath());
}

void QtProgramStarter::startWatched(const QString& program, const QStringList& arguments,
                                    std::function<void()> failed)
{
    // Without a parent: a program still at work when this one ends is left alone.
    auto* process = new QProcess;
    QObject::connect(process, &QProcess::finished, qApp,
                     [process, failed](int status, QProcess::ExitStatus how) {
                         process->deleteLater();
                         if (status != 0 || how != QProcess::NormalExit) {
                             failed();
                         }
                     });
    QObject::connect(process, &QProcess::errorOccurred, qApp,
                     [process, failed](QProcess::ProcessError error) {
                         if (error == QProcess::FailedToStart) { // finished() does not follow
                             process->deleteLater();
                             failed();
                         }
                     });
    process->setProcessChannelMode(QProcess::ForwardedChannels);
    process->start(program, arguments);
}

bool QtProgramStarter::open(const QUrl& address)
{
    return QDesktopServices::openUrl(address);
}

} // namespace shell
