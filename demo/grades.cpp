#include "demo/records.h"

#include <algorithm>
#include <cmath>
#include <map>

namespace demo {

namespace {

constexpr int kPassMark = 1;

struct Average
{
    int sum = 0;
    int count = 0;
    void add(int mark)
    {
        sum += mark;
        ++count;
    }
};

// Marks of one student in one discipline: by the month's last day and by term.
struct Course
{
    std::map<int, Average> months;
    std::array<Average, 2> terms;
    bool passMark = false;
};
using CourseKey = std::pair<int, int>; // student, discipline

int toMark(double value)
{
    return std::clamp(static_cast<int>(std::lround(value)), 2, 5);
}

// Current grades, and the sums that the monthly and final ones follow from.
class GradeBook
{
public:
    GradeBook(const Institution& institution, std::uint64_t seed)
        : m_institution(institution)
        , m_random(seed)
    {}

    // Absent students, ascending.
    void hold(const Lesson& lesson, std::span<const Absence> absences)
    {
        const Workload& workload =
            m_institution.workloads[static_cast<std::size_t>(lesson.workload)];
        const auto& group = m_institution.groups[static_cast<std::size_t>(workload.group - 1)];
        for (const int key : group.students) {
            const Student& student = m_institution.students[static_cast<std::size_t>(key - 1)];
            if (!attends(student, workload, lesson.day))
                continue;
            Course& course = m_courses[{key, workload.discipline}];
            course.passMark = workload.passMark;
            course.months[monthEnd(lesson.day)];
            const bool absent = std::ranges::count(absences, key, &Absence::student) > 0;
            if (!absent && m_random.chance(0.25))
                mark(course, key, student, workload.discipline, lesson);
        }
    }

    std::vector<Grade> finish(const Calendar& calendar)
    {
        for (const auto& [key, course] : m_courses)
            closeMonths(key, course);
        for (const auto& [key, course] : m_courses)
            closeTerms(key, course, calendar);
        return std::move(m_grades);
    }

private:
    void mark(Course& course, int key, const Student& student, int discipline, const Lesson& lesson)
    {
        const int value = toMark(m_random.around(student.ability, 1.0));
        m_grades.push_back({key, discipline, lesson.day, value, GradeKind::Current});
        course.months[monthEnd(lesson.day)].add(value);
        course.terms[static_cast<std::size_t>(lesson.term)].add(value);
    }

    int closingMark(int student, const Average& average)
    {
        if (average.count > 0)
            return toMark(static_cast<double>(average.sum) / average.count);
        return toMark(m_institution.students[static_cast<std::size_t>(student - 1)].ability);
    }

    void closeMonths(const CourseKey& key, const Course& course)
    {
        for (const auto& [lastDay, average] : course.months)
            m_grades.push_back({key.first, key.second, lastDay, closingMark(key.first, average),
                                GradeKind::Monthly});
    }

    void closeTerms(const CourseKey& key, const Course& course, const Calendar& calendar)
    {
        const Student& student = m_institution.students[static_cast<std::size_t>(key.first - 1)];
        for (std::size_t t = 0; t < course.terms.size(); ++t) {
            const int lastDay = calendar.terms()[t].last;
            if (student.expelledOn != 0 && student.expelledOn <= lastDay)
                return;
            const int value = course.passMark ? kPassMark : closingMark(key.first, course.terms[t]);
            m_grades.push_back({key.first, key.second, lastDay, value, GradeKind::Final});
        }
    }

    const Institution& m_institution;
    Random m_random;
    std::map<CourseKey, Course> m_courses;
    std::vector<Grade> m_grades;
};

} // namespace

std::vector<Grade> recordGrades(const Institution& institution, const Calendar& calendar,
                                const std::vector<Lesson>& lessons,
                                const std::vector<Absence>& absences, int hoursPerLesson,
                                std::uint64_t seed)
{
    GradeBook book(institution, seed);
    auto next = absences.begin();
    for (std::size_t l = 0; l < lessons.size(); ++l) {
        const auto first = next;
        while (next != absences.end() && next->lesson == static_cast<int>(l))
            ++next;
        // Of the two single hours of a pair only the first brings marks.
        if (hoursPerLesson == 1 && lessons[l].number % 2 == 0)
            continue;
        book.hold(lessons[l], std::span(first, next));
    }
    return book.finish(calendar);
}

} // namespace demo
