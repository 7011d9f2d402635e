#include "data/convert.h"
#include "data/journal.h"
#include "jet/storage/store.h"
#include "tests/data/olderfile.h"
#include "tests/support/scriptedprompt.h"

#include <gtest/gtest.h>

#include <fstream>

using namespace Qt::StringLiterals;
using data::Journal;
using jet::FieldType;

namespace {

// Opens a file that must be refused with one critical message and must not change.
void expectRefusal(const OlderFile& file, const QString& message)
{
    const auto before = file.bytes();
    ScriptedPrompt prompt;
    prompt.expect(Box::Critical, message);
    EXPECT_EQ(Journal::openAndCheck(file.name(), false, prompt), nullptr);
    EXPECT_TRUE(file.bytes() == before) << "the refused file was changed";
    EXPECT_EQ(file.leftovers(), std::vector<std::string>{});
}

// Makes the catalogue call a table a stored query, as Access keeps one.
void makeQuery(jet::Store& store, const std::string& table)
{
    jet::StatementScope statement(store);
    jet::Table& objects = store.table("MSysObjects");
    const jet::Definition& definition = objects.definition();
    std::vector<jet::Value> values(definition.columns.size());
    jet::RowPointer pointer;
    for (jet::TableScan rows = objects.scan(); pointer.isNull() && rows.next();) {
        if (rows.row().value(definition.columnPosition("Name")) == jet::Value(table))
            pointer = rows.row().pointer();
        for (std::size_t i = 0; i < values.size(); ++i)
            values[i] = rows.row().value(static_cast<int>(i));
    }
    values[static_cast<std::size_t>(definition.columnPosition("Type"))] = 5;
    objects.update(pointer, values);
    statement.done();
}

struct Fault
{
    const char* what;
    std::function<void(OlderFile&)> cause;
    QString message;
};

const std::vector<Fault>& structureFaults()
{
    static const std::vector<Fault> faults = {
        {"field absent", [](OlderFile& file) { file.removeField("SPSTUD", "FAM"); },
         u"Обнаружены ошибки в структуре файла базы данных! В таблице: SPSTUD отсутствует поле: "
         "FAM. Продолжение работы с этим файлом невозможно."_s},
        {"version field absent", [](OlderFile& file) { file.removeField("RASP", "appMinor"); },
         u"Обнаружены ошибки в структуре файла базы данных! В таблице: RASP отсутствует поле: "
         "appMinor. Продолжение работы с этим файлом невозможно."_s},
        {"field that the upgrade resizes absent",
         [](OlderFile& file) { file.removeField("SPPREP", "FAMIO"); },
         u"Обнаружены ошибки в структуре файла базы данных! В таблице: SPPREP отсутствует поле: "
         "FAMIO. Продолжение работы с этим файлом невозможно."_s},
        {"a number where a memo belongs",
         [](OlderFile& file) {
             file.field("SPSTUD", "KURS") = {"KURS", FieldType::Integer, 2, 1};
         },
         u"Тип данных поля KURS таблицы SPSTUD не соответствует формату. Продолжение работы "
         "невозможно."_s},
        {"an added field of another type",
         [](OlderFile& file) {
             file.field("POS", "IDDG") = {"IDDG", FieldType::Byte, 1, 1};
         },
         u"Тип данных поля IDDG таблицы POS не соответствует формату. Продолжение работы "
         "невозможно."_s},
        {"a resized field of another type",
         [](OlderFile& file) {
             file.field("SPOTD", "KOD") = {"KOD", FieldType::Long, 4, 1};
         },
         u"Тип данных поля KOD таблицы SPOTD не соответствует формату. Продолжение работы "
         "невозможно."_s},
        {"text of another size", [](OlderFile& file) { file.field("SPPREP", "TABNOM").size = 20; },
         u"Размер поля TABNOM таблицы SPPREP не соответствует формату. Продолжение работы "
         "невозможно."_s},
        {"an added text of another size",
         [](OlderFile& file) { file.field("SPSTUD", "prikazOtch").size = 100; },
         u"Размер поля prikazOtch таблицы SPSTUD не соответствует формату. Продолжение работы "
         "невозможно."_s},
        {"a key that does not count",
         [](OlderFile& file) { file.field("EXAM", "IDE").attributes = 1; },
         u"Параметры поля IDE таблицы EXAM не соответствуют формату. Продолжение работы "
         "невозможно."_s},
        {"index absent", [](OlderFile& file) { file.table("SPGRUP").indexes.clear(); },
         u"Параметры индекса PrimaryKey таблицы SPGRUP не соответствуют формату. Продолжение "
         "работы невозможно."_s},
        {"index on another field",
         [](OlderFile& file) { file.table("UROKI").indexes.at(0).fields = "+IDP"; },
         u"Параметры индекса IDG таблицы UROKI не соответствуют формату. Продолжение работы "
         "невозможно."_s},
        {"index in another order",
         [](OlderFile& file) { file.table("UROKI").indexes.at(2).fields = "-IDR"; },
         u"Параметры индекса IDR таблицы UROKI не соответствуют формату. Продолжение работы "
         "невозможно."_s},
        {"a user table in a wrong shape",
         [](OlderFile& file) { file.field("USERS", "PSSW").size = 50; },
         u"Размер поля PSSW таблицы USERS не соответствует формату. Продолжение работы "
         "невозможно."_s},
        {"two faults: the first in order is told",
         [](OlderFile& file) {
             file.table("EXAM").indexes.clear(); // indexes come after all fields
             file.removeField("SPOTD", "SOKR");
             file.removeField("POS", "UR");
         },
         u"Обнаружены ошибки в структуре файла базы данных! В таблице: POS отсутствует поле: "
         "UR. Продолжение работы с этим файлом невозможно."_s},
    };
    return faults;
}

} // namespace

