#pragma once

#include "fuzz/input.h"
#include "jet/value.h"
#include "tests/support/memoryfiles.h"

#include <vector>

namespace jet::fuzz {

// One change to the pages of a base. As bytes of an input:
//
//   kind   bytes
//   Set    00, page, u16 offset in page, n, n bytes
//   Flip   01, page, u16 offset in page, bits to turn over
//   Copy   02, page to overwrite, page to take
//   Zero   03, page
//   Resize 04, pages of the file from now on, u16 bytes beyond them
//   Journal 05, then as Set, in the journal that some bases have; n = 0 cuts it off there
//
// Pages are taken modulo the pages there are, offsets modulo the page. A kind from 0x80 on
// ends the list; others count modulo 6.
struct Patch
{
    enum class Kind : std::uint8_t {
        Set,
        Flip,
        Copy,
        Zero,
        Resize,
        Journal,
    };
    Kind kind = Kind::Set;
    std::uint8_t page = 0;
    std::uint8_t otherPage = 0; // Copy
    std::uint16_t offset = 0;   // Set, Flip, Journal; Resize: bytes beyond the pages
    Bytes bytes = {};           // Set, Journal; Flip: one
};

// What an input of the targets that damage files begins with: the number of the base, then
// the patches. A base number from kRawFile on means that the rest is a whole file.
struct Damage
{
    static constexpr std::uint8_t kRawFile = 0xF0;
    static constexpr std::uint8_t kEnd = 0x80;

    std::uint8_t base = 0;
    std::vector<Patch> patches = {};

    bool isRaw() const { return base >= kRawFile; }
};

// Leaves in `input` what follows the list.
Damage readDamage(Input& input);
Bytes encodeDamage(const Damage& damage);
// Puts the damaged file, of a raw one the rest of the input, and its journal into `files`.
void placeDamaged(test::MemoryFiles& files, const Damage& damage, Input& input);

} // namespace jet::fuzz
