#include "jet/error.h"
#include "jet/storage/datapage.h"
#include "tests/jet/smalltable.h"

#include <gtest/gtest.h>

#include <functional>
#include <limits>

namespace jet {
namespace {

using test::counter;
using test::field;
using test::index;
using test::SmallTable;
using Row = std::vector<Value>;

constexpr const char* kLongText = "оченьдлинныйтекст";

TableDef journal()
{
    TableDef table;
    table.name = "ЖУРНАЛ";
    table.fields = {counter("ID"),
                    field("КОД", FieldType::Long),
                    field("FAM", FieldType::Text, 10),
                    field("B", FieldType::Byte),
                    field("I", FieldType::Integer),
                    field("DAT", FieldType::Date),
                    field("M", FieldType::Memo)};
    table.indexes = {index("PrimaryKey", {{"ID"}}), index("ПоКоду", {{"КОД"}}),
                     index("ПоФамилии", {{"FAM"}, {"КОД", true}})};
    table.indexes[0].primary = table.indexes[0].unique = table.indexes[0].required = true;
    table.indexes[1].unique = table.indexes[1].required = true;
    return table;
}

Bytes allPages(Store& store)
{
    Bytes bytes;
    for (PageNumber page = 0; page < store.pager().pageCount(); ++page) {
        const PageRef ref = store.pager().read(page);
        bytes.insert(bytes.end(), ref.bytes().begin(), ref.bytes().end());
    }
    return bytes;
}

struct Refusal
{
    const char* what;
    std::function<void(Row&)> change; // of an acceptable row
    Fault fault;
    std::vector<std::string> words; // of the message
};

const std::vector<Refusal>& refusals()
{
    static const std::vector<Refusal> all = {
        {"key given twice",
         [](Row& r) { r[0] = 1; },
         Fault::Duplicate,
         {"«PrimaryKey»", "«ЖУРНАЛ»"}},
        {"unique value given twice",
         [](Row& r) { r[1] = "100"; },
         Fault::Duplicate,
         {"«ПоКоду»", "«ЖУРНАЛ»"}},
        {"NULL in a required index",
         [](Row& r) { r[1] = Value(); },
         Fault::NullValue,
         {"«КОД»", "«ПоКоду»", "«ЖУРНАЛ»"}},
        {"text without a known key",
         [](Row& r) { r[2] = "文"; },
         Fault::Unsupported,
         {"«ПоФамилии»", "«ЖУРНАЛ»"}},
        {"text too long",
         [](Row& r) { r[2] = kLongText; },
         Fault::Overflow,
         {"«FAM»", "слишком мало", "10", "17"}},
        {"no number", [](Row& r) { r[1] = "12а"; }, Fault::Type, {"«КОД»"}},
        {"beyond Byte", [](Row& r) { r[3] = 256; }, Fault::Overflow, {"«B»"}},
        {"below Byte", [](Row& r) { r[3] = -1; }, Fault::Overflow, {"«B»"}},
        {"beyond Integer", [](Row& r) { r[4] = 32768; }, Fault::Overflow, {"«I»"}},
        {"beyond Long", [](Row& r) { r[1] = 2147483648.0; }, Fault::Overflow, {"«КОД»"}},
        {"no date", [](Row& r) { r[5] = "31.02.2024"; }, Fault::Type, {"«DAT»"}},
        {"a value too few", [](Row& r) { r.pop_back(); }, Fault::Type, {}},
    };
    return all;
}

class TableRules : public testing::Test
{
protected:
    TableRules()
        : data(journal())
    {
        data.insert({Value(), 100, "Иванов", 1, 1, "01.09.2024", "один"});
        second = data.insert({Value(), 200, "Петров", 2, 2, Value(), std::string(5000, 'x')});
    }

    // Expects the refusal to leave every page as it is, without any rollback.
    void expectRefused(const Refusal& refusal, const std::function<void()>& attempt)
    {
        SCOPED_TRACE(refusal.what);
        const StatementScope statement(data.store());
        data.table(); // reads what it caches
        const Bytes before = allPages(data.store());
        try {
            attempt();
            ADD_FAILURE() << "was accepted";
        } catch (const Error& error) {
            EXPECT_EQ(error.fault(), refusal.fault) << error.what();
            for (const std::string& word : refusal.words)
                EXPECT_NE(std::string(error.what()).find(word), std::string::npos) << error.what();
        }
        EXPECT_TRUE(allPages(data.store()) == before);
    }

