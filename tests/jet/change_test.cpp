// Changes through SQL and without, their atomicity, and readers that are open meanwhile.
#include "tests/jet/queryfixture.h"

namespace jet::test {

namespace {

using Change = QueryTest;

TEST_F(Change, SurvivesReopening)
{
    EXPECT_EQ(execute("UPDATE SPSTUD SET IDGG = ID * 10, MEMO = FAM & IM WHERE IDG = 1"), 3);
    EXPECT_EQ(execute("DELETE * FROM POS WHERE ID = 1"), 2);
    EXPECT_EQ(execute("INSERT INTO POS (ID, DAT) SELECT ID, D_R FROM SPSTUD WHERE IDG = 1"), 3);
    EXPECT_EQ(execute("DELETE FROM POS WHERE ID = 77"), 0);
    reopen();
    EXPECT_EQ(rows("SELECT ID, IDGG, MEMO FROM SPSTUD WHERE IDG = 1 ORDER BY ID"),
              "1|10|СемёновПётр; 2|20|ИвановаАнна; 3|30|семеновЯков");
    EXPECT_EQ(rows("SELECT ID, DAT FROM POS ORDER BY ID, DAT"),
              "1|05.03.2003; 2|31.12.2002; 2|01.09.2020; 3|-; 4|01.10.2020");
    EXPECT_EQ(db->tableNames(), (std::vector<std::string>{"SPGRUP", "SPSTUD", "POS"}));
    EXPECT_EQ(db->rowCount("pos"), 5);
}

TEST_F(Change, ValuesTakeTheTypeOfTheirColumn)
{
    execute(R"(INSERT INTO SPSTUD (IDG, FAM, D_R, IDGG, POL, NOM)
               VALUES ("2", 15, "29.02.2004", 2.5, NULL, 200))");
    EXPECT_EQ(rows("SELECT IDG, FAM, D_R, IDGG, POL FROM SPSTUD WHERE NOM = 200"),
              "2|15|29.02.2004|2|0");
    EXPECT_EQ(faultOf("UPDATE SPSTUD SET IDGG = 40000 WHERE ID = 1"), Fault::Overflow);
    EXPECT_EQ(faultOf(R"(UPDATE SPSTUD SET IDGG = "много" WHERE ID = 1)"), Fault::Type);
    EXPECT_EQ(rows("SELECT IDGG FROM SPSTUD WHERE ID = 1"), "1");
}

TEST_F(Change, OddSurnamesAreOrdinarySurnames)
{
    const std::string odd[] = {
        "O\"Нил", "Д'Артаньян",        "#1", "a]b[c", "x; DROP TABLE POS;", "--", "%_*?",
        "\\",     "имя\nв две строки", ""};
    for (const std::string& name : odd) {
        std::string literal;
        for (const char c : name)
            literal += c == '"' ? std::string("\"\"") : std::string(1, c);
        execute("UPDATE SPSTUD SET FAM = \"" + literal + "\" WHERE ID = 1");
        reopen();
        EXPECT_EQ(rows("SELECT FAM FROM SPSTUD WHERE ID = 1"), name);
        EXPECT_EQ(rows("SELECT ID FROM SPSTUD WHERE FAM = \"" + literal + "\""), "1") << name;
    }
    EXPECT_EQ(db->rowCount("POS"), 4);
}

TEST_F(Change, RefusedStatementLeavesNothingBehind)
{
    // The third row to be written has the number of one that is there already.
    const char* const refused =
        "UPDATE SPSTUD SET NOM = iif(ID = 3, 105, 900 + ID), FAM = \"X\" WHERE IDG = 1";
    std::string message;
    EXPECT_EQ(faultOf(refused, &message), Fault::Duplicate) << message;
    EXPECT_EQ(message.find("SQL logic error"), std::string::npos) << message;
    const std::string before = "Семёнов|101; Иванова|102; семенов|103";
    EXPECT_EQ(rows("SELECT FAM, NOM FROM SPSTUD WHERE IDG = 1 ORDER BY ID"), before);
    EXPECT_EQ(rows("SELECT ID FROM SPSTUD WHERE NOM = 901"), "");

    Transaction transaction(*db);
    execute(R"(UPDATE SPSTUD SET IM = "Ия" WHERE ID = 4)");
    EXPECT_EQ(faultOf(refused), Fault::Duplicate);
    EXPECT_EQ(faultOf("INSERT INTO SPSTUD (FAM, NOM) SELECT NAIM, 300 FROM SPGRUP"),
              Fault::Duplicate);
    execute(R"(UPDATE SPSTUD SET IM = "Лу" WHERE ID = 5)");
    transaction.commit();
    reopen();
    EXPECT_EQ(rows("SELECT FAM, NOM FROM SPSTUD WHERE IDG = 1 ORDER BY ID"), before);
    EXPECT_EQ(rows("SELECT IM FROM SPSTUD WHERE IDG = 2 ORDER BY ID"), "Ия; Лу");
    EXPECT_EQ(db->rowCount("SPSTUD"), 5);
}

// Rows are checked one by one, so that a number may only move to where none is any more.
TEST_F(Change, UniqueIndexesJudgeRowByRow)
{
    std::string message;
    EXPECT_EQ(faultOf("UPDATE SPSTUD SET NOM = NOM + 1", &message), Fault::Duplicate);
    EXPECT_NE(message.find("«NOM»"), std::string::npos) << message;
    EXPECT_NE(message.find("«byNOM»"), std::string::npos) << message;
    EXPECT_EQ(rows("SELECT NOM FROM SPSTUD ORDER BY ID"), "101; 102; 103; 104; 105");
    EXPECT_EQ(execute("UPDATE SPSTUD SET NOM = NOM - 1"), 5);
    EXPECT_EQ(faultOf("UPDATE SPSTUD SET NOM = 204 - NOM"), Fault::Duplicate);
    EXPECT_EQ(execute("UPDATE SPSTUD SET NOM = NULL WHERE ID > 2"), 3) << "NULL clashes with none";
    reopen();
    EXPECT_EQ(rows("SELECT NOM FROM SPSTUD ORDER BY ID"), "100; 101; -; -; -");

    execute("CREATE UNIQUE INDEX byName ON SPSTUD (FAM, IM DESC)");
    EXPECT_EQ(faultOf("UPDATE SPSTUD SET FAM = \"ИВАНОВА \", IM = \"анна\" WHERE ID = 5", &message),
              Fault::Duplicate);
    EXPECT_NE(message.find("полей «FAM», «IM»"), std::string::npos) << message;
    EXPECT_EQ(execute("UPDATE SPSTUD SET FAM = \"ИВАНОВА \", IM = NULL WHERE ID = 5"), 1);
    EXPECT_EQ(faultOf("UPDATE SPSTUD SET FAM = \"иванова\", IM = NULL WHERE ID = 4"),
              Fault::Duplicate)
        << "one NULL of two does clash";
    EXPECT_EQ(execute("UPDATE SPSTUD SET FAM = NULL, IM = NULL WHERE ID IN (3, 4)"), 2);
    reopen();
    EXPECT_EQ(rows("SELECT FAM, IM FROM SPSTUD ORDER BY ID"),
              "Семёнов|Пётр; Иванова|Анна; -|-; -|-; ИВАНОВА |-");
}

// Hyphens need four bytes each in a key.
TEST_F(Change, KeysThatFitNoPageUndoTheWholeStatement)
{
    execute("CREATE TABLE W (K LONG, A TEXT(255), B TEXT(255))");
    execute("CREATE INDEX byAB ON W (A, B)");
    for (const char* text : {"String(100, \"-\")", "String(255, \"-\")", "\"а\""})
        execute(std::string("INSERT INTO W (A, B) VALUES (") + text + ", \"б\")");
    std::string message;
    EXPECT_EQ(faultOf("UPDATE W SET B = A & \"\", K = 1", &message), Fault::Limit);
    EXPECT_NE(message.find("«byAB»"), std::string::npos) << message;
    EXPECT_EQ(faultOf("INSERT INTO W (A, B) SELECT A, A FROM W"), Fault::Limit);
    {
        Transaction whole(*db);
        EXPECT_EQ(execute("UPDATE W SET K = 7 WHERE A = \"а\""), 1);
        EXPECT_EQ(faultOf("UPDATE W SET B = A, K = 2"), Fault::Limit);
        whole.commit();
    }
    reopen();
    EXPECT_EQ(rows("SELECT K, Len(A), B FROM W ORDER BY Len(A)"), "7|1|б; -|100|б; -|255|б");
    EXPECT_EQ(rows("SELECT K FROM W WHERE A = \"А\" AND B = \"Б\""), "7");
}

TEST_F(Change, LookupsFollowEveryChange)
{
    const auto find = [&](int group) {
        return rows("SELECT ID FROM SPSTUD WHERE IDG = " + std::to_string(group) + " ORDER BY ID");
    };
    EXPECT_EQ(find(1), "1; 2; 3"); // makes the index in memory
    execute("UPDATE SPSTUD SET IDG = 3 WHERE ID = 2");
    EXPECT_EQ(find(1), "1; 3");
    EXPECT_EQ(find(3), "2");
    execute("DELETE FROM SPSTUD WHERE ID = 3");
    EXPECT_EQ(find(1), "1");
    {
        Transaction abandoned(*db);
        execute("UPDATE SPSTUD SET IDG = 3");
        execute("INSERT INTO SPSTUD (IDG, NOM) VALUES (3, 500)");
        EXPECT_EQ(find(3), "1; 2; 4; 5; 6");
    }
    EXPECT_EQ(find(3), "2");
    EXPECT_EQ(find(2), "4; 5");
    EXPECT_EQ(faultOf("UPDATE SPSTUD SET IDG = 9, NOM = 1"), Fault::Duplicate);
    EXPECT_EQ(find(9), "");
    EXPECT_EQ(find(2), "4; 5");
    Appender appender(*db, "SPSTUD", std::vector<std::string>{"IDG", "NOM"});
    const std::int64_t added = appender.append(std::vector<Value>{Value(9), Value(600)});
    EXPECT_EQ(find(9), std::to_string(added));
}

// A row that moves within the walk because it grew must not be met again.
TEST_F(Change, UpdateMeetsEveryRowOnce)
{
    for (int i = 0; i < 300; ++i)
        execute("INSERT INTO POS (ID, UR) VALUES (1000, 1)");
    EXPECT_EQ(execute("UPDATE POS SET UR = UR + 1, ID = ID + 1 WHERE ID >= 1000"), 300);
    EXPECT_EQ(rows("SELECT DISTINCT ID, UR FROM POS WHERE ID >= 1000"), "1001|2");
    execute("UPDATE SPSTUD SET MEMO = \"" + std::string(900, 'x') + "\"");
    EXPECT_EQ(execute("UPDATE SPSTUD SET FAM = FAM & \"" + std::string(30, 'y') + "\""), 5);
    EXPECT_EQ(rows("SELECT DISTINCT Len(FAM) - Len(Replace(FAM, \"y\", \"\")) FROM SPSTUD"), "30");
    EXPECT_EQ(execute("INSERT INTO POS (ID, UR) SELECT ID, UR FROM POS"), 304);
    EXPECT_EQ(execute("DELETE FROM POS"), 608);
    EXPECT_EQ(db->rowCount("POS"), 0);
}

TEST_F(Change, OpenRecordsetKeepsItsRows)
{
    Recordset first = db->query("SELECT ID, FAM FROM SPSTUD ORDER BY ID");
    Recordset second = db->query("SELECT ID, FAM FROM SPSTUD ORDER BY ID");
    Recordset fresh = db->query("SELECT ID FROM POS");
    ASSERT_TRUE(first.next());
    ASSERT_TRUE(second.next());
    ASSERT_TRUE(second.next());
    execute(R"(UPDATE SPSTUD SET FAM = "X")");
    execute("DELETE FROM POS");
    db->dropTable("SPGRUP");
    db->dropField("SPSTUD", "IM");
    EXPECT_EQ(first.text("FAM"), "Семёнов");
    EXPECT_EQ(second.text("FAM"), "Иванова");
    ASSERT_TRUE(first.next());
    EXPECT_EQ(first.integer("ID"), 2);
    int rest = 0;
    while (second.next())
        ++rest;
    EXPECT_EQ(rest, 3);
    int absences = 0;
    while (fresh.next())
        ++absences;
    EXPECT_EQ(absences, 4);
    EXPECT_EQ(rows("SELECT FAM FROM SPSTUD WHERE ID = 1"), "X");
    EXPECT_EQ(faultOf("SELECT IM FROM SPSTUD"), Fault::UnknownName);
    {
        Transaction abandoned(*db);
        execute("DELETE FROM SPSTUD WHERE ID < 3");
        Recordset inside = db->query("SELECT ID FROM SPSTUD ORDER BY ID");
        ASSERT_TRUE(inside.next());
        EXPECT_EQ(inside.integer(0), 3);
    }
    EXPECT_EQ(db->rowCount("SPSTUD"), 5);
}

// Making another table known to SQLite must not disturb a walk over the first.
TEST_F(Change, RecordsetGoesOnWhileOtherTablesAreAskedFor)
{
    reopen();
    Recordset students = db->query("SELECT ID, IDG FROM SPSTUD ORDER BY ID");
    std::string groups;
    while (students.next()) {
        const std::string group = std::to_string(students.integer("IDG"));
        groups += rows("SELECT NAIM FROM SPGRUP WHERE IDG = " + group) + ' ';
        groups += std::to_string(db->count("SELECT * FROM POS WHERE ID = " + students.text("ID")));
        groups += ' ';
    }
    EXPECT_EQ(groups, "ПО-21 2 ПО-21 1 ПО-21 0 ЭК-11 1 ЭК-11 0 ");
}

// A reader that was stopped by an abandoned transaction still has what it was to show.
TEST_F(Change, RecordsetOutlivesARollback)
{
    auto transaction = std::make_unique<Transaction>(*db);
    execute("INSERT INTO POS (ID) VALUES (50)");
    Recordset records = db->query("SELECT ID FROM POS WHERE ID > 2 ORDER BY ID");
    ASSERT_TRUE(records.next());
    transaction.reset();
    EXPECT_EQ(records.integer(0), 4);
    ASSERT_TRUE(records.next());
    EXPECT_EQ(records.integer(0), 50);
    EXPECT_FALSE(records.next());
    EXPECT_EQ(db->rowCount("POS"), 4);
}

TEST_F(Change, TransactionsNest)
{
    {
        Transaction outer(*db);
        execute("DELETE FROM POS WHERE ID = 1");
        {
            Transaction inner(*db);
            execute("DELETE FROM POS WHERE ID = 2");
            inner.commit();
        }
        EXPECT_EQ(db->rowCount("POS"), 1);
    }
    EXPECT_EQ(db->rowCount("POS"), 4);
    Transaction outer(*db);
    execute("DELETE FROM POS WHERE ID = 1");
    {
        const Transaction inner(*db);
    }
    EXPECT_THROW(outer.commit(), Error);
    reopen();
    EXPECT_EQ(db->rowCount("POS"), 4);
}

TEST_F(Change, DefinitionsBySql)
{
    execute("CREATE TABLE [Виды работ] (KOD COUNTER CONSTRAINT PK PRIMARY KEY, "
            "[Имя вида] TEXT(30), CENA CURRENCY, KOGDA DATETIME, DA BIT, PRIM MEMO)");
    execute(R"(INSERT INTO [виды работ] ([Имя вида], CENA) VALUES ("устно", 12.5))");
    execute("ALTER TABLE [Виды работ] ADD COLUMN N LONG");
    execute("CREATE UNIQUE INDEX byN ON [Виды работ] (N)");
    execute("UPDATE [Виды работ] SET N = 1");
    EXPECT_EQ(faultOf("INSERT INTO [Виды работ] (N) VALUES (1)"), Fault::Duplicate);
    reopen();
    EXPECT_EQ(rows("SELECT * FROM [Виды работ]"), "1|устно|12.5|-|0|-|1");
    const TableDef definition = db->tableDef("виды работ");
    ASSERT_NE(definition.index("byN"), nullptr);
    EXPECT_TRUE(definition.index("byN")->unique);
    execute("DROP INDEX byN ON [Виды работ]");
    execute("INSERT INTO [Виды работ] (N) VALUES (1)");
    execute("ALTER TABLE [Виды работ] DROP COLUMN N");
    EXPECT_EQ(rows("SELECT KOD FROM [Виды работ]"), "1; 2");
    execute("DROP TABLE [Виды работ]");
    reopen();
    EXPECT_FALSE(db->hasTable("Виды работ"));
    EXPECT_EQ(faultOf("CREATE TABLE SPSTUD (ID LONG)"), Fault::Exists);
}

TEST_F(Change, ReadOnlyRefusesEveryChange)
{
    reopen(OpenMode::ReadOnly);
    EXPECT_TRUE(db->readOnly());
    EXPECT_EQ(faultOf("DELETE FROM POS"), Fault::ReadOnly);
    EXPECT_EQ(faultOf("INSERT INTO POS (ID) VALUES (1)"), Fault::ReadOnly);
    EXPECT_EQ(faultOf("CREATE TABLE T (ID LONG)"), Fault::ReadOnly);
    EXPECT_THROW(db->dropTable("POS"), Error);
    const std::vector<std::pair<std::string, Value>> row{{"ID", Value(1)}};
    EXPECT_THROW(db->insert("POS", row), Error);
    EXPECT_EQ(rows("SELECT Count(*) FROM POS"), "4");
}

TEST_F(Change, TablesOfTheEngineStayAsTheyAre)
{
    const std::string before = rows("SELECT Count(*) FROM MSysObjects");
    const char* const refused[] = {
        "DELETE FROM MSysObjects",
        "UPDATE msysobjects SET Name = \"X\" WHERE Name = \"POS\"",
        "INSERT INTO MSysACEs (ACM) VALUES (1)",
        "UPDATE POS INNER JOIN MSysQueries ON POS.ID = MSysQueries.ObjectId SET [Order] = 1",
        "CREATE INDEX NEW ON MSysObjects (Type)",
        "DROP TABLE MSysQueries",
    };
    for (const char* statement : refused)
        EXPECT_EQ(faultOf(statement), Fault::Unsupported) << statement;
    EXPECT_EQ(rows("SELECT Count(*) FROM MSysObjects"), before);
}

TEST_F(Change, InsertWithoutSql)
{
    const std::vector<std::pair<std::string, Value>> row{
        {"fam", Value("Щукин")}, {"D_R", Value(DateTime::of(2004, 1, 2))}, {"NOM", Value(700)}};
    EXPECT_EQ(db->insert("spstud", row), 6);
    EXPECT_EQ(faultOf("INSERT INTO SPSTUD (NOM) VALUES (700)"), Fault::Duplicate);
    reopen();
    EXPECT_EQ(rows("SELECT FAM, D_R, POL, IM FROM SPSTUD WHERE NOM = 700"), "Щукин|02.01.2004|0|-");
    const std::vector<std::pair<std::string, Value>> wrong{{"ФИО", Value("x")}};
    EXPECT_THROW(db->insert("SPSTUD", wrong), Error);
    EXPECT_THROW(Appender(*db, "SPNOPE", {}), Error);
}

// The disk fills in the middle: the statement says so and the file is as it was.
TEST_F(Change, WriteFailureIsReportedAsItIs)
{
    files.limitFileSize(files.content(kPath).size());
    std::string message;
    const std::string big(2000, 'x');
    Fault fault = Fault::NotFound;
    try {
        Transaction transaction(*db);
        for (int i = 0; i < 100; ++i)
            execute("INSERT INTO SPSTUD (NOM, MEMO) VALUES (" + std::to_string(1000 + i) + ", \""
                    + big + "\")");
        transaction.commit();
    } catch (const Error& error) {
        fault = error.fault();
    }
    EXPECT_EQ(fault, Fault::DiskFull);
    files.limitFileSize(~std::uint64_t{0});
    reopen();
    EXPECT_EQ(db->rowCount("SPSTUD"), 5);
}

} // namespace

} // namespace jet::test
