#include "jet/sql/conversion.h"

#include "jet/error.h"

#include <algorithm>
#include <charconv>
#include <cmath>

namespace jet::sql {

namespace {

constexpr int kSignificantDigits = 15;

std::string_view trimmed(std::string_view text)
{
    constexpr std::string_view kBlanks = " \t\r\n";
    const std::size_t first = text.find_first_not_of(kBlanks);
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

// "&H1F" and "&O17"; sixteen-bit patterns are taken as they stand, not as negative numbers.
std::optional<double> parseRadix(std::string_view text)
{
    if (text.size() < 3 || text[0] != '&')
        return std::nullopt;
    const char letter = static_cast<char>(text[1] | 0x20);
    const int base = letter == 'h' ? 16 : letter == 'o' ? 8 : 0;
    std::uint32_t value = 0;
    const char* const end = text.data() + text.size();
    if (base == 0)
        return std::nullopt;
    const auto [next, error] = std::from_chars(text.data() + 2, end, value, base);
    if (error != std::errc() || next != end)
        return std::nullopt;
    return static_cast<std::int32_t>(value);
}

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

// Adds one unit to the last of the digits; true when a digit must be put in front.
bool carry(std::string& digits)
{
    for (std::size_t i = digits.size(); i-- > 0;) {
        if (digits[i] != '9') {
            ++digits[i];
            return false;
        }
        digits[i] = '0';
    }
    return true;
}

bool roundsUp(const std::string& digits, std::size_t keep, Halves halves)
{
    if (keep >= digits.size() || digits[keep] < '5')
        return false;
    const bool half =
        digits[keep] == '5' && digits.find_first_not_of('0', keep + 1) == std::string::npos;
    if (!half || halves == Halves::Away)
        return true;
    return keep > 0 && (digits[keep - 1] - '0') % 2 != 0;
}

} // namespace

std::string numberText(double value)
{
    std::string text = Value(value).toText();
    std::replace(text.begin(), text.end(), '.', ',');
    return text;
}

std::string dateText(DateTime value)
{
    return Value(value).toText();
}

std::optional<double> parseNumber(std::string_view text)
{
    const std::string_view body = trimmed(text);
    if (const auto radix = parseRadix(body))
        return radix;
    std::string compact(body);
    std::replace(compact.begin(), compact.end(), ',', '.');
    if (compact.starts_with('+'))
        compact.erase(0, 1);
    const std::size_t digit = compact.starts_with('-') ? 1 : 0;
    if (digit == compact.size() || (!isDigit(compact[digit]) && compact[digit] != '.'))
        return std::nullopt; // from_chars would also take "inf" and "nan"
    double value = 0;
    const char* const end = compact.data() + compact.size();
    const auto [next, error] = std::from_chars(compact.data(), end, value);
    if (error != std::errc() || next != end)
        return std::nullopt;
    return value;
}

double leadingNumber(std::string_view text)
{
    std::string compact;
    for (const char c : text) {
        if (c != ' ' && c != '\t' && c != '\n' && c != '\r')
            compact += c;
    }
    if (compact.starts_with('&')) {
        const std::size_t end = compact.find_first_not_of("0123456789abcdefABCDEF", 2);
        return parseRadix(std::string_view(compact).substr(0, end)).value_or(0);
    }
    return Value(std::move(compact)).toDouble();
}

DateTime checkedDate(double days)
{
    constexpr double kFirst = -657434; // 0100-01-01
    constexpr double kBehind = 2958466;
    if (!(days > kFirst - 1 && days < kBehind))
        throw Error(Fault::Overflow, "дата вне допустимых лет (100–9999)");
    return {days};
}

std::int64_t roundToInteger(double value)
{
    constexpr double kLimit = 9223372036854775808.0; // 2^63
    const double rounded = std::nearbyint(value);
    if (!(rounded >= -kLimit && rounded < kLimit))
        throw Error(Fault::Overflow, "число слишком велико");
    return static_cast<std::int64_t>(rounded);
}

DecimalDigits roundDigits(double value, int places, Halves halves)
{
    if (!std::isfinite(value))
        throw Error(Fault::Overflow, "число слишком велико");
    char buffer[40];
    const auto result = std::to_chars(buffer, buffer + sizeof buffer, std::abs(value),
                                      std::chars_format::scientific, kSignificantDigits - 1);
    const std::string text(buffer, result.ptr); // d.dddddddddddddde[+-]dd
    const std::size_t mark = text.find('e');
    int exponent = 0;
    const bool minus = text[mark + 1] == '-';
    std::from_chars(text.data() + mark + 2, text.data() + text.size(), exponent);
    // digits[0..point) are the whole part
    std::string digits = text.substr(0, 1) + text.substr(2, mark - 2);
    int point = (minus ? -exponent : exponent) + 1;
    if (point < 1) {
        digits.insert(0, static_cast<std::size_t>(1 - point), '0');
        point = 1;
    }
    const std::size_t keep = static_cast<std::size_t>(point + places);
    const bool up = roundsUp(digits, keep, halves);
    digits.resize(keep, '0');
    if (up && carry(digits)) {
        digits.insert(0, 1, '1');
        ++point;
    }
    const bool zero = digits.find_first_not_of('0') == std::string::npos;
    return {value < 0 && !zero, digits.substr(0, static_cast<std::size_t>(point)),
            digits.substr(static_cast<std::size_t>(point))};
}

double numberOf(const DecimalDigits& digits)
{
    return Value((digits.negative ? "-" : "") + digits.whole + '.' + digits.fraction).toDouble();
}

} // namespace jet::sql
