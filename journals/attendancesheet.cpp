#include "journals/attendancesheet.h"

#include <algorithm>
#include <numeric>

using namespace Qt::StringLiterals;

namespace journals {

std::optional<int> AttendanceSelection::studentSubgroup() const
{
    return subgroup.value_or(0) == 0 ? std::nullopt : subgroup;
}

AbsenceState Absence::state() const
{
    if (excused >= 1)
        return unexcused >= 1 ? AbsenceState::Mixed : AbsenceState::Excused;
    return unexcused >= 1 ? AbsenceState::Unexcused : AbsenceState::None;
}

Absence& Absence::operator+=(const Absence& other)
{
    excused += other.excused;
    unexcused += other.unexcused;
    return *this;
}

AbsenceState AttendanceSheet::state(std::size_t student, std::size_t column) const
{
    const AbsenceState state = cell(student, column).state();
    return state == AbsenceState::None && !columns[column].inForce ? AbsenceState::NotInForce
                                                                   : state;
}

QString AttendanceSheet::cellText(std::size_t student, std::size_t column) const
{
    const AbsenceState kind = state(student, column);
    if (kind == AbsenceState::NotInForce)
        return u"X"_s;
    return kind == AbsenceState::None ? QString() : QString::number(cell(student, column).total());
}

void AttendanceSheet::setCell(std::size_t student, std::size_t column, const Absence& absence)
{
    students[student].cells[column] = absence;
    computeTotals();
}

void AttendanceSheet::computeTotals()
{
    columnTotals.assign(columns.size(), Absence());
    for (AttendanceStudent& student : students) {
        student.month = std::accumulate(student.cells.begin(), student.cells.end(), Absence());
        for (std::size_t column = 0; column < columns.size(); ++column)
            columnTotals[column] += student.cells[column];
    }
}

std::optional<std::size_t> AttendanceSheet::studentRow(StudentId id) const
{
    const auto found = std::find_if(students.begin(), students.end(),
                                    [id](const auto& student) { return student.id == id; });
    if (found == students.end())
        return std::nullopt;
    return static_cast<std::size_t>(found - students.begin());
}

std::optional<std::size_t> AttendanceSheet::columnOf(std::size_t student, QDate date,
                                                     int lesson) const
{
    std::optional<std::size_t> first;
    for (std::size_t i = 0; i < columns.size(); ++i) {
        if (columns[i].date != date || columns[i].lesson != lesson)
            continue;
        if (columns[i].subgroup == students[student].subgroup)
            return i;
        if (!first)
            first = i;
    }
    return first;
}

Absence AttendanceSheet::startTotal() const
{
    Absence total;
    for (const AttendanceStudent& student : students)
        total += student.start;
    return total;
}

Absence AttendanceSheet::monthTotal() const
{
    return std::accumulate(columnTotals.begin(), columnTotals.end(), Absence());
}

} // namespace journals
