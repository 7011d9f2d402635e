#pragma once

#include "jet/storage/file.h"

#include <filesystem>
#include <memory>

namespace jet::jet3 {

// Reads an Access 95/97 file (Jet 3) and makes of it a database of the present format, which
// stands under the same path in a file system of its own, in memory. Tables, rows, indexes,
// relationships, saved queries, properties and rights go over; forms, reports and modules
// keep the bytes of their entries only. Throws Error like Pages, and Limit for a record that
// is too long with two bytes a character.
std::unique_ptr<FileSystem> convertInMemory(std::unique_ptr<File> older,
                                            const std::filesystem::path& path);

} // namespace jet::jet3
