#include "data/convert.h"
#include "data/journal.h"
#include "data/schema.h"
#include "tests/data/olderfile.h"
#include "tests/support/scriptedprompt.h"

#include <gtest/gtest.h>

#include <algorithm>

using namespace Qt::StringLiterals;
using data::Journal;

namespace {

// Opens a file that must be accepted without a message, closes it again and lets the
// independent checker read it.
void upgrade(const OlderFile& file)
{
    ScriptedPrompt prompt;
    ASSERT_NE(Journal::openAndCheck(file.name(), false, prompt), nullptr);
    if (const auto errors = jet::test::structuralErrors(file.path())) {
        EXPECT_EQ(*errors, "");
    }
}

std::vector<std::string> sorted(std::vector<std::string> names)
{
    std::ranges::sort(names);
    return names;
}

} // namespace

TEST(Upgrade, AppendsEachAddedFieldWithItsPreset)
{
    const struct
    {
        const char* table;
        const char* field;
        const char* value;
    } cases[] = {
        {"USP", "TEK", "0"},
        {"POS", "IDDG", "<null>"},
        {"RASP", "DATN", "01.09.2022"},
        {"RASP", "DATK", "30.06.2023"},
        {"SPSTUD", "prikazOtch", ""},
        {"SPSTUD", "prichOtch", ""},
    };
    for (const auto& one : cases) {
        SCOPED_TRACE(one.field);
        OlderFile file;
        file.removeField(one.table, one.field);
        file.write([](jet::Database& database) {
            database.execute("INSERT INTO USP (ID, IDD, OC) VALUES (1, 2, 5)");
            database.execute("INSERT INTO POS (ID, uv, nuv) VALUES (1, 0, 2)");
            database.execute("INSERT INTO SPSTUD (FAM) VALUES (\"Иванов\")");
        });
        upgrade(file);
        const std::string sql = std::string("SELECT ") + one.field + " FROM " + one.table;
        EXPECT_EQ(file.values(sql), std::vector<std::string>{one.value});
    }
}

TEST(Upgrade, AFileWithoutAnyAddedFieldIsBroughtUpToDateAtOnce)
{
    OlderFile file;
    file.removeAddedFields();
    for (const data::FieldName& name : data::resizedFields())
        file.field(name.table, name.field).size = 10;
    file.removeTable("USERS");
    file.removeTable("SPAUD");
    file.write();
    upgrade(file);
    const auto before = file.bytes();
    upgrade(file);
    EXPECT_TRUE(file.bytes() == before) << "opening an up-to-date file changed it";
    EXPECT_EQ(file.value("SELECT DATN FROM RASP"), "01.09.2022");
    EXPECT_EQ(file.value("SELECT DATK FROM RASP"), "30.06.2023");
}

TEST(Upgrade, KeepsTheValuesOfFieldsThatAreThere)
{
    OlderFile file;
    file.removeField("RASP", "DATK");
    file.write([](jet::Database& database) {
        database.execute("UPDATE RASP SET DATN = #09/01/2019#");
        database.execute("INSERT INTO SPSTUD (FAM, prikazOtch) VALUES (\"Иванов\", \"№ 5\")");
    });
    upgrade(file);
    EXPECT_EQ(file.value("SELECT DATN FROM RASP"), "01.09.2019");
    EXPECT_EQ(file.value("SELECT DATK FROM RASP"), "30.06.2023");
    EXPECT_EQ(file.value("SELECT prikazOtch FROM SPSTUD"), "№ 5");
}

TEST(Upgrade, WidensTextsAndTrimsThem)
{
    const struct
    {
        const char* table;
        const char* field;
        int oldSize;
        int newSize;
    } cases[] = {
        {"SPOTD", "KOD", 10, 12},
        {"SPOTD", "NAIM", 50, 255},
        {"SPPREP", "FAMIO", 50, 255},
        {"SPPRED", "NAIM", 100, 255},
    };
    for (const auto& one : cases) {
        const std::string table = one.table;
        const std::string field = one.field;
        SCOPED_TRACE(table + "." + field);
        OlderFile file;
        file.field(table, field).size = one.oldSize;
        file.write([&](jet::Database& database) {
            for (const char* text :
                 {"\"Один  \"", "\"  Дв а \"", "Null", "\"\"", "\"   \"", "\"К\"\"в\""})
                database.execute("INSERT INTO " + table + " (" + field + ") VALUES (" + text + ")");
        });
        upgrade(file);
        const auto definition = file.reopen()->tableDef(table);
        ASSERT_NE(definition.field(field), nullptr);
        EXPECT_EQ(definition.field(field)->size, one.newSize);
        EXPECT_EQ(definition.field(field + "2"), nullptr);
        const std::string key = definition.fields.front().name;
        EXPECT_EQ(file.values("SELECT " + field + " FROM " + table + " ORDER BY " + key),
                  (std::vector<std::string>{"Один", "Дв а", "<null>", "", "", "К\"в"}));
    }
}

