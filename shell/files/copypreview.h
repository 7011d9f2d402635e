#pragma once

#include "shell/files/archive.h"

#include <cstdint>

namespace shell {

// What a copy holds, so that the right one is restored.
struct CopyPreview
{
    std::int64_t students = 0;
    std::int64_t absences = 0;
    std::int64_t grades = 0;
    qint64 bytes = 0; // unpacked
};

// Reads a journal file; its own file is not changed. Throws jet::Error, also for a file that
// is no journal.
CopyPreview previewOf(const QString& journal);
// Unpacks the copy into a folder of its own, reads it and removes the folder again.
CopyPreview previewOf(const ArchivedCopy& copy);

} // namespace shell
