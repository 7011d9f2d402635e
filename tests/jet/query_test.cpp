// What SELECT statements give.
#include "tests/jet/queryfixture.h"

namespace jet::test {

namespace {

using Query = QueryTest;

struct Case
{
    const char* sql;
    const char* expected;
};

TEST_F(Query, ComparesTextWithoutCaseButNotYoWithYe)
{
    const Case cases[] = {
        {R"(SELECT ID FROM SPSTUD WHERE FAM = "СЕМЕНОВ")", "3"},
        {R"(SELECT ID FROM SPSTUD WHERE FAM = "сЕмёнов")", "1"},
        {R"(SELECT ID FROM SPSTUD WHERE FAM LIKE "сем?нов" ORDER BY ID)", "1; 3"},
        {R"(SELECT ID FROM SPSTUD WHERE FAM IN ("ежов", "ЁЛКИНА") ORDER BY ID)", "4; 5"},
        {R"(SELECT ID FROM SPSTUD WHERE FAM = "Ежов ")", "5"}, // trailing spaces do not count
        {R"(SELECT ID FROM SPSTUD WHERE FAM > "е" AND FAM < "и" ORDER BY FAM)", "5; 4"},
        {R"(SELECT FAM FROM SPSTUD ORDER BY FAM)", "Ежов; Ёлкина; Иванова; семенов; Семёнов"},
        {R"(SELECT DISTINCT Left(FAM, 3) FROM SPSTUD WHERE FAM LIKE "сем*")", "Сем"},
        {R"(SELECT ID FROM SPSTUD WHERE FAM & IM = "ежовлев")", "5"},
        {R"(SELECT ID FROM SPSTUD WHERE FAM = "Нет")", ""},
        {R"(SELECT IDG FROM SPGRUP WHERE NAIM > "007" AND NAIM < "7.50")", ""},
    };
    for (const Case& c : cases)
        EXPECT_EQ(rows(c.sql), c.expected) << c.sql;
}

TEST_F(Query, NumbersCompareWithTextsThatAreNumbers)
{
    EXPECT_EQ(rows("SELECT FAM FROM SPSTUD WHERE NOM = \"101\""), "Семёнов");
    EXPECT_EQ(rows("SELECT ID FROM POS WHERE SUM = \"2,25\""), "1");
    EXPECT_EQ(rows("SELECT FAM FROM SPSTUD WHERE NOM IN (\"101\", \"102\") ORDER BY NOM"),
              "Семёнов; Иванова");
    EXPECT_EQ(rows("SELECT FAM FROM SPSTUD WHERE NOM BETWEEN \"104\" AND \"105\" ORDER BY NOM"),
              "Ёлкина; Ежов");
    EXPECT_EQ(rows("SELECT FAM FROM SPSTUD WHERE \"103\" = NOM"), "семенов");
    EXPECT_EQ(rows("SELECT FAM FROM SPSTUD WHERE NOM = Left(\"1029\", 3)"), "Иванова");
    for (const char* condition :
         {"NOM = \"сто\"", "NOM = \"\"", "\"сто\" < NOM", "NOM IN (101, \"сто\")",
          "NOM BETWEEN 101 AND \"сто\"", "ID = \"1 а\"", "NOM + 1 = \"сто\"", "POL = \"да\""}) {
        std::string message;
        EXPECT_EQ(faultOf(std::string("SELECT FAM FROM SPSTUD WHERE ") + condition, &message),
                  Fault::Type)
            << condition;
        EXPECT_NE(message.find("несоответствие типов"), std::string::npos) << message;
    }
}

TEST_F(Query, NullComparesWithNothing)
{
    const Case cases[] = {
        {R"(SELECT ID FROM SPSTUD WHERE prikazOtch = "" OR prikazOtch IS NULL ORDER BY ID)",
         "1; 2; 3; 5"},
        {"SELECT ID FROM SPSTUD WHERE IDGG <> 1", "3"},
        {"SELECT ID FROM SPSTUD WHERE IDGG = NULL", ""},
        {"SELECT ID FROM SPSTUD WHERE NOT (IDGG = 1)", "3"},
        {"SELECT ID FROM SPSTUD WHERE IDGG IS NOT NULL ORDER BY ID", "1; 3"},
        {"SELECT ID FROM SPSTUD WHERE isnull(IDGG) AND IDG = 2 ORDER BY ID", "4; 5"},
        {R"(SELECT ID FROM SPSTUD WHERE val("0" & IDGG) = 0 ORDER BY ID)", "2; 4; 5"},
        {"SELECT ID FROM SPSTUD WHERE iif(isnull(IDGG), 0, IDGG) = 2", "3"},
        {"SELECT Sum(SUM), Count(SUM), Count(*), Avg(UV) FROM POS", "3.75|2|4|0.666666666666667"},
        {"SELECT Sum(UV) FROM POS WHERE ID = 99", "-"},
        {"SELECT UV + NUV FROM POS WHERE ID = 4", "-"},
        {R"(SELECT FAM & " " & IDGG FROM SPSTUD WHERE ID = 2)", "Иванова "},
        {R"(SELECT FAM + IDGG FROM SPSTUD WHERE ID = 2)", "-"},
    };
    for (const Case& c : cases)
        EXPECT_EQ(rows(c.sql), c.expected) << c.sql;
}

TEST_F(Query, DatesAndBooleans)
{
    const Case cases[] = {
        {"SELECT ID FROM POS WHERE DAT = #09/01/2020# ORDER BY ID", "1; 2"},
        {"SELECT ID, UR FROM POS WHERE DAT >= #09/02/2020# AND DAT <= #10/01/20# ORDER BY DAT",
         "1|2; 4|1"},
        {"SELECT DAT FROM POS WHERE ID = 4", "01.10.2020"},
        {"SELECT Month(DAT), Sum(NUV) FROM POS GROUP BY Month(DAT) ORDER BY Month(DAT)",
         "9|4; 10|4"},
        {"SELECT Max(DAT) - Min(DAT) FROM POS", "30"},
        {"SELECT ID FROM SPSTUD WHERE D_R = #12/31/2002#", "2"},
        {"SELECT ID FROM SPSTUD WHERE D_R IS NULL AND POL = TRUE", "3"},
        {"SELECT ID FROM SPSTUD WHERE POL ORDER BY ID", "1; 3"},
        {"SELECT ID FROM SPSTUD WHERE POL = -1 ORDER BY ID", "1; 3"},
        {"SELECT ID FROM SPSTUD WHERE POL = 1", ""}, // True is -1
        {"SELECT Sum(POL) FROM SPSTUD", "-2"},
        {"SELECT ID FROM SPSTUD WHERE POL = False ORDER BY ID", "2; 4; 5"},
        {R"(SELECT "" & DAT FROM POS WHERE ID = 4)", "01.10.2020"},
        {R"(SELECT Format(DAT, "dd.mm.yy") FROM POS WHERE ID = 4)", "01.10.20"},
    };
    for (const Case& c : cases)
        EXPECT_EQ(rows(c.sql), c.expected) << c.sql;
}

TEST_F(Query, JoinsAndGroups)
{
    const Case cases[] = {
        {"SELECT SPSTUD.FAM, Sum(POS.NUV) FROM POS INNER JOIN SPSTUD ON POS.ID = SPSTUD.ID "
         "WHERE SPSTUD.IDG = 1 GROUP BY SPSTUD.FAM ORDER BY SPSTUD.FAM",
         "Иванова|2; Семёнов|2"},
        {"SELECT SPSTUD.ID, POS.UR FROM SPSTUD LEFT JOIN POS ON SPSTUD.ID = POS.ID "
         "WHERE SPSTUD.IDG = 2 ORDER BY SPSTUD.ID",
         "4|1; 5|-"},
        {"SELECT SPSTUD.ID FROM SPSTUD LEFT JOIN POS ON SPSTUD.ID = POS.ID WHERE POS.ID IS NULL "
         "ORDER BY SPSTUD.ID",
         "3; 5"},
        {"SELECT S.ID, G.NAIM FROM (SPSTUD AS S INNER JOIN SPGRUP AS G ON S.IDG = G.IDG) "
         "INNER JOIN POS AS P ON P.ID = S.ID WHERE P.NUV > 2",
         "4|ЭК-11"},
        {"SELECT IDG, Count(*) AS N FROM SPSTUD GROUP BY IDG HAVING Count(*) > 2", "1|3"},
        {"SELECT ID FROM SPSTUD WHERE ID IN (SELECT ID FROM POS WHERE NUV = 2) ORDER BY ID",
         "1; 2"},
        {"SELECT TOP 2 FAM FROM SPSTUD ORDER BY FAM DESC", "Семёнов; семенов"},
        {"SELECT NAIM FROM SPGRUP UNION ALL SELECT FAM FROM SPSTUD WHERE ID = 5",
         "ПО-21; ЭК-11; Ежов"},
    };
    for (const Case& c : cases)
        EXPECT_EQ(rows(c.sql), c.expected) << c.sql;
}

// Joins that may be simplified and joins that must not: the same rows either way.
TEST_F(Query, OuterJoinsKeepTheRowsThatWhereAllows)
{
    const Case cases[] = {
        {"SELECT S.ID FROM SPSTUD AS S LEFT JOIN POS AS P ON S.ID = P.ID WHERE P.UR = 1 "
         "ORDER BY S.ID",
         "1; 2; 4"},
        {"SELECT S.ID FROM SPSTUD AS S LEFT JOIN POS AS P ON S.ID = P.ID "
         "WHERE P.UR = 1 OR S.IDG = 2 ORDER BY S.ID",
         "1; 2; 4; 5"},
        {"SELECT S.ID FROM SPSTUD AS S LEFT JOIN POS AS P ON S.ID = P.ID "
         "WHERE NOT (P.UR = 1) ORDER BY S.ID",
         "1"},
        {"SELECT S.ID FROM SPSTUD AS S LEFT JOIN POS AS P ON S.ID = P.ID "
         "WHERE isnull(P.UR) ORDER BY S.ID",
         "3; 5"},
        {"SELECT S.ID FROM SPSTUD AS S LEFT JOIN POS AS P ON S.ID = P.ID "
         "WHERE iif(isnull(P.UR), 0, P.UR) = 0 ORDER BY S.ID",
         "3; 5"},
        {"SELECT S.ID FROM SPSTUD AS S LEFT JOIN POS AS P ON S.ID = P.ID "
         "WHERE P.UR IS NOT NULL AND P.NUV > 2",
         "4"},
        {"SELECT S.ID FROM POS AS P RIGHT JOIN SPSTUD AS S ON S.ID = P.ID "
         "WHERE P.UR BETWEEN 2 AND 3",
         "1"},
        {"SELECT S.ID FROM SPSTUD AS S LEFT JOIN (POS AS P INNER JOIN SPGRUP AS G ON "
         "P.UR = G.IDG) ON S.ID = P.ID WHERE G.NAIM = \"ЭК-11\"",
         "1"},
    };
    for (const Case& c : cases)
        EXPECT_EQ(rows(c.sql), c.expected) << c.sql;
}

TEST_F(Query, RecordsetGivesTypedValuesAndNames)
{
    Recordset records =
        db->query("SELECT SPSTUD.*, SPGRUP.IDG, SUM + 0 AS S FROM (SPSTUD INNER JOIN SPGRUP ON "
                  "SPSTUD.IDG = SPGRUP.IDG) INNER JOIN POS ON POS.ID = SPSTUD.ID WHERE POS.UR = 2");
    ASSERT_TRUE(records.next());
    EXPECT_EQ(records["d_r"], Value(DateTime::of(2003, 3, 5)));
    EXPECT_EQ(records["POL"], Value(true));
    EXPECT_EQ(records["IDGG"], Value(1));
    EXPECT_EQ(records.text("FAM"), "Семёнов");
    EXPECT_EQ(records["SPGRUP.IDG"], Value(1));
    EXPECT_EQ(records.columns()[0].type, FieldType::Long);
    EXPECT_TRUE(records.isNull("MEMO"));
    EXPECT_EQ(records.integer("MEMO"), 0);
    EXPECT_THROW(records.column("ФИО"), Error);
    EXPECT_FALSE(records.next());
    EXPECT_FALSE(records.next());

    EXPECT_EQ(db->rows("SELECT SUM FROM POS WHERE UR = 2")[0][0], Value(Currency{22500}));
    EXPECT_EQ(db->count("SELECT FAM FROM SPSTUD WHERE IDG = 1"), 3);
    EXPECT_EQ(db->count("SELECT FAM FROM SPSTUD WHERE IDG = 7"), 0);
}

TEST_F(Query, NamesWhatIsWrong)
{
    const struct
    {
        const char* sql;
        Fault fault;
        const char* word;
    } cases[] = {
        {"SELECT * FROM SPNOPE", Fault::UnknownName, "SPNOPE"},
        {"SELECT ФИО FROM SPSTUD", Fault::UnknownName, "ФИО"},
        {"SELECT Nope(ID) FROM SPSTUD", Fault::UnknownName, "Nope"},
        {"SELECT FAM FROM SPSTUD WHERE", Fault::Syntax, ""},
        {"SELECT 1 / 0 FROM SPSTUD", Fault::Overflow, "ноль"},
        {"SELECT CInt(FAM) FROM SPSTUD", Fault::Type, "Семёнов"},
        {"INSERT INTO SPNOPE (ID) VALUES (1)", Fault::UnknownName, "SPNOPE"},
    };
    for (const auto& c : cases) {
        std::string message;
        EXPECT_EQ(faultOf(c.sql, &message), c.fault) << c.sql << ": " << message;
        EXPECT_NE(message.find(c.word), std::string::npos) << c.sql << ": " << message;
    }
    EXPECT_THROW(db->query("DELETE FROM POS"), Error);
    EXPECT_THROW(db->execute("SELECT * FROM POS"), Error);
    EXPECT_EQ(rows("SELECT Count(*) FROM POS"), "4");
}

} // namespace

} // namespace jet::test
