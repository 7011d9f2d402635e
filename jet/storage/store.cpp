#include "jet/storage/store.h"

#include "jet/error.h"
#include "jet/storage/catalogue.h"
#include "jet/storage/describe.h"
#include "jet/storage/filekind.h"
#include "jet/storage/jet3/convert.h"
#include "jet/storage/newdatabase.h"
#include "jet/storage/opentables.h"
#include "jet/storage/recovery.h"
#include "jet/storage/schemaeditor.h"
#include "jet/text.h"

#include <algorithm>
#include <cassert>
#include <unordered_map>

namespace jet {

struct Store::Impl
{
    explicit Impl(std::unique_ptr<Pager> opened, std::unique_ptr<FileSystem> converted = nullptr)
        : copy(std::move(converted))
        , pager(std::move(opened))
        , allocator(*pager)
        , tables(*pager, allocator)
        , catalogue(*pager, tables)
        , editor(*pager, allocator, tables, catalogue)
    {}

    std::uint64_t version() const { return changes + pager->rollbackCount(); }

    // The catalogue object of a table that is to be changed.
    const CatalogueObject& object(std::string_view name)
    {
        if (const CatalogueObject* entry = catalogue.findTable(name))
            return *entry;
        throw Error(Fault::UnknownName, "нет таблицы «" + std::string(name) + "»");
    }

    // Its properties, or none when they are damaged: the table still shows all its columns
    // and rows.
    Properties readableProperties(std::uint32_t id)
    {
        try {
            return catalogue.properties(id);
        } catch (const Error& error) {
            if (error.fault() != Fault::Damaged)
                throw;
            return {};
        }
    }

    Table& openTable(const CatalogueObject& entry)
    {
        Table& table = tables.get(entry.id, entry.name);
        const Properties properties = readableProperties(entry.id);
        std::vector<std::uint16_t> required, filled;
        for (const ColumnDefinition& column : table.definition().columns) {
            if (properties.columnFlag(column.name, "Required"))
                required.push_back(column.id);
            // Without the property the engine has always taken empty texts.
            if (properties.hasColumn(column.name, "AllowZeroLength")
                && !properties.columnFlag(column.name, "AllowZeroLength"))
                filled.push_back(column.id);
        }
        table.setColumnRules(std::move(required), std::move(filled));
        return table;
    }

    Table* find(std::string_view name)
    {
        if (version() != foundAt) {
            found.clear();
            foundAt = version();
        }
        std::string key = foldName(name);
        if (const auto known = found.find(key); known != found.end())
            return known->second;
        const CatalogueObject* const entry = catalogue.findTable(name);
        Table* const table = entry ? &openTable(*entry) : nullptr;
        found.emplace(std::move(key), table);
        return table;
    }

    Table& userTable(std::string_view name)
    {
        const CatalogueObject& entry = object(name);
        if (!entry.isUserTable())
            throw Error(Fault::Unsupported, "системную таблицу изменить нельзя", entry.name);
        return tables.get(entry.id, entry.name);
    }

    void requireNotCancelled() const
    {
        if (cancelled)
            throw Error(Fault::Unsupported, "транзакция уже отменена");
    }

    std::unique_ptr<FileSystem> copy; // holds what an Access 95/97 file was read into
    std::unique_ptr<Pager> pager;
    PageAllocator allocator;
    OpenTables tables;
    Catalogue catalogue;
    SchemaEditor editor;
    std::uint64_t changes = 1;

    // Names already looked up, valid for one version.
    std::unordered_map<std::string, Table*> found;
    std::uint64_t foundAt = 0;

    std::function<void()> beforeChange;

