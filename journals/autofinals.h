#pragma once

#include "journals/gradesheet.h"
#include "journals/keys.h"
#include "journals/studyperiod.h"

#include <QDate>
#include <QString>

#include <optional>
#include <span>
#include <vector>

namespace shell {
class Prompt;
class Session;
} // namespace shell

namespace journals {

class History;

// What is computed from the current grades.
enum class FinalsKind {
    Final,  // one final grade from all of a period
    Period, // a monthly grade for each month between two dates
    Month,  // the monthly grade of one month
    Year,   // a monthly grade for each month of the study year
};

struct FinalsRequest
{
    FinalsKind kind = FinalsKind::Final;
    std::optional<GroupId> group;
    std::optional<DisciplineId> discipline;
    Month month;   // for FinalsKind::Month
    Period period; // for Final and Period
};

// One result: what a student's grade is and what it would become.
struct PlannedGrade
{
    struct Stored
    {
        QDate date;
        int grade = 0;
    };

    StudentId student{};
    QString name;
    Month month;                // of a monthly grade; not chosen for a final one
    std::vector<Stored> now;    // to be replaced; more than one only in a file gone wrong
    std::optional<int> becomes; // nothing: no marks to compute it from
    QDate date;                 // that it is stored with
    MarkSum marks;              // counted; passes are not
};

struct FinalsPlan
{
    FinalsRequest request;
    Period period;
    std::vector<PlannedGrade> rows; // by student as in the journal, then by month
};

// "5", "Зачет" for a pass, "" for no grade; more than one stored grade as "4, 5".
QString nowText(const PlannedGrade& row);
QString becomesText(const PlannedGrade& row);

// What carrying out some rows of a plan does to the student's grades.
struct FinalsOutcome
{
    int added = 0;
    int replaced = 0; // by another grade
    int kept = 0;     // computed to what they were
    int removed = 0;
};
FinalsOutcome outcomeOf(const FinalsPlan& plan, std::span<const std::size_t> rows);
// "новых 3, изменено 2, без изменений 20, удалено 1".
QString outcomeText(const FinalsOutcome& outcome);

// The quotient rounded to a whole number, a half to the even neighbour: 2.5 gives 2, 3.5 and
// 4.5 give 4. Requires count > 0 and sum >= 0.
int roundedAverage(int sum, int count);

// Automatic grades of a group in a discipline: what would be written is planned first, for the
// user to look at, and carried out after. Expelled students are left as they are: no journal
// shows them, so nobody would see what became of their grades. Throws jet::Error.
class AutoFinals
{
public:
    AutoFinals(shell::Session& session, shell::Prompt& prompt);

    // The days whose marks the request counts.
    Period period(const FinalsRequest& request) const;

    // Nothing, after a warning, when the request is not complete. Writes nothing.
    std::optional<FinalsPlan> plan(const FinalsRequest& request) const;

    // Writes the rows of the plan that are named and leaves the others as they are. Asks before
    // results are replaced. One durable step, and one to take back. False when the user said no.
    bool carryOut(const FinalsPlan& plan, std::span<const std::size_t> rows, History& history);

private:
    bool complete(const FinalsRequest& request) const;

    shell::Session& m_session;
    shell::Prompt& m_prompt;
};

} // namespace journals
