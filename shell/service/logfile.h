#pragma once

#include <QFile>
#include <QMutex>
#include <QString>

namespace shell {

// The error log of the program: lines of text in a file that only its user can read. When the
// file has grown too large it becomes "NAME.1", the one before "NAME.2", and older ones go. May
// be written from several threads. What cannot be written is lost: the log harms nobody.
class LogFile final
{
public:
    explicit LogFile(QString path, qint64 mostBytes = 512 * 1024);

    const QString& path() const { return m_path; }
    void write(const QString& line);

private:
    bool open();
    void rotate();

    QMutex m_mutex;
    QString m_path;
    qint64 m_mostBytes;
    QFile m_file;
};

// The log of the user's program.
QString logPath();

} // namespace shell
