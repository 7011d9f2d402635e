// The function Format for dates and times, with Russian names.
#include "jet/sql/calendar.h"
#include "jet/sql/conversion.h"
#include "jet/sql/functions.h"
#include "jet/text.h"

#include <array>

namespace jet::sql {

namespace {

constexpr std::array<std::string_view, 12> kMonths = {"Январь",   "Февраль", "Март",   "Апрель",
                                                      "Май",      "Июнь",    "Июль",   "Август",
                                                      "Сентябрь", "Октябрь", "Ноябрь", "Декабрь"};
constexpr std::array<std::string_view, 12> kShortMonths = {
    "янв", "фев", "мар", "апр", "май", "июн", "июл", "авг", "сен", "окт", "ноя", "дек"};
constexpr std::array<std::string_view, 12> kMonthsOfDate = {
    "января", "февраля", "марта",    "апреля",  "мая",    "июня",
    "июля",   "августа", "сентября", "октября", "ноября", "декабря"};
constexpr std::array<std::string_view, 7> kDays = {"воскресенье", "понедельник", "вторник", "среда",
                                                   "четверг",     "пятница",     "суббота"};
constexpr std::array<std::string_view, 7> kShortDays = {"Вс", "Пн", "Вт", "Ср", "Чт", "Пт", "Сб"};

std::string padded(int number, std::size_t digits)
{
    std::string text = std::to_string(number);
    if (text.size() < digits)
        text.insert(0, digits - text.size(), '0');
    return text;
}

char lower(char c)
{
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c;
}

// Walks a pattern and writes its parts.
class DateWriter
{
public:
    DateWriter(DateTime date, std::string_view pattern)
        : m_date(date)
        , m_parts(date.parts())
        , m_pattern(pattern)
        , m_twelveHours(foldName(pattern).find("am/pm") != std::string::npos
                        || foldName(pattern).find("a/p") != std::string::npos)
    {}

    std::string write()
    {
        while (m_at < m_pattern.size())
            step();
        return std::move(m_out);
    }

private:
    void step()
    {
        const char c = m_pattern[m_at];
        if (c == '"') {
            const std::size_t end = std::min(m_pattern.find('"', m_at + 1), m_pattern.size());
            m_out += m_pattern.substr(m_at + 1, end - m_at - 1);
            m_at = end + 1;
        } else if (c == '\\' && m_at + 1 < m_pattern.size()) {
            ++m_at;
            copyCharacter();
        } else if (halfOfDay()) {
            return;
        } else if (std::string_view("dmyhnsqwtc").find(lower(c)) != std::string_view::npos) {
            letters(lower(c));
        } else if (c == '/') {
            m_out += '.';
            ++m_at;
        } else {
            copyCharacter();
        }
    }

    void copyCharacter()
    {
        const std::size_t start = m_at;
        nextCodePoint(m_pattern, m_at);
        m_out += m_pattern.substr(start, m_at - start);
    }

    bool halfOfDay()
    {
        for (const std::string_view mark : {"AM/PM", "A/P"}) {
            const std::string_view here = m_pattern.substr(m_at, mark.size());
            if (!sameName(here, mark))
                continue;
            const std::size_t slash = here.find('/');
            m_out += m_parts.hour < 12 ? here.substr(0, slash) : here.substr(slash + 1);
            m_at += mark.size();
            return true;
        }
        return false;
    }

    void letters(char letter)
    {
        const std::size_t start = m_at;
        while (m_at < m_pattern.size() && lower(m_pattern[m_at]) == letter)
            ++m_at;
        const std::size_t count = m_at - start;
        // "m" behind an hour is the minute.
        const bool minute = letter == 'm' && count <= 2 && m_last == 'h';
        m_last = letter;
        part(minute ? 'n' : letter, count);
    }

