#include "jet/error.h"
#include "jet/storage/definition.h"
#include "tests/jet/sampletables.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

namespace jet {
namespace {

constexpr std::size_t kHeader = 63;
constexpr std::size_t kStatistics = 12;
constexpr std::size_t kColumn = 25;
constexpr std::size_t kIndex = 52;

// The byte string of a definition, joined from its pages.
Bytes joined(Pager& pager, PageNumber first)
{
    PageRef page = pager.read(first);
    Bytes bytes(page.bytes().begin(), page.bytes().end());
    const std::size_t length = get32(bytes, 8);
    while (bytes.size() < length) {
        page = pager.read(get32(page.bytes(), 4));
        bytes.insert(bytes.end(), page.bytes().begin() + 8, page.bytes().end());
    }
    bytes.resize(length);
    return bytes;
}

// Blanks what the engine leaves uninitialised, and the page header, which pages write.
void blankIgnored(Bytes& b)
{
    const std::size_t columns = get16(b, 0x2D);
    const std::size_t indexes = get32(b, 0x33);
    std::fill_n(b.begin(), 8, std::uint8_t{0});
    std::fill_n(b.begin() + 0x1C, 12, std::uint8_t{0});
    std::size_t at = kHeader + kStatistics * indexes;
    for (std::size_t i = 0; i < columns; ++i, at += kColumn) {
        if ((b[at + 0x0F] & columnflag::kFixed) == 0)
            put16(b, at + 0x15, 0);
    }
    for (std::size_t i = 0; i < columns; ++i)
        at += 2u + get16(b, at);
    for (std::size_t i = 0; i < indexes; ++i, at += kIndex) {
        for (std::size_t slot = at + 4; slot < at + 0x22; slot += 3) {
            if (get16(b, slot) == 0xFFFF)
                b[slot + 2] = 0;
        }
        put32(b, at + 0x2A, 0);
    }
}

TEST(Definition, EncodesEveryDefinitionOfTheSamplesAsTheEngineDid)
{
    const auto samples = test::readableSamples();
    if (samples.empty())
        GTEST_SKIP() << "no samples";
    int definitions = 0;
    for (const auto& path : samples) {
        test::SampleFile file(path);
        for (const auto& [name, page] : file.tables()) {
            Bytes stored = joined(*file.pager, page);
            Bytes encoded = encodeDefinition(readDefinition(*file.pager, page));
            blankIgnored(stored);
            blankIgnored(encoded);
            EXPECT_EQ(encoded, stored) << path << " " << name;
            ++definitions;
        }
    }
    EXPECT_GT(definitions, 100);
    RecordProperty("definitions", definitions);
}

TEST(Definition, RefusesEveryTruncationAndSurvivesEveryFlippedByte)
{
    const auto sample = test::sampleFile("index-test-v2000.mdb");
    if (!sample)
        GTEST_SKIP() << "no samples";
    test::SampleFile file(*sample);
    const auto tables = file.tables();
    const auto found = std::ranges::find(tables, "Table1", [](const auto& t) { return t.first; });
    ASSERT_NE(found, tables.end());
    const Bytes whole = joined(*file.pager, found->second);
    for (std::size_t length = 0; length < whole.size(); ++length) {
        Bytes cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(length));
        EXPECT_THROW(decodeDefinition(cut, 7), Error) << length;
        if (length < 12)
            continue;
        put32(cut, 8, static_cast<std::uint32_t>(length));
        EXPECT_THROW(decodeDefinition(cut, 7), Error) << "with length " << length;
    }
    int refused = 0;
    for (std::size_t at = 0; at < whole.size(); ++at) {
        for (const int flip : {0x01, 0x80, 0xFF}) {
            Bytes damaged = whole;
            damaged[at] = static_cast<std::uint8_t>(damaged[at] ^ flip);
            try {
                decodeDefinition(damaged, 7);
            } catch (const Error& error) {
                EXPECT_EQ(error.fault(), Fault::Damaged);
                ++refused;
            }
        }
    }
    EXPECT_GT(refused, 100);
}

} // namespace
} // namespace jet
