#include "jet/storage/sortkeytable.h"

#include <string_view>

// Source: keys that Access wrote into indexes (Latin-1, parts of Cyrillic and Greek) and, for
// the rest, published lists of the General order's codes.
namespace jet {
namespace {

constexpr char32_t kPunctuationFirst = 0x2000;
constexpr std::size_t kPunctuationSize = 0x130;

struct Tables
{
    std::array<CharCode, kLowCharCount> low{};
    std::array<CharCode, kPunctuationSize> punctuation{};

    constexpr CharCode& at(char32_t c)
    {
        return c < kLowCharCount ? low[c] : punctuation[c - kPunctuationFirst];
    }
    constexpr void weight(char32_t c, unsigned code, std::uint8_t extra = kPlainExtra)
    {
        const auto aligned = static_cast<std::uint16_t>(code < 0x100 ? code << 8 : code);
        at(c) = {CharKind::Inline, extra, aligned};
    }
    constexpr void hidden(char32_t c, unsigned code)
    {
        at(c) = {CharKind::Hidden, kPlainExtra, static_cast<std::uint16_t>(code)};
    }
    constexpr void hiddenRun(char32_t first, char32_t last, unsigned code)
    {
        for (char32_t c = first; c <= last; ++c)
            hidden(c, code + (c - first));
    }
    constexpr void ignored(char32_t first, char32_t last)
    {
        for (char32_t c = first; c <= last; ++c)
            at(c) = {CharKind::Ignored, kPlainExtra, 0};
    }
};

struct Weight
{
    char32_t character;
    unsigned code;
};

struct AccentedWeight
{
    char32_t character;
    unsigned code;
    std::uint8_t extra;
};

// Letters that carry one accent: the letter of `bases` at the same place gives the code.
struct Accent
{
    std::uint8_t extra;
    std::u32string_view letters;
    std::string_view bases;
};

constexpr unsigned kLatin[26] = {0x4A, 0x4C, 0x4D, 0x4F, 0x51, 0x53, 0x55, 0x57, 0x59,
                                 0x5B, 0x5C, 0x5E, 0x60, 0x62, 0x64, 0x66, 0x68, 0x69,
                                 0x6B, 0x6D, 0x6F, 0x71, 0x73, 0x75, 0x76, 0x78};
constexpr unsigned kDigits[10] = {0x36, 0x38, 0x3A, 0x3C, 0x3E, 0x40, 0x42, 0x44, 0x46, 0x48};

constexpr Weight kAsciiSigns[] = {
    {U' ', 0x07},   {U'!', 0x09},   {U'"', 0x0A},   {U'#', 0x0C},   {U'$', 0x0E},   {U'%', 0x10},
    {U'&', 0x12},   {U'(', 0x14},   {U')', 0x16},   {U'*', 0x18},   {U'+', 0x2C},   {U',', 0x1A},
    {U'.', 0x1C},   {U'/', 0x1E},   {U':', 0x20},   {U';', 0x22},   {U'<', 0x2E},   {U'=', 0x30},
    {U'>', 0x32},   {U'?', 0x24},   {U'@', 0x26},   {U'[', 0x27},   {U'\\', 0x29},  {U']', 0x2A},
    {U'^', 0x2B02}, {U'_', 0x2B03}, {U'`', 0x2B07}, {U'{', 0x2B09}, {U'|', 0x2B0B}, {U'}', 0x2B0D},
    {U'~', 0x2B0F}, {0x09, 0x0803}, {0x0A, 0x0804}, {0x0B, 0x0805}, {0x0C, 0x0806}, {0x0D, 0x0807},
};

constexpr Weight kLatin1Signs[] = {
    {0xA0, 0x0802}, {0xA1, 0x2B10}, {0xA2, 0x34A6}, {0xA3, 0x34A7}, {0xA4, 0x34A8}, {0xA5, 0x34A9},
    {0xA6, 0x2B11}, {0xA7, 0x34AA}, {0xA8, 0x2B12}, {0xA9, 0x34AB}, {0xAB, 0x3305}, {0xAC, 0x34AC},
    {0xAE, 0x34AD}, {0xAF, 0x2B13}, {0xB0, 0x34AE}, {0xB1, 0x3304}, {0xB2, 0x3A},   {0xB3, 0x3C},
    {0xB4, 0x2B14}, {0xB5, 0x34AF}, {0xB6, 0x34B0}, {0xB7, 0x34B1}, {0xB8, 0x2B15}, {0xB9, 0x38},
    {0xBB, 0x3307}, {0xBC, 0x3712}, {0xBD, 0x3716}, {0xBE, 0x371A}, {0xBF, 0x2B16}, {0xD7, 0x3309},
    {0xF7, 0x330A},
};

constexpr Accent kAccents[] = {
    {0x03, U"ªºıĸ", "AOIK"},
    {0x0F, U"ÀÈÌÒÙàèìòù", "AEIOUAEIOU"},
    {0x0E, U"ÁÉÍÓÚÝáéíóúýĆćĹĺŃńŔŕŚśŹź", "AEIOUYAEIOUYCCLLNNRRSSZZ"},
    {0x12, U"ÂÊÎÔÛâêîôûĈĉĜĝĤĥĴĵŜŝŴŵŶŷ", "AEIOUAEIOUCCGGHHJJSSWWYY"},
    {0x19, U"ÃÑÕãñõĨĩŨũ", "ANOANOIIUU"},
    {0x13, U"ÄËÏÖÜäëïöüÿŸ", "AEIOUAEIOUYY"},
    {0x1A, U"ÅåŮů", "AAUU"},
    {0x1C, U"ÇçĢģĶķĻļŅņŖŗŞşŢţ", "CCGGKKLLNNRRSSTT"},
    {0x17, U"ĀāĒēĪīŌōŪū", "AAEEIIOOUU"},
    {0x15, U"ĂăĔĕĞğĬĭŎŏŬŭ", "AAEEGGIIOOUU"},
    {0x1B, U"ĄąĘęĮįŲų", "AAEEIIUU"},
    {0x10, U"ĊċĖėĠġİŻż", "CCEEGGIZZ"},
    {0x14, U"ČčĎďĚěĽľŇňŘřŠšŤťŽž", "CCDDEELLNNRRSSTTZZ"},
    {0x1D, U"ŐőŰű", "OOUU"},
    {0x1E, U"ĐđĦħ", "DDHH"},
    {0x1F, U"Łł", "LL"},
    {0x11, U"Ŀŀ", "LL"},
    {0x21, U"Øø", "OO"},
    {0x48, U"ŉ", "N"},
    {0x68, U"Ðð", "DD"},
};

constexpr Weight kTwoLetters[] = {
    {U'Æ', 0x4A51}, {U'æ', 0x4A51}, {U'Þ', 0x6D57}, {U'þ', 0x6D57}, {U'ß', 0x6B6B},
    {U'Ĳ', 0x595B}, {U'ĳ', 0x595B}, {U'Œ', 0x6451}, {U'œ', 0x6451},
};

// Letters of two-byte codes that no rule below gives; both cases where there are two.
constexpr AccentedWeight kOtherLetters[] = {
    {U'Ŋ', 0x6305, 0x02}, {U'ŋ', 0x6305, 0x02}, {U'Ŧ', 0x6E06, 0x1E}, {U'ŧ', 0x6E06, 0x1E},
    {U'ſ', 0x6C06, 0x02}, {U'ς', 0x791D, 0x02}, {U'Ά', 0x790C, 0x05}, {U'ά', 0x790C, 0x05},
    {U'Έ', 0x7910, 0x05}, {U'έ', 0x7910, 0x05}, {U'Ή', 0x7912, 0x05}, {U'ή', 0x7912, 0x05},
    {U'Ί', 0x7914, 0x05}, {U'ί', 0x7914, 0x05}, {U'Ό', 0x791A, 0x05}, {U'ό', 0x791A, 0x05},
    {U'Ύ', 0x791F, 0x05}, {U'ύ', 0x791F, 0x05}, {U'Ώ', 0x7923, 0x05}, {U'ώ', 0x7923, 0x05},
    {U'Ϊ', 0x7914, 0x13}, {U'ϊ', 0x7914, 0x13}, {U'Ϋ', 0x791F, 0x13}, {U'ϋ', 0x791F, 0x13},
    {U'ΐ', 0x7914, 0x16}, {U'ΰ', 0x791F, 0x16}, {U'Ѣ', 0x795F, 0x02}, {U'ѣ', 0x7944, 0x03},
    {U'Ѳ', 0x7967, 0x02}, {U'ѳ', 0x7967, 0x02}, {U'Ѵ', 0x7968, 0x02}, {U'ѵ', 0x7968, 0x02},
    {U'Ґ', 0x7932, 0x03}, {U'ґ', 0x7932, 0x03},
};

// U+0410..U+042F and, with the same codes, U+0430..U+044F; low byte of 79xx.
constexpr std::uint8_t kCyrillic[32] = {
    0x2F, 0x30, 0x31, 0x32, 0x33, 0x36, 0x38, 0x39, 0x3B, 0x3E, 0x40, 0x41, 0x43, 0x44, 0x46, 0x47,
    0x48, 0x49, 0x4A, 0x4D, 0x50, 0x51, 0x52, 0x53, 0x55, 0x56, 0x57, 0x58, 0x59, 0x5A, 0x5B, 0x5C,
};

// U+0400..U+040F and U+0450..U+045F; 00 marks the two that are ignored.
struct CyrillicExtra
{
    std::uint8_t low;
    std::uint8_t extra;
};
constexpr CyrillicExtra kCyrillicEdge[16] = {
    {0x00, 0x02}, {0x36, 0x13}, {0x35, 0x02}, {0x32, 0x0E}, {0x37, 0x02}, {0x3A, 0x02},
    {0x3C, 0x02}, {0x3D, 0x02}, {0x3F, 0x02}, {0x42, 0x02}, {0x45, 0x02}, {0x4B, 0x02},
    {0x40, 0x0E}, {0x00, 0x02}, {0x4E, 0x02}, {0x54, 0x02},
};

// Combining marks U+0300..U+030C; a letter and its mark give the extra byte of the single
// character (02 + 0D = grave's 0F).
constexpr std::uint8_t kMarks[] = {0x0D, 0x0C, 0x10, 0x17, 0x15, 0x3E, 0x13,
                                   0x0E, 0x11, 0x3F, 0x18, 0x1B, 0x12};

constexpr Weight kPunctuation[] = {
    {0x2018, 0x2B37}, {0x2019, 0x2B38}, {0x201A, 0x2B39}, {0x201C, 0x2B3B},
    {0x201D, 0x2B3C}, {0x201E, 0x2B3D}, {0x2020, 0x34B3}, {0x2021, 0x34B4},
    {0x2022, 0x34B5}, {0x2026, 0x34B9}, {0x2030, 0x34BA}, {0x2039, 0x2B46},
    {0x203A, 0x2B47}, {0x20AC, 0x35A1}, {0x2116, 0x6302}, {0x2122, 0x6E04},
};

constexpr void addAscii(Tables& t)
{
    for (unsigned i = 0; i < 10; ++i)
        t.weight(U'0' + i, kDigits[i]);
    for (unsigned i = 0; i < 26; ++i) {
        t.weight(U'A' + i, kLatin[i]);
        t.weight(U'a' + i, kLatin[i]);
    }
    for (const Weight& sign : kAsciiSigns)
        t.weight(sign.character, sign.code);
    t.ignored(0, 0);
    t.hiddenRun(0x01, 0x08, 0x03);
    t.hiddenRun(0x0E, 0x1F, 0x0B);
    t.hiddenRun(0x7F, 0x9F, 0x1D);
    t.hidden(U'\'', 0x80);
    t.hidden(U'-', 0x82);
    t.hidden(0xAD, 0x83); // soft hyphen
}

constexpr void addLatin(Tables& t)
{
    for (const Weight& sign : kLatin1Signs)
        t.weight(sign.character, sign.code);
    for (const Accent& accent : kAccents) {
        for (std::size_t i = 0; i < accent.letters.size(); ++i)
            t.weight(accent.letters[i], kLatin[accent.bases[i] - 'A'], accent.extra);
    }
    for (const Weight& letters : kTwoLetters) {
        t.weight(letters.character, letters.code);
        t.at(letters.character).kind = CharKind::TwoLetter;
    }
    for (std::size_t i = 0; i < std::size(kMarks); ++i)
        t.at(static_cast<char32_t>(0x300 + i)) = {CharKind::Combining, kMarks[i], 0};
    t.at(0x327) = {CharKind::Combining, 0x1C - 2, 0}; // cedilla
    t.at(0x328) = {CharKind::Combining, 0x1B - 2, 0}; // ogonek
}

constexpr void addGreekAndCyrillic(Tables& t)
{
    unsigned code = 0x790C;
    for (char32_t c = U'α'; c <= U'ω'; ++c) {
        if (c == U'ς')
            continue;
        t.weight(c, code);
        t.weight(c - 0x20, code);
        ++code;
    }
    for (unsigned i = 0; i < 32; ++i) {
        t.weight(0x410 + i, 0x7900U + kCyrillic[i]);
        t.weight(0x430 + i, 0x7900U + kCyrillic[i]);
    }
    for (unsigned i = 0; i < 16; ++i) {
        for (const char32_t c : {0x400 + i, 0x450 + i}) {
            if (kCyrillicEdge[i].low == 0)
                t.ignored(c, c);
            else
                t.weight(c, 0x7900U + kCyrillicEdge[i].low, kCyrillicEdge[i].extra);
        }
    }
    t.ignored(0x4D0, 0x4FF);
    for (const AccentedWeight& letter : kOtherLetters)
        t.weight(letter.character, letter.code, letter.extra);
}

constexpr void addPunctuation(Tables& t)
{
    for (const Weight& sign : kPunctuation)
        t.weight(sign.character, sign.code);
    for (unsigned i = 0; i <= 10; ++i)
        t.weight(0x2000 + i, 0x0808 + i); // spaces of several widths
    t.hidden(0x2010, 0x84);
    t.hidden(0x2011, 0x85);
    t.hidden(0x2012, 0x88);
    t.hidden(0x2013, 0x89);
    t.hidden(0x2014, 0x8B);
    t.hidden(0x2015, 0x8C);
}

constexpr Tables makeTables()
{
    Tables t;
    addAscii(t);
    addLatin(t);
    addGreekAndCyrillic(t);
    addPunctuation(t);
    return t;
}

constexpr Tables kTables = makeTables();

// Comparing two texts weight by weight is comparing their keys only while no one-byte code
// is the beginning of a two-byte code.
constexpr bool weightsArePrefixFree(const Tables& t)
{
    std::array<bool, 256> single{};
    std::array<bool, 256> lead{};
    const auto note = [&](const CharCode& code) {
        if (code.kind == CharKind::Inline)
            ((code.code & 0xFF) == 0 ? single : lead)[code.code >> 8] = true;
    };
    for (const CharCode& code : t.low)
        note(code);
    for (const CharCode& code : t.punctuation)
        note(code);
    for (std::size_t i = 0; i < 256; ++i) {
        if (single[i] && lead[i])
            return false;
    }
    return true;
}
static_assert(weightsArePrefixFree(kTables));

constexpr CharCode kUnknown{};
constexpr CharCode kByteOrderMark{CharKind::Ignored, kPlainExtra, 0};

} // namespace

constinit const std::array<CharCode, kLowCharCount> kLowCharCodes = kTables.low;

const CharCode& highCharCode(char32_t character)
{
    const char32_t sign = character - kPunctuationFirst;
    if (sign < kPunctuationSize)
        return kTables.punctuation[sign];
    return character == 0xFEFF ? kByteOrderMark : kUnknown;
}

} // namespace jet
