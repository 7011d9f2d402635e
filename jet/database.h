#pragma once

#include "jet/recordset.h"
#include "jet/tabledef.h"
#include "jet/value.h"

#include <cstdint>
#include <filesystem>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace jet {

class FileSystem;
class Store;
namespace sql {
class Engine;
struct Translation;
} // namespace sql

enum class OpenMode {
    // Read and write; no other process may have the file open. Access 95/97 files (Jet 3)
    // open read-only all the same, see Database::readOnly().
    Exclusive,
    ReadOnly,
};

struct CreateOptions
{
    bool encoded = false;             // DAO's dbEncrypt (2)
    std::uint16_t collation = 0x0409; // Windows LCID; only the General order is written
    std::uint16_t codePage = 1252;
};

// One open Jet 4 file. Every execute() and every change through the methods below is one
// atomic, durable step unless a Transaction is open, which makes all within it one step.
// Not thread-safe; one Database per file and process.
class Database
{
public:
    // Rolls back what a crash left half-written, then opens. Throws Error: NotFound, Locked,
    // Permission, NotADatabase, UnsupportedVersion, PasswordProtected, Damaged.
    static std::unique_ptr<Database> open(const std::filesystem::path& path,
                                          OpenMode mode = OpenMode::Exclusive);
    // Refuses an existing path (Fault::Exists).
    static std::unique_ptr<Database> create(const std::filesystem::path& path,
                                            const CreateOptions& options = {});
    // The same over another file layer, for tests and fault injection.
    static std::unique_ptr<Database> open(FileSystem& files, const std::filesystem::path& path,
                                          OpenMode mode);
    static std::unique_ptr<Database> create(FileSystem& files, const std::filesystem::path& path,
                                            const CreateOptions& options);
    ~Database();

    const std::filesystem::path& path() const;
    bool readOnly() const;

    // User tables in catalogue order (system and Access-internal ones left out).
    std::vector<std::string> tableNames() const;
    bool hasTable(std::string_view name) const;
    // Throws Error (UnknownName) when there is none. Any table, system ones included.
    TableDef tableDef(std::string_view name) const;
    // Counts the live rows; the counter in the file is not trusted.
    std::int64_t rowCount(std::string_view table) const;

    void createTable(const TableDef& definition);
    void dropTable(std::string_view table);
    void appendField(std::string_view table, const Field& field);
    void dropField(std::string_view table, std::string_view field);
    void createIndex(std::string_view table, const Index& index);
    void dropIndex(std::string_view table, std::string_view index);

    // Runs one Jet SQL statement that changes rows or definitions; gives the rows changed.
    std::int64_t execute(std::string_view sql);
    // Runs one SELECT.
    Recordset query(std::string_view sql);
    // Runs one SELECT and gives all rows at once.
    std::vector<std::vector<Value>> rows(std::string_view sql);
    // Rows that a SELECT gives; 0 when empty.
    std::int64_t count(std::string_view sql);

    // Adds one row; columns not named take their default value, else NULL (Boolean False,
    // counters the next number).
    // Gives the counter value of the new row, 0 when the table has no counter.
    std::int64_t insert(std::string_view table,
                        std::span<const std::pair<std::string, Value>> values);

    // For tools that look below SQL. Whoever changes anything through it must not leave a
    // Recordset open meanwhile.
    Store& store() { return *m_store; }

private:
    friend class Appender;
    friend class Transaction;
    explicit Database(std::unique_ptr<Store> store);
    // Before any change: throws Error (ReadOnly), and lets open record sets keep their rows.
    void prepareChange();
    std::int64_t changeDefinition(const sql::Translation& change);

    std::unique_ptr<Store> m_store;
    std::unique_ptr<sql::Engine> m_engine; // reads the store
};

// Adds many rows to one table without parsing SQL for each.
class Appender
{
public:
    // Throws Error (UnknownName) for a table or column that does not exist.
    Appender(Database& database, std::string_view table, std::span<const std::string> columns);
    // One value per column named. Gives the counter value of the new row or 0.
    std::int64_t append(std::span<const Value> values);

private:
    void findColumns();
    void findDefaults();

    Database& m_database;
    std::string m_table;
    std::vector<std::string> m_columns;
    std::uint64_t m_schemaVersion = 0;   // when the positions were looked up
    std::vector<int> m_positions;        // of each given column in the table definition
    std::vector<int> m_defaultPositions; // of columns not given that have a default value
    std::string m_defaults;              // a SELECT of those values
    std::vector<Value> m_row;
};

// Groups statements into one atomic, durable step. A statement refused inside it leaves no
// trace and ends neither the transaction nor what was done before. Rolls back in the
// destructor unless committed. May be nested: only the outermost one writes, and an inner
// rollback undoes the whole.
class Transaction
{
public:
    explicit Transaction(Database& database);
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;
    ~Transaction();
    void commit();

private:
    Database& m_database;
    bool m_open = true;
};

} // namespace jet
