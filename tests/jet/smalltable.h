#pragma once

#include "jet/storage/store.h"
#include "tests/support/memoryfiles.h"
#include "tests/support/outsidecheckers.h"

#include <fstream>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace jet::test {

inline Field field(const char* name, FieldType type, int size = 0)
{
    Field f;
    f.name = name;
    f.type = type;
    f.size = size;
    return f;
}

inline Field counter(const char* name)
{
    Field f = field(name, FieldType::Long);
    f.attributes |= attribute::kAutoIncrement;
    return f;
}

inline Index index(const char* name, std::vector<IndexField> fields)
{
    Index i;
    i.name = name;
    i.fields = std::move(fields);
    return i;
}

// A new database in memory with one table, which can be reopened and checked from outside.
class SmallTable
{
public:
    explicit SmallTable(const TableDef& definition)
        : m_name(definition.name)
        , m_store(Store::create(m_files, kFile, {}))
    {
        change([&](Table*) { m_store->createTable(definition); });
    }

    Store& store() { return *m_store; }
    Table& table() { return m_store->table(m_name); }
    const Definition& definition() { return table().definition(); }

    // Runs body(table) as one statement.
    template <class Body>
    void change(Body body)
    {
        StatementScope statement(*m_store);
        body(m_store->findTable(m_name));
        statement.done();
    }

    RowPointer insert(const std::vector<Value>& row)
    {
        RowPointer pointer;
        change([&](Table* t) { pointer = t->insert(row); });
        return pointer;
    }
    void update(RowPointer row, const std::vector<Value>& values)
    {
        change([&](Table* t) { t->update(row, values); });
    }
    void erase(RowPointer row)
    {
        change([&](Table* t) { t->erase(row); });
    }

    // Changes the stored definition as DDL cannot. Requires a table without rows.
    template <class Body>
    void redefine(Body body)
    {
        change([&](Table* t) {
            Definition d = t->definition();
            body(d);
            writeDefinition(m_store->pager(), m_store->allocator(), d);
            t->reload();
        });
    }

    void reopen()
    {
        m_store.reset();
        m_store = Store::open(m_files, kFile, OpenMode::Exclusive);
    }

    std::vector<Value> row(RowPointer pointer)
    {
        std::vector<Value> values;
        const auto view = table().find(pointer);
        for (std::size_t i = 0; view && i < definition().columns.size(); ++i)
            values.push_back(view->value(static_cast<int>(i)));
        return values;
    }

    std::string structuralErrors()
    {
        m_store.reset();
        const TemporaryFolder folder;
        const auto path = folder / kFile;
        const auto bytes = m_files.content(kFile);
        std::ofstream(path, std::ios::binary)
            .write(reinterpret_cast<const char*>(bytes.data()),
                   static_cast<std::streamsize>(bytes.size()));
        const auto errors = test::structuralErrors(path);
        m_store = Store::open(m_files, kFile, OpenMode::Exclusive);
        return errors.value_or("");
    }

private:
    static constexpr const char* kFile = "base.mdb";

    MemoryFiles m_files;
    std::string m_name;
    std::unique_ptr<Store> m_store;
};

} // namespace jet::test
