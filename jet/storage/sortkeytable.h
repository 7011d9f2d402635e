#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace jet {

// What a character contributes to a sort key of the General order.
enum class CharKind : std::uint8_t {
    Unknown,   // code not known
    Inline,    // one weight: `code` in the first part, `extra` in the second
    TwoLetter, // as Inline, but the code is that of two letters (sharp s sorts as ss)
    Hidden,    // nothing inline; position and the code byte in the last part
    Ignored,   // nothing at all
    Combining, // `extra` is added to the second part of the character before
};

inline constexpr std::uint8_t kPlainExtra = 0x02; // a character without accent

struct CharCode
{
    CharKind kind = CharKind::Unknown;
    std::uint8_t extra = kPlainExtra;
    // Inline: one or two bytes, left-aligned, so that comparing two numbers compares the
    // bytes; a one-byte code has 00 below. Hidden: the code byte.
    std::uint16_t code = 0;
};

inline constexpr std::size_t kLowCharCount = 0x500; // Latin, combining marks, Greek, Cyrillic
extern const std::array<CharCode, kLowCharCount> kLowCharCodes;
const CharCode& highCharCode(char32_t character);

// Takes any number; those that are no character are Unknown.
inline const CharCode& charCode(char32_t character)
{
    return character < kLowCharCount ? kLowCharCodes[character] : highCharCode(character);
}

} // namespace jet
