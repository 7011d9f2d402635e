#include "jet/storage/decimaltext.h"

#include <algorithm>
#include <charconv>
#include <limits>

namespace jet {

namespace {

constexpr int kMostExponent = 400; // beyond every double
constexpr int kCurrencyScale = 4;

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

std::string_view trimmed(std::string_view text)
{
    constexpr std::string_view kBlanks = " \t\r\n";
    const std::size_t first = text.find_first_not_of(kBlanks);
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

std::string withoutLeadingZeros(std::string digits)
{
    digits.erase(0, std::min(digits.find_first_not_of('0'), digits.size()));
    return digits;
}

// "E" and a number up to the end of the text; nothing when malformed.
std::optional<int> exponentOf(std::string_view text)
{
    if (text.empty())
        return 0;
    if (text[0] != 'e' && text[0] != 'E')
        return std::nullopt;
    text.remove_prefix(text.size() > 1 && text[1] == '+' ? 2 : 1);
    int exponent = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), exponent);
    if (text.empty() || error != std::errc() || end != text.data() + text.size())
        return std::nullopt;
    return std::clamp(exponent, -kMostExponent, kMostExponent);
}

void increment(std::string& digits)
{
    for (std::size_t i = digits.size(); i-- > 0;) {
        if (digits[i] != '9') {
            ++digits[i];
            return;
        }
        digits[i] = '0';
    }
    digits.insert(digits.begin(), '1');
}

} // namespace

std::string DecimalDigits::atScale(int newScale) const
{
    if (newScale >= scale)
        return digits.empty()
                   ? digits
                   : digits + std::string(static_cast<std::size_t>(newScale - scale), '0');
    const auto cut = static_cast<std::size_t>(scale - newScale);
    if (cut > digits.size())
        return {};
    std::string kept = digits.substr(0, digits.size() - cut);
    const std::string rest = digits.substr(kept.size());
    const bool half = rest[0] == '5' && rest.find_first_not_of('0', 1) == std::string::npos;
    const bool odd = !kept.empty() && (kept.back() - '0') % 2 != 0;
    if (half ? odd : rest[0] >= '5')
        increment(kept);
    return withoutLeadingZeros(std::move(kept));
}

double DecimalDigits::toDouble() const
{
    const std::string text = (digits.empty() ? "0" : digits) + 'E' + std::to_string(-scale);
    double value = 0;
    const auto error = std::from_chars(text.data(), text.data() + text.size(), value).ec;
    // Out of range is both too large and too small to be told from 0.
    if (error == std::errc::result_out_of_range)
        value =
            static_cast<int>(digits.size()) > scale ? std::numeric_limits<double>::infinity() : 0;
    return negative ? -value : value;
}

std::optional<DecimalDigits> parseDecimal(std::string_view text)
{
    text = trimmed(text);
    DecimalDigits number;
    std::size_t at = 0;
    if (at < text.size() && (text[at] == '-' || text[at] == '+'))
        number.negative = text[at++] == '-';
    bool point = false;
    std::size_t count = 0;
    for (; at < text.size(); ++at) {
        const char c = text[at];
        if (isDigit(c)) {
            number.digits += c;
            number.scale += point ? 1 : 0;
            ++count;
        } else if ((c == '.' || c == ',') && !point) {
            point = true;
        } else {
            break;
        }
    }
    const auto exponent = exponentOf(text.substr(at));
    if (count == 0 || !exponent)
        return std::nullopt;
    number.scale -= *exponent;
    number.digits = withoutLeadingZeros(std::move(number.digits));
    return number;
}

DecimalDigits decimalDigits(double value)
{
    char buffer[400];
    const auto [end, error] =
        std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::scientific);
    const std::string_view text(buffer, static_cast<std::size_t>(end - buffer));
    return parseDecimal(error == std::errc() ? text : "0").value_or(DecimalDigits{});
}

std::optional<Decimal> toDecimal(const DecimalDigits& number, int precision, std::uint8_t scale)
{
    constexpr int kMostDigits = 38; // of 128 bits
    const std::string digits = number.atScale(scale);
    if (static_cast<int>(digits.size()) > std::min(precision, kMostDigits))
        return std::nullopt;
    Decimal decimal;
    decimal.scale = scale;
    decimal.negative = number.negative && !digits.empty();
    for (const char digit : digits) {
        std::uint64_t carry = static_cast<std::uint64_t>(digit - '0');
        for (std::size_t i = decimal.magnitude.size(); i-- > 0;) {
            carry += std::uint64_t{decimal.magnitude[i]} * 10;
            decimal.magnitude[i] = static_cast<std::uint32_t>(carry);
            carry >>= 32;
        }
    }
    return decimal;
}

std::optional<Currency> toCurrency(const DecimalDigits& number)
{
    const std::string digits = (number.negative ? "-" : "") + number.atScale(kCurrencyScale);
    if (digits.empty() || digits == "-")
        return Currency{};
    Currency amount;
    const char* const last = digits.data() + digits.size();
    if (std::from_chars(digits.data(), last, amount.tenThousandths).ec != std::errc())
        return std::nullopt;
    return amount;
}

} // namespace jet
