#pragma once

#include "data/schema.h"

#include <string>
#include <string_view>

namespace jet {
class Database;
}

// The data-definition statements that the schema's definitions turn into.
namespace data::ddl {

// "CREATE TABLE MONTH (MN BYTE, NAIM STRING(15))"
std::string createTable(const TableDefinition& table);
// "CREATE INDEX PrimaryKey ON MONTH (MN) WITH PRIMARY"
std::string createIndex(const TableDefinition& table, const IndexDefinition& index);
std::string dropIndex(std::string_view table, std::string_view index);
std::string dropColumn(std::string_view table, std::string_view field);

// A definition as the engine takes it for appending, under another name if given.
jet::Field field(const FieldDefinition& definition);
jet::Field field(const FieldDefinition& definition, std::string_view name);

// Creates the table with its indexes. Throws jet::Error.
void create(jet::Database& database, const TableDefinition& table);

} // namespace data::ddl
