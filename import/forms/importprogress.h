#pragma once

#include "import/lessonimport.h"

class QWidget;

namespace imports {

// importLessons() behind a box that appears after half a second and can cancel. The work stays
// in the thread of the windows, since the journal is open there; the box keeps all other
// windows from being used meanwhile.
std::optional<ImportCounts> importWithProgress(const Timetable& timetable, const Period& period,
                                               const LessonChoice& choice, jet::Database& journal,
                                               QWidget* parent);

} // namespace imports
