#pragma once

#include "jet/storage/file.h"

#include <filesystem>
#include <memory>

namespace jet {

// The file itself where the path is a link, so that its journal is found by whatever name it
// is opened.
std::filesystem::path withoutLinks(const std::filesystem::path& path);

// Opens and locks a database file and undoes a transaction that was interrupted in it, which
// needs write access for a moment even to read; the lock is exclusive all that time. Throws
// Error (Locked) also when another program holds the `.ldb` beside the file, and Error
// (Damaged) when the file is half-written and its journal cannot be used.
std::unique_ptr<File> openRecovered(FileSystem& files, const std::filesystem::path& path,
                                    bool readOnly);

// Gives a journal that is not of the file another name, NAME-1, -2 and so on: it may be the
// only remedy of the file it was made for.
void setJournalAside(FileSystem& files, const std::filesystem::path& path);

} // namespace jet
