#pragma once

#include "jet/value.h"

#include <cstdint>

// Arithmetic with dates for the date functions.
namespace jet::sql {

// A date as whole days and seconds since 1899-12-30. Unlike DateTime::days it grows evenly
// before that day too.
struct Moment
{
    std::int64_t day = 0;
    std::int64_t second = 0; // of the day, 0 to 86399

    static Moment of(DateTime date);
    // Carries seconds outside the day over. Throws Error (Overflow) outside the years 100 to 9999.
    DateTime toDate() const;
    std::int64_t seconds() const { return day * 86400 + second; }
};

// Day number of a date whose month and day may lie outside their ranges, as DateSerial
// counts them: month 13 is January of the next year, day 0 the last of the month before.
std::int64_t dayNumber(std::int64_t year, std::int64_t month, std::int64_t day);
int daysInMonth(int year, int month);

// 1 to 7 when the week begins with `firstDay` (1 = Sunday ... 7 = Saturday, 0 = as the
// regional settings say: Monday).
int weekdayOf(std::int64_t day, int firstDay);

// What counts as the first week of a year.
enum class FirstWeek {
    WithJanuaryFirst = 1,
    FourDays = 2, // the first with at least four days in the year
    FullWeek = 3,
};
int weekOfYear(std::int64_t day, int firstDay, FirstWeek firstWeek);

// Two-digit years as Windows reads them: 0-29 are 2000-2029, 30-99 are 1930-1999.
int fullYear(int year);

// The clock of the computer, local time.
DateTime localNow();

} // namespace jet::sql
