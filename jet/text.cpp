#include "jet/text.h"

namespace jet {

namespace {

bool isContinuation(char c)
{
    return (static_cast<std::uint8_t>(c) & 0xC0) == 0x80;
}

bool isSurrogate(char32_t c)
{
    return c >= 0xD800 && c <= 0xDFFF;
}

// Bytes of the sequence that a lead byte announces, 0 if it cannot lead.
std::size_t sequenceLength(std::uint8_t lead)
{
    if (lead < 0x80)
        return 1;
    if (lead >= 0xC2 && lead < 0xE0)
        return 2;
    if (lead >= 0xE0 && lead < 0xF0)
        return 3;
    if (lead >= 0xF0 && lead < 0xF5)
        return 4;
    return 0;
}

void appendUnit(std::vector<std::uint8_t>& out, char32_t unit)
{
    out.push_back(static_cast<std::uint8_t>(unit));
    out.push_back(static_cast<std::uint8_t>(unit >> 8));
}

} // namespace

char32_t nextCodePoint(std::string_view utf8, std::size_t& at)
{
    const auto lead = static_cast<std::uint8_t>(utf8[at]);
    const std::size_t length = sequenceLength(lead);
    if (length == 1) {
        ++at;
        return lead;
    }
    if (length == 0 || at + length > utf8.size()) {
        ++at;
        return kReplacement;
    }
    char32_t point = lead & (0x7Fu >> length);
    for (std::size_t i = 1; i < length; ++i) {
        if (!isContinuation(utf8[at + i])) {
            ++at;
            return kReplacement;
        }
        point = (point << 6) | (static_cast<std::uint8_t>(utf8[at + i]) & 0x3Fu);
    }
    constexpr char32_t kSmallest[] = {0, 0, 0x80, 0x800, 0x10000};
    if (point < kSmallest[length] || point > 0x10FFFF || isSurrogate(point)) {
        ++at;
        return kReplacement;
    }
    at += length;
    return point;
}

void appendUtf8(std::string& out, char32_t c)
{
    const auto put = [&out](char32_t byte) { out.push_back(static_cast<char>(byte)); };
    if (c < 0x80) {
        put(c);
    } else if (c < 0x800) {
        put(0xC0 | (c >> 6));
        put(0x80 | (c & 0x3F));
    } else if (c < 0x10000) {
        put(0xE0 | (c >> 12));
        put(0x80 | ((c >> 6) & 0x3F));
        put(0x80 | (c & 0x3F));
    } else {
        put(0xF0 | (c >> 18));
        put(0x80 | ((c >> 12) & 0x3F));
        put(0x80 | ((c >> 6) & 0x3F));
        put(0x80 | (c & 0x3F));
    }
}

std::string utf8FromUtf16(ByteView utf16)
{
    std::string out;
    out.reserve(utf16.size());
    for (std::size_t at = 0; at + 1 < utf16.size(); at += 2) {
        char32_t point = get16(utf16, at);
        if (isSurrogate(point)) {
            const char32_t low = at + 3 < utf16.size() ? get16(utf16, at + 2) : 0;
            if (point < 0xDC00 && low >= 0xDC00 && low <= 0xDFFF) {
                point = 0x10000 + ((point - 0xD800) << 10) + (low - 0xDC00);
                at += 2;
            } else {
                point = kReplacement;
            }
        }
        appendUtf8(out, point);
    }
    return out;
}

std::vector<std::uint8_t> utf16FromUtf8(std::string_view utf8)
{
    std::vector<std::uint8_t> out;
    out.reserve(utf8.size() * 2);
    for (std::size_t at = 0; at < utf8.size();) {
        const char32_t point = nextCodePoint(utf8, at);
        if (point < 0x10000) {
            appendUnit(out, point);
        } else {
            appendUnit(out, 0xD800 + ((point - 0x10000) >> 10));
            appendUnit(out, 0xDC00 + ((point - 0x10000) & 0x3FF));
        }
    }
    return out;
}

std::size_t utf16Length(std::string_view utf8)
{
    std::size_t units = 0;
    for (std::size_t at = 0; at < utf8.size();)
        units += nextCodePoint(utf8, at) < 0x10000 ? 1 : 2;
    return units;
}

char32_t foldCase(char32_t c)
{
    const auto within = [c](char32_t first, char32_t last) { return c >= first && c <= last; };
    if (within('A', 'Z'))
        return c + 32;
    if (c < 0xC0)
        return c;
    if (within(0xC0, 0xDE))
        return c == 0xD7 ? c : c + 32;
    // Latin Extended-A: pairs with the capital first, on even or on odd numbers.
    if (within(0x100, 0x137) || within(0x14A, 0x177))
        return c == 0x130 || c == 0x131 ? c : c | 1;
    if (within(0x139, 0x148) || within(0x179, 0x17E))
        return c + (c & 1);
    if (c == 0x178)
        return 0xFF;
    if (within(0x391, 0x3AB) && c != 0x3A2)
        return c + 32;
    if (within(0x400, 0x40F))
        return c + 80;
    if (within(0x410, 0x42F))
        return c + 32;
    if (within(0x460, 0x481) || within(0x48A, 0x4BF) || within(0x4D0, 0x52F))
        return c | 1;
    if (within(0x4C1, 0x4CE))
        return c + (c & 1);
    return c;
}

std::string foldName(std::string_view utf8)
{
    std::string out;
    out.reserve(utf8.size());
    for (std::size_t at = 0; at < utf8.size();)
        appendUtf8(out, foldCase(nextCodePoint(utf8, at)));
    return out;
}

bool sameName(std::string_view a, std::string_view b)
{
    std::size_t atA = 0;
    std::size_t atB = 0;
    // Names are mostly Latin, and the parser asks this thousands of times a statement.
    const auto folded = [](std::string_view text, std::size_t& at) {
        const auto byte = static_cast<unsigned char>(text[at]);
        if (byte >= 0x80)
            return foldCase(nextCodePoint(text, at));
        ++at;
        return foldCase(byte);
    };
    while (atA < a.size() && atB < b.size()) {
        if (folded(a, atA) != folded(b, atB))
            return false;
    }
    return atA == a.size() && atB == b.size();
}

} // namespace jet
