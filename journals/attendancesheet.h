#pragma once

#include "journals/keys.h"
#include "journals/month.h"

#include <QDate>
#include <QString>
#include <QStringList>

#include <cstddef>
#include <optional>
#include <vector>

namespace journals {

enum class AttendanceMode {
    Days,    // a column for each day of the month
    Lessons, // a column for each lesson of one discipline
};

// What the grid is to show. A subgroup that is not given means all of them; 0 takes the
// disciplines taught to the undivided group and still shows all its students.
struct AttendanceSelection
{
    std::optional<GroupId> group;
    std::optional<int> subgroup;
    std::optional<DisciplineId> discipline; // not given: all disciplines
    Month month;
    AttendanceMode mode = AttendanceMode::Days;

    // The subgroup that students are narrowed to, if any.
    std::optional<int> studentSubgroup() const;
    friend bool operator==(const AttendanceSelection&, const AttendanceSelection&) = default;
};

// What the kind of the hours in a cell says; it decides looks and which commands apply.
enum class AbsenceState {
    None,
    Unexcused, // unexcused hours only
    Excused,   // excused hours only
    Mixed,
    NotInForce, // no lesson can be missed here: "X"
};

inline constexpr int kMostAbsenceHours = 255; // POS keeps each count in a byte

// Missed academic hours.
struct Absence
{
    int excused = 0;
    int unexcused = 0;

    int total() const { return excused + unexcused; }
    AbsenceState state() const;
    Absence& operator+=(const Absence& other);
    friend Absence operator+(Absence left, const Absence& right) { return left += right; }
    friend bool operator==(const Absence&, const Absence&) = default;
};

struct AttendanceColumn
{
    QDate date;
    int lesson = 0;      // number within the day; 0 in day mode
    int subgroup = 0;    // of the lesson
    QString title;       // "12", or "12.11.2022 № 3 пары"
    bool inForce = true; // false: the discipline has no lesson that day
    bool dayOff = false; // Sunday or holiday
    bool twin = false;   // another column has the same date and lesson, for another subgroup
};

struct AttendanceStudent
{
    StudentId id{};
    int subgroup = 0;
    QString name;               // surname, first name, patronymic
    Absence start;              // before the month, since 1 September
    std::vector<Absence> cells; // one for each column
    Absence month;              // sum of the cells

    Absence end() const { return start + month; }
};

// One group's absences of one month: a row per student, a column per day or lesson.
// Totals are kept in step with the cells by setCell().
struct AttendanceSheet
{
    AttendanceSelection selection;
    int lessonHours = 1; // hours that one missed lesson counts
    std::vector<AttendanceColumn> columns;
    std::vector<AttendanceStudent> students;
    std::vector<Absence> columnTotals; // over the students, one for each column
    QStringList notices;               // absences that found no place in the grid

    const Absence& cell(std::size_t student, std::size_t column) const
    {
        return students[student].cells[column];
    }
    AbsenceState state(std::size_t student, std::size_t column) const;
    // "" for nothing missed, "X" where nothing can be, else the hours.
    QString cellText(std::size_t student, std::size_t column) const;
    void setCell(std::size_t student, std::size_t column, const Absence& absence);
    void computeTotals();

    std::optional<std::size_t> studentRow(StudentId id) const;
    // The column of a day (lesson 0) or lesson. Of lessons held for several subgroups at
    // once, the student's own, else the first.
    std::optional<std::size_t> columnOf(std::size_t student, QDate date, int lesson) const;

    // Over all students.
    Absence startTotal() const;
    Absence monthTotal() const;
    Absence endTotal() const { return startTotal() + monthTotal(); }
};

} // namespace journals