    std::string dayText(std::size_t count) const
    {
        const auto weekday = static_cast<std::size_t>(m_parts.weekday - 1);
        if (count <= 2)
            return padded(m_parts.day, count);
        if (count <= 4)
            return std::string(count == 3 ? kShortDays[weekday] : kDays[weekday]);
        return formatDate(m_date, count == 5 ? "dd.mm.yyyy" : "long date");
    }

    std::string monthText(std::size_t count) const
    {
        const auto month = static_cast<std::size_t>(m_parts.month - 1);
        if (count <= 2)
            return padded(m_parts.month, count);
        return std::string(count == 3 ? kShortMonths[month] : kMonths[month]);
    }

    void part(char letter, std::size_t count)
    {
        const std::int64_t day = Moment::of(m_date).day;
        switch (letter) {
        case 'd':
            m_out += dayText(count);
            break;
        case 'm':
            m_out += monthText(count);
            break;
        case 'y':
            m_out += count == 1   ? std::to_string(day - dayNumber(m_parts.year, 1, 1) + 1)
                     : count == 2 ? padded(m_parts.year % 100, 2)
                                  : padded(m_parts.year, 4);
            break;
        case 'h':
            m_out += padded(hour(), count);
            break;
        case 'n':
            m_out += padded(m_parts.minute, count);
            break;
        case 's':
            m_out += padded(m_parts.second, count);
            break;
        case 'q':
            m_out += std::to_string((m_parts.month - 1) / 3 + 1);
            break;
        case 'w':
            m_out += std::to_string(count == 1 ? m_parts.weekday
                                               : weekOfYear(day, 1, FirstWeek::WithJanuaryFirst));
            break;
        case 't':
            m_out += formatDate(m_date, "h:nn:ss");
            break;
        default:
            m_out += dateText(m_date);
        }
    }

    int hour() const
    {
        if (!m_twelveHours)
            return m_parts.hour;
        return (m_parts.hour + 11) % 12 + 1;
    }

    DateTime m_date;
    DateTime::Parts m_parts;
    std::string_view m_pattern;
    bool m_twelveHours;
    std::size_t m_at = 0;
    char m_last = 0; // the placeholder written last
    std::string m_out;
};

struct NamedPattern
{
    std::string_view name, pattern;
};

constexpr NamedPattern kNamedPatterns[] = {
    {"general date", "c"},    {"short date", "dd.mm.yyyy"},   {"medium date", "dd-mmm-yy"},
    {"long time", "h:nn:ss"}, {"medium time", "hh:nn AM/PM"}, {"short time", "hh:nn"},
};

} // namespace

std::string formatDate(DateTime value, std::string_view pattern)
{
    for (const NamedPattern& named : kNamedPatterns) {
        if (sameName(pattern, named.name))
            return DateWriter(value, named.pattern).write();
    }
    if (sameName(pattern, "long date")) {
        const DateTime::Parts p = value.parts();
        const auto month = static_cast<std::size_t>(p.month - 1);
        return std::to_string(p.day) + ' ' + std::string(kMonthsOfDate[month]) + ' '
               + padded(p.year, 4) + " г.";
    }
    return DateWriter(value, pattern).write();
}

bool isDatePattern(std::string_view pattern)
{
    if (sameName(pattern, "long date"))
        return true;
    if (isNamedNumberPattern(pattern))
        return false;
    for (const NamedPattern& named : kNamedPatterns) {
        if (sameName(pattern, named.name))
            return true;
    }
    bool quoted = false;
    bool letters = false;
    for (std::size_t at = 0; at < pattern.size(); ++at) {
        const char c = lower(pattern[at]);
        if (c == '"')
            quoted = !quoted;
        else if (quoted)
            continue;
        else if (c == '\\')
            ++at;
        else if (c == '0' || c == '#')
            return false;
        else if (std::string_view("dmyhnsqwc").find(c) != std::string_view::npos)
            letters = true;
    }
    return letters || pattern.starts_with("ttttt");
}

} // namespace jet::sql
