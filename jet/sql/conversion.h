#pragma once

#include "jet/value.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

// Texts from values and values from texts, as a Jet expression makes them on a computer
// with Russian regional settings: that is where the files are used and what users see.
namespace jet::sql {

// As CStr: up to 15 significant digits, decimal comma.
std::string numberText(double value);
// As CStr: dd.MM.yyyy, H:mm:ss behind it when there is a time of day, alone on day 0.
std::string dateText(DateTime value);

// The whole text as a number, with a decimal comma or point and blanks around it; also &H
// and &O numbers. Nothing when there is anything else in it.
std::optional<double> parseNumber(std::string_view text);
// The number that a text begins with, 0 if none: blanks are skipped anywhere, only a point
// is decimal.
double leadingNumber(std::string_view text);
// dd.mm.yyyy, dd.mm.yy, yyyy-mm-dd, dd.mm (of this year), with . / or - between; a time
// h:mm[:ss] behind it or alone. Day and month change places when only so they make a date.
std::optional<DateTime> parseDate(std::string_view text);

// Throws Error (Overflow) outside the years 100 to 9999.
DateTime checkedDate(double days);

// Halves go to the even neighbour. Throws Error (Overflow) beyond 64 bits.
std::int64_t roundToInteger(double value);

enum class Halves {
    ToEven, // Round, CInt, CLng
    Away,   // Format
};

// A number by its decimal digits, rounded from the 15 that Jet shows and not from the binary
// fraction: 2.675 to two places is 2.68.
struct DecimalDigits
{
    bool negative = false;
    std::string whole;    // at least one digit
    std::string fraction; // exactly as many digits as asked for
};
// Throws Error (Overflow) for infinity.
DecimalDigits roundDigits(double value, int places, Halves halves);
double numberOf(const DecimalDigits& digits);

} // namespace jet::sql
