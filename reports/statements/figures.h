#pragma once

#include "journals/attendancesheet.h"
#include "journals/gradesheet.h"

#include <array>
#include <cstddef>
#include <optional>

// The figures of statements; each formula stands here once.
namespace reports {

// Rounded to what is shown, halves up; nothing where there is nothing to divide by.
using Rate = std::optional<double>;

inline constexpr int kRateDecimals = 1, kAverageDecimals = 2;

// How many grades there are of each value. Passes and other numbers say nothing to averages and
// rates.
struct GradeCounts
{
    std::array<int, 6> of{};
    int notAssessed = 0; // disciplines without the final grade that they require

    void add(int grade);
    GradeCounts& operator+=(const GradeCounts& other);
    int marks() const; // 2 to 5
    int graded() const { return marks() + of[journals::kPassGrade]; }
    Rate average() const;
    Rate quality() const;  // the share of 5 and 4
    Rate passRate() const; // the share of 5, 4 and 3
};

// Where a student belongs by the worst of his grades.
enum class Standing {
    Fives,
    Fours,  // 4 and 5
    Threes, // at least one 3
    Failed, // at least one 2, or not assessed
    NoMarks,
};
inline constexpr std::size_t kStandings = 5;

Standing standingOf(const GradeCounts& student);

// Of a group or several: every student counts once.
struct Performance
{
    std::array<int, kStandings> students{};
    int oneThree = 0; // of Standing::Threes, those with a single 3
    GradeCounts grades;

    void add(const GradeCounts& student);
    Performance& operator+=(const Performance& other);
    int of(Standing standing) const { return students[static_cast<std::size_t>(standing)]; }
    int all() const;
    Rate quality() const;  // the share of students with 4 and 5 only
    Rate passRate() const; // the share of students with marks and none of them failed
};

// What was taught and missed, of a group or several.
struct AttendanceFigures
{
    int students = 0;
    int hours = 0; // taught
    int personHours = 0;
    journals::Absence missed;

    static AttendanceFigures ofGroup(int students, int hours, const journals::Absence& missed);
    AttendanceFigures& operator+=(const AttendanceFigures& other);
    Rate attendance() const;
    Rate forgiving() const; // excused hours count as attended
    Rate unexcused() const;
    Rate perStudent() const; // hours missed
};

} // namespace reports
