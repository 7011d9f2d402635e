// What a new row gets where nothing is said, and what a row may not hold.
#include "tests/jet/queryfixture.h"

#include <utility>

namespace jet::test {

namespace {

class Defaults : public testing::Test
{
protected:
    // A table with a counter and one column, whose default value is stored as given.
    void makeTable(FieldType type, const std::string& stored)
    {
        db = Database::create(files, kPath, {});
        TableDef table;
        table.name = "T";
        table.fields = {{.name = "ID", .attributes = attribute::kAutoIncrement},
                        {.name = "V",
                         .type = type,
                         .size = type == FieldType::Text ? 50 : 0,
                         .defaultValue = stored},
                        {.name = "N"}};
        db->createTable(table);
        db.reset();
        db = Database::open(files, kPath, OpenMode::Exclusive);
    }
    std::string value() { return db->rows("SELECT V FROM T ORDER BY ID DESC")[0][0].toText(); }
    void discard()
    {
        db.reset();
        files.remove(kPath);
    }

    static constexpr const char* kPath = "t.mdb";
    MemoryFiles files;
    std::unique_ptr<Database> db;
};

TEST_F(Defaults, AreWhatTheStoredTextSays)
{
    using enum FieldType;
    struct Case
    {
        FieldType type;
        const char* stored;
        const char* value;
    };
    const Case cases[] = {
        {Long, "5", "5"},
        {Long, "=5+1", "6"},
        {Long, " = -7", "-7"},
        {Double, "1.5", "1.5"},
        {Currency, "\"12,5\"", "12.5"},
        {Boolean, "True", "-1"},
        {Boolean, "Yes", "-1"},
        {Boolean, "=No", "0"},
        {Boolean, "-1", "-1"},
        {Boolean, "Да", "-1"},
        {Text, "\"нет\"", "нет"},
        {Text, "=\"а \"\"б\"\"\"", "а \"б\""},
        {Text, "'кавычки'", "кавычки"},
        {Text, "\"\"", ""},
        {Text, "слово", "слово"},
        {Text, "два слова", "два слова"},
        {Text, "(", "("},
        {Text, "5", "5"},
        {Text, "=UCase(\"а\") & 1", "А1"},
        {Memo, "\"длинное\"", "длинное"},
        {Date, "#9/1/2022#", "01.09.2022"},
        {Date, "\"01.09.2022\"", "01.09.2022"},
        {Date, "DateSerial(2022,9,1)", "01.09.2022"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.stored);
        makeTable(c.type, c.stored);
        EXPECT_EQ(db->execute("INSERT INTO T (N) VALUES (1)"), 1);
        EXPECT_EQ(value(), c.value);
        const std::pair<std::string, Value> row[] = {{"N", 2}};
        db->insert("T", row);
        EXPECT_EQ(value(), c.value);
        EXPECT_EQ(db->execute("INSERT INTO T (N) SELECT N + 10 FROM T ORDER BY N DESC"), 2);
        EXPECT_EQ(db->rows("SELECT V FROM T WHERE N = 11")[0][0].toText(), c.value);
        EXPECT_EQ(db->rows("SELECT N FROM T WHERE ID = 3")[0][0], Value(12)) << "in query order";
        discard();
    }
}

TEST_F(Defaults, GiveWayToWhatIsSaid)
{
    makeTable(FieldType::Long, "5");
    db->execute("INSERT INTO T (N, v) VALUES (1, 7)");
    EXPECT_EQ(value(), "7");
    db->execute("INSERT INTO T (N, V) VALUES (1, NULL)");
    EXPECT_TRUE(db->rows("SELECT V FROM T ORDER BY ID DESC")[0][0].isNull());
    const std::pair<std::string, Value> row[] = {{"V", Value()}};
    db->insert("T", row);
    EXPECT_TRUE(db->rows("SELECT V FROM T ORDER BY ID DESC")[0][0].isNull());
    db->execute("UPDATE T SET N = 2");
    EXPECT_EQ(db->count("SELECT V FROM T WHERE V = 5"), 0) << "an update gives none";
}

TEST_F(Defaults, MayBeTheTimeOfDay)
{
    makeTable(FieldType::Date, "=Now()");
    db->execute("INSERT INTO T (N) VALUES (1)");
    EXPECT_EQ(db->count("SELECT V FROM T WHERE V <= Now() AND DateDiff(\"s\", V, Now()) < 60"), 1);
    discard();
    makeTable(FieldType::Date, "Date()");
    const std::pair<std::string, Value> row[] = {{"N", 2}};
    db->insert("T", row);
    EXPECT_EQ(db->count("SELECT V FROM T WHERE DateDiff(\"d\", V, Date()) <= 1 AND V = Int(V)"), 1);
}

TEST_F(Defaults, ThatCannotBeAreRefusedOnlyWhenNeeded)
{
    for (const char* stored : {"Неизвестно(1)", "\"слово\""}) {
        makeTable(FieldType::Long, stored);
        EXPECT_THROW(db->execute("INSERT INTO T (N) VALUES (1)"), Error) << stored;
        const std::pair<std::string, Value> row[] = {{"N", 2}};
        EXPECT_THROW(db->insert("T", row), Error) << stored;
        EXPECT_EQ(db->rowCount("T"), 0);
        EXPECT_EQ(db->execute("INSERT INTO T (N, V) VALUES (1, 2)"), 1);
        discard();
    }
}

} // namespace

} // namespace jet::test
