#include "jet/storage/textcodec.h"
#include "jet/text.h"

#include <gtest/gtest.h>

#include <random>

namespace jet {
namespace {

std::string decoded(ByteView stored)
{
    std::string text = "before ";
    appendStoredText(text, stored);
    EXPECT_TRUE(text.starts_with("before "));
    return text.substr(7);
}

TEST(TextCodec, CompressesWhenTheEngineDoes)
{
    struct Case
    {
        const char* text;
        Bytes stored;
    };
    const Case cases[] = {
        {"", {}},
        {"ab", {0x61, 0, 0x62, 0}},
        {"abc", {0xFF, 0xFE, 0x61, 0x62, 0x63}},
        {"née", {0xFF, 0xFE, 0x6E, 0xE9, 0x65}},
        // Not shorter, though as long with the switch between the alphabets.
        {"Мир", {0x1C, 0x04, 0x38, 0x04, 0x40, 0x04}},
        {"Яab", {0x2F, 0x04, 0x61, 0, 0x62, 0}},
        {"Яabcd", {0xFF, 0xFE, 0, 0x2F, 0x04, 0, 0x61, 0x62, 0x63, 0x64}},
        {"abcdЯ", {0xFF, 0xFE, 0x61, 0x62, 0x63, 0x64, 0, 0x2F, 0x04}},
        // A low byte 00 among the pairs would read as a switch.
        {"abcdefghЀ",
         {0x61, 0, 0x62, 0, 0x63, 0, 0x64, 0, 0x65, 0, 0x66, 0, 0x67, 0, 0x68, 0, 0, 0x04}},
    };
    for (const Case& c : cases) {
        const Bytes utf16 = utf16FromUtf8(c.text);
        EXPECT_EQ(encodeText(utf16, true), c.stored) << c.text;
        EXPECT_EQ(encodeText(utf16, false), utf16) << c.text;
        EXPECT_EQ(decoded(c.stored), c.text);
        EXPECT_EQ(decoded(utf16), c.text);
    }
}

TEST(TextCodec, GivesBackEveryTextItEncodes)
{
    std::mt19937 random(5);
    const char32_t kinds[][2] = {{1, 0x7F},   {0x80, 0xFF},     {0x400, 0x45F},
                                 {0, 0xD7FF}, {0xE000, 0xFFFF}, {0x10000, 0x10FFFF}};
    for (int i = 0; i < 3000; ++i) {
        std::string text;
        for (std::size_t length = random() % 40; length > 0; --length) {
            const auto& [first, last] = kinds[random() % static_cast<unsigned>(i % 6 + 1)];
            appendUtf8(text, first + static_cast<char32_t>(random()) % (last - first + 1));
        }
        if (text.starts_with("\xEF\xBB\xBF"))
            continue; // U+FEFF in front reads as the mark of compression
        const Bytes utf16 = utf16FromUtf8(text);
        EXPECT_EQ(decoded(encodeText(utf16, true)), text);
        EXPECT_EQ(decoded(encodeText(utf16, false)), text);
    }
}

TEST(TextCodec, DecodesDamagedText)
{
    const std::string unknown = "\xEF\xBF\xBD";
    const std::pair<Bytes, std::string> cases[] = {
        {{0x41}, ""},
        {{0x41, 0, 0x42}, "A"},
        {{0x00, 0xD8}, unknown},
        {{0x00, 0xDC, 0x41, 0}, unknown + "A"},
        {{0x00, 0xD8, 0x41, 0}, unknown + "A"},
        {{0xFF, 0xFE}, ""},
        {{0xFF, 0xFE, 0}, ""},
        {{0xFF, 0xFE, 0, 0x10}, ""},
        {{0xFF, 0xFE, 0, 0x10, 0x04, 0x11}, "А"},
        {{0xFF, 0xFE, 0, 0, 0, 0, 0x41}, "A"},
    };
    for (const auto& [stored, text] : cases)
        EXPECT_EQ(decoded(stored), text);
}

} // namespace
} // namespace jet
