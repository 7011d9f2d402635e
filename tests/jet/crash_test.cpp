// Stops every step of a mixed workload at every operation on files, in every way that we can
// think of, and looks what a later opening finds.
#include "jet/error.h"
#include "jet/storage/journal.h"
#include "jet/storage/pager.h"
#include "tests/jet/crashworkload.h"
#include "tests/support/outsidecheckers.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iostream>
#include <unordered_set>

namespace jet::test {
namespace {

using Content = std::vector<std::uint8_t>;

// The bytes and the content before and after one step that nothing disturbs.
struct Scene
{
    CrashStep step;
    Content bytes;
    std::string before, after;
    int operations = 0;
};

struct Way
{
    const char* name;
    MemoryFiles::Failure failure;
    MemoryFiles::Tear tear;
    Fault fault;
    bool lateRemoval = false;
    bool forgetful = false; // a failed sync loses what it was to write
    bool powerCut = false;
    bool lasts = false; // when the file is opened again, it still cannot grow
};

std::ostream& operator<<(std::ostream& out, const Way& way)
{
    return out << way.name;
}

class Crash : public testing::TestWithParam<Way>
{
protected:
    static void SetUpTestSuite();
    static void TearDownTestSuite() { scenes().clear(); }

    static std::vector<Scene>& scenes()
    {
        static std::vector<Scene> all;
        return all;
    }

    void tryPoint(const Scene& scene, int n);
    // Whether the step was refused.
    bool runStopped(const Scene& scene, int n, MemoryFiles& files);
    void expectUsable(const Scene& scene, Database& db);
    void expectWhole(const Scene& scene, MemoryFiles& files, bool failed);
    void expectFaultless(const Content& bytes, Database& db);
    void askOutside(const Content& bytes);

