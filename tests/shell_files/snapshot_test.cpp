#include "shell/files/snapshot.h"

#include "jet/error.h"
#include "tests/support/scriptedprompt.h"
#include "tests/support/smalljournal.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

using namespace Qt::StringLiterals;

TEST(Snapshot, ShowsWhatIsStoredWhileTheHolderGoesOn)
{
    SmallJournal held;
    held.group("ИС-21");
    ScriptedPrompt prompt;
    QString copy;
    {
        const auto seen = shell::openSnapshot(held.path(), prompt);
        ASSERT_TRUE(seen);
        copy = seen->filePath();
        EXPECT_EQ(seen->path(), held.path());
        EXPECT_NE(copy, held.path());
        EXPECT_TRUE(seen->database().readOnly());
        held.group("ИС-22");
        EXPECT_EQ(seen->database().rowCount("SPGRUP"), 1);
        EXPECT_THROW(seen->database().execute("DELETE * FROM SPGRUP;"), jet::Error);
    }
    EXPECT_FALSE(QFileInfo::exists(copy));
    EXPECT_EQ(held.database().rowCount("SPGRUP"), 2);
}

TEST(Snapshot, WaitsForNoWriteThatNeverEnds)
{
    SmallJournal held;
    QFile unfinished(held.path() + u"-journal"_s);
    ASSERT_TRUE(unfinished.open(QIODevice::WriteOnly));
    ScriptedPrompt prompt;
    prompt.expect(Box::Critical, u"Файл базы данных %1 не открыт: другая программа сейчас "
                                 "записывает его. Повторите позже."_s.arg(held.path()));
    EXPECT_EQ(shell::openSnapshot(held.path(), prompt), nullptr);
}

TEST(Snapshot, NamesTheFileThatTheUserKnows)
{
    SmallJournal held;
    held.database().execute("UPDATE RASP SET appMajor = 0, appMinor = 0;"); // an earlier release
    ScriptedPrompt prompt;
    prompt.expectMatching(Box::Critical, u"^Файл базы данных %1 сохранен прежней версией"_s.arg(
                                             QRegularExpression::escape(held.path())));
    EXPECT_EQ(shell::openSnapshot(held.path(), prompt), nullptr);
}
