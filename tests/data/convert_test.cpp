#include "data/convert.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

TEST(Convert, DatesKeepTheirDay)
{
    const QDate dates[] = {{1899, 12, 31}, {1899, 12, 1}, {1900, 1, 1},
                           {2000, 2, 29},  {2024, 9, 1},  {9999, 12, 31}};
    for (const QDate& date : dates) {
        EXPECT_EQ(data::toDate(data::toJet(date)), date) << date.toString().toStdString();
        EXPECT_EQ(data::toDate(jet::Value(data::toJet(date))), date);
    }
    EXPECT_EQ(data::toJet(QDate(1900, 1, 1)).days, 2.0);
}

TEST(Convert, TheEmptyDateIsDayZero)
{
    EXPECT_EQ(data::toJet(QDate()).days, 0.0);
    EXPECT_FALSE(data::toDate(jet::DateTime{0}).isValid());
    EXPECT_FALSE(data::toDate(jet::Value()).isValid());
    EXPECT_EQ(data::toDate(jet::DateTime{2.75}), QDate(1900, 1, 1));
}

TEST(Convert, TimesOfDayKeepTheirMinute)
{
    for (const QTime& time : {QTime(0, 0), QTime(8, 30), QTime(23, 59, 59)})
        EXPECT_EQ(data::toTime(data::toJet(time)), time);
}

TEST(Convert, TextsPassAsUtf8)
{
    const QString text = u"Ёлкин «А» 𝄞"_s;
    EXPECT_EQ(data::fromUtf8(data::toUtf8(text)), text);
    EXPECT_EQ(data::fromPath(data::toPath(text)), text);
    EXPECT_EQ(data::toText(jet::Value()), QString());
}
