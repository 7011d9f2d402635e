#include "reports/statements/figures.h"

#include <cmath>
#include <functional>
#include <numeric>

namespace reports {
namespace {

double rounded(double value, int decimals)
{
    constexpr double kBinaryError = 1e-9; // 1.005 is a little less in binary
    const double scale = std::pow(10, decimals);
    return std::floor(value * scale + 0.5 + kBinaryError) / scale;
}

Rate percent(double part, double whole)
{
    constexpr double kWhole = 100;
    return whole == 0 ? Rate() : Rate(rounded(part / whole * kWhole, kRateDecimals));
}

template <std::size_t Size>
void addTo(std::array<int, Size>& sums, const std::array<int, Size>& more)
{
    for (std::size_t i = 0; i < Size; ++i)
        sums[i] += more[i];
}

} // namespace

void GradeCounts::add(int grade)
{
    if (grade >= journals::kPassGrade && grade < static_cast<int>(of.size()))
        ++of[static_cast<std::size_t>(grade)];
}

GradeCounts& GradeCounts::operator+=(const GradeCounts& other)
{
    addTo(of, other.of);
    notAssessed += other.notAssessed;
    return *this;
}

int GradeCounts::marks() const
{
    return of[2] + of[3] + of[4] + of[5];
}

Rate GradeCounts::average() const
{
    constexpr double kHundredths = 100;
    const journals::MarkSum sum{2 * of[2] + 3 * of[3] + 4 * of[4] + 5 * of[5], marks()};
    const auto average = sum.hundredths();
    return average ? Rate(*average / kHundredths) : Rate();
}

Rate GradeCounts::quality() const
{
    return percent(of[5] + of[4], marks());
}

Rate GradeCounts::passRate() const
{
    return percent(of[5] + of[4] + of[3], marks());
}

Standing standingOf(const GradeCounts& student)
{
    if (student.marks() == 0)
        return Standing::NoMarks;
    if (student.of[2] > 0 || student.notAssessed > 0)
        return Standing::Failed;
    if (student.of[3] > 0)
        return Standing::Threes;
    return student.of[4] > 0 ? Standing::Fours : Standing::Fives;
}

void Performance::add(const GradeCounts& student)
{
    const Standing standing = standingOf(student);
    ++students[static_cast<std::size_t>(standing)];
    if (standing == Standing::Threes && student.of[3] == 1)
        ++oneThree;
    grades += student;
}

Performance& Performance::operator+=(const Performance& other)
{
    addTo(students, other.students);
    oneThree += other.oneThree;
    grades += other.grades;
    return *this;
}

int Performance::all() const
{
    return std::accumulate(students.begin(), students.end(), 0);
}

Rate Performance::quality() const
{
    return percent(of(Standing::Fives) + of(Standing::Fours), all());
}

Rate Performance::passRate() const
{
    return percent(of(Standing::Fives) + of(Standing::Fours) + of(Standing::Threes), all());
}

AttendanceFigures AttendanceFigures::ofGroup(int students, int hours,
                                             const journals::Absence& missed)
{
    return {students, hours, students * hours, missed};
}

AttendanceFigures& AttendanceFigures::operator+=(const AttendanceFigures& other)
{
    students += other.students;
    hours += other.hours;
    personHours += other.personHours;
    missed += other.missed;
    return *this;
}

Rate AttendanceFigures::attendance() const
{
    return percent(personHours - missed.total(), personHours);
}

Rate AttendanceFigures::forgiving() const
{
    return percent(personHours - missed.unexcused, personHours);
}

Rate AttendanceFigures::unexcused() const
{
    return percent(missed.unexcused, personHours);
}

Rate AttendanceFigures::perStudent() const
{
    return students == 0
               ? Rate()
               : Rate(rounded(static_cast<double>(missed.total()) / students, kRateDecimals));
}

} // namespace reports
