#include "shell/files/copyfile.h"

#include "data/convert.h"
#include "jet/error.h"
#include "jet/storage/file.h"
#include "shell/files/filetexts.h"

#include <QFile>
#include <QFileInfo>
#include <QStorageInfo>

#ifdef Q_OS_LINUX
#include <fcntl.h>
#endif

using namespace Qt::StringLiterals;

namespace shell {

namespace {

constexpr qint64 kChunkBytes = qint64{1} << 20;

[[noreturn]] void fail(jet::Fault fault, const QString& clause)
{
    throw jet::Error(fault, data::toUtf8(clause));
}

void openForReading(QFile& file)
{
    if (!file.open(QIODevice::ReadOnly))
        fail(jet::Fault::Io, u"не удалось прочитать файл "_s + quotedPath(file.fileName()));
}

// Reads up to a chunk; empty at the end.
QByteArray nextChunk(QFile& file)
{
    QByteArray chunk = file.read(kChunkBytes);
    if (chunk.isEmpty() && file.error() != QFileDevice::NoError)
        fail(jet::Fault::Io, u"не удалось прочитать файл "_s + quotedPath(file.fileName()));
    return chunk;
}

// What was read back from memory would prove nothing about the medium.
void readFromMedium([[maybe_unused]] const QFile& file)
{
#ifdef Q_OS_LINUX
    ::posix_fadvise(file.handle(), 0, 0, POSIX_FADV_DONTNEED);
#endif
}

void removeQuietly(const QString& path)
{
    QFile::remove(path);
}

// Of the whole work, copying is the first half and comparing the second.
Progress halfOf(const Progress& progress, int from)
{
    if (!progress)
        return {};
    return [progress, from](int percent) { return progress(from + percent / 2); };
}

bool report(const Progress& progress, qint64 done, qint64 all)
{
    return !progress || progress(static_cast<int>(all > 0 ? 100 * done / all : 100));
}

bool copyBytes(QFile& from, jet::File& to, const Progress& progress)
{
    const qint64 size = from.size();
    qint64 done = 0;
    for (QByteArray chunk = nextChunk(from); !chunk.isEmpty(); chunk = nextChunk(from)) {
        const auto* bytes = reinterpret_cast<const std::uint8_t*>(chunk.constData());
        to.write(static_cast<std::uint64_t>(done), {bytes, static_cast<std::size_t>(chunk.size())});
        done += chunk.size();
        if (!report(progress, done, size))
            return false;
    }
    to.sync();
    return true;
}

// Gives false when cancelled.
bool copyToPart(const QString& from, const QString& part, const Progress& progress)
{
    QFile source(from);
    openForReading(source);
    {
        const auto target =
            jet::FileSystem::system().open(data::toPath(part), jet::FileMode::Create);
        if (!copyBytes(source, *target, halfOf(progress, 0)))
            return false;
    }
    bool cancelled = false;
    const bool same = sameBytes(from, part, [&](int percent) {
        cancelled = progress && !progress(50 + percent / 2);
        return !cancelled;
    });
    if (!same && !cancelled)
        fail(jet::Fault::Io, u"копия "_s + quotedPath(part)
                                 + u" не совпала с файлом: диск записывает с ошибками"_s);
    return !cancelled;
}

} // namespace

QString partName(const QString& path)
{
    return path + u".part"_s;
}

void requireRoom(const QString& folder, qint64 bytes)
{
    constexpr qint64 kSpareBytes = qint64{1} << 20; // folders and tables of the disk grow, too
    const QStorageInfo disk(folder);
    if (!disk.isValid() || disk.bytesAvailable() < 0)
        return; // a disk that does not tell; writing will
    if (disk.bytesAvailable() < bytes + kSpareBytes)
        fail(jet::Fault::DiskFull,
             u"на диске нет места: нужно %1, свободно %2"_s.arg(sizeText(bytes + kSpareBytes),
                                                                sizeText(disk.bytesAvailable())));
}

void moveInPlace(const QString& part, const QString& to)
{
    jet::FileSystem& files = jet::FileSystem::system();
    if (files.exists(data::toPath(to)))
        files.replace(data::toPath(part), data::toPath(to), [] {});
    else
        files.rename(data::toPath(part), data::toPath(to));
}

bool sameFile(const QString& left, const QString& right)
{
    const QString real = QFileInfo(left).canonicalFilePath();
    return !real.isEmpty() && real == QFileInfo(right).canonicalFilePath();
}

bool sameBytes(const QString& left, const QString& right, const Progress& progress)
{
    QFile first(left);
    QFile second(right);
    openForReading(first);
    openForReading(second);
    if (first.size() != second.size())
        return false;
    readFromMedium(second);
    for (qint64 done = 0; done < first.size();) {
        const QByteArray chunk = nextChunk(first);
        if (chunk.isEmpty() || chunk != second.read(chunk.size()))
            return false;
        done += chunk.size();
        if (!report(progress, done, first.size()))
            return false;
    }
    return true;
}

bool copyVerified(const QString& from, const QString& to, const Progress& progress)
{
    requireRoom(QFileInfo(to).absolutePath(), QFileInfo(from).size());
    const QString part = partName(to);
    removeQuietly(part);
    try {
        const bool whole = copyToPart(from, part, progress);
        if (whole)
            moveInPlace(part, to);
        else
            removeQuietly(part);
        return whole;
    } catch (...) {
        removeQuietly(part);
        throw;
    }
}

void copyQuickly(const QString& from, const QString& to)
{
    requireRoom(QFileInfo(to).absolutePath(), QFileInfo(from).size());
    const QString part = partName(to);
    removeQuietly(part);
    std::error_code failed;
    std::filesystem::copy_file(data::toPath(from), data::toPath(part), failed);
    if (failed) {
        removeQuietly(part);
        if (failed == std::errc::no_space_on_device)
            fail(jet::Fault::DiskFull, u"на диске нет места"_s);
        fail(jet::Fault::Io, u"не удалось записать файл "_s + quotedPath(to));
    }
    QFile::setPermissions(part, QFile::ReadOwner | QFile::WriteOwner);
    moveInPlace(part, to);
}

} // namespace shell
