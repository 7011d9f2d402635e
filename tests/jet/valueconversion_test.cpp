#include "jet/error.h"
#include "jet/storage/valueconversion.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace jet {
namespace {

ColumnDefinition column(FieldType type)
{
    ColumnDefinition c;
    c.name = "П";
    c.storedType = type == FieldType::Decimal ? 0x10 : static_cast<std::uint8_t>(type);
    c.length = 20;
    if (type == FieldType::Decimal)
        c.collation = 6 | 2 << 8; // precision and scale
    return c;
}

Decimal decimal(const char* text)
{
    return *convertValue(text, column(FieldType::Decimal)).as<Decimal>();
}

constexpr double kInfinity = std::numeric_limits<double>::infinity();

TEST(ValueConversion, GivesWhatTheColumnWillHold)
{
    struct Case
    {
        FieldType type;
        Value value;
        Value stored;
    };
    const Case cases[] = {
        {FieldType::Boolean, Value(), false},
        {FieldType::Boolean, 2, true},
        {FieldType::Boolean, "Истина", true},
        {FieldType::Boolean, "no", false},
        {FieldType::Boolean, "0", false},
        {FieldType::Byte, true, 255},
        {FieldType::Byte, 255.49, 255},
        {FieldType::Integer, 2.5, 2},
        {FieldType::Integer, 3.5, 4},
        {FieldType::Integer, -32768, -32768},
        {FieldType::Long, "-12", -12},
        {FieldType::Long, "1e3", 1000},
        {FieldType::Long, "12,5", 12},
        {FieldType::Long, DateTime{45536.75}, 45537},
        {FieldType::Long, Value(), Value()},
        {FieldType::Currency, 0.00005, Currency{0}},
        {FieldType::Currency, 0.00015, Currency{2}},
        {FieldType::Currency, "-922337203685477,5808",
         Currency{std::numeric_limits<std::int64_t>::min()}},
        {FieldType::Currency, 7, Currency{70000}},
        {FieldType::Single, 0.1, double{0.1f}},
        {FieldType::Double, "3,25", 3.25},
        {FieldType::Date, "01.09.2024 8:30", DateTime{45536 + 8.5 / 24}},
        {FieldType::Date, "45536,5", DateTime{45536.5}},
        {FieldType::Text, 12, "12"},
        {FieldType::Text, "", ""},
        {FieldType::Text, "десять букв", "десять букв"},
        {FieldType::Memo, 1.5, "1.5"},
        {FieldType::Memo, "\xFF", "\xEF\xBF\xBD"},
        {FieldType::Binary, Bytes(20), Bytes(20)},
        {FieldType::Decimal, 1234.565, decimal("1234.56")},
        {FieldType::Decimal, "-0,005", decimal("0")},
    };
    for (const Case& c : cases) {
        ColumnDefinition to = column(c.type);
        if (c.type == FieldType::Text)
            to.length = 22;
        EXPECT_EQ(convertValue(c.value, to), c.stored)
            << static_cast<int>(c.type) << " from " << c.value.toText();
    }
    EXPECT_EQ(decimal("9999.99").toString(), "9999.99");
    EXPECT_EQ(decimal("-0.25").toString(), "-0.25");
}

TEST(ValueConversion, RefusesTheRest)
{
    struct Case
    {
        FieldType type;
        Value value;
        Fault fault;
    };
    const Case cases[] = {
        {FieldType::Boolean, "может быть", Fault::Type},
        {FieldType::Byte, 255.5, Fault::Overflow},
        {FieldType::Byte, -1, Fault::Overflow},
        {FieldType::Integer, 40000, Fault::Overflow},
        {FieldType::Long, -2147483649.0, Fault::Overflow},
        {FieldType::Long, "", Fault::Type},
        {FieldType::Long, "1 2", Fault::Type},
        {FieldType::Long, "1e", Fault::Type},
        {FieldType::Long, "0x10", Fault::Type},
        {FieldType::Long, "nan", Fault::Type},
        {FieldType::Long, Bytes{1}, Fault::Type},
        {FieldType::Currency, 1e15, Fault::Overflow},
        {FieldType::Currency, std::nan(""), Fault::Overflow},
        {FieldType::Single, 1e39, Fault::Overflow},
        {FieldType::Double, kInfinity, Fault::Overflow},
        {FieldType::Double, "1e400", Fault::Overflow},
        {FieldType::Date, "30.02.2024", Fault::Type},
        {FieldType::Date, 3000000, Fault::Overflow},
        {FieldType::Text, "одиннадцать", Fault::Overflow},
        {FieldType::Text, Bytes{1}, Fault::Type},
        {FieldType::Binary, Bytes(21), Fault::Overflow},
        {FieldType::Binary, "текст", Fault::Type},
        {FieldType::Guid, "{1}", Fault::Type},
        {FieldType::Decimal, 10000, Fault::Overflow},
        {FieldType::Block, Bytes(3992), Fault::Unsupported},
    };
    for (const Case& c : cases) {
        try {
            convertValue(c.value, column(c.type), "Т");
            ADD_FAILURE() << static_cast<int>(c.type) << " took " << c.value.toText();
        } catch (const Error& error) {
            EXPECT_EQ(error.fault(), c.fault) << error.what();
            EXPECT_NE(std::string(error.what()).find("«П»"), std::string::npos) << error.what();
            EXPECT_EQ(error.table(), "Т");
        }
    }
}

} // namespace
} // namespace jet
