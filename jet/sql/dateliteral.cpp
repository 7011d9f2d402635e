#include "jet/sql/dateliteral.h"

#include "jet/text.h"

#include <charconv>
#include <chrono>
#include <utility>

namespace jet::sql {

namespace {

constexpr int kFirstYear = 100, kLastYear = 9999; // of a Jet date
constexpr int kTwoDigitPivot = 30;

struct Part
{
    int value = 0;
    std::size_t digits = 0;
};

class DateReader
{
public:
    explicit DateReader(std::string_view text)
        : m_text(text)
    {}

    std::optional<DateTime> run()
    {
        skipBlanks();
        const auto first = number();
        if (!first)
            return std::nullopt;
        DateTime date;
        std::optional<double> time = 0.0;
        if (peek() == ':') {
            time = timeFrom(*first);
        } else {
            const auto day = dateFrom(*first);
            if (!day)
                return std::nullopt;
            date = *day;
            if (skipBlanks(); m_at < m_text.size()) {
                const auto hour = number();
                time = hour ? timeFrom(*hour) : std::nullopt;
            }
        }
        skipBlanks();
        if (!time || m_at != m_text.size())
            return std::nullopt;
        // A negative day counts its time away from zero.
        return DateTime{date.days < 0 ? date.days - *time : date.days + *time};
    }

private:
    char peek() const { return m_at < m_text.size() ? m_text[m_at] : '\0'; }

    void skipBlanks()
    {
        while (peek() == ' ' || peek() == '\t')
            ++m_at;
    }

    std::optional<Part> number()
    {
        Part part;
        const char* begin = m_text.data() + m_at;
        const char* end = m_text.data() + m_text.size();
        if (begin == end || *begin < '0' || *begin > '9')
            return std::nullopt;
        const auto [stop, error] = std::from_chars(begin, end, part.value);
        part.digits = static_cast<std::size_t>(stop - begin);
        m_at += part.digits;
        if (error != std::errc())
            return std::nullopt;
        return part;
    }

    std::optional<Part> separated()
    {
        if (peek() != '/' && peek() != '-' && peek() != '.')
            return std::nullopt;
        ++m_at;
        return number();
    }

    std::optional<DateTime> dateFrom(Part first)
    {
        const auto second = separated();
        const auto third = second ? separated() : std::nullopt;
        if (!third)
            return std::nullopt;
        if (first.digits == 4)
            return checked(first.value, second->value, third->value);
        int month = first.value, day = second->value;
        if (month > 12)
            std::swap(month, day);
        int year = third->value;
        if (third->digits <= 2)
            year += year < kTwoDigitPivot ? 2000 : 1900;
        return checked(year, month, day);
    }

    static std::optional<DateTime> checked(int year, int month, int day)
    {
        using namespace std::chrono;
        const year_month_day date(std::chrono::year(year),
                                  std::chrono::month(static_cast<unsigned>(month)),
                                  std::chrono::day(static_cast<unsigned>(day)));
        if (year < kFirstYear || year > kLastYear || month > 12 || day > 31 || !date.ok())
            return std::nullopt;
        return DateTime::of(year, month, day);
    }

    // The fraction of the day; stands behind the hour.
    std::optional<double> timeFrom(Part hour)
    {
        int minute = 0, second = 0;
        if (peek() != ':')
            return std::nullopt;
        for (int* part : {&minute, &second}) {
            if (peek() != ':')
                break;
            ++m_at;
            const auto value = number();
            if (!value)
                return std::nullopt;
            *part = value->value;
        }
        skipBlanks();
        if (!applyHalf(hour.value) || hour.value > 23 || minute > 59 || second > 59)
            return std::nullopt;
        return DateTime::of(1899, 12, 30, hour.value, minute, second).days;
    }

    // Turns a 12-hour clock into one of 24 hours where AM or PM follows.
    bool applyHalf(int& hour)
    {
        const std::string_view half = m_text.substr(m_at, 2);
        const bool morning = sameName(half, "AM"), evening = sameName(half, "PM");
        if (!morning && !evening)
            return true;
        m_at += 2;
        if (hour < 1 || hour > 12)
            return false;
        hour = hour % 12 + (evening ? 12 : 0);
        return true;
    }

    std::string_view m_text;
    std::size_t m_at = 0;
};

} // namespace

std::optional<DateTime> parseDateLiteral(std::string_view literal)
{
    return DateReader(literal).run();
}

} // namespace jet::sql
