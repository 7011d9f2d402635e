#include "shell/files/copyfile.h"

#include "jet/error.h"
#include "tests/shell_files/tempfiles.h"
#include "tests/support/smalljournal.h"

using namespace Qt::StringLiterals;

namespace {

using CopyFile = TempFiles;

QByteArray pattern(qsizetype bytes)
{
    QByteArray made(bytes, Qt::Uninitialized);
    for (qsizetype i = 0; i < bytes; ++i)
        made[i] = static_cast<char>(i * 7 + i / 4096);
    return made;
}

} // namespace

TEST_F(CopyFile, CopiesEveryByteOfAnySize)
{
    for (const qsizetype bytes : {0, 1, 1 << 20, (1 << 20) + 1, 3'000'000}) {
        const QString from = write(u"a.mdb"_s, pattern(bytes));
        EXPECT_TRUE(shell::copyVerified(from, pathOf(u"b.mdb"_s))) << bytes;
        EXPECT_EQ(read(pathOf(u"b.mdb"_s)), pattern(bytes)) << bytes;
        EXPECT_EQ(names(), (QStringList{u"a.mdb"_s, u"b.mdb"_s}));
    }
}

TEST_F(CopyFile, CancellingAtAnyPointLeavesTheFormerFile)
{
    const QString from = write(u"a.mdb"_s, pattern(4'000'000));
    const QString to = write(u"b.mdb"_s, "former");
    for (const int stop : {0, 30, 60, 99}) {
        const bool whole =
            shell::copyVerified(from, to, [&](int percent) { return percent < stop; });
        EXPECT_FALSE(whole) << stop;
        EXPECT_EQ(read(to), "former") << stop;
        EXPECT_EQ(names(), (QStringList{u"a.mdb"_s, u"b.mdb"_s})) << stop;
    }
}

TEST_F(CopyFile, AFullDiskLeavesTheFormerFile)
{
    if (!FailingWrites::possible())
        GTEST_SKIP();
    const QString from = write(u"a.mdb"_s, pattern(100'000));
    const QString to = write(u"b.mdb"_s, "former");
    {
        const FailingWrites full;
        EXPECT_THROW(shell::copyVerified(from, to), jet::Error);
        EXPECT_THROW(shell::copyQuickly(from, to), jet::Error);
    }
    EXPECT_EQ(read(to), "former");
    EXPECT_EQ(names(), (QStringList{u"a.mdb"_s, u"b.mdb"_s}));
}

TEST_F(CopyFile, AsksForRoomBeforeItBegins)
{
    try {
        shell::requireRoom(folder.path(), qint64{1} << 60);
        FAIL() << "no disk is so large";
    } catch (const jet::Error& error) {
        EXPECT_EQ(error.fault(), jet::Fault::DiskFull);
    }
    EXPECT_NO_THROW(shell::requireRoom(folder.path(), 1));
}

TEST_F(CopyFile, FindsTheFirstAndTheLastByteDifferent)
{
    const QByteArray bytes = pattern(2'500'000);
    const QString from = write(u"a"_s, bytes);
    EXPECT_TRUE(shell::sameBytes(from, write(u"b"_s, bytes)));
    for (const qsizetype at : {qsizetype{0}, bytes.size() - 1}) {
        QByteArray other = bytes;
        other[at] = static_cast<char>(other[at] ^ 1);
        EXPECT_FALSE(shell::sameBytes(from, write(u"b"_s, other))) << at;
    }
    EXPECT_FALSE(shell::sameBytes(from, write(u"b"_s, bytes.chopped(1))));
}

TEST_F(CopyFile, MissingSourceAndFolderAreErrors)
{
    EXPECT_THROW(shell::copyVerified(pathOf(u"none"_s), pathOf(u"b"_s)), jet::Error);
    const QString from = write(u"a"_s, "x");
    EXPECT_THROW(shell::copyVerified(from, pathOf(u"no/where/b"_s)), jet::Error);
    EXPECT_EQ(names(), QStringList{u"a"_s});
}
