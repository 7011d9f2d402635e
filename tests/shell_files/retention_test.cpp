#include "shell/files/retention.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

// A year in which three copies are made every day, pruned after each.
QList<QDateTime> livedThrough(QDate first, int days)
{
    QList<QDateTime> kept;
    for (int day = 0; day < days; ++day) {
        for (const int hour : {8, 12, 18}) {
            const QDate today = first.addDays(day);
            kept.append(QDateTime(today, QTime(hour, 0)));
            QList<qsizetype> gone = shell::outlived(kept, today);
            std::ranges::sort(gone, std::greater<>());
            for (const qsizetype position : gone)
                kept.removeAt(position);
        }
    }
    return kept;
}

} // namespace

TEST(Retention, KeepsTenLatestOneADayAndOneAMonth)
{
    const QDate first(2025, 9, 1);
    constexpr int kDays = 365;
    const QDate today = first.addDays(kDays - 1); // 31 August 2026
    QList<QDateTime> expected;
    for (int month = 0; month < 11; ++month) // the twelfth lies within the thirty days
        expected.append(QDateTime(first.addMonths(month), QTime(8, 0)));
    for (int day = 29; day >= 0; --day)
        expected.append(QDateTime(today.addDays(-day), QTime(8, 0)));
    expected.append(QDateTime(QDate(2026, 8, 1), QTime(8, 0)));
    for (int day = 3; day >= 0; --day) { // the ten latest: three of each of the last days
        for (const int hour : {12, 18}) {
            if (day < 3)
                expected.append(QDateTime(today.addDays(-day), QTime(hour, 0)));
        }
    }
    expected.append(QDateTime(today.addDays(-3), QTime(18, 0)));
    std::ranges::sort(expected);
    QList<QDateTime> kept = livedThrough(first, kDays);
    std::ranges::sort(kept);
    EXPECT_EQ(kept, expected);
}

TEST(Retention, TouchesNothingUntilThereAreMoreThanTen)
{
    const QDate today(2026, 1, 31);
    QList<QDateTime> made;
    for (int i = 0; i < 10; ++i)
        made.append(QDateTime(QDate(2020, 5, 1), QTime(10, i)));
    EXPECT_TRUE(shell::outlived(made, today).isEmpty());
    made.append(QDateTime(QDate(2020, 5, 1), QTime(10, 30)));
    EXPECT_TRUE(shell::outlived(made, today).isEmpty()); // the oldest is the month's
    made.prepend(QDateTime(QDate(2020, 5, 1), QTime(9, 0)));
    EXPECT_EQ(shell::outlived(made, today), QList<qsizetype>{1});
}

TEST(Retention, ACopyOfTomorrowIsKept) // a clock was set back
{
    QList<QDateTime> made;
    for (int i = 0; i < 20; ++i)
        made.append(QDateTime(QDate(2030, 1, 1).addDays(i), QTime(8, 0)));
    EXPECT_TRUE(shell::outlived(made, QDate(2026, 1, 1)).isEmpty());
}
