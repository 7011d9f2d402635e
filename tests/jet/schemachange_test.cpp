#include "jet/error.h"
#include "jet/storage/properties.h"
#include "jet/storage/store.h"
#include "tests/jet/schemahelpers.h"
#include "tests/support/outsidecheckers.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>

namespace jet {
namespace {

using test::counter;
using test::indexOn;
using test::memo;
using test::number;
using test::primaryKey;
using test::text;

class SchemaChange : public testing::Test
{
protected:
    void SetUp() override
    {
        Store::create(FileSystem::system(), path, {.encoded = true});
        reopen();
    }

    void reopen()
    {
        store.reset();
        store = Store::open(FileSystem::system(), path, OpenMode::Exclusive);
    }

    void change(const std::function<void()>& action)
    {
        StatementScope scope(*store);
        action();
        scope.done();
    }

    // The change is refused and leaves no trace.
    void expectRefused(Fault fault, const std::function<void()>& action)
    {
        const auto before = test::bytesOf(path);
        try {
            change(action);
            ADD_FAILURE() << "not refused";
        } catch (const Error& error) {
            EXPECT_EQ(error.fault(), fault) << error.what();
        }
        EXPECT_EQ(test::bytesOf(path), before);
    }

    void insert(const std::string& table, const std::vector<Value>& row)
    {
        change([&] { store->table(table).insert(row); });
    }

    // After reopening, as others see it.
    void expectSound()
    {
        store.reset();
        EXPECT_EQ(test::structuralErrors(path).value_or(""), "");
        reopen();
    }

