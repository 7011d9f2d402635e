#pragma once

#include "journals/absenceentry.h"
#include "journals/grouplessons.h"
#include "journals/studenthead.h"

#include <QDate>
#include <QString>
#include <QStringList>

#include <cstddef>
#include <deque>
#include <optional>
#include <vector>

namespace jet {
class Database;
}
namespace shell {
class StatusLine;
class Wording;
} // namespace shell

namespace journals {

class History;

struct PeriodRequest
{
    std::vector<StudentId> students;
    QDate from;
    QDate to; // included
    AbsenceKind reason = AbsenceKind::Unexcused;
};

// Several lessons of the group at one time: which of them does the student attend?
struct PeriodConflict
{
    StudentHead student;
    std::vector<GroupLesson> lessons;
    std::size_t preset = 0; // the lesson of the student's own subgroup, else the first

    // "Выберите подгруппу для 3 занятия Физика (1 п/г)", one for each lesson.
    QStringList texts() const;
};

struct PeriodOutcome
{
    int written = 0;  // absences
    int replaced = 0; // lessons that had absences before
    int students = 0; // who got any

    QString text() const; // "Записано пропусков: 24. ..."
};

// The absence of one or several students from every lesson of their groups over some days, as
// for an illness. Reads the lessons at once, has the caller settle the conflicts, then writes
// everything as one step. Throws jet::Error; nothing is changed then.
class PeriodAbsence
{
public:
    PeriodAbsence(jet::Database& database, PeriodRequest request);

    // Why nothing can be written, "" when it can be.
    QString problem() const;
    // To be asked first where further students of the group bear a full name: they are absent as
    // well, since a period goes by the name. "" where there are none.
    QString namesakesQuestion() const;

    // The next choice to make; nothing when all are made.
    std::optional<PeriodConflict> conflict() const;
    int conflictsLeft() const;
    // Takes a lesson of the conflict. `forLater` settles in the same way all later conflicts of
    // this student in which the discipline has a lesson of that subgroup. Requires conflict().
    void choose(std::size_t lesson, bool forLater);

    // Each lesson ends with exactly one absence of the reason, whatever was recorded at its
    // time before. Requires that no conflict is left.
    PeriodOutcome write(History& history, shell::StatusLine& status) const;

private:
    struct Plan
    {
        StudentHead student;
        std::vector<GroupLesson> lessons;          // missed for certain
        std::deque<std::vector<GroupLesson>> open; // conflicts to be settled
    };

    Plan* nextOpen();
    const Plan* nextOpen() const;
    QString stepName() const;
    void plan(StudentHead student, const std::vector<GroupLesson>& lessons);
    void writePlan(const Plan& plan, PeriodOutcome& outcome) const;

    jet::Database& m_database;
    PeriodRequest m_request;
    QStringList m_namesakes;
    std::vector<Plan> m_plans;
};

} // namespace journals
