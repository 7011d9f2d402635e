#include "jet/database.h"

#include "jet/error.h"
#include "jet/recordsetimpl.h"
#include "jet/sql/engine.h"
#include "jet/storage/file.h"
#include "jet/storage/store.h"

#include <utility>

namespace jet {

Database::Database(std::unique_ptr<Store> store)
    : m_store(std::move(store))
    , m_engine(std::make_unique<sql::Engine>(*m_store))
{}

Database::~Database() = default;

std::unique_ptr<Database> Database::open(const std::filesystem::path& path, OpenMode mode)
{
    return open(FileSystem::system(), path, mode);
}

std::unique_ptr<Database> Database::create(const std::filesystem::path& path,
                                           const CreateOptions& options)
{
    return create(FileSystem::system(), path, options);
}

std::unique_ptr<Database> Database::open(FileSystem& files, const std::filesystem::path& path,
                                         OpenMode mode)
{
    return std::unique_ptr<Database>(new Database(Store::open(files, path, mode)));
}

std::unique_ptr<Database> Database::create(FileSystem& files, const std::filesystem::path& path,
                                           const CreateOptions& options)
{
    return std::unique_ptr<Database>(new Database(Store::create(files, path, options)));
}

const std::filesystem::path& Database::path() const
{
    return m_store->pager().path();
}

bool Database::readOnly() const
{
    return m_store->pager().readOnly();
}

std::vector<std::string> Database::tableNames() const
{
    std::vector<std::string> names;
    for (const CatalogueObject& object : m_store->objects()) {
        if (object.isUserTable())
            names.push_back(object.name);
    }
    return names;
}

bool Database::hasTable(std::string_view name) const
{
    return m_store->findTable(name) != nullptr;
}

TableDef Database::tableDef(std::string_view name) const
{
    return m_store->describe(name);
}

std::int64_t Database::rowCount(std::string_view table) const
{
    return m_store->table(table).countRows();
}

void Database::prepareChange()
{
    m_store->announceChange();
    m_engine->detachReaders();
}

void Database::createTable(const TableDef& definition)
{
    prepareChange();
    StatementScope scope(*m_store);
    m_store->createTable(definition);
    scope.done();
}

void Database::dropTable(std::string_view table)
{
    prepareChange();
    StatementScope scope(*m_store);
    m_store->dropTable(table);
    scope.done();
}

void Database::appendField(std::string_view table, const Field& field)
{
    prepareChange();
    StatementScope scope(*m_store);
    m_store->appendField(table, field);
    scope.done();
}

void Database::dropField(std::string_view table, std::string_view field)
{
    prepareChange();
    StatementScope scope(*m_store);
    m_store->dropField(table, field);
    scope.done();
}

void Database::createIndex(std::string_view table, const Index& index)
{
    prepareChange();
    StatementScope scope(*m_store);
    m_store->createIndex(table, index);
    scope.done();
}

void Database::dropIndex(std::string_view table, std::string_view index)
{
    prepareChange();
    StatementScope scope(*m_store);
    m_store->dropIndex(table, index);
    scope.done();
}

std::int64_t Database::execute(std::string_view sql)
{
    const auto statement = m_engine->prepare(sql);
    if (statement->translation.kind == sql::StatementKind::Select)
        throw Error(Fault::Syntax, "запрос на выборку ничего не изменяет");
    if (!statement->handle)
        return changeDefinition(statement->translation);
    prepareChange();
    StatementScope scope(*m_store);
    const std::int64_t changed = m_engine->run(statement->handle.get());
    scope.done();
    return changed;
}

std::int64_t Database::changeDefinition(const sql::Translation& change)
{
    prepareChange();
    StatementScope scope(*m_store);
    switch (change.kind) {
    case sql::StatementKind::CreateTable:
        m_store->createTable(change.definition);
        break;
    case sql::StatementKind::DropTable:
        m_store->dropTable(change.table);
        break;
    case sql::StatementKind::AddColumn:
        m_store->appendField(change.table, change.field);
        if (change.hasIndex)
            m_store->createIndex(change.table, change.index);
        break;
    case sql::StatementKind::DropColumn:
        m_store->dropField(change.table, change.name);
        break;
    case sql::StatementKind::CreateIndex:
        m_store->createIndex(change.table, change.index);
        break;
    case sql::StatementKind::DropIndex:
        m_store->dropIndex(change.table, change.name);
        break;
    default:
        throw Error(Fault::Unsupported, "такой запрос не поддерживается");
    }
    scope.done();
    return 0;
}

Recordset Database::query(std::string_view sql)
{
    auto statement = m_engine->prepare(sql);
    if (statement->translation.kind != sql::StatementKind::Select)
        throw Error(Fault::Syntax, "это не запрос на выборку");
    return Recordset(std::make_unique<Recordset::Impl>(*m_engine, std::move(statement)));
}

std::vector<std::vector<Value>> Database::rows(std::string_view sql)
{
    Recordset recordset = query(sql);
    const auto width = static_cast<int>(recordset.columns().size());
    std::vector<std::vector<Value>> all;
    while (recordset.next()) {
        std::vector<Value>& row = all.emplace_back();
        row.reserve(static_cast<std::size_t>(width));
        for (int i = 0; i < width; ++i)
            row.push_back(recordset.value(i));
    }
    return all;
}

std::int64_t Database::count(std::string_view sql)
{
    const auto statement = m_engine->prepare(sql);
    if (statement->translation.kind != sql::StatementKind::Select)
        throw Error(Fault::Syntax, "это не запрос на выборку");
    return m_engine->count(*statement);
}

std::int64_t Database::insert(std::string_view table,
                              std::span<const std::pair<std::string, Value>> values)
{
    std::vector<std::string> columns;
    std::vector<Value> row;
    for (const auto& [column, value] : values) {
        columns.push_back(column);
        row.push_back(value);
    }
    return Appender(*this, table, columns).append(row);
}

Transaction::Transaction(Database& database)
    : m_database(database)
{
    m_database.m_store->beginTransaction();
}

Transaction::~Transaction()
{
    if (!m_open)
        return;
    m_database.m_engine->detachReaders();
    m_database.m_store->rollbackTransaction();
}

void Transaction::commit()
{
    m_open = false;
    m_database.m_store->commitTransaction();
}

} // namespace jet
