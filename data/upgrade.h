#pragma once

namespace jet {
class Database;
}

// Brings a checked file up to date; each step acts only where the file lacks it. Must run
// inside one jet::Transaction. All throw jet::Error.
namespace data::upgrade {

// 1. Fields added by later releases, with their preset values.
void addFields(jet::Database& database);
// 2. Text fields of another size, rebuilt through a spare column; their values lose blanks
//    at both ends.
void resizeFields(jet::Database& database);
// 3. Months that the month table lacks.
void refillMonths(jet::Database& database);
// 4. Tables and fields that the program uses beyond the verified ones.
void appendSupplement(jet::Database& database);

// The one row of settings of a new file.
void addSettingsRow(jet::Database& database);

} // namespace data::upgrade
