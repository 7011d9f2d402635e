#include "jet/sql/engine.h"

#include "jet/error.h"
#include "jet/sql/collation.h"
#include "jet/sql/fragment.h"
#include "jet/sql/functions.h"
#include "jet/sql/outerjoins.h"
#include "jet/sql/sqliteerror.h"
#include "jet/text.h"

#include <new>
#include <utility>

namespace jet::sql {

namespace {

// Makes sure that a statement is ready for its next use however this one ends.
class ResetGuard
{
public:
    explicit ResetGuard(sqlite3_stmt* statement)
        : m_statement(statement)
    {}
    ~ResetGuard() { sqlite3_reset(m_statement); }
    ResetGuard(const ResetGuard&) = delete;
    ResetGuard& operator=(const ResetGuard&) = delete;

private:
    sqlite3_stmt* m_statement;
};

std::unique_ptr<sqlite3, decltype(&sqlite3_close_v2)> connect()
{
    sqlite3* raw = nullptr;
    const int code =
        sqlite3_open_v2(":memory:", &raw,
                        SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_NOMUTEX, nullptr);
    std::unique_ptr<sqlite3, decltype(&sqlite3_close_v2)> connection(raw, sqlite3_close_v2);
    if (!raw)
        throw std::bad_alloc();
    check(raw, code);
    return connection;
}

// The engine keeps its own tables; a row less in the catalogue is a table lost.
void requireChangeable(Store& store, const Translation& change)
{
    if (change.kind != StatementKind::Insert && change.kind != StatementKind::Update
        && change.kind != StatementKind::Delete)
        return;
    for (const CatalogueObject& object : store.objects()) {
        if (object.isLocalTable() && (object.flags & objectflag::kEngineSystem) != 0
            && sameName(object.name, change.table))
            throw Error(Fault::Unsupported, "системную таблицу изменить нельзя", object.name);
    }
}

} // namespace

Engine::Engine(Store& store)
    : m_store(store)
    , m_module{store, m_errors}
    , m_schema(store)
    , m_connection(connect())
    , m_schemaVersion(store.schemaVersion())
{
    registerCollation(m_connection.get());
    registerAllFunctions(m_connection.get(), m_errors);
    registerModule(m_connection.get(), m_module);
    // A name in double quotes that is unknown is an error and not a text.
    sqlite3_db_config(m_connection.get(), SQLITE_DBCONFIG_DQS_DML, 0, nullptr);
    sqlite3_db_config(m_connection.get(), SQLITE_DBCONFIG_DQS_DDL, 0, nullptr);
    execute("PRAGMA temp_store = MEMORY"); // no rows of the file in other files
}

StatementCache::Pointer Engine::prepare(std::string_view text)
{
    forgetStaleTables();
    if (auto known = m_cache.find(text)) {
        if (isPlanFit(*known))
            return known;
    }
    auto statement = std::make_shared<PreparedStatement>();
    Statement tree = parse(text);
    simplifyOuterJoins(tree);
    statement->translation = translate(tree, m_schema);
    requireChangeable(m_store, statement->translation);
    statement->listsRows = RowList::isEnoughFor(tree);
    if (statement->translation.sqlite.empty())
        return statement;
    for (const std::string& table : statement->translation.tables) {
        makeTable(table);
        statement->rowCounts.push_back(ColumnStatistics::rowCount(m_store.table(table)));
    }
    statement->handle = compile(statement->translation.sqlite);
    m_cache.add(std::string(text), statement);
    return statement;
}

bool Engine::step(sqlite3_stmt* statement)
{
    m_errors.clear();
    const int code = sqlite3_step(statement);
    if (code == SQLITE_ROW)
        return true;
    if (code == SQLITE_DONE)
        return false;
    const ResetGuard guard(statement);
    m_errors.rethrow();
    throwSqliteError(m_connection.get(), code);
}

std::int64_t Engine::run(sqlite3_stmt* statement)
{
    const ResetGuard guard(statement);
    const sqlite3_int64 before = sqlite3_total_changes64(m_connection.get());
    while (step(statement)) {
    }
    return sqlite3_total_changes64(m_connection.get()) - before;
}

std::int64_t Engine::count(PreparedStatement& select)
{
    if (!select.counter)
        select.counter = compile("SELECT count(*) FROM (" + select.translation.sqlite + ')');
    const ResetGuard guard(select.counter.get());
    return step(select.counter.get()) ? sqlite3_column_int64(select.counter.get(), 0) : 0;
}

void Engine::detachReaders() noexcept
{
    while (!m_readers.empty())
        (*m_readers.begin())->detach();
}

// Everything prepared refers to tables as they were.
void Engine::forgetStaleTables()
{
    if (m_schemaVersion == m_store.schemaVersion())
        return;
    detachReaders();
    m_cache.clear();
    for (const std::string& table : std::exchange(m_tables, {}))
        execute("DROP TABLE " + quotedName(table));
    m_schema.clear();
    m_schemaVersion = m_store.schemaVersion();
}

void Engine::makeTable(const std::string& name)
{
    if (m_tables.contains(name))
        return;
    execute("CREATE VIRTUAL TABLE " + quotedName(name) + " USING " + kModule);
    m_tables.insert(name);
}

// A table that has grown since may ask for another order of joins.
bool Engine::isPlanFit(const PreparedStatement& statement)
{
    constexpr double kGrowth = 8;
    for (std::size_t i = 0; i < statement.rowCounts.size(); ++i) {
        const double now =
            ColumnStatistics::rowCount(m_store.table(statement.translation.tables[i]));
        if (now > statement.rowCounts[i] * kGrowth || now * kGrowth < statement.rowCounts[i])
            return false;
    }
    return true;
}

void Engine::execute(const std::string& sqlite)
{
    run(compile(sqlite).get());
}

StatementHandle Engine::compile(const std::string& sqlite)
{
    m_errors.clear();
    sqlite3_stmt* raw = nullptr;
    const int code = sqlite3_prepare_v3(m_connection.get(), sqlite.data(),
                                        static_cast<int>(sqlite.size()), 0, &raw, nullptr);
    StatementHandle handle(raw);
    m_errors.rethrow();
    check(m_connection.get(), code);
    return handle;
}

} // namespace jet::sql
