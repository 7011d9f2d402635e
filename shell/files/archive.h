#pragma once

#include "shell/files/archivename.h"
#include "shell/files/longwork.h"

#include <QList>
#include <QString>

#include <functional>
#include <optional>

namespace shell {

using Clock = std::function<QDateTime()>;

struct ArchivedCopy
{
    QString path;
    ArchiveName name;
    qint64 bytes = 0; // of the archive
};

// The folder "Архив" and the copies in it. All but the lists throw jet::Error.
class Archive final
{
public:
    explicit Archive(QString folder, Clock clock = &QDateTime::currentDateTime);

    const QString& folder() const { return m_folder; }
    QDateTime now() const { return m_clock(); }

    // Copies of journals of this file name, latest first; of any journal for "".
    QList<ArchivedCopy> copies(const QString& journal = {}) const;
    // Those of the very journal at that path.
    QList<ArchivedCopy> copiesOfPlace(const QString& journal) const;

    // Archives `file`, which is the journal known as `journal`. Proven by reading it back.
    // Nothing when cancelled.
    std::optional<ArchivedCopy> add(const QString& journal, const QString& file,
                                    const QString& reason, const Progress& progress = {}) const;
    // Copies the file as it is, in a fraction of the time; compress() is to follow.
    ArchivedCopy addPlain(const QString& journal, const QString& file, const QString& reason) const;
    // Replaces a plain copy by its archive. Uses nothing of the object, so that it may run in
    // another thread.
    static void compress(const ArchivedCopy& plain);

    // Writes the journal in the copy to `target`, which must not exist.
    static void extract(const ArchivedCopy& copy, const QString& target);
    static void remove(const ArchivedCopy& copy);
    // Removes the automatic copies of the journal whose time is over.
    void prune(const QString& journal) const;

private:
    ArchiveName freeName(const QString& journal, const QString& reason) const;

    QString m_folder;
    Clock m_clock;
};

} // namespace shell
