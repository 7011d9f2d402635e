#include "fuzz/bases.h"

#include "fuzz/jet3base.h"
#include "jet/database.h"
#include "jet/error.h"
#include "jet/storage/jet3/pages.h"
#include "jet/storage/journal.h"
#include "jet/storage/newdatabase.h"
#include "jet/storage/pager.h"
#include "jet/storage/rc4.h"
#include "jet/storage/store.h"
#include "tests/support/memoryfiles.h"

#include <algorithm>
#include <string>
#include <vector>

namespace jet::fuzz {

namespace {

const std::filesystem::path kPath = "base.mdb";
constexpr std::uint32_t kKey = 0x5EEDF11E;

const char* const kTables[] = {
    "CREATE TABLE SPGRUP (IDG COUNTER PRIMARY KEY, NAIM TEXT(20) NOT NULL, KURS BYTE DEFAULT 1)",
    "CREATE TABLE SPSTUD (ID COUNTER PRIMARY KEY, IDG LONG, FAM TEXT(50), D_R DATETIME)",
    "ALTER TABLE SPSTUD ADD COLUMN POL BIT",
    "ALTER TABLE SPSTUD ADD COLUMN SUM CURRENCY",
    "ALTER TABLE SPSTUD ADD COLUMN MEMO MEMO",
    "CREATE INDEX FAMBORN ON SPSTUD (FAM, D_R DESC)",
    "CREATE INDEX IDG ON SPSTUD (IDG) WITH IGNORE NULL",
    "CREATE TABLE POS (ID LONG, DAT DATETIME, UR SMALLINT, UV SINGLE, NUV DOUBLE)",
    "CREATE TABLE KINDS (G GUID, O LONGBINARY, X BINARY(20), T TEXT(255) UNIQUE)",
};

void addDecimalTable(Database& database)
{
    TableDef table;
    table.name = "SUMS";
    Field amount;
    amount.name = "D";
    amount.type = FieldType::Decimal;
    amount.size = 16;
    amount.precision = 18;
    amount.scale = 4;
    Field guid;
    guid.name = "G";
    guid.type = FieldType::Guid;
    guid.size = 16;
    guid.ordinal = 1;
    table.fields = {amount, guid};
    database.createTable(table);
}

void addStudents(Database& database)
{
    const std::string columns[] = {"IDG", "FAM", "D_R", "POL", "SUM", "MEMO"};
    Appender students(database, "SPSTUD", columns);
    constexpr int kStudents = 110;
    for (int i = 0; i < kStudents; ++i) {
        const std::size_t memo = i == 7 ? 9000 : i % 40 == 3 ? 900 : i % 9 == 0 ? 12 : 0;
        const Value row[] = {i % 7 == 0 ? Value() : Value(1 + i % 3),
                             "Семёнов-Ткаченко Фрол " + std::to_string(i * 37 % kStudents),
                             DateTime{37000.0 + i},
                             i % 2 == 0,
                             Currency{i * 12345},
                             memo == 0 ? Value() : Value(std::string(memo, 'm'))};
        students.append(row);
    }
    database.execute("DELETE FROM SPSTUD WHERE ID MOD 13 = 5");
    // Rows that no longer fit their page leave a pointer behind.
    database.execute("UPDATE SPSTUD SET FAM = FAM & ' и ещё двадцать букв' WHERE ID MOD 9 = 2");
}

void addOthers(Database& database)
{
    const char* const statements[] = {
        "INSERT INTO SPGRUP (NAIM, KURS) VALUES ('ПО-21', 2)",
        "INSERT INTO SPGRUP (NAIM, KURS) VALUES ('ЭК-11', 1)",
        "INSERT INTO SPGRUP (NAIM) VALUES (' ')",
        "INSERT INTO POS (ID, DAT, UR, UV, NUV) VALUES (1, #09/01/2020#, 1, 2, 0.5)",
        "INSERT INTO POS (ID, DAT, UR, UV) VALUES (2, #09/02/2020 12:30:00#, 2, -1e30)",
        "INSERT INTO POS (ID, NUV) VALUES (4, 1e300)",
        "INSERT INTO KINDS (T) VALUES ('первый')",
        "INSERT INTO KINDS (T) VALUES ('второй')",
    };
    for (const char* statement : statements)
        database.execute(statement);
    const std::pair<std::string, Value> picture[] = {
        {"O", Bytes(5000, 0xAB)}, {"X", Bytes(9, 0xCD)}, {"T", "третий"}};
    database.insert("KINDS", picture);
    Decimal amount;
    amount.scale = 4;
    amount.magnitude[3] = 123456789;
    const std::pair<std::string, Value> sum[] = {{"D", amount}, {"G", Guid{}}};
    database.insert("SUMS", sum);
}

void createEmpty(FileSystem& files, std::uint32_t databaseKey)
{
    DatabaseHeader header;
    header.created = {44000};
    header.databaseKey = databaseKey;
    Pager::create(files, kPath, newDatabaseImage(header));
}

Base emptyBase()
{
    test::MemoryFiles files;
    createEmpty(files, 0);
    return {files.content(kPath)};
}

Base filledBase(std::uint32_t databaseKey)
{
    test::MemoryFiles files;
    createEmpty(files, databaseKey);
    {
        const auto database = Database::open(files, kPath, OpenMode::Exclusive);
        for (const char* statement : kTables)
            database->execute(statement);
        addDecimalTable(*database);
        addStudents(*database);
        addOthers(*database);
    }
    return {fileOf(files.content(kPath), databaseKey), databaseKey};
}

Base jet3Base(std::uint32_t databaseKey)
{
    return {jet3File(databaseKey), databaseKey, jet3::kPageSize};
}

// The system goes down at the first moment when the file is changed.
Base halfWrittenBase()
{
    const Base whole = filledBase(0);
    for (int operation = 0;; ++operation) {
        test::MemoryFiles files;
        files.setContent(kPath, whole.pages);
        try {
            const auto database = Database::open(files, kPath, OpenMode::Exclusive);
            files.failAt(operation, test::MemoryFiles::Failure::ForGood);
            database->execute("UPDATE SPSTUD SET MEMO = FAM & MEMO WHERE ID < 40");
        } catch (const Error&) {
            // As it must be.
        }
        files.failNever();
        if (files.content(kPath) != whole.pages)
            return {files.content(kPath), 0, kPageSize, files.content(journalPath(kPath))};
    }
}

} // namespace

Bytes fileOf(Bytes pages, std::uint32_t databaseKey, std::size_t pageSize)
{
    if (databaseKey == 0)
        return pages;
    const ByteSpan all(pages);
    for (std::size_t at = pageSize; at < all.size(); at += pageSize)
        applyRc4(databaseKey ^ static_cast<PageNumber>(at / pageSize),
                 all.subspan(at, std::min(pageSize, all.size() - at)));
    return pages;
}

std::span<const Base> bases()
{
    static const std::vector<Base> made = {filledBase(0), filledBase(kKey), emptyBase(),
                                           jet3Base(0),   jet3Base(kKey),   halfWrittenBase()};
    return made;
}

} // namespace jet::fuzz
