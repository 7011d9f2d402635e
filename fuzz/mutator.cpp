#include "fuzz/bases.h"
#include "fuzz/damage.h"
#include "jet/storage/types.h"

#include <algorithm>
#include <array>
#include <random>

// Mutations for the targets that damage files. Blind ones mostly change bytes that nobody
// reads; these aim at what a page consists of: its header, its row slots, its last rows, and
// at numbers that mean something there.

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t maxSize);

namespace jet::fuzz {

namespace {

using Random = std::minstd_rand;

// Smaller bases take the number modulo their pages.
std::uint8_t randomPage(Random& random)
{
    const std::size_t count = bases()[0].pages.size() / kPageSize;
    return static_cast<std::uint8_t>(random() % (count + 1));
}

std::uint16_t randomOffset(Random& random)
{
    constexpr std::array<unsigned, 6> kBounds = {16, 64, 300, 800, 2000, kPageSize};
    const auto offset = random() % kBounds[random() % kBounds.size()];
    const bool fromEnd = random() % 5 == 0; // rows fill a page from its end
    return static_cast<std::uint16_t>(fromEnd ? kPageSize - 1 - offset : offset);
}

// Little-endian: a row pointer, a page number, a bound of a type, a small or a random number.
Bytes randomNumber(Random& random)
{
    constexpr std::array<std::uint32_t, 12> kBounds = {
        0, 1, 0x7F, 0xFF, 0x0FFF, 0x1000, 0x4000, 0x7FFF, 0x8000, 0xFFFF, 0x7FFFFFFF, 0xFFFFFFFF};
    constexpr std::array<std::size_t, 4> kSizes = {1, 2, 3, 4};
    std::uint32_t number = 0;
    switch (random() % 5) {
    case 0:
        number = std::uint32_t{randomPage(random)} << 8 | random() % 16;
        break;
    case 1:
        number = randomPage(random);
        break;
    case 2:
        number = kBounds[random() % kBounds.size()];
        break;
    case 3:
        number = static_cast<std::uint32_t>(random() % 40);
        break;
    default:
        number = static_cast<std::uint32_t>(random());
    }
    Bytes bytes(kSizes[random() % kSizes.size()]);
    for (std::uint8_t& byte : bytes) {
        byte = static_cast<std::uint8_t>(number);
        number >>= 8;
    }
    return bytes;
}

Patch randomPatch(Random& random)
{
    Patch patch;
    patch.page = randomPage(random);
    const auto choice = random() % 28;
    if (choice < 12) {
        patch.offset = randomOffset(random);
        patch.bytes = randomNumber(random);
    } else if (choice < 20) {
        patch.kind = Patch::Kind::Flip;
        patch.offset = randomOffset(random);
        patch.bytes = {static_cast<std::uint8_t>(1U << random() % 8)};
    } else if (choice < 22) {
        patch.kind = Patch::Kind::Copy;
        patch.otherPage = randomPage(random);
    } else if (choice < 23) {
        patch.kind = Patch::Kind::Zero;
    } else if (choice < 27) {
        patch.kind = Patch::Kind::Journal;
        patch.page = static_cast<std::uint8_t>(random() % 4 == 0 ? random() % 12 : 0);
        patch.offset = randomOffset(random);
        if (random() % 8 != 0)
            patch.bytes = randomNumber(random);
    } else {
        patch.kind = Patch::Kind::Resize;
        patch.offset = random() % 8 == 0 ? 1 : 0;
    }
    return patch;
}

void mutatePatches(std::vector<Patch>& patches, Random& random)
{
    const std::size_t at = patches.empty() ? 0 : random() % patches.size();
    const auto place = patches.begin() + static_cast<std::ptrdiff_t>(at);
    switch (patches.empty() ? 0 : random() % 6) {
    case 0:
    case 1:
        patches.insert(place, randomPatch(random));
        break;
    case 2:
        patches.erase(place);
        break;
    case 3:
        place->page = randomPage(random);
        break;
    case 4:
        place->offset = static_cast<std::uint16_t>(place->offset + random() % 9 - 4);
        break;
    default:
        if (place->kind == Patch::Kind::Set || place->kind == Patch::Kind::Journal)
            place->bytes = randomNumber(random);
        else
            *place = randomPatch(random);
    }
}

// Gives the new size, which is at most `maxSize`.
std::size_t mutate(ByteSpan buffer, std::size_t size, unsigned seed)
{
    Random random(seed);
    Input input(buffer.first(size));
    Damage damage = readDamage(input);
    if (damage.isRaw() || random() % 4 == 0)
        return LLVMFuzzerMutate(buffer.data(), size, buffer.size());
    mutatePatches(damage.patches, random);
    if (random() % 32 == 0)
        damage.base = static_cast<std::uint8_t>(random() % bases().size());
    Bytes out = encodeDamage(damage);
    const ByteView script = input.rest();
    out.insert(out.end(), script.begin(), script.end());
    const std::size_t count = std::min(out.size(), buffer.size());
    std::copy_n(out.begin(), count, buffer.begin());
    return count;
}

} // namespace

} // namespace jet::fuzz

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size,
                                               std::size_t maxSize, unsigned seed)
{
    return jet::fuzz::mutate({data, maxSize}, size, seed);
}
