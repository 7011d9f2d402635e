// SELECTs that list a table's rows without SQLite, beside the same rows by way of SQLite.
#include "jet/storage/bytes.h"
#include "tests/jet/queryfixture.h"

#include <algorithm>
#include <array>
#include <limits>

namespace jet::test {

namespace {

// Never false, and enough for SQLite to be asked.
constexpr const char* kBySqlite = " WHERE True;";

class RowLists : public QueryTest
{
protected:
    void expectSameRows(const std::string& select)
    {
        const auto listed = db->rows(select + ';');
        const auto asked = db->rows(select + kBySqlite);
        EXPECT_EQ(listed, asked) << select;
        EXPECT_FALSE(listed.empty()) << select;
    }
};

TEST_F(RowLists, ShowTheValuesThatSqliteShowsOfEveryType)
{
    const std::pair<const char*, FieldType> fields[] = {
        {"B", FieldType::Boolean}, {"Y", FieldType::Byte},     {"I", FieldType::Integer},
        {"L", FieldType::Long},    {"C", FieldType::Currency}, {"S", FieldType::Single},
        {"D", FieldType::Double},  {"T", FieldType::Date},     {"X", FieldType::Text},
        {"M", FieldType::Memo},    {"N", FieldType::Binary},   {"O", FieldType::LongBinary},
        {"G", FieldType::Guid},
    };
    TableDef table;
    table.name = "KINDS";
    for (const auto& [name, type] : fields) {
        Field field;
        field.name = name;
        field.type = type;
        field.size = type == FieldType::Text || type == FieldType::Binary ? 50 : 0;
        table.fields.push_back(field);
    }
    db->createTable(table);
    std::vector<std::string> names;
    for (const Field& field : table.fields)
        names.push_back(field.name);
    Appender rows(*db, "KINDS", names);
    const auto append = [&rows](std::vector<Value> values) { rows.append(values); };
    append(std::vector<Value>(std::size(fields)));
    append({true, 255, -32768, -2147483647, Currency{-12345}, 1.5, -0.1, DateTime{-1.25},
            "Ёлка, \"ель\"", std::string(5000, 'm'), Bytes{1, 0, 2}, Bytes(5000, 7), Guid{{1, 2}}});
    append(
        {false, 0, 0, 0, Currency{0}, 0.0, 4.0, DateTime{46091}, "", "", Bytes{}, Bytes{}, Guid{}});
    reopen();
    for (const auto& [name, type] : fields)
        expectSameRows(std::string("SELECT ") + name + " FROM KINDS");
    expectSameRows("SELECT * FROM KINDS");
    expectSameRows("SELECT B, Y, I, L, S, D, T, X, M FROM KINDS");
    expectSameRows("SELECT k.M, k.X AS A, k.X, k.* FROM KINDS AS k");
}

// No statement stores such a number, but a damaged file may hold one.
TEST_F(RowLists, ShowNoNumberWhereThereIsNone)
{
    execute("CREATE TABLE REALS (D DOUBLE, T DATETIME)");
    execute("INSERT INTO REALS VALUES (1234.5, 1234.5)");
    db.reset();
    auto bytes = files.content(kPath);
    std::array<std::uint8_t, 8> number, none;
    putDouble(number, 0, 1234.5);
    putDouble(none, 0, std::numeric_limits<double>::quiet_NaN());
    int found = 0;
    for (auto at = bytes.begin();; ++found) {
        at = std::search(at, bytes.end(), number.begin(), number.end());
        if (at == bytes.end())
            break;
        std::copy(none.begin(), none.end(), at);
    }
    ASSERT_EQ(found, 2);
    files.setContent(kPath, bytes);
    reopen();
    expectSameRows("SELECT * FROM REALS");
    EXPECT_EQ(rows("SELECT * FROM REALS;"), "-|-");
}

TEST_F(RowLists, ShowTheTableAsItWasBeforeAChange)
{
    const auto before = db->rows("SELECT * FROM SPSTUD;");
    auto reader = db->query("SELECT * FROM SPSTUD;");
    ASSERT_TRUE(reader.next());
    execute("DELETE FROM SPSTUD");
    for (std::size_t row = 0; row < before.size(); ++row) {
        for (std::size_t i = 0; i < before[row].size(); ++i)
            EXPECT_EQ(reader.value(static_cast<int>(i)), before[row][i]);
        EXPECT_EQ(reader.next(), row + 1 < before.size());
    }
    EXPECT_TRUE(db->rows("SELECT * FROM SPSTUD;").empty());
}

} // namespace

} // namespace jet::test
