#pragma once

#include "jet/error.h"
#include "jet/storage/file.h"

#include <filesystem>
#include <string>
#include <vector>

namespace jet {
class Database;
}

namespace jet::fuzz {

inline const std::filesystem::path kFile = "fuzz.mdb";

// Runs the body; true unless it ended with an Error.
template <class Body>
bool attempt(const Body& body)
{
    try {
        body();
        return true;
    } catch (const Error&) {
        return false;
    }
}

// While one exists, SQLite gives up each statement after so many steps, so that a product of
// tables ends.
class StepLimit
{
public:
    explicit StepLimit(int steps);
    StepLimit(const StepLimit&) = delete;
    StepLimit& operator=(const StepLimit&) = delete;
    ~StepLimit();
};

// All local tables, system ones included, up to a bound.
std::vector<std::string> allTables(Database& database);
// Reads all rows of all tables by the engine's layers: values, indexes, queries.
void readEverything(Database& database);
// The first rows of a SELECT.
void readRows(Database& database, const std::string& select);
// Opens the file, reads everything and runs the deep check, also where the catalogue is too
// damaged to open. Throws std::logic_error when the check throws or, with `soundly`, when the
// file is refused or found harmed.
void reopen(FileSystem& files, bool soundly);

} // namespace jet::fuzz
