#include "shell/access/programpassword.h"
#include "shell/access/retrydelay.h"
#include "shell/access/rights.h"
#include "shell/access/users.h"
#include "tests/support/smalljournal.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace shell {
namespace {

UserRecord record(int id, const QString& name, Role role, const QString& password)
{
    return {{id, name, role}, password};
}

TEST(ProgramPassword, IsRecognisedAndNotRevealed)
{
    const QString password = u"Тайна 1"_s;
    const QString stored = protectedPassword(password);
    EXPECT_TRUE(isPassword(password, stored));
    EXPECT_FALSE(isPassword(u"тайна 1"_s, stored));
    EXPECT_FALSE(isPassword({}, stored));
    EXPECT_FALSE(stored.contains(password));
    EXPECT_NE(stored, protectedPassword(password)) << "each has a salt of its own";
}

TEST(ProgramPassword, MatchesNothingThatIsStoredOtherwise)
{
    QString cutShort = protectedPassword(u"a"_s);
    cutShort.chop(2);
    for (const QString& stored :
         {QString(), u"a"_s, u"pbkdf2-sha256$0$00$00"_s, u"pbkdf2-sha256$x$00$00"_s,
          u"pbkdf2-sha256$99999999999$00$00"_s, u"md5$1$00$00"_s, cutShort}) {
        EXPECT_FALSE(isPassword(u"a"_s, stored)) << stored.toStdString();
        EXPECT_FALSE(isPassword({}, stored)) << stored.toStdString();
    }
}

TEST(RetryDelay, GrowsAfterTwoSlipsUpToAMinute)
{
    RetryDelay delay;
    std::vector<int> waits;
    for (int i = 0; i < 12; ++i)
        waits.push_back(delay.wrongEntry());
    EXPECT_EQ(waits, (std::vector{0, 0, 1, 2, 4, 8, 16, 32, 60, 60, 60, 60}));
}

TEST(Users, AreNotAskedWhileNobodyHasAPassword)
{
    const Users fresh = [] {
        SmallJournal journal;
        return Users::of(journal.database());
    }();
    ASSERT_EQ(fresh.rows().size(), 3U);
    ASSERT_TRUE(fresh.withoutAsking().has_value());
    EXPECT_EQ(fresh.withoutAsking()->name, u"Администратор"_s);
    EXPECT_EQ(fresh.withoutAsking()->role, Role::Administrator);

    const Users nobody({});
    EXPECT_EQ(nobody.withoutAsking()->role, Role::Administrator);
    const Users noAdministrator({record(7, u"Петрова"_s, Role::User, {})});
    EXPECT_EQ(noAdministrator.withoutAsking()->role, Role::Administrator);
    const Users locked({record(1, u"Администратор"_s, Role::Administrator, u"x"_s)});
    EXPECT_FALSE(locked.withoutAsking().has_value());
}

TEST(Users, SignInWithThePasswordOfTheFile)
{
    SmallJournal journal;
    journal.database().execute("UPDATE USERS SET PSSW = \"Ключ\" WHERE ROLE = 0;");
    journal.reopen();
    const Users users = Users::of(journal.database());
    EXPECT_FALSE(users.withoutAsking().has_value());
    const int administrator = users.offered(u"Администратор"_s);
    EXPECT_FALSE(users.signIn(administrator, {}).has_value());
    EXPECT_FALSE(users.signIn(administrator, u"ключ"_s).has_value());
    ASSERT_TRUE(users.signIn(administrator, u"Ключ"_s).has_value());
    EXPECT_EQ(users.signIn(administrator, u"Ключ"_s)->role, Role::Administrator);
    EXPECT_EQ(users.signIn(users.offered(u"Оператор"_s), {})->role, Role::Operator);
    EXPECT_FALSE(users.signIn(-1, {}).has_value());
    EXPECT_FALSE(users.signIn(3, {}).has_value());
}

TEST(Users, WithoutARoleHaveTheLeast)
{
    SmallJournal journal;
    journal.database().execute("INSERT INTO USERS (NAIM, PSSW) VALUES (\"Новый\", \"\");");
    const Users users = Users::of(journal.database());
    EXPECT_EQ(users.signIn(users.offered(u"Новый"_s), {})->role, Role::User);
}

TEST(Users, OfferTheLastNameElseAnAdministrator)
{
    const Users users({record(1, u"Белова"_s, Role::User, {}),
                       record(2, u"Завуч"_s, Role::Administrator, u"x"_s)});
    EXPECT_EQ(users.offered(u"Белова"_s), 0);
    EXPECT_EQ(users.offered(u"Уволенный"_s), 1);
    EXPECT_EQ(Users({}).offered(u"Белова"_s), 0);
}

TEST(Rights, EachRoleMayWhatItsWorkNeeds)
{
    struct Row
    {
        QString command;
        bool administrator, dispatcher, user;
    };
    const Row rows[] = {
        {u"mnuFileOpen"_s, true, true, true},      {u"mnuprint"_s, true, true, true},
        {u"mnuposechaemost"_s, true, true, true},  {u"mnuinsert"_s, true, true, true},
        {u"mnuotpos"_s, true, true, true},         {u"mnustud"_s, true, true, true},
        {u"mnuNastroiki"_s, true, true, false},    {u"mnuImpUr"_s, true, true, false},
        {u"mnuFileSaveAs"_s, true, true, false},   {u"mnuToolsAcc"_s, true, true, false},
        {u"mnuFileOpenFrom"_s, true, true, false}, {u"mnuToolsMail"_s, true, true, false},
        {u"mnuSprUsers"_s, true, false, false},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(mayRun(Role::Administrator, row.command), row.administrator)
            << row.command.toStdString();
        EXPECT_EQ(mayRun(Role::Operator, row.command), row.dispatcher) << row.command.toStdString();
        EXPECT_EQ(mayRun(Role::User, row.command), row.user) << row.command.toStdString();
    }
    EXPECT_EQ(roleOf(0), Role::Administrator);
    EXPECT_EQ(roleOf(1), Role::Operator);
    EXPECT_EQ(roleOf(2), Role::User);
    EXPECT_EQ(roleOf(9), Role::User) << "any other number is the least of the roles";
}

} // namespace
} // namespace shell
