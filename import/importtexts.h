#pragma once

#include "import/lessonimport.h"

#include <QStringList>

namespace shell {
class Wording;
}

namespace imports {

// A line of the summary: what, then rows added, updated and left as they are. Lessons are only
// added.
struct SummaryLine
{
    QString table;
    RowCounts rows;
};

// Each book, then the lessons.
QList<SummaryLine> summary(const ImportCounts& counts, const shell::Wording& wording);

// "Импорт успешно завершен." and the same with the number of lessons.
QString doneText();
QString doneText(const ImportCounts& counts, const shell::Wording& wording);

// Why nothing is imported from an empty timetable.
QString emptyText();
// That the journal holds lessons of these days, and that they will be doubled.
QString thereText(std::int64_t lessons, const shell::Wording& wording);
QString againText(const shell::Wording& wording);
// How many lessons of the choice are not imported and why, "" when all are.
QString skippedText(const LessonChoice& choice, const shell::Wording& wording);
// Why one lesson is not imported, "" when it is.
QString missingText(const LessonPlace& place, const shell::Wording& wording);
// That texts had to be cut, "" when none had.
QString shortenedText(const ImportCounts& counts);

} // namespace imports