TEST(Upgrade, NarrowsATextOnlyWhenItsValuesFit)
{
    OlderFile fits;
    fits.field("SPOTD", "KOD").size = 30;
    fits.write([](jet::Database& database) {
        database.execute("INSERT INTO SPOTD (KOD) VALUES (\"  09.02.07-123  \")");
    });
    upgrade(fits);
    EXPECT_EQ(fits.value("SELECT KOD FROM SPOTD"), "09.02.07-123");

    OlderFile tooLong;
    tooLong.field("SPOTD", "KOD").size = 30;
    tooLong.write([](jet::Database& database) {
        database.execute("INSERT INTO SPOTD (KOD) VALUES (\"09.02.07-1234\")");
    });
    const auto before = tooLong.bytes();
    ScriptedPrompt prompt;
    prompt.expectMatching(Box::Critical, u"^Файл базы данных .* не открыт\\. Ошибка: .+\\.$"_s);
    EXPECT_EQ(Journal::openAndCheck(tooLong.name(), false, prompt), nullptr);
    EXPECT_TRUE(tooLong.bytes() == before);
}

TEST(Upgrade, AResizeDropsIndexesOnTheFieldAndALeftoverSpareColumn)
{
    OlderFile file;
    file.field("SPPRED", "NAIM").size = 50;
    file.write([](jet::Database& database) {
        database.execute("ALTER TABLE SPPRED ADD COLUMN NAIM2 STRING(255)");
        database.execute("CREATE INDEX ByName ON SPPRED (NAIM)");
        database.execute("CREATE INDEX ByCodeAndName ON SPPRED (KOD, NAIM DESC)");
        database.execute("CREATE INDEX ByCode ON SPPRED (KOD)");
        database.execute("INSERT INTO SPPRED (NAIM, NAIM2) VALUES (\"Химия\", \"половина\")");
    });
    upgrade(file);
    const auto definition = file.reopen()->tableDef("SPPRED");
    EXPECT_EQ(definition.field("NAIM2"), nullptr);
    std::vector<std::string> indexes;
    for (const jet::Index& index : definition.indexes)
        indexes.push_back(index.name);
    EXPECT_EQ(sorted(indexes), (std::vector<std::string>{"ByCode", "PrimaryKey"}));
    EXPECT_EQ(file.value("SELECT NAIM FROM SPPRED"), "Химия");
}

TEST(Upgrade, RefillsMissingMonthsOnly)
{
    OlderFile file;
    file.write([](jet::Database& database) {
        database.execute("DELETE * FROM MONTH WHERE MN = 1 OR MN = 9 OR MN = 12");
    });
    upgrade(file);
    EXPECT_EQ(file.values("SELECT NAIM FROM MONTH ORDER BY MN"),
              (std::vector<std::string>{"Январь", "м2", "м3", "м4", "м5", "м6", "м7", "м8",
                                        "Сентябрь", "м10", "м11", "Декабрь"}));
}

TEST(Upgrade, CreatesMissingTablesAndTheFirstUsers)
{
    OlderFile file;
    for (const char* table : {"EXAM", "MONTH", "UROKI", "USERS", "SPAUD", "SPKAUD", "SPTIPZ"})
        file.removeTable(table);
    file.write();
    upgrade(file);
    EXPECT_EQ(file.values("SELECT NAIM & \" \" & ROLE & \"/\" & PSSW FROM USERS ORDER BY IDU"),
              (std::vector<std::string>{"Администратор 0/", "Оператор 1/", "Пользователь 2/"}));
    EXPECT_EQ(file.values("SELECT IDU FROM USERS ORDER BY IDU"),
              (std::vector<std::string>{"1", "2", "3"}));
    EXPECT_EQ(file.values("SELECT NAIM FROM MONTH ORDER BY MN").size(), 12U);
    const auto lessons = file.reopen()->tableDef("UROKI");
    ASSERT_NE(lessons.index("PrimaryKey"), nullptr);
    EXPECT_TRUE(lessons.index("PrimaryKey")->primary);
    EXPECT_FALSE(lessons.index("IDG")->primary);
}

