#include "shell/files/archive.h"

#include "jet/error.h"
#include "shell/files/copypreview.h"
#include "shell/files/zipfile.h"
#include "tests/shell_files/tempfiles.h"
#include "tests/support/smalljournal.h"

#include <QFileInfo>

using namespace Qt::StringLiterals;
using shell::Archive;
using shell::ArchiveName;

namespace {

class ArchiveFolder : public TempFiles
{
protected:
    QDateTime now{QDate(2026, 11, 21), QTime(14, 5, 33)};
    Archive archive{pathOf(u"Архив"_s), [this] { return now; }};
};

} // namespace

TEST(ArchiveNames, SayAllThatIsKnownOfACopy)
{
    const QDateTime made(QDate(2026, 1, 2), QTime(3, 4, 5));
    struct Row
    {
        QString path;
        QString reason;
        QString start;
    };
    const Row rows[] = {
        {u"/a/Журнал.mdb"_s, u"архив"_s, u"2026-01-02 03-04-05 Журнал (архив) "_s},
        {u"/a/х (2).mdb"_s, u"перед импортом"_s, u"2026-01-02 03-04-05 х 2 (перед импортом) "_s},
        {u"/a/б.в.mdb"_s, u"a/b:c*?<>|(d)"_s, u"2026-01-02 03-04-05 б.в (abcd) "_s},
    };
    for (const Row& row : rows) {
        const QString name = ArchiveName::forCopy(row.path, row.reason, made).fileName();
        EXPECT_TRUE(name.startsWith(row.start)) << name.toStdString();
        const auto back = ArchiveName::parse(name);
        ASSERT_TRUE(back) << name.toStdString();
        EXPECT_EQ(back->made, made);
        EXPECT_EQ(back->fileName(), name);
    }
    EXPECT_NE(ArchiveName::forCopy(u"/a/x.mdb"_s, {}, made).fileName(),
              ArchiveName::forCopy(u"/b/x.mdb"_s, {}, made).fileName());
}

TEST(ArchiveNames, LeaveOtherFilesAlone)
{
    for (const QString& name :
         {u"Журнал.mdb"_s, u"2026-01-02 Журнал.zip"_s, u"2026-13-02 03-04-05 Ж (архив) 0a0a.zip"_s,
          u"2026-01-02 03-04-05 Ж (архив) 0a0a.zip.part"_s, u"2026-01-02 03-04-05 Ж 0a0a.zip"_s})
        EXPECT_FALSE(ArchiveName::parse(name)) << name.toStdString();
}

