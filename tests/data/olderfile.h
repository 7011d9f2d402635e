#pragma once

#include "data/schema.h"
#include "jet/database.h"
#include "tests/support/outsidecheckers.h"

#include <QString>

#include <functional>
#include <string>
#include <string_view>
#include <vector>

// A journal file as another release might have left it: the verified tables, changed as a
// test asks, with one settings row, the twelve months and no supplement.
class OlderFile
{
public:
    OlderFile();

    // Definition changes, before write().
    data::TableDefinition& table(std::string_view name);
    data::FieldDefinition& field(std::string_view table, std::string_view name);
    void removeTable(std::string_view name);
    void removeField(std::string_view table, std::string_view name);
    // Takes away all that the upgrade adds.
    void removeAddedFields();

    // Writes the file; `fill` may add rows and whatever else.
    void write(const std::function<void(jet::Database&)>& fill = {});

    const std::filesystem::path& path() const { return m_path; }
    QString name() const;
    std::vector<std::uint8_t> bytes() const { return jet::test::bytesOf(m_path); }
    // What stands in the file's folder beside it.
    std::vector<std::string> leftovers() const;

    // Reopens the file for reading.
    std::unique_ptr<jet::Database> reopen() const;
    // The first value of a query's first row, "<none>" without rows.
    std::string value(const std::string& sql) const;
    // The first column of all rows.
    std::vector<std::string> values(const std::string& sql) const;

private:
    jet::test::TemporaryFolder m_folder;
    std::filesystem::path m_path;
    std::vector<data::TableDefinition> m_tables;
};
