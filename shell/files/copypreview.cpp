#include "shell/files/copypreview.h"

#include "data/convert.h"
#include "jet/database.h"
#include "jet/error.h"

#include <QFileInfo>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;

namespace shell {

CopyPreview previewOf(const QString& journal)
{
    const auto database = jet::Database::open(data::toPath(journal), jet::OpenMode::ReadOnly);
    if (!database->hasTable("RASP"))
        throw jet::Error(jet::Fault::NotADatabase, "это не база данных журнала");
    const auto rows = [&](const char* table) {
        return database->hasTable(table) ? database->rowCount(table) : 0;
    };
    return {rows("SPSTUD"), rows("POS"), rows("USP"), QFileInfo(journal).size()};
}

CopyPreview previewOf(const ArchivedCopy& copy)
{
    const QTemporaryDir folder;
    if (!folder.isValid())
        throw jet::Error(jet::Fault::Io, "не удалось создать временную папку");
    const QString file = folder.filePath(u"copy.mdb"_s);
    Archive::extract(copy, file);
    return previewOf(file);
}

} // namespace shell
