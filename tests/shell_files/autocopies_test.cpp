#include "shell/files/autocopies.h"

#include "tests/shell_files/tempfiles.h"
#include "tests/support/scriptedprompt.h"
#include "tests/support/smalljournal.h"

using namespace Qt::StringLiterals;
using shell::Archive;
using shell::AutoCopies;

namespace {

class AutomaticCopies : public TempFiles
{
protected:
    void begin() { copies = std::make_unique<AutoCopies>(archive, prompt, status); }
    void change() { copies->beforeChange(file, file); }
    qsizetype count()
    {
        copies->finish();
        return archive.copies(file).size();
    }

    QDateTime now{QDate(2026, 11, 21), QTime(14, 5, 33)};
    Archive archive{pathOf(u"Архив"_s), [this] { return now; }};
    ScriptedPrompt prompt;
    RecordingStatusLine status;
    QString file = write(u"ж.mdb"_s, "before");
    std::unique_ptr<AutoCopies> copies;
};

} // namespace

TEST_F(AutomaticCopies, OnlyTheFirstChangeOfADayIsPrecededByACopy)
{
    begin();
    change();
    EXPECT_EQ(count(), 1);
    now = now.addSecs(3600);
    change();
    EXPECT_EQ(count(), 1);
    now = QDateTime(now.date().addDays(1), QTime(0, 0, 1)); // past midnight, never closed
    change();
    EXPECT_EQ(count(), 2);
    begin(); // another run the same day
    change();
    EXPECT_EQ(count(), 2);
}

TEST_F(AutomaticCopies, ThePlainCopyIsThereBeforeTheChange)
{
    begin();
    change();
    write(u"ж.mdb"_s, "after");
    copies->finish();
    const auto made = archive.copies(file);
    ASSERT_EQ(made.size(), 1);
    EXPECT_TRUE(made[0].name.compressed);
    EXPECT_TRUE(made[0].name.automatic());
    Archive::extract(made[0], pathOf(u"b"_s));
    EXPECT_EQ(read(pathOf(u"b"_s)), "before");
}

TEST_F(AutomaticCopies, EveryMassActionGetsItsOwn)
{
    begin();
    EXPECT_TRUE(copies->beforeAction(file, file, u"импортом занятий"_s));
    EXPECT_TRUE(copies->beforeAction(file, file, u"выставлением оценок"_s));
    change(); // the day has a copy
    EXPECT_EQ(count(), 2);
    EXPECT_EQ(archive.copies(file)[0].name.reason, u"перед выставлением оценок"_s);
}

TEST_F(AutomaticCopies, OutlivedOnesGoAndThoseMadeByCommandStay)
{
    begin();
    archive.add(file, file, shell::ArchiveName::kManual);
    for (int i = 0; i < 60; ++i) {
        now = now.addDays(1);
        change();
    }
    copies->finish();
    // 30 days, the first of November and of December; both months began earlier than the
    // thirty days and January's first copy lies within them.
    qsizetype manual = 0;
    for (const auto& copy : archive.copies(file))
        manual += copy.name.automatic() ? 0 : 1;
    EXPECT_EQ(manual, 1);
    EXPECT_EQ(count() - manual, 32);
}

TEST_F(AutomaticCopies, ACopyLeftUncompressedByACrashIsCompressedAtTheNextStart)
{
    archive.addPlain(file, file, u"перед изменениями"_s);
    begin();
    copies->finish();
    ASSERT_EQ(archive.copies(file).size(), 1);
    EXPECT_TRUE(archive.copies(file)[0].name.compressed);
}

TEST_F(AutomaticCopies, AFullDiskIsToldOnceAndHindersNoChange)
{
    if (!FailingWrites::possible())
        GTEST_SKIP();
    begin();
    {
        const FailingWrites full;
        change();
        change();
    }
    ASSERT_EQ(status.texts.size(), 1);
    EXPECT_TRUE(status.last().startsWith(u"Копия в «Архив» сегодня не создана. Ошибка: "_s));
    EXPECT_EQ(count(), 0);
    now = now.addDays(1);
    change();
    EXPECT_EQ(count(), 1);
}

TEST_F(AutomaticCopies, AMassActionWithoutACopyIsTheUsersDecision)
{
    if (!FailingWrites::possible())
        GTEST_SKIP();
    begin();
    const FailingWrites full;
    const QString asked = u"^Копия в «Архив» перед импортом не создана\\. Ошибка: .*\n\n"
                          "Продолжить без копии\\?$"_s;
    prompt.expectMatching(Box::Question, asked, shell::Answer::No);
    EXPECT_FALSE(copies->beforeAction(file, file, u"импортом"_s));
    prompt.expectMatching(Box::Question, asked, shell::Answer::Yes);
    EXPECT_TRUE(copies->beforeAction(file, file, u"импортом"_s));
}
