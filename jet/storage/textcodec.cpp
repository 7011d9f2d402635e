#include "jet/storage/textcodec.h"

#include "jet/text.h"

#include <iterator>
#include <optional>

namespace jet {

namespace {

constexpr std::uint8_t kMark[] = {0xFF, 0xFE};
constexpr std::size_t kLeastCompressed = 3; // characters

bool isLowSurrogate(char32_t unit)
{
    return (unit & 0xFC00) == 0xDC00;
}

char32_t unitAt(const std::uint8_t* from)
{
    return static_cast<char32_t>(from[0] | (from[1] << 8));
}

// Requires room for 3 bytes for each UTF-16 unit. Unlike appendUtf8() it grows no string:
// scans spend their time here.
char* putUtf8(char* to, char32_t c)
{
    const auto put = [&to](char32_t byte) { *to++ = static_cast<char>(byte); };
    if (c < 0x80) {
        put(c);
        return to;
    }
    if (c < 0x800) {
        put(0xC0 | (c >> 6));
    } else {
        if (c < 0x10000) {
            put(0xE0 | (c >> 12));
        } else {
            put(0xF0 | (c >> 18));
            put(0x80 | ((c >> 12) & 0x3F));
        }
        put(0x80 | ((c >> 6) & 0x3F));
    }
    put(0x80 | (c & 0x3F));
    return to;
}

// One character of UTF-16LE at `from`, which it moves on; requires two bytes there.
char32_t takeUtf16(const std::uint8_t*& from, const std::uint8_t* end)
{
    const char32_t unit = unitAt(from);
    from += 2;
    if ((unit & 0xF800) != 0xD800)
        return unit;
    if (isLowSurrogate(unit) || end - from < 2 || !isLowSurrogate(unitAt(from)))
        return kReplacement;
    const char32_t low = unitAt(from);
    from += 2;
    return 0x10000 + ((unit & 0x3FF) << 10) + (low & 0x3FF);
}

char* decodePlain(char* to, const std::uint8_t* from, const std::uint8_t* end)
{
    while (end - from >= 2)
        to = putUtf8(to, takeUtf16(from, end));
    return to;
}

char* decodeCompressed(char* to, const std::uint8_t* from, const std::uint8_t* end)
{
    bool pairs = false;
    while (from < end) {
        if (*from == 0) {
            pairs = !pairs;
            ++from;
        } else if (!pairs) {
            to = putUtf8(to, *from++);
        } else {
            if (end - from < 2)
                break;
            to = putUtf8(to, takeUtf16(from, end));
        }
    }
    return to;
}

// The compressed form, or nothing when a character has none: U+0000 would read as a switch,
// and so would a low byte 00 among the pairs.
std::optional<Bytes> compressed(ByteView utf16)
{
    Bytes bytes(std::begin(kMark), std::end(kMark));
    bool pairs = false;
    for (std::size_t at = 0; at + 1 < utf16.size(); at += 2) {
        const std::uint8_t low = utf16[at];
        const std::uint8_t high = utf16[at + 1];
        if (low == 0)
            return std::nullopt;
        const bool wide = high != 0;
        if (wide != pairs) {
            bytes.push_back(0);
            pairs = wide;
        }
        bytes.push_back(low);
        if (wide)
            bytes.push_back(high);
    }
    return bytes;
}

} // namespace

void appendStoredText(std::string& out, ByteView stored)
{
    const std::size_t before = out.size();
    // At most 2 bytes a compressed character, 3 a UTF-16 unit.
    out.resize(before + 2 * stored.size());
    char* const start = out.data() + before;
    const std::uint8_t* const from = stored.data();
    const std::uint8_t* const end = from + stored.size();
    const bool marked = stored.size() >= 2 && from[0] == kMark[0] && from[1] == kMark[1];
    char* const stop =
        marked ? decodeCompressed(start, from + 2, end) : decodePlain(start, from, end);
    out.resize(before + static_cast<std::size_t>(stop - start));
}

Bytes encodeText(ByteView utf16, bool compress)
{
    if (compress && utf16.size() >= 2 * kLeastCompressed) {
        if (auto bytes = compressed(utf16); bytes && bytes->size() <= utf16.size())
            return *std::move(bytes);
    }
    return {utf16.begin(), utf16.end()};
}

} // namespace jet
