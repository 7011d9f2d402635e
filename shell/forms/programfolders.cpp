#include "shell/forms/programfolders.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <optional>
#include <stdexcept>

using namespace Qt::StringLiterals;

namespace shell {

namespace {

bool makeFolder(const QString& path)
{
    if (QFileInfo(path).isDir()) {
        return QFileInfo(path).isWritable();
    }
    return QDir().mkpath(path)
           && QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
}

std::optional<ProgramFolders> foldersBelow(const QString& base)
{
    const ProgramFolders folders{QDir(base).filePath(u"Архив"_s),
                                 QDir(base).filePath(u"Документы"_s)};
    if (makeFolder(folders.archive) && makeFolder(folders.documents)) {
        return folders;
    }
    return std::nullopt;
}

} // namespace

ProgramFolders makeProgramFolders(const QString& programFolder, const QString& userFolder)
{
    if (QFileInfo(programFolder).isWritable()) {
        if (const auto folders = foldersBelow(programFolder)) {
            return *folders;
        }
    }
    if (const auto folders = foldersBelow(userFolder)) {
        return *folders;
    }
    throw std::runtime_error(u"папки «Архив» и «Документы» нельзя создать в %1"_s
                                 .arg(QDir::toNativeSeparators(userFolder))
                                 .toStdString());
}

} // namespace shell
