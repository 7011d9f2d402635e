#pragma once

#include "jet/sql/errorslot.h"
#include "jet/sql/rowlist.h"
#include "jet/sql/statementcache.h"
#include "jet/sql/storeschema.h"
#include "jet/sql/virtualtable.h"
#include "jet/storage/store.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>

#include <sqlite3.h>

namespace jet::sql {

// Whoever reads rows while others may want to change them.
class Reader
{
public:
    virtual ~Reader() = default;
    // Takes all rows still to come into memory, lets go of the tables and leaves the list of
    // readers. A failure to read is the reader's to report, not the caller's.
    virtual void detach() noexcept = 0;
};

// Runs Jet SQL on one store: a private SQLite connection in memory whose only tables are
// views of the store's.
class Engine
{
public:
    explicit Engine(Store& store);
    Engine(const Engine&) = delete;
    Engine& operator=(const Engine&) = delete;

    // Translates and prepares, or finds a statement of the same text. Throws Error.
    StatementCache::Pointer prepare(std::string_view text);
    // True when there is a row. Throws what went wrong below SQLite, or SQLite's own failure,
    // with the statement reset.
    bool step(sqlite3_stmt* statement);
    // Runs a changing statement to its end and gives the rows changed.
    std::int64_t run(sqlite3_stmt* statement);
    // The rows of a SELECT where SQLite is not needed for them.
    std::optional<RowList> rowList(const PreparedStatement& select)
    {
        return RowList::of(select, m_store);
    }
    // Rows that a SELECT gives.
    std::int64_t count(PreparedStatement& select);

    // Must be called before any row or definition changes and before a rollback.
    void detachReaders() noexcept;
    void addReader(Reader& reader) { m_readers.insert(&reader); }
    void removeReader(Reader& reader) { m_readers.erase(&reader); }

private:
    void forgetStaleTables();
    void makeTable(const std::string& name);
    bool isPlanFit(const PreparedStatement& statement);
    void execute(const std::string& sqlite);
    StatementHandle compile(const std::string& sqlite);

    Store& m_store;
    ErrorSlot m_errors;
    TableModule m_module;
    StoreSchema m_schema;
    std::unique_ptr<sqlite3, decltype(&sqlite3_close_v2)> m_connection;
    std::uint64_t m_schemaVersion;  // of the tables below and all cached statements
    std::set<std::string> m_tables; // that SQLite knows
    StatementCache m_cache;
    std::set<Reader*> m_readers;
};

} // namespace jet::sql
