#include "jet/error.h"
#include "journalconnection.h"

#include <gtest/gtest.h>

#include <string>

namespace jet::sql {

namespace {

Translation translated(const std::string& sql)
{
    JournalSchema schema;
    return translate(parse(sql), schema);
}

TEST(Definitions, TypeWordsGiveTheirTypes)
{
    const struct
    {
        const char* words;
        FieldType type;
        int size;
        int attributes;
    } cases[] = {
        {"BIT LOGICAL YESNO BOOLEAN", FieldType::Boolean, 1, 1},
        {"BYTE", FieldType::Byte, 1, 1},
        {"SMALLINT SHORT INTEGER2", FieldType::Integer, 2, 1},
        {"INTEGER LONG INT INTEGER4", FieldType::Long, 4, 1},
        {"COUNTER AUTOINCREMENT", FieldType::Long, 4, 17},
        {"CURRENCY MONEY", FieldType::Currency, 8, 1},
        {"SINGLE REAL FLOAT4", FieldType::Single, 4, 1},
        {"DOUBLE FLOAT NUMBER FLOAT8", FieldType::Double, 8, 1},
        {"DATETIME DATE TIME", FieldType::Date, 8, 1},
        {"STRING TEXT VARCHAR", FieldType::Text, 255, 2},
        {"STRING(15) varchar(15) Text(15)", FieldType::Text, 15, 2},
        {"MEMO LONGTEXT NOTE", FieldType::Memo, 0, 2},
        {"BINARY(20)", FieldType::Binary, 20, 2},
        {"LONGBINARY OLEOBJECT IMAGE", FieldType::LongBinary, 0, 2},
        {"GUID", FieldType::Guid, 16, 1},
    };
    for (const auto& each : cases) {
        std::string words = each.words;
        while (!words.empty()) {
            const std::string word = words.substr(0, words.find(' '));
            words.erase(0, word.size() + 1);
            const Field field = translated("ALTER TABLE POS ADD COLUMN F " + word).field;
            EXPECT_EQ(field.type, each.type) << word;
            EXPECT_EQ(field.size, each.size) << word;
            EXPECT_EQ(field.attributes, each.attributes) << word;
        }
    }
}

TEST(Definitions, KeywordsMayNameColumns)
{
    const TableDef table = translated("CREATE TABLE [New table] (TIME SMALLINT, MEMO STRING(50), "
                                      "DAY INTEGER, Date DATETIME, [Order] INTEGER NOT NULL, "
                                      "PRIMARY INTEGER, UNIQUE BIT, TEXT TEXT(3), "
                                      "CONSTRAINT INTEGER)")
                               .definition;
    EXPECT_EQ(table.name, "New table");
    std::string names;
    for (const Field& field : table.fields)
        names += field.name + ' ' + std::to_string(field.ordinal) + ';';
    EXPECT_EQ(names, "TIME 0;MEMO 1;DAY 2;Date 3;Order 4;PRIMARY 5;UNIQUE 6;TEXT 7;CONSTRAINT 8;");
    EXPECT_TRUE(table.field("Order")->required);
    EXPECT_FALSE(table.field("DAY")->required);
    EXPECT_TRUE(table.indexes.empty());
}

TEST(Definitions, ConstraintsBecomeIndexes)
{
    const TableDef table =
        translated("CREATE TABLE T (ID COUNTER PRIMARY KEY, A INTEGER CONSTRAINT OnA UNIQUE, "
                   "B TEXT(5) UNIQUE DEFAULT \"нет\", C INTEGER DEFAULT -1 NOT NULL, "
                   "CONSTRAINT Pair UNIQUE (A, B))")
            .definition;
    std::string indexes;
    for (const Index& index : table.indexes)
        indexes += index.name + ' ' + index.fieldList() + (index.primary ? " primary" : "")
                   + (index.unique ? " unique" : "") + (index.required ? " required;" : ";");
    EXPECT_EQ(
        indexes,
        "PrimaryKey +ID primary unique required;OnA +A unique;B +B unique;Pair +A;+B unique;");
    EXPECT_EQ(table.field("B")->defaultValue, "\"нет\"");
    EXPECT_EQ(table.field("C")->defaultValue, "-1");
    EXPECT_TRUE(table.field("C")->required);
}

TEST(Definitions, IndexClausesSetTheirFlags)
{
    const struct
    {
        const char* sql;
        const char* fields;
        bool primary, unique, required, ignoreNulls;
    } cases[] = {
        {"CREATE INDEX I ON pos (DAT DESC, UR ASC, ID)", "-DAT;+UR;+ID", false, false, false,
         false},
        {"CREATE UNIQUE INDEX I ON POS (ID)", "+ID", false, true, false, false},
        {"CREATE INDEX I ON POS (ID) WITH PRIMARY;", "+ID", true, true, true, false},
        {"CREATE INDEX I ON POS (ID) WITH DISALLOW NULL", "+ID", false, false, true, false},
        {"CREATE UNIQUE INDEX I ON POS (ID) WITH IGNORE NULL", "+ID", false, true, false, true},
        {"ALTER TABLE POS ADD CONSTRAINT I PRIMARY KEY (ID)", "+ID", true, true, true, false},
    };
    for (const auto& each : cases) {
        const Translation t = translated(each.sql);
        EXPECT_EQ(t.kind, StatementKind::CreateIndex) << each.sql;
        EXPECT_EQ(t.table, "POS") << each.sql;
        EXPECT_EQ(t.index.name, "I") << each.sql;
        EXPECT_EQ(t.index.fieldList(), each.fields) << each.sql;
        EXPECT_EQ(t.index.primary, each.primary) << each.sql;
        EXPECT_EQ(t.index.unique, each.unique) << each.sql;
        EXPECT_EQ(t.index.required, each.required) << each.sql;
        EXPECT_EQ(t.index.ignoreNulls, each.ignoreNulls) << each.sql;
    }
}

TEST(Definitions, ChangesNameTheirTableAndColumn)
{
    const struct
    {
        const char* sql;
        StatementKind kind;
        const char* table;
        const char* name;
    } cases[] = {
        {"ALTER TABLE spotd DROP COLUMN KOD2", StatementKind::DropColumn, "SPOTD", "KOD2"},
        {"ALTER TABLE SPOTD DROP [KOD 2];", StatementKind::DropColumn, "SPOTD", "KOD 2"},
        {"ALTER TABLE SPOTD DROP COLUMN COLUMN", StatementKind::DropColumn, "SPOTD", "COLUMN"},
        {"ALTER TABLE SPOTD DROP CONSTRAINT PrimaryKey", StatementKind::DropIndex, "SPOTD",
         "PrimaryKey"},
        {"DROP INDEX PrimaryKey ON Month", StatementKind::DropIndex, "MONTH", "PrimaryKey"},
        {"DROP TABLE month", StatementKind::DropTable, "MONTH", ""},
    };
    for (const auto& each : cases) {
        const Translation t = translated(each.sql);
        EXPECT_EQ(t.kind, each.kind) << each.sql;
        EXPECT_EQ(t.table, each.table) << each.sql;
        EXPECT_EQ(t.name, each.name) << each.sql;
        EXPECT_EQ(t.sqlite, "") << each.sql;
    }
}

TEST(Definitions, WrongOnesAreRefused)
{
    const struct
    {
        const char* sql;
        Fault fault;
    } cases[] = {
        {"CREATE TABLE T (A STRING(0))", Fault::Syntax},
        {"CREATE TABLE T (A STRING(256))", Fault::Syntax},
        {"CREATE TABLE T (A STRING(-1))", Fault::Syntax},
        {"CREATE TABLE T (A STRING(1.5))", Fault::Syntax},
        {"CREATE TABLE T (A WRONG)", Fault::Syntax},
        {"CREATE TABLE T (A)", Fault::Syntax},
        {"CREATE TABLE T ()", Fault::Syntax},
        {"CREATE TABLE T (A INTEGER", Fault::Syntax},
        {"CREATE TABLE T (A INTEGER,)", Fault::Syntax},
        {"CREATE UNIQUE TABLE T (A INTEGER)", Fault::Syntax},
        {"CREATE INDEX I ON POS ()", Fault::Syntax},
        {"CREATE INDEX I ON POS (ID) WITH", Fault::Syntax},
        {"CREATE INDEX I ON NOTHERE (ID)", Fault::UnknownName},
        {"ALTER TABLE NOTHERE ADD COLUMN A INTEGER", Fault::UnknownName},
        {"DROP TABLE NOTHERE", Fault::UnknownName},
        {"DROP POS", Fault::Syntax},
        {"ALTER TABLE POS ALTER COLUMN ID DOUBLE", Fault::Unsupported},
        {"CREATE TABLE T (A INTEGER REFERENCES POS (ID))", Fault::Unsupported},
        {"CREATE TABLE T (A INTEGER, FOREIGN KEY (A) REFERENCES POS (ID))", Fault::Unsupported},
    };
    for (const auto& each : cases) {
        try {
            translated(each.sql);
            ADD_FAILURE() << each.sql;
        } catch (const Error& error) {
            EXPECT_EQ(error.fault(), each.fault) << each.sql << ": " << error.what();
        }
    }
}

} // namespace

} // namespace jet::sql
