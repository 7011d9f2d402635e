#include "jet/storage/sortkey.h"

#include <gtest/gtest.h>

#include <iterator>
#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace jet {
namespace {

std::string hex(const Bytes& bytes)
{
    static constexpr char kDigits[] = "0123456789ABCDEF";
    std::string out;
    for (const std::uint8_t byte : bytes) {
        out += kDigits[byte >> 4];
        out += kDigits[byte & 15];
    }
    return out;
}

std::string keyOf(std::string_view text, TwoLetterCount twoLetters = TwoLetterCount::Two)
{
    const auto key = generalKey(text, twoLetters);
    return key ? hex(*key) : "unknown";
}

int sign(int value)
{
    return value < 0 ? -1 : value > 0 ? 1 : 0;
}

int compareSortKeys(std::string_view a, std::string_view b)
{
    const Bytes first = generalSortKey(a);
    const Bytes second = generalSortKey(b);
    return first < second ? -1 : second < first ? 1 : 0;
}

TEST(SortKey, HasTheBytesThatAccessWrites)
{
    struct Case
    {
        std::string_view text;
        std::string_view key;
    };
    const Case cases[] = {
        {"", "0100"},
        {"   ", "0100"},
        {"Tables", "6D4A4C5E516B0100"},
        {"tABLES  ", "6D4A4C5E516B0100"},
        {"Мир", "7943793B79480100"},
        {"еж", "793679380100"},
        {"ёж", "79367938011300"},
        {"ежё", "793679387936010202"
                "1300"},
        {"а-б", "792F793001010101800B068200"},
        {"O'Neil", "646251595E01010101800B068000"},
        {"Ä", "4A011300"},
        {"Ärä", "4A694A0113021300"},
        {"a b", "4A074C0100"},
        {"№ 5", "630207400100"},
        {"-", "010101018007068200"},
        {"Ѐ", "0100"},
        {"\xEF\xBB\xBF"
         "a",
         "4A0100"},
        {"«10%»", "3305383610"
                  "33070100"},
    };
    for (const Case& c : cases)
        EXPECT_EQ(keyOf(c.text), c.key) << c.text;
}

TEST(SortKey, TwoLetterCharactersCountTwiceOrOnce)
{
    EXPECT_EQ(keyOf("ßé", TwoLetterCount::Two), "6B6B510102020E00");
    EXPECT_EQ(keyOf("ßé", TwoLetterCount::One), "6B6B5101020E00");
    EXPECT_EQ(keyOf("æ-", TwoLetterCount::Two), "4A5101010101800F068200");
    EXPECT_EQ(keyOf("æ-", TwoLetterCount::One), "4A5101010101800B068200");
    EXPECT_EQ(keyOf("Straße"), keyOf("STRASSE"));
}

TEST(SortKey, CombiningMarksGiveTheKeyOfTheSingleCharacter)
{
    EXPECT_EQ(keyOf("e\u0301"), keyOf("é"));
    EXPECT_EQ(keyOf("Ко\u0301т"), "7940"
                                  "7946"
                                  "794A"
                                  "01020E00");
    EXPECT_EQ(keyOf("a\u0308b\u0327"), "4A4C01131C00");
}

TEST(SortKey, OnlyTheFirst255CharactersCount)
{
    const std::string full(255, 'a');
    EXPECT_EQ(keyOf(full), keyOf(full + "b"));
    EXPECT_EQ(keyOf(full), keyOf(full + "中"));
    EXPECT_EQ(keyOf(std::string(254, 'a') + " b"), keyOf(std::string(254, 'a')));
    std::string cyrillic;
    for (int i = 0; i < 300; ++i)
        cyrillic += "ж";
    EXPECT_EQ(generalKey(cyrillic)->size(), 255U * 2 + 2);
    EXPECT_NE(compareGeneral(full, full + "b"), 0) << "comparisons see the whole text";
}

TEST(SortKey, UnknownCharactersGiveNoIndexKeyButSortLast)
{
    EXPECT_EQ(keyOf("a中"), "unknown");
    EXPECT_EQ(keyOf("\U0001F600"), "unknown");
    EXPECT_EQ(keyOf("\xD0"), "unknown") << "not UTF-8";
    EXPECT_LT(compareGeneral("яяя", "中"), 0);
    EXPECT_LT(compareGeneral("中", "中a"), 0);
    EXPECT_LT(compareGeneral("中", "\U0001F600"), 0);
}

TEST(CompareGeneral, OrdersAsRussianReadersExpect)
{
    const std::vector<std::string> ordered = {
        "",   "-",   "1",    "10",  "2", "a", "B",    "№",     "z", "α", "аист", "еж",
        "ёж", "ежа", "Ёлка", "ель", "и", "й", "коот", "ко-от", "ь", "э", "Я",
    };
    for (std::size_t i = 0; i + 1 < ordered.size(); ++i) {
        EXPECT_LT(compareGeneral(ordered[i], ordered[i + 1]), 0)
            << ordered[i] << " / " << ordered[i + 1];
        EXPECT_GT(compareGeneral(ordered[i + 1], ordered[i]), 0);
    }
}

TEST(CompareGeneral, CaseAndTrailingSpacesDoNotCount)
{
    EXPECT_EQ(compareGeneral("Иванов", "ИВАНОВ   "), 0);
    EXPECT_NE(compareGeneral(" Иванов", "Иванов"), 0);
    EXPECT_NE(compareGeneral("еж", "ёж"), 0);
    EXPECT_NE(compareGeneral("Иванов-Петров", "ИвановПетров"), 0);
    EXPECT_GT(compareGeneral("Иванов-Петров", "Иванов Петров"), 0) << "the space has a weight";
}

// Every shortcut of the comparison must give the order of the keys.
TEST(CompareGeneral, AgreesWithTheKeysForRandomTexts)
{
    const std::string_view alphabet[] = {
        "a", "A", "b",  "я", "Я", "ё", "е", "Ё", "-",  "'", " ",      "ß",    "s",    "Æ",
        "e", "é", "中", "№", "Z", "ь", "0", "æ", "\t", "Ѐ", "\u0301", "\xD0", "\xA1", "\x01",
    };
    std::mt19937 random(20240901);
    std::uniform_int_distribution<std::size_t> letter(0, std::size(alphabet) - 1);
    std::uniform_int_distribution<int> length(0, 5);
    const auto text = [&] {
        std::string out;
        for (int i = length(random); i > 0; --i)
            out += alphabet[letter(random)];
        return out;
    };
    for (int i = 0; i < 100'000; ++i) {
        const std::string start = text();
        const std::string a = start + text();
        const std::string b = start + text();
        ASSERT_EQ(sign(compareGeneral(a, b)), compareSortKeys(a, b)) << a << " / " << b;
    }
}

} // namespace
} // namespace jet
