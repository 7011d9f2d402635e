#include "shell/service/logfile.h"

#include "shell/service/privatefolder.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>

#include <utility>

using namespace Qt::StringLiterals;

namespace shell {

namespace {

constexpr int kKept = 2; // older files beside the present one

QString numbered(const QString& path, int number)
{
    return number == 0 ? path : path + u'.' + QString::number(number);
}

} // namespace

LogFile::LogFile(QString path, qint64 mostBytes)
    : m_path(std::move(path))
    , m_mostBytes(mostBytes)
{}

void LogFile::write(const QString& line)
{
    const QMutexLocker lock(&m_mutex);
    if (!open()) {
        return;
    }
    QString whole = line;
    whole.replace(u'\n', u"\n    "_s); // each entry begins with its time, at the line's start
    const QString time = QDateTime::currentDateTime().toString(u"yyyy-MM-dd HH:mm:ss.zzz"_s);
    m_file.write((time + u' ' + whole + u'\n').toUtf8());
    m_file.flush();
}

bool LogFile::open()
{
    if (m_file.isOpen() && m_file.size() >= m_mostBytes) {
        m_file.close();
    }
    if (m_file.isOpen()) {
        return true;
    }
    if (!makePrivateFolder(QFileInfo(m_path).absolutePath())) {
        return false;
    }
    if (QFileInfo(m_path).size() >= m_mostBytes) {
        rotate();
    }
    m_file.setFileName(m_path);
    return m_file.open(QIODevice::WriteOnly | QIODevice::Append)
           && m_file.setPermissions(QFile::ReadOwner | QFile::WriteOwner);
}

void LogFile::rotate()
{
    QFile::remove(numbered(m_path, kKept));
    for (int number = kKept; number > 0; --number) {
        QFile::rename(numbered(m_path, number - 1), numbered(m_path, number));
    }
}

QString logPath()
{
    return QDir(stateFolder()).filePath(u"jurnal.log"_s);
}

} // namespace shell
