#pragma once

#include <array>
#include <compare>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace jet {

using Bytes = std::vector<std::uint8_t>;

// A Jet date: days since 1899-12-30 with the time of day as fraction; for negative
// numbers the absolute value of the fraction is the time (-1.25 = 1899-12-29 06:00).
struct DateTime
{
    // The days that a file can hold: from 0100-01-01 on, before 10000-01-01.
    static constexpr double kFirstDay = -657434, kBehindLastDay = 2958466;

    double days = 0;

    // Proleptic Gregorian; requires a valid date and time of day.
    static DateTime of(int year, int month, int day, int hour = 0, int minute = 0, int second = 0);

    static DateTime now(); // local time, to the second

    struct Parts
    {
        int year, month, day, hour, minute, second;
        int weekday; // 1 = Sunday ... 7 = Saturday, as Jet counts
    };
    // Rounded to the nearest second.
    Parts parts() const;

    // "dd.mm.yyyy" or "yyyy-mm-dd", each with an optional time, or a time alone.
    static std::optional<DateTime> parse(const std::string& text);

    friend auto operator<=>(const DateTime&, const DateTime&) = default;
};

// A fixed-point amount: value * 10000.
struct Currency
{
    std::int64_t tenThousandths = 0;
    friend auto operator<=>(const Currency&, const Currency&) = default;
};

// A scaled 128-bit number as Numeric columns store it.
struct Decimal
{
    bool negative = false;
    std::uint8_t scale = 0;
    std::array<std::uint32_t, 4> magnitude{}; // most significant first
    std::string toString() const;             // decimal point, no grouping
    double toDouble() const;
    friend bool operator==(const Decimal&, const Decimal&) = default;
};

// 16 bytes in printed order.
struct Guid
{
    std::array<std::uint8_t, 16> bytes{};
    std::string toString() const; // {XXXXXXXX-XXXX-XXXX-XXXX-XXXXXXXXXXXX}
    friend bool operator==(const Guid&, const Guid&) = default;
};

// One field value. Null is the default. Text is UTF-8. Byte, Integer and Long columns
// give std::int64_t, Single and Double give double, Boolean gives bool.
class Value
{
public:
    using Storage = std::variant<std::monostate, bool, std::int64_t, double, Currency, DateTime,
                                 std::string, Bytes, Guid, Decimal>;

    Value() = default;
    Value(bool value)
        : m_value(value)
    {}
    Value(int value)
        : m_value(std::int64_t{value})
    {}
    Value(std::int64_t value)
        : m_value(value)
    {}
    Value(double value)
        : m_value(value)
    {}
    Value(Currency value)
        : m_value(value)
    {}
    Value(DateTime value)
        : m_value(value)
    {}
    Value(std::string value)
        : m_value(std::move(value))
    {}
    Value(std::string_view value)
        : m_value(std::string(value))
    {}
    Value(const char* value)
        : m_value(std::string(value))
    {}
    Value(Bytes value)
        : m_value(std::move(value))
    {}
    Value(Guid value)
        : m_value(value)
    {}
    Value(Decimal value)
        : m_value(value)
    {}

    bool isNull() const noexcept { return std::holds_alternative<std::monostate>(m_value); }
    template <class T>
    const T* as() const noexcept
    {
        return std::get_if<T>(&m_value);
    }
    const Storage& storage() const noexcept { return m_value; }

    // Conversions as Jet makes them, for callers that know what a column holds. Null gives
    // 0, 0.0, false, "" and day 0. Text that is no number gives 0, as the function Val does.
    std::int64_t toInteger() const;
    double toDouble() const;
    bool toBool() const;
    DateTime toDate() const;
    // Booleans -1/0, dates dd.mm.yyyy[ h:mm:ss] (a time alone on day 0), decimal point "."
    // in numbers, binary values in hexadecimal.
    std::string toText() const;

    friend bool operator==(const Value&, const Value&) = default;

private:
    Storage m_value;
};

} // namespace jet
