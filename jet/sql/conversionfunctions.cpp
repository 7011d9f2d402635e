#include "jet/error.h"
#include "jet/sql/conversion.h"
#include "jet/sql/functions.h"
#include "jet/text.h"

#include <cmath>
#include <limits>

namespace jet::sql {

namespace {

// A whole number within a type's range; halves go to the even neighbour.
template <class Type>
Value whole(const Arguments& arguments)
{
    const std::int64_t value = arguments.integer(0);
    if (value < std::numeric_limits<Type>::min() || value > std::numeric_limits<Type>::max())
        throw Error(Fault::Overflow, "число слишком велико");
    return value;
}

Value cdbl(const Arguments& arguments)
{
    return arguments.number(0);
}

// A text that stands beside a number in a comparison.
Value comparednumber(const Arguments& arguments)
{
    if (arguments.isText(0) && !parseNumber(arguments.text(0)))
        throw Error(Fault::Type, "несоответствие типов: текст «" + arguments.text(0)
                                     + "» сравнивается с числом");
    return arguments.number(0);
}

Value csng(const Arguments& arguments)
{
    const double value = arguments.number(0);
    if (std::abs(value) > std::numeric_limits<float>::max())
        throw Error(Fault::Overflow, "число слишком велико");
    return static_cast<double>(static_cast<float>(value));
}

Value ccur(const Arguments& arguments)
{
    constexpr double kLargest = 922337203685477.0;
    const double value = arguments.number(0);
    if (!(std::abs(value) <= kLargest))
        throw Error(Fault::Overflow, "денежная сумма слишком велика");
    const DecimalDigits digits = roundDigits(value, 4, Halves::ToEven);
    return numberOf(digits);
}

Value cbool(const Arguments& arguments)
{
    if (arguments.isText(0)) {
        const std::string text = arguments.text(0);
        if (sameName(text, "true") || sameName(text, "истина"))
            return true;
        if (sameName(text, "false") || sameName(text, "ложь"))
            return false;
    }
    return arguments.truth(0);
}

Value cdate(const Arguments& arguments)
{
    return arguments.date(0);
}

Value cstr(const Arguments& arguments)
{
    return arguments.text(0);
}

// A decimal point, and a space in the sign's place.
Value str(const Arguments& arguments)
{
    const double number = arguments.number(0);
    const std::string text =
        arguments.isInteger(0) ? std::to_string(arguments.integer(0)) : Value(number).toText();
    return number < 0 ? text : ' ' + text;
}

Value val(const Arguments& arguments)
{
    return arguments.isText(0) ? Value(leadingNumber(arguments.text(0))) : arguments.value(0);
}

Value isnumeric(const Arguments& arguments)
{
    if (arguments.isNull(0))
        return false;
    return !arguments.isText(0) || parseNumber(arguments.text(0)).has_value();
}

Value isdate(const Arguments& arguments)
{
    return arguments.isText(0) && parseDate(arguments.text(0)).has_value();
}

Value datetext(const Arguments& arguments)
{
    return dateText(arguments.date(0));
}

Value formatdate(const Arguments& arguments)
{
    if (arguments.isNull(0))
        return "";
    if (arguments.count() < 2 || arguments.isNull(1))
        return dateText(arguments.date(0));
    const std::string pattern = arguments.text(1);
    const DateTime date = arguments.date(0);
    return isDatePattern(pattern) ? formatDate(date, pattern) : formatNumber(date.days, pattern);
}

// Texts that look like numbers or dates are formatted as such, others stay as they are.
Value format(const Arguments& arguments)
{
    if (arguments.isNull(0))
        return "";
    if (arguments.count() < 2 || arguments.isNull(1))
        return arguments.text(0);
    const std::string pattern = arguments.text(1);
    if (!arguments.isText(0)) {
        return isDatePattern(pattern) ? formatDate(arguments.date(0), pattern)
                                      : formatNumber(arguments.number(0), pattern);
    }
    const std::string text = arguments.text(0);
    if (isDatePattern(pattern)) {
        const auto date = parseDate(text);
        return date ? formatDate(*date, pattern) : text;
    }
    const auto number = parseNumber(text);
    return number ? formatNumber(*number, pattern) : text;
}

constexpr Function kFunctions[] = {
    {"cbyte", 1, 1, whole<std::uint8_t>},
    {"cint", 1, 1, whole<std::int16_t>},
    {"clng", 1, 1, whole<std::int32_t>},
    {"cdbl", 1, 1, cdbl},
    {"comparednumber", 1, 1, comparednumber},
    {"csng", 1, 1, csng},
    {"ccur", 1, 1, ccur},
    {"cbool", 1, 1, cbool},
    {"cdate", 1, 1, cdate},
    {"cstr", 1, 1, cstr},
    {"str", 1, 1, str},
    {"val", 1, 1, val},
    {"isnumeric", 1, 1, isnumeric, Nulls::Take},
    {"isdate", 1, 1, isdate, Nulls::Take},
    {"datetext", 1, 1, datetext},
    {"formatdate", 1, 2, formatdate, Nulls::Take},
    {"format", 1, 2, format, Nulls::Take},
};

} // namespace

std::span<const Function> conversionFunctions()
{
    return kFunctions;
}

} // namespace jet::sql
