#include "jet/compact.h"

#include "jet/database.h"
#include "jet/error.h"
#include "jet/storage/file.h"
#include "jet/storage/pager.h"
#include "tests/jet/tablecontent.h"
#include "tests/support/memoryfiles.h"
#include "tests/support/outsidecheckers.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#ifndef _WIN32
#include <sys/stat.h>
#endif

namespace jet {
namespace {

using test::MemoryFiles;
using test::TemporaryFolder;

const std::filesystem::path kOld = "folder/old.mdb";
const std::filesystem::path kNew = "folder/new.mdb";
const std::filesystem::path kBeside = "folder/new.mdb-compact";

Fault faultOf(const std::function<void()>& action)
{
    try {
        action();
    } catch (const Error& error) {
        return error.fault();
    }
    ADD_FAILURE() << "nothing was refused";
    return Fault::Io;
}

class CompactSample : public testing::TestWithParam<std::filesystem::path>
{};

TEST_P(CompactSample, KeepsEveryTableRowAndObject)
{
    const TemporaryFolder folder;
    const auto target = folder / "new.mdb";
    const CompactReport report = compactDatabase(GetParam(), target);
    EXPECT_TRUE(report.losses.empty());
    EXPECT_LE(report.bytesAfter, report.bytesBefore + 32 * kPageSize);
    EXPECT_EQ(report.bytesAfter, std::filesystem::file_size(target));
    EXPECT_EQ(test::harmfulFindings(FileSystem::system(), target), "");
    EXPECT_EQ(test::structuralErrors(target).value_or(""), "");
    test::expectSameContent(FileSystem::system(), GetParam(), target);
}

// A repair of a sound file loses nothing either.
TEST_P(CompactSample, RepairOfASoundFileIsACompaction)
{
    const TemporaryFolder folder;
    CompactOptions options;
    options.repair = true;
    const CompactReport report = compactDatabase(GetParam(), folder / "new.mdb", options);
    for (const Loss& loss : report.losses)
        ADD_FAILURE() << loss.table << " " << loss.page << " " << loss.row << " " << loss.text;
    test::expectSameContent(FileSystem::system(), GetParam(), folder / "new.mdb");
}

INSTANTIATE_TEST_SUITE_P(, CompactSample, testing::ValuesIn(test::readableSamples()),
                         [](const auto& sample) {
                             std::string name = sample.param.stem().string();
                             std::ranges::replace_if(
                                 name, [](char c) { return c == '-' || c == '.'; }, '_');
                             return name;
                         });
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(CompactSample);

// A small journal: lessons with notes, keyed by a counter, and groups.
void createTables(Database& database)
{
    database.execute("CREATE TABLE Groups (ID COUNTER CONSTRAINT PrimaryKey PRIMARY KEY, "
                     "NAIM TEXT(40))");
    database.execute("CREATE UNIQUE INDEX NAIM ON Groups (NAIM)");
    database.execute("CREATE TABLE Marks (ID COUNTER CONSTRAINT PrimaryKey PRIMARY KEY, "
                     "IDG INTEGER, D DATETIME, X BIT, NOTE MEMO, PHOTO LONGBINARY, M SMALLINT)");
    database.execute("CREATE INDEX IDG ON Marks (IDG, D DESC)");
}

std::vector<std::pair<std::string, Value>> markOf(int i)
{
    const std::size_t length = i % 3 == 0 ? 20 : i % 3 == 1 ? 700 : 6000;
    return {{"IDG", i % 17},
            {"D", DateTime{45000.0 + i % 300}},
            {"X", i % 2 == 0},
            {"NOTE", i % 5 == 0 ? Value() : Value(std::string(length, 'n') + std::to_string(i))},
            {"PHOTO", i % 11 == 0 ? Value(Bytes(5000, static_cast<std::uint8_t>(i))) : Value()},
            {"M", i % 6}};
}

void fill(Database& database, int groups, int marks)
{
    Transaction transaction(database);
    for (int i = 0; i < groups; ++i) {
        const std::pair<std::string, Value> row[] = {{"NAIM", "Группа ИС-" + std::to_string(i)}};
        database.insert("Groups", row);
    }
    for (int i = 0; i < marks; ++i)
        database.insert("Marks", markOf(i));
    transaction.commit();
}

void create(FileSystem& files, const std::filesystem::path& path, int marks = 60)
{
    const auto database = Database::create(files, path, {});
    createTables(*database);
    fill(*database, 20, marks);
}

TEST(Compact, GivesBackWhatAYearOfUseLeftBehind)
{
    const TemporaryFolder folder;
    constexpr int kMonths = 4, kMarks = 120;
    const auto used = folder / "used.mdb", fresh = folder / "fresh.mdb", compact = folder / "c.mdb";
    {
        const auto database = Database::create(used, {});
        createTables(*database);
        for (int month = 0; month < kMonths; ++month) {
            fill(*database, month == 0 ? 20 : 0, kMarks);
            database->execute("UPDATE Marks SET NOTE = NOTE & NOTE WHERE M = 1");
            database->execute("UPDATE Marks SET NOTE = \"short\" WHERE M = 2");
            database->execute("DELETE FROM Marks WHERE ID MOD 8 <> 0");
        }
        database->execute("ALTER TABLE Marks ADD COLUMN OLD TEXT(100)");
        database->execute("UPDATE Marks SET OLD = \"gone with its column\"");
        database->execute("ALTER TABLE Marks DROP COLUMN OLD");
    }
    const CompactReport report = compactDatabase(used, compact);
    test::expectSameContent(FileSystem::system(), used, compact);
    EXPECT_EQ(test::structuralErrors(compact).value_or(""), "");
    const auto exported = [](const std::filesystem::path& path) {
        return test::mdbtools("mdb-export", {path.string(), "Marks"}).value_or("");
    };
    std::string before = exported(used), after = exported(compact);
    EXPECT_EQ(std::ranges::count(before, '\n'), std::ranges::count(after, '\n'));

    // The same rows in the order of their keys, written for the first time.
    {
        const auto from = Database::open(compact, OpenMode::ReadOnly);
        const auto to = Database::create(fresh, {});
        createTables(*to);
        for (const char* table : {"Groups", "Marks"}) {
            std::vector<std::string> columns;
            for (const Field& field : from->tableDef(table).fields)
                columns.push_back(field.name);
            Transaction transaction(*to);
            Appender appender(*to, table, columns);
            for (const auto& row : from->rows(std::string("SELECT * FROM ") + table))
                appender.append(row);
            transaction.commit();
        }
        EXPECT_EQ(report.rows, 20 + from->rowCount("Marks"));
    }
    const auto freshSize = std::filesystem::file_size(fresh);
    EXPECT_LE(report.bytesAfter, freshSize + freshSize / 20);
    EXPECT_LT(report.bytesAfter, report.bytesBefore * 2 / 3);
    EXPECT_EQ(report.tables, 2U);
    EXPECT_EQ(exported(fresh), after);
    // Numbers of deleted rows do not come back.
    const auto again = Database::open(compact);
    EXPECT_EQ(again->insert("Marks", markOf(1)), kMonths * kMarks + 1);
}

TEST(Compact, EncodesAsTheOldFileOrAsAsked)
{
    for (const bool encoded : {false, true}) {
        for (const std::optional<bool> wanted : {std::optional<bool>(), {false}, {true}}) {
            MemoryFiles files;
            CreateOptions create;
            create.encoded = encoded;
            {
                const auto database = Database::create(files, kOld, create);
                createTables(*database);
                fill(*database, 3, 30);
            }
            CompactOptions options;
            options.encoded = wanted;
            compactDatabase(files, kOld, kNew, options);
            const auto pager = Pager::open(files, kNew, true);
            EXPECT_EQ(pager->header().databaseKey != 0, wanted.value_or(encoded));
            test::expectSameContent(files, kOld, kNew);
        }
    }
}

TEST(Compact, RefusesWhatIsInItsWay)
{
    const TemporaryFolder folder;
    const auto old = folder / "old.mdb", target = folder / "new.mdb";
    create(FileSystem::system(), old);
    std::filesystem::copy_file(old, target);
    std::filesystem::create_symlink(old, folder / "link.mdb");
    const auto before = test::bytesOf(target);
    EXPECT_EQ(faultOf([&] { compactDatabase(old, target); }), Fault::Exists);
    EXPECT_EQ(faultOf([&] { compactDatabase(old, old); }), Fault::Exists);
    EXPECT_EQ(faultOf([&] { compactDatabase(old, folder / "link.mdb"); }), Fault::Exists);
    EXPECT_EQ(faultOf([&] { compactDatabase(folder / "absent.mdb", folder / "x.mdb"); }),
              Fault::NotFound);
    EXPECT_EQ(faultOf([&] { compactDatabase(old, folder / "absent" / "x.mdb"); }), Fault::NotFound);
    EXPECT_TRUE(test::bytesOf(target) == before);
    const auto open = Database::open(old);
    EXPECT_EQ(faultOf([&] { compactDatabase(old, folder / "x.mdb"); }), Fault::Locked);
    EXPECT_EQ(faultOf([&] { compactInPlace(old); }), Fault::Locked);
    EXPECT_FALSE(std::filesystem::exists(folder / "x.mdb"));
}

TEST(Compact, LeavesNoFileBehindWhenItFails)
{
    MemoryFiles files;
    create(files, kOld);
    const auto before = files.content(kOld);
    int n = 0;
    for (bool failed = true; failed; ++n) {
        ASSERT_LT(n, 100);
        files.failAt(n, MemoryFiles::Failure::Once);
        failed = false;
        try {
            compactDatabase(files, kOld, kNew);
        } catch (const Error& error) {
            EXPECT_EQ(error.fault(), Fault::Io);
            failed = true;
        }
        files.failNever();
        EXPECT_EQ(files.exists(kNew), !failed) << n;
        EXPECT_FALSE(files.exists(kBeside)) << n;
        EXPECT_TRUE(files.content(kOld) == before);
    }
    EXPECT_GT(n, 8);
    test::expectSameContent(files, kOld, kNew);
}

TEST(Compact, TakesNoOffenceAtWhatACrashLeft)
{
    MemoryFiles files;
    create(files, kOld);
    files.setContent(kBeside, {1, 2, 3});
    compactDatabase(files, kOld, kNew);
    test::expectSameContent(files, kOld, kNew);
}

TEST(Compact, CanBeCancelledAtEveryReport)
{
    MemoryFiles files;
    create(files, kOld, 1100);
    std::vector<int> percents;
    CompactOptions options;
    options.progress = [&](int percent) {
        percents.push_back(percent);
        return true;
    };
    compactDatabase(files, kOld, kNew, options);
    files.remove(kNew);
    EXPECT_TRUE(std::ranges::is_sorted(percents));
    EXPECT_EQ(percents.back(), 100);
    EXPECT_GT(percents.size(), 6U);
    for (const int stopAt : percents) {
        options.progress = [stopAt](int percent) { return percent < stopAt; };
        EXPECT_TRUE(compactDatabase(files, kOld, kNew, options).cancelled) << stopAt;
        EXPECT_FALSE(files.exists(kNew)) << stopAt;
        EXPECT_FALSE(files.exists(kBeside)) << stopAt;
    }
}

TEST(Compact, InPlaceIsWholeAfterAPowerCutAtAnyMoment)
{
    MemoryFiles origin;
    create(origin, kOld);
    {
        const auto database = Database::open(origin, kOld, OpenMode::Exclusive);
        database->execute("DELETE FROM Marks WHERE ID MOD 3 <> 0");
    }
    const auto before = origin.content(kOld);
    bool sawOld = false, sawNew = false, done = false;
    for (int n = 0; !done; ++n) {
        ASSERT_LT(n, 100);
        MemoryFiles files;
        files.setContent(kOld, before);
        files.failAt(n, MemoryFiles::Failure::ForGood);
        try {
            compactInPlace(files, kOld);
            done = true;
        } catch (const Error&) {
        }
        files.powerCut(static_cast<unsigned>(n));
        const bool isOld = files.content(kOld) == before;
        sawOld = sawOld || isOld;
        sawNew = sawNew || !isOld;
        files.setContent("folder/before.mdb", before);
        test::expectSameContent(files, "folder/before.mdb", kOld);
    }
    EXPECT_TRUE(sawOld);
    EXPECT_TRUE(sawNew);
}

#ifndef _WIN32
TEST(Compact, InPlaceKeepsTheFilesPermissionsAndLink)
{
    const TemporaryFolder folder;
    const auto real = folder / "real.mdb", link = folder / "link.mdb";
    create(FileSystem::system(), real);
    const auto kept = folder / "kept.mdb";
    std::filesystem::copy_file(real, kept);
    std::filesystem::create_symlink(real, link);
    ASSERT_EQ(::chmod(real.c_str(), 0640), 0);
    const CompactReport report = compactInPlace(link);
    EXPECT_EQ(report.bytesAfter, std::filesystem::file_size(real));
    EXPECT_TRUE(std::filesystem::is_symlink(link));
    struct stat info = {};
    ASSERT_EQ(::stat(real.c_str(), &info), 0);
    EXPECT_EQ(info.st_mode & 0777, 0640U);
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder / ""), {}), 3);
    test::expectSameContent(FileSystem::system(), kept, real);
    Database::open(real)->execute("DELETE FROM Marks");
}
#endif

} // namespace
} // namespace jet
