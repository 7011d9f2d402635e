// Reading dates and times from text, as the conversion functions do.
#include "jet/sql/calendar.h"
#include "jet/sql/conversion.h"

#include <array>
#include <charconv>
#include <utility>
#include <vector>

namespace jet::sql {

namespace {

// Numbers and what stands between them: "1.09.2020 8:30" is 1 . 09 . 2020 ' ' 8 : 30.
struct Shape
{
    std::vector<int> numbers;
    std::string digits;     // length of each number
    std::string separators; // one between each two numbers
};

std::optional<Shape> shapeOf(std::string_view text)
{
    constexpr std::size_t kMostNumbers = 6;
    Shape shape;
    const char* at = text.data();
    const char* const end = at + text.size();
    while (at != end) {
        int number = 0;
        const auto [next, error] = std::from_chars(at, end, number);
        if (error != std::errc() || *at == '-' || shape.numbers.size() == kMostNumbers)
            return std::nullopt;
        shape.numbers.push_back(number);
        shape.digits += static_cast<char>(next - at);
        at = next;
        if (at == end)
            return shape;
        shape.separators += *at++;
        while (at != end && *at == ' ')
            ++at;
    }
    return std::nullopt; // ends with a separator, or is empty
}

bool isDateSeparator(char c)
{
    return c == '.' || c == '/' || c == '-';
}

std::optional<double> timeOf(const Shape& shape, std::size_t first)
{
    const std::size_t count = shape.numbers.size() - first;
    if (count < 2 || count > 3)
        return std::nullopt;
    std::array<int, 3> n{};
    for (std::size_t i = 0; i < count; ++i) {
        n[i] = shape.numbers[first + i];
        if (i > 0 && shape.separators[first + i - 1] != ':')
            return std::nullopt;
    }
    if (n[0] > 23 || n[1] > 59 || n[2] > 59)
        return std::nullopt;
    return (n[0] * 3600 + n[1] * 60 + n[2]) / 86400.0;
}

bool isDate(int year, int month, int day)
{
    return year >= 100 && year <= 9999 && month >= 1 && month <= 12 && day >= 1
           && day <= daysInMonth(year, month);
}

std::optional<std::int64_t> dayOf(const Shape& shape, std::size_t count)
{
    int day = shape.numbers[0];
    int month = shape.numbers[1];
    int year = count == 3 ? shape.numbers[2] : localNow().parts().year;
    if (count == 3 && shape.digits[0] >= 3)
        std::swap(day, year);
    else if (count == 3 && shape.digits[2] <= 2)
        year = fullYear(year);
    if (!isDate(year, month, day))
        std::swap(day, month);
    if (!isDate(year, month, day))
        return std::nullopt;
    return dayNumber(year, month, day);
}

} // namespace

std::optional<DateTime> parseDate(std::string_view text)
{
    while (text.starts_with(' '))
        text.remove_prefix(1);
    while (text.ends_with(' '))
        text.remove_suffix(1);
    const auto shape = shapeOf(text);
    if (!shape || shape->numbers.size() < 2)
        return std::nullopt;
    std::size_t dateNumbers = 0;
    const std::string& separators = shape->separators;
    if (isDateSeparator(separators[0]))
        dateNumbers = separators.size() > 1 && separators[1] == separators[0] ? 3 : 2;
    double time = 0;
    if (dateNumbers < shape->numbers.size()) {
        const auto found = timeOf(*shape, dateNumbers);
        if (!found || (dateNumbers > 0 && separators[dateNumbers - 1] != ' '))
            return std::nullopt;
        time = *found;
    }
    if (dateNumbers == 0)
        return DateTime{time};
    const auto day = dayOf(*shape, dateNumbers);
    if (!day)
        return std::nullopt;
    const auto days = static_cast<double>(*day);
    return DateTime{days < 0 ? days - time : days + time};
}

} // namespace jet::sql
