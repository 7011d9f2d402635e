#pragma once

#include "jet/database.h"
#include "jet/storage/catalogueobject.h"
#include "jet/storage/pager.h"
#include "jet/storage/table.h"
#include "jet/storage/usagemap.h"
#include "jet/tabledef.h"

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace jet {

// Everything below SQL: pages, catalogue, tables and definition changes of one file.
class Store
{
public:
    // An Access 95/97 file is read into memory and opens read-only in either mode.
    static std::unique_ptr<Store> open(FileSystem& files, const std::filesystem::path& path,
                                       OpenMode mode);
    static std::unique_ptr<Store> create(FileSystem& files, const std::filesystem::path& path,
                                         const CreateOptions& options);
    ~Store();

    Pager& pager();
    PageAllocator& allocator();
    // Throws Error (ReadOnly), which says why, unless the database can be changed.
    void requireWritable() const;
    // Called before each statement that may change the file, while the file still is as the
    // last commit left it. What it throws stops the statement.
    void setBeforeChange(std::function<void()> call);
    // requireWritable(), then the call above.
    void announceChange();
    // The file is of Access 95/97, and what is seen here a copy in memory.
    bool isOlderFormat() const;

    const std::vector<CatalogueObject>& objects(); // re-read after a change
    // Case-insensitive; null when there is no local table of that name.
    Table* findTable(std::string_view name);
    Table& table(std::string_view name); // throws Error (UnknownName)
    TableDef describe(std::string_view name);
    // Grows with every definition change and every rollback; prepared statements and
    // virtual tables made under another number are stale.
    std::uint64_t schemaVersion() const;

    // Each requires an open statement (StatementScope).
    void createTable(const TableDef& definition);
    void dropTable(std::string_view name);
    void appendField(std::string_view table, const Field& field);
    void dropField(std::string_view table, std::string_view field);
    void createIndex(std::string_view table, const Index& index);
    void dropIndex(std::string_view table, std::string_view index);

    // Nested transactions: only the outermost commit writes; a rollback at any depth undoes
    // the whole, and the enclosing commits then throw Error.
    void beginTransaction();
    void commitTransaction();
    void rollbackTransaction();
    bool inTransaction() const;

private:
    friend class StatementScope;
    struct Impl;
    explicit Store(std::unique_ptr<Impl> impl);
    std::unique_ptr<Impl> m_impl;
};

// One statement: atomic by itself, and a transaction of its own when none is open. Undoes
// the statement's changes in the destructor unless done() was called.
class StatementScope
{
public:
    explicit StatementScope(Store& store);
    StatementScope(const StatementScope&) = delete;
    StatementScope& operator=(const StatementScope&) = delete;
    ~StatementScope();
    void done(); // keeps the changes; commits when the transaction is the statement's own

private:
    Store& m_store;
    bool m_ownTransaction;
    bool m_open = true;
};

} // namespace jet
