#include "jet/storage/pagecache.h"

#include <gtest/gtest.h>

namespace jet {
namespace {

TEST(PageCache, TheLongestUnusedCleanFrameGoesFirst)
{
    PageCache cache(4);
    cache.setPageCount(10);
    for (PageNumber page = 0; page < 4; ++page)
        cache.add(page);
    cache.find(0);
    cache.add(4);
    EXPECT_NE(cache.find(0), nullptr);
    EXPECT_EQ(cache.find(1), nullptr);
    EXPECT_EQ(cache.frameCount(), 4u);
}

TEST(PageCache, DirtyAndPinnedFramesStay)
{
    PageCache cache(2);
    cache.setPageCount(10);
    cache.add(0)->dirty = true;
    const PageRef pinned(cache.add(1));
    for (PageNumber page = 2; page < 10; ++page)
        cache.add(page)->bytes[0] = static_cast<std::uint8_t>(page);
    EXPECT_NE(cache.find(0), nullptr);
    ASSERT_NE(cache.find(1), nullptr);
    EXPECT_LT(cache.frameCount(), 6u);
}

TEST(PageCache, MemoryShrinksAfterALargeTransaction)
{
    PageCache cache(8);
    cache.setPageCount(1000);
    for (PageNumber page = 0; page < 1000; ++page)
        cache.add(page)->dirty = true;
    EXPECT_EQ(cache.frameCount(), 1000u);
    for (PageNumber page = 0; page < 1000; ++page)
        cache.find(page)->dirty = false;
    cache.trim();
    EXPECT_EQ(cache.frameCount(), 8u);
    EXPECT_NE(cache.find(999), nullptr);
    EXPECT_EQ(cache.find(0), nullptr);
}

TEST(PageCache, APinnedFrameOutlivesItsPage)
{
    PageCache cache(8);
    cache.setPageCount(3);
    Frame* const frame = cache.add(2);
    frame->bytes[5] = 42;
    {
        const PageRef pinned(frame);
        cache.setPageCount(2);
        cache.setPageCount(3);
        EXPECT_EQ(cache.find(2), nullptr);
        EXPECT_NE(cache.add(2), frame);
        EXPECT_EQ(pinned.bytes()[5], 42);
    }
    EXPECT_EQ(cache.add(0), frame); // used again once nobody holds it
}

} // namespace
} // namespace jet
