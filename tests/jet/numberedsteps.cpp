#include "tests/jet/numberedsteps.h"

#include <string>

namespace jet::test {

namespace {

constexpr int kKept = 60; // rows with smaller numbers are deleted in time

std::string memo(int number)
{
    std::string text = "\"";
    for (int i = 0; i < number * 37 % 4000; ++i)
        text += "щ";
    return text + "\"";
}

std::string row(int number)
{
    return "INSERT INTO LOG (N, T, M) VALUES (" + std::to_string(number) + ", \"строка "
           + std::to_string(number % 1000 * 7919 % 1000) + "\", " + memo(number) + ")";
}

void changeDefinitions(Database& db, int number)
{
    const char* const changes[] = {
        "CREATE TABLE EXTRA (ID LONG CONSTRAINT PK PRIMARY KEY, T TEXT(40))",
        "CREATE INDEX byTitle ON LOG (T)",
        "ALTER TABLE LOG ADD COLUMN W DOUBLE",
        "DROP INDEX byTitle ON LOG",
        "ALTER TABLE LOG DROP COLUMN W",
        "DROP TABLE EXTRA",
    };
    db.execute(changes[number / 8 % 6]);
}

void changeAtOnce(Database& db, int number)
{
    Transaction transaction(db);
    for (int i = 0; i < 5; ++i)
        db.execute(row(1000000 + number * 5 + i));
    db.execute("DELETE FROM LOG WHERE N >= 1000000 AND N < "
               + std::to_string(1000000 + (number - kKept) * 5));
    db.execute("UPDATE LOG SET T = T & \"+\" WHERE N = " + std::to_string(1000000 + number * 5));
    transaction.commit();
}

} // namespace

void makeNumberedDatabase(Database& database)
{
    database.execute("CREATE TABLE LOG (N LONG CONSTRAINT PK PRIMARY KEY, T TEXT(200), M MEMO)");
}

void runNumberedStep(Database& database, int number)
{
    const std::string now = std::to_string(number);
    switch (number % 8) {
    case 2:
        database.execute("UPDATE LOG SET T = Left(T, 20) & \" " + now + "\"");
        break;
    case 3:
        changeAtOnce(database, number);
        break;
    case 4:
        database.execute("UPDATE LOG SET M = " + memo(number + 50)
                         + " & N WHERE N < 1000000 AND N > " + std::to_string(number - 6));
        break;
    case 5:
        changeDefinitions(database, number);
        break;
    case 7:
        database.execute("DELETE FROM LOG WHERE N < " + std::to_string(number - kKept)
                         + " OR N = " + std::to_string(number - 1));
        break;
    default:
        database.execute(row(number));
    }
}

} // namespace jet::test
