#include "jet/sql/types.h"

#include <algorithm>

namespace jet::sql {

namespace {

// Whole numbers by their range; 0 for all else.
int wholeRank(FieldType type)
{
    switch (type) {
    case FieldType::Byte:
        return 1;
    case FieldType::Boolean:
    case FieldType::Integer:
        return 2;
    case FieldType::Long:
        return 3;
    default:
        return 0;
    }
}

bool isFloating(FieldType type)
{
    return type == FieldType::Single || type == FieldType::Double;
}

FieldType unifiedNumbers(FieldType a, FieldType b)
{
    if (wholeRank(a) != 0 && wholeRank(b) != 0) {
        const int rank = std::max(wholeRank(a), wholeRank(b));
        return rank == 3 ? FieldType::Long : rank == 2 ? FieldType::Integer : FieldType::Byte;
    }
    if (wholeRank(a) != 0)
        return b;
    if (wholeRank(b) != 0)
        return a;
    // Two different ones of Single, Double, Currency and Decimal.
    return FieldType::Double;
}

// Sums of whole numbers may leave the range of the parts.
FieldType widened(FieldType type)
{
    return wholeRank(type) != 0 ? FieldType::Long : type;
}

} // namespace

bool isText(Type type)
{
    return type == FieldType::Text || type == FieldType::Memo;
}

bool isNumber(Type type)
{
    return type
           && (wholeRank(*type) != 0 || isFloating(*type) || type == FieldType::Currency
               || type == FieldType::Decimal);
}

bool isDate(Type type)
{
    return type == FieldType::Date;
}

Type unified(Type a, Type b)
{
    if (!a || !b || a == b)
        return a ? a : b;
    if (isText(a) && isText(b))
        return FieldType::Memo;
    if (isNumber(a) && isNumber(b))
        return unifiedNumbers(*a, *b);
    if ((isDate(a) && isNumber(b)) || (isNumber(a) && isDate(b)))
        return FieldType::Date;
    return std::nullopt;
}

Type additionType(Type a, Type b)
{
    if (isDate(a) || isDate(b))
        return FieldType::Date;
    if (isNumber(a) && isNumber(b))
        return widened(unifiedNumbers(*a, *b));
    return a ? b : a;
}

Type subtractionType(Type a, Type b)
{
    return isDate(a) && isDate(b) ? FieldType::Double : additionType(a, b);
}

Type productType(Type a, Type b)
{
    return isNumber(a) && isNumber(b) ? widened(unifiedNumbers(*a, *b)) : FieldType::Double;
}

Type negatedType(Type type)
{
    return isNumber(type) ? widened(*type) : FieldType::Double;
}

Type sumType(Type type)
{
    if (!isNumber(type) || isFloating(*type))
        return FieldType::Double;
    return widened(*type);
}

Type numericType(Type type)
{
    if (type == FieldType::Boolean)
        return FieldType::Integer;
    return isNumber(type) ? type : FieldType::Double;
}

} // namespace jet::sql
