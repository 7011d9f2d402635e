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
// The deep check, which must not throw.
void check(FileSystem& files);
// Throws std::logic_error with what the deep check finds harmful.
void requireSound(FileSystem& files);

} // namespace jet::fuzz
