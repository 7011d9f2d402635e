#include "jet/error.h"
#include "jet/storage/maprow.h"
#include "jet/storage/usagemap.h"
#include "tests/jet/smalldatabase.h"

#include <gtest/gtest.h>

#include <random>
#include <set>

namespace jet {
namespace {

using test::kDatabase;
using test::makeSmallDatabase;
using test::MemoryFiles;

class UsageMaps : public testing::Test
{
protected:
    void SetUp() override
    {
        makeSmallDatabase(files, 4);
        reopen();
    }

    void reopen()
    {
        if (pager && pager->inTransaction())
            pager->commit();
        allocator.reset();
        pager.reset();
        pager = Pager::open(files, kDatabase, false);
        pager->beginTransaction();
        allocator = std::make_unique<PageAllocator>(*pager);
    }

    void growTo(PageNumber pages)
    {
        while (pager->pageCount() < pages)
            allocator->allocate();
    }

    UsageMap map(RowPointer row) { return {*pager, *allocator, row}; }

    int kindOf(RowPointer row)
    {
        const PageRef page = pager->read(row.page);
        return page.bytes()[maprow::locate(page.bytes(), row).offset];
    }

    MemoryFiles files;
    std::unique_ptr<Pager> pager;
    std::unique_ptr<PageAllocator> allocator;
};

TEST_F(UsageMaps, KeepSetsOfPagesThroughEveryWayOfGrowing)
{
    growTo(3000);
    const RowPointer first = allocator->createMap(0);
    const RowPointer second = allocator->createMap(first.page);
    const RowPointer third = allocator->createMap(first.page);
    ASSERT_EQ(second.page, first.page);
    std::mt19937 engine(1);
    const auto random = [&engine] { return static_cast<unsigned>(engine()); };
    std::set<PageNumber> members[3];
    const RowPointer maps[] = {first, second, third};
    for (int step = 0; step < 4000; ++step) {
        const unsigned which = random() % 3;
        // The first map stays near the start, the others spread over the file.
        const PageNumber page = which == 0 ? 4 + random() % 300 : 4 + random() % 2990;
        if (random() % 3 != 0) {
            map(maps[which]).add(page);
            members[which].insert(page);
        } else {
            map(maps[which]).remove(page);
            members[which].erase(page);
        }
    }
    reopen();
    for (unsigned which = 0; which < 3; ++which) {
        const std::vector<PageNumber> expected(members[which].begin(), members[which].end());
        EXPECT_EQ(map(maps[which]).pages(), expected) << which;
        for (PageNumber page = 0; page < 3000; page += 7)
            EXPECT_EQ(map(maps[which]).contains(page), members[which].contains(page));
    }
}

TEST_F(UsageMaps, MoveTheirWindowWhenMembersAllow)
{
    growTo(2000);
    const RowPointer row = allocator->createMap(0);
    for (const PageNumber page : {1500u, 1999u, 1496u})
        map(row).add(page);
    const PageRef page = pager->read(row.page);
    const maprow::Place place = maprow::locate(page.bytes(), row);
    EXPECT_EQ(place.length, maprow::kNewLength);
    EXPECT_EQ(get32(page.bytes(), place.offset + 1), 1496u);
    EXPECT_EQ(map(row).pages(), (std::vector<PageNumber>{1496, 1500, 1999}));
    EXPECT_EQ(map(row).next(1501), 1999u);
    EXPECT_EQ(map(row).next(2000), std::nullopt);
}

TEST_F(UsageMaps, TurnIntoBitmapPagesWhenTheRowCannotGrow)
{
    growTo(1500);
    const RowPointer row = allocator->createMap(0);
    while (allocator->createMap(row.page).page == row.page)
        ;
    map(row).add(10);
    map(row).add(1400);
    EXPECT_EQ(kindOf(row), 1);
    reopen();
    EXPECT_EQ(map(row).pages(), (std::vector<PageNumber>{10, 1400}));
    map(row).remove(10);
    EXPECT_EQ(map(row).pages(), (std::vector<PageNumber>{1400}));
    map(row).releaseBitmaps();
    EXPECT_TRUE(map(row).pages().empty());
    EXPECT_EQ(kindOf(row), 0);
}

TEST_F(UsageMaps, RefuseDamage)
{
    const RowPointer row = allocator->createMap(0);
    map(row).add(3);
    EXPECT_THROW(map(row).add(pager->pageCount()), Error);
    EXPECT_THROW(map({row.page, 7}).pages(), Error);
    EXPECT_THROW(map({0xFFFFFF, 0}).pages(), Error);
    EXPECT_THROW(map({3, 0}).pages(), Error);

    const ByteSpan page = pager->modify(row.page);
    const maprow::Place place = maprow::locate(page, row);
    page[place.offset + 5 + 60] = 1; // page 480 lies beyond the end of the file
    EXPECT_THROW(map(row).pages(), Error);
    page[place.offset] = 2; // no such kind
    EXPECT_THROW(map(row).contains(3), Error);
    page[place.offset] = 1;
    put32(page, place.offset + 1, 3); // not a bitmap page
    EXPECT_THROW(map(row).contains(3), Error);
    put16(page, 14, 10); // the row overlaps its slot
    EXPECT_THROW(map(row).contains(3), Error);
}

TEST_F(UsageMaps, DeletedRowsCloseTheGapAndTheLastFreesThePage)
{
    const RowPointer first = allocator->createMap(0);
    const RowPointer second = allocator->createMap(first.page);
    const RowPointer third = allocator->createMap(first.page);
    map(third).add(3);
    allocator->deleteMap(first);
    EXPECT_EQ(map(third).pages(), (std::vector<PageNumber>{3}));
    EXPECT_EQ(get16(pager->read(first.page).bytes(), 2), kPageSize - 14 - 6 - 2 * 69);
    EXPECT_EQ(get16(pager->read(first.page).bytes(), 14), 0xD000);
    EXPECT_THROW(map(first).pages(), Error);
    allocator->deleteMap(third);
    allocator->deleteMap(second);
    EXPECT_TRUE(allocator->isFree(first.page));
}

TEST_F(UsageMaps, AllocatorGivesTheLowestFreePageZeroed)
{
    growTo(20);
    pager->modify(9)[100] = 1;
    allocator->release(9, PageType::FreedData);
    allocator->release(7, PageType::FreedDefinition);
    EXPECT_EQ(pager->read(9).bytes()[0], 9);
    EXPECT_THROW(allocator->release(9, PageType::FreedData), Error);
    EXPECT_THROW(allocator->release(1, PageType::FreedData), Error);
    reopen();
    EXPECT_EQ(allocator->allocate(), 7u);
    EXPECT_EQ(allocator->allocate(), 9u);
    EXPECT_EQ(pager->read(9).bytes()[100], 0);
    EXPECT_EQ(allocator->allocate(), 20u);
}

TEST_F(UsageMaps, AllocatorForgetsWhatWasRolledBack)
{
    growTo(20);
    allocator->release(5, PageType::FreedData);
    pager->commit();
    pager->beginTransaction();
    EXPECT_EQ(allocator->allocate(), 5u);
    pager->rollback();
    pager->beginTransaction();
    EXPECT_EQ(allocator->allocate(), 5u);
}

TEST_F(UsageMaps, PagesReservedBeyondTheEndAreNotGivenOut)
{
    const ByteSpan page = pager->modify(1);
    const maprow::Place place = maprow::locate(page, {1, 0});
    page[place.offset + 5] = 0xD0; // pages 4, 6 and 7 free, 5 reserved
    EXPECT_EQ(allocator->allocate(), 4u);
    EXPECT_EQ(allocator->allocate(), 6u);
    EXPECT_FALSE(allocator->isFree(5));
}

TEST_F(UsageMaps, GlobalMapGrowsBeyondOneHundredTwentyFiveMegabytes)
{
    constexpr PageNumber kPages = 66000; // past the second bitmap page of 32736
    std::set<PageNumber> given;
    for (PageNumber i = 0; i < kPages; ++i)
        EXPECT_TRUE(given.insert(allocator->allocate()).second);
    EXPECT_EQ(kindOf({1, 0}), 1);
    EXPECT_EQ(maprow::locate(pager->read(1).bytes(), {1, 1}).length, maprow::kNewLength);
    for (PageNumber page = 0; page < pager->pageCount(); ++page)
        ASSERT_FALSE(allocator->isFree(page)) << page;
    EXPECT_TRUE(allocator->isFree(pager->pageCount()));
    // A handful of bitmap pages and nothing else was taken besides.
    EXPECT_LE(pager->pageCount(), kPages + 4 + 3);
    for (const PageNumber page : {100u, 40000u, 65000u})
        allocator->release(page, PageType::FreedData);
    reopen();
    EXPECT_EQ(allocator->allocate(), 100u);
    EXPECT_EQ(allocator->allocate(), 40000u);
    EXPECT_EQ(allocator->allocate(), 65000u);

    const RowPointer row = allocator->createMap(0);
    for (const PageNumber page : {4u, 30000u, 60000u})
        map(row).add(page);
    EXPECT_EQ(kindOf(row), 1);
    EXPECT_EQ(map(row).pages(), (std::vector<PageNumber>{4, 30000, 60000}));
    EXPECT_EQ(map(row).next(30001), 60000u);
}

} // namespace
} // namespace jet
