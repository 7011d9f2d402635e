#include "jet/error.h"
#include "jet/storage/journal.h"
#include "jet/storage/pager.h"
#include "tests/jet/smalldatabase.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

namespace jet {
namespace {

using test::kDatabase;
using test::makeSmallDatabase;
using test::MemoryFiles;

const std::filesystem::path kAside = "folder/base.mdb-journal-1";

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
            files.failAt(6, MemoryFiles::Failure::ForGood); // page 4 is not written
            EXPECT_THROW(change(*pager), Error);
            files.failNever();
        }
        interrupted = files.content(kDatabase);
        MemoryFiles whole;
        whole.setContent(kDatabase, before);
        change(*Pager::open(whole, kDatabase, false));
        after = whole.content(kDatabase);
        journal = files.content(journalPath(kDatabase));
        ASSERT_NE(interrupted, before);
        ASSERT_FALSE(journal.empty());
    }

    Bytes contentAfterOpening()
    {
        Pager::open(files, kDatabase, false);
        return files.content(kDatabase);
    }

    static void change(Pager& pager)
    {
        pager.beginTransaction();
        pager.modify(2)[10] = 200;
        pager.modify(4)[4000] = 201;
        pager.modify(pager.append())[100] = 77;
        pager.commit();
    }

    // With a text that says what happened and what can be done.
    bool isRefused(bool readOnly)
    {
        try {
            Pager::open(files, kDatabase, readOnly);
            return false;
        } catch (const Error& error) {
            EXPECT_EQ(error.fault(), Fault::Damaged);
            const std::string text = error.what();
            EXPECT_NE(text.find("прервана"), std::string::npos) << text;
            EXPECT_NE(text.find("переименуйте журнал"), std::string::npos) << text;
            return true;
        }
    }

    MemoryFiles files;
    Bytes before, after, interrupted, journal;
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

// The file is half-written and its remedy is spoilt: nothing is shown, nothing is removed.
TEST_F(HotJournal, WithAnyByteChangedIsNeitherAppliedNorRemoved)
{
    for (std::size_t at = 0; at < journal.size(); at += 41) {
        Bytes changed = journal;
        changed[at] ^= 0x10;
        files.setContent(kDatabase, interrupted);
        files.setContent(journalPath(kDatabase), changed);
        for (const bool readOnly : {true, false})
            EXPECT_TRUE(isRefused(readOnly)) << at;
        EXPECT_EQ(files.content(kDatabase), interrupted) << at;
        EXPECT_EQ(files.content(journalPath(kDatabase)), changed) << at;
    }
}

TEST_F(HotJournal, CutShortBesideAHalfWrittenFileIsNotRemoved)
{
    // From here on the first page's bytes are in it and differ from the file's.
    for (std::size_t size = 1100; size < journal.size(); size += 97) {
        files.setContent(kDatabase, interrupted);
        files.setContent(
            journalPath(kDatabase),
            Bytes(journal.begin(), journal.begin() + static_cast<std::ptrdiff_t>(size)));
        EXPECT_TRUE(isRefused(false)) << size;
        EXPECT_EQ(files.content(kDatabase), interrupted);
        EXPECT_TRUE(files.exists(journalPath(kDatabase)));
    }
}

// Bytes that some sectors of the journal never got: the file was not touched yet.
TEST_F(HotJournal, WithSectorsMissingIsDiscardedBesideTheUntouchedFile)
{
    std::mt19937 random(1);
    for (int round = 0; round < 200; ++round) {
        Bytes holed = journal;
        for (std::size_t at = 0; at < holed.size(); at += 512) {
            if (random() % 3 == 0)
                std::fill_n(holed.begin() + static_cast<std::ptrdiff_t>(at),
                            std::min<std::size_t>(512, holed.size() - at), std::uint8_t{0});
        }
        files.setContent(kDatabase, before);
        files.setContent(journalPath(kDatabase), holed);
        EXPECT_EQ(contentAfterOpening(), before);
        EXPECT_FALSE(files.exists(journalPath(kDatabase)));
    }
}

