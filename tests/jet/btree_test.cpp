#include "jet/storage/btree.h"

#include "jet/error.h"
#include "jet/storage/maprow.h"
#include "tests/jet/smalldatabase.h"
#include "tests/jet/treeverifier.h"
#include "tests/support/memoryfiles.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <iterator>
#include <memory>
#include <random>
#include <set>
#include <string>
#include <vector>

namespace jet {
namespace {

constexpr PageNumber kOwner = 2;
constexpr PageNumber kMapPage = 3;
constexpr PageNumber kRoot = 4;

Bytes wholeEntry(const Bytes& key, RowPointer row)
{
    Bytes entry = key;
    for (const int shift : {24, 16, 8, 0})
        entry.push_back(static_cast<std::uint8_t>(row.packed() >> shift));
    return entry;
}

Bytes longKey(std::uint32_t value)
{
    const std::uint32_t bits = value ^ 0x80000000U;
    Bytes key{0x7F};
    for (const int shift : {24, 16, 8, 0})
        key.push_back(static_cast<std::uint8_t>(bits >> shift));
    return key;
}

RowPointer rowOf(std::uint32_t i)
{
    return {20 + i / 200, static_cast<std::uint8_t>(i % 200)};
}

Fault faultOf(const std::function<void()>& action)
{
    try {
        action();
    } catch (const Error& error) {
        return error.fault();
    }
    return Fault::NotFound;
}

class BTreeTest : public testing::Test
{
protected:
    BTreeTest()
    {
        test::makeSmallDatabase(files, 5);
        openPager();
        pager->beginTransaction();
        const ByteSpan maps = pager->modify(kMapPage);
        std::fill(maps.begin(), maps.end(), std::uint8_t{0});
        maprow::initialise(maps);
        maprow::append(maps, 1);
        BTree::initialiseRoot(*pager, kOwner, kRoot);
        UsageMap(*pager, *allocator, map).add(kRoot);
        makeTree();
    }

    void openPager()
    {
        pager.reset();
        pager = Pager::open(files, test::kDatabase, false);
        allocator = std::make_unique<PageAllocator>(*pager);
    }
    void makeTree() { tree = std::make_unique<BTree>(*pager, *allocator, kOwner, map, kRoot); }
    void reopen()
    {
        pager->commit();
        openPager();
        makeTree();
        pager->beginTransaction();
    }

    void insert(const Bytes& key, RowPointer row)
    {
        tree->insert(key, row);
        expected.insert(wholeEntry(key, row));
    }
    void erase(const Bytes& key, RowPointer row)
    {
        ASSERT_TRUE(tree->erase(key, row));
        expected.erase(wholeEntry(key, row));
    }

    // Compares the file with `expected`, page by page and through the cursor.
    void verify()
    {
        const test::TreeVerifier verifier(*pager, kOwner, kRoot);
        ASSERT_EQ(verifier.problems(), "");
        ASSERT_TRUE(std::equal(expected.begin(), expected.end(), verifier.entries().begin(),
                               verifier.entries().end()))
            << expected.size() << " entries expected, " << verifier.entries().size() << " found";
        ASSERT_EQ(verifier.pages(), UsageMap(*pager, *allocator, map).pages());
        for (const PageNumber page : verifier.pages())
            ASSERT_FALSE(allocator->isFree(page)) << page;
        auto wanted = expected.begin();
        for (BTree::Cursor cursor = tree->first(); cursor.valid(); cursor.next(), ++wanted)
            ASSERT_EQ(wholeEntry(cursor.entry().key, cursor.entry().row), *wanted);
        ASSERT_EQ(wanted, expected.end());
        height = verifier.height();
        leaves = verifier.leafCount();
        compressed = verifier.compressedPages();
    }

