// Virtual tables beside native tables of the same rows: SQLite must give the same for both.
#include "jet/sql/collation.h"
#include "jet/sql/engine.h"
#include "tests/jet/queryfixture.h"

#include <array>
#include <random>

namespace jet::test {

namespace {

class VirtualTables : public testing::Test
{
protected:
    VirtualTables()
        : db(Database::create(files, "t.mdb", {}))
        , module{db->store(), errors}
    {
        sqlite3* raw = nullptr;
        sqlite3_open(":memory:", &raw);
        connection.reset(raw);
        sql::registerCollation(raw);
        sql::registerModule(raw, module);
    }

    // Rows of a SQLite text, one a line.
    std::string run(const std::string& text)
    {
        sqlite3_stmt* raw = nullptr;
        if (sqlite3_prepare_v2(connection.get(), text.c_str(), -1, &raw, nullptr) != SQLITE_OK)
            return sqlite3_errmsg(connection.get());
        const sql::StatementHandle statement(raw);
        std::string out;
        int code = 0;
        while ((code = sqlite3_step(raw)) == SQLITE_ROW) {
            for (int i = 0; i < sqlite3_column_count(raw); ++i) {
                const auto* value = reinterpret_cast<const char*>(sqlite3_column_text(raw, i));
                out += std::string(value ? value : "NULL") + '|';
            }
            out += '\n';
        }
        return code == SQLITE_DONE ? out : sqlite3_errmsg(connection.get());
    }
    std::string plan(const std::string& text) { return run("EXPLAIN QUERY PLAN " + text); }

