#include "shell/files/zipfile.h"

#include "data/convert.h"
#include "jet/error.h"
#include "jet/storage/file.h"
#include "jet/storage/header.h"
#include "shell/files/copyfile.h"
#include "shell/files/filetexts.h"

#include <QFile>
#include <QFileInfo>

#include <zip.h>

#include <cerrno>
#include <memory>
#include <vector>

using namespace Qt::StringLiterals;

namespace shell {

namespace {

constexpr zip_uint64_t kMaxBytes = zip_uint64_t{1} << 31; // no database is larger
constexpr std::size_t kChunkBytes = std::size_t{1} << 20;
constexpr qint64 kPageBytes = 4096;  // the first page names the key
constexpr zip_uint32_t kFastest = 1; // a database shrinks to a tenth at any level

struct Discard
{
    void operator()(zip_t* zip) const { zip_discard(zip); }
};
struct CloseFile
{
    void operator()(zip_file_t* file) const { zip_fclose(file); }
};
using Zip = std::unique_ptr<zip_t, Discard>;
using ZipFile = std::unique_ptr<zip_file_t, CloseFile>;

[[noreturn]] void failWriting(const QString& path, const zip_error_t* error)
{
    const bool full = error && zip_error_system_type(error) == ZIP_ET_SYS
                      && zip_error_code_system(error) == ENOSPC;
    const QString clause = u"не удалось записать архив "_s + quotedPath(path)
                           + (full ? u": на диске нет места"_s : QString());
    throw jet::Error(full ? jet::Fault::DiskFull : jet::Fault::Io, data::toUtf8(clause));
}

[[noreturn]] void failReading(const QString& path)
{
    throw jet::Error(jet::Fault::Damaged,
                     data::toUtf8(u"архив "_s + quotedPath(path) + u" поврежден"_s));
}

bool isEncoded(const QString& database)
{
    QFile file(database);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    const QByteArray page = file.read(kPageBytes);
    try {
        const auto* bytes = reinterpret_cast<const std::uint8_t*>(page.constData());
        return jet::decodeHeader({bytes, static_cast<std::size_t>(page.size())}).databaseKey != 0;
    } catch (const jet::Error&) {
        return false; // no such database; it is kept all the same
    }
}

struct Watch
{
    const Progress& progress;
    bool cancelled = false;
};

void tell(zip_t*, double part, void* watch)
{
    auto& seen = *static_cast<Watch*>(watch);
    if (seen.progress && !seen.progress(static_cast<int>(part * 70)))
        seen.cancelled = true;
}

int askCancelled(zip_t*, void* watch)
{
    return static_cast<Watch*>(watch)->cancelled ? 1 : 0;
}

Zip openForReading(const QString& path)
{
    int code = 0;
    Zip zip(zip_open(QFile::encodeName(path).constData(), ZIP_RDONLY | ZIP_CHECKCONS, &code));
    if (!zip || zip_get_num_entries(zip.get(), 0) != 1)
        failReading(path);
    return zip;
}

zip_uint64_t sizeIn(zip_t* zip, const QString& path)
{
    zip_stat_t entry;
    if (zip_stat_index(zip, 0, 0, &entry) != 0 || !(entry.valid & ZIP_STAT_SIZE)
        || entry.size > kMaxBytes)
        failReading(path);
    return entry.size;
}

// Calls `take` with each piece of the file in the archive. libzip compares the sum at the end.
template <class Take>
void readAll(const QString& path, Take take)
{
    const Zip zip = openForReading(path);
    const zip_uint64_t size = sizeIn(zip.get(), path);
    const ZipFile file(zip_fopen_index(zip.get(), 0, 0));
    if (!file)
        failReading(path);
    std::vector<char> chunk(kChunkBytes);
    zip_uint64_t done = 0;
    for (;;) {
        const zip_int64_t got = zip_fread(file.get(), chunk.data(), chunk.size());
        if (got < 0 || done + static_cast<zip_uint64_t>(got) > size)
            failReading(path);
        if (got == 0)
            break;
        take(done, QByteArrayView(chunk.data(), got));
        done += static_cast<zip_uint64_t>(got);
    }
    if (done != size)
        failReading(path);
}

// False when cancelled.
bool compress(const QString& source, const QString& name, const QString& zipPath,
              const Progress& progress)
{
    int code = 0;
    Zip zip(zip_open(QFile::encodeName(zipPath).constData(), ZIP_CREATE | ZIP_EXCL, &code));
    if (!zip)
        failWriting(zipPath, nullptr);
    zip_source_t* input = zip_source_file(zip.get(), QFile::encodeName(source).constData(), 0, -1);
    const zip_int64_t entry =
        input ? zip_file_add(zip.get(), name.toUtf8().constData(), input, ZIP_FL_ENC_UTF_8) : -1;
    if (entry < 0) {
        zip_source_free(input);
        failWriting(zipPath, zip_get_error(zip.get()));
    }
    const zip_int32_t method = isEncoded(source) ? ZIP_CM_STORE : ZIP_CM_DEFLATE;
    zip_set_file_compression(zip.get(), static_cast<zip_uint64_t>(entry), method, kFastest);
    Watch watch{progress};
    zip_register_progress_callback_with_state(zip.get(), 0.01, tell, nullptr, &watch);
    zip_register_cancel_callback_with_state(zip.get(), askCancelled, nullptr, &watch);
    if (zip_close(zip.get()) != 0) {
        if (watch.cancelled)
            return false;
        failWriting(zipPath, zip_get_error(zip.get()));
    }
    static_cast<void>(zip.release()); // closing has freed it
    return true;
}

void makeDurable(const QString& path)
{
    jet::FileSystem::system().open(data::toPath(path), jet::FileMode::ReadWrite)->sync();
}

void compare(const QString& zip, const QString& source)
{
    QFile file(source);
    bool same = file.open(QIODevice::ReadOnly);
    readAll(zip, [&](zip_uint64_t, QByteArrayView piece) {
        same = same && file.read(piece.size()) == piece;
    });
    if (!same || !file.atEnd())
        throw jet::Error(jet::Fault::Io,
                         data::toUtf8(u"архив "_s + quotedPath(zip) + u" не совпал с файлом"_s));
}

} // namespace

bool writeZip(const QString& source, const QString& entry, const QString& zip,
              const Progress& progress)
{
    requireRoom(QFileInfo(zip).absolutePath(), QFileInfo(source).size());
    const QString part = partName(zip);
    QFile::remove(part);
    try {
        if (!compress(source, entry, part, progress)) {
            QFile::remove(part);
            return false;
        }
        QFile::setPermissions(part, QFile::ReadOwner | QFile::WriteOwner);
        makeDurable(part);
        compare(part, source);
        moveInPlace(part, zip);
    } catch (...) {
        QFile::remove(part);
        throw;
    }
    return true;
}

void extractZip(const QString& zip, const QString& target)
{
    requireRoom(QFileInfo(target).absolutePath(), unpackedBytes(zip));
    const auto path = data::toPath(target);
    const auto file = jet::FileSystem::system().open(path, jet::FileMode::Create);
    try {
        readAll(zip, [&](zip_uint64_t at, QByteArrayView piece) {
            const auto* bytes = reinterpret_cast<const std::uint8_t*>(piece.data());
            file->write(at, {bytes, static_cast<std::size_t>(piece.size())});
        });
        file->sync();
    } catch (...) {
        QFile::remove(target);
        throw;
    }
}

qint64 unpackedBytes(const QString& zip)
{
    const Zip opened = openForReading(zip);
    return static_cast<qint64>(sizeIn(opened.get(), zip));
}

} // namespace shell
