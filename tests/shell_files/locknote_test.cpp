#include "shell/files/locknote.h"

#include "tests/shell_files/tempfiles.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QProcess>
#include <QSysInfo>

using namespace Qt::StringLiterals;

namespace {

using LockNotes = TempFiles;

constexpr qint64 kNoProcess = 0x3ffffff0; // above any process number

QByteArray note(const QString& host, qint64 process)
{
    return u"%1\nПетрова\n%2\n2026-11-21T11:05:00Z\n"_s.arg(host, QString::number(process))
        .toUtf8();
}

} // namespace

TEST_F(LockNotes, NameTheHolderWhileItLives)
{
    const QString journal = write(u"ж.mdb"_s, "x");
    {
        const shell::LockNote held(journal);
        const auto holder = shell::lockHolder(journal);
        ASSERT_TRUE(holder);
        EXPECT_EQ(holder->host, QSysInfo::machineHostName());
        EXPECT_EQ(holder->process, QCoreApplication::applicationPid());
        EXPECT_LE(holder->since.secsTo(QDateTime::currentDateTime()), 60);
        EXPECT_EQ(names(), (QStringList{u".ж.mdb.lock"_s, u"ж.mdb"_s}));
    }
    EXPECT_EQ(names(), QStringList{u"ж.mdb"_s});
    EXPECT_FALSE(shell::lockHolder(journal));
}

TEST_F(LockNotes, OfADeadProcessAreNoObstacleAndAreOverwritten)
{
    const QString journal = write(u"ж.mdb"_s, "x");
    write(u".ж.mdb.lock"_s, note(QSysInfo::machineHostName(), kNoProcess));
    EXPECT_FALSE(shell::lockHolder(journal));
    const shell::LockNote held(journal);
    EXPECT_EQ(shell::lockHolder(journal)->process, QCoreApplication::applicationPid());
}

TEST_F(LockNotes, OfAnotherComputerAreBelieved)
{
    const QString journal = write(u"ж.mdb"_s, "x");
    write(u".ж.mdb.lock"_s, note(u"DELO-3"_s, kNoProcess));
    const auto holder = shell::lockHolder(journal);
    ASSERT_TRUE(holder);
    EXPECT_TRUE(holder->text().startsWith(u"пользователь Петрова, компьютер DELO-3, с "_s));
    EXPECT_FALSE(holder->text().contains(u"процесс"_s));
}

TEST_F(LockNotes, AreLeftAloneWhenTheyHaveBecomeAnothers)
{
    const QString journal = write(u"ж.mdb"_s, "x");
    {
        const shell::LockNote held(journal);
        write(u".ж.mdb.lock"_s, note(u"DELO-3"_s, 12));
    }
    EXPECT_EQ(shell::lockHolder(journal)->host, u"DELO-3"_s);
}

TEST_F(LockNotes, NonsenseNamesNobody)
{
    const QString journal = write(u"ж.mdb"_s, "x");
    for (const QByteArray& text :
         {QByteArray(), QByteArray("one line"), QByteArray("a\nb\nc\nd\n"), QByteArray("\n\n\n\n"),
          QByteArray(5'000'000, '\n'), QByteArray("h\nu\n-5\nx\n")}) {
        write(u".ж.mdb.lock"_s, text);
        EXPECT_FALSE(shell::lockHolder(journal)) << text.left(9).toStdString();
    }
}

TEST_F(LockNotes, ReadWhatAccessWroteBesideTheFile)
{
    const QString journal = write(u"ж.mdb"_s, "x");
    QByteArray record(64, '\0');
    record.replace(0, 6, "\xC4\xC5\xCB\xCE-3"); // ДЕЛО-3
    record.replace(32, 5, "Admin");
    write(u"ж.ldb"_s, record);
    const auto holder = shell::lockHolder(journal);
    ASSERT_TRUE(holder);
    EXPECT_EQ(holder->host, u"ДЕЛО-3"_s);
    EXPECT_EQ(holder->user, u"Admin"_s);
    EXPECT_EQ(holder->text(), u"пользователь Admin, компьютер ДЕЛО-3"_s);
    write(u"ж.ldb"_s, QByteArray());
    EXPECT_FALSE(shell::lockHolder(journal));
}
