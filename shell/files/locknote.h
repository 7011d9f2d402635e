#pragma once

#include <QDateTime>
#include <QString>

#include <optional>

namespace shell {

// Who has a journal open.
struct LockHolder
{
    QString host;
    QString user;
    qint64 process = 0; // 0 when not known
    QDateTime since;    // invalid when not known

    // "пользователь Петрова, компьютер DELO-3, с 14:05 21.11.2026".
    QString text() const;
};

// A hidden note beside an open journal, ".NAME.lock", that tells others who holds it. It locks
// nothing: the lock is the engine's, and the system drops it with the process. So a note left
// by a process that died is no obstacle and is overwritten.
//
//   line 1  host        line 3  process
//   line 2  user        line 4  since, ISO 8601 with the zone
class LockNote final
{
public:
    // Writes the note; a folder that cannot be written has none.
    explicit LockNote(const QString& journal);
    ~LockNote(); // removes it, if it still is this process's own
    LockNote(const LockNote&) = delete;
    LockNote& operator=(const LockNote&) = delete;

private:
    QString m_path;
};

// Who holds a journal that is known to be locked: by the note or by what Access wrote into
// the `.ldb` beside it. Nothing when neither tells or the note is of a process that has died.
std::optional<LockHolder> lockHolder(const QString& journal);

QString lockNotePath(const QString& journal);

} // namespace shell
