#pragma once

#include "jet/storage/file.h"

#include <filesystem>
#include <map>
#include <string>
#include <vector>

namespace jet::test {

// Everything in a database as texts that do not depend on where it lies: of each table its
// columns, indexes, last counter value and, sorted, its rows. Objects are named instead of
// numbered.
std::map<std::string, std::vector<std::string>> contentOf(FileSystem& files,
                                                          const std::filesystem::path& path);

// Both hold the same.
void expectSameContent(FileSystem& files, const std::filesystem::path& before,
                       const std::filesystem::path& after);

// What the deep check finds harmful, "" if nothing.
std::string harmfulFindings(FileSystem& files, const std::filesystem::path& path);

} // namespace jet::test