    int points = 0;
    int refusals = 0; // of the open database after a failure
    int afterFailure = 0;
    int outsideChecks = 0;
    bool mustBeAfter = false;
    std::unordered_set<std::string> checked;
};

void Crash::SetUpTestSuite()
{
    MemoryFiles files;
    makeCrashDatabase(*Database::create(files, kCrashPath, {}));
    for (CrashStep& step : crashSteps()) {
        Scene scene{std::move(step), files.content(kCrashPath), {}, {}};
        const auto db = Database::open(files, kCrashPath, OpenMode::Exclusive);
        scene.before = contentText(*db);
        files.failAt(-1, MemoryFiles::Failure::Once);
        scene.step.run(*db);
        scene.operations = files.operations();
        scene.after = contentText(*db);
        ASSERT_NE(scene.before, scene.after) << scene.step.name;
        ASSERT_GT(scene.operations, 6) << scene.step.name;
        scenes().push_back(std::move(scene));
    }
}

bool Crash::runStopped(const Scene& scene, int n, MemoryFiles& files)
{
    const Way& way = GetParam();
    const auto db = Database::open(files, kCrashPath, OpenMode::Exclusive);
    files.tearWrites(way.tear, static_cast<unsigned>(n));
    files.failRemovalsLate(way.lateRemoval);
    files.forgetAtFailedSyncs(way.forgetful);
    files.failAt(n, way.failure, way.fault);
    bool failed = false;
    try {
        scene.step.run(*db);
    } catch (const Error& error) {
        failed = true;
        EXPECT_EQ(error.fault(), way.fault) << error.what();
    }
    if (way.failure == MemoryFiles::Failure::ForGood)
        return failed;
    EXPECT_TRUE(failed || way.failure == MemoryFiles::Failure::NoRoom);
    if (!way.lasts)
        files.failNever();
    if (failed)
        expectUsable(scene, *db);
    return failed;
}

// After a failure that has passed the same database goes on, or refuses and says why.
void Crash::expectUsable(const Scene& scene, Database& db)
{
    try {
        EXPECT_EQ(contentText(db), scene.before);
        scene.step.run(db);
        EXPECT_EQ(contentText(db), scene.after);
        mustBeAfter = true;
    } catch (const Error& error) {
        ++refusals;
        const bool reopen =
            std::string(error.what()).find("закрыть и открыть") != std::string::npos;
        EXPECT_TRUE(GetParam().lasts ? error.fault() == GetParam().fault : reopen) << error.what();
    }
}

void Crash::tryPoint(const Scene& scene, int n)
{
    ++points;
    mustBeAfter = false;
    MemoryFiles files;
    files.setContent(kCrashPath, scene.bytes);
    const bool failed = runStopped(scene, n, files);
    if (!GetParam().lasts)
        files.failNever();
    if (GetParam().powerCut)
        files.powerCut(static_cast<unsigned>(points));
    expectWhole(scene, files, failed && !mustBeAfter);
}

void Crash::expectWhole(const Scene& scene, MemoryFiles& files, bool failed)
{
    const auto db = Database::open(files, kCrashPath, OpenMode::Exclusive);
    EXPECT_FALSE(files.exists(journalPath(kCrashPath)));
    const Content bytes = files.content(kCrashPath);
    if (bytes == scene.bytes) {
        EXPECT_TRUE(failed) << "an acknowledged step is lost";
        return;
    }
    const std::string content = contentText(*db);
    if (content == scene.after)
        afterFailure += failed ? 1 : 0;
    else
        EXPECT_TRUE(failed && content == scene.before) << "neither before nor after";
    expectFaultless(bytes, *db);
}

void Crash::expectFaultless(const Content& bytes, Database& db)
{
    if (!checked.insert(std::string(bytes.begin(), bytes.end())).second)
        return;
    EXPECT_EQ(harmfulFindings(db), "");
    if (static_cast<int>(checked.size()) % crashStride(12) == 0)
        askOutside(bytes);
}

void Crash::askOutside(const Content& bytes)
{
    const TemporaryFolder folder;
    const std::filesystem::path path = folder / "crashed.mdb";
    std::ofstream(path, std::ios::binary)
        .write(reinterpret_cast<const char*>(bytes.data()),
               static_cast<std::streamsize>(bytes.size()));
    const auto errors = structuralErrors(path);
    const auto tables = mdbtools("mdb-tables", {path.string()});
    EXPECT_EQ(errors.value_or(""), "");
    EXPECT_EQ(tables.value_or("").find("exit"), std::string::npos) << *tables;
    outsideChecks += errors || tables ? 1 : 0;
}

TEST_P(Crash, LeavesEveryStepDoneOrUndone)
{
    const int step = crashStride(4);
    int turn = 0;
    for (const Scene& scene : scenes()) {
        for (int n = turn++ % step; n < scene.operations; n += step) {
            SCOPED_TRACE(scene.step.name + ", operation " + std::to_string(n));
            ASSERT_NO_THROW(tryPoint(scene, n));
            if (HasFailure())
                return;
        }
    }
    std::cout << "  points " << points << ", files checked deeply " << checked.size()
              << ", by other programs " << outsideChecks << ", done though reported as failed "
              << afterFailure << ", open databases that refused to go on " << refusals << '\n';
    RecordProperty("points", points);
}

using enum MemoryFiles::Failure;
using enum MemoryFiles::Tear;

INSTANTIATE_TEST_SUITE_P(
    Ways, Crash,
    testing::Values(Way{"refusedOnce", Once, FirstHalf, Fault::Io},
                    Way{"tornOnce", Once, RandomSectors, Fault::Io},
                    Way{"removedLate", Once, FirstHalf, Fault::Io, true},
                    Way{"syncForgets", Once, FirstHalf, Fault::Io, false, true, true},
                    Way{"fullForAWhile", NoRoom, FirstHalf, Fault::DiskFull},
                    Way{"fullForGood", NoRoom, FirstHalf, Fault::DiskFull, false, false, false,
                        true},
                    Way{"fullTorn", NoRoom, RandomSectors, Fault::DiskFull, false, false, true},
                    Way{"killed", ForGood, FirstHalf, Fault::Io},
                    Way{"killedTorn", ForGood, RandomSectors, Fault::Io},
                    Way{"powerCut", ForGood, FirstHalf, Fault::Io, false, false, true},
                    Way{"powerCutTorn", ForGood, RandomSectors, Fault::Io, true, true, true}),
    [](const auto& way) { return std::string(way.param.name); });

} // namespace
} // namespace jet::test
