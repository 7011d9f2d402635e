#pragma once

#include "jet/value.h"

#include <optional>
#include <string_view>

namespace jet::sql {

// Reads what stands between the signs of `#...#`, nothing when it is no valid date.
//   month/day/year with / - or . between; the day first only where the first number cannot
//   be a month; year-month-day when the first number has four digits
//   years of two digits: 00-29 are 2000-2029, 30-99 are 1930-1999
//   a time H:mm[:ss] [AM|PM] behind the date, or alone (day 0)
std::optional<DateTime> parseDateLiteral(std::string_view literal);

} // namespace jet::sql
