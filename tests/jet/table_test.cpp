#include "jet/error.h"
#include "jet/storage/sortkey.h"
#include "jet/storage/valueconversion.h"
#include "tests/jet/smalltable.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <random>

namespace jet {
namespace {

using test::field;
using test::index;
using test::SmallTable;
using Row = std::vector<Value>;

constexpr int kId = 0, kFlag = 1, kInteger = 3, kLong = 4, kDate = 8, kText = 9;

// One column of every type, seven indexes.
TableDef allTypes()
{
    TableDef table;
    table.name = "ВСЕ";
    table.fields = {test::counter("ID"),
                    field("ФЛАГ", FieldType::Boolean),
                    field("B", FieldType::Byte),
                    field("I", FieldType::Integer),
                    field("L", FieldType::Long),
                    field("C", FieldType::Currency),
                    field("S", FieldType::Single),
                    field("D", FieldType::Double),
                    field("DT", FieldType::Date),
                    field("T", FieldType::Text, 60),
                    field("TC", FieldType::Text, 255),
                    field("BIN", FieldType::Binary, 20),
                    field("DEC", FieldType::Binary, 17), // see makeUnusual()
                    field("G", FieldType::Guid),
                    field("M", FieldType::Memo),
                    field("MC", FieldType::Memo),
                    field("O", FieldType::LongBinary)};
    table.indexes = {
        index("PK", {{"ID"}}),           index("T", {{"T"}}), index("TL", {{"T", true}, {"L"}}),
        index("L", {{"L"}, {"DT"}}),     index("I", {{"I"}}), index("DT", {{"DT", true}}),
        index("ФЛАГ", {{"ФЛАГ"}, {"G"}})};
    table.indexes[0].primary = table.indexes[0].unique = table.indexes[0].required = true;
    table.indexes[3].unique = true;
    table.indexes[4].ignoreNulls = true;
    return table;
}

// What DDL cannot ask for but Access makes: compressed text, Decimal, and numbers among the
// variable columns. Requires a table without rows.
void makeUnusual(Definition& d)
{
    for (ColumnDefinition& column : d.columns) {
        if (column.name == "TC" || column.name == "MC")
            column.flags2 |= 1;
        if (column.name == "DEC") {
            column.storedType = 0x10;
            column.collation = 18 | 4 << 8; // precision and scale
        }
        if (column.name == "C" || column.name == "DT") {
            column.flags1 = static_cast<std::uint8_t>(column.flags1 & ~columnflag::kFixed);
            column.slot = d.variableSlots++;
        }
    }
}

class Workload
{
public:
    explicit Workload(unsigned seed)
        : m_random(seed)
        , m_data(allTypes())
    {
        m_data.redefine(makeUnusual);
    }

    void run(int steps)
    {
        for (int i = 0; i < steps; ++i) {
            if (i % 97 == 96)
                m_data.reopen();
            if (i % 41 == 40)
                rolledBack();
            else
                step();
            if (i % 150 == 149)
                compare();
        }
        m_data.reopen();
        compare();
        compareLookups();
    }

    // Every row is deleted: all of its pages must come back.
    void eraseAll()
    {
        for (const auto& [pointer, row] : Model(m_model))
            m_data.erase(RowPointer::unpack(pointer));
        m_model.clear();
        m_data.reopen();
        compare();
        const Definition& d = table().definition();
        std::vector<RowPointer> maps = {d.ownedMap, d.freeSpaceMap};
        for (const ColumnMaps& column : d.columnMaps)
            maps.insert(maps.end(), {column.owned, column.freeSpace});
        for (const RowPointer map : maps)
            EXPECT_TRUE(UsageMap(table().pager(), table().allocator(), map).pages().empty());
    }

    std::string structuralErrors() { return m_data.structuralErrors(); }
    std::size_t rows() const { return m_model.size(); }
    int refusals() const { return m_refusals; }

private:
    using Model = std::map<std::uint32_t, Row>;

    Table& table() { return m_data.table(); }
    int below(int n) { return std::uniform_int_distribution<int>(0, n - 1)(m_random); }

