#include "import/tables/zipparts.h"

#include "jet/error.h"

#include <QFile>

#include <zip.h>

namespace imports {
namespace {

constexpr qint64 kMostUnpacked = qint64{256} << 20; // bytes; 200,000 rows take a fifth of it

struct CloseFile
{
    void operator()(zip_file_t* file) const { zip_fclose(file); }
};

[[noreturn]] void fail()
{
    throw jet::Error(jet::Fault::Damaged, "книга .xlsx повреждена");
}

} // namespace

void ZipParts::Close::operator()(::zip* archive) const
{
    zip_discard(archive);
}

ZipParts::ZipParts(const QString& path)
{
    int code = 0;
    m_zip.reset(zip_open(QFile::encodeName(path).constData(), ZIP_RDONLY, &code));
    if (!m_zip)
        fail();
}

ZipParts::~ZipParts() = default;

std::optional<QByteArray> ZipParts::read(const QString& name)
{
    const zip_int64_t entry =
        zip_name_locate(m_zip.get(), name.toUtf8().constData(), ZIP_FL_ENC_GUESS | ZIP_FL_NOCASE);
    if (entry < 0)
        return {};
    const auto index = static_cast<zip_uint64_t>(entry);
    zip_stat_t stat;
    if (zip_stat_index(m_zip.get(), index, 0, &stat) != 0 || !(stat.valid & ZIP_STAT_SIZE))
        fail();
    if (stat.size > static_cast<zip_uint64_t>(kMostUnpacked - m_unpacked))
        throw jet::Error(jet::Fault::Limit, "книга .xlsx слишком большая");
    m_unpacked += static_cast<qint64>(stat.size);
    const std::unique_ptr<zip_file_t, CloseFile> file(zip_fopen_index(m_zip.get(), index, 0));
    if (!file)
        fail();
    // Not more than the size that the archive names: it is given up when it lies.
    QByteArray bytes(static_cast<qsizetype>(stat.size), '\0');
    if (zip_fread(file.get(), bytes.data(), stat.size) != static_cast<zip_int64_t>(stat.size))
        fail();
    char more = 0;
    if (zip_fread(file.get(), &more, 1) != 0) // also compares the checksum
        fail();
    return bytes;
}

} // namespace imports
