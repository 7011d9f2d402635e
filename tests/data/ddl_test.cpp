#include "data/ddl.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

const data::TableDefinition& table(std::span<const data::TableDefinition> tables,
                                   std::string_view name)
{
    return *std::ranges::find(tables, name, &data::TableDefinition::name);
}

} // namespace

TEST(Ddl, WritesTheTypeWordOfEveryType)
{
    EXPECT_EQ(data::ddl::createTable(table(data::verifiedTables(), "EXAM")),
              "CREATE TABLE EXAM (IDE COUNTER, ID INTEGER, IDD INTEGER, OCEN INTEGER, "
              "TIME SMALLINT)");
    EXPECT_EQ(data::ddl::createTable(table(data::verifiedTables(), "USP")),
              "CREATE TABLE USP (ID INTEGER, IDD INTEGER, OC BYTE, DAT DATETIME, it BIT, TEK BIT)");
    EXPECT_EQ(data::ddl::createTable(table(data::verifiedTables(), "MONTH")),
              "CREATE TABLE MONTH (MN BYTE, NAIM STRING(15))");
    EXPECT_NE(data::ddl::createTable(table(data::verifiedTables(), "SPSTUD")).find("KURS MEMO,"),
              std::string::npos);
}

TEST(Ddl, WritesIndexesWithTheirOrderAndKey)
{
    const data::TableDefinition lessons = table(data::verifiedTables(), "UROKI");
    const struct
    {
        data::IndexDefinition index;
        const char* sql;
    } cases[] = {
        {{"PrimaryKey", "+ID"}, "CREATE INDEX PrimaryKey ON UROKI (ID) WITH PRIMARY"},
        {{"IDG", "+IDG"}, "CREATE INDEX IDG ON UROKI (IDG)"},
        {{"D", "-DAT"}, "CREATE INDEX D ON UROKI (DAT DESC)"},
        {{"Both", "+IDG;-DAT;+UR"}, "CREATE INDEX Both ON UROKI (IDG, DAT DESC, UR)"},
    };
    for (const auto& one : cases)
        EXPECT_EQ(data::ddl::createIndex(lessons, one.index), one.sql);
}

TEST(Ddl, TheKeyOfHolidaysIsAnOrdinaryIndex)
{
    const data::TableDefinition holidays = table(data::supplementaryTables(), "HOLI");
    EXPECT_EQ(data::ddl::createIndex(holidays, holidays.indexes.at(0)),
              "CREATE INDEX PrimaryKey ON HOLI (IDH)");
}