    std::string text(int most)
    {
        static const std::vector<std::string> kPieces = {"а", "Я", "ё",      "Ж",     "x", "Q",
                                                         "1", " ", "-",      "é",     "ñ", "№",
                                                         "—", ".", "Иванов", "group", "'"};
        // Mostly one alphabet, as real texts are, sometimes all mixed.
        std::string out;
        const int kind = below(3);
        for (int i = below(most + 1); i > 0; --i) {
            const int piece = kind == 0 ? below(4) : kind == 1 ? 4 + below(3) : below(14);
            out += kPieces[static_cast<std::size_t>(piece)];
        }
        return out;
    }

    Bytes bytes(int most)
    {
        Bytes out(static_cast<std::size_t>(below(most + 1)));
        for (std::uint8_t& b : out)
            b = static_cast<std::uint8_t>(below(256));
        return out;
    }

    int longLength()
    {
        static const std::vector<int> kLengths = {0,   3,    32,   33,   64,  65,
                                                  500, 2000, 4076, 4077, 9000};
        return kLengths[static_cast<std::size_t>(below(static_cast<int>(kLengths.size())))];
    }

    Value randomValue(int column)
    {
        if (below(6) == 0)
            return {};
        const int n = below(2001) - 1000;
        switch (table().definition().columns[static_cast<std::size_t>(column)].type()) {
        case FieldType::Boolean:
            return below(2) == 0;
        case FieldType::Byte:
            return below(256);
        case FieldType::Integer:
        case FieldType::Long:
            return column == kInteger ? below(65536) - 32768 : below(60);
        case FieldType::Currency:
            return Currency{n * 12345};
        case FieldType::Single:
            return n / 16.0;
        case FieldType::Double:
            return n / 7.0;
        case FieldType::Decimal:
            return std::to_string(n) + "0000001,75";
        case FieldType::Date:
            return DateTime{40000.0 + below(30) + below(4) / 4.0};
        case FieldType::Text:
            return text(column == kText ? 60 : 255);
        case FieldType::Binary:
            return bytes(20);
        case FieldType::Guid: {
            Guid g;
            for (std::uint8_t& b : g.bytes)
                b = static_cast<std::uint8_t>(below(256));
            return g;
        }
        case FieldType::Memo:
            return text(longLength());
        default:
            return bytes(longLength());
        }
    }

    // NULL for the counter: it stays, or is given out.
    Row randomRow()
    {
        Row row{Value()};
        for (int column = 1; column < static_cast<int>(table().definition().columns.size());
             ++column)
            row.push_back(randomValue(column));
        return row;
    }

    Row stored(const Row& row)
    {
        Row out;
        for (std::size_t i = 0; i < row.size(); ++i)
            out.push_back(convertValue(row[i], table().definition().columns[i]));
        return out;
    }

    bool clashes(const Row& row, std::uint32_t self) const
    {
        return std::ranges::any_of(m_model, [&](const auto& other) {
            return other.first != self && other.second[kLong] == row[kLong]
                   && other.second[kDate] == row[kDate]
                   && !(row[kLong].isNull() && row[kDate].isNull());
        });
    }

    // A change that the unique index must refuse exactly when the model says so.
    template <class Change>
    bool attempt(bool refuse, Change body)
    {
        try {
            m_data.change(body);
        } catch (const Error& error) {
            EXPECT_EQ(error.fault(), Fault::Duplicate) << error.what();
            EXPECT_TRUE(refuse) << error.what();
            ++m_refusals;
            return false;
        }
        EXPECT_FALSE(refuse);
        return true;
    }

    std::uint32_t anyRow()
    {
        return std::next(m_model.begin(), below(static_cast<int>(m_model.size())))->first;
    }

    void step()
    {
        const int kind = m_model.empty() ? 0 : below(10);
        if (kind < 4) {
            Row row = stored(randomRow());
            RowPointer pointer;
            if (attempt(clashes(row, 0), [&](Table* t) { pointer = t->insert(row); })) {
                row[kId] = table().lastCounter();
                EXPECT_EQ(table().lastCounter(), ++m_counter);
                EXPECT_TRUE(m_model.emplace(pointer.packed(), row).second);
            }
        } else if (kind < 8) {
            updateSome(anyRow());
        } else {
            const std::uint32_t pointer = anyRow();
            m_data.erase(RowPointer::unpack(pointer));
            m_model.erase(pointer);
        }
    }

