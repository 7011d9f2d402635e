#include "app/options.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

app::Parsed parse(const QStringList& arguments)
{
    return app::parseArguments(QStringList{u"jurnal"_s} + arguments);
}

} // namespace

TEST(Options, NameTheFileAndWhatToDoWithIt)
{
    const auto plain = parse({}).options;
    EXPECT_TRUE(plain.openLast);
    EXPECT_TRUE(plain.file.isEmpty());
    const auto first = parse({u"a b.mdb"_s, u"c.mdb"_s, u"--read-only"_s}).options;
    EXPECT_EQ(first.file, u"a b.mdb"_s);
    EXPECT_EQ(first.ignored, QStringList{u"c.mdb"_s});
    EXPECT_TRUE(first.readOnly);
    EXPECT_TRUE(parse({u"--new-file"_s, u"x.mdb"_s}).options.newFile);
    EXPECT_FALSE(parse({u"--no-last"_s}).options.openLast);
    EXPECT_TRUE(parse({u"--demo"_s}).options.demo);
    EXPECT_EQ(parse({u"--"_s, u"--demo"_s}).options.file, u"--demo"_s);
}

TEST(Options, AnswerInTheTerminal)
{
    for (const QString& asked : {u"--help"_s, u"-h"_s, u"--version"_s, u"-v"_s}) {
        const auto reply = parse({asked}).reply;
        ASSERT_TRUE(reply) << asked.toStdString();
        EXPECT_EQ(reply->status, 0);
        EXPECT_TRUE(reply->text.contains(u"jurnal"_s));
    }
}

TEST(Options, RefuseWrongUsage)
{
    const QStringList wrong[] = {
        {u"--bogus"_s},
        {u"-x"_s},
        {u"--demo"_s, u"a.mdb"_s},
        {u"--demo"_s, u"--new-file"_s},
        {u"--new-file"_s, u"--read-only"_s},
        {u"--demo=yes"_s},
    };
    for (const QStringList& arguments : wrong) {
        const auto reply = parse(arguments).reply;
        ASSERT_TRUE(reply) << arguments.join(u' ').toStdString();
        EXPECT_EQ(reply->status, 2) << arguments.join(u' ').toStdString();
        EXPECT_FALSE(reply->text.isEmpty());
    }
}

TEST(Options, PassOverTheSessionManager)
{
    const auto parsed = parse({u"-session"_s, u"10a_1"_s, u"a.mdb"_s});
    EXPECT_FALSE(parsed.reply);
    EXPECT_EQ(parsed.options.file, u"a.mdb"_s);
    EXPECT_FALSE(parse({u"-session"_s}).reply);
}
