#include "demo/calendar.h"

#include <algorithm>
#include <array>

namespace demo {

namespace {

constexpr auto kHolidays = std::to_array<Holiday>({
    {4, 11, "День народного единства"},
    {1, 1, "Новогодние каникулы"},
    {2, 1, "Новогодние каникулы"},
    {3, 1, "Новогодние каникулы"},
    {4, 1, "Новогодние каникулы"},
    {5, 1, "Новогодние каникулы"},
    {6, 1, "Новогодние каникулы"},
    {7, 1, "Рождество Христово"},
    {8, 1, "Новогодние каникулы"},
    {23, 2, "День защитника Отечества"},
    {8, 3, "Международный женский день"},
    {1, 5, "Праздник Весны и Труда"},
    {9, 5, "День Победы"},
    {12, 6, "День России"},
});

jet::DateTime::Parts partsOf(int day)
{
    return jet::DateTime{static_cast<double>(day)}.parts();
}

bool isHoliday(int day)
{
    const auto parts = partsOf(day);
    return std::ranges::any_of(kHolidays, [&](const Holiday& holiday) {
        return holiday.day == parts.day && holiday.month == parts.month;
    });
}

} // namespace

int dayOf(int year, int month, int day)
{
    return static_cast<int>(jet::DateTime::of(year, month, day).days);
}

std::span<const Holiday> holidays()
{
    return kHolidays;
}

Calendar::Calendar(int startYear)
    : m_startYear(startYear)
    , m_terms{{dayOf(startYear, 9, 1), dayOf(startYear, 12, 20)},
              {dayOf(startYear + 1, 1, 19), dayOf(startYear + 1, 5, 31)}}
{}

std::vector<int> Calendar::studyDays(const Term& term) const
{
    constexpr int kSunday = 6;
    std::vector<int> days;
    for (int day = term.first; day <= term.last; ++day)
        if (weekday(day) != kSunday && !isHoliday(day))
            days.push_back(day);
    return days;
}

int weekday(int day)
{
    return (day + 5) % 7; // day 2, 1900-01-01, was a Monday
}

int monthOf(int day)
{
    return partsOf(day).month;
}

int monthEnd(int day)
{
    const auto parts = partsOf(day);
    return parts.month == 12 ? dayOf(parts.year, 12, 31)
                             : dayOf(parts.year, parts.month + 1, 1) - 1;
}

} // namespace demo
