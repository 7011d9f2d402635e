#include "data/ddl.h"

#include "jet/database.h"

#include <array>
#include <cassert>

namespace data::ddl {

namespace {

// Type words by DAO type code; 0 stands for the counter, empty ones are not used.
constexpr std::array<std::string_view, 13> kTypeWords = {
    "COUNTER", "BIT",      "BYTE", "SMALLINT", "INTEGER", "",     "SINGLE",
    "",        "DATETIME", "",     "STRING",   "",        "MEMO",
};

std::string typeWord(const FieldDefinition& definition)
{
    const bool counter = (definition.attributes & jet::attribute::kAutoIncrement) != 0;
    const std::size_t code = counter ? 0 : static_cast<std::size_t>(definition.type);
    assert(!kTypeWords.at(code).empty());
    std::string word(kTypeWords.at(code));
    if (definition.type == jet::FieldType::Text)
        word += '(' + std::to_string(definition.size) + ')';
    return word;
}

// "+IDG;-DAT" becomes "IDG, DAT DESC".
std::string columnList(std::string_view fields)
{
    std::string list;
    while (!fields.empty()) {
        const std::size_t end = std::min(fields.find(';'), fields.size());
        const std::string_view one = fields.substr(0, end);
        if (!list.empty())
            list += ", ";
        list += one.substr(1);
        if (one.front() == '-')
            list += " DESC";
        fields.remove_prefix(std::min(end + 1, fields.size()));
    }
    return list;
}

} // namespace

std::string createTable(const TableDefinition& table)
{
    std::string sql = "CREATE TABLE " + std::string(table.name) + " (";
    bool first = true;
    for (const FieldDefinition& definition : table.fields) {
        if (!first)
            sql += ", ";
        first = false;
        sql += std::string(definition.name) + ' ' + typeWord(definition);
    }
    return sql + ')';
}

std::string createIndex(const TableDefinition& table, const IndexDefinition& index)
{
    std::string sql = "CREATE INDEX " + std::string(index.name) + " ON " + std::string(table.name)
                      + " (" + columnList(index.fields) + ')';
    // The key of HOLI is an ordinary index in every journal file.
    if (index.name.find("PrimaryKey") != std::string_view::npos && table.name != "HOLI")
        sql += " WITH PRIMARY";
    return sql;
}

std::string dropIndex(std::string_view table, std::string_view index)
{
    return "DROP INDEX " + std::string(index) + " ON " + std::string(table);
}

std::string dropColumn(std::string_view table, std::string_view field)
{
    return "ALTER TABLE " + std::string(table) + " DROP COLUMN " + std::string(field);
}

jet::Field field(const FieldDefinition& definition)
{
    return field(definition, definition.name);
}

jet::Field field(const FieldDefinition& definition, std::string_view name)
{
    jet::Field result;
    result.name = name;
    result.type = definition.type;
    result.size = definition.size;
    result.attributes = definition.attributes;
    result.allowZeroLength = definition.type == jet::FieldType::Text;
    return result;
}

void create(jet::Database& database, const TableDefinition& table)
{
    database.execute(createTable(table));
    for (const IndexDefinition& index : table.indexes)
        database.execute(createIndex(table, index));
}

} // namespace data::ddl
