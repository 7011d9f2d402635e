#pragma once

#include "jet/storage/bytes.h"
#include "jet/value.h"

#include <optional>
#include <string_view>

namespace jet {

// Sort keys of Jet's "General" collating order (LCID 0409, version 0): bytes whose unsigned
// comparison is the order of the texts. Case does not count; accents do after all letters
// are equal; trailing spaces do not count. Only the first 255 characters count.
//
// A key is  INLINE 01 [EXTRA] [01 01 01 HIDDEN] 00:
//   INLINE  one or two bytes for each letter, digit and sign
//   EXTRA   one byte for each of these, 02 without accent; trailing 02 are left out
//   HIDDEN  position and code of hyphens, apostrophes and controls, 4 bytes each

// How many characters Æ, Þ, ß, Œ and Ĳ count for in EXTRA and HIDDEN. Jet 4 wrote Two, a
// later engine One. It shows only where an accent or a hidden sign follows.
enum class TwoLetterCount { Two, One };

// The value part of an ascending index entry, without the 7F flag byte and with the final
// 00. Nothing when the text holds a character whose code is not known: a wrong key would
// make other programs miss rows.
std::optional<Bytes> generalKey(std::string_view utf8,
                                TwoLetterCount twoLetters = TwoLetterCount::Two);

// The same for comparisons outside indexes: total over all texts, unknown characters sort
// after all known ones by their code point. Not cut at 255 characters.
Bytes generalSortKey(std::string_view utf8);

// <0, 0, >0 as generalSortKey(a) compares with generalSortKey(b), without building keys for
// plain cases. Ordinary texts take a fast path.
int compareGeneral(std::string_view a, std::string_view b);

} // namespace jet
