#include "jet/error.h"
#include "journalconnection.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>

namespace jet::sql {

namespace {

struct Pair
{
    const char* jet;
    const char* expected;
};

std::string names(const Translation& translation)
{
    std::string result;
    for (const ResultColumn& column : translation.columns)
        result += (result.empty() ? "" : ", ") + column.name;
    return result;
}

// Conditions on bare columns must reach the virtual tables as they are, or every query reads
// whole tables.
TEST(Translation, ConditionsOnColumnsStayPlain)
{
    const Pair cases[] = {
        {"IDG=5", "\"SPSTUD\".\"IDG\" = 5"},
        {"(((SPSTUD.IDG)=(5)))", "\"SPSTUD\".\"IDG\" = 5"},
        {"FAM=\"Ой\"", "\"SPSTUD\".\"FAM\" = 'Ой'"},
        {"'a' < fam", "'a' < \"SPSTUD\".\"FAM\""},
        {"POL", "\"SPSTUD\".\"POL\""},
        {"POL=True", "\"SPSTUD\".\"POL\" = -1"},
        {"NOT POL=no", "NOT \"SPSTUD\".\"POL\" = 0"},
        {"D_R>=#09/01/2005#", "\"SPSTUD\".\"D_R\" >= 38596.0"},
        {"D_R Between #9/1/05# And #9/2/05 12:00#",
         "\"SPSTUD\".\"D_R\" BETWEEN 38596.0 AND 38597.5"},
        {"D_R not between #9/1/05# and #9/2/05#",
         "\"SPSTUD\".\"D_R\" NOT BETWEEN 38596.0 AND 38597.0"},
        {"ID In (1,2,3)", "\"SPSTUD\".\"ID\" IN (1, 2, 3)"},
        {"FAM not in ('a')", "\"SPSTUD\".\"FAM\" NOT IN ('a')"},
        {"IDGG is null", "\"SPSTUD\".\"IDGG\" IS NULL"},
        {"isnull(IDGG)", "\"SPSTUD\".\"IDGG\" IS NULL"},
        {"not isnull([SPSTUD]![IDGG])", "NOT \"SPSTUD\".\"IDGG\" IS NULL"},
        {"IDG=ID", "\"SPSTUD\".\"IDG\" = \"SPSTUD\".\"ID\""},
    };
    JournalConnection connection;
    for (const Pair& each : cases)
        EXPECT_EQ(connection.translate(std::string("DELETE FROM SPSTUD WHERE ") + each.jet).sqlite,
                  std::string("DELETE FROM \"SPSTUD\" WHERE ") + each.expected);
}

TEST(Translation, ResultColumnsCarryDaoNames)
{
    const Pair cases[] = {
        {"SELECT NAIM FROM SPOTD", "NAIM"},
        {"SELECT [SPOTD]![Naim] FROM SPOTD", "NAIM"},
        {"SELECT SPOTD.NAIM, SPGRUP.NAIM FROM SPOTD, SPGRUP", "SPOTD.NAIM, SPGRUP.NAIM"},
        {"SELECT A.NAIM, B.NAIM, A.KOD FROM SPOTD AS A, SPOTD AS B", "A.NAIM, B.NAIM, KOD"},
        {"SELECT NAIM AS N, NAIM FROM SPOTD", "N, NAIM"},
        {"SELECT KOD AS NAIM, NAIM FROM SPOTD", "NAIM, SPOTD.NAIM"},
        {"SELECT NAIM, NAIM FROM SPOTD", "NAIM, Expr1000"},
        {"SELECT 1, NAIM, 2+2, Count(*) AS K FROM SPOTD GROUP BY NAIM",
         "Expr1000, NAIM, Expr1001, K"},
        {"SELECT 1 AS Expr1000, 2", "Expr1000, Expr1001"},
        {"SELECT * FROM (SELECT A.NAIM, B.NAIM FROM SPOTD A, SPGRUP B) X", "A.NAIM, B.NAIM"},
        {"SELECT X.[A.NAIM] FROM (SELECT A.NAIM, B.NAIM FROM SPOTD A, SPGRUP B) X", "A.NAIM"},
        {"SELECT X.*, 1 AS Q FROM (SELECT MN FROM MONTH) AS X", "MN, Q"},
        {"SELECT MN FROM MONTH UNION SELECT IDO FROM SPOTD", "MN"},
        {"SELECT *, MONTH.* FROM MONTH", "MN, NAIM, Expr1000, Expr1001"},
        {"SELECT KOD AS [Count-ID], NAIM AS [Имя группы] FROM SPOTD", "Count-ID, Имя группы"},
    };
    JournalConnection connection;
    for (const Pair& each : cases) {
        const Translation translation = connection.translate(each.jet);
        EXPECT_EQ(names(translation), each.expected) << each.jet;
        EXPECT_EQ(connection.prepareError(translation.sqlite), "") << each.jet;
    }
    const ResultColumn column =
        connection.translate("SELECT P.FAMIO FROM SPPREP AS P").columns.front();
    EXPECT_EQ(column.source + '/' + column.field, "P/FAMIO");
}

TEST(Translation, TypesAreDeduced)
{
    const struct
    {
        const char* expression;
        std::optional<FieldType> type;
    } cases[] = {
        {"ID", FieldType::Long},
        {"DAT", FieldType::Date},
        {"Max(DAT)", FieldType::Date},
        {"First(DAT)", FieldType::Date},
        {"DAT+1", FieldType::Date},
        {"1+DAT", FieldType::Date},
        {"DAT-1", FieldType::Date},
        {"DAT-DAT", FieldType::Double},
        {"iif(ID=1,DAT,Null)", FieldType::Date},
        {"iif(isnull(UR),0,UR)", FieldType::Long},
        {"iif(UR=1,'a','b')", FieldType::Text},
        {"iif(UR=1,'a',5)", std::nullopt},
        {"Null", std::nullopt},
        {"Sum(uv)", FieldType::Long},
        {"Sum(uv/2)", FieldType::Double},
        {"Avg(uv)", FieldType::Double},
        {"Count(*)", FieldType::Long},
        {"Min(uv)", FieldType::Byte},
        {"StDev(uv)", FieldType::Double},
        {"uv=1", FieldType::Boolean},
        {"uv=1 and nuv=2", FieldType::Boolean},
        {"isnull(uv)", FieldType::Boolean},
        {"uv like '1*'", FieldType::Boolean},
        {"True", FieldType::Boolean},
        {"uv*2", FieldType::Long},
        {"uv/2", FieldType::Double},
        {"uv\\2", FieldType::Long},
        {"uv mod 2", FieldType::Long},
        {"2^3", FieldType::Double},
        {"1.5", FieldType::Double},
        {"uv & ''", FieldType::Text},
        {"'a'+'b'", FieldType::Text},
        {"Val('1')", FieldType::Double},
        {"Year(DAT)", FieldType::Integer},
        {"Trim('a')", FieldType::Text},
        {"cdate('1')", FieldType::Date},
        {"abs(uv)", FieldType::Byte},
        {"int(DAT)", FieldType::Date},
        {"Nz(DAT, #1/1/2022#)", FieldType::Date},
        {"(SELECT Max(DAT) FROM USP)", FieldType::Date},
        {"Switch(uv=1,DAT,uv=2,DAT)", FieldType::Date},
    };
    JournalConnection connection;
    for (const auto& each : cases) {
        const std::string sql =
            std::string("SELECT ") + each.expression + " FROM POS GROUP BY ID, DAT, UR, uv, nuv";
        const Translation translation = connection.translate(sql);
        EXPECT_EQ(translation.columns.at(0).type, each.type) << each.expression;
        EXPECT_EQ(connection.prepareError(translation.sqlite), "") << translation.sqlite;
    }
    const auto unionType = [&](const char* sql) {
        return connection.translate(sql).columns[0].type;
    };
    EXPECT_EQ(unionType("SELECT Null FROM POS UNION SELECT DAT FROM POS"), FieldType::Date);
    EXPECT_EQ(unionType("SELECT uv FROM POS UNION ALL SELECT ID FROM POS"), FieldType::Long);
}

TEST(Translation, ErrorsSayWhatIsWrong)
{
    const struct
    {
        const char* sql;
        Fault fault;
        const char* said; // a part of the message
    } cases[] = {
        {"SELECT * FROM NOTHERE", Fault::UnknownName, "«NOTHERE»"},
        {"SELECT NOTHERE FROM POS", Fault::UnknownName, "«NOTHERE»"},
        {"SELECT POS.NOTHERE FROM POS", Fault::UnknownName, "«POS.NOTHERE»"},
        {"SELECT USP.ID FROM POS", Fault::UnknownName, "«USP.ID»"},
        {"SELECT X.* FROM POS", Fault::UnknownName, "«X»"},
        {"SELECT POS.ID FROM POS AS P", Fault::UnknownName, "«POS.ID»"},
        {"SELECT ID FROM POS, SPSTUD", Fault::UnknownName, "POS, SPSTUD"},
        {"SELECT nofunc(ID) FROM POS", Fault::UnknownName, "«nofunc»"},
        {"SELECT ID FROM POS WHERE uv = абв", Fault::UnknownName, "«абв»"},
        {"INSERT INTO POS (ID, NOTHERE) VALUES (1, 2)", Fault::UnknownName, "«NOTHERE»"},
        {"INSERT INTO POS (ID) VALUES (Иванов)", Fault::UnknownName, "«Иванов»"},
        {"INSERT INTO MONTH SELECT IDO FROM SPOTD", Fault::UnknownName, "«IDO»"},
        {"UPDATE POS SET NOTHERE = 1", Fault::UnknownName, "«NOTHERE»"},
        {"DELETE USP.* FROM POS", Fault::UnknownName, "«USP»"},
        {"SELECT ID, Sum(uv) FROM POS", Fault::Syntax, "«POS.ID»"},
        {"SELECT ID, uv FROM POS GROUP BY ID", Fault::Syntax, "«POS.uv»"},
        {"SELECT * FROM POS GROUP BY ID", Fault::Syntax, "«POS.uv»"},
        {"SELECT ID FROM POS GROUP BY ID HAVING uv=1", Fault::Syntax, "«POS.uv»"},
        {"SELECT ID FROM POS GROUP BY ID ORDER BY uv", Fault::Syntax, "«POS.uv»"},
        {"SELECT ID FROM POS WHERE Sum(uv)>1", Fault::Syntax, "«Sum»"},
        {"SELECT Sum(Max(uv)) FROM POS", Fault::Syntax, "«Max»"},
        {"SELECT Trim() FROM POS", Fault::Syntax, "«Trim»"},
        {"SELECT iif(1,2) FROM POS", Fault::Syntax, "«iif»"},
        {"SELECT Count(uv,nuv) FROM POS", Fault::Syntax, "«Count»"},
        {"SELECT ID+ID AS A, B+1 AS B FROM POS", Fault::Syntax, "«B»"},
        {"SELECT 1 AS A, 2 AS a", Fault::Syntax, "«a»"},
        {"SELECT * FROM POS, POS", Fault::Syntax, "«POS»"},
        {"SELECT *", Fault::Syntax, "FROM"},
        {"SELECT ID FROM POS ORDER BY 2", Fault::Syntax, "ORDER BY"},
        {"SELECT ID FROM POS ORDER BY 0", Fault::Syntax, "ORDER BY"},
        {"SELECT ID FROM POS UNION SELECT ID, uv FROM POS", Fault::Syntax, "UNION"},
        {"SELECT ID FROM POS WHERE ID IN (SELECT ID, uv FROM POS)", Fault::Syntax, "одно поле"},
        {"INSERT INTO POS (ID, uv) VALUES (1)", Fault::Syntax, "число значений"},
        {"INSERT INTO POS (ID, id) VALUES (1, 2)", Fault::Syntax, "дважды"},
        {"DELETE * FROM POS, USP", Fault::Syntax, "удалять"},
        {"UPDATE POS, USP SET POS.uv = 1, USP.OC = 2", Fault::Unsupported, "двух таблиц"},
        {"SELECT ID FORM POS", Fault::Syntax,
         "позиция 11: ожидалось конец запроса, а стоит «FORM»"},
        {"SELECT \"Я\", FROM POS", Fault::Syntax,
         "позиция 13: ожидалось выражение, а стоит «FROM»"},
        {"SELECT ID FROM POS WHERE (ID=1", Fault::Syntax, "запрос кончился"},
        {"SELECT ID FROM POS WHERE ID=1)", Fault::Syntax, "«)»"},
        {"SELECT ID FROM POS; SELECT 1", Fault::Syntax, "«SELECT»"},
        {"SELECT 'abc", Fault::Syntax, "позиция 8: строка не закрыта кавычкой"},
        {"SELECT [abc", Fault::Syntax, "не закрыто скобкой"},
        {"SELECT #13/13/2022#", Fault::Syntax, "неверная дата #13/13/2022#"},
        {"SELECT #1/1/2022", Fault::Syntax, "дата не закрыта"},
        {"SELECT 1 @ 2", Fault::Syntax, "«@»"},
        {"SELECT ID FROM POS WHERE D IN ()", Fault::Syntax, "«)»"},
        {"", Fault::Syntax, "запрос кончился"},
        {"EXEC x", Fault::Syntax, "«EXEC»"},
    };
    JournalConnection connection;
    for (const auto& each : cases) {
        try {
            connection.translate(each.sql);
            ADD_FAILURE() << each.sql;
        } catch (const Error& error) {
            EXPECT_EQ(error.fault(), each.fault) << each.sql << ": " << error.what();
            EXPECT_NE(std::string(error.what()).find(each.said), std::string::npos)
                << each.sql << ": " << error.what();
        }
    }
}

TEST(Translation, TablesReadAndChangedAreTold)
{
    JournalConnection connection;
    const Translation t = connection.translate(
        "INSERT INTO pos (ID) SELECT ID FROM spstud WHERE IDG IN (SELECT IDG FROM spgrup)");
    EXPECT_EQ(t.kind, StatementKind::Insert);
    EXPECT_EQ(t.table, "POS");
    EXPECT_EQ(t.tables, (std::vector<std::string>{"POS", "SPSTUD", "SPGRUP"}));
}

} // namespace

} // namespace jet::sql
