#include "jet/error.h"
#include "jet/tabledef.h"
#include "jet/text.h"
#include "jet/value.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace jet {
namespace {

TEST(DateTime, CountsDaysFromTheEndOf1899)
{
    const struct
    {
        double days;
        const char* text;
        int weekday;
    } cases[] = {
        {0, "0:00:00", 7},
        {1, "31.12.1899", 1},
        {-1, "29.12.1899", 6},
        {-1.25, "29.12.1899 6:00:00", 6},
        {0.5, "12:00:00", 7},
        {27293.0, "21.09.1974", 7},
        {42329.0 + 81630.0 / 86400, "21.11.2015 22:40:30", 7},
        {45351.0, "29.02.2024", 5},
        {36584.99999999, "29.02.2000", 3},
        {-657434.0, "01.01.0100", 6},
        {2958465.0, "31.12.9999", 6},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(Value(DateTime{c.days}).toText(), c.text);
        EXPECT_EQ(DateTime{c.days}.parts().weekday, c.weekday) << c.text;
    }
}

TEST(DateTime, BuildsWhatItTakesApart)
{
    for (const double days : {-657434.0, -1.75, -0.25, 0.0, 0.75, 1.0, 45000.5, 2958465.25}) {
        const DateTime::Parts p = DateTime{days}.parts();
        EXPECT_DOUBLE_EQ(DateTime::of(p.year, p.month, p.day, p.hour, p.minute, p.second).days,
                         days == -0.25 ? 0.25 : days); // day 0 has no sign
    }
}

TEST(DateTime, DamagedNumbersStayInTheCalendar)
{
    for (const double days : {1e300, -1e300, std::numeric_limits<double>::quiet_NaN(),
                              std::numeric_limits<double>::infinity()}) {
        const int year = DateTime{days}.parts().year;
        EXPECT_GE(year, 100);
        EXPECT_LE(year, 9999);
    }
}

TEST(Value, ConvertsTextAsTheFunctionValDoes)
{
    const struct
    {
        const char* text;
        double number;
    } cases[] = {{"", 0},       {"12", 12},    {" 1 2,5", 12}, {"-3.5", -3.5},
                 {"+4", 4},     {"1E3", 1000}, {"1d2", 100},   {"abc", 0},
                 {"inf", 0},    {"nan", 0},    {"-", 0},       {".5", 0.5},
                 {"5 час.", 5}, {"--2", 0},    {"0x10", 0},    {"12.03.2020", 12.03}};
    for (const auto& c : cases)
        EXPECT_EQ(Value(c.text).toDouble(), c.number) << c.text;
}

TEST(Value, RoundsHalvesToEvenAndSurvivesHugeNumbers)
{
    EXPECT_EQ(Value(2.5).toInteger(), 2);
    EXPECT_EQ(Value(3.5).toInteger(), 4);
    EXPECT_EQ(Value(-2.5).toInteger(), -2);
    EXPECT_GT(Value(1e300).toInteger(), std::int64_t{1} << 62);
    EXPECT_LT(Value(-1e300).toInteger(), -(std::int64_t{1} << 62));
    EXPECT_EQ(Value(std::nan("")).toInteger(), 0);
    EXPECT_EQ(Value(true).toInteger(), -1);
}

TEST(Value, ReadsDatesFromText)
{
    EXPECT_EQ(Value("29.02.2024").toDate(), DateTime::of(2024, 2, 29));
    EXPECT_EQ(Value("01.09.2023 8:30").toDate(), DateTime::of(2023, 9, 1, 8, 30));
    EXPECT_EQ(Value("2023-09-01 08:30:05").toDate(), DateTime::of(2023, 9, 1, 8, 30, 5));
    EXPECT_EQ(Value("8:30").toDate().days, 8.5 / 24);
    EXPECT_EQ(Value("45000").toDate().days, 45000);
    EXPECT_NE(Value("30.02.2024").toDate(), DateTime::of(2024, 3, 1));
    EXPECT_EQ(Value("99999999999.1.1").toDate().days, 99999999999.1);
}

TEST(Value, ShowsNumbersWithAPoint)
{
    EXPECT_EQ(Value(0.1).toText(), "0.1");
    EXPECT_EQ(Value(-12.50).toText(), "-12.5");
    EXPECT_EQ(Value(100.0).toText(), "100");
    EXPECT_EQ(Value(Currency{12345}).toText(), "1.2345");
    EXPECT_EQ(Value(Currency{-50000}).toText(), "-5");
    EXPECT_EQ(Value(Currency{-5000}).toText(), "-0.5");
    EXPECT_EQ(Value(Currency{std::numeric_limits<std::int64_t>::min()}).toText(),
              "-922337203685477.5808");
    EXPECT_EQ(Value(false).toText(), "0");
    EXPECT_EQ(Value(true).toText(), "-1");
}

TEST(Decimal, PrintsAllDigits)
{
    const struct
    {
        Decimal value;
        const char* text;
    } cases[] = {
        {{false, 0, {0, 0, 0, 0}}, "0"},
        {{true, 2, {0, 0, 0, 0}}, "0"},
        {{false, 0, {0, 0, 0, 1}}, "1"},
        {{true, 3, {0, 0, 0, 1}}, "-0.001"},
        {{false, 2, {0, 0, 0, 1200}}, "12"},
        {{false, 1, {0, 0, 0, 123}}, "12.3"},
        {{false, 0, {0, 0, 1, 0}}, "4294967296"},
        {{false, 0, {~0u, ~0u, ~0u, ~0u}}, "340282366920938463463374607431768211455"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(c.value.toString(), c.text);
    EXPECT_EQ((Decimal{true, 1, {0, 0, 0, 25}}.toDouble()), -2.5);
}

TEST(Text, Utf16KeepsTextsAndReplacesHalves)
{
    const std::string text = "Aё€\U0001F600";
    EXPECT_EQ(utf8FromUtf16(utf16FromUtf8(text)), text);
    EXPECT_EQ(utf16Length(text), 5u);
    EXPECT_EQ(utf8FromUtf16(Bytes{0x00, 0xD8, 0x41, 0x00}), "\uFFFDA");
    EXPECT_EQ(utf8FromUtf16(Bytes{0x00, 0xDC}), "\uFFFD");
    EXPECT_EQ(utf8FromUtf16(Bytes{0x41, 0x00, 0x42}), "A");
    for (const char* broken : {"\xC3", "\xE2\x82", "\xF0\x9F\x98", "\xC0\x80", "\xED\xA0\x80"}) {
        const std::string repaired = utf8FromUtf16(utf16FromUtf8(broken));
        EXPECT_EQ(repaired.substr(0, 3), "\uFFFD");
    }
}

TEST(Text, NamesCompareWithoutCase)
{
    EXPECT_TRUE(sameName("Заказы", "ЗАКАЗЫ"));
    EXPECT_TRUE(sameName("ёж№1", "ЁЖ№1"));
    EXPECT_TRUE(sameName("Spgrup", "SPGRUP"));
    EXPECT_TRUE(sameName("Ñandú", "ñANDÚ"));
    EXPECT_FALSE(sameName("еж", "ёж"));
    EXPECT_FALSE(sameName("SPGRUP", "SPGRUP1"));
    EXPECT_FALSE(sameName("×", "÷"));
}

TEST(Error, NamesPageAndTable)
{
    EXPECT_STREQ(Error(Fault::Damaged, "нет места", 7, "SPGRUP").what(),
                 "нет места (таблица «SPGRUP», страница 7)");
    EXPECT_STREQ(Error(Fault::Damaged, "нет места", 7).what(), "нет места (страница 7)");
}

TEST(Index, WritesItsFieldsAsDaoDoes)
{
    EXPECT_EQ((Index{.name = "I", .fields = {{"IDG", false}, {"NAIM", true}}}.fieldList()),
              "+IDG;-NAIM");
}

} // namespace
} // namespace jet
