#include "jet/error.h"
#include "jet/storage/journal.h"
#include "jet/storage/pager.h"
#include "tests/jet/smalldatabase.h"

#include <gtest/gtest.h>

#include <functional>

namespace jet {
namespace {

using test::kDatabase;
using test::makeSmallDatabase;
using test::MemoryFiles;

// Changes pages 2 and 4 and adds two pages.
void changeSome(Pager& pager)
{
    pager.modify(2)[10] = 200;
    pager.modify(4)[4000] = 201;
    for (std::uint8_t i = 0; i < 2; ++i)
        pager.modify(pager.append())[i] = 99;
}

void commitChange(MemoryFiles& files)
{
    const auto pager = Pager::open(files, kDatabase, false);
    pager->beginTransaction();
    changeSome(*pager);
    pager->commit();
}

class PagerAtomicity : public testing::TestWithParam<std::uint32_t>
{
protected:
    void SetUp() override
    {
        MemoryFiles files;
        makeSmallDatabase(files, 6, GetParam());
        before = files.content(kDatabase);
        commitChange(files);
        after = files.content(kDatabase);
        ASSERT_NE(before, after);
        ASSERT_FALSE(files.exists(journalPath(kDatabase)));
    }

    MemoryFiles fresh() const
    {
        MemoryFiles files;
        files.setContent(kDatabase, before);
        return files;
    }

