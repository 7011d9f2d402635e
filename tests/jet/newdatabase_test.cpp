#include "jet/error.h"
#include "jet/storage/newdatabase.h"
#include "jet/storage/store.h"
#include "tests/support/memoryfiles.h"
#include "tests/support/outsidecheckers.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace jet {
namespace {

using test::MemoryFiles;

constexpr CreateOptions kOptions[] = {
    {false, 0x0409, 1252}, {true, 0x0409, 1252}, {true, 0x0409, 1251}};

TEST(NewDatabase, OtherReadersFindNoError)
{
    for (const CreateOptions& options : kOptions) {
        const test::TemporaryFolder folder;
        const auto path = folder / "new.mdb";
        Store::create(FileSystem::system(), path, options);
        EXPECT_EQ(std::filesystem::file_size(path), 65536u);
        EXPECT_EQ(test::structuralErrors(path).value_or(""), "");
        EXPECT_EQ(test::mdbtools("mdb-ver", {path.string()}).value_or("JET4\n"), "JET4\n");
        EXPECT_EQ(test::mdbtools("mdb-count", {path.string(), "MSysObjects"}).value_or("8\n"),
                  "8\n");
    }
}

TEST(NewDatabase, OpensAgainWithItsCatalogue)
{
    for (const CreateOptions& options : kOptions) {
        MemoryFiles files;
        Store::create(files, "new.mdb", options);
        const auto store = Store::open(files, "new.mdb", OpenMode::Exclusive);
        ASSERT_EQ(store->objects().size(), 8u);
        EXPECT_EQ(store->objects()[0].name, "Tables");
        EXPECT_EQ(store->objects()[7].name, "MSysRelationships");
        EXPECT_EQ(store->table("msysaces").countRows(), 16);
        EXPECT_EQ(store->table("MSysRelationships").countRows(), 0);
        EXPECT_EQ(store->pager().header().codePage, options.codePage);
        EXPECT_EQ(store->pager().header().databaseKey != 0, options.encoded);
        EXPECT_TRUE(std::none_of(store->objects().begin(), store->objects().end(),
                                 [](const CatalogueObject& o) { return o.isUserTable(); }));
    }
}

TEST(NewDatabase, RefusesAnExistingFile)
{
    MemoryFiles files;
    files.setContent("new.mdb", {1, 2, 3});
    try {
        Store::create(files, "new.mdb", {});
        ADD_FAILURE();
    } catch (const Error& error) {
        EXPECT_EQ(error.fault(), Fault::Exists);
    }
    EXPECT_EQ(files.content("new.mdb"), (Bytes{1, 2, 3}));
}

TEST(NewDatabase, RefusesACollatingOrderWhoseKeysAreNotKnown)
{
    MemoryFiles files;
    try {
        Store::create(files, "new.mdb", {false, 0x0419, 1251});
        ADD_FAILURE();
    } catch (const Error& error) {
        EXPECT_EQ(error.fault(), Fault::Unsupported);
    }
    EXPECT_FALSE(files.exists("new.mdb"));
}

// Makes equal what the engine leaves as its memory happened to be and what depends on the
// second in which a row was made.
void normalise(Bytes& image)
{
    for (PageNumber number = 1; number < image.size() / kPageSize; ++number) {
        const ByteSpan page = ByteSpan(image).subspan(number * kPageSize, kPageSize);
        if (page[0] == 2) {
            const Bytes definition =
                encodeDefinition(decodeDefinition(page.first(get32(page, 8)), number));
            std::copy(definition.begin() + 8, definition.end(), page.begin() + 8);
            std::fill(page.begin() + static_cast<std::ptrdiff_t>(definition.size()), page.end(), 0);
        } else if (page[0] == 4) {
            std::fill(page.end() - get16(page, 2), page.end(), 0);
        } else if (page[0] == 1) {
            const std::size_t rows = get16(page, 12);
            const std::size_t lowest = get16(page, 12 + 2 * rows) & 0x1FFF;
            std::fill(page.begin() + static_cast<std::ptrdiff_t>(14 + 2 * rows),
                      page.begin() + static_cast<std::ptrdiff_t>(lowest), 0);
            // DateCreate and DateUpdate of MSysObjects.
            for (std::size_t row = 0; number == 14 && row < rows; ++row)
                std::fill_n(page.begin() + get16(page, 14 + 2 * row) + 12, 16, 0);
        }
    }
}

TEST(NewDatabase, EqualsTheFileOfTheEngineOfAccess)
{
    const auto sample = test::sampleFile("empty-adox.mdb");
    if (!sample)
        GTEST_SKIP();
    Bytes theirs = test::bytesOf(*sample);
    const DatabaseHeader header = Pager::open(FileSystem::system(), *sample, true)->header();
    Bytes ours = newDatabaseImage(header);
    ASSERT_EQ(ours.size(), theirs.size());
    normalise(ours);
    normalise(theirs);
    for (std::size_t at = 0; at < ours.size(); ++at)
        ASSERT_EQ(ours[at], theirs[at]) << "page " << at / kPageSize << ", " << at % kPageSize;
}

} // namespace
} // namespace jet