    int depth = 0;
    bool cancelled = false; // an inner rollback has undone the whole; depth > 0
};

namespace {

// Null when the file is not of Access 95/97.
std::unique_ptr<FileSystem> readOlderFile(FileSystem& files, const std::filesystem::path& path)
{
    auto file = openRecovered(files, path, true);
    Bytes start(std::min<std::uint64_t>(file->size(), kPageSize));
    file->read(0, start);
    return kindOf(start) == FileKind::Jet3 ? jet3::convertInMemory(std::move(file), path) : nullptr;
}

} // namespace

Store::Store(std::unique_ptr<Impl> impl)
    : m_impl(std::move(impl))
{}

Store::~Store() = default;

std::unique_ptr<Store> Store::open(FileSystem& files, const std::filesystem::path& path,
                                   OpenMode mode)
{
    std::unique_ptr<Pager> pager;
    std::unique_ptr<FileSystem> copy;
    try {
        pager = Pager::open(files, path, mode == OpenMode::ReadOnly);
    } catch (const Error& error) {
        if (error.fault() != Fault::UnsupportedVersion)
            throw;
        const std::filesystem::path target = withoutLinks(path);
        copy = readOlderFile(files, target);
        if (!copy)
            throw;
        pager = Pager::open(*copy, target, true);
    }
    auto store = std::unique_ptr<Store>(
        new Store(std::make_unique<Impl>(std::move(pager), std::move(copy))));
    store->objects(); // a file whose catalogue cannot be read is refused at once
    return store;
}

std::unique_ptr<Store> Store::create(FileSystem& files, const std::filesystem::path& path,
                                     const CreateOptions& options)
{
    auto pager = Pager::create(files, path, newDatabaseImage(newHeader(options)));
    return std::unique_ptr<Store>(new Store(std::make_unique<Impl>(std::move(pager))));
}

Pager& Store::pager()
{
    return *m_impl->pager;
}

PageAllocator& Store::allocator()
{
    return m_impl->allocator;
}

void Store::setBeforeChange(std::function<void()> call)
{
    m_impl->beforeChange = std::move(call);
}

void Store::announceChange()
{
    requireWritable();
    if (m_impl->beforeChange)
        m_impl->beforeChange();
}

void Store::requireWritable() const
{
    if (isOlderFormat())
        throw Error(Fault::ReadOnly, "это файл Access 95/97, он открыт только для чтения; чтобы "
                                     "изменять данные, сожмите его, и он получит нынешний формат");
    if (m_impl->pager->readOnly())
        throw Error(Fault::ReadOnly, "база данных открыта только для чтения");
}

bool Store::isOlderFormat() const
{
    return m_impl->copy != nullptr;
}

const std::vector<CatalogueObject>& Store::objects()
{
    return m_impl->catalogue.objects();
}

Table* Store::findTable(std::string_view name)
{
    return m_impl->find(name);
}

Table& Store::table(std::string_view name)
{
    if (Table* const found = m_impl->find(name))
        return *found;
    throw Error(Fault::UnknownName, "нет таблицы «" + std::string(name) + "»");
}

TableDef Store::describe(std::string_view name)
{
    const CatalogueObject& object = m_impl->object(name);
    const Definition& definition = m_impl->tables.get(object.id, object.name).definition();
    return describeTable(object, definition, m_impl->readableProperties(object.id));
}

std::uint64_t Store::schemaVersion() const
{
    return m_impl->version();
}

void Store::createTable(const TableDef& definition)
{
    requireWritable();
    assert(m_impl->pager->inTransaction());
    ++m_impl->changes;
    m_impl->editor.createTable(definition);
}

void Store::dropTable(std::string_view name)
{
    requireWritable();
    assert(m_impl->pager->inTransaction());
    ++m_impl->changes;
    m_impl->editor.dropTable(m_impl->object(name));
}

void Store::appendField(std::string_view table, const Field& field)
{
    requireWritable();
    assert(m_impl->pager->inTransaction());
    ++m_impl->changes;
    m_impl->editor.appendField(m_impl->userTable(table), field);
}

void Store::dropField(std::string_view table, std::string_view field)
{
    requireWritable();
    assert(m_impl->pager->inTransaction());
    ++m_impl->changes;
    m_impl->editor.dropField(m_impl->userTable(table), field);
}

void Store::createIndex(std::string_view table, const Index& index)
{
    requireWritable();
    assert(m_impl->pager->inTransaction());
    ++m_impl->changes;
    m_impl->editor.createIndex(m_impl->userTable(table), index);
}

void Store::dropIndex(std::string_view table, std::string_view index)
{
    requireWritable();
    assert(m_impl->pager->inTransaction());
    ++m_impl->changes;
    m_impl->editor.dropIndex(m_impl->userTable(table), index);
}

void Store::beginTransaction()
{
    m_impl->requireNotCancelled();
    if (m_impl->depth == 0)
        m_impl->pager->beginTransaction();
    ++m_impl->depth;
}

void Store::commitTransaction()
{
    Impl& impl = *m_impl;
    assert(impl.depth > 0);
    --impl.depth;
    if (impl.cancelled) {
        impl.cancelled = impl.depth > 0;
        throw Error(Fault::Unsupported, "транзакция уже отменена");
    }
    if (impl.depth == 0)
        impl.pager->commit();
}

void Store::rollbackTransaction()
{
    Impl& impl = *m_impl;
    assert(impl.depth > 0);
    --impl.depth;
    if (!impl.cancelled)
        impl.pager->rollback();
    impl.cancelled = impl.depth > 0;
}

bool Store::inTransaction() const
{
    return m_impl->depth > 0;
}

StatementScope::StatementScope(Store& store)
    : m_store(store)
    , m_ownTransaction(!store.inTransaction())
{
    if (m_ownTransaction)
        m_store.beginTransaction();
    m_store.m_impl->requireNotCancelled();
    m_store.pager().markStatement();
}

StatementScope::~StatementScope()
{
    if (!m_open || m_store.m_impl->cancelled)
        return;
    m_store.pager().rollbackStatement();
    if (m_ownTransaction)
        m_store.rollbackTransaction();
}

void StatementScope::done()
{
    m_open = false;
    m_store.pager().releaseStatement();
    if (m_ownTransaction)
        m_store.commitTransaction();
}

} // namespace jet
