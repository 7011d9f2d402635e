#pragma once

#include "jet/storage/file.h"

#include <filesystem>

namespace jet {

// What a journal found beside a database file means. A journal knows of every sector of its
// transaction how it was and how it was to become, so the file's own sectors tell:
//
//   the file's sectors are          the journal
//   all old, or all new             is done with: the file is whole           Settled
//   some old, some new              is rolled back                            Hot
//   neither, but none is new        belongs to another or an older file       Foreign
//   neither, but none is old        belongs to a file changed since           Foreign
//   some old, some new, some else   would help a file that is gone            Unusable
//
// That a file which has all of the transaction is left so matters when a newer copy was put
// in its place: taking pages back under later changes would ruin it.
enum class JournalState {
    None,
    Unfinished, // was cut off while it was written; the file was not touched yet
    Settled,    // needed no longer, the file is as before or as after the transaction
    Hot,        // must be rolled back before the file is read
    Foreign,    // says nothing about this file, and must be kept: it may belong to another
    Unusable,   // the file is half-written or may be, and the journal does not fit or is damaged
};

// Only reads. Throws Error when the journal cannot be read.
JournalState inspectJournal(FileSystem& files, const std::filesystem::path& database,
                            const File& file);

} // namespace jet
