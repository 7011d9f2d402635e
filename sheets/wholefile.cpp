#include "sheets/wholefile.h"

#include "data/convert.h"
#include "jet/error.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QUuid>

#include <filesystem>

using namespace Qt::StringLiterals;

namespace sheets {
namespace {

// Beside the file, so that it can take its name in one step; removed unless it did.
class DraftFile
{
public:
    explicit DraftFile(const QFileInfo& target)
        : m_target(target.absoluteFilePath())
        , m_path(target.absoluteDir().filePath(
              u".%1.tmp"_s.arg(QUuid::createUuid().toString(QUuid::Id128))))
    {}
    ~DraftFile() { QFile::remove(m_path); }
    DraftFile(const DraftFile&) = delete;
    DraftFile& operator=(const DraftFile&) = delete;

    const QString& path() const { return m_path; }
    void takeName() const
    {
        std::error_code failure;
        std::filesystem::rename(data::toPath(m_path), data::toPath(m_target), failure);
        if (failure)
            throw jet::Error(jet::Fault::Io, "файл " + data::toUtf8(m_target)
                                                 + " нельзя заменить: возможно, он открыт в другой"
                                                   " программе");
    }

private:
    QString m_target;
    QString m_path;
};

} // namespace

void writeWhole(const QString& path, Existing existing,
                const std::function<void(const QString& draft)>& write)
{
    const QFileInfo target(path);
    if (existing == Existing::Keep && target.exists())
        throw jet::Error(jet::Fault::Exists, "файл " + data::toUtf8(path) + " уже есть");
    if (!target.absoluteDir().exists())
        throw jet::Error(jet::Fault::NotFound, "нет папки " + data::toUtf8(target.absolutePath()));
    const DraftFile draft(target);
    write(draft.path());
    draft.takeName();
}

} // namespace sheets