// What the file may hold when a journal is found beside it, and what becomes of both.
TEST_F(HotJournal, IsJudgedByTheSectorsOfTheFile)
{
    Bytes newer = after; // all of the transaction, then more elsewhere
    newer[5 * kPageSize + 7] ^= 1;
    Bytes newerThere = after; // and in the same pages
    newerThere[2 * kPageSize + 700] ^= 1;
    Bytes grown = after;
    grown.resize(grown.size() + kPageSize, 0xEE);
    Bytes older = before;
    older[2 * kPageSize + 700] ^= 1;
    Bytes shorter = before;
    shorter.resize(5 * kPageSize);
    Bytes longer = before;
    longer.resize(8 * kPageSize, 0xEE);
    Bytes changedSince = interrupted;
    changedSince[2 * kPageSize + 700] ^= 1;
    Bytes newTail = after; // the added page was used again, or never reached the medium
    newTail[6 * kPageSize + 3] ^= 1;
    Bytes unfinishedTail = after;
    std::fill(unfinishedTail.begin() + 6 * kPageSize, unfinishedTail.end(), std::uint8_t{0});
    enum class Fate { Removed, SetAside, Refused };
    const struct
    {
        const char* name;
        Bytes file;
        Bytes expected;
        Fate fate;
    } cases[] = {
        {"untouched", before, before, Fate::Removed},
        {"half-written", interrupted, before, Fate::Removed},
        {"wholly written", after, after, Fate::Removed},
        {"newer copy", newer, newer, Fate::Removed},
        {"newer copy, same pages", newerThere, newerThere, Fate::SetAside},
        {"newer copy, longer", grown, grown, Fate::SetAside},
        {"older copy", older, older, Fate::SetAside},
        {"another shorter file", shorter, shorter, Fate::SetAside},
        {"another longer file", longer, longer, Fate::SetAside},
        {"half-written and changed since", changedSince, changedSince, Fate::Refused},
        {"added page of unknown content", newTail, newTail, Fate::Refused},
        {"added page not written", unfinishedTail, before, Fate::Removed},
    };
    for (const auto& known : cases) {
        SCOPED_TRACE(known.name);
        files = {};
        files.setContent(kDatabase, known.file);
        files.setContent(journalPath(kDatabase), journal);
        if (known.fate == Fate::Refused)
            EXPECT_TRUE(isRefused(false));
        else
            EXPECT_EQ(contentAfterOpening(), known.expected);
        EXPECT_EQ(files.content(kDatabase), known.expected);
        EXPECT_EQ(files.exists(journalPath(kDatabase)), known.fate == Fate::Refused);
        EXPECT_EQ(files.content(kAside) == journal, known.fate == Fate::SetAside);
    }
}

TEST_F(HotJournal, OfAnotherDatabaseIsSetAsideUnapplied)
{
    files.remove(kDatabase);
    makeSmallDatabase(files, 6, 0x12345678);
    // Making a file of that name has set it aside already.
    EXPECT_EQ(files.content(kAside), journal);
    EXPECT_FALSE(files.exists(journalPath(kDatabase)));
    const Bytes other = files.content(kDatabase);
    files.setContent(journalPath(kDatabase), journal);
    EXPECT_EQ(contentAfterOpening(), other);
    EXPECT_EQ(files.content("folder/base.mdb-journal-2"), journal);
    {
        const auto pager = Pager::open(files, kDatabase, false);
        pager->beginTransaction();
        pager->modify(5)[0] = 55;
        pager->commit();
    }
    EXPECT_EQ(files.content(kAside), journal);
    EXPECT_FALSE(files.exists(journalPath(kDatabase)));
}

TEST_F(HotJournal, ForeignOnesStayWhereTheyAreWhileReading)
{
    Bytes other = before;
    other[2 * kPageSize + 700] ^= 1;
    files.setContent(kDatabase, other);
    const auto pager = Pager::open(files, kDatabase, true);
    EXPECT_EQ(files.content(journalPath(kDatabase)), journal);
    EXPECT_EQ(files.content(kDatabase), other);
}

// Not journals at all, or ones that promise more than they have.
TEST_F(HotJournal, GarbageIsNeverAppliedAndNeverLost)
{
    const auto with = [this](std::size_t at, std::uint64_t value) {
        Bytes changed = journal;
        put64(changed, at, value);
        return changed;
    };
    const Bytes garbages[] = {Bytes(100, 'x'), Bytes(3, 'J'), Bytes(70000, 0xFF),
                              Bytes(journal.size(), 'J')};
    for (const Bytes& garbage : garbages) {
        files = {};
        files.setContent(kDatabase, before);
        files.setContent(journalPath(kDatabase), garbage);
        EXPECT_EQ(contentAfterOpening(), before);
        EXPECT_EQ(files.content(kAside), garbage);
    }
    const Bytes liars[] = {with(24, 0xFFFFFFFF), with(16, ~std::uint64_t{0}),
                           with(8, ~std::uint64_t{0}), with(16, 0), with(24, 1u << 31)};
    for (const Bytes& liar : liars) {
        files = {};
        files.setContent(kDatabase, interrupted);
        files.setContent(journalPath(kDatabase), liar);
        EXPECT_TRUE(isRefused(false));
        EXPECT_EQ(files.content(kDatabase), interrupted);
        EXPECT_EQ(files.content(journalPath(kDatabase)), liar);
    }
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
