#pragma once

#include "import/bookimport.h"
#include "import/lessonchoice.h"
#include "shell/files/longwork.h"

namespace shell {
class Prompt;
class Session;
} // namespace shell

namespace imports {

// What an import did or would do.
struct ImportCounts
{
    std::array<RowCounts, kBooks> books;
    std::int64_t lessons = 0;   // added
    std::int64_t shortened = 0; // texts cut to the size of their field
};

// The counts of an import, nothing is written. Throws jet::Error.
ImportCounts tryImport(const Timetable& timetable, const Period& period, const LessonChoice& choice,
                       jet::Database& journal);

// Brings the reference rows and then the lessons into the journal as one durable step; lessons
// that are there already are added again. Nothing when `progress` cancelled it: the journal then
// is as before, as it is when jet::Error is thrown.
std::optional<ImportCounts> importLessons(const Timetable& timetable, const Period& period,
                                          const LessonChoice& choice, jet::Database& journal,
                                          const shell::Progress& progress = {});

// Nothing would come of an import.
bool isEmpty(const Timetable& timetable, const LessonChoice& choice);

// The lessons that the journal holds in the period and on the other days of the lessons chosen.
// Throws jet::Error.
std::int64_t lessonsThere(jet::Database& journal, const Period& period, const LessonChoice& choice);

// What the user is asked before anything is written: refuses a period or a timetable that
// cannot be imported, warns of lessons that would be doubled, and has a copy of the journal
// made. False when the import is not to begin. Throws jet::Error.
bool mayBegin(shell::Session& session, shell::Prompt& prompt, const Timetable& timetable,
              const Period& period, const LessonChoice& choice);

} // namespace imports