    Bytes before, after;
};

TEST_P(PagerAtomicity, AFailedCommitLeavesFileAndPagesAsTheyWere)
{
    for (const bool late : {false, true}) {
        for (int n = 0;; ++n) {
            ASSERT_LT(n, 100);
            MemoryFiles files = fresh();
            files.failRemovalsLate(late);
            const auto pager = Pager::open(files, kDatabase, false);
            pager->beginTransaction();
            changeSome(*pager);
            files.failAt(n, MemoryFiles::Failure::Once, Fault::DiskFull);
            try {
                pager->commit();
                files.failNever();
                EXPECT_EQ(files.content(kDatabase), after);
                break;
            } catch (const Error& error) {
                EXPECT_EQ(error.fault(), Fault::DiskFull);
            }
            files.failNever();
            EXPECT_EQ(files.content(kDatabase), before) << n;
            EXPECT_FALSE(pager->inTransaction());
            EXPECT_EQ(pager->pageCount(), 6u);
            EXPECT_EQ(pager->read(2).bytes()[10], 2);
            // The next attempt succeeds in the same session.
            pager->beginTransaction();
            changeSome(*pager);
            pager->commit();
            EXPECT_EQ(files.content(kDatabase), after) << n;
        }
    }
}

TEST_P(PagerAtomicity, ADyingDiskLeavesBeforeOrAfterOnceReopened)
{
    for (int n = 0;; ++n) {
        ASSERT_LT(n, 100);
        MemoryFiles files = fresh();
        bool failed = false;
        {
            const auto pager = Pager::open(files, kDatabase, false);
            pager->beginTransaction();
            changeSome(*pager);
            files.failAt(n, MemoryFiles::Failure::ForGood);
            try {
                pager->commit();
            } catch (const Error&) {
                failed = true;
            }
        }
        files.failNever();
        Pager::open(files, kDatabase, false);
        const Bytes content = files.content(kDatabase);
        // Where only the journal's removal failed, all pages are written.
        EXPECT_TRUE(content == after || (content == before && failed)) << n;
        EXPECT_FALSE(files.exists(journalPath(kDatabase)));
        if (!failed)
            break;
    }
}

TEST_P(PagerAtomicity, APowerCutLeavesBeforeOrAfter)
{
    for (int n = 0; n < 40; ++n) {
        for (unsigned seed = 0; seed < 25; ++seed) {
            MemoryFiles files = fresh();
            bool failed = false;
            {
                const auto pager = Pager::open(files, kDatabase, false);
                pager->beginTransaction();
                changeSome(*pager);
                files.failAt(n, MemoryFiles::Failure::ForGood);
                try {
                    pager->commit();
                } catch (const Error&) {
                    failed = true;
                }
            }
            files.powerCut(seed);
            Pager::open(files, kDatabase, false);
            const Bytes content = files.content(kDatabase);
            // All pages may have reached the medium though the last sync did not return.
            ASSERT_TRUE(content == after || (content == before && failed)) << n << ' ' << seed;
        }
    }
}

TEST_P(PagerAtomicity, ARecoveryThatIsCutOffIsRepeated)
{
    for (int n = 0; n < 12; ++n) {
        for (unsigned seed = 0; seed < 10; ++seed) {
            MemoryFiles files = fresh();
            {
                const auto pager = Pager::open(files, kDatabase, false);
                pager->beginTransaction();
                changeSome(*pager);
                files.failAt(7, MemoryFiles::Failure::ForGood); // page 4 is not written
                EXPECT_THROW(pager->commit(), Error);
            }
            files.failNever();
            EXPECT_TRUE(files.exists(journalPath(kDatabase)));
            EXPECT_NE(files.content(kDatabase), before);
            files.failAt(n, MemoryFiles::Failure::ForGood);
            try {
                Pager::open(files, kDatabase, false);
            } catch (const Error&) {
            }
            files.powerCut(seed);
            Pager::open(files, kDatabase, false);
            const Bytes content = files.content(kDatabase);
            ASSERT_TRUE(content == before || content == after) << n << ' ' << seed;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(PlainAndEncoded, PagerAtomicity, testing::Values(0u, 0xA7B773E0u));

TEST(Pager, CreatesAllOrNothing)
{
    for (int n = 0;; ++n) {
        ASSERT_LT(n, 50);
        MemoryFiles files;
        files.failAt(n, MemoryFiles::Failure::Once);
        try {
            makeSmallDatabase(files, 4);
            break;
        } catch (const Error&) {
            EXPECT_FALSE(files.exists(kDatabase));
        }
    }
}

TEST(Pager, ABrokenFileIsNotUsedFurther)
{
    MemoryFiles files;
    makeSmallDatabase(files, 6);
    const auto pager = Pager::open(files, kDatabase, false);
    pager->beginTransaction();
    changeSome(*pager);
    files.failAt(9, MemoryFiles::Failure::ForGood);
    EXPECT_THROW(pager->commit(), Error);
    files.failNever();
    EXPECT_THROW(pager->beginTransaction(), Error);
    EXPECT_THROW(pager->read(5), Error); // not in the cache
}

TEST(Pager, AStatementIsUndoneAlone)
{
    MemoryFiles files;
    makeSmallDatabase(files, 6);
    {
        const auto pager = Pager::open(files, kDatabase, false);
        pager->beginTransaction();
        pager->markStatement();
        pager->modify(2)[0] = 100;
        const PageNumber kept = pager->append();
        pager->modify(kept)[0] = 101;
        pager->releaseStatement();

        const std::uint64_t rollbacks = pager->rollbackCount();
        pager->markStatement();
        pager->modify(2)[0] = 110;
        pager->modify(2)[1] = 111;
        pager->modify(3)[0] = 112;
        pager->modify(kept)[0] = 113;
        const PageRef held = pager->read(pager->append());
        pager->rollbackStatement();
        EXPECT_EQ(pager->rollbackCount(), rollbacks + 1);
        EXPECT_EQ(pager->pageCount(), kept + 1);

        pager->markStatement();
        pager->modify(4)[0] = 120;
        pager->releaseStatement();
        pager->commit();
    }
    const auto pager = Pager::open(files, kDatabase, true);
    EXPECT_EQ(pager->pageCount(), 7u);
    EXPECT_EQ(pager->read(2).bytes()[0], 100);
    EXPECT_EQ(pager->read(2).bytes()[1], 2);
    EXPECT_EQ(pager->read(3).bytes()[0], 3);
    EXPECT_EQ(pager->read(4).bytes()[0], 120);
    EXPECT_EQ(pager->read(6).bytes()[0], 101);
}

TEST(Pager, ATransactionIsUndoneWhole)
{
    MemoryFiles files;
    makeSmallDatabase(files, 6);
    const Bytes before = files.content(kDatabase);
    const auto pager = Pager::open(files, kDatabase, false);
    const PageRef second = pager->read(2);
    pager->beginTransaction();
    changeSome(*pager);
    EXPECT_EQ(second.bytes()[10], 200); // readers see the change
    pager->rollback();
    EXPECT_EQ(second.bytes()[10], 2);
    EXPECT_EQ(pager->pageCount(), 6u);
    EXPECT_EQ(files.content(kDatabase), before);
}

TEST(Pager, AReadOnlyFileRefusesChanges)
{
    MemoryFiles files;
    makeSmallDatabase(files, 6);
    const auto pager = Pager::open(files, kDatabase, true);
    pager->beginTransaction();
    for (const auto& change : {std::function<void()>([&] { pager->modify(2); }),
                               std::function<void()>([&] { pager->append(); })}) {
        try {
            change();
            ADD_FAILURE();
        } catch (const Error& error) {
            EXPECT_EQ(error.fault(), Fault::ReadOnly);
        }
    }
}

TEST(Pager, PagesBeyondTheEndAndCutFilesAreDamage)
{
    MemoryFiles files;
    makeSmallDatabase(files, 6);
    {
        const auto pager = Pager::open(files, kDatabase, false);
        for (const PageNumber page : {6u, 7u, 0xFFFFFFu, 0xFFFFFFFFu})
            EXPECT_THROW(pager->read(page), Error) << page;
    }
    Bytes cut = files.content(kDatabase);
    cut.resize(cut.size() - 1);
    files.setContent(kDatabase, cut);
    EXPECT_THROW(Pager::open(files, kDatabase, false), Error);
}

} // namespace
} // namespace jet
