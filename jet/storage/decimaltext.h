#pragma once

#include "jet/value.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace jet {

// A number in decimal digits: exact where doubles are not, for text, Currency and Decimal.
struct DecimalDigits
{
    bool negative = false;
    std::string digits; // no leading zeros; empty for zero
    int scale = 0;      // digits behind the point; may be negative or exceed their number

    // Digits at another scale; halves go to the even neighbour, as Jet rounds.
    std::string atScale(int newScale) const;
    double toDouble() const; // the nearest one; infinite when there is none
};

// Blanks around are ignored; decimal point or comma, exponent. Nothing for other texts.
std::optional<DecimalDigits> parseDecimal(std::string_view text);
// The shortest digits that name the double. Requires a finite value.
DecimalDigits decimalDigits(double value);

// Nothing when the number has more than `precision` digits at that scale.
std::optional<Decimal> toDecimal(const DecimalDigits& number, int precision, std::uint8_t scale);
// Nothing when it is beyond 922 337 203 685 477.5807.
std::optional<Currency> toCurrency(const DecimalDigits& number);

} // namespace jet