    SmallTable data;
    RowPointer second;
};

TEST_F(TableRules, RefusedRowsChangeNothing)
{
    const Row good = {3, 300, "Сидоров", 3, 3, Value(), "три"};
    for (const Refusal& refusal : refusals()) {
        Row row = good;
        refusal.change(row);
        expectRefused(refusal, [&] { data.table().insert(row); });
        expectRefused(refusal, [&] { data.table().update(second, row); });
    }
    data.insert(good);
    data.reopen();
    EXPECT_EQ(data.table().countRows(), 3);
    EXPECT_EQ(data.structuralErrors(), "");
}

TEST_F(TableRules, ARowMayKeepItsOwnKeysAndChangeTheirCase)
{
    Row row = data.row(second);
    row[2] = "ПЕТРОВ";
    data.update(second, row);
    row[6] = Value();
    data.update(second, row);
    data.reopen();
    EXPECT_EQ(data.row(second)[2], Value("ПЕТРОВ"));
    EXPECT_EQ(data.structuralErrors(), "");
}

TEST_F(TableRules, UnchangedLongValuesStayWhereTheyAre)
{
    const auto item = [&] {
        const RowView view = *data.table().find(second);
        const ByteView bytes = view.storedItem(6);
        return Bytes(bytes.begin(), bytes.end());
    };
    const Bytes before = item();
    Row row = data.row(second);
    row[1] = 250;
    data.update(second, row);
    EXPECT_EQ(item(), before);
    row[6] = std::string(5000, 'y');
    data.update(second, row);
    data.reopen();
    EXPECT_EQ(data.row(second), row);
    EXPECT_EQ(data.structuralErrors(), "");
}

TEST_F(TableRules, CountersAreGivenOutOnceAndFollowExplicitValues)
{
    int code = 1000;
    const auto next = [&] {
        data.insert({Value(), ++code, Value(), Value(), Value(), Value(), Value()});
        return data.table().lastCounter();
    };
    EXPECT_EQ(next(), 3);
    const RowPointer explicitRow =
        data.insert({50, 7, Value(), Value(), Value(), Value(), Value()});
    EXPECT_EQ(data.table().lastCounter(), 50);
    EXPECT_EQ(next(), 51);
    data.erase(explicitRow);
    data.reopen();
    EXPECT_EQ(next(), 52);
    // The stored counter may lag behind the rows.
    data.redefine([](Definition& d) { d.lastAutoNumber = 10; });
    EXPECT_EQ(next(), 53);
    EXPECT_EQ(data.definition().lastAutoNumber, 53u);
    EXPECT_EQ(data.structuralErrors(), "");
    data.insert(
        {std::numeric_limits<std::int32_t>::max(), 8, Value(), Value(), Value(), Value(), Value()});
    EXPECT_THROW(next(), Error);
}

TEST_F(TableRules, AnIndexOverRowsIsBuiltOrRefused)
{
    const auto create = [&](const Index& added) {
        data.change([&](Table*) { data.store().createIndex("ЖУРНАЛ", added); });
    };
    Index dates = index("ПоДате", {{"DAT"}});
    dates.required = true;
    EXPECT_THROW(create(dates), Error); // Петров has none
    dates.required = false;
    dates.unique = true;
    data.insert({Value(), 300, Value(), Value(), Value(), Value(), Value()});
    create(dates); // NULLs do not clash
    EXPECT_EQ(data.definition().realIndexes.back().distinctKeys, 2u);
    Index bytes = index("ПоБайту", {{"B"}});
    bytes.unique = true;
    data.insert({Value(), 400, Value(), 2, Value(), Value(), Value()});
    EXPECT_THROW(create(bytes), Error);
    EXPECT_EQ(data.structuralErrors(), "");
}

// A page is filled with short rows, so that a growing one must leave it.
class MovedRows : public testing::Test
{
protected:
    static constexpr int kRows = 190;
    static TableDef wide()
    {
        TableDef table;
        table.name = "W";
        table.fields = {field("N", FieldType::Long), field("A", FieldType::Text, 255),
                        field("B", FieldType::Text, 255), field("C", FieldType::Text, 255)};
        table.indexes = {index("N", {{"N"}}), index("A", {{"A"}})};
        return table;
    }
    MovedRows()
        : data(wide())
    {
        data.store().beginTransaction();
        for (int i = 0; i < kRows; ++i)
            rows.push_back(data.insert({i, "a", Value(), Value()}));
        data.store().commitTransaction();
    }

    Row withText(int n, int length) const
    {
        return {n, std::string(static_cast<std::size_t>(length), 'q'),
                std::string(static_cast<std::size_t>(length), 'w'), Value()};
    }
    std::uint16_t state(RowPointer row)
    {
        return datapage::slot(data.store().pager().read(row.page).bytes(), row.page, row.row).state;
    }
    void expectFound(int n, const Row& values)
    {
        const RowPointer row = rows[static_cast<std::size_t>(n)];
        EXPECT_EQ(data.row(row), values);
        const Value key(n);
        EXPECT_EQ(data.table().seek(0, std::span(&key, 1)), std::vector{row});
        const auto found = data.table().lookup(0, key);
        EXPECT_EQ(std::vector(found.begin(), found.end()), std::vector{row});
        EXPECT_EQ(data.table().countRows(), kRows);
    }

