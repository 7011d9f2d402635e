#pragma once

#include "jet/database.h"
#include "tests/support/memoryfiles.h"

#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace jet::test {

// One durable step of a workload that touches every kind of stored structure.
struct CrashStep
{
    std::string name;
    std::function<void(Database&)> run;
};

// Each step needs the ones before it. Together they fill and empty memos of several pages,
// split and merge index trees, free pages and use them again, and change definitions.
std::vector<CrashStep> crashSteps();

inline const std::filesystem::path kCrashPath = "folder/base.mdb";

// Every how many points one is tried: $JURNAL_CRASH_STRIDE (1 tries all) or the usual number.
int crashStride(int usual);

// What a step leaves that was cut off at its n-th operation on files.
struct Interrupted
{
    std::vector<std::uint8_t> before, file, journal;
    bool finished = false; // it has no n-th operation
};
Interrupted interrupt(const std::vector<std::uint8_t>& before, const CrashStep& step, int n);
// The first step, cut off when a part of it was in the file.
Interrupted halfWritten();

// The database that the first step starts from.
void makeCrashDatabase(Database& database);

// Definitions and rows of all user tables, one line each; equal for equal content.
std::string contentText(Database& database);

// What the deep check finds that does harm, "" when nothing.
std::string harmfulFindings(Database& database);

} // namespace jet::test
