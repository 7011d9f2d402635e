#include "sheets/writetable.h"

#include "data/convert.h"
#include "jet/error.h"
#include "sheets/formats.h"

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

void writeTable(const QString& path, const Table& table, Existing existing)
{
    const QFileInfo target(path);
    if (existing == Existing::Keep && target.exists())
        throw jet::Error(jet::Fault::Exists, "файл " + data::toUtf8(path) + " уже есть");
    if (!target.absoluteDir().exists())
        throw jet::Error(jet::Fault::NotFound, "нет папки " + data::toUtf8(target.absolutePath()));
    const DraftFile draft(target);
    if (target.suffix().compare(u"csv", Qt::CaseInsensitive) == 0)
        writeCsv(draft.path(), table);
    else
        writeXlsx(draft.path(), table);
    draft.takeName();
}

QString fileName(const QString& title)
{
    constexpr qsizetype kLongest = 100; // characters; the rest of the name and path need room
    QString name;
    for (const QChar letter : title.simplified())
        name += u"\\/:*?\"<>|"_s.contains(letter) ? QChar(u'-') : letter;
    while (name.startsWith(u'.'))
        name.remove(0, 1);
    return (name.isEmpty() ? u"Таблица"_s : name.left(kLongest).trimmed()) + u".xlsx"_s;
}

} // namespace sheets