    test::MemoryFiles files;
    std::unique_ptr<Pager> pager;
    std::unique_ptr<PageAllocator> allocator;
    const RowPointer map{kMapPage, 0};
    std::unique_ptr<BTree> tree;
    std::set<Bytes> expected;
    int height = 0;
    std::size_t leaves = 0;
    std::size_t compressed = 0;
};

TEST_F(BTreeTest, AscendingInsertsFillThePages)
{
    for (std::uint32_t i = 0; i < 20'000; ++i)
        insert(longKey(i), rowOf(i));
    reopen();
    verify();
    EXPECT_EQ(height, 1);
    EXPECT_LE(leaves, 20'000U * 9 / 3616) << "pages are full and compressed";
    EXPECT_GT(compressed, leaves / 2);
}

TEST_F(BTreeTest, DescendingInsertsAndErasingAllAgain)
{
    for (std::uint32_t i = 5000; i-- > 0;)
        insert(longKey(i), rowOf(i));
    verify();
    for (std::uint32_t i = 0; i < 5000; ++i) {
        erase(longKey(i), rowOf(i));
        if (i % 500 == 0)
            verify();
        if (i == 4990) {
            verify();
            EXPECT_EQ(height, 0) << "the tree grows lower again";
        }
    }
    reopen();
    verify();
    EXPECT_EQ(leaves, 1U);
}

TEST_F(BTreeTest, SeekFindsTheFirstEntryNotBelow)
{
    EXPECT_FALSE(tree->first().valid());
    EXPECT_FALSE(tree->seek(longKey(1)).valid());
    for (std::uint32_t i = 0; i < 3000; ++i)
        insert(longKey(i * 2), rowOf(i));
    for (std::uint32_t i = 0; i < 5998; ++i) {
        const BTree::Cursor cursor = tree->seek(longKey(i));
        ASSERT_TRUE(cursor.valid());
        ASSERT_EQ(cursor.entry().key, longKey((i + 1) / 2 * 2));
        ASSERT_EQ(tree->containsKey(longKey(i)), i % 2 == 0);
    }
    EXPECT_FALSE(tree->seek(longKey(5999)).valid());
    EXPECT_FALSE(tree->containsKey(Bytes{0x7F})) << "the beginning of a key is no key";
}

TEST_F(BTreeTest, ManyRowsMayShareAKey)
{
    for (std::uint32_t i = 0; i < 4000; ++i)
        insert(longKey(i % 3), rowOf((i * 7919) % 4000));
    reopen();
    verify();
    int found = 0;
    for (BTree::Cursor cursor = tree->seek(longKey(1));
         cursor.valid() && cursor.entry().key == longKey(1); cursor.next())
        ++found;
    EXPECT_EQ(found, 1333);
    EXPECT_FALSE(tree->erase(longKey(1), {9999, 1}));
}

TEST_F(BTreeTest, RefusesWhatItCannotHold)
{
    insert(longKey(1), rowOf(1));
    EXPECT_EQ(faultOf([&] { tree->insert(longKey(1), rowOf(1)); }), Fault::Damaged);
    EXPECT_EQ(faultOf([&] { tree->insert(Bytes(1805, 1), rowOf(1)); }), Fault::Limit);
    EXPECT_FALSE(tree->erase(longKey(1), rowOf(2)));
    EXPECT_FALSE(tree->erase(longKey(2), rowOf(1)));
    verify();
}

// Keys of every length up to the largest, with shared beginnings, in random order, erased in
// random order: every split, prefix and freed page must leave a sound tree.
class BTreeWorkload : public BTreeTest, public testing::WithParamInterface<int>
{};

TEST_P(BTreeWorkload, AgreesWithASetOfEntries)
{
    struct Shape
    {
        std::size_t shared, longest, letters;
        int operations;
    };
    const Shape shapes[] = {
        {0, 6, 4, 20'000},    {3, 40, 200, 20'000},  {1500, 300, 3, 3'000}, {0, 1803, 256, 3'000},
        {900, 800, 2, 5'000}, {0, 700, 256, 20'000}, {1800, 3, 250, 8'000}, {60, 400, 16, 10'000},
    };
    const Shape& shape = shapes[GetParam()];
    std::mt19937 random(static_cast<unsigned>(GetParam()));
    const auto below = [&](std::size_t n) { return random() % n; };
    std::vector<std::pair<Bytes, RowPointer>> live;
    for (int phase = 0; phase < 4; ++phase) {
        const std::size_t inserts = phase == 0 ? 80 : phase == 1 ? 45 : phase == 2 ? 10 : 60;
        for (int i = 0; i < shape.operations / 4; ++i) {
            if (live.empty() || below(100) < inserts) {
                Bytes key(below(8) == 0 ? 0 : shape.shared, 0x55);
                for (std::size_t n = 1 + below(shape.longest); n > 0; --n)
                    key.push_back(static_cast<std::uint8_t>(below(shape.letters)));
                const RowPointer row = rowOf(static_cast<std::uint32_t>(below(50'000)));
                if (expected.contains(wholeEntry(key, row)))
                    continue;
                insert(key, row);
                live.emplace_back(key, row);
            } else {
                const std::size_t at = below(live.size());
                erase(live[at].first, live[at].second);
                live[at] = live.back();
                live.pop_back();
            }
            if (i % 1000 == 0) {
                ASSERT_NO_FATAL_FAILURE(verify());
            }
        }
        reopen();
        ASSERT_NO_FATAL_FAILURE(verify());
    }
    for (const auto& [key, row] : live)
        erase(key, row);
    ASSERT_NO_FATAL_FAILURE(verify());
    EXPECT_EQ(leaves, 1U);
}

INSTANTIATE_TEST_SUITE_P(Shapes, BTreeWorkload, testing::Range(0, 8));

TEST_F(BTreeTest, GrowsAndShrinksOverThreeLevels)
{
    std::vector<std::uint32_t> order(3000);
    for (std::uint32_t i = 0; i < order.size(); ++i)
        order[i] = i;
    const auto wide = [](std::uint32_t i) {
        Bytes key = longKey(i);
        std::reverse(key.begin(), key.end()); // no shared beginning
        key.resize(400, 7);
        return key;
    };
    std::shuffle(order.begin(), order.end(), std::mt19937(3));
    for (const std::uint32_t i : order)
        insert(wide(i), rowOf(i));
    reopen();
    verify();
    EXPECT_GE(height, 3);
    std::shuffle(order.begin(), order.end(), std::mt19937(4));
    for (std::size_t n = 0; n < order.size(); ++n) {
        erase(wide(order[n]), rowOf(order[n]));
        if (n % 300 == 0) {
            ASSERT_NO_FATAL_FAILURE(verify());
        }
    }
    verify();
    EXPECT_EQ(height, 0);
}

TEST_F(BTreeTest, BuildsFromSortedEntriesAndClears)
{
    for (const std::uint32_t count : {0U, 1U, 400U, 401U, 5000U, 60'000U}) {
        expected.clear();
        std::vector<IndexEntry> entries;
        for (std::uint32_t i = 0; i < count; ++i) {
            Bytes key = longKey(i);
            key.resize(count > 10'000 ? 60 : 5, 9);
            expected.insert(wholeEntry(key, rowOf(i)));
            entries.push_back({key, rowOf(i)});
        }
        tree->build(entries);
        reopen();
        ASSERT_NO_FATAL_FAILURE(verify()) << count;
        if (count > 0) {
            insert(longKey(count / 2), {7, 7});
            erase(entries.back().key, entries.back().row);
            ASSERT_NO_FATAL_FAILURE(verify()) << count;
        }
        tree->clear();
        expected.clear();
        ASSERT_NO_FATAL_FAILURE(verify()) << count;
    }
    EXPECT_EQ(UsageMap(*pager, *allocator, map).pages(), std::vector<PageNumber>{kRoot});
    const std::vector<IndexEntry> twice = {{longKey(1), rowOf(1)}, {longKey(1), rowOf(1)}};
    EXPECT_EQ(faultOf([&] { tree->build(twice); }), Fault::Damaged);
}

TEST_F(BTreeTest, BuiltNodesHaveTwoChildrenOrMore)
{
    for (std::uint32_t count = 20; count < 900; count += 7) {
        expected.clear();
        std::vector<IndexEntry> entries;
        for (std::uint32_t i = 0; i < count; ++i) {
            Bytes key{static_cast<std::uint8_t>(i / 4), static_cast<std::uint8_t>(i % 4)};
            key.resize(400, 9);
            expected.insert(wholeEntry(key, rowOf(i)));
            entries.push_back({key, rowOf(i)});
        }
        tree->build(entries);
        ASSERT_NO_FATAL_FAILURE(verify()) << count;
        ASSERT_EQ(test::TreeVerifier(*pager, kOwner, kRoot).nodesWithOneChild(), 0U) << count;
        tree->clear();
    }
}

// Whatever stands in an index page, reading and changing end with an Error or a result.
TEST_F(BTreeTest, SurvivesDamagedPages)
{
    for (std::uint32_t i = 0; i < 3000; ++i)
        insert(longKey(i * 5), rowOf(i));
    pager->commit();
    const std::vector<PageNumber> pages = UsageMap(*pager, *allocator, map).pages();
    std::mt19937 random(11);
    int refused = 0;
    for (int round = 0; round < 1500; ++round) {
        pager->beginTransaction();
        for (int flips = 1 + static_cast<int>(random() % 3); flips > 0; --flips) {
            const PageNumber page = pages[random() % 3 == 0 ? 0 : random() % pages.size()];
            const std::size_t at = random() % 4 == 0 ? random() % 700 : random() % 32;
            pager->modify(page)[at] ^= static_cast<std::uint8_t>(1U << random() % 8);
        }
        const auto key = static_cast<std::uint32_t>(random() % 15'000);
        const std::function<void()> actions[] = {
            [&] { tree->insert(longKey(key), rowOf(1)); },
            [&] { tree->erase(longKey(key / 5 * 5), rowOf(key / 5)); },
            [&] { tree->containsKey(longKey(key)); },
            [&] {
                for (auto cursor = tree->first(); cursor.valid(); cursor.next()) {
                }
            },
            [&] { tree->clear(); },
        };
        for (const auto& action : actions)
            refused += faultOf(action) == Fault::Damaged ? 1 : 0;
        pager->rollback();
        allocator = std::make_unique<PageAllocator>(*pager);
        makeTree();
    }
    EXPECT_GT(refused, 500);
    pager->beginTransaction();
    verify();
}

TEST_F(BTreeTest, ALoopOfPagesIsRefused)
{
    for (std::uint32_t i = 0; i < 3000; ++i)
        insert(longKey(i), rowOf(i));
    const std::vector<PageNumber> pages = UsageMap(*pager, *allocator, map).pages();
    put32(pager->modify(pages[2]), 16, pages[2]);
    EXPECT_EQ(faultOf([&] {
                  for (auto cursor = tree->first(); cursor.valid(); cursor.next()) {
                  }
              }),
              Fault::Damaged);
    put32(pager->modify(kRoot), 20, kRoot);
    EXPECT_EQ(faultOf([&] { tree->containsKey(longKey(99999)); }), Fault::Damaged);
}

} // namespace
} // namespace jet
