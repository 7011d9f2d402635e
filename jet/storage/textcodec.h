#pragma once

#include "jet/storage/bytes.h"
#include "jet/value.h"

#include <string>
#include <string_view>

namespace jet {

// Text as Jet 4 stores it: UTF-16LE, or "compressed" behind the mark FF FE. After the mark
//
//     01..FF   one character U+0001..U+00FF
//     00       switches to UTF-16LE pairs; a 00 in the place of a pair's first (low) byte
//              switches back
//
// Which of the two it is shows in the bytes, not in the column's flags.

// Appends the stored text as UTF-8. Never fails: lone surrogates of a damaged text become
// U+FFFD, a lone last byte is dropped.
void appendStoredText(std::string& out, ByteView stored);

// Bytes of a text given as UTF-16LE. With `compress` the engine's own choice is made:
// compressed from 3 characters on if that is possible and not longer.
Bytes encodeText(ByteView utf16, bool compress);

} // namespace jet
