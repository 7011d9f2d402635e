#include "data/convert.h"
#include "data/journal.h"
#include "data/schema.h"
#include "tests/support/outsidecheckers.h"
#include "tests/support/scriptedprompt.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <sstream>

using namespace Qt::StringLiterals;
using data::Journal;
using jet::test::TemporaryFolder;

TEST(Create, ANewFilePassesTheCheckAndStaysAsItIs)
{
    const TemporaryFolder folder;
    const auto path = folder / "новый журнал.mdb";
    ScriptedPrompt prompt;
    {
        const auto journal = Journal::openAndCheck(data::fromPath(path), true, prompt);
        ASSERT_NE(journal, nullptr);
        EXPECT_EQ(journal->path(), data::fromPath(path));
    }
    const auto before = jet::test::bytesOf(path);
    {
        const auto journal = Journal::openAndCheck(data::fromPath(path), false, prompt);
        ASSERT_NE(journal, nullptr);
        jet::Database& database = journal->database();
        EXPECT_EQ(database.rowCount("RASP"), 1);
        EXPECT_EQ(database.rowCount("MONTH"), 12);
        EXPECT_EQ(database.rowCount("USERS"), 3);
        EXPECT_EQ(database.rowCount("SPVID"), 4);
        EXPECT_EQ(database.rowCount("SPBALL"), 5);
        const auto settings = journal->settings();
        EXPECT_EQ(settings.institution, u"нет"_s);
        EXPECT_EQ(settings.hoursPerLesson, 2);
        EXPECT_EQ(settings.yearBegin.addYears(1), QDate(settings.yearEnd.year(), 9, 1));
        EXPECT_FALSE(settings.workingDate.isValid());
    }
    EXPECT_TRUE(jet::test::bytesOf(path) == before) << "opening a new file changed it";
}

TEST(Create, OtherReadersUnderstandANewFile)
{
    const TemporaryFolder folder;
    const auto path = folder / "new.mdb";
    ScriptedPrompt prompt;
    ASSERT_NE(Journal::openAndCheck(data::fromPath(path), true, prompt), nullptr);
    if (const auto errors = jet::test::structuralErrors(path)) {
        EXPECT_EQ(*errors, "");
    }
    const auto listed = jet::test::mdbtools("mdb-tables", {"-1", path.string()});
    if (!listed)
        GTEST_SKIP() << "no mdbtools";
    std::vector<std::string> tables;
    std::istringstream lines(*listed);
    for (std::string line; std::getline(lines, line);)
        if (!line.empty())
            tables.push_back(line);
    std::vector<std::string> expected;
    for (const auto& table : data::verifiedTables())
        expected.emplace_back(table.name);
    for (const auto& table : data::supplementaryTables())
        expected.emplace_back(table.name);
    std::ranges::sort(tables);
    std::ranges::sort(expected);
    EXPECT_EQ(tables, expected);
    const auto months = jet::test::mdbtools("mdb-export", {"-H", path.string(), "MONTH"});
    EXPECT_NE(months->find("9,\"Сентябрь\""), std::string::npos) << *months;
}

TEST(Create, ANewFileIsEncoded)
{
    const TemporaryFolder folder;
    const auto path = folder / "new.mdb";
    ScriptedPrompt prompt;
    ASSERT_NE(Journal::openAndCheck(data::fromPath(path), true, prompt), nullptr);
    // Table names stand as UTF-16 in an unencoded file.
    const auto bytes = jet::test::bytesOf(path);
    const std::string name("S\0P\0S\0T\0U\0D\0", 12);
    EXPECT_EQ(std::ranges::search(bytes, name).begin(), bytes.end());
}

TEST(Create, RefusesAnExistingPathAndKeepsWhatIsThere)
{
    const TemporaryFolder folder;
    const auto path = folder / "taken.mdb";
    std::ofstream(path) << "precious";
    ScriptedPrompt prompt;
    prompt.expectMatching(Box::Critical, u"^Файл базы данных .* не создан\\. Ошибка: .+\\.$"_s);
    EXPECT_EQ(Journal::openAndCheck(data::fromPath(path), true, prompt), nullptr);
    std::ifstream file(path);
    std::string content;
    EXPECT_TRUE(std::getline(file, content));
    EXPECT_EQ(content, "precious");
}

TEST(Create, AFolderThatDoesNotExistLeavesNothing)
{
    const TemporaryFolder folder;
    const auto path = folder / "missing" / "new.mdb";
    ScriptedPrompt prompt;
    prompt.expectMatching(Box::Critical, u"^Файл базы данных .* не создан\\. Ошибка: .+\\.$"_s);
    EXPECT_EQ(Journal::openAndCheck(data::fromPath(path), true, prompt), nullptr);
    EXPECT_FALSE(std::filesystem::exists(path.parent_path()));
}

TEST(SettingsRow, IsStoredWholeAndNeverWithEmptyTexts)
{
    const TemporaryFolder folder;
    const auto path = data::fromPath(folder / "new.mdb");
    data::SettingsRow row;
    row.institution = u"Колледж \"Связь\"; #1 [отд.]"_s;
    row.address = QString();
    row.headPost = u"Директор"_s;
    row.headName = u"О'Генри"_s;
    row.printHead = true;
    row.responsiblePost = u"нет"_s;
    row.responsibleName = u"И.И. Иванов"_s;
    row.printResponsible = true;
    row.workingDate = {2024, 2, 29};
    row.yearBegin = {2023, 9, 1};
    row.yearEnd = {2024, 6, 30};
    row.useTimetable = true;
    row.autoSaveGrades = true;
    row.askWorkingDate = true;
    row.hoursPerLesson = 1;
    ScriptedPrompt prompt;
    {
        const auto journal = Journal::openAndCheck(path, true, prompt);
        ASSERT_NE(journal, nullptr);
        data::writeSettingsRow(journal->database(), row);
    }
    row.address = u"нет"_s;
    EXPECT_EQ(Journal::openAndCheck(path, false, prompt)->settings(), row);
    row.workingDate = QDate();
    data::writeSettingsRow(Journal::openAndCheck(path, false, prompt)->database(), row);
    EXPECT_EQ(Journal::openAndCheck(path, false, prompt)->settings(), row);
}
