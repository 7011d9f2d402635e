#include "jet/error.h"
#include "jet/storage/store.h"
#include "tests/jet/schemahelpers.h"
#include "tests/support/outsidecheckers.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>

namespace jet {
namespace {

using test::counter;
using test::indexOn;
using test::memo;
using test::primaryKey;
using test::text;

TEST(SchemaChangeOnSamples, RelationshipsForbidDropping)
{
    const auto sample = test::sampleFile("index-test-v2000.mdb");
    if (!sample)
        GTEST_SKIP();
    const test::TemporaryFolder folder;
    const auto copy = test::copyOf(*sample, folder);
    const auto before = test::bytesOf(copy);
    {
        const auto store = Store::open(FileSystem::system(), copy, OpenMode::Exclusive);
        StatementScope scope(*store);
        for (const char* table : {"Table1", "Table2", "Table3"}) {
            EXPECT_THROW(store->dropTable(table), Error);
            for (const Index& index : store->describe(table).indexes) {
                const bool referenced = index.primary && std::string(table) != "Table1";
                if (!index.foreign && !referenced)
                    continue;
                EXPECT_THROW(store->dropIndex(table, index.name), Error) << index.name;
            }
        }
    }
    EXPECT_EQ(test::bytesOf(copy), before);
}

// Lines that the checker says after a change but not before it.
std::vector<std::string> newFindings(const std::string& before, const std::string& after)
{
    const auto lines = [](const std::string& text) {
        std::vector<std::string> list;
        for (std::size_t at = 0; at < text.size();) {
            const std::size_t end = std::min(text.find('\n', at), text.size());
            if (text.compare(at, 6, "error:") == 0)
                list.push_back(text.substr(at, end - at));
            at = end + 1;
        }
        std::sort(list.begin(), list.end());
        return list;
    };
    std::vector<std::string> fresh;
    const auto old = lines(before);
    const auto now = lines(after);
    std::set_difference(now.begin(), now.end(), old.begin(), old.end(), std::back_inserter(fresh));
    return fresh;
}

TEST(SchemaChangeOnSamples, EveryFileStaysSound)
{
    const auto samples = test::readableSamples();
    if (samples.empty())
        GTEST_SKIP();
    const test::TemporaryFolder folder;
    for (const auto& sample : samples) {
        if (sample.filename() == "system-1251.mdw")
            continue; // its collating order is only read
        const auto copy = test::copyOf(sample, folder);
        const std::string before = test::structuralErrors(copy).value_or("");
        std::vector<std::string> tables;
        {
            const auto store = Store::open(FileSystem::system(), copy, OpenMode::Exclusive);
            for (const CatalogueObject& object : store->objects()) {
                if (object.isUserTable())
                    tables.push_back(object.name);
            }
            const auto change = [&](const std::function<void()>& action) {
                StatementScope scope(*store);
                action();
                scope.done();
            };
            change([&] {
                store->createTable({.name = "Новая таблица",
                                    .fields = {counter("Код"), text("Имя"), memo("Заметки")},
                                    .indexes = {primaryKey("Код"), indexOn("Имя", {"Имя"})}});
                for (int i = 0; i < 50; ++i)
                    store->table("Новая таблица")
                        .insert(
                            std::vector<Value>{Value(), std::to_string(i), std::string(4000, 'z')});
            });
            for (const std::string& table : tables) {
                change([&] { store->appendField(table, text("Добавка")); });
                change([&] { store->appendField(table, memo("Памятка")); });
                change([&] { store->createIndex(table, indexOn("По добавке", {"Добавка"})); });
            }
        }
        EXPECT_TRUE(newFindings(before, test::structuralErrors(copy).value_or("")).empty())
            << sample << test::structuralErrors(copy).value_or("");
        {
            const auto store = Store::open(FileSystem::system(), copy, OpenMode::Exclusive);
            StatementScope scope(*store);
            for (const std::string& table : tables) {
                store->dropIndex(table, "По добавке");
                store->dropField(table, "Добавка");
                store->dropField(table, "Памятка");
            }
            store->dropTable("Новая таблица");
            scope.done();
        }
        EXPECT_TRUE(newFindings(before, test::structuralErrors(copy).value_or("")).empty())
            << sample << test::structuralErrors(copy).value_or("");
    }
}

} // namespace
} // namespace jet
