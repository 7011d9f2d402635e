#include "jet/sql/resultvalue.h"

#include <cmath>
#include <cstdint>
#include <string>
#include <string_view>

namespace jet::sql {

namespace {

// The 32 hexadecimal digits of a text, brackets and hyphens skipped.
std::optional<Guid> guidFromText(const std::string& text)
{
    Guid guid;
    std::size_t digits = 0;
    for (const char c : text) {
        const std::size_t value = std::string_view("0123456789ABCDEF").find(c);
        if (c == '{' || c == '}' || c == '-')
            continue;
        if (value == std::string_view::npos || digits == 2 * guid.bytes.size())
            return std::nullopt;
        std::uint8_t& byte = guid.bytes[digits++ / 2];
        byte = static_cast<std::uint8_t>(byte << 4 | static_cast<int>(value));
    }
    return digits == 2 * guid.bytes.size() ? std::optional(guid) : std::nullopt;
}

Value integerValue(std::int64_t value, FieldType type)
{
    switch (type) {
    case FieldType::Boolean:
        return value != 0;
    case FieldType::Single:
    case FieldType::Double:
    case FieldType::Decimal:
        return static_cast<double>(value);
    case FieldType::Date:
        return DateTime{static_cast<double>(value)};
    case FieldType::Currency:
        return Currency{value * 10000};
    default:
        return value;
    }
}

Value realValue(double value, FieldType type)
{
    constexpr double kWhole = 9e15; // beyond this a double has no units
    switch (type) {
    case FieldType::Boolean:
        return value != 0;
    case FieldType::Byte:
    case FieldType::Integer:
    case FieldType::Long:
        if (value == std::trunc(value) && std::abs(value) < kWhole)
            return static_cast<std::int64_t>(value);
        return value;
    case FieldType::Date:
        return DateTime{value};
    case FieldType::Currency:
        if (std::abs(value) < kWhole / 10000)
            return Currency{std::llround(value * 10000)};
        return value;
    default:
        return value;
    }
}

} // namespace

Value resultValue(sqlite3_stmt* statement, int column, std::optional<FieldType> type)
{
    switch (sqlite3_column_type(statement, column)) {
    case SQLITE_INTEGER: {
        const std::int64_t value = sqlite3_column_int64(statement, column);
        return type ? integerValue(value, *type) : Value(value);
    }
    case SQLITE_FLOAT: {
        const double value = sqlite3_column_double(statement, column);
        return type ? realValue(value, *type) : Value(value);
    }
    case SQLITE_TEXT: {
        const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(statement, column));
        std::string value(text, static_cast<std::size_t>(sqlite3_column_bytes(statement, column)));
        if (type == FieldType::Guid) {
            if (const auto guid = guidFromText(value))
                return *guid;
        }
        return value;
    }
    case SQLITE_BLOB: {
        const auto* bytes =
            static_cast<const std::uint8_t*>(sqlite3_column_blob(statement, column));
        const int size = sqlite3_column_bytes(statement, column);
        return bytes ? Bytes(bytes, bytes + size) : Bytes();
    }
    default:
        return {};
    }
}

} // namespace jet::sql
