#include "shell/service/logfile.h"

#include "shell/service/privatefolder.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <thread>

using namespace Qt::StringLiterals;

namespace {

constexpr auto kOwnerOnly =
    QFile::ReadOwner | QFile::WriteOwner | QFile::ReadUser | QFile::WriteUser;

QString textOf(const QString& path)
{
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
    return QString::fromUtf8(file.readAll());
}

class Log : public testing::Test
{
protected:
    QTemporaryDir folder;
    QString path = folder.filePath(u"state/jurnal/jurnal.log"_s);
};

} // namespace

TEST_F(Log, MakesItsFolderAndFileForItsUserAlone)
{
    shell::LogFile log(path);
    EXPECT_FALSE(QFileInfo::exists(path)); // nothing to say, nothing made
    log.write(u"первая\nвторая"_s);
    const QString text = textOf(path);
    EXPECT_TRUE(QRegularExpression(u"^[-0-9]{10} [:.0-9]{12} первая\n    вторая\n$"_s)
                    .match(text)
                    .hasMatch())
        << text.toStdString();
    EXPECT_EQ(QFileInfo(path).permissions(), kOwnerOnly);
    EXPECT_EQ(QFileInfo(QFileInfo(path).absolutePath()).permissions(),
              kOwnerOnly | QFile::ExeOwner | QFile::ExeUser);
}

TEST_F(Log, KeepsTwoOlderFilesAndNoMore)
{
    shell::LogFile log(path, 200);
    for (int i = 0; i < 100; ++i) {
        log.write(u"запись %1"_s.arg(i, 3, 10, QLatin1Char('0')));
    }
    const auto names = QDir(QFileInfo(path).absolutePath()).entryList(QDir::Files, QDir::Name);
    EXPECT_EQ(names, QStringList({u"jurnal.log"_s, u"jurnal.log.1"_s, u"jurnal.log.2"_s}));
    for (const QString& name : names) {
        EXPECT_LT(QFileInfo(QFileInfo(path).dir(), name).size(), 300) << name.toStdString();
    }
    EXPECT_TRUE(textOf(path).contains(u"запись 099"_s));
    // No line between the first kept and the last written is lost.
    const QString all = textOf(path + u".2"_s) + textOf(path + u".1"_s) + textOf(path);
    const int first = all.mid(all.indexOf(u"запись "_s) + 7, 3).toInt();
    EXPECT_EQ(all.count(u'\n'), 100 - first);
}

TEST_F(Log, RotatesWhatAnEarlierRunLeft)
{
    shell::LogFile(path, 100).write(QString(200, u'x'));
    shell::LogFile(path, 100).write(u"новая"_s);
    EXPECT_TRUE(textOf(path + u".1"_s).contains(u"xxx"_s));
    EXPECT_FALSE(textOf(path).contains(u'x'));
}

TEST_F(Log, TakesLinesFromSeveralThreads)
{
    shell::LogFile log(path);
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([&log] {
            for (int line = 0; line < 50; ++line) {
                log.write(u"строка"_s);
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(textOf(path).count(
                  QRegularExpression(u"^.{23} строка$"_s, QRegularExpression::MultilineOption)),
              200);
}

TEST_F(Log, HarmsNobodyWhereItCannotBeWritten)
{
    QFile obstacle(folder.filePath(u"state"_s)); // a file where the folder should be
    ASSERT_TRUE(obstacle.open(QIODevice::WriteOnly));
    shell::LogFile log(path);
    log.write(u"пропадет"_s);
    EXPECT_FALSE(QFileInfo::exists(path));
}

TEST(StateFolder, FollowsTheEnvironmentButNoRelativePath)
{
    const QByteArray before = qgetenv("XDG_STATE_HOME");
    qputenv("XDG_STATE_HOME", "/elsewhere");
    EXPECT_EQ(shell::stateFolder(), u"/elsewhere/jurnal"_s);
    qputenv("XDG_STATE_HOME", "relative");
    EXPECT_EQ(shell::stateFolder(), QDir::home().filePath(u".local/state/jurnal"_s));
    before.isNull() ? qunsetenv("XDG_STATE_HOME") : qputenv("XDG_STATE_HOME", before);
}
