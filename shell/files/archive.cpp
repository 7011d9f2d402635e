#include "shell/files/archive.h"

#include "data/convert.h"
#include "jet/error.h"
#include "shell/files/copyfile.h"
#include "shell/files/filetexts.h"
#include "shell/files/retention.h"
#include "shell/files/zipfile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace shell {

namespace {

QString zipPathOf(const ArchivedCopy& copy)
{
    ArchiveName name = copy.name;
    name.compressed = true;
    return QFileInfo(copy.path).dir().filePath(name.fileName());
}

ArchivedCopy copyAt(const QString& path, const ArchiveName& name)
{
    return {path, name, QFileInfo(path).size()};
}

// While a plain copy is being compressed, both may be there for a moment.
void dropPlainTwins(QList<ArchivedCopy>& copies)
{
    copies.removeIf([](const ArchivedCopy& copy) {
        return !copy.name.compressed && QFileInfo::exists(zipPathOf(copy));
    });
}

} // namespace

Archive::Archive(QString folder, Clock clock)
    : m_folder(std::move(folder))
    , m_clock(std::move(clock))
{}

QList<ArchivedCopy> Archive::copies(const QString& journal) const
{
    const QString wanted = ArchiveName::forCopy(journal, {}, {}).journal;
    QList<ArchivedCopy> found;
    for (const QFileInfo& file : QDir(m_folder).entryInfoList(QDir::Files)) {
        const auto name = ArchiveName::parse(file.fileName());
        if (name && (journal.isEmpty() || name->journal == wanted))
            found.append({file.filePath(), *name, file.size()});
    }
    dropPlainTwins(found);
    std::ranges::stable_sort(found, [](const ArchivedCopy& a, const ArchivedCopy& b) {
        return a.name.made > b.name.made;
    });
    return found;
}

QList<ArchivedCopy> Archive::copiesOfPlace(const QString& journal) const
{
    QList<ArchivedCopy> found = copies(journal);
    found.removeIf([place = archivePlace(journal)](const ArchivedCopy& copy) {
        return copy.name.place != place;
    });
    return found;
}

// Two copies in one second would have one name: the later one gets the next free second.
ArchiveName Archive::freeName(const QString& journal, const QString& reason) const
{
    ArchiveName name = ArchiveName::forCopy(journal, reason, m_clock());
    const QList<ArchivedCopy> others = copiesOfPlace(journal);
    const auto second = [](const QDateTime& time) { return time.toSecsSinceEpoch(); };
    while (std::ranges::any_of(others, [&](const ArchivedCopy& other) {
        return second(other.name.made) == second(name.made);
    }))
        name.made = name.made.addSecs(1);
    return name;
}

std::optional<ArchivedCopy> Archive::add(const QString& journal, const QString& file,
                                         const QString& reason, const Progress& progress) const
{
    QDir().mkpath(m_folder);
    const ArchiveName name = freeName(journal, reason);
    const QString path = QDir(m_folder).filePath(name.fileName());
    if (!writeZip(file, QFileInfo(journal).fileName(), path, progress))
        return std::nullopt;
    return copyAt(path, name);
}

ArchivedCopy Archive::addPlain(const QString& journal, const QString& file,
                               const QString& reason) const
{
    QDir().mkpath(m_folder);
    ArchiveName name = freeName(journal, reason);
    name.compressed = false;
    const QString path = QDir(m_folder).filePath(name.fileName());
    copyQuickly(file, path);
    return copyAt(path, name);
}

void Archive::compress(const ArchivedCopy& plain)
{
    writeZip(plain.path, plain.name.journal + u".mdb"_s, zipPathOf(plain));
    QFile::remove(plain.path);
}

void Archive::extract(const ArchivedCopy& copy, const QString& target)
{
    if (const QString zip = zipPathOf(copy); QFileInfo::exists(zip)) {
        extractZip(zip, target); // it may have been compressed since it was listed
        return;
    }
    if (!QFileInfo::exists(copy.path))
        throw jet::Error(jet::Fault::NotFound,
                         data::toUtf8(u"копия "_s + quotedPath(copy.path) + u" не найдена"_s));
    copyVerified(copy.path, target);
}

void Archive::remove(const ArchivedCopy& copy)
{
    const bool plain = QFile::remove(copy.path);
    const bool zip = QFile::remove(zipPathOf(copy));
    if (!plain && !zip && QFileInfo::exists(copy.path))
        throw jet::Error(jet::Fault::Io,
                         data::toUtf8(u"не удалось удалить файл "_s + quotedPath(copy.path)));
}

void Archive::prune(const QString& journal) const
{
    QList<ArchivedCopy> automatic = copiesOfPlace(journal);
    automatic.removeIf([](const ArchivedCopy& copy) { return !copy.name.automatic(); });
    QList<QDateTime> made;
    for (const ArchivedCopy& copy : automatic)
        made.append(copy.name.made);
    for (const qsizetype gone : outlived(made, m_clock().date()))
        remove(automatic[gone]);
}

} // namespace shell