TEST(Upgrade, KeepsTheUsersThatAreThere)
{
    OlderFile file;
    file.write([](jet::Database& database) {
        database.execute("INSERT INTO USERS (NAIM, ROLE, PSSW) VALUES (\"Завуч\", 0, \"1\")");
    });
    upgrade(file);
    EXPECT_EQ(file.values("SELECT NAIM FROM USERS"), std::vector<std::string>{"Завуч"});
}

TEST(Upgrade, AppendsWhatTheProgramUsesBeyondTheCheck)
{
    OlderFile file;
    file.write([](jet::Database& database) {
        // Kept by the older program in a shape of its own.
        database.execute("CREATE TABLE SPVID (IDV COUNTER, NAIM STRING(50))");
        database.execute("INSERT INTO SPVID (NAIM) VALUES (\"Вечерняя\")");
    });
    upgrade(file);
    const auto database = file.reopen();
    for (const data::TableDefinition& expected : data::supplementaryTables()) {
        ASSERT_TRUE(database->hasTable(expected.name)) << expected.name;
        const auto table = database->tableDef(expected.name);
        for (const data::FieldDefinition& field : expected.fields) {
            ASSERT_NE(table.field(field.name), nullptr) << expected.name << '.' << field.name;
            EXPECT_EQ(table.field(field.name)->type, field.type);
            EXPECT_EQ(table.field(field.name)->attributes, field.attributes);
        }
    }
    for (const data::SupplementaryField& wanted : data::supplementaryFields())
        EXPECT_NE(database->tableDef(wanted.table).field(wanted.field.name), nullptr)
            << wanted.table << '.' << wanted.field.name;
    EXPECT_FALSE(database->tableDef("HOLI").index("PrimaryKey")->primary);
    EXPECT_TRUE(database->tableDef("SPKAF").index("PrimaryKey")->primary);
    EXPECT_EQ(file.values("SELECT NAIM FROM SPVID"), std::vector<std::string>{"Вечерняя"});
    EXPECT_EQ(file.values("SELECT NAIMOC FROM SPBALL ORDER BY OCEN DESC").front(), "5 (отлично)");
}

TEST(Upgrade, StampsOlderFilesAndLeavesNewerOnesTheirStamp)
{
    const QString newer = u"Версия базы данных новее, чем версия программы. Для работы с этой "
                          "базой рекомендуется обновить программу."_s;
    const struct
    {
        const char* stamp; // appMajor, appMinor, appRevision
        bool newer;
        const char* after;
    } cases[] = {
        {"Null, Null, Null", false, "1.0.0"},
        {"0, 0, 0", false, "1.0.0"},
        {"0, 999, 999", false, "1.0.0"},
        {"1, 0, 0", false, "1.0.0"},
        {"1, 0, 1", true, "1.0.1"},
        {"1, 1, 0", true, "1.1.0"},
        {"2, 0, 0", true, "2.0.0"},
        {"0, 1000, 1", true, "0.1000.1"},
        {"2147483647, 0, 0", true, "2147483647.0.0"},
        {"1, -1, 0", false, "1.0.0"},
    };
    for (const auto& one : cases) {
        SCOPED_TRACE(one.stamp);
        OlderFile file;
        file.removeField("POS", "IDDG");
        file.write([&](jet::Database& database) {
            database.execute("DELETE * FROM RASP");
            database.execute(
                std::string("INSERT INTO RASP (IDR, appMajor, appMinor, appRevision) VALUES (1, ")
                + one.stamp + ")");
        });
        ScriptedPrompt prompt;
        if (one.newer)
            prompt.expect(Box::Information, newer);
        ASSERT_NE(Journal::openAndCheck(file.name(), false, prompt), nullptr);
        EXPECT_TRUE(prompt.done());
        EXPECT_EQ(file.value("SELECT appMajor & \".\" & appMinor & \".\" & appRevision FROM RASP"),
                  one.after);
        EXPECT_NE(file.reopen()->tableDef("POS").field("IDDG"), nullptr);
    }
}
