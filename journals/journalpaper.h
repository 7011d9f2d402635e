#pragma once

#include "journals/attendancesheet.h"
#include "journals/gradesheet.h"
#include "papers/paper.h"

#include <QString>
#include <QStringList>

class QAbstractItemModel;

namespace data {
struct SettingsRow;
}
namespace shell {
class Wording;
}

namespace journals {

// What a printed journal says above and below its table.
struct JournalHeading
{
    QString title;
    QStringList about; // group, discipline, month
    QStringList notes; // what the signs mean
};

// As the window's selectors name them.
struct JournalNames
{
    QString group;
    QString discipline;
};

JournalHeading attendanceHeading(const AttendanceSelection& shown, const JournalNames& names,
                                 const shell::Wording& wording);
JournalHeading gradesHeading(const GradeSelection& shown, const JournalNames& names,
                             const shell::Wording& wording);

// The journal as its grid shows it, ready to be signed: number and student first, then a column
// per day or lesson, days off shaded, unexcused hours bold and excused ones in italics. Reads
// the model by its roles (gridroles.h), so that it serves every journal.
papers::Paper journalPaper(const QAbstractItemModel& model, const JournalHeading& heading,
                           const data::SettingsRow& settings);

} // namespace journals
