#include "shell/service/letter.h"

#include "jet/error.h"
#include "shell/files/longwork.h"
#include "shell/files/zipfile.h"
#include "tests/support/fakestarter.h"
#include "tests/support/scriptedprompt.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QUrlQuery>

using namespace Qt::StringLiterals;

namespace {

// Work that the user cancels at once.
class CancelledWork final : public shell::LongWork
{
public:
    void run(const QString&, const std::function<void(const shell::Progress&)>& body) override
    {
        body([](int) { return false; });
    }
};

class Letter : public testing::Test
{
protected:
    Letter()
    {
        QFile file(source);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(QByteArray(3 * 1024 * 1024, 'j'));
    }
    QStringList inFolder() const
    {
        return QDir(letters).entryList(QDir::AllEntries | QDir::NoDotAndDotDot);
    }

    QTemporaryDir folder;
    QString source = folder.filePath(u"Журнал колледжа.mdb"_s);
    QString letters = folder.filePath(u"cache/letters"_s);
    shell::PlainWork work;
    FakeStarter starter;
    ScriptedPrompt prompt;
};

} // namespace

TEST_F(Letter, ToSupportSurvivesTheWayThroughAnAddress)
{
    const QUrl url = shell::supportLetter();
    EXPECT_EQ(url.scheme(), u"mailto"_s);
    EXPECT_TRUE(url.path().isEmpty()); // whom it goes to is left to the user
    const QUrlQuery query(url);
    EXPECT_TRUE(query.queryItemValue(u"subject"_s, QUrl::FullyDecoded).startsWith(u"Журнал:"_s));
    const QString body = query.queryItemValue(u"body"_s, QUrl::FullyDecoded);
    EXPECT_TRUE(body.contains(u"SQLite 3."_s));
    EXPECT_EQ(body.count(u'\n'), body.count(u"\r\n"_s));
}

TEST_F(Letter, CarriesAProvenCopyForItsUserAlone)
{
    const auto copy = shell::copyForLetter(source, source, letters, work);
    EXPECT_EQ(QFileInfo(copy.path).fileName(), u"Журнал колледжа.zip"_s);
    EXPECT_FALSE(QFileInfo(letters).permission(QFile::ReadGroup));
    EXPECT_FALSE(QFileInfo(QFileInfo(copy.path).absolutePath()).permission(QFile::ReadGroup));
    const QString back = folder.filePath(u"back.mdb"_s);
    shell::extractZip(copy.path, back);
    EXPECT_EQ(QFileInfo(back).size(), QFileInfo(source).size());
    // A second letter on the same day leaves the first one's attachment alone.
    EXPECT_NE(shell::copyForLetter(source, source, letters, work).path, copy.path);
    EXPECT_TRUE(QFileInfo(copy.path).isFile());
}

TEST_F(Letter, LeavesNothingBehindWhenCancelledOrRefused)
{
    CancelledWork cancelled;
    EXPECT_TRUE(shell::copyForLetter(source, source, letters, cancelled).path.isEmpty());
    EXPECT_EQ(inFolder(), QStringList());
    EXPECT_THROW(shell::copyForLetter(source, source + u"x"_s, letters, work), jet::Error);
    EXPECT_EQ(inFolder(), QStringList());
    EXPECT_THROW(shell::copyForLetter(source, source, source + u"/no folder"_s, work), jet::Error);
}

TEST_F(Letter, RemovesCopiesOnlyWhenTheirTimeIsOver)
{
    const auto copy = shell::copyForLetter(source, source, letters, work);
    QFile other(QDir(letters).filePath(u"other"_s));
    ASSERT_TRUE(other.open(QIODevice::WriteOnly));
    const QDateTime now = QDateTime::currentDateTime();
    shell::removeOldLetterCopies(letters, now.addSecs(23 * 3600));
    EXPECT_TRUE(QFileInfo(copy.path).isFile());
    shell::removeOldLetterCopies(letters, now.addSecs(25 * 3600));
    EXPECT_EQ(inFolder(), QStringList{u"other"_s});
}

TEST_F(Letter, OpensWithTheCopyAttached)
{
    starter.installed = {u"xdg-email"_s};
    shell::writeLetter({u"/c/Журнал.zip"_s, source}, starter, prompt, [](const QString&) {
        ADD_FAILURE() << "the copy is in the letter already";
        return true;
    });
    EXPECT_EQ(starter.started, QStringList{u"/usr/bin/xdg-email"_s});
    const auto at = starter.given.indexOf(u"--attach"_s);
    ASSERT_GE(at, 0);
    EXPECT_EQ(starter.given.value(at + 1), u"/c/Журнал.zip"_s);
    EXPECT_TRUE(starter.given.contains(u"База данных Журнал колледжа.mdb"_s));
}

TEST_F(Letter, IsLeftToTheUserWhereNoMailProgramTakesAttachments)
{
    QStringList shown;
    const auto show = [&shown](const QString& path) {
        shown << path;
        return true;
    };
    const QString text = u".*вложите в него файл «/c/Журнал.zip»\\. Папка с ним открыта\\.$"_s;
    prompt.expectMatching(Box::Information, text);
    shell::writeLetter({u"/c/Журнал.zip"_s, source}, starter, prompt, show);
    EXPECT_EQ(shown.size(), 1);

    starter.installed = {u"xdg-email"_s}; // there, but it finds no mail program
    shell::writeLetter({u"/c/Журнал.zip"_s, source}, starter, prompt, show);
    EXPECT_EQ(shown.size(), 1);
    prompt.expectMatching(Box::Information, text);
    starter.whenFailed();
    EXPECT_EQ(shown.size(), 2);
    EXPECT_TRUE(prompt.done());
}
