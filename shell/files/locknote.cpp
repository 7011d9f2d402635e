#include "shell/files/locknote.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QStringList>
#include <QSysInfo>

#ifdef Q_OS_WIN
#include <windows.h>
#else
#include <cerrno>
#include <csignal>
#endif

using namespace Qt::StringLiterals;

namespace shell {

namespace {

constexpr qint64 kMostNoteBytes = 4096; // a note is short; whatever is longer is none

QString ownHost()
{
    return QSysInfo::machineHostName();
}

QString ownUser()
{
    const QString user = qEnvironmentVariable("USER");
    return user.isEmpty() ? qEnvironmentVariable("USERNAME") : user;
}

bool isRunning(qint64 process)
{
#ifdef Q_OS_WIN
    const HANDLE handle = OpenProcess(SYNCHRONIZE, FALSE, static_cast<DWORD>(process));
    if (!handle)
        return GetLastError() == ERROR_ACCESS_DENIED;
    const bool running = WaitForSingleObject(handle, 0) == WAIT_TIMEOUT;
    CloseHandle(handle);
    return running;
#else
    return ::kill(static_cast<pid_t>(process), 0) == 0 || errno == EPERM;
#endif
}

std::optional<LockHolder> readNote(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly) || file.size() > kMostNoteBytes)
        return std::nullopt;
    const QStringList lines = QString::fromUtf8(file.readAll()).split(u'\n');
    constexpr qsizetype kLines = 4;
    if (lines.size() < kLines)
        return std::nullopt;
    LockHolder holder{lines[0].trimmed(), lines[1].trimmed(), lines[2].toLongLong(),
                      QDateTime::fromString(lines[3].trimmed(), Qt::ISODate)};
    if (holder.host.isEmpty() || holder.process <= 0)
        return std::nullopt;
    return holder;
}

// Computers and users are named in the code page of a Russian Windows.
QString fromCodePage1251(const QByteArray& bytes)
{
    constexpr unsigned kFirstLetter = 0xC0; // А, whose number in Unicode is 0x410
    QString text;
    for (const char byte : bytes) {
        const unsigned code = static_cast<unsigned char>(byte);
        if (code == 0)
            break;
        if (code >= kFirstLetter)
            text += QChar(static_cast<char16_t>(0x410 + code - kFirstLetter));
        else if (code == 0xA8 || code == 0xB8)
            text += code == 0xA8 ? u'Ё' : u'ё';
        else if (code >= 0x20 && code < 0x80)
            text += QChar(static_cast<char16_t>(code));
    }
    return text.trimmed();
}

// The lock file of Access: a record for each user.
//
//   offset  bytes  meaning
//        0     32  computer, NUL-terminated
//       32     32  user, NUL-terminated; "Admin" where there is no workgroup
std::optional<LockHolder> readAccessLock(const QString& journal)
{
    const QFileInfo info(journal);
    for (const QString& extension : {u".ldb"_s, u".LDB"_s}) {
        QFile file(info.absolutePath() + u'/' + info.completeBaseName() + extension);
        if (!file.open(QIODevice::ReadOnly))
            continue;
        constexpr qint64 kNameBytes = 32;
        const QString host = fromCodePage1251(file.read(kNameBytes));
        const QString user = fromCodePage1251(file.read(kNameBytes));
        if (!host.isEmpty())
            return LockHolder{host, user, 0, {}};
    }
    return std::nullopt;
}

bool isOwn(const LockHolder& holder)
{
    return holder.host == ownHost() && holder.process == QCoreApplication::applicationPid();
}

} // namespace

QString LockHolder::text() const
{
    QStringList parts;
    if (!user.isEmpty())
        parts << u"пользователь "_s + user;
    parts << u"компьютер "_s + host;
    if (since.isValid())
        parts << u"с "_s + since.toLocalTime().toString(u"HH:mm dd.MM.yyyy"_s);
    if (process > 0 && host == ownHost())
        parts << u"процесс %1"_s.arg(process);
    return parts.join(u", "_s);
}

QString lockNotePath(const QString& journal)
{
    const QFileInfo info(journal);
    const QString real = info.canonicalFilePath(); // one note, whatever link it is opened by
    const QFileInfo file(real.isEmpty() ? info.absoluteFilePath() : real);
    return u"%1/.%2.lock"_s.arg(file.absolutePath(), file.fileName());
}

LockNote::LockNote(const QString& journal)
    : m_path(lockNotePath(journal))
{
    QFile file(m_path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate))
        return;
    const QString text = u"%1\n%2\n%3\n%4\n"_s.arg(
        ownHost(), ownUser(), QString::number(QCoreApplication::applicationPid()),
        QDateTime::currentDateTimeUtc().toString(Qt::ISODate));
    file.write(text.toUtf8());
#ifdef Q_OS_WIN
    SetFileAttributesW(reinterpret_cast<LPCWSTR>(m_path.utf16()), FILE_ATTRIBUTE_HIDDEN);
#endif
}

LockNote::~LockNote()
{
    if (const auto holder = readNote(m_path); holder && isOwn(*holder))
        QFile::remove(m_path);
}

std::optional<LockHolder> lockHolder(const QString& journal)
{
    if (auto holder = readNote(lockNotePath(journal))) {
        if (holder->host != ownHost() || isRunning(holder->process))
            return holder;
    }
    return readAccessLock(journal);
}

} // namespace shell