    SmallTable data;
    std::vector<RowPointer> rows;
};

TEST_F(MovedRows, LeaveTheirPageMoveAgainAndComeHome)
{
    const RowPointer row = rows[3];
    ASSERT_EQ(row.page, rows[kRows - 1].page) << "all rows must be on one page";
    for (const int length : {200, 250, 100}) {
        data.update(row, withText(3, length));
        EXPECT_EQ(state(row), datapage::kMoved);
        data.reopen();
        expectFound(3, withText(3, length));
        EXPECT_EQ(data.structuralErrors(), "");
    }
    data.update(row, {3, "b", Value(), Value()});
    EXPECT_EQ(state(row), 0);
    data.reopen();
    expectFound(3, {3, "b", Value(), Value()});
    EXPECT_EQ(data.structuralErrors(), "");
}

TEST_F(MovedRows, MoveOnWhenTheirSecondPageIsFullToo)
{
    // All grow at once: the pages they move to fill up, and some must move on.
    for (const int length : {40, 120, 255}) {
        for (int n = 0; n < kRows; ++n)
            data.update(rows[static_cast<std::size_t>(n)], withText(n, length));
        data.reopen();
        for (int n = 0; n < kRows; n += 7)
            expectFound(n, withText(n, length));
        EXPECT_EQ(data.structuralErrors(), "");
    }
    for (const RowPointer row : rows)
        data.erase(row);
    EXPECT_EQ(data.table().countRows(), 0);
    EXPECT_EQ(data.structuralErrors(), "");
}

TEST(RowLimit, InlineMemosLeaveARowThatIsTooLong)
{
    TableDef table;
    table.name = "L";
    for (int i = 0; i < 7; ++i)
        table.fields.push_back(field(("T" + std::to_string(i)).c_str(), FieldType::Text, 255));
    for (int i = 0; i < 20; ++i)
        table.fields.push_back(field(("M" + std::to_string(i)).c_str(), FieldType::Memo));
    SmallTable data(table);
    const std::string memo = "Памятная записка № 12345678901"; // 30 characters, inline
    Row row(27);
    for (std::size_t i = 7; i < 27; ++i)
        row[i] = memo;
    const RowPointer pointer = data.insert(row);
    std::string wide;
    for (int i = 0; i < 255; ++i)
        wide += "Ж";
    for (std::size_t i = 0; i < 7; ++i)
        row[i] = wide; // 3570 bytes together
    data.update(pointer, row);
    EXPECT_EQ(data.insert(row).isNull(), false);
    data.reopen();
    EXPECT_EQ(data.row(pointer), row);
    EXPECT_EQ(data.structuralErrors(), "");
}

TEST(RowLimit, LongerRowsAreRefused)
{
    TableDef table;
    table.name = "L";
    for (int i = 0; i < 9; ++i)
        table.fields.push_back(field(("T" + std::to_string(i)).c_str(), FieldType::Text, 255));
    SmallTable data(table);
    std::string wide;
    for (int i = 0; i < 255; ++i)
        wide += "Ж";
    Row row(9, wide);
    EXPECT_THROW(data.insert(row), Error);
    row[8] = row[7] = Value();
    data.insert(row);
    data.reopen();
    EXPECT_EQ(data.table().countRows(), 1);
    EXPECT_EQ(data.structuralErrors(), "");
}

TEST(OldRows, ReadAsNullInLaterColumnsAndTakeValuesThere)
{
    TableDef table;
    table.name = "R";
    table.fields = {field("N", FieldType::Long), field("F", FieldType::Boolean)};
    SmallTable data(table);
    const RowPointer first = data.insert({1, true});
    const RowPointer other = data.insert({2, false});
    // The table had no variable columns so far, so its rows have no offsets.
    for (const Field& added : {field("T", FieldType::Text, 20), field("D", FieldType::Double),
                               field("G", FieldType::Boolean), field("M", FieldType::Memo)})
        data.change([&](Table*) { data.store().appendField("R", added); });
    EXPECT_EQ(data.row(first), (Row{1, true, Value(), Value(), false, Value()}));
    const Row full = {1, false, "текст", 2.5, true, std::string(3000, 'm')};
    data.update(first, full);
    data.reopen();
    EXPECT_EQ(data.row(first), full);
    EXPECT_EQ(data.row(other), (Row{2, false, Value(), Value(), false, Value()}));
    data.change([&](Table*) { data.store().dropField("R", "T"); });
    const Row without = {1, false, 2.5, true, std::string(3000, 'm')};
    EXPECT_EQ(data.row(first), without);
    data.update(other, without);
    data.erase(first);
    data.reopen();
    EXPECT_EQ(data.row(other), without);
    EXPECT_EQ(data.structuralErrors(), "");
}

} // namespace
} // namespace jet
