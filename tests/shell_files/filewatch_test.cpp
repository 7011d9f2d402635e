#include "shell/files/filewatch.h"

#include "data/settingsrow.h"
#include "jet/database.h"
#include "jet/error.h"
#include "shell/session.h"
#include "tests/support/smalljournal.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QFile>
#include <QSignalSpy>

using namespace Qt::StringLiterals;
using State = shell::FileWatch::State;

namespace {

class Watched : public testing::Test
{
protected:
    Watched() { session.openJournal(journal.release()); }

    void addGroup(const char* name)
    {
        const std::pair<std::string, jet::Value> values[] = {{"NAIM", std::string(name)}};
        session.database().insert("SPGRUP", values);
    }
    // Another program that asks for no lock writes the last byte again.
    void writeFromOutside() const
    {
        QFile file(journal.path());
        ASSERT_TRUE(file.open(QIODevice::ReadWrite));
        file.seek(file.size() - 1);
        const QByteArray last = file.peek(1);
        file.write(last);
        file.close();
        const auto later = std::filesystem::last_write_time(journal.path().toStdString())
                           + std::chrono::seconds(2);
        std::filesystem::last_write_time(journal.path().toStdString(), later);
    }

    SmallJournal journal;
    shell::Session session;
    shell::FileWatch watch{session};
};

} // namespace

TEST_F(Watched, OwnChangesAreNoStrangers)
{
    for (int i = 0; i < 3; ++i) {
        addGroup("А");
        addGroup("Б"); // within one turn of the event loop, too
        QCoreApplication::processEvents();
        EXPECT_EQ(watch.state(), State::Untouched);
    }
    EXPECT_EQ(session.database().rowCount("SPGRUP"), 6);
}

TEST_F(Watched, ATransactionThatWaitsIsNoStranger)
{
    jet::Transaction transaction(session.database());
    addGroup("А");
    QCoreApplication::processEvents();
    addGroup("Б");
    transaction.commit();
    addGroup("В");
    EXPECT_EQ(session.database().rowCount("SPGRUP"), 3);
}

TEST_F(Watched, AFileChangedFromOutsideIsNotWritten)
{
    QSignalSpy refused(&watch, &shell::FileWatch::refused);
    writeFromOutside();
    EXPECT_EQ(watch.state(), State::Changed);
    EXPECT_THROW(addGroup("А"), jet::Error);
    EXPECT_EQ(refused.count(), 0); // not in the middle of the command
    QCoreApplication::processEvents();
    EXPECT_EQ(refused.count(), 1);
    EXPECT_EQ(session.database().rowCount("SPGRUP"), 0);
    session.closeJournal();
    journal.reopen();
    EXPECT_EQ(journal.database().rowCount("SPGRUP"), 0);
}

TEST_F(Watched, AVanishedFileIsNotWrittenAndMayComeBack)
{
    const QString away = journal.path() + u".away"_s;
    ASSERT_TRUE(QFile::rename(journal.path(), away));
    EXPECT_EQ(watch.state(), State::Gone);
    EXPECT_THROW(addGroup("А"), jet::Error);
    ASSERT_TRUE(QFile::rename(away, journal.path()));
    EXPECT_EQ(watch.state(), State::Untouched);
    addGroup("А");
    EXPECT_EQ(session.database().rowCount("SPGRUP"), 1);
}

TEST_F(Watched, CallsBeforeAChangeAndNotBeforeReading)
{
    int calls = 0;
    std::int64_t groupsThen = -1;
    watch.setBeforeChange([&] {
        ++calls;
        groupsThen = session.database().rowCount("SPGRUP");
    });
    session.database().rows("SELECT * FROM SPGRUP;");
    EXPECT_EQ(calls, 0);
    addGroup("А");
    EXPECT_EQ(calls, 1);
    EXPECT_EQ(groupsThen, 0);
}

TEST_F(Watched, ClosingEndsTheWatch)
{
    session.closeJournal();
    QFile::remove(journal.path());
    EXPECT_EQ(watch.state(), State::Untouched);
}
