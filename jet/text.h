#pragma once

#include "jet/storage/bytes.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace jet {

inline constexpr char32_t kReplacement = 0xFFFD; // for what is no character

// Decodes one code point and moves `at` behind it. Requires at < utf8.size(). A byte that
// begins no valid sequence gives U+FFFD and is skipped alone.
char32_t nextCodePoint(std::string_view utf8, std::size_t& at);
void appendUtf8(std::string& out, char32_t codePoint);

// UTF-16 little-endian, as names and texts stand in the file. An odd last byte is ignored;
// half a surrogate pair becomes U+FFFD.
std::string utf8FromUtf16(ByteView utf16);
std::vector<std::uint8_t> utf16FromUtf8(std::string_view utf8);
// Length in UTF-16 units: what Jet counts as characters.
std::size_t utf16Length(std::string_view utf8);

// Names compare without case: Latin, Greek and Cyrillic letters are folded, all else is as
// it is. Independent of the process's locale.
char32_t foldCase(char32_t codePoint);
std::string foldName(std::string_view utf8);
bool sameName(std::string_view a, std::string_view b);

} // namespace jet
