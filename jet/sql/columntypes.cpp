#include "jet/sql/columntypes.h"

#include "jet/text.h"

#include <algorithm>

namespace jet::sql {

namespace {

constexpr int kMaxText = 255;
constexpr int kMaxBinary = 510;

constexpr ColumnType text(std::string_view word)
{
    return {word, FieldType::Text, false, kMaxText, kMaxText};
}

constexpr ColumnType binary(std::string_view word)
{
    return {word, FieldType::Binary, false, kMaxBinary, kMaxBinary};
}

constexpr ColumnType plain(std::string_view word, FieldType type)
{
    return {word, type, false, 0, 0};
}

constexpr ColumnType kTypes[] = {
    plain("BIT", FieldType::Boolean),
    plain("LOGICAL", FieldType::Boolean),
    plain("LOGICAL1", FieldType::Boolean),
    plain("YESNO", FieldType::Boolean),
    plain("BOOLEAN", FieldType::Boolean),
    plain("BYTE", FieldType::Byte),
    plain("INTEGER1", FieldType::Byte),
    plain("TINYINT", FieldType::Byte),
    plain("SMALLINT", FieldType::Integer),
    plain("SHORT", FieldType::Integer),
    plain("INTEGER2", FieldType::Integer),
    plain("INTEGER", FieldType::Long),
    plain("INT", FieldType::Long),
    plain("LONG", FieldType::Long),
    plain("INTEGER4", FieldType::Long),
    {"COUNTER", FieldType::Long, true, 0, 0},
    {"AUTOINCREMENT", FieldType::Long, true, 0, 0},
    plain("CURRENCY", FieldType::Currency),
    plain("MONEY", FieldType::Currency),
    plain("SINGLE", FieldType::Single),
    plain("REAL", FieldType::Single),
    plain("FLOAT4", FieldType::Single),
    plain("IEEESINGLE", FieldType::Single),
    plain("DOUBLE", FieldType::Double),
    plain("FLOAT", FieldType::Double),
    plain("FLOAT8", FieldType::Double),
    plain("IEEEDOUBLE", FieldType::Double),
    plain("NUMBER", FieldType::Double),
    plain("NUMERIC", FieldType::Double),
    plain("DATETIME", FieldType::Date),
    plain("DATE", FieldType::Date),
    plain("TIME", FieldType::Date),
    plain("TIMESTAMP", FieldType::Date),
    text("STRING"),
    text("TEXT"),
    text("VARCHAR"),
    text("CHAR"),
    text("CHARACTER"),
    text("ALPHANUMERIC"),
    plain("MEMO", FieldType::Memo),
    plain("LONGTEXT", FieldType::Memo),
    plain("LONGCHAR", FieldType::Memo),
    plain("NOTE", FieldType::Memo),
    binary("BINARY"),
    binary("VARBINARY"),
    plain("LONGBINARY", FieldType::LongBinary),
    plain("OLEOBJECT", FieldType::LongBinary),
    plain("IMAGE", FieldType::LongBinary),
    plain("GENERAL", FieldType::LongBinary),
    plain("GUID", FieldType::Guid),
};

} // namespace

const ColumnType* findColumnType(std::string_view word)
{
    const auto found = std::ranges::find_if(
        kTypes, [word](const ColumnType& type) { return sameName(type.word, word); });
    return found == std::end(kTypes) ? nullptr : &*found;
}

} // namespace jet::sql
