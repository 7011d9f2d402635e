#include "jet/sql/columnvalue.h"

#include "jet/sql/functioncall.h"

#include <cmath>
#include <cstdint>
#include <limits>
#include <memory>

namespace jet::sql {

namespace {

template <class Type>
std::optional<Value> wholeKey(double number)
{
    if (number != std::trunc(number) || number < std::numeric_limits<Type>::min()
        || number > std::numeric_limits<Type>::max())
        return std::nullopt;
    return static_cast<std::int64_t>(number);
}

std::optional<Value> currencyKey(double number)
{
    constexpr double kLargest = 9e14;
    if (!(std::abs(number) < kLargest))
        return std::nullopt;
    const Currency amount{std::llround(number * 10000)};
    if (static_cast<double>(amount.tenThousandths) / 10000 != number)
        return std::nullopt;
    return amount;
}

std::optional<Value> textKey(sqlite3_value* value)
{
    if (sqlite3_value_type(value) != SQLITE_TEXT)
        return std::nullopt;
    const auto* text = reinterpret_cast<const char*>(sqlite3_value_text(value));
    if (!text)
        return std::nullopt;
    return std::string(text, static_cast<std::size_t>(sqlite3_value_bytes(value)));
}

} // namespace

const char* declaredType(FieldType type)
{
    switch (type) {
    case FieldType::Boolean:
    case FieldType::Byte:
    case FieldType::Integer:
    case FieldType::Long:
        return "INTEGER";
    case FieldType::Currency:
    case FieldType::Single:
    case FieldType::Double:
    case FieldType::Date:
    case FieldType::Decimal:
        return "REAL";
    case FieldType::Text:
    case FieldType::Memo:
        return "TEXT COLLATE JET";
    case FieldType::Guid:
        return "TEXT COLLATE NOCASE";
    default:
        return "BLOB";
    }
}

void setResultFromRow(sqlite3_context* context, const RowView& row, int position, FieldType type,
                      std::string& buffer)
{
    if (row.isNull(position))
        return;
    switch (type) {
    case FieldType::Boolean:
    case FieldType::Byte:
    case FieldType::Integer:
    case FieldType::Long:
        sqlite3_result_int64(context, row.integer(position));
        break;
    case FieldType::Currency:
    case FieldType::Single:
    case FieldType::Double:
    case FieldType::Date:
        sqlite3_result_double(context, row.number(position));
        break;
    case FieldType::Text:
    case FieldType::Memo:
        buffer.clear();
        row.text(position, buffer);
        sqlite3_result_text64(context, buffer.data(), buffer.size(), SQLITE_TRANSIENT, SQLITE_UTF8);
        break;
    default:
        setResult(context, row.value(position));
    }
}

std::optional<ComparedNumber> comparedNumber(sqlite3_value* value)
{
    const std::unique_ptr<sqlite3_value, decltype(&sqlite3_value_free)> copy(
        sqlite3_value_type(value) == SQLITE_TEXT ? sqlite3_value_dup(value) : nullptr,
        sqlite3_value_free);
    sqlite3_value* const number = copy ? copy.get() : value;
    switch (sqlite3_value_numeric_type(number)) {
    case SQLITE_INTEGER:
        return ComparedNumber{true, sqlite3_value_int64(number), sqlite3_value_double(number)};
    case SQLITE_FLOAT:
        return ComparedNumber{false, 0, sqlite3_value_double(number)};
    default:
        return std::nullopt;
    }
}

std::optional<Value> keyFor(FieldType type, sqlite3_value* value)
{
    if (type == FieldType::Text || type == FieldType::Memo)
        return textKey(value);
    const auto compared = comparedNumber(value);
    if (!compared)
        return std::nullopt;
    const double number = compared->number;
    switch (type) {
    case FieldType::Boolean:
        if (number != 0 && number != -1)
            return std::nullopt;
        return Value(number != 0);
    case FieldType::Byte:
        return wholeKey<std::uint8_t>(number);
    case FieldType::Integer:
        return wholeKey<std::int16_t>(number);
    case FieldType::Long:
        return wholeKey<std::int32_t>(number);
    case FieldType::Currency:
        return currencyKey(number);
    case FieldType::Date:
        return Value(DateTime{number});
    default:
        return Value(number);
    }
}

} // namespace jet::sql
