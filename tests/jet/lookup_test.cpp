#include "jet/error.h"
#include "jet/storage/equalityindex.h"
#include "tests/jet/smalltable.h"

#include <gtest/gtest.h>

#include <map>
#include <random>

namespace jet {
namespace {

using test::field;
using test::index;
using test::SmallTable;

enum Column { Number, Text, Date, Money, Real, Flag, Id };

TableDef mixed()
{
    TableDef table;
    table.name = "Q";
    table.fields = {field("L", FieldType::Long),   field("T", FieldType::Text, 20),
                    field("D", FieldType::Date),   field("C", FieldType::Currency),
                    field("R", FieldType::Double), field("F", FieldType::Boolean),
                    field("G", FieldType::Guid)};
    for (const Field& f : table.fields)
        table.indexes.push_back(index(f.name.c_str(), {{f.name, f.name == "T" || f.name == "R"}}));
    return table;
}

TEST(Lookup, ComparesByValueAcrossTypesAsTheTreesDo)
{
    SmallTable data(mixed());
    Guid guid;
    guid.bytes[0] = 0xAB;
    const RowPointer full =
        data.insert({5, "Иванов", DateTime{45536.0}, Currency{55000}, 0.5, true, guid});
    const RowPointer minus =
        data.insert({-1, "5", DateTime{45536.5}, Currency{-1}, -0.0, false, Value()});
    data.insert(std::vector<Value>(7));
    struct Case
    {
        Column column;
        Value value;
        std::vector<RowPointer> rows;
    };
    const Case cases[] = {
        {Number, 5, {full}},
        {Number, 5.0, {full}},
        {Number, "5", {full}},
        {Number, " 5,0 ", {full}},
        {Number, Currency{50000}, {full}},
        {Number, true, {minus}},
        {Number, 5.5, {}},
        {Number, "5.5", {}},
        {Number, "пять", {}},
        {Number, "", {}},
        {Number, Value(), {}},
        {Number, 1e300, {}},
        {Number, guid, {}},
        {Text, "Иванов", {full}},
        {Text, "иВАНОВ", {full}},
        {Text, "Иванов                    ", {full}},
        {Text, "Иванова", {}},
        {Text, 5, {minus}},
        {Text, Bytes{5}, {}},
        {Date, DateTime{45536.0}, {full}},
        {Date, 45536, {full}},
        {Date, "01.09.2024", {full}},
        {Date, "2024-09-01 12:00:00", {minus}},
        {Date, "02.09.2024", {}},
        {Money, 5.5, {full}},
        {Money, "5,5", {full}},
        {Money, Currency{-1}, {minus}},
        {Money, -0.0001, {minus}},
        {Money, 5.50001, {}},
        {Real, 0.5, {full}},
        {Real, "0,5", {full}},
        {Real, 0, {minus}},
        {Real, 0.25, {}},
        {Flag, true, {full}},
        {Flag, -1, {full}},
        {Flag, 1, {}},
        {Id, guid, {full}},
        {Id, guid.toString(), {full}},
        {Id, "AB", {}},
    };
    for (const Case& c : cases) {
        const auto found = data.table().lookup(c.column, c.value);
        EXPECT_EQ(std::vector(found.begin(), found.end()), c.rows)
            << c.column << " = " << c.value.toText();
        const int tree = data.table().indexLedBy(c.column);
        ASSERT_GE(tree, 0);
        EXPECT_EQ(data.table().seek(tree, std::span(&c.value, 1)), c.rows)
            << c.column << " = " << c.value.toText();
    }
}

TEST(Lookup, ForgetsWhatWasRolledBack)
{
    SmallTable data(mixed());
    const std::vector<Value> row = {7, Value(), Value(), Value(), Value(), Value(), Value()};
    data.insert(row);
    EXPECT_EQ(data.table().lookup(Number, 7).size(), 1u);
    {
        const StatementScope undone(data.store());
        data.table().insert(row);
        EXPECT_EQ(data.table().lookup(Number, 7).size(), 2u);
    }
    EXPECT_EQ(data.table().lookup(Number, 7).size(), 1u);
}

TEST(EqualityIndex, FollowsAModel)
{
    std::mt19937 random(9);
    EqualityIndex hashed;
    std::set<std::pair<std::uint64_t, RowPointer>> model;
    const auto anyKey = [&] { return EqualityKey::ofInteger(static_cast<int>(random() % 300)); };
    std::uint32_t next = 256;
    for (; next < 5000; ++next) {
        const auto entry = std::pair(anyKey(), RowPointer::unpack(next));
        hashed.append(entry.first, entry.second);
        model.insert(entry);
    }
    hashed.finish();
    const auto compare = [&] {
        for (int i = 0; i < 300; ++i) {
            const std::uint64_t key = EqualityKey::ofInteger(i);
            std::vector<RowPointer> expected;
            for (auto at = model.lower_bound({key, {}}); at != model.end() && at->first == key;
                 ++at)
                expected.push_back(at->second);
            const auto found = hashed.find(key);
            ASSERT_EQ(std::vector(found.begin(), found.end()), expected) << i;
        }
    };
    compare();
    for (int i = 0; i < 20000; ++i) {
        if (random() % 2 == 0 && !model.empty()) {
            const auto at = model.lower_bound({anyKey(), {}});
            const auto entry = at == model.end() ? *model.begin() : *at;
            hashed.erase(entry.first, entry.second);
            model.erase(entry);
        } else {
            const auto entry = std::pair(anyKey(), RowPointer::unpack(next++));
            hashed.insert(entry.first, entry.second);
            model.insert(entry);
        }
        if (i % 2500 == 0)
            compare();
    }
    compare();
}

TEST(EqualityIndex, IsSmall)
{
    constexpr std::uint32_t kRows = 400000;
    for (const int distinct : {1, 500, 400000}) {
        EqualityIndex hashed;
        hashed.reserve(kRows);
        for (std::uint32_t i = 0; i < kRows; ++i)
            hashed.append(EqualityKey::ofInteger(static_cast<int>(i) % distinct),
                          RowPointer::unpack(256 + i));
        hashed.finish();
        EXPECT_LT(hashed.memoryBytes(), 9u << 20);
        EXPECT_EQ(hashed.find(EqualityKey::ofInteger(0)).size(),
                  kRows / static_cast<std::uint32_t>(distinct));
    }
}

} // namespace
} // namespace jet
