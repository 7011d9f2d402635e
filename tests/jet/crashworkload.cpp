#include "tests/jet/crashworkload.h"

#include "jet/error.h"
#include "jet/storage/checker.h"
#include "jet/storage/journal.h"

#include <algorithm>
#include <cstdlib>

namespace jet::test {

namespace {

CrashStep sql(std::string name, std::string statement)
{
    return {std::move(name),
            [statement = std::move(statement)](Database& db) { db.execute(statement); }};
}

// Letters that the format cannot compress, so that 2,000 fill more than a page.
std::string letters(int count, const char* letter)
{
    std::string text;
    for (int i = 0; i < count; ++i)
        text += letter;
    return text;
}

void insertMany(Database& db, int first, int count)
{
    const std::vector<std::string> columns{"FAM", "NOM", "PRIM"};
    Transaction transaction(db);
    Appender appender(db, "STUD", columns);
    for (int i = first; i < first + count; ++i) {
        appender.append(std::vector<Value>{Value("Фамилия " + std::to_string(i * 7919 % 1000)),
                                           Value(i), Value("примечание " + std::to_string(i))});
    }
    transaction.commit();
}

void severalStatements(Database& db)
{
    Transaction transaction(db);
    db.execute(R"(INSERT INTO STUD (FAM, NOM) VALUES ("Щукина", 9000))");
    db.execute("UPDATE STUD SET PRIM = \"" + letters(3000, "ы") + "\" WHERE NOM = 3");
    db.execute("DELETE FROM POS WHERE ID < 5");
    db.execute("CREATE TABLE ITOG (KOD COUNTER CONSTRAINT PK PRIMARY KEY, SUMMA DOUBLE)");
    db.execute("INSERT INTO ITOG (SUMMA) SELECT NOM / 3 FROM STUD WHERE NOM < 40");
    try {
        db.execute("INSERT INTO STUD (FAM, NOM) SELECT FAM, NOM FROM STUD");
    } catch (const Error& error) {
        if (error.fault() != Fault::Duplicate)
            throw;
    }
    db.execute("CREATE INDEX bySumma ON ITOG (SUMMA)");
    transaction.commit();
}

std::string definitionText(const TableDef& definition)
{
    std::string text = definition.name;
    for (const Field& field : definition.fields)
        text += " " + field.name + ":" + std::to_string(static_cast<int>(field.type)) + "/"
                + std::to_string(field.size);
    for (const Index& index : definition.indexes)
        text += " [" + index.name + (index.unique ? " unique " : " ") + index.fieldList() + "]";
    return text;
}

} // namespace

std::vector<CrashStep> crashSteps()
{
    return {
        sql("insert", R"(INSERT INTO STUD (FAM, NOM) VALUES ("Ёлкина", 500))"),
        sql("long memo", "INSERT INTO STUD (FAM, NOM, PRIM) VALUES (\"Длинный\", 501, \""
                             + letters(7000, "ж") + "\")"),
        sql("keys", "UPDATE STUD SET FAM = \"Я\" & FAM WHERE NOM < 20"),
        sql("memos grow", "UPDATE STUD SET PRIM = \"" + letters(2500, "ю") + "\" WHERE NOM < 4"),
        sql("memos shrink", "UPDATE STUD SET PRIM = \"кратко\" WHERE NOM < 3 OR NOM = 501"),
        {"many rows", [](Database& db) { insertMany(db, 1000, 150); }},
        sql("rows move", "UPDATE STUD SET FAM = FAM & \" (переведён из другой группы)\""
                         " WHERE NOM > 1000 AND NOM < 1030"),
        sql("delete", "DELETE FROM STUD WHERE NOM > 1010 AND NOM < 1120"),
        sql("create table", "CREATE TABLE POS (ID LONG, DAT DATETIME, UR SHORT, TEMA TEXT(60),"
                            " OPIS MEMO)"),
        sql("fill", "INSERT INTO POS (ID, DAT, UR, TEMA) SELECT NOM, #09/01/2025#, 2, FAM"
                    " FROM STUD"),
        sql("create index", "CREATE INDEX byTema ON POS (TEMA)"),
        sql("create unique index", "CREATE UNIQUE INDEX byId ON POS (ID)"),
        sql("add column", "ALTER TABLE POS ADD COLUMN VES DOUBLE"),
        sql("fill column", "UPDATE POS SET VES = ID / 2, OPIS = \"о\" & TEMA"),
        {"transaction", severalStatements},
        sql("drop column", "ALTER TABLE POS DROP COLUMN UR"),
        sql("drop index", "DROP INDEX byTema ON POS"),
        sql("empty", "DELETE FROM POS"),
        sql("drop table", "DROP TABLE ITOG"),
        {"reuse", [](Database& db) { insertMany(db, 2000, 120); }},
        sql("drop filled table", "DROP TABLE STUD"),
    };
}

int crashStride(int usual)
{
    const char* const text = std::getenv("JURNAL_CRASH_STRIDE");
    const int asked = text ? std::atoi(text) : 0;
    return asked > 0 ? asked : usual;
}

Interrupted interrupt(const std::vector<std::uint8_t>& before, const CrashStep& step, int n)
{
    Interrupted left;
    left.before = before;
    MemoryFiles files;
    files.setContent(kCrashPath, before);
    {
        const auto db = Database::open(files, kCrashPath, OpenMode::Exclusive);
        files.failAt(n, MemoryFiles::Failure::ForGood);
        try {
            step.run(*db);
            left.finished = true;
        } catch (const Error&) {
            // That is what was asked for.
        }
    }
    left.file = files.content(kCrashPath);
    left.journal = files.content(journalPath(kCrashPath));
    return left;
}

Interrupted halfWritten()
{
    MemoryFiles files;
    makeCrashDatabase(*Database::create(files, kCrashPath, {}));
    const auto before = files.content(kCrashPath);
    int n = 0;
    Interrupted left;
    do {
        left = interrupt(before, crashSteps().front(), n++);
    } while (left.file == before);
    return left;
}

void makeCrashDatabase(Database& database)
{
    database.execute("CREATE TABLE STUD (ID COUNTER CONSTRAINT PK PRIMARY KEY, FAM TEXT(60),"
                     " NOM LONG, PRIM MEMO)");
    database.execute("CREATE INDEX byFam ON STUD (FAM)");
    database.execute("CREATE UNIQUE INDEX byNom ON STUD (NOM)");
    insertMany(database, 1, 60);
}

std::string contentText(Database& database)
{
    std::string text;
    for (const std::string& table : database.tableNames()) {
        text += definitionText(database.tableDef(table)) + "\n";
        std::vector<std::string> lines;
        for (const auto& row : database.rows("SELECT * FROM [" + table + "]")) {
            std::string& line = lines.emplace_back();
            for (const Value& value : row)
                line += "|" + (value.isNull() ? "-" : value.toText());
        }
        std::sort(lines.begin(), lines.end());
        for (const std::string& line : lines)
            text += line + "\n";
    }
    return text;
}

std::string harmfulFindings(Database& database)
{
    std::string text;
    for (const Finding& finding : checkDatabase(database.store())) {
        if (finding.severity == Severity::Harmful)
            text += finding.table + " " + std::to_string(finding.page) + " " + finding.text + "\n";
    }
    return text;
}

} // namespace jet::test
