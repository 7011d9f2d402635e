#include "jet/error.h"
#include "jet/storage/journal.h"
#include "jet/storage/pager.h"
#include "tests/jet/smalldatabase.h"

#include <gtest/gtest.h>

namespace jet {
namespace {

using test::kDatabase;
using test::makeSmallDatabase;
using test::MemoryFiles;

// A file whose transaction was cut off, with its hot journal beside it.
class HotJournal : public testing::Test
{
protected:
    void SetUp() override
    {
        makeSmallDatabase(files, 6);
        before = files.content(kDatabase);
        {
            const auto pager = Pager::open(files, kDatabase, false);
            pager->beginTransaction();
            pager->modify(2)[10] = 200;
            pager->modify(4)[4000] = 201;
            pager->append();
            files.failAt(8, MemoryFiles::Failure::ForGood);
            EXPECT_THROW(pager->commit(), Error);
            files.failNever();
        }
        interrupted = files.content(kDatabase);
        journal = files.content(journalPath(kDatabase));
        ASSERT_NE(interrupted, before);
        ASSERT_FALSE(journal.empty());
    }

    Bytes contentAfterOpening()
    {
        Pager::open(files, kDatabase, false);
        return files.content(kDatabase);
    }

    MemoryFiles files;
    Bytes before, interrupted, journal;
};

TEST_F(HotJournal, IsRolledBackOnOpening)
{
    EXPECT_EQ(contentAfterOpening(), before);
    EXPECT_FALSE(files.exists(journalPath(kDatabase)));
}

TEST_F(HotJournal, IsRolledBackBeforeReadingOnly)
{
    const auto pager = Pager::open(files, kDatabase, true);
    EXPECT_EQ(files.content(kDatabase), before);
    EXPECT_TRUE(pager->readOnly());
}

TEST_F(HotJournal, CutShortAtAnyLengthIsDiscardedUnapplied)
{
    for (std::size_t size = 0; size < journal.size(); size += 97) {
        files.setContent(kDatabase, before);
        files.setContent(
            journalPath(kDatabase),
            Bytes(journal.begin(), journal.begin() + static_cast<std::ptrdiff_t>(size)));
        EXPECT_EQ(contentAfterOpening(), before) << size;
        EXPECT_FALSE(files.exists(journalPath(kDatabase)));
    }
}

TEST_F(HotJournal, WithAnyByteChangedIsNotApplied)
{
    for (std::size_t at = 0; at < journal.size(); at += 41) {
        Bytes changed = journal;
        changed[at] ^= 0x10;
        files.setContent(kDatabase, interrupted);
        files.setContent(journalPath(kDatabase), changed);
        EXPECT_EQ(contentAfterOpening(), interrupted) << at;
    }
}

TEST_F(HotJournal, OfALaterStateOfTheFileIsNotApplied)
{
    // A backup was put back and worked with: a listed page differs from both images.
    Bytes other = before;
    other[2 * kPageSize + 700] ^= 1;
    files.setContent(kDatabase, other);
    EXPECT_EQ(contentAfterOpening(), other);
    EXPECT_TRUE(files.exists(journalPath(kDatabase))); // the next commit replaces it
    {
        const auto pager = Pager::open(files, kDatabase, false);
        pager->beginTransaction();
        pager->modify(5)[0] = 55;
        pager->commit();
    }
    EXPECT_FALSE(files.exists(journalPath(kDatabase)));
    other[5 * kPageSize] = 55;
    EXPECT_EQ(files.content(kDatabase), other);
}

TEST_F(HotJournal, OfAFileOfAnotherLengthIsNotApplied)
{
    for (const std::size_t pages : {std::size_t{5}, std::size_t{8}}) {
        Bytes other = before;
        other.resize(pages * kPageSize);
        files.setContent(kDatabase, other);
        files.setContent(journalPath(kDatabase), journal);
        EXPECT_EQ(contentAfterOpening(), other) << pages;
    }
}

TEST_F(HotJournal, OfAnotherDatabaseIsNotApplied)
{
    files.remove(kDatabase);
    makeSmallDatabase(files, 6, 0x12345678);
    const Bytes other = files.content(kDatabase);
    EXPECT_EQ(contentAfterOpening(), other);
}

TEST_F(HotJournal, ThatCannotBeRolledBackIsNamed)
{
    files.failAt(3, MemoryFiles::Failure::ForGood, Fault::Permission);
    try {
        Pager::open(files, kDatabase, true);
        ADD_FAILURE();
    } catch (const Error& error) {
        EXPECT_EQ(error.fault(), Fault::Permission);
        EXPECT_NE(std::string(error.what()).find("прервана"), std::string::npos) << error.what();
    }
}

} // namespace
} // namespace jet
