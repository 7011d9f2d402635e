// Stops the rolling back of an interrupted step, too, and looks who is let in meanwhile.
#include "jet/error.h"
#include "jet/storage/journal.h"
#include "jet/storage/pager.h"
#include "tests/jet/crashworkload.h"

#include <gtest/gtest.h>

#include <iostream>

namespace jet::test {
namespace {

using Content = std::vector<std::uint8_t>;

class CrashInRecovery : public testing::Test
{
protected:
    static MemoryFiles filesOf(const Interrupted& found)
    {
        MemoryFiles files;
        files.setContent(kCrashPath, found.file);
        files.setContent(journalPath(kCrashPath), found.journal);
        return files;
    }

    static Content recovered(MemoryFiles& files)
    {
        Pager::open(files, kCrashPath, false);
        EXPECT_FALSE(files.exists(journalPath(kCrashPath)));
        return files.content(kCrashPath);
    }

    // Every stop of one recovery; false when something is wrong.
    bool stopEverywhere(const Interrupted& found, MemoryFiles::Failure failure, bool powerCut)
    {
        MemoryFiles undisturbed = filesOf(found);
        const Content expected = recovered(undisturbed);
        for (int m = 0;; ++m) {
            MemoryFiles files = filesOf(found);
            files.tearWrites(MemoryFiles::Tear::RandomSectors, static_cast<unsigned>(m));
            files.forgetAtFailedSyncs(powerCut);
            files.failAt(m, failure);
            bool failed = false;
            try {
                Pager::open(files, kCrashPath, false);
            } catch (const Error&) {
                failed = true;
            }
            files.failNever();
            if (powerCut)
                files.powerCut(static_cast<unsigned>(points));
            ++points;
            const Content content = recovered(files);
            // A transaction that is wholly in the file may be found so or be taken back.
            EXPECT_TRUE(content == expected || content == found.before) << m;
            if (HasFailure() || !failed)
                return !HasFailure();
        }
    }

    int points = 0;
};

TEST_F(CrashInRecovery, IsRepeatedFromAnyPoint)
{
    using enum MemoryFiles::Failure;
    const int step = crashStride(9);
    MemoryFiles files;
    makeCrashDatabase(*Database::create(files, kCrashPath, {}));
    int turn = 0;
    for (const CrashStep& crashStep : crashSteps()) {
        SCOPED_TRACE(crashStep.name);
        const Content before = files.content(kCrashPath);
        for (int n = turn++ % step;; n += step) {
            const Interrupted found = interrupt(before, crashStep, n);
            if (found.finished)
                break;
            if (found.journal.empty())
                continue;
            ASSERT_TRUE(stopEverywhere(found, ForGood, false)) << n;
            ASSERT_TRUE(stopEverywhere(found, ForGood, true)) << n;
            ASSERT_TRUE(stopEverywhere(found, Once, true)) << n;
        }
        crashStep.run(*Database::open(files, kCrashPath, OpenMode::Exclusive));
    }
    EXPECT_GT(points, 100);
    std::cout << "  points " << points << '\n';
    RecordProperty("points", points);
}

// Tries to open the database file from elsewhere whenever the journal is touched.
class Intruder final : public FileSystem
{
public:
    explicit Intruder(MemoryFiles& files)
        : m_files(files)
    {}
    std::unique_ptr<File> open(const std::filesystem::path& path, FileMode mode) override
    {
        intrude(path);
        return m_files.open(path, mode);
    }
    bool exists(const std::filesystem::path& path) const override { return m_files.exists(path); }
    void remove(const std::filesystem::path& path) override
    {
        intrude(path);
        m_files.remove(path);
    }
    void rename(const std::filesystem::path& from, const std::filesystem::path& to) override
    {
        m_files.rename(from, to);
    }
    void replace(const std::filesystem::path& from, const std::filesystem::path& to,
                 const std::function<void()>& release) override
    {
        m_files.replace(from, to, release);
    }
    void syncDirectory(const std::filesystem::path& directory) override
    {
        m_files.syncDirectory(directory);
    }

    int writersLetIn = 0;
    int readersLetIn = 0;

private:
    bool isLetIn(FileMode mode)
    {
        try {
            m_files.open(kCrashPath, mode);
            return true;
        } catch (const Error& error) {
            EXPECT_EQ(error.fault(), Fault::Locked);
            return false;
        }
    }
    void intrude(const std::filesystem::path& path)
    {
        if (path != journalPath(kCrashPath))
            return;
        writersLetIn += isLetIn(FileMode::ReadWrite) ? 1 : 0;
        readersLetIn += isLetIn(FileMode::ReadOnly) ? 1 : 0;
    }

    MemoryFiles& m_files;
};

TEST_F(CrashInRecovery, NobodyElseIsLetIn)
{
    const Interrupted found = halfWritten();
    MemoryFiles files = filesOf(found);
    Intruder intruder(files);
    Pager::open(intruder, kCrashPath, false);
    EXPECT_EQ(intruder.writersLetIn, 0);
    EXPECT_EQ(intruder.readersLetIn, 0);
    EXPECT_EQ(files.content(kCrashPath), found.before);
}

// The reader only looks at first, so others may look too, but nobody may write.
TEST_F(CrashInRecovery, NobodyWritesWhileAReaderRecovers)
{
    const Interrupted found = halfWritten();
    MemoryFiles files = filesOf(found);
    Intruder intruder(files);
    const auto pager = Pager::open(intruder, kCrashPath, true);
    EXPECT_EQ(intruder.writersLetIn, 0);
    EXPECT_EQ(intruder.readersLetIn, 1);
    EXPECT_EQ(files.content(kCrashPath), found.before);
}

} // namespace
} // namespace jet::test
