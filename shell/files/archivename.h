#pragma once

#include <QDateTime>
#include <QString>

#include <optional>

namespace shell {

// The name of a copy in the archive, which says all that is known about it:
//
//     2026-11-21 14-05-33 Журнал (перед изменениями) 3f2a.zip
//
// date and time, so that names sort by age; the journal's name without its extension; why it
// was made; four digits that tell journals of one name in several folders apart; ".mdb" until
// it is compressed.
struct ArchiveName
{
    QDateTime made; // local time, whole seconds
    QString journal;
    QString reason;
    QString place;
    bool compressed = true;

    // The name for a copy of `path` made now.
    static ArchiveName forCopy(const QString& path, const QString& reason, const QDateTime& made);
    // Nothing for a file that is no copy.
    static std::optional<ArchiveName> parse(const QString& fileName);
    QString fileName() const;
    // Made without being asked for, so that it goes when its time is over.
    bool automatic() const;

    static const QString kManual; // the reason of a copy that the user asked for
};

// The four digits of the journal at `path`.
QString archivePlace(const QString& path);

} // namespace shell