    MemoryFiles files;
    std::unique_ptr<Database> db;
    sql::ErrorSlot errors;
    sql::TableModule module;
    std::unique_ptr<sqlite3, decltype(&sqlite3_close)> connection{nullptr, sqlite3_close};
};

using Random = std::mt19937;

int below(Random& random, int limit)
{
    return static_cast<int>(random() % static_cast<unsigned>(limit));
}

const char* pick(Random& random, std::span<const char* const> from)
{
    return from[random() % from.size()];
}

// Literals of all kinds, also of kinds that do not suit the column.
constexpr std::array kLiterals = {
    "0",     "-1",   "1",       "2",     "3.5",  "-2.25", "300",     "99999999999", "NULL",
    "'a'",   "'Б'",  "'б'",     "'ё'",   "'Е '", "'007'", "'7'",     "'7.0'",       "''",
    "x'41'", "0.25", "44075.5", "40000", "'2'",  "' 2 '", "'-2.25'", "1e300",       "256",
};
constexpr std::array kColumns = {"L", "I", "B", "Y", "D", "T", "C", "S", "W", "M"};
constexpr std::array kComparisons = {"=", "<>", "<", "<=", ">", ">=", "IS", "IS NOT"};

std::string condition(Random& random)
{
    const std::string column = pick(random, kColumns);
    switch (below(random, 8)) {
    case 0:
        return column + " IS NULL";
    case 1:
        return column + " IS NOT NULL";
    case 2:
        return column + " IN (" + pick(random, kLiterals) + ", " + pick(random, kLiterals) + ", "
               + pick(random, kLiterals) + ")";
    case 3:
        return column + " = " + pick(random, kColumns);
    case 4:
        return column + " = " + pick(random, kLiterals) + " COLLATE NOCASE";
    case 5:
        return column + " BETWEEN " + pick(random, kLiterals) + " AND " + pick(random, kLiterals);
    default:
        return column + ' ' + pick(random, kComparisons) + ' ' + pick(random, kLiterals);
    }
}

std::string randomWhere(Random& random)
{
    std::string where = condition(random);
    for (int more = below(random, 4); more > 0; --more)
        where += (below(random, 3) == 0 ? " OR " : " AND ") + condition(random);
    return where;
}

TEST_F(VirtualTables, GiveTheRowsThatNativeTablesGive)
{
    db->execute("CREATE TABLE V (K COUNTER CONSTRAINT PK PRIMARY KEY, L LONG, I INTEGER, B BYTE, "
                "Y BIT, D DATETIME, T TEXT(20), C CURRENCY, S SINGLE, W DOUBLE, M MEMO)");
    db->execute("CREATE INDEX byL ON V (L)");
    run("CREATE VIRTUAL TABLE V USING jet");
    run("CREATE TABLE N (K INTEGER, L INTEGER, I INTEGER, B INTEGER, Y INTEGER, D REAL, "
        "T TEXT COLLATE JET, C REAL, S REAL, W REAL, M TEXT COLLATE JET)");
    Random random(1);
    for (int i = 0; i < 400; ++i) {
        std::string columns;
        std::string values;
        for (const char* column : {"L", "I", "D", "C", "S", "W"}) {
            static constexpr std::array kNumbers = {"0", "-1", "2", "3", "300", "40000"};
            columns += std::string(", ") + column;
            const bool small = column[0] == 'I';
            values += std::string(", ")
                      + (below(random, 4) == 0 ? "NULL"
                         : small               ? "7"
                                               : pick(random, kNumbers));
            if (!small && below(random, 4) == 0 && !values.ends_with("NULL") && column[0] != 'L')
                values += ".25";
        }
        for (const char* column : {"T", "M"}) {
            static constexpr std::array kTexts = {"NULL", "\"a\"",   "\"A\"", "\"б\"", "\"Ё\"",
                                                  "\"\"", "\"007\"", "\"7\"", "\"е\""};
            columns += std::string(", ") + column;
            values += std::string(", ") + pick(random, kTexts);
        }
        db->execute("INSERT INTO V (Y, B" + columns + ") VALUES (" + (i % 3 == 0 ? "True" : "False")
                    + ", " + std::to_string(below(random, 5)) + values + ")");
    }
    EXPECT_EQ(run("INSERT INTO N SELECT * FROM V"), "");
    for (int i = 0; i < 3000; ++i) {
        const std::string where = randomWhere(random);
        const std::string order = " WHERE " + where + " ORDER BY K";
        ASSERT_EQ(run("SELECT K FROM V" + order), run("SELECT K FROM N" + order)) << where;
    }
    for (int i = 0; i < 60; ++i) {
        const std::string on = std::string("a.") + pick(random, kColumns) + " = b."
                               + pick(random, kColumns) + " AND b.K < 60 AND a.K < 60 AND b."
                               + condition(random);
        const std::string kind = i % 2 == 0 ? " JOIN " : " LEFT JOIN ";
        const std::string rest = " b ON " + on + " ORDER BY a.K, b.K";
        if (on.find(" = L") != std::string::npos)
            continue; // an unqualified column of two tables
        ASSERT_EQ(run("SELECT a.K, b.K FROM V a" + kind + "V" + rest),
                  run("SELECT a.K, b.K FROM N a" + kind + "N" + rest))
            << on;
    }
}

// Repeated questions for several columns make an index of them all; unary plus keeps SQLite
// from asking for it, and so gives what must be found.
TEST_F(VirtualTables, IndexOfSeveralColumnsFollowsEveryChange)
{
    db->execute("CREATE TABLE P (K COUNTER CONSTRAINT PK PRIMARY KEY, A LONG, B DATETIME, "
                "T TEXT(9))");
    db->execute("CREATE TABLE Q (A LONG, B DATETIME, T TEXT(9))");
    Appender p(*db, "P", std::vector<std::string>{"A", "B", "T"});
    Appender q(*db, "Q", std::vector<std::string>{"A", "B", "T"});
    const std::array<Value, 4> texts = {Value("ё"), Value("Е"), Value("Ё"), Value()};
    for (int i = 0; i < 900; ++i) {
        const std::vector<Value> row{Value(i % 7), Value(DateTime{44000.5 + i % 20}),
                                     texts[static_cast<std::size_t>(i % 4)]};
        p.append(row);
        if (i % 15 == 0)
            q.append(row);
    }
    run("CREATE VIRTUAL TABLE P USING jet");
    run("CREATE VIRTUAL TABLE Q USING jet");
    const char* const changes[] = {
        "UPDATE P SET A = A + 1 WHERE K Mod 3 = 0", "UPDATE P SET T = \"ё\" WHERE T IS NULL",
        "DELETE FROM P WHERE K Mod 7 = 1",          "INSERT INTO P (A, B, T) SELECT A, B, T FROM Q",
        "UPDATE P SET B = NULL WHERE K Mod 11 = 1",
    };
    const std::string select = "SELECT count(*), sum(P.K) FROM Q CROSS JOIN P ON ";
    const auto expectSame = [&](const char* after) {
        const std::string found = run(select + "P.A = Q.A AND P.B = Q.B AND P.T = Q.T AND P.K > 0");
        EXPECT_EQ(found, run(select + "+P.A = Q.A AND +P.B = Q.B AND +P.T = Q.T")) << after;
        EXPECT_NE(found, "0|NULL|\n") << after;
    };
    for (const char* single : {"A = 1", "B = 44000.5", "T = 'x'"})
        run(std::string("SELECT count(*) FROM P WHERE ") + single);
    const std::size_t memory = db->store().table("P").lookupMemory();
    expectSame("nothing");
    EXPECT_GT(db->store().table("P").lookupMemory(), memory) << "no index of all columns";
    for (const char* change : changes) {
        db->execute(change);
        expectSame(change);
    }
}

// A journal's tables have no index but their keys. The plans below decide whether a query
// for each cell of a grid costs microseconds or a walk over all absences of the year.
TEST_F(VirtualTables, SmallTablesAreReadFirstAndLargeOnesLookedUp)
{
    makeCollegeTables(*db);
    {
        Transaction transaction(*db);
        Appender students(*db, "SPSTUD", std::vector<std::string>{"IDG", "NOM"});
        for (int i = 0; i < 300; ++i)
            students.append(std::vector<Value>{Value(i / 25 + 1), Value(i)});
        Appender absences(*db, "POS", std::vector<std::string>{"ID", "DAT", "UR"});
        for (int i = 0; i < 20000; ++i) {
            absences.append(std::vector<Value>{Value(i % 300 + 1),
                                               Value(DateTime{44000.0 + i / 200}), Value(i % 6)});
        }
        transaction.commit();
    }
    for (const char* table : {"POS", "SPSTUD", "SPGRUP"})
        run(std::string("CREATE VIRTUAL TABLE ") + table + " USING jet");
    const auto order = [&](const std::string& text) {
        std::string tables;
        const std::string lines = plan(text);
        for (std::size_t at = 0; (at = lines.find("SCAN ", at)) != std::string::npos; ++at) {
            const std::size_t name = at + 5;
            const std::size_t index = lines.find("INDEX ", name) + 6;
            tables += lines.substr(name, lines.find(' ', name) - name) + ':' + lines[index] + ' ';
        }
        return tables;
    };
    const struct
    {
        const char* text;
        const char* plan; // 0 all rows, 1 by row number, 2 looked up
    } cases[] = {
        {"SELECT * FROM POS, SPSTUD WHERE POS.ID = SPSTUD.ID AND SPSTUD.IDG = 5",
         "SPSTUD:2 POS:2 "},
        {"SELECT * FROM POS, SPSTUD WHERE POS.ID = SPSTUD.ID", "SPSTUD:0 POS:2 "},
        {"SELECT * FROM SPSTUD LEFT JOIN POS ON POS.ID = SPSTUD.ID", "SPSTUD:0 POS:2 "},
        {"SELECT * FROM POS, SPSTUD, SPGRUP WHERE POS.ID = SPSTUD.ID AND SPSTUD.IDG = SPGRUP.IDG "
         "AND SPGRUP.NAIM = 'a' AND DAT > 44050",
         "SPGRUP:2 SPSTUD:2 POS:2 "},
        {"SELECT * FROM SPSTUD WHERE IDG IN (1, 2)", "SPSTUD:2 "},
        {"DELETE FROM POS WHERE rowid IN (SELECT rowid FROM SPSTUD)", "POS:1 SPSTUD:0 "},
        {"SELECT * FROM SPSTUD WHERE FAM = 'a' COLLATE BINARY", "SPSTUD:0 "},
        {"SELECT * FROM SPSTUD WHERE MEMO = 'a'", "SPSTUD:0 "},
    };
    for (const auto& c : cases)
        EXPECT_EQ(order(c.text), c.plan) << plan(c.text);

    // Of two equalities the one with the fewer rows: a student's, not a lesson number's.
    const std::string both = plan("SELECT * FROM POS WHERE UR = 3 AND ID = 7");
    EXPECT_NE(both.find("INDEX 2:\002\001"), std::string::npos) << both;
}

} // namespace

} // namespace jet::test
