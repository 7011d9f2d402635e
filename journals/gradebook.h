#pragma once

#include "journals/graderows.h"
#include "journals/gradesheet.h"
#include "journals/history.h"
#include "journals/lists.h"
#include "shell/wording.h"

#include <QString>

#include <cstddef>
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

// The grades journal while it is open: the sheet shown, grades that are set and deleted, and
// the way back. With automatic saving each change is written at once; without it changes wait in
// the sheet until save(). Input errors go to the status line, refusals to the prompt. Reading
// and writing throw jet::Error; the sheet then stays as it was.
class GradeBook
{
public:
    GradeBook(jet::Database& database, shell::Wording wording, shell::Prompt& prompt,
              shell::StatusLine& status);

    // The disciplines of what the selection spans, a month or the study year; empty while group
    // or span are missing.
    std::vector<ListEntry<DisciplineId>> disciplines(const GradeSelection& selection) const;

    // Shows another sheet; unsaved changes are gone. An incomplete selection leaves no sheet
    // (false), with the reason in the status line. All disciplines have no current grades: the
    // monthly ones are shown instead.
    bool load(GradeSelection selection);
    void clear();
    const GradeSheet* sheet() const { return m_sheet ? &*m_sheet : nullptr; }

    bool readOnly() const;
    // Whether set() does something there; for enabling commands.
    bool offers(GradePlace place) const;
    // Sets the grade, or deletes with kNoGrade, in all of the places as one step. One place that
    // cannot be changed is refused with its message; of several, those are left out. Gives the
    // number of places that hold the grade now.
    int set(int grade, std::span<const GradePlace> places);

    // Cells that wait to be saved.
    int unsaved() const { return m_sheet ? m_sheet->unsavedCells() : 0; }
    // Writes them in one step.
    void save();
    void discard();
    // To be asked before the sheet is left: false when the user would rather stay. Afterwards
    // nothing is unsaved, unless staying.
    bool mayLeave();

    // The steps that are next, "" without one: first those that wait to be saved, then those
    // that were written. Both change the file only for the latter, and read the sheet again.
    QString undoText() const;
    QString redoText() const;
    void undo();
    void redo();
    // The written steps, for what else writes grades of the open journal.
    History& history() { return m_history; }

private:
    struct Change
    {
        GradePlace place;
        int before = kNoGrade;
        int after = kNoGrade;
    };
    struct Step
    {
        QString text;
        std::vector<Change> changes;
    };

    bool complete(const GradeSelection& selection);
    bool checkPlaces(std::span<const GradePlace> places, std::size_t open);
    QString stepText(int grade, const std::vector<Change>& changes) const;
    GradeRow rowAt(GradePlace place) const;
    void write(const QString& text, const std::vector<Change>& changes);
    void forgetSteps();
    void applyNextStep();
    void walkHistory(bool back);
    void sayStep(const QString& what, const QString& step);
    void say(const QString& text);

    jet::Database& m_database;
    shell::Wording m_wording;
    shell::Prompt& m_prompt;
    shell::StatusLine& m_status;
    History m_history;
    std::optional<GradeSheet> m_sheet;
    std::vector<Step> m_steps; // unsaved ones, and those of them taken back
    std::size_t m_done = 0;    // of m_steps
};

} // namespace journals
