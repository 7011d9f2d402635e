#include "jet/value.h"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cmath>
#include <ctime>
#include <limits>

namespace jet {

namespace {

constexpr int kUnixEpoch = 25569; // 1970-01-01 as a Jet day
constexpr int kSecondsADay = 24 * 60 * 60;

template <class... Cases>
struct Overloaded : Cases...
{
    using Cases::operator()...;
};
template <class... Cases>
Overloaded(Cases...) -> Overloaded<Cases...>;

std::string twoDigits(int number)
{
    return (number < 10 ? "0" : "") + std::to_string(number);
}

// 15 significant digits, as Jet shows numbers; independent of the process's locale.
std::string numberText(double value)
{
    char buffer[40];
    const auto [end, error] =
        std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::general, 15);
    std::string text(buffer, error == std::errc() ? end : buffer);
    std::replace(text.begin(), text.end(), 'e', 'E');
    return text;
}

std::string currencyText(Currency amount)
{
    const bool negative = amount.tenThousandths < 0;
    const auto bits = static_cast<std::uint64_t>(amount.tenThousandths);
    const std::uint64_t magnitude = negative ? 0 - bits : bits;
    std::string text = (negative ? "-" : "") + std::to_string(magnitude / 10000);
    if (const std::uint64_t fraction = magnitude % 10000; fraction != 0) {
        std::string digits = std::to_string(10000 + fraction).substr(1);
        digits.erase(digits.find_last_not_of('0') + 1);
        text += '.' + digits;
    }
    return text;
}

std::string timeText(const DateTime::Parts& p)
{
    return std::to_string(p.hour) + ':' + twoDigits(p.minute) + ':' + twoDigits(p.second);
}

// A moment on day 0 is a time of day alone, as Jet shows it.
std::string dateText(DateTime date)
{
    const DateTime::Parts p = date.parts();
    if (p.year == 1899 && p.month == 12 && p.day == 30)
        return timeText(p);
    std::string year = std::to_string(p.year);
    year.insert(0, year.size() < 4 ? 4 - year.size() : 0, '0');
    std::string text = twoDigits(p.day) + '.' + twoDigits(p.month) + '.' + year;
    if (p.hour != 0 || p.minute != 0 || p.second != 0)
        text += ' ' + timeText(p);
    return text;
}

std::string hexText(const std::uint8_t* bytes, std::size_t count)
{
    constexpr char kDigits[] = "0123456789ABCDEF";
    std::string text;
    for (std::size_t i = 0; i < count; ++i) {
        text += kDigits[bytes[i] >> 4];
        text += kDigits[bytes[i] & 15];
    }
    return text;
}

// The function Val: blanks are skipped, the longest number in front counts.
double val(const std::string& text)
{
    std::string compact;
    for (const char c : text) {
        if (c != ' ' && c != '\t' && c != '\n' && c != '\r')
            compact += c == 'd' || c == 'D' ? 'e' : c;
    }
    const char* first = compact.data();
    const char* const last = first + compact.size();
    if (first != last && *first == '+')
        ++first;
    const char* digit = first != last && *first == '-' ? first + 1 : first;
    if (digit == last || !((*digit >= '0' && *digit <= '9') || *digit == '.'))
        return 0; // from_chars would also take "inf" and "nan"
    double value = 0;
    const auto [end, error] = std::from_chars(first, last, value);
    return error == std::errc() ? value : 0;
}

// Halves go to the even neighbour, as Jet rounds.
std::int64_t rounded(double value)
{
    constexpr double kLimit = 9223372036854774784.0; // largest double below 2^63
    if (std::isnan(value))
        return 0;
    return static_cast<std::int64_t>(std::nearbyint(std::clamp(value, -kLimit, kLimit)));
}

std::optional<DateTime> checkedDate(int year, int month, int day, int hour, int minute, int second)
{
    const std::chrono::year_month_day date{std::chrono::year(year),
                                           std::chrono::month(static_cast<unsigned>(month)),
                                           std::chrono::day(static_cast<unsigned>(day))};
    if (year < 100 || year > 9999 || !date.ok() || hour > 23 || minute > 59 || second > 59)
        return std::nullopt;
    return DateTime::of(year, month, day, hour, minute, second);
}

} // namespace

DateTime DateTime::of(int year, int month, int day, int hour, int minute, int second)
{
    const std::chrono::sys_days date = std::chrono::year(year)
                                       / std::chrono::month(static_cast<unsigned>(month))
                                       / std::chrono::day(static_cast<unsigned>(day));
    const auto whole = static_cast<double>(date.time_since_epoch().count() + kUnixEpoch);
    const double time = (hour * 3600 + minute * 60 + second) / double{kSecondsADay};
    return {whole < 0 ? whole - time : whole + time};
}