    test::TemporaryFolder folder;
    std::filesystem::path path = folder / "base.mdb";
    std::unique_ptr<Store> store;
};

TEST_F(SchemaChange, ATableOfAllTypesIsDescribedAsItWasAsked)
{
    TableDef wanted{.name = "Все типы"};
    const FieldType types[] = {FieldType::Boolean, FieldType::Byte,       FieldType::Integer,
                               FieldType::Long,    FieldType::Currency,   FieldType::Single,
                               FieldType::Double,  FieldType::Date,       FieldType::Binary,
                               FieldType::Text,    FieldType::LongBinary, FieldType::Memo,
                               FieldType::Guid,    FieldType::Decimal};
    for (const FieldType type : types) {
        Field field{.name = "F" + std::to_string(static_cast<int>(type)), .type = type};
        field.size = type == FieldType::Text || type == FieldType::Binary ? 20 : 0;
        if (type == FieldType::Decimal) {
            field.precision = 18;
            field.scale = 4;
        }
        wanted.fields.push_back(field);
    }
    wanted.fields.push_back(counter("Код"));
    wanted.fields.push_back(
        {.name = "Знаки", .type = FieldType::Text, .size = 10, .attributes = attribute::kFixed});
    wanted.fields[2].required = true;
    wanted.fields[3].defaultValue = "5";
    wanted.indexes = {primaryKey("Код"), indexOn("По тексту", {"F10", "F4"})};
    change([&] { store->createTable(wanted); });
    std::vector<Value> row(wanted.fields.size());
    row[0] = true;
    row[2] = 7;
    row[9] = "Текст";
    row[11] = std::string(5000, 'x');
    insert(wanted.name, row);
    expectSound();

    const TableDef found = store->describe("все ТИПЫ");
    ASSERT_EQ(found.fields.size(), wanted.fields.size());
    for (std::size_t i = 0; i < wanted.fields.size(); ++i) {
        const Field& field = found.fields[i];
        EXPECT_EQ(field.name, wanted.fields[i].name);
        EXPECT_EQ(field.type, wanted.fields[i].type);
        EXPECT_EQ(field.size, fieldSize(field.type, wanted.fields[i].size)) << field.name;
        EXPECT_EQ(field.required, wanted.fields[i].required) << field.name;
        EXPECT_EQ(field.defaultValue, wanted.fields[i].defaultValue) << field.name;
    }
    EXPECT_EQ(found.field("F10")->attributes, attribute::kVariable);
    EXPECT_EQ(found.field("F4")->attributes, attribute::kFixed);
    EXPECT_EQ(found.field("F12")->attributes, attribute::kVariable);
    EXPECT_EQ(found.field("Код")->attributes, attribute::kFixed | attribute::kAutoIncrement);
    EXPECT_EQ(found.field("Знаки")->attributes, attribute::kFixed);
    EXPECT_EQ(found.field("F20")->precision, 18);
    EXPECT_EQ(found.field("F20")->scale, 4);
    EXPECT_EQ(found.index("По тексту")->fieldList(), "+F10;+F4");
    EXPECT_TRUE(found.index("PrimaryKey")->primary);
    EXPECT_EQ(store->table(wanted.name).countRows(), 1);
}

TEST_F(SchemaChange, OtherReadersSeeTheTable)
{
    TableDef table{.name = "SPGRUP",
                   .fields = {counter("IDG"), text("NAIM", 20)},
                   .indexes = {primaryKey("IDG")}};
    change([&] { store->createTable(table); });
    insert("SPGRUP", {Value(), "ПО-21"});
    insert("SPGRUP", {Value(), "ёж"});
    store.reset();
    EXPECT_EQ(test::mdbtools("mdb-tables", {"-1", path.string()}).value_or("SPGRUP\n"), "SPGRUP\n");
    EXPECT_EQ(test::mdbtools("mdb-export", {path.string(), "SPGRUP"})
                  .value_or("IDG,NAIM\n1,\"ПО-21\"\n2,\"ёж\"\n"),
              "IDG,NAIM\n1,\"ПО-21\"\n2,\"ёж\"\n");
}

TEST_F(SchemaChange, NamesAreChecked)
{
    change([&] { store->createTable({.name = "T", .fields = {number("A")}}); });
    const std::string longest = [] {
        std::string name;
        for (int i = 0; i < 64; ++i)
            name += "Ы";
        return name;
    }();
    const std::string bad[] = {"",   " a",  "a.b",  "a!b",  "a`b",
                               "[a", "a]b", "a\tb", "\x01", longest + "Ы"};
    for (const std::string& name : bad) {
        EXPECT_THROW(change([&] { store->createTable({.name = name, .fields = {number("A")}}); }),
                     Error)
            << name;
        EXPECT_THROW(change([&] { store->appendField("T", number(name)); }), Error) << name;
        EXPECT_THROW(change([&] { store->createIndex("T", indexOn(name, {"A"})); }), Error) << name;
    }
    for (const std::string& name : {longest, std::string("a b"), std::string("№ \"x\" 'y'")}) {
        change([&] { store->createTable({.name = name, .fields = {number(name)}}); });
        change([&] { store->createIndex(name, indexOn(name, {name})); });
    }
    expectSound();
    EXPECT_EQ(store->describe(longest).indexes[0].fields[0].name, longest);
}

TEST_F(SchemaChange, WhatExistsOrIsMissingIsRefused)
{
    TableDef table{.name = "T", .fields = {number("A"), memo("M")}, .indexes = {primaryKey("A")}};
    change([&] { store->createTable(table); });
    expectRefused(Fault::Exists,
                  [&] { store->createTable({.name = "t", .fields = {number("X")}}); });
    expectRefused(Fault::Exists, [&] { store->appendField("T", number("a")); });
    expectRefused(Fault::Exists, [&] { store->createIndex("T", indexOn("primarykey", {"A"})); });
    expectRefused(Fault::Exists, [&] {
        store->createIndex("T", [] {
            Index second = primaryKey("A");
            second.name = "Second";
            return second;
        }());
    });
    expectRefused(Fault::Exists, [&] { store->createIndex("T", indexOn("I", {"A", "a"})); });
    expectRefused(Fault::Exists, [&] {
        store->createTable({.name = "U", .fields = {number("X"), text("x")}});
    });
    expectRefused(Fault::Exists, [&] {
        store->createTable({.name = "U", .fields = {counter("X"), counter("Y")}});
    });
    expectRefused(Fault::UnknownName, [&] { store->dropTable("Нет"); });
    expectRefused(Fault::UnknownName, [&] { store->dropField("T", "Нет"); });
    expectRefused(Fault::UnknownName, [&] { store->dropIndex("T", "Нет"); });
    expectRefused(Fault::UnknownName, [&] { store->createIndex("T", indexOn("I", {"Нет"})); });
    expectRefused(Fault::Unsupported, [&] { store->createTable({.name = "U"}); });
    expectRefused(Fault::Unsupported, [&] { store->dropField("T", "A"); }); // in an index
    expectRefused(Fault::Unsupported, [&] { store->dropTable("MSysObjects"); });
    expectRefused(Fault::Unsupported, [&] { store->appendField("MSysACEs", number("X")); });
    change([&] { store->dropField("T", "M"); });
    change([&] { store->dropIndex("T", "PrimaryKey"); });
    expectRefused(Fault::Unsupported, [&] { store->dropField("T", "A"); }); // the last one
    expectSound();
}

TEST_F(SchemaChange, LimitsOfTheFormatHold)
{
    TableDef wide{.name = "Wide"};
    for (int i = 0; i < 255; ++i)
        wide.fields.push_back(text("C" + std::to_string(i), 255));
    change([&] { store->createTable(wide); });
    expectRefused(Fault::Limit, [&] { store->appendField("Wide", number("More")); });
    for (int i = 0; i < 32; ++i)
        change([&] {
            store->createIndex("Wide", indexOn("I" + std::to_string(i), {"C" + std::to_string(i)}));
        });
    expectRefused(Fault::Limit, [&] { store->createIndex("Wide", indexOn("I32", {"C99"})); });
    expectRefused(Fault::Limit, [&] {
        std::vector<std::string> eleven;
        for (int i = 0; i < 11; ++i)
            eleven.push_back("C" + std::to_string(i));
        store->dropIndex("Wide", "I0");
        store->createIndex("Wide", indexOn("Eleven", eleven));
    });
    expectRefused(Fault::Limit,
                  [&] { store->createTable({.name = "T", .fields = {text("A", 256)}}); });
    expectRefused(Fault::Limit, [&] {
        TableDef heavy{.name = "Heavy"};
        for (int i = 0; i < 8; ++i)
            heavy.fields.push_back({.name = "C" + std::to_string(i),
                                    .type = FieldType::Text,
                                    .size = 255,
                                    .attributes = attribute::kFixed});
        store->createTable(heavy);
    });
    insert("Wide", std::vector<Value>(255, "x"));
    expectSound();
    EXPECT_EQ(store->describe("Wide").indexes.size(), 32u);
}

TEST_F(SchemaChange, FieldsComeAndGoWithoutTouchingOtherValues)
{
    change([&] {
        store->createTable({.name = "T", .fields = {number("A"), text("B"), memo("M")}});
    });
    insert("T", {1, "один", std::string(9000, 'm')});
    change([&] { store->appendField("T", {.name = "F", .type = FieldType::Boolean}); });
    change([&] { store->appendField("T", text("D", 255)); });
    change([&] {
        store->appendField("T", {.name = "E", .type = FieldType::Double, .required = true});
    });
    insert("T", {2, "два", "коротко", true, "новое", 2.5});
    change([&] { store->dropField("T", "B"); });
    change([&] { store->dropField("T", "M"); });
    change([&] { store->appendField("T", memo("M")); });
    change([&] { store->dropField("T", "E"); });
    change([&] { store->appendField("T", {.name = "G", .type = FieldType::Integer}); });
    insert("T", {3, false, "третье", "мемо", 33});
    expectSound();

    Table& table = store->table("T");
    std::vector<std::vector<Value>> rows;
    for (TableScan scan = table.scan(); scan.next();) {
        rows.emplace_back();
        for (int column = 0; column < 5; ++column)
            rows.back().push_back(scan.row().value(column));
    }
    const std::vector<std::vector<Value>> expected = {{1, false, Value(), Value(), Value()},
                                                      {2, true, "новое", Value(), Value()},
                                                      {3, false, "третье", "мемо", 33}};
    EXPECT_EQ(rows, expected);
    EXPECT_EQ(store->describe("T").field("E"), nullptr);
}

TEST_F(SchemaChange, RepeatedAddingAndDroppingEndsAtTheLimit)
{
    change([&] { store->createTable({.name = "T", .fields = {number("A")}}); });
    change([&] {
        for (int i = 0; i < 254; ++i) {
            store->appendField("T", i % 2 ? text("X") : memo("X"));
            store->dropField("T", "X");
        }
    });
    expectRefused(Fault::Limit, [&] { store->appendField("T", text("X")); });
    insert("T", {1});
    expectSound();
}

TEST_F(SchemaChange, ANewCounterNumbersTheRowsThatAreThere)
{
    change([&] { store->createTable({.name = "T", .fields = {text("B")}}); });
    for (const char* name : {"a", "b", "c"})
        insert("T", {name});
    change([&] { store->appendField("T", counter("ID")); });
    expectRefused(Fault::Exists, [&] { store->appendField("T", counter("ID2")); });
    insert("T", {"d", Value()});
    change([&] { store->createIndex("T", primaryKey("ID")); });
    expectSound();
    std::vector<std::int64_t> numbers;
    for (TableScan scan = store->table("T").scan(); scan.next();)
        numbers.push_back(scan.row().integer(1));
    EXPECT_EQ(numbers, (std::vector<std::int64_t>{1, 2, 3, 4}));
}

TEST_F(SchemaChange, AnIndexThatTheRowsBreakIsRefused)
{
    change([&] { store->createTable({.name = "T", .fields = {number("A"), text("B")}}); });
    insert("T", {1, "знак без ключа \u4E2D"});
    insert("T", {1, "обычный"});
    change([&] { store->createTable({.name = "N", .fields = {number("A"), text("B")}}); });
    insert("N", {1, Value()});
    Index unique = indexOn("U", {"A"});
    unique.unique = true;
    expectRefused(Fault::Duplicate, [&] { store->createIndex("T", unique); });
    Index required = indexOn("R", {"B"});
    required.required = true;
    expectRefused(Fault::NullValue, [&] { store->createIndex("N", required); });
    expectRefused(Fault::NullValue, [&] { store->createIndex("N", primaryKey("B")); });
    expectRefused(Fault::Unsupported, [&] { store->createIndex("T", indexOn("K", {"B"})); });
    EXPECT_TRUE(store->describe("T").indexes.empty());
    change([&] { store->createIndex("T", indexOn("A", {"A"})); });
    expectSound();
}

TEST_F(SchemaChange, RequiredFieldsRefuseNull)
{
    Field required = text("B");
    required.required = true;
    change([&] { store->createTable({.name = "T", .fields = {number("A")}}); });
    insert("T", {1});
    change([&] { store->appendField("T", required); });
    expectRefused(Fault::NullValue, [&] {
        store->table("T").insert(std::vector<Value>{2, Value()});
    });
    insert("T", {2, ""});
    reopen();
    expectRefused(Fault::NullValue, [&] {
        store->table("T").insert(std::vector<Value>{3, Value()});
    });
    std::vector<RowPointer> rows;
    for (TableScan scan = store->table("T").scan(); scan.next();)
        rows.push_back(scan.row().pointer());
    // The row that is older than the field keeps its NULL.
    change([&] { store->table("T").update(rows[0], std::vector<Value>{10, Value()}); });
    expectRefused(Fault::NullValue, [&] {
        store->table("T").update(rows[1], std::vector<Value>{2, Value()});
    });
    change([&] { store->dropField("T", "B"); });
    insert("T", {4});
    expectSound();
}

// Access stores the property as False unless told otherwise; SQL does not store it at all.
TEST_F(SchemaChange, OnlyFieldsThatForbidEmptyTextsRefuseThem)
{
    change([&] { store->createTable({.name = "T", .fields = {text("A"), text("B"), memo("C")}}); });
    insert("T", {"", "", ""});
    Properties properties;
    properties.setColumnFlag("A", "AllowZeroLength", true);
    properties.setColumnFlag("B", "AllowZeroLength", false);
    properties.setColumnFlag("C", "AllowZeroLength", false);
    change([&] {
        Table& objects = store->table("MSysObjects");
        const auto column = [&](const char* name) {
            return static_cast<std::size_t>(objects.definition().columnPosition(name));
        };
        for (TableScan scan = objects.scan(); scan.next();) {
            std::vector<Value> row;
            for (std::size_t i = 0; i < objects.definition().columns.size(); ++i)
                row.push_back(scan.row().value(static_cast<int>(i)));
            if (row[column("Name")] != Value("T"))
                continue;
            row[column("LvProp")] = properties.encode();
            return objects.update(scan.row().pointer(), row);
        }
    });
    reopen();
    insert("T", {"", "b", Value()});
    for (const std::vector<Value>& row :
         {std::vector<Value>{"a", "", "c"}, std::vector<Value>{"a", "b", ""}})
        expectRefused(Fault::NullValue, [&] { store->table("T").insert(row); });
    std::vector<RowPointer> rows;
    for (TableScan scan = store->table("T").scan(); scan.next();)
        rows.push_back(scan.row().pointer());
    change([&] { store->table("T").update(rows[0], std::vector<Value>{"x", "", ""}); });
    expectRefused(Fault::NullValue, [&] {
        store->table("T").update(rows[1], std::vector<Value>{"x", "", "c"});
    });
    expectSound();
}

TEST_F(SchemaChange, DroppedThingsGiveTheirPagesBack)
{
    change([&] { store->createTable({.name = "Stays", .fields = {number("A")}}); });
    const PageNumber before = store->pager().pageCount();
    for (int round = 0; round < 3; ++round) {
        TableDef table{.name = "T",
                       .fields = {counter("A"), text("B", 255), memo("M")},
                       .indexes = {primaryKey("A"), indexOn("B", {"B"})}};
        for (int i = 0; i < 40; ++i) // a definition of several pages
            table.fields.push_back(text("Поле с длинным именем " + std::to_string(i)));
        change([&] {
            store->createTable(table);
            std::vector<Value> row(table.fields.size());
            for (int i = 0; i < 300; ++i) {
                row[1] = std::string(200, 'a') + std::to_string(i);
                row[2] = std::string(static_cast<std::size_t>(i * 30), 'm');
                store->table("T").insert(row);
            }
        });
        if (round == 0)
            expectSound();
        change([&] {
            store->dropIndex("T", "B");
            store->dropField("T", "M");
        });
        if (round == 1)
            expectSound();
        change([&] { store->dropTable("T"); });
        expectSound();
        for (PageNumber page = before; page < store->pager().pageCount(); ++page)
            EXPECT_TRUE(store->allocator().isFree(page)) << page;
    }
    EXPECT_EQ(store->table("MSysObjects").countRows(), 9);
    EXPECT_EQ(store->table("MSysACEs").countRows(), 18);
}

TEST_F(SchemaChange, DatesOfTheLastChangeMove)
{
    change([&] { store->createTable({.name = "T", .fields = {number("A")}}); });
    Table& objects = store->table("MSysObjects");
    const int name = objects.definition().columnPosition("Name");
    const int updated = objects.definition().columnPosition("DateUpdate");
    for (TableScan scan = objects.scan(); scan.next();) {
        std::vector<Value> values;
        for (int i = 0; i < static_cast<int>(objects.definition().columns.size()); ++i)
            values.push_back(scan.row().value(i));
        if (values[static_cast<std::size_t>(name)] == Value("T")) {
            values[static_cast<std::size_t>(updated)] = DateTime{1000};
            change([&] { objects.update(scan.row().pointer(), values); });
            break;
        }
    }
    reopen();
    EXPECT_EQ(store->describe("T").updated.days, 1000);
    change([&] { store->appendField("T", number("B")); });
    EXPECT_GT(store->describe("T").updated.days, 40000);
    EXPECT_GE(store->describe("T").updated, store->describe("T").created);
}

} // namespace
} // namespace jet