TEST_F(ArchiveFolder, GivesBackEveryByte)
{
    const QByteArray bytes = QByteArray("Журнал ").repeated(300'000);
    const QString file = write(u"ж.mdb"_s, bytes);
    const auto copy = archive.add(file, file, ArchiveName::kManual);
    ASSERT_TRUE(copy);
    EXPECT_LT(copy->bytes, bytes.size() / 10);
    const QString back = pathOf(u"назад.mdb"_s);
    Archive::extract(*copy, back);
    EXPECT_EQ(read(back), bytes);
    EXPECT_THROW(Archive::extract(*copy, back), jet::Error); // never over a file
    EXPECT_EQ(read(back), bytes);
}

TEST_F(ArchiveFolder, ListsCopiesLatestFirstAndByJournal)
{
    const QString a = write(u"a.mdb"_s, "a");
    const QString b = write(u"b.mdb"_s, "b");
    archive.add(a, a, u"первая"_s);
    archive.add(a, a, u"в ту же секунду"_s);
    now = now.addDays(1);
    archive.addPlain(a, a, u"третья"_s);
    archive.add(b, b, u"чужая"_s);
    QStringList reasons;
    for (const auto& copy : archive.copies(u"/где-то/a.mdb"_s))
        reasons << copy.name.reason;
    EXPECT_EQ(reasons, (QStringList{u"третья"_s, u"в ту же секунду"_s, u"первая"_s}));
    EXPECT_EQ(archive.copies().size(), 4);
    EXPECT_TRUE(archive.copiesOfPlace(u"/где-то/a.mdb"_s).isEmpty());
    Archive::remove(archive.copies(a).first());
    EXPECT_EQ(archive.copies(a).size(), 2);
}

TEST_F(ArchiveFolder, CompressesAPlainCopyUnderTheSameName)
{
    const QString file = write(u"ж.mdb"_s, QByteArray(100'000, 'x'));
    const auto plain = archive.addPlain(file, file, u"перед изменениями"_s);
    Archive::compress(plain);
    const auto copies = archive.copies(file);
    ASSERT_EQ(copies.size(), 1);
    EXPECT_TRUE(copies[0].name.compressed);
    EXPECT_EQ(copies[0].name.made, plain.name.made);
    Archive::extract(plain, pathOf(u"b"_s)); // as one listed before it was compressed
    EXPECT_EQ(read(pathOf(u"b"_s)), QByteArray(100'000, 'x'));
}

TEST_F(ArchiveFolder, EveryDamagedByteIsNoticed)
{
    const QString file = write(u"ж.mdb"_s, QByteArray("0123456789").repeated(50));
    const auto copy = archive.add(file, file, ArchiveName::kManual);
    const QByteArray whole = read(copy->path);
    const QByteArray good = read(file);
    for (qsizetype at = 0; at < whole.size(); ++at) {
        QByteArray damaged = whole;
        damaged[at] = static_cast<char>(damaged[at] ^ 0x55);
        QFile::remove(pathOf(u"b"_s));
        QFile zip(copy->path);
        ASSERT_TRUE(zip.open(QIODevice::WriteOnly));
        zip.write(damaged);
        zip.close();
        try {
            Archive::extract(*copy, pathOf(u"b"_s));
            EXPECT_EQ(read(pathOf(u"b"_s)), good) << at; // a byte that says nothing of the content
        } catch (const jet::Error&) {
            EXPECT_FALSE(QFileInfo::exists(pathOf(u"b"_s))) << at;
        }
    }
}

TEST_F(ArchiveFolder, EveryTruncationIsNoticed)
{
    const QString file = write(u"ж.mdb"_s, "0123456789");
    const auto copy = archive.add(file, file, ArchiveName::kManual);
    const QByteArray whole = read(copy->path);
    for (qsizetype size = 0; size < whole.size(); ++size) {
        QFile zip(copy->path);
        ASSERT_TRUE(zip.open(QIODevice::WriteOnly));
        zip.write(whole.first(size));
        zip.close();
        EXPECT_THROW(Archive::extract(*copy, pathOf(u"b"_s)), jet::Error) << size;
    }
}

TEST_F(ArchiveFolder, CancelledOrFailedLeavesNothing)
{
    const QString file = write(u"ж.mdb"_s, QByteArray(3'000'000, 'x'));
    EXPECT_FALSE(archive.add(file, file, ArchiveName::kManual, [](int) { return false; }));
    EXPECT_TRUE(QDir(archive.folder()).isEmpty());
    if (!FailingWrites::possible())
        return;
    const FailingWrites full;
    EXPECT_THROW(archive.add(file, file, ArchiveName::kManual), jet::Error);
    EXPECT_THROW(archive.addPlain(file, file, u"перед"_s), jet::Error);
    EXPECT_TRUE(QDir(archive.folder()).isEmpty());
}

TEST_F(ArchiveFolder, PreviewCountsWhatACopyHolds)
{
    SmallJournal journal;
    const int group = journal.group("ИС-21");
    const int student = journal.student(group, "Иванов", "Иван", "Иванович");
    journal.student(group, "Петров", "Петр", "Петрович");
    journal.absence(student, journal.discipline("Физика"), QDate(2022, 11, 5), 1, 0, 2);
    const auto copy = archive.add(journal.path(), journal.path(), ArchiveName::kManual);
    const shell::CopyPreview holds = shell::previewOf(*copy);
    EXPECT_EQ(holds.students, 2);
    EXPECT_EQ(holds.absences, 1);
    EXPECT_EQ(holds.grades, 0);
    const QString other = write(u"нежурнал.mdb"_s, "not a database");
    EXPECT_THROW(shell::previewOf(*archive.add(other, other, ArchiveName::kManual)), jet::Error);
}