std::optional<DateTime> DateTime::parse(const std::string& text)
{
    std::array<int, 6> n{};
    std::string separators; // one between each two numbers
    std::size_t count = 0;
    const char* at = text.data();
    const char* const end = at + text.size();
    while (at != end) {
        if (count == n.size() || *at < '0' || *at > '9')
            return std::nullopt;
        const auto [next, error] = std::from_chars(at, end, n[count++]);
        if (error != std::errc())
            return std::nullopt;
        at = next;
        if (at != end)
            separators += *at++;
    }
    const std::string_view shape = separators;
    const std::string_view time = shape.substr(std::min<std::size_t>(2, shape.size()));
    if (time.empty() || time == " :" || time == " ::") {
        if (shape.starts_with(".."))
            return checkedDate(n[2], n[1], n[0], n[3], n[4], n[5]);
        if (shape.starts_with("--"))
            return checkedDate(n[0], n[1], n[2], n[3], n[4], n[5]);
    }
    if (shape == ":" || shape == "::")
        return checkedDate(1899, 12, 30, n[0], n[1], n[2]);
    return std::nullopt;
}

DateTime DateTime::now()
{
    const std::time_t seconds = std::time(nullptr);
    std::tm local = {};
#ifdef _WIN32
    localtime_s(&local, &seconds);
#else
    localtime_r(&seconds, &local);
#endif
    // A leap second would lie outside the day's last minute.
    return of(local.tm_year + 1900, local.tm_mon + 1, local.tm_mday, local.tm_hour, local.tm_min,
              std::min(local.tm_sec, 59));
}

DateTime::Parts DateTime::parts() const
{
    const double inRange =
        std::isnan(days)
            ? 0
            : std::clamp(days, DateTime::kFirstDay, DateTime::kBehindLastDay - 1.0 / kSecondsADay);
    auto whole = static_cast<int>(std::trunc(inRange));
    auto seconds =
        static_cast<int>(std::lround(std::abs(inRange - std::trunc(inRange)) * kSecondsADay));
    if (seconds == kSecondsADay) {
        ++whole;
        seconds = 0;
    }
    const std::chrono::year_month_day date{
        std::chrono::sys_days{std::chrono::days{whole - kUnixEpoch}}};
    return {static_cast<int>(date.year()),
            static_cast<int>(static_cast<unsigned>(date.month())),
            static_cast<int>(static_cast<unsigned>(date.day())),
            seconds / 3600,
            seconds / 60 % 60,
            seconds % 60,
            ((whole - 1) % 7 + 7) % 7 + 1};
}

std::string Decimal::toString() const
{
    std::array<std::uint32_t, 4> rest = magnitude;
    std::string digits; // least significant first
    while (rest != std::array<std::uint32_t, 4>{}) {
        std::uint64_t remainder = 0;
        for (std::uint32_t& part : rest) {
            const std::uint64_t dividend = (remainder << 32) | part;
            part = static_cast<std::uint32_t>(dividend / 10);
            remainder = dividend % 10;
        }
        digits += static_cast<char>('0' + remainder);
    }
    const bool zero = digits.empty();
    if (digits.size() <= scale)
        digits.append(scale + 1u - digits.size(), '0');
    if (scale > 0) {
        digits.insert(scale, ".");
        digits.erase(0, digits.find_first_not_of('0'));
        if (digits.front() == '.')
            digits.erase(0, 1);
    }
    if (negative && !zero)
        digits += '-';
    std::reverse(digits.begin(), digits.end());
    return digits;
}

double Decimal::toDouble() const
{
    return val(toString());
}

std::string Guid::toString() const
{
    const std::string hex = hexText(bytes.data(), bytes.size());
    return '{' + hex.substr(0, 8) + '-' + hex.substr(8, 4) + '-' + hex.substr(12, 4) + '-'
           + hex.substr(16, 4) + '-' + hex.substr(20) + '}';
}

std::int64_t Value::toInteger() const
{
    if (const auto* integer = as<std::int64_t>())
        return *integer;
    return rounded(toDouble());
}

double Value::toDouble() const
{
    return std::visit(
        Overloaded{[](bool b) { return b ? -1.0 : 0.0; },
                   [](std::int64_t i) { return static_cast<double>(i); },
                   [](double d) { return d; },
                   [](Currency c) { return static_cast<double>(c.tenThousandths) / 10000; },
                   [](DateTime d) { return d.days; }, [](const std::string& s) { return val(s); },
                   [](const Decimal& d) { return d.toDouble(); }, [](const auto&) { return 0.0; }},
        m_value);
}

bool Value::toBool() const
{
    if (const auto* flag = as<bool>())
        return *flag;
    return toDouble() != 0;
}

DateTime Value::toDate() const
{
    if (const auto* date = as<DateTime>())
        return *date;
    if (const auto* text = as<std::string>()) {
        if (const auto date = DateTime::parse(*text))
            return *date;
    }
    return {toDouble()};
}

std::string Value::toText() const
{
    return std::visit(Overloaded{[](std::monostate) { return std::string(); },
                                 [](bool b) { return std::string(b ? "-1" : "0"); },
                                 [](std::int64_t i) { return std::to_string(i); },
                                 [](double d) { return numberText(d); },
                                 [](Currency c) { return currencyText(c); },
                                 [](DateTime d) { return dateText(d); },
                                 [](const std::string& s) { return s; },
                                 [](const Bytes& b) { return hexText(b.data(), b.size()); },
                                 [](const Guid& g) { return g.toString(); },
                                 [](const Decimal& d) { return d.toString(); }},
                      m_value);
}

} // namespace jet
