#include "jet/storage/indexkey.h"

#include "jet/error.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <limits>
#include <string>
#include <vector>

namespace jet {
namespace {

std::string hex(const Bytes& bytes)
{
    static constexpr char kDigits[] = "0123456789ABCDEF";
    std::string out;
    for (const std::uint8_t byte : bytes) {
        out += kDigits[byte >> 4];
        out += kDigits[byte & 15];
    }
    return out;
}

ColumnDefinition column(std::uint8_t storedType)
{
    ColumnDefinition c;
    c.name = "NAIM";
    c.storedType = storedType;
    return c;
}

Bytes key(std::uint8_t storedType, bool descending, const Value& value)
{
    Bytes out;
    appendIndexKey(out, column(storedType), descending, value);
    return out;
}

constexpr std::uint8_t kBoolean = 1, kByte = 2, kInteger = 3, kLong = 4, kCurrency = 5, kSingle = 6,
                       kDouble = 7, kDate = 8, kBinary = 9, kText = 10, kOle = 11, kGuid = 15,
                       kDecimal = 16;

Decimal decimal(int value)
{
    Decimal d;
    d.negative = value < 0;
    d.magnitude[3] = static_cast<std::uint32_t>(value < 0 ? -value : value);
    return d;
}

TEST(IndexKey, HasTheBytesOfTheFormat)
{
    Guid guid;
    for (std::uint8_t i = 0; i < 16; ++i)
        guid.bytes[i] = i;
    struct Case
    {
        std::uint8_t type;
        bool descending;
        Value value;
        std::string bytes;
    };
    const Case cases[] = {
        {kLong, false, 19, "7F80000013"},
        {kLong, true, 19, "807FFFFFEC"},
        {kLong, false, -3462, "7F7FFFF27A"},
        {kLong, false, Value(), "00"},
        {kLong, true, Value(), "FF"},
        {kInteger, false, -1, "7F7FFF"},
        {kByte, true, 200, "8037"},
        {kBoolean, false, true, "7F00"},
        {kBoolean, false, false, "7FFF"},
        {kBoolean, true, true, "80FF"},
        {kBoolean, false, Value(), "7FFF"},
        {kCurrency, false, Currency{10000}, "7F8000000000002710"},
        {kDouble, false, 1.0, "7FBFF0000000000000"},
        {kDouble, false, -1.0, "7F400FFFFFFFFFFFFF"},
        {kSingle, true, 1.0, "80407FFFFF"},
        {kDate, false, DateTime{27293.0}, "7FC0DAA74000000000"},
        {kText, false, "", "7F0100"},
        {kText, true, "", "80FEFF00"},
        {kText, true, "Мир", "8086BC86C486B7FEFF00"},
        {kBinary, false, Bytes{1, 2}, "7F010200000000000002"},
        {kBinary, true, Bytes{1, 2, 3, 4, 5, 6, 7, 8, 9}, "80FEFDFCFBFAF9F8F709F6FFFFFFFFFFFFFFFE"},
        {kGuid, false, guid,
         "7F0001020304050607090809"
         "0A0B0C0D0E0F08"},
        {kDecimal, false, decimal(1), "7FFF00000000000000000000000000000001"},
        {kDecimal, true, decimal(1), "80FFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFE"},
        {kDecimal, false, decimal(-1), "7F00FFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFE"},
        {kDecimal, true, decimal(-1), "800000000000000000000000000000000001"},
    };
    for (const Case& c : cases)
        EXPECT_EQ(hex(key(c.type, c.descending, c.value)), c.bytes);
}

TEST(IndexKey, SortsAsTheValuesDo)
{
    const double tiny = std::numeric_limits<double>::denorm_min();
    const double huge = std::numeric_limits<double>::max();
    struct Row
    {
        std::uint8_t type;
        std::vector<Value> ascending;
    };
    const Row rows[] = {
        {kLong, {Value(), std::int64_t{INT32_MIN}, -1, 0, 1, std::int64_t{INT32_MAX}}},
        {kInteger, {Value(), -32768, -1, 0, 32767}},
        {kDouble, {Value(), -huge, -1.5, -tiny, 0.0, tiny, 1.0, huge}},
        {kDate, {Value(), DateTime{-2.5}, DateTime{0}, DateTime{45000.25}, DateTime{45000.5}}},
        {kCurrency, {Value(), Currency{-5}, Currency{0}, Currency{7}}},
        {kText, {Value(), "", "-", "1", "a", "Б", "еж", "ёж", "ежа"}},
        {kBinary, {Value(), Bytes{}, Bytes{0}, Bytes{1}, Bytes{1, 0}, Bytes{1, 1}, Bytes(9, 1)}},
    };
    for (const Row& row : rows) {
        for (std::size_t i = 0; i + 1 < row.ascending.size(); ++i) {
            const Value& low = row.ascending[i];
            const Value& high = row.ascending[i + 1];
            EXPECT_LT(key(row.type, false, low), key(row.type, false, high))
                << int{row.type} << ": " << i;
            EXPECT_GT(key(row.type, true, low), key(row.type, true, high))
                << int{row.type} << ": " << i;
        }
    }
}

TEST(IndexKey, JoinsColumns)
{
    const ColumnDefinition text = column(kText);
    const ColumnDefinition number = column(kLong);
    const ColumnDefinition* columns[] = {&text, &number};
    const bool ascending[] = {false, false};
    const Value more[] = {"more", Value()};
    EXPECT_EQ(hex(encodeIndexKey(columns, ascending, more)), "7F60646951010000");
    const Value none[] = {Value(), 49};
    EXPECT_EQ(hex(encodeIndexKey(columns, ascending, none)), "007F80000031");
}

TEST(IndexKey, RefusesWhatItCannotOrder)
{
    const auto faultOf = [](const ColumnDefinition& c, const Value& value) {
        try {
            Bytes out;
            appendIndexKey(out, c, false, value);
        } catch (const Error& error) {
            return error.fault();
        }
        return Fault::NotFound;
    };
    ColumnDefinition cyrillicOrder = column(kText);
    cyrillicOrder.collation = 0x0419;
    ColumnDefinition newerOrder = column(kText);
    newerOrder.collationVersion = 0x0100;
    EXPECT_EQ(faultOf(cyrillicOrder, "а"), Fault::Unsupported);
    EXPECT_EQ(faultOf(newerOrder, "а"), Fault::Unsupported);
    EXPECT_EQ(faultOf(column(kText), "中"), Fault::Unsupported);
    EXPECT_EQ(faultOf(column(kOle), Bytes{1}), Fault::Unsupported);
    EXPECT_EQ(faultOf(column(kText), 5), Fault::Type);
    EXPECT_EQ(faultOf(column(kGuid), "x"), Fault::Type);
}

} // namespace
} // namespace jet
