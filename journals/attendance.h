#pragma once

#include "journals/attendancesheet.h"
#include "journals/keys.h"
#include "journals/lists.h"
#include "shell/wording.h"

#include <QDate>
#include <QString>

#include <optional>
#include <span>
#include <vector>

namespace jet {
class Database;
}
namespace shell {
class Prompt;
class StatusLine;
} // namespace shell

namespace journals {

class History;

enum class AbsenceAction { Mark, MakeExcused, MakeUnexcused, Remove };

// A place in the grid as it is shown: row 0 is the first student, the two total rows stand
// below the last; column 0 is the running number, 3 the first day or lesson.
struct GridCell
{
    int row = 0;
    int column = 0;
};

inline constexpr int kLeadColumns = 3;  // number, name, balance before the month
inline constexpr int kTrailColumns = 3; // month, balance after it, unexcused part
inline constexpr int kTotalRows = 2;

// The attendance journal: fills the sheet of a group and month from the journal file and
// carries out what is done to its cells. Input errors go to the status line, refusals to
// the prompt. Reading and writing throw jet::Error; a sheet changes only after the file did.
class Attendance
{
public:
    Attendance(jet::Database& database, shell::Wording wording, shell::Prompt& prompt,
               shell::StatusLine& status);

    // What apply() does from now on can be taken back there. It outlives this.
    void recordIn(History& history) { m_history = &history; }

    // The disciplines taught to the selection's group and subgroup in its month: by the
    // lessons held when the journals work from the timetable, by the workload otherwise.
    // Empty while group or month are missing.
    std::vector<ListEntry<DisciplineId>> disciplines(const AttendanceSelection& selection) const;

    // Nothing, with the reason in the status line, when the selection is not complete.
    std::optional<AttendanceSheet> load(const AttendanceSelection& selection);

    // Whether lesson mode may be switched on; says why not.
    bool allowLessonMode(const AttendanceSelection& selection);
    // Shows the status text of the mode.
    void announceMode(AttendanceMode mode);

    // Carries out the action on the cells in one step, brings the sheet in line and shows
    // what became of it. One cell that cannot be changed is refused with its message; of
    // several, those that cannot be changed are left out, and marking leaves recorded absences
    // alone as long as there are cells without. Gives the number of cells changed.
    int apply(AbsenceAction action, AttendanceSheet& sheet, std::span<const GridCell> cells);
    // Whether the action has something to do on the cell; for enabling commands.
    static bool offers(AbsenceAction action, const AttendanceSheet& sheet, GridCell cell);

    // Quick marking of one lesson: a new absence counts unexcused, a recorded one is counted
    // down by an hour. Gives the status text.
    QString mark(StudentId student, DisciplineId discipline, QDate date, int lesson);

private:
    bool checkMonth(Month month);
    bool checkCell(const AttendanceSheet& sheet, GridCell cell);
    QString carryOut(AbsenceAction action, const AttendanceSheet& sheet, GridCell cell);
    void say(const QString& text);

    jet::Database& m_database;
    shell::Wording m_wording;
    shell::Prompt& m_prompt;
    shell::StatusLine& m_status;
    History* m_history = nullptr;
};

} // namespace journals