TEST(Refusal, StructureFaultsAreToldWordForWordAndChangeNothing)
{
    for (const Fault& fault : structureFaults()) {
        SCOPED_TRACE(fault.what);
        OlderFile file;
        file.removeTable("SPTIPZ"); // would be created, were the file not refused
        fault.cause(file);
        file.write();
        expectRefusal(file, fault.message);
    }
}

TEST(Refusal, ATableWhoseNameIsTakenIsMissing)
{
    OlderFile file;
    file.removeTable("SPTIPZ");
    file.write([](jet::Database& database) {
        database.execute("CREATE TABLE SPTIPZ (A INTEGER)");
        makeQuery(database.store(), "SPTIPZ");
    });
    expectRefusal(file, u"Обнаружены ошибки в структуре файла базы данных! Отсутствует таблица: "
                        "SPTIPZ. Продолжение работы с этим файлом невозможно."_s);
}

TEST(Refusal, AMissingFileIsNamedAndNotCreated)
{
    const jet::test::TemporaryFolder folder;
    const auto path = folder / "нет такого.mdb";
    ScriptedPrompt prompt;
    const QString name = data::fromPath(path);
    prompt.expect(Box::Critical, u"Файл базы данных "_s + name + u" не найден!"_s);
    EXPECT_EQ(Journal::openAndCheck(name, false, prompt), nullptr);
    EXPECT_FALSE(std::filesystem::exists(path));

    const QString parent = data::fromPath(path.parent_path());
    prompt.expect(Box::Critical, u"Файл базы данных "_s + parent + u" не найден!"_s);
    EXPECT_EQ(Journal::openAndCheck(parent, false, prompt), nullptr);
}

TEST(Refusal, ADatabaseWithoutSettingsIsNoJournal)
{
    OlderFile file;
    file.removeTable("RASP");
    file.write();
    expectRefusal(file, u"Файл "_s + file.name()
                            + u" не является базой данных журнала: в нем нет таблицы RASP."_s);
}

TEST(Refusal, SettingsWithoutTheirRowAreRefused)
{
    OlderFile file;
    file.write([](jet::Database& database) { database.execute("DELETE * FROM RASP"); });
    expectRefusal(file, u"Файл базы данных "_s + file.name()
                            + u" не открыт: в таблице RASP нет строки с настройками."_s);
}

TEST(Refusal, AnOpenFileIsLocked)
{
    OlderFile file;
    file.write();
    const auto other = jet::Database::open(file.path());
    ScriptedPrompt prompt;
    prompt.expectMatching(Box::Critical, u"^Файл базы данных .* не открыт\\. Ошибка: .+\\.$"_s);
    EXPECT_EQ(Journal::openAndCheck(file.name(), false, prompt), nullptr);
}

TEST(Refusal, OtherFilesAreRefusedUnchanged)
{
    OlderFile file;
    const std::string contents[] = {"", "text", std::string(40'000, '\0'), std::string(3, '\1')};
    for (const std::string& content : contents) {
        std::ofstream(file.path(), std::ios::binary) << content;
        const auto before = file.bytes();
        ScriptedPrompt prompt;
        prompt.expectMatching(Box::Critical, u"^Файл базы данных .* не открыт\\. Ошибка: .+\\.$"_s);
        EXPECT_EQ(Journal::openAndCheck(file.name(), false, prompt), nullptr);
        EXPECT_TRUE(file.bytes() == before);
        EXPECT_EQ(file.leftovers(), std::vector<std::string>{});
    }
}

TEST(Refusal, SamplesThatAreNoJournalAreRefusedUnchanged)
{
    const char* const samples[] = {"borey.mdb", "with-password-v2003.mdb", "test-v1997.mdb",
                                   "access2010.accdb", "not-access-lmdb.mdb"};
    for (const char* name : samples) {
        const auto sample = jet::test::sampleFile(name);
        if (!sample)
            GTEST_SKIP() << "no sample files";
        const jet::test::TemporaryFolder folder;
        const auto copy = jet::test::copyOf(*sample, folder);
        const auto before = jet::test::bytesOf(copy);
        ScriptedPrompt prompt;
        prompt.expectMatching(Box::Critical, u"^Файл .*"_s);
        EXPECT_EQ(Journal::openAndCheck(data::fromPath(copy), false, prompt), nullptr) << name;
        EXPECT_TRUE(jet::test::bytesOf(copy) == before) << name;
    }
}
