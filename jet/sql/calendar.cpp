#include "jet/sql/calendar.h"

#include "jet/error.h"
#include "jet/sql/conversion.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <ctime>

namespace jet::sql {

namespace {

constexpr std::int64_t kSecondsADay = 86400;
constexpr std::int64_t kUnixEpoch = 25569; // 1970-01-01 as a Jet day

std::int64_t floorDivide(std::int64_t a, std::int64_t b)
{
    return a / b - (a % b < 0 ? 1 : 0);
}

// The first day of the first week of a year.
std::int64_t firstWeekStart(int year, int firstDay, FirstWeek firstWeek)
{
    const std::int64_t newYear = dayNumber(year, 1, 1);
    const int daysBefore = weekdayOf(newYear, firstDay) - 1;
    const std::int64_t start = newYear - daysBefore;
    if (firstWeek == FirstWeek::FourDays && daysBefore > 3)
        return start + 7;
    if (firstWeek == FirstWeek::FullWeek && daysBefore > 0)
        return start + 7;
    return start;
}

int yearOf(std::int64_t day)
{
    return Moment{day, 0}.toDate().parts().year;
}

std::tm localTime(std::time_t time)
{
    std::tm local{};
#ifdef _WIN32
    localtime_s(&local, &time);
#else
    localtime_r(&time, &local);
#endif
    return local;
}

} // namespace

Moment Moment::of(DateTime date)
{
    const DateTime::Parts p = checkedDate(date.days).parts();
    return {dayNumber(p.year, p.month, p.day), p.hour * 3600 + p.minute * 60 + p.second};
}

DateTime Moment::toDate() const
{
    const std::int64_t whole = day + floorDivide(second, kSecondsADay);
    const std::int64_t rest = second - floorDivide(second, kSecondsADay) * kSecondsADay;
    const double time = static_cast<double>(rest) / kSecondsADay;
    const auto days = static_cast<double>(whole);
    return checkedDate(whole < 0 ? days - time : days + time);
}

std::int64_t dayNumber(std::int64_t year, std::int64_t month, std::int64_t day)
{
    constexpr std::int64_t kFarthest = 4'000'000; // days, months or years; beyond every date
    if (std::max({std::abs(year), std::abs(month), std::abs(day)}) > kFarthest)
        throw Error(Fault::Overflow, "дата вне допустимых лет (100–9999)");
    const std::int64_t carried = year + floorDivide(month - 1, 12);
    const auto within = static_cast<unsigned>(month - 1 - floorDivide(month - 1, 12) * 12 + 1);
    if (carried < 0 || carried > 10000)
        throw Error(Fault::Overflow, "дата вне допустимых лет (100–9999)");
    const std::chrono::sys_days first = std::chrono::year(static_cast<int>(carried))
                                        / std::chrono::month(within) / std::chrono::day(1);
    return first.time_since_epoch().count() + kUnixEpoch + day - 1;
}

int daysInMonth(int year, int month)
{
    return static_cast<int>(dayNumber(year, month + 1, 1) - dayNumber(year, month, 1));
}

int weekdayOf(std::int64_t day, int firstDay)
{
    if (firstDay < 0 || firstDay > 7)
        throw Error(Fault::Type, "первый день недели задаётся числом от 0 до 7");
    constexpr int kMonday = 2;
    const int first = firstDay == 0 ? kMonday : firstDay;
    // Day 1 was a Sunday.
    const std::int64_t sinceSunday = day - 1 - floorDivide(day - 1, 7) * 7;
    return static_cast<int>((sinceSunday - (first - 1) + 7) % 7 + 1);
}

int weekOfYear(std::int64_t day, int firstDay, FirstWeek firstWeek)
{
    const int year = yearOf(day);
    std::int64_t start = firstWeekStart(year, firstDay, firstWeek);
    if (day < start)
        start = firstWeekStart(year - 1, firstDay, firstWeek);
    else if (firstWeek != FirstWeek::WithJanuaryFirst
             && day >= firstWeekStart(year + 1, firstDay, firstWeek))
        start = firstWeekStart(year + 1, firstDay, firstWeek);
    return static_cast<int>((day - start) / 7 + 1);
}

int fullYear(int year)
{
    if (year < 0 || year > 99)
        return year;
    return year < 30 ? 2000 + year : 1900 + year;
}

DateTime localNow()
{
    const std::tm now = localTime(std::time(nullptr));
    return DateTime::of(now.tm_year + 1900, now.tm_mon + 1, now.tm_mday, now.tm_hour, now.tm_min,
                        std::min(now.tm_sec, 59));
}

} // namespace jet::sql