    void updateSome(std::uint32_t pointer)
    {
        Row row = m_model[pointer];
        for (int i = 1 + below(4); i > 0; --i) {
            const int column = 1 + below(static_cast<int>(row.size()) - 1);
            row[static_cast<std::size_t>(column)] = randomValue(column);
        }
        row = stored(row);
        if (attempt(clashes(row, pointer),
                    [&](Table* t) { t->update(RowPointer::unpack(pointer), row); }))
            m_model[pointer] = row;
    }

    // Changes that are taken back leave nothing, in the caches neither.
    void rolledBack()
    {
        table().lookup(kText, "Иванов");
        m_data.store().beginTransaction();
        const Model before = m_model;
        const std::int64_t counter = m_counter;
        for (int i = 0; i < 5; ++i)
            step();
        m_data.store().rollbackTransaction();
        m_model = before;
        m_counter = counter;
        compare();
    }

    void compare()
    {
        std::size_t found = 0;
        for (TableScan rows = table().scan(); rows.next(); ++found) {
            const auto expected = m_model.find(rows.row().pointer().packed());
            ASSERT_NE(expected, m_model.end());
            expectRow(rows.row(), expected->second);
        }
        EXPECT_EQ(found, m_model.size());
        EXPECT_EQ(table().definition().rowCount, m_model.size());
        for (const auto& [pointer, row] : m_model) {
            const auto view = table().find(RowPointer::unpack(pointer));
            ASSERT_TRUE(view);
            expectRow(*view, row);
        }
    }

    void expectRow(const RowView& view, const Row& row)
    {
        for (std::size_t i = 0; i < row.size(); ++i)
            ASSERT_EQ(view.value(static_cast<int>(i)), row[i])
                << "column " << i << ": " << view.value(static_cast<int>(i)).toText();
    }

    std::vector<RowPointer> matching(int column, const Value& value) const
    {
        std::vector<RowPointer> rows;
        for (const auto& [pointer, row] : m_model) {
            const Value& own = row[static_cast<std::size_t>(column)];
            const bool same = column == kText && !own.isNull()
                                  ? compareGeneral(own.toText(), value.toText()) == 0
                                  : own == value;
            if (same)
                rows.push_back(RowPointer::unpack(pointer));
        }
        return rows;
    }

    // Hash index (before and after changes) and index tree agree with the model.
    void compareLookups()
    {
        for (int round = 0; round < 3; ++round) {
            for (const int column : {kId, kFlag, kInteger, kLong, kDate, kText}) {
                for (int i = 0; i < 30; ++i) {
                    const Value value = m_model[anyRow()][static_cast<std::size_t>(column)];
                    if (value.isNull())
                        continue;
                    const auto rows = table().lookup(column, value);
                    const std::vector<RowPointer> found(rows.begin(), rows.end());
                    const auto expected = matching(column, value);
                    EXPECT_EQ(found, expected) << column << " " << value.toText();
                    const int tree = table().indexLedBy(column);
                    ASSERT_GE(tree, 0);
                    auto sought = table().seek(tree, std::span(&value, 1));
                    std::ranges::sort(sought);
                    EXPECT_EQ(sought, expected) << column << " " << value.toText();
                }
            }
            for (int i = 0; i < 60; ++i)
                step();
        }
    }

    std::mt19937 m_random;
    SmallTable m_data;
    Model m_model;
    std::int64_t m_counter = 0;
    int m_refusals = 0;
};

TEST(Table, FollowsAModelThroughRandomChanges)
{
    for (const unsigned seed : {1u, 2u}) {
        SCOPED_TRACE(seed);
        Workload workload(seed);
        workload.run(700);
        EXPECT_GT(workload.rows(), 100u);
        EXPECT_GT(workload.refusals(), 3);
        EXPECT_EQ(workload.structuralErrors(), "");
    }
}

TEST(Table, GivesAllPagesBackWhenAllRowsAreDeleted)
{
    Workload workload(4);
    workload.run(400);
    workload.eraseAll();
    EXPECT_EQ(workload.structuralErrors(), "");
}

} // namespace
} // namespace jet
