#include "jet/storage/valueconversion.h"

#include "jet/error.h"
#include "jet/storage/decimaltext.h"
#include "jet/text.h"

#include <array>
#include <cmath>
#include <limits>
#include <string>

namespace jet {

namespace {

std::string inQuotes(const ColumnDefinition& column)
{
    return "«" + column.name + "»";
}

[[noreturn]] void wrongType(const ColumnDefinition& column)
{
    throw Error(Fault::Type, "значение не подходит по типу полю " + inQuotes(column));
}

[[noreturn]] void overflow(const ColumnDefinition& column)
{
    throw Error(Fault::Overflow, "число слишком велико для поля " + inQuotes(column));
}

[[noreturn]] void tooLong(const ColumnDefinition& column, std::size_t room, std::size_t given,
                          const char* unit)
{
    throw Error(Fault::Overflow, "поле " + inQuotes(column) + " слишком мало: в нём помещается "
                                     + std::to_string(room) + " " + unit + ", а дано "
                                     + std::to_string(given));
}

DecimalDigits textNumber(const std::string& text, const ColumnDefinition& column)
{
    const auto number = parseDecimal(text);
    if (!number)
        wrongType(column);
    return *number;
}

// The value as a finite double.
double numberOf(const Value& value, const ColumnDefinition& column)
{
    if (value.as<Bytes>() || value.as<Guid>())
        wrongType(column);
    const auto* text = value.as<std::string>();
    const double number = text ? textNumber(*text, column).toDouble() : value.toDouble();
    if (!std::isfinite(number))
        overflow(column);
    return number + 0.0; // turns -0, whose index key would differ, into 0
}

// The value in decimal digits, exact but for doubles.
DecimalDigits digitsOf(const Value& value, const ColumnDefinition& column)
{
    if (const auto* text = value.as<std::string>())
        return textNumber(*text, column);
    if (value.as<double>() || value.as<DateTime>())
        return decimalDigits(numberOf(value, column));
    if (value.as<Bytes>() || value.as<Guid>())
        wrongType(column);
    return textNumber(value.toText(), column);
}

Value convertInteger(const Value& value, const ColumnDefinition& column, std::int64_t least,
                     std::int64_t most)
{
    std::int64_t number = 0;
    if (const auto* integer = value.as<std::int64_t>()) {
        number = *integer;
    } else {
        const double rounded = std::nearbyint(numberOf(value, column));
        if (rounded < static_cast<double>(least) || rounded > static_cast<double>(most)) {
            // True is -1, which a Byte keeps as 255.
            if (column.type() != FieldType::Byte || !value.as<bool>())
                overflow(column);
            return std::int64_t{255};
        }
        number = static_cast<std::int64_t>(rounded);
    }
    if (number < least || number > most)
        overflow(column);
    return number;
}

template <class Integer>
Value convertInteger(const Value& value, const ColumnDefinition& column)
{
    using Limits = std::numeric_limits<Integer>;
    return convertInteger(value, column, Limits::min(), Limits::max());
}

Value convertBoolean(const Value& value, const ColumnDefinition& column)
{
    if (const auto* flag = value.as<bool>())
        return *flag;
    if (const auto* text = value.as<std::string>()) {
        for (const char* word : {"True", "Yes", "On", "Истина", "Да"}) {
            if (sameName(*text, word))
                return true;
        }
        for (const char* word : {"False", "No", "Off", "Ложь", "Нет"}) {
            if (sameName(*text, word))
                return false;
        }
    }
    return numberOf(value, column) != 0;
}

Value convertSingle(const Value& value, const ColumnDefinition& column)
{
    const double number = numberOf(value, column);
    const auto single = static_cast<float>(number);
    if (!std::isfinite(single))
        overflow(column);
    return static_cast<double>(single);
}

Value convertDate(const Value& value, const ColumnDefinition& column)
{
    if (const auto* text = value.as<std::string>()) {
        if (const auto date = DateTime::parse(*text))
            return *date;
    }
    const double days = numberOf(value, column);
    if (days < DateTime::kFirstDay || days >= DateTime::kBehindLastDay)
        overflow(column);
    return DateTime{days};
}

Value convertCurrency(const Value& value, const ColumnDefinition& column)
{
    if (value.as<Currency>())
        return value;
    const auto amount = toCurrency(digitsOf(value, column));
    if (!amount)
        overflow(column);
    return *amount;
}

Value convertDecimal(const Value& value, const ColumnDefinition& column)
{
    const int precision = column.collation & 0xFF;
    const auto scale = static_cast<std::uint8_t>(column.collation >> 8);
    const auto decimal = toDecimal(digitsOf(value, column), precision, scale);
    if (!decimal)
        overflow(column);
    return *decimal;
}

Value convertText(const Value& value, const ColumnDefinition& column)
{
    if (value.as<Bytes>())
        wrongType(column);
    // Malformed UTF-8 is stored, and given back, with replacement characters.
    const Bytes utf16 = utf16FromUtf8(value.toText());
    if (column.type() == FieldType::Memo)
        return utf8FromUtf16(utf16);
    if (utf16.size() > column.length)
        tooLong(column, column.length / 2u, utf16.size() / 2, "знаков");
    std::string text = utf8FromUtf16(utf16);
    if (column.isFixed())
        text.append((column.length - utf16.size()) / 2, ' ');
    return text;
}

Value convertBinary(const Value& value, const ColumnDefinition& column)
{
    const Bytes* bytes = value.as<Bytes>();
    if (!bytes)
        wrongType(column);
    if (column.isLongValue())
        return value;
    if (bytes->size() > column.length)
        tooLong(column, column.length, bytes->size(), "байт");
    if (!column.isFixed())
        return value;
    Bytes padded = *bytes;
    padded.resize(column.length);
    return padded;
}

// "{XXXXXXXX-XXXX-XXXX-XXXX-XXXXXXXXXXXX}", the braces may be missing.
Value convertGuid(const Value& value, const ColumnDefinition& column)
{
    if (value.as<Guid>())
        return value;
    const auto* text = value.as<std::string>();
    if (!text)
        wrongType(column);
    Guid guid;
    std::size_t digits = 0;
    for (const char c : *text) {
        if (c == '{' || c == '}' || c == '-')
            continue;
        const std::size_t digit = std::string_view("0123456789ABCDEFabcdef").find(c);
        if (digit == std::string_view::npos || digits == 2 * guid.bytes.size())
            wrongType(column);
        const std::size_t digitValue = digit > 15 ? digit - 6 : digit; // both cases of A to F
        std::uint8_t& byte = guid.bytes[digits++ / 2];
        byte = static_cast<std::uint8_t>(byte * 16u + digitValue);
    }
    if (digits != 2 * guid.bytes.size())
        wrongType(column);
    return guid;
}

Value convert(const Value& value, const ColumnDefinition& column)
{
    switch (column.type()) {
    case FieldType::Boolean:
        return convertBoolean(value, column);
    case FieldType::Byte:
        return convertInteger<std::uint8_t>(value, column);
    case FieldType::Integer:
        return convertInteger<std::int16_t>(value, column);
    case FieldType::Long:
        return convertInteger<std::int32_t>(value, column);
    case FieldType::Currency:
        return convertCurrency(value, column);
    case FieldType::Single:
        return convertSingle(value, column);
    case FieldType::Double:
        return numberOf(value, column);
    case FieldType::Date:
        return convertDate(value, column);
    case FieldType::Text:
    case FieldType::Memo:
        return convertText(value, column);
    case FieldType::Binary:
    case FieldType::LongBinary:
        return convertBinary(value, column);
    case FieldType::Guid:
        return convertGuid(value, column);
    case FieldType::Decimal:
        return convertDecimal(value, column);
    case FieldType::Block:
        break;
    }
    throw Error(Fault::Unsupported, "поле " + inQuotes(column) + " доступно только для чтения");
}

} // namespace

bool isWritable(const ColumnDefinition& column)
{
    switch (column.type()) {
    case FieldType::Boolean:
    case FieldType::Byte:
    case FieldType::Integer:
    case FieldType::Long:
    case FieldType::Currency:
    case FieldType::Single:
    case FieldType::Double:
    case FieldType::Date:
    case FieldType::Binary:
    case FieldType::Text:
    case FieldType::LongBinary:
    case FieldType::Memo:
    case FieldType::Guid:
    case FieldType::Decimal:
        return true;
    case FieldType::Block:
        break;
    }
    return false;
}

Value convertValue(const Value& value, const ColumnDefinition& column, const std::string& table)
{
    if (value.isNull())
        return column.isBoolean() ? Value(false) : Value();
    try {
        return convert(value, column);
    } catch (const Error& error) {
        throw Error(error.fault(), error.what(), table);
    }
}

} // namespace jet
