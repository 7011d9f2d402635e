#include "jet/sql/functioncall.h"

#include "jet/error.h"
#include "jet/sql/conversion.h"
#include "jet/sql/sqliteerror.h"

#include <limits>
#include <memory>
#include <string_view>

namespace jet::sql {

namespace {

// What SQLite hands back with every call.
struct Registration
{
    const Function& function;
    ErrorSlot& errors;
};

std::string_view textOf(sqlite3_value* value)
{
    const auto* text = reinterpret_cast<const char*>(sqlite3_value_text(value));
    return text ? std::string_view(text, static_cast<std::size_t>(sqlite3_value_bytes(value)))
                : std::string_view();
}

bool hasNull(std::span<sqlite3_value*> values)
{
    for (sqlite3_value* value : values) {
        if (sqlite3_value_type(value) == SQLITE_NULL)
            return true;
    }
    return false;
}

void call(sqlite3_context* context, int count, sqlite3_value** values)
{
    const auto& registration = *static_cast<Registration*>(sqlite3_user_data(context));
    const Function& function = registration.function;
    const std::span arguments(values, static_cast<std::size_t>(count));
    if (function.nulls == Nulls::Pass && hasNull(arguments))
        return;
    const int code = guarded(registration.errors, [&] {
        setResult(context, function.body(Arguments(function.name, arguments)));
    });
    if (code != SQLITE_OK)
        sqlite3_result_error(context, function.name, -1);
}

} // namespace

Value Arguments::value(int i) const
{
    return valueOf(m_values[static_cast<std::size_t>(i)]);
}

double Arguments::number(int i) const
{
    sqlite3_value* const value = m_values[static_cast<std::size_t>(i)];
    switch (sqlite3_value_type(value)) {
    case SQLITE_INTEGER:
    case SQLITE_FLOAT:
        return sqlite3_value_double(value);
    case SQLITE_TEXT:
        if (const auto number = parseNumber(textOf(value)))
            return *number;
        if (const auto date = parseDate(textOf(value)))
            return date->days;
        break;
    default:
        break;
    }
    refuse(i);
}

std::int64_t Arguments::integer(int i) const
{
    sqlite3_value* const value = m_values[static_cast<std::size_t>(i)];
    if (sqlite3_value_type(value) == SQLITE_INTEGER)
        return sqlite3_value_int64(value);
    return roundToInteger(number(i));
}

int Arguments::smallInteger(int i) const
{
    const std::int64_t wide = integer(i);
    if (wide < std::numeric_limits<int>::min() || wide > std::numeric_limits<int>::max())
        throw Error(Fault::Overflow, "число слишком велико для функции " + std::string(m_function));
    return static_cast<int>(wide);
}

std::string Arguments::text(int i) const
{
    sqlite3_value* const value = m_values[static_cast<std::size_t>(i)];
    switch (sqlite3_value_type(value)) {
    case SQLITE_FLOAT:
        return numberText(sqlite3_value_double(value));
    case SQLITE_NULL:
        refuse(i);
    default:
        return std::string(textOf(value));
    }
}

DateTime Arguments::date(int i) const
{
    sqlite3_value* const value = m_values[static_cast<std::size_t>(i)];
    if (sqlite3_value_type(value) == SQLITE_TEXT) {
        if (const auto date = parseDate(textOf(value)))
            return *date;
    }
    return checkedDate(number(i));
}

void Arguments::refuse(int i) const
{
    const std::string name = m_function;
    if (isNull(i))
        throw Error(Fault::NullValue, "пустое значение недопустимо для функции " + name);
    throw Error(Fault::Type, "значение «"
                                 + std::string(textOf(m_values[static_cast<std::size_t>(i)]))
                                 + "» не подходит для функции " + name);
}

void setResult(sqlite3_context* context, const Value& value)
{
    if (const auto* text = value.as<std::string>()) {
        sqlite3_result_text64(context, text->data(), text->size(), SQLITE_TRANSIENT, SQLITE_UTF8);
    } else if (const auto* integer = value.as<std::int64_t>()) {
        sqlite3_result_int64(context, *integer);
    } else if (const auto* flag = value.as<bool>()) {
        sqlite3_result_int(context, *flag ? -1 : 0);
    } else if (const auto* bytes = value.as<Bytes>()) {
        sqlite3_result_blob64(context, bytes->data(), bytes->size(), SQLITE_TRANSIENT);
    } else if (const auto* guid = value.as<Guid>()) {
        const std::string text16 = guid->toString();
        sqlite3_result_text64(context, text16.data(), text16.size(), SQLITE_TRANSIENT, SQLITE_UTF8);
    } else if (!value.isNull()) {
        sqlite3_result_double(context, value.toDouble());
    }
}

Value valueOf(sqlite3_value* value)
{
    switch (sqlite3_value_type(value)) {
    case SQLITE_INTEGER:
        return std::int64_t{sqlite3_value_int64(value)};
    case SQLITE_FLOAT:
        return sqlite3_value_double(value);
    case SQLITE_TEXT:
        return textOf(value);
    case SQLITE_BLOB: {
        const auto* bytes = static_cast<const std::uint8_t*>(sqlite3_value_blob(value));
        return bytes ? Bytes(bytes, bytes + sqlite3_value_bytes(value)) : Bytes();
    }
    default:
        return {};
    }
}

void registerFunctions(sqlite3* connection, ErrorSlot& errors, std::span<const Function> functions)
{
    for (const Function& function : functions) {
        const int arguments = function.minimum == function.maximum ? function.minimum : -1;
        const int flags =
            SQLITE_UTF8 | (function.stability == Stability::Constant ? SQLITE_DETERMINISTIC : 0);
        auto registration = std::make_unique<Registration>(Registration{function, errors});
        // SQLite destroys the registration also when it refuses the function.
        check(connection, sqlite3_create_function_v2(
                              connection, ("jet_" + std::string(function.name)).c_str(), arguments,
                              flags, registration.release(), call, nullptr, nullptr,
                              [](void* data) { delete static_cast<Registration*>(data); }));
    }
}

} // namespace jet::sql
