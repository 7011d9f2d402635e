#include "fuzz/walk.h"

#include "jet/database.h"
#include "jet/storage/checker.h"
#include "jet/storage/store.h"

#include <span>
#include <stdexcept>

#include <sqlite3.h>

namespace jet::fuzz {

namespace {

constexpr std::size_t kMaxTables = 24;
constexpr int kMaxRows = 600;
constexpr std::size_t kMaxLongValues = 60; // of a table: each may be as long as the file

int stepLimit = 0;

// SQLite calls this for each new connection.
int limitSteps(sqlite3* connection, char**, const sqlite3_api_routines*)
{
    sqlite3_progress_handler(
        connection, stepLimit, [](void*) { return 1; }, nullptr);
    return SQLITE_OK;
}

void readValues(Table& table)
{
    const std::vector<ColumnDefinition>& columns = table.definition().columns;
    std::size_t longValues = 0;
    int count = 0;
    for (TableScan rows = table.scan(); rows.next() && count < kMaxRows; ++count) {
        for (std::size_t i = 0; i < columns.size(); ++i) {
            if (columns[i].isLongValue() && ++longValues > kMaxLongValues)
                continue;
            // One damaged value must not hide behind another's Error.
            attempt([&] { rows.row().value(static_cast<int>(i)); });
        }
    }
}

std::vector<Value> firstRow(Table& table)
{
    std::vector<Value> values(table.definition().columns.size());
    TableScan rows = table.scan();
    if (rows.next()) {
        for (std::size_t i = 0; i < values.size(); ++i)
            attempt([&] { values[i] = rows.row().value(static_cast<int>(i)); });
    }
    return values;
}

void seekEverywhere(Table& table)
{
    const std::vector<Value> values = firstRow(table);
    const Definition& definition = table.definition();
    for (std::size_t i = 0; i < definition.columns.size(); ++i) {
        if (!definition.columns[i].isLongValue())
            attempt([&] { table.lookup(static_cast<int>(i), values[i]); });
        attempt([&] {
            const int index = table.indexLedBy(static_cast<int>(i));
            if (index >= 0)
                table.seek(index, std::span(values).subspan(i, 1));
        });
    }
}

// Throws what the check itself throws, and harm where there must be none, as std::logic_error.
template <class Checked>
void check(Checked& checked, bool soundly)
{
    std::string harm;
    try {
        for (const Finding& finding : checkDatabase(checked)) {
            if (finding.severity == Severity::Harmful)
                harm += finding.table + ", page " + std::to_string(finding.page) + ", row "
                        + std::to_string(finding.row) + ": " + finding.text + '\n';
        }
    } catch (const Error& error) {
        throw std::logic_error(std::string("the deep check throws: ") + error.what());
    }
    if (soundly && !harm.empty())
        throw std::logic_error(harm);
}

} // namespace

StepLimit::StepLimit(int steps)
{
    stepLimit = steps;
    sqlite3_auto_extension(reinterpret_cast<void (*)()>(limitSteps));
}

StepLimit::~StepLimit()
{
    sqlite3_cancel_auto_extension(reinterpret_cast<void (*)()>(limitSteps));
}

std::vector<std::string> allTables(Database& database)
{
    std::vector<std::string> names;
    for (const CatalogueObject& object : database.store().objects()) {
        if (object.isLocalTable() && names.size() < kMaxTables)
            names.push_back(object.name);
    }
    return names;
}

void readRows(Database& database, const std::string& select)
{
    attempt([&] {
        Recordset rows = database.query(select);
        const auto width = static_cast<int>(rows.columns().size());
        for (int count = 0; count < kMaxRows && rows.next(); ++count) {
            for (int i = 0; i < width; ++i)
                attempt([&] { rows.value(i); });
        }
    });
}

void readEverything(Database& database)
{
    for (const std::string& name : allTables(database)) {
        attempt([&] { database.tableDef(name); });
        attempt([&] { database.rowCount(name); });
        attempt([&] { readValues(database.store().table(name)); });
        attempt([&] { seekEverywhere(database.store().table(name)); });
        readRows(database, "SELECT * FROM [" + name + "]");
    }
    const char* const queries[] = {
        "SELECT S.*, NAIM FROM SPSTUD S INNER JOIN SPGRUP G ON S.IDG = G.IDG ORDER BY FAM, D_R",
        "SELECT IDG, Count(*), Max(MEMO) FROM SPSTUD WHERE FAM LIKE 'С*' GROUP BY IDG",
        "SELECT * FROM POS, KINDS WHERE T > 'в' OR UV < 0",
    };
    for (const char* query : queries)
        readRows(database, query);
}

void reopen(FileSystem& files, bool soundly)
{
    const bool opened = attempt([&] {
        const auto database = Database::open(files, kFile, OpenMode::ReadOnly);
        readEverything(*database);
        check(database->store(), soundly);
    });
    if (soundly && !opened)
        throw std::logic_error("a sound file is refused");
    if (!opened)
        attempt([&] { check(*Pager::open(files, kFile, true), false); });
}

} // namespace jet::fuzz
