#include "jet/error.h"
#include "jet/storage/store.h"
#include "tests/support/memoryfiles.h"
#include "tests/support/outsidecheckers.h"

#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <set>
#include <sstream>

namespace jet {
namespace {

std::unique_ptr<Store> openSample(const std::filesystem::path& sample)
{
    return Store::open(FileSystem::system(), sample, OpenMode::ReadOnly);
}

// Rows of each table as other readers count them, by file.
std::map<std::string, std::map<std::string, int>> countedTables()
{
    std::map<std::string, std::map<std::string, int>> counted;
    const auto list = test::sampleFile("counts.tsv");
    if (!list)
        return counted;
    std::ifstream in(*list);
    std::string line;
    std::getline(in, line); // the heading
    while (std::getline(in, line)) {
        std::istringstream cells(line);
        std::string file, table, counter, rows;
        std::getline(cells, file, '\t');
        std::getline(cells, table, '\t');
        std::getline(cells, counter, '\t');
        std::getline(cells, rows, '\t');
        counted[file][table] = std::stoi(rows);
    }
    return counted;
}

TEST(Catalogue, ListsTheTablesThatOthersList)
{
    const auto counted = countedTables();
    if (counted.empty())
        GTEST_SKIP();
    for (const auto& sample : test::readableSamples()) {
        const std::string file = sample.filename().string();
        if (sample.extension() != ".mdb")
            continue;
        std::set<std::string> expected;
        if (counted.contains(file)) {
            for (const auto& [table, rows] : counted.at(file))
                expected.insert(table);
        }
        std::set<std::string> listed;
        const auto store = openSample(sample);
        for (const CatalogueObject& object : store->objects()) {
            if (object.isUserTable())
                listed.insert(object.name);
        }
        EXPECT_EQ(listed, expected) << file;
    }
}

TEST(Catalogue, EveryTableOfTheSamplesCanBeReadToItsEnd)
{
    for (const auto& [file, tables] : countedTables()) {
        const auto sample = test::sampleFile(file);
        if (!sample || sample->filename() == "with-password-v2003.mdb"
            || sample->filename() == "test-v1997.mdb" || sample->extension() == ".accdb")
            continue;
        const auto store = openSample(*sample);
        for (const auto& [table, rows] : tables)
            EXPECT_EQ(store->table(table).countRows(), rows) << file << ' ' << table;
    }
}

TEST(Catalogue, OpeningAndDescribingChangesNoByte)
{
    const auto samples = test::readableSamples();
    if (samples.empty())
        GTEST_SKIP();
    const test::TemporaryFolder folder;
    for (const auto& sample : samples) {
        const auto copy = test::copyOf(sample, folder);
        const auto before = test::bytesOf(copy);
        {
            const auto store = Store::open(FileSystem::system(), copy, OpenMode::Exclusive);
            for (const CatalogueObject& object : store->objects()) {
                const bool shown =
                    !object.isLocalTable() || !store->describe(object.name).fields.empty();
                EXPECT_TRUE(shown) << object.name;
            }
            StatementScope scope(*store);
            scope.done();
        }
        EXPECT_EQ(test::bytesOf(copy), before) << sample;
        EXPECT_FALSE(std::filesystem::exists(folder / "copy.mdb-journal"));
    }
}

TEST(Catalogue, DescribesFieldsAndIndexesAsDaoDoes)
{
    const auto sample = test::sampleFile("borey.mdb");
    if (!sample)
        GTEST_SKIP();
    const auto store = openSample(*sample);
    const TableDef goods = store->describe("товары"); // names compare without case
    EXPECT_EQ(goods.name, "Товары");
    EXPECT_FALSE(goods.system);
    const Field* key = goods.field("КодТовара");
    ASSERT_TRUE(key);
    EXPECT_EQ(key->type, FieldType::Long);
    EXPECT_EQ(key->attributes, attribute::kFixed | attribute::kAutoIncrement);
    EXPECT_EQ(&goods.fields.front(), key);
    const Field* name = goods.field("Марка");
    ASSERT_TRUE(name);
    EXPECT_EQ(name->type, FieldType::Text);
    EXPECT_EQ(name->size, 40);
    EXPECT_EQ(name->attributes, attribute::kVariable);
    EXPECT_TRUE(name->required);
    EXPECT_FALSE(name->allowZeroLength);
    EXPECT_EQ(goods.field("Цена")->type, FieldType::Currency);
    EXPECT_EQ(goods.field("Цена")->defaultValue, "0");
    const Index* primary = goods.index("PrimaryKey");
    ASSERT_TRUE(primary);
    EXPECT_TRUE(primary->primary && primary->unique && primary->required);
    EXPECT_EQ(primary->fieldList(), "+КодТовара");
    for (const Index& index : goods.indexes)
        EXPECT_FALSE(index.name.starts_with(".r")) << index.name;
}

TEST(Catalogue, HidesPartnersOfRelationshipsAndMarksForeignKeys)
{
    const auto sample = test::sampleFile("index-test-v2000.mdb");
    if (!sample)
        GTEST_SKIP();
    const auto store = openSample(*sample);
    int foreign = 0;
    for (const char* table : {"Table1", "Table2", "Table3"}) {
        for (const Index& index : store->describe(table).indexes) {
            EXPECT_FALSE(index.name.starts_with(".r"));
            foreign += index.foreign;
        }
    }
    EXPECT_EQ(foreign, 2);
}

TEST(Catalogue, KnowsIndexFlags)
{
    const auto sample = test::sampleFile("test-index-properties-v2000.mdb");
    if (!sample)
        GTEST_SKIP();
    const auto store = openSample(*sample);
    bool seen = false;
    for (const Index& index : store->describe("TableIgnoreNulls1").indexes)
        seen = seen || index.ignoreNulls;
    EXPECT_TRUE(seen);
}

TEST(Catalogue, NamesWhatDoesNotExist)
{
    const auto sample = test::sampleFile("borey.mdb");
    if (!sample)
        GTEST_SKIP();
    const auto store = openSample(*sample);
    EXPECT_EQ(store->findTable("Нет такой"), nullptr);
    try {
        store->table("Нет такой");
        ADD_FAILURE();
    } catch (const Error& error) {
        EXPECT_EQ(error.fault(), Fault::UnknownName);
        EXPECT_NE(std::string(error.what()).find("Нет такой"), std::string::npos);
    }
}

// A damaged catalogue is refused or read as far as it goes, but never crashes.
TEST(Catalogue, SurvivesDamageOfEveryPartOfTheSystemPages)
{
    const auto sample = test::sampleFile("empty-adox.mdb");
    if (!sample)
        GTEST_SKIP();
    const auto intact = test::bytesOf(*sample);
    int refused = 0;
    for (std::size_t at = kPageSize; at < intact.size(); at += 29) {
        auto bytes = intact;
        bytes[at] = static_cast<std::uint8_t>(bytes[at] ^ 0xFF);
        test::MemoryFiles files;
        files.setContent("damaged.mdb", bytes);
        try {
            const auto store = Store::open(files, "damaged.mdb", OpenMode::Exclusive);
            for (const char* table : {"MSysObjects", "MSysACEs", "MSysQueries"}) {
                if (store->findTable(table))
                    store->describe(table);
            }
            StatementScope scope(*store);
            store->createTable({.name = "T", .fields = {{.name = "A"}}});
            scope.done();
        } catch (const Error&) {
            ++refused;
        }
    }
    EXPECT_GT(refused, 0);
}

} // namespace
} // namespace jet
