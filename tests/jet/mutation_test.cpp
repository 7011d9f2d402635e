#include "tests/jet/checkedfile.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <iostream>
#include <random>

// Files damaged at random: a check ends in short time, throws nothing and reads nothing
// outside, which the sanitizers watch. JURNAL_CHECK_SECONDS sets how long to try.

namespace jet::test {
namespace {

using Clock = std::chrono::steady_clock;
using Image = std::vector<std::uint8_t>;

constexpr int kMostRounds = 4000;
constexpr std::chrono::seconds kUsualTime{8};
constexpr std::chrono::seconds kLongestCheck{30}; // far above what any needs

std::chrono::seconds timeToSpend()
{
    const char* seconds = std::getenv("JURNAL_CHECK_SECONDS");
    return seconds ? std::chrono::seconds(std::atoi(seconds)) : kUsualTime;
}

class Mutator
{
public:
    explicit Mutator(unsigned seed)
        : m_random(seed)
    {}

    void mutate(Image& image)
    {
        switch (below(8)) {
        case 0:
            return copyPage(image);
        case 1:
            return putNumber(image);
        case 2:
            return movePointer(image);
        case 3:
            return cutOff(image);
        default:
            image[place(image)] = static_cast<std::uint8_t>(m_random());
        }
    }

private:
    std::size_t below(std::size_t n) { return m_random() % n; }
    // More often in headers, slots and definitions, and at the ends of rows.
    std::size_t place(const Image& image)
    {
        const std::size_t page = below(image.size() / kPageSize);
        const std::size_t near = below(4) == 0 ? kPageSize : below(2) == 0 ? 32 : 600;
        const std::size_t at = below(near);
        // Page 0 has a key and a password, which would make all others look alike.
        if (page == 0)
            return 0xE00 + at % 512;
        return page * kPageSize + (below(8) == 0 ? kPageSize - 4 - at % 64 : at);
    }
    void putNumber(Image& image)
    {
        const std::uint32_t numbers[] = {0,      1,        0xFF,       0xFFFF,
                                         0x7FFF, 0xFFFFFF, 0xFFFFFFFF, 0x7FFFFFFF};
        const std::size_t at = std::min(place(image), image.size() - 4);
        if (below(2) == 0)
            put16(image, at, static_cast<std::uint16_t>(numbers[below(8)]));
        else
            put32(image, at, numbers[below(8)]);
    }
    // A page number or a pointer to a row that exists, where perhaps one stood: circles.
    void movePointer(Image& image)
    {
        const auto page = static_cast<std::uint32_t>(below(image.size() / kPageSize));
        const std::uint32_t value =
            below(2) == 0 ? page : page << 8 | static_cast<std::uint32_t>(below(8));
        put32(image, std::min(place(image), image.size() - 4), value);
    }
    void copyPage(Image& image)
    {
        const std::size_t pages = image.size() / kPageSize;
        const auto at = [&](std::size_t page) {
            return image.begin() + static_cast<std::ptrdiff_t>(page * kPageSize);
        };
        const std::size_t to = 1 + below(pages - 1);
        if (below(3) == 0)
            std::fill_n(at(to), kPageSize, static_cast<std::uint8_t>(below(2) * 0xFF));
        else
            std::copy_n(at(1 + below(pages - 1)), kPageSize, at(to));
    }
    void cutOff(Image& image)
    {
        if (below(20) == 0)
            image.resize(kPageSize * (2 + below(image.size() / kPageSize - 1)));
    }

    std::mt19937 m_random;
};

struct Outcome
{
    int rounds = 0, noticed = 0;
    Clock::duration longest{};
};

Outcome attack(CheckedFile& file, unsigned seed, int rounds, Clock::duration time)
{
    Mutator mutator(seed);
    Outcome outcome;
    const auto end = Clock::now() + time;
    for (; outcome.rounds < rounds && Clock::now() < end; ++outcome.rounds) {
        Image image = file.sound();
        for (int n = 0; n <= outcome.rounds % 4; ++n)
            mutator.mutate(image);
        file.setContent(image);
        const auto start = Clock::now();
        EXPECT_NO_THROW(outcome.noticed += file.check().empty() ? 0 : 1)
            << "seed " << seed << ", round " << outcome.rounds;
        outcome.longest = std::max(outcome.longest, Clock::now() - start);
    }
    return outcome;
}

TEST(Mutation, NeverBreaksTheCheck)
{
    CheckedFile file(false, 60);
    const auto end = Clock::now() + timeToSpend();
    Outcome all;
    for (unsigned seed = 1; Clock::now() < end && (seed == 1 || timeToSpend() > kUsualTime);
         ++seed) {
        const Outcome one = attack(file, seed, kMostRounds, end - Clock::now());
        all.rounds += one.rounds;
        all.noticed += one.noticed;
        all.longest = std::max(all.longest, one.longest);
    }
    std::cout << all.rounds << " files, " << all.noticed << " with findings, the longest check "
              << std::chrono::duration_cast<std::chrono::milliseconds>(all.longest).count()
              << " ms\n";
    EXPECT_GT(all.noticed, all.rounds / 4);
    EXPECT_LT(all.longest, kLongestCheck);
}

TEST(Mutation, NeverBreaksTheCheckOfFilesOfAccess)
{
    const auto samples = readableSamples();
    if (samples.empty())
        GTEST_SKIP() << "no sample files";
    unsigned seed = 100;
    for (const auto& sample : samples) {
        const auto sound = bytesOf(sample);
        Mutator mutator(++seed);
        for (int round = 0; round < (sound.size() > 500'000 ? 2 : 10); ++round) {
            Image image = sound;
            for (int n = 0; n < 5; ++n)
                mutator.mutate(image);
            MemoryFiles files;
            files.setContent("copy.mdb", image);
            const auto pager = Pager::open(files, "copy.mdb", true);
            EXPECT_NO_THROW(checkDatabase(*pager)) << sample.filename() << " " << round;
        }
    }
}

} // namespace
} // namespace jet::test
