#include "data/journal.h"
#include "jet/error.h"
#include "tests/data/olderfile.h"
#include "tests/support/scriptedprompt.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using data::Journal;

TEST(ReadOnly, ReadsAFileThatIsUpToDateAndLeavesItAsItIs)
{
    OlderFile file;
    file.write();
    ScriptedPrompt prompt;
    ASSERT_NE(Journal::openAndCheck(file.name(), false, prompt), nullptr); // brings it up to date
    const auto before = file.bytes();
    {
        const auto journal = Journal::openReadOnly(file.name(), prompt);
        ASSERT_NE(journal, nullptr);
        EXPECT_EQ(journal->database().rowCount("MONTH"), 12);
        EXPECT_NO_THROW(journal->settings());
        EXPECT_THROW(journal->database().execute("DELETE * FROM MONTH"), jet::Error);
    }
    EXPECT_TRUE(file.bytes() == before);
    EXPECT_EQ(file.leftovers(), std::vector<std::string>{});
}

TEST(ReadOnly, RefusesAFileThatMustBeUpgradedFirst)
{
    OlderFile file;
    file.write([](jet::Database& database) {
        database.execute("UPDATE RASP SET appMajor = 0, appMinor = 9, appRevision = 0");
    });
    const auto before = file.bytes();
    ScriptedPrompt prompt;
    prompt.expect(Box::Critical, u"Файл базы данных "_s + file.name()
                                     + u" сохранен прежней версией программы и должен быть "
                                       "обновлен. Сначала откройте его для изменения."_s);
    EXPECT_EQ(Journal::openReadOnly(file.name(), prompt), nullptr);
    EXPECT_TRUE(file.bytes() == before);
}

TEST(ReadOnly, NamesAMissingFile)
{
    ScriptedPrompt prompt;
    prompt.expect(Box::Critical, u"Файл базы данных нет.mdb не найден!"_s);
    EXPECT_EQ(Journal::openReadOnly(u"нет.mdb"_s, prompt), nullptr);
}
