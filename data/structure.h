#pragma once

#include <QString>

#include <optional>

namespace jet {
class Database;
}

// The structure check of a journal file.
namespace data::structure {

// Creates every verified table that the file lacks, the users with their first rows. A name
// that something else in the file has already is left for problem() to report.
void createMissingTables(jet::Database& database);

// The first contradiction to the schema, as the message to show. What the upgrade will add
// or resize is none.
std::optional<QString> problem(const jet::Database& database);

} // namespace data::structure
