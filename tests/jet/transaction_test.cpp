#include "jet/error.h"
#include "jet/storage/store.h"
#include "tests/support/memoryfiles.h"

#include <gtest/gtest.h>

namespace jet {
namespace {

using test::MemoryFiles;

const std::filesystem::path kPath = "base.mdb";

TableDef sampleTable(const std::string& name)
{
    Index key{.name = "PrimaryKey", .fields = {{"A", false}}, .primary = true};
    return {.name = name,
            .fields = {{.name = "A", .type = FieldType::Long},
                       {.name = "B", .type = FieldType::Text, .size = 50},
                       {.name = "M", .type = FieldType::Memo}},
            .indexes = {key}};
}

void createSample(Store& store, const std::string& name)
{
    StatementScope scope(store);
    store.createTable(sampleTable(name));
    for (int i = 0; i < 60; ++i)
        store.table(name).insert(
            std::vector<Value>{i, "текст " + std::to_string(i), std::string(3000, 'm')});
    scope.done();
}

class Transactions : public testing::Test
{
protected:
    void SetUp() override
    {
        Store::create(files, kPath, {});
        open();
    }
    void open(OpenMode mode = OpenMode::Exclusive)
    {
        store.reset();
        store = Store::open(files, kPath, mode);
    }

    MemoryFiles files;
    std::unique_ptr<Store> store;
};

TEST_F(Transactions, AStatementThatIsNotDoneLeavesNoTrace)
{
    const Bytes before = files.content(kPath);
    const std::uint64_t version = store->schemaVersion();
    {
        StatementScope scope(*store);
        store->createTable(sampleTable("T"));
        EXPECT_NE(store->findTable("T"), nullptr);
    }
    EXPECT_EQ(store->findTable("T"), nullptr);
    EXPECT_GT(store->schemaVersion(), version);
    EXPECT_FALSE(store->inTransaction());
    EXPECT_EQ(files.content(kPath), before);
    createSample(*store, "T"); // takes the same pages again
    EXPECT_EQ(store->table("T").countRows(), 60);
}

TEST_F(Transactions, ARefusedStatementKeepsWhatWasDoneBeforeIt)
{
    store->beginTransaction();
    createSample(*store, "T");
    try {
        StatementScope scope(*store);
        store->table("T").insert(std::vector<Value>{1000, "новая", Value()});
        store->table("T").insert(std::vector<Value>{5, "занятый ключ", Value()});
        ADD_FAILURE();
    } catch (const Error& error) {
        EXPECT_EQ(error.fault(), Fault::Duplicate);
    }
    EXPECT_EQ(store->table("T").countRows(), 60);
    EXPECT_EQ(files.content(kPath).size(), 65536u); // nothing written yet
    store->commitTransaction();
    open();
    EXPECT_EQ(store->table("T").countRows(), 60);
}

TEST_F(Transactions, OnlyTheOutermostCommitWrites)
{
    const Bytes before = files.content(kPath);
    store->beginTransaction();
    store->beginTransaction();
    createSample(*store, "T");
    store->commitTransaction();
    EXPECT_EQ(files.content(kPath), before);
    store->commitTransaction();
    EXPECT_NE(files.content(kPath), before);
}

TEST_F(Transactions, AnInnerRollbackUndoesTheWhole)
{
    const Bytes before = files.content(kPath);
    store->beginTransaction();
    createSample(*store, "T");
    store->beginTransaction();
    store->rollbackTransaction();
    EXPECT_EQ(store->findTable("T"), nullptr);
    EXPECT_THROW(createSample(*store, "U"), Error);
    EXPECT_THROW(store->beginTransaction(), Error);
    EXPECT_THROW(store->commitTransaction(), Error);
    EXPECT_FALSE(store->inTransaction());
    EXPECT_EQ(files.content(kPath), before);
    createSample(*store, "T");
    EXPECT_EQ(store->table("T").countRows(), 60);
}

TEST_F(Transactions, AReadOnlyFileRefusesEveryChange)
{
    createSample(*store, "T");
    open(OpenMode::ReadOnly);
    const Bytes before = files.content(kPath);
    const Field field{.name = "X", .type = FieldType::Long};
    const std::function<void()> changes[] = {
        [&] { store->createTable(sampleTable("U")); },
        [&] { store->dropTable("T"); },
        [&] { store->appendField("T", field); },
        [&] { store->dropField("T", "B"); },
        [&] {
            store->createIndex("T", {.name = "I", .fields = {{"B", false}}});
        },
        [&] { store->dropIndex("T", "PrimaryKey"); },
        [&] {
            store->table("T").insert(std::vector<Value>{100, "x", Value()});
        },
    };
    for (const auto& change : changes) {
        try {
            StatementScope scope(*store);
            change();
            ADD_FAILURE();
        } catch (const Error& error) {
            EXPECT_EQ(error.fault(), Fault::ReadOnly) << error.what();
        }
    }
    EXPECT_EQ(store->table("T").countRows(), 60);
    EXPECT_EQ(files.content(kPath), before);
}

TEST_F(Transactions, AnyFailingOperationLeavesBeforeOrAfter)
{
    createSample(*store, "T");
    store.reset();
    const Bytes before = files.content(kPath);
    for (const auto failure : {MemoryFiles::Failure::Once, MemoryFiles::Failure::ForGood}) {
        for (int n = 0;; ++n) {
            ASSERT_LT(n, 1000);
            files.setContent(kPath, before);
            open();
            files.failAt(n, failure);
            bool failed = false;
            try {
                StatementScope scope(*store);
                store->dropIndex("T", "PrimaryKey");
                store->dropField("T", "M");
                store->createTable(sampleTable("U"));
                scope.done();
            } catch (const Error&) {
                failed = true;
            }
            EXPECT_EQ(store->inTransaction(), false);
            files.failNever();
            if (failed && failure == MemoryFiles::Failure::Once) {
                EXPECT_EQ(store->findTable("U"), nullptr);
                EXPECT_EQ(store->table("T").countRows(), 60);
                EXPECT_EQ(store->describe("T").fields.size(), 3u);
            }
            open();
            // A disk that dies after the last page has been written leaves the step done.
            const bool mayBeDone = failure == MemoryFiles::Failure::ForGood;
            if (failed && !(mayBeDone && store->findTable("U"))) {
                ASSERT_EQ(files.content(kPath), before) << n;
                continue;
            }
            if (failed) {
                EXPECT_EQ(store->table("T").countRows(), 60) << n;
                EXPECT_EQ(store->describe("T").fields.size(), 2u) << n;
                continue;
            }
            EXPECT_NE(store->findTable("U"), nullptr);
            break;
        }
    }
}

TEST_F(Transactions, AFullDiskRefusesTheStatementAndKeepsTheFile)
{
    createSample(*store, "T");
    const Bytes before = files.content(kPath);
    files.limitFileSize(before.size());
    try {
        createSample(*store, "U");
        ADD_FAILURE();
    } catch (const Error& error) {
        EXPECT_EQ(error.fault(), Fault::DiskFull);
    }
    EXPECT_EQ(files.content(kPath), before);
    EXPECT_EQ(store->table("T").countRows(), 60);
    files.limitFileSize(~std::uint64_t{0});
    createSample(*store, "U");
    open();
    EXPECT_EQ(store->table("U").countRows(), 60);
}

} // namespace
} // namespace jet
