#include "shell/session.h"

#include "data/convert.h"
#include "tests/support/outsidecheckers.h"
#include "tests/support/scriptedprompt.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using shell::Role;
using shell::Session;

namespace {

struct Signals
{
    explicit Signals(Session& session)
    {
        QObject::connect(&session, &Session::journalChanged, [this] { ++journal; });
        QObject::connect(&session, &Session::settingsChanged, [this] { ++settings; });
    }
    int journal = 0;
    int settings = 0;
};

} // namespace

TEST(Session, FollowsTheJournalAndItsSettings)
{
    const jet::test::TemporaryFolder folder;
    ScriptedPrompt prompt;
    Session session;
    const Signals told(session);
    EXPECT_FALSE(session.isOpen());
    session.openJournal(
        data::Journal::openAndCheck(data::fromPath(folder / "a.mdb"), true, prompt));
    ASSERT_TRUE(session.isOpen());
    EXPECT_EQ(session.hoursPerLesson(), 2);

    auto row = session.settings();
    row.workingDate = {2024, 11, 12};
    row.hoursPerLesson = 1;
    row.address = QString();
    session.saveSettings(row);
    EXPECT_EQ(session.workingDate(), QDate(2024, 11, 12));
    EXPECT_EQ(session.hoursPerLesson(), 1);
    EXPECT_EQ(session.settings().address, u"нет"_s); // as stored, not as asked
    EXPECT_EQ(told.settings, 2);

    session.openJournal(
        data::Journal::openAndCheck(data::fromPath(folder / "b.mdb"), true, prompt));
    EXPECT_FALSE(session.workingDate().isValid());
    session.closeJournal();
    EXPECT_FALSE(session.isOpen());
    EXPECT_FALSE(session.yearBegin().isValid());
    EXPECT_EQ(told.journal, 3);
}

TEST(Session, RightsFollowTheRole)
{
    Session session;
    EXPECT_TRUE(session.mayEditUsers());
    session.signIn({2, u"Оператор"_s, Role::Operator});
    EXPECT_FALSE(session.mayEditUsers());
    EXPECT_TRUE(session.mayEditBooks());
    session.signIn({3, u"Пользователь"_s, Role::User});
    EXPECT_FALSE(session.mayEditBooks());
}
