#include "refbooks/typedvalue.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using namespace refbooks;

namespace {

TEST(TypedValue, UnderstandsDatesAsPeopleWriteThem)
{
    const std::pair<QString, QString> understood[] = {
        {u"1.9.2026"_s, u"2026-09-01"_s},   {u" 01/09/26 "_s, u"2026-09-01"_s},
        {u"01092026"_s, u"2026-09-01"_s},   {u"010926"_s, u"2026-09-01"_s},
        {u"1 9 2026"_s, u"2026-09-01"_s},   {u"2026-09-01"_s, u"2026-09-01"_s},
        {u"29.02.2024"_s, u"2024-02-29"_s}, {u"31.12.49"_s, u"2049-12-31"_s},
        {u"01,01,50"_s, u"1950-01-01"_s},   {u"31.12.1899"_s, u"1899-12-31"_s},
    };
    for (const auto& [text, date] : understood)
        EXPECT_EQ(typedDate(text), QDate::fromString(date, Qt::ISODate)) << text.toStdString();
    for (const auto& text : {u"31.02.2026"_s, u"29.02.2023"_s, u"1.13.2026"_s, u"1.9"_s,
                             u"1.9.202"_s, u"1.9.20261"_s, u"0.0.0000"_s, u"1.1.0099"_s,
                             u"завтра"_s, u"1.9.2026 г."_s, u"1092026"_s, u"."_s, u"٠١.٠٩.٢٠٢٦"_s})
        EXPECT_FALSE(typedDate(text)) << text.toStdString();
    EXPECT_EQ(typedDate(u"  "_s), QDate());
    EXPECT_EQ(typedDate(dateText({2026, 9, 1})), QDate(2026, 9, 1));
}

TEST(TypedValue, UnderstandsTimesAsPeopleWriteThem)
{
    const std::pair<QString, QTime> understood[] = {
        {u"8:30"_s, {8, 30}}, {u"08.30"_s, {8, 30}},  {u"830"_s, {8, 30}}, {u"0830"_s, {8, 30}},
        {u"8"_s, {8, 0}},     {u"23:59"_s, {23, 59}}, {u"0:00"_s, {0, 0}}, {u"8-30"_s, {8, 30}},
    };
    for (const auto& [text, time] : understood)
        EXPECT_EQ(typedTime(text), time) << text.toStdString();
    for (const auto& text :
         {u"24:00"_s, u"8:60"_s, u"8:3"_s, u"8:30:00"_s, u"полдень"_s, u"08300"_s, u":"_s})
        EXPECT_FALSE(typedTime(text)) << text.toStdString();
    EXPECT_EQ(typedTime(u""_s), QTime());
    EXPECT_EQ(timeText({8, 5}), u"8:05"_s);
}

TEST(TypedValue, FindsTheRowOfAList)
{
    const Choices list{
        {{}, u""_s}, {1, u"ИС-11"_s}, {2, u"ИС-21"_s}, {3, u"ис-21"_s}, {4, u"ЭК"_s}};
    EXPECT_EQ(rowOfText(list, u" ис-11 "_s), 1);
    EXPECT_EQ(rowOfText(list, u"ИС-21"_s), 2);
    EXPECT_EQ(rowOfText(list, u""_s), 0);
    EXPECT_EQ(rowOfText(list, u"ИС"_s), -1);
    EXPECT_EQ(onlyRowWith(list, u"эк"_s), 4);
    EXPECT_EQ(onlyRowWith(list, u"1"_s), -1);
    EXPECT_EQ(onlyRowWith(list, u"физ"_s), -1);
}

} // namespace
