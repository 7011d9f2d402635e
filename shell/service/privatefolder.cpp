#include "shell/service/privatefolder.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

using namespace Qt::StringLiterals;

namespace shell {

bool makePrivateFolder(const QString& path)
{
    if (QFileInfo(path).isDir()) {
        return true;
    }
    return QDir().mkpath(path)
           && QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
}

QString stateFolder()
{
#ifdef Q_OS_WIN
    return QStandardPaths::writableLocation(QStandardPaths::AppLocalDataLocation);
#else
    const QString given = qEnvironmentVariable("XDG_STATE_HOME");
    // The base directory rules ask that a relative path be ignored.
    const QString base =
        QDir::isAbsolutePath(given) ? given : QDir::home().filePath(u".local/state"_s);
    return QDir(base).filePath(u"jurnal"_s);
#endif
}

} // namespace shell
