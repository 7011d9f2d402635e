#include "jet/error.h"
#include "jet/sql/calendar.h"
#include "jet/sql/conversion.h"
#include "jet/sql/functions.h"
#include "jet/text.h"

#include <algorithm>
#include <cmath>

namespace jet::sql {

namespace {

enum class Interval { Year, Quarter, Month, DayOfYear, Day, Weekday, Week, Hour, Minute, Second };

Interval intervalArgument(const Arguments& arguments, int i)
{
    struct Name
    {
        const char* name;
        Interval interval;
    };
    static constexpr Name kNames[] = {
        {"yyyy", Interval::Year},   {"q", Interval::Quarter}, {"m", Interval::Month},
        {"y", Interval::DayOfYear}, {"d", Interval::Day},     {"w", Interval::Weekday},
        {"ww", Interval::Week},     {"h", Interval::Hour},    {"n", Interval::Minute},
        {"s", Interval::Second},
    };
    const std::string name = arguments.text(i);
    for (const Name& known : kNames) {
        if (sameName(known.name, name))
            return known.interval;
    }
    arguments.refuse(i);
}

// Weeks begin on Sunday and with 1 January unless the arguments say otherwise.
FirstWeek firstWeekArgument(const Arguments& arguments, int i)
{
    const int code = arguments.smallInteger(i, 1);
    if (code < 0 || code > 3)
        arguments.refuse(i);
    return code == 0 ? FirstWeek::WithJanuaryFirst : static_cast<FirstWeek>(code);
}

Value year(const Arguments& arguments)
{
    return arguments.date(0).parts().year;
}

Value month(const Arguments& arguments)
{
    return arguments.date(0).parts().month;
}

Value day(const Arguments& arguments)
{
    return arguments.date(0).parts().day;
}

Value hour(const Arguments& arguments)
{
    return arguments.date(0).parts().hour;
}

Value minute(const Arguments& arguments)
{
    return arguments.date(0).parts().minute;
}

Value second(const Arguments& arguments)
{
    return arguments.date(0).parts().second;
}

Value weekday(const Arguments& arguments)
{
    return weekdayOf(Moment::of(arguments.date(0)).day, arguments.smallInteger(1, 1));
}

Value date(const Arguments&)
{
    return DateTime{std::floor(localNow().days)};
}

Value now(const Arguments&)
{
    return localNow();
}

Value time(const Arguments&)
{
    return Moment{0, Moment::of(localNow()).second}.toDate();
}

Value dateserial(const Arguments& arguments)
{
    const int whichYear = fullYear(arguments.smallInteger(0));
    return Moment{dayNumber(whichYear, arguments.smallInteger(1), arguments.smallInteger(2)), 0}
        .toDate();
}

Value timeserial(const Arguments& arguments)
{
    const std::int64_t hours = arguments.smallInteger(0);
    const std::int64_t minutes = arguments.smallInteger(1);
    return Moment{0, hours * 3600 + minutes * 60 + arguments.smallInteger(2)}.toDate();
}

// The day stays what it is as far as the new month has it: a month after 31 January is
// the last of February.
DateTime addMonths(const Moment& from, std::int64_t months)
{
    const DateTime::Parts p = from.toDate().parts();
    const std::int64_t first = dayNumber(p.year, p.month + months, 1);
    const DateTime::Parts target = Moment{first, 0}.toDate().parts();
    const int last = daysInMonth(target.year, target.month);
    return Moment{first + std::min(p.day, last) - 1, from.second}.toDate();
}

Value dateadd(const Arguments& arguments)
{
    const std::int64_t number = static_cast<std::int64_t>(arguments.smallInteger(1));
    const Moment from = Moment::of(arguments.date(2));
    switch (intervalArgument(arguments, 0)) {
    case Interval::Year:
        return addMonths(from, number * 12);
    case Interval::Quarter:
        return addMonths(from, number * 3);
    case Interval::Month:
        return addMonths(from, number);
    case Interval::Week:
        return Moment{from.day + number * 7, from.second}.toDate();
    case Interval::Hour:
        return Moment{from.day, from.second + number * 3600}.toDate();
    case Interval::Minute:
        return Moment{from.day, from.second + number * 60}.toDate();
    case Interval::Second:
        return Moment{from.day, from.second + number}.toDate();
    default:
        return Moment{from.day + number, from.second}.toDate();
    }
}

std::int64_t weekStart(std::int64_t dayNumber, int firstDay)
{
    return dayNumber - (weekdayOf(dayNumber, firstDay) - 1);
}

// Boundaries crossed on the way from the first date to the second.
Value datediff(const Arguments& arguments)
{
    const Moment from = Moment::of(arguments.date(1));
    const Moment to = Moment::of(arguments.date(2));
    const DateTime::Parts a = from.toDate().parts();
    const DateTime::Parts b = to.toDate().parts();
    const int firstDay = arguments.smallInteger(3, 1);
    const auto crossed = [&](std::int64_t unit) {
        // Moments are never that far in the past, so the divisions do not see negative numbers.
        constexpr std::int64_t kBase = std::int64_t{1'000'000} * 86400;
        return (to.seconds() + kBase) / unit - (from.seconds() + kBase) / unit;
    };
    switch (intervalArgument(arguments, 0)) {
    case Interval::Year:
        return b.year - a.year;
    case Interval::Quarter:
        return b.year * 4 + (b.month - 1) / 3 - a.year * 4 - (a.month - 1) / 3;
    case Interval::Month:
        return b.year * 12 + b.month - a.year * 12 - a.month;
    case Interval::Weekday:
        return (to.day - from.day) / 7;
    case Interval::Week:
        return (weekStart(to.day, firstDay) - weekStart(from.day, firstDay)) / 7;
    case Interval::Hour:
        return crossed(3600);
    case Interval::Minute:
        return crossed(60);
    case Interval::Second:
        return crossed(1);
    default:
        return to.day - from.day;
    }
}

Value datepart(const Arguments& arguments)
{
    const Moment moment = Moment::of(arguments.date(1));
    const DateTime::Parts p = moment.toDate().parts();
    const int firstDay = arguments.smallInteger(2, 1);
    switch (intervalArgument(arguments, 0)) {
    case Interval::Year:
        return p.year;
    case Interval::Quarter:
        return (p.month - 1) / 3 + 1;
    case Interval::Month:
        return p.month;
    case Interval::DayOfYear:
        return moment.day - dayNumber(p.year, 1, 1) + 1;
    case Interval::Weekday:
        return weekdayOf(moment.day, firstDay);
    case Interval::Week:
        return weekOfYear(moment.day, firstDay, firstWeekArgument(arguments, 3));
    case Interval::Hour:
        return p.hour;
    case Interval::Minute:
        return p.minute;
    case Interval::Second:
        return p.second;
    default:
        return p.day;
    }
}

Value datevalue(const Arguments& arguments)
{
    return Moment{Moment::of(arguments.date(0)).day, 0}.toDate();
}

Value timevalue(const Arguments& arguments)
{
    return Moment{0, Moment::of(arguments.date(0)).second}.toDate();
}

constexpr Function kFunctions[] = {
    {"year", 1, 1, year},
    {"month", 1, 1, month},
    {"day", 1, 1, day},
    {"hour", 1, 1, hour},
    {"minute", 1, 1, minute},
    {"second", 1, 1, second},
    {"weekday", 1, 2, weekday},
    {"date", 0, 0, date, Nulls::Pass, Stability::Varies},
    {"now", 0, 0, now, Nulls::Pass, Stability::Varies},
    {"time", 0, 0, time, Nulls::Pass, Stability::Varies},
    {"dateserial", 3, 3, dateserial},
    {"timeserial", 3, 3, timeserial},
    {"dateadd", 3, 3, dateadd},
    {"datediff", 3, 5, datediff},
    {"datepart", 2, 4, datepart},
    {"datevalue", 1, 1, datevalue},
    {"timevalue", 1, 1, timevalue},
};

} // namespace

std::span<const Function> dateFunctions()
{
    return kFunctions;
}

} // namespace jet::sql
