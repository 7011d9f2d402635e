#include "shell/forms/programfolders.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <stdexcept>

using namespace Qt::StringLiterals;

namespace {

void writeFile(const QString& path)
{
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
}

} // namespace

TEST(ProgramFolders, StandBelowTheProgramForTheUserAlone)
{
    const QTemporaryDir base;
    const auto folders = shell::makeProgramFolders(base.path(), base.filePath(u"other"_s));
    EXPECT_EQ(folders.archive, base.filePath(u"Архив"_s));
    EXPECT_EQ(folders.documents, base.filePath(u"Документы"_s));
    const auto others = QFile::ReadGroup | QFile::WriteGroup | QFile::ReadOther | QFile::WriteOther;
    EXPECT_FALSE(QFile::permissions(folders.archive) & others);
    EXPECT_TRUE(QDir(folders.documents).exists());
    EXPECT_FALSE(QDir(base.filePath(u"other"_s)).exists());
}

TEST(ProgramFolders, AreTakenAsTheyAre)
{
    const QTemporaryDir base;
    shell::makeProgramFolders(base.path(), {});
    writeFile(base.filePath(u"Архив/копия.mdb"_s));
    shell::makeProgramFolders(base.path(), {});
    EXPECT_TRUE(QFile::exists(base.filePath(u"Архив/копия.mdb"_s)));
}

TEST(ProgramFolders, MoveToTheUserWhereTheProgramFolderRefusesThem)
{
    const QTemporaryDir base;
    const QString user = base.filePath(u"user"_s);
    EXPECT_EQ(shell::makeProgramFolders(base.filePath(u"missing"_s), user).archive,
              user + u"/Архив"_s);
    writeFile(base.filePath(u"Документы"_s)); // a file stands where the folder should be
    EXPECT_EQ(shell::makeProgramFolders(base.path(), user).documents, user + u"/Документы"_s);
}

TEST(ProgramFolders, SayWhenNeitherPlaceCanBeWritten)
{
    const QTemporaryDir base;
    writeFile(base.filePath(u"file"_s));
    EXPECT_THROW(
        shell::makeProgramFolders(base.filePath(u"missing"_s), base.filePath(u"file/user"_s)),
        std::runtime_error);
}
