#include "tests/data/olderfile.h"

#include "data/convert.h"
#include "data/ddl.h"

#include <algorithm>

OlderFile::OlderFile()
    : m_path(m_folder / "журнал.mdb")
    , m_tables(data::verifiedTables().begin(), data::verifiedTables().end())
{}

data::TableDefinition& OlderFile::table(std::string_view name)
{
    return *std::ranges::find(m_tables, name, &data::TableDefinition::name);
}

data::FieldDefinition& OlderFile::field(std::string_view tableName, std::string_view name)
{
    return *std::ranges::find(table(tableName).fields, name, &data::FieldDefinition::name);
}

void OlderFile::removeTable(std::string_view name)
{
    std::erase_if(m_tables, [&](const auto& one) { return one.name == name; });
}

void OlderFile::removeField(std::string_view tableName, std::string_view name)
{
    std::erase_if(table(tableName).fields, [&](const auto& one) { return one.name == name; });
}

void OlderFile::removeAddedFields()
{
    for (const data::AddedField& added : data::addedFields())
        removeField(added.name.table, added.name.field);
}

void OlderFile::write(const std::function<void(jet::Database&)>& fill)
{
    auto database = jet::Database::create(m_path);
    jet::Transaction transaction(*database);
    for (const data::TableDefinition& one : m_tables)
        data::ddl::create(*database, one);
    if (database->hasTable("RASP"))
        database->execute("INSERT INTO RASP (IDR) VALUES (1);");
    if (database->hasTable("MONTH"))
        for (int month = 1; month <= 12; ++month)
            database->execute("INSERT INTO MONTH (MN, NAIM) VALUES (" + std::to_string(month)
                              + ", \"м" + std::to_string(month) + "\");");
    if (fill)
        fill(*database);
    transaction.commit();
}

QString OlderFile::name() const
{
    return data::fromPath(m_path);
}

std::vector<std::string> OlderFile::leftovers() const
{
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(m_path.parent_path()))
        if (entry.path() != m_path)
            names.push_back(entry.path().filename().string());
    return names;
}

std::unique_ptr<jet::Database> OlderFile::reopen() const
{
    return jet::Database::open(m_path, jet::OpenMode::ReadOnly);
}

std::string OlderFile::value(const std::string& sql) const
{
    const auto all = values(sql);
    return all.empty() ? "<none>" : all.front();
}

std::vector<std::string> OlderFile::values(const std::string& sql) const
{
    std::vector<std::string> texts;
    for (const auto& row : reopen()->rows(sql))
        texts.push_back(row.at(0).isNull() ? "<null>" : row.at(0).toText());
    return texts;
}
