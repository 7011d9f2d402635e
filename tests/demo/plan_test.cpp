#include "demo/records.h"

#include <gtest/gtest.h>

#include <map>
#include <set>
#include <tuple>

namespace {

using namespace demo;

struct Plan
{
    explicit Plan(Size size, std::uint64_t seed = 1)
        : calendar(2025)
    {
        Random random(seed);
        institution = planInstitution(size, calendar, random);
        lessons = holdLessons(institution, calendar, size.hoursPerLesson);
        absences = recordAbsences(institution, lessons, size.hoursPerLesson, 7);
        grades = recordGrades(institution, calendar, lessons, absences, size.hoursPerLesson, 8);
    }
    const Workload& workloadOf(const Lesson& lesson) const
    {
        return institution.workloads[static_cast<std::size_t>(lesson.workload)];
    }

    Calendar calendar;
    Institution institution;
    std::vector<Lesson> lessons;
    std::vector<Absence> absences;
    std::vector<Grade> grades;
};

TEST(DemoPlan, NobodyStandsInTwoPlaces)
{
    const Plan plan({12, 2});
    std::set<std::tuple<int, int, int>> teachers;
    std::set<std::tuple<int, int, int, int>> groups;
    for (const Lesson& lesson : plan.lessons) {
        const Workload& work = plan.workloadOf(lesson);
        EXPECT_TRUE(teachers.insert({lesson.day, lesson.number, work.teacher}).second);
        EXPECT_TRUE(groups.insert({lesson.day, lesson.number, work.group, work.subgroup}).second);
        if (work.subgroup != 0) {
            EXPECT_FALSE(groups.contains({lesson.day, lesson.number, work.group, 0}));
        }
        EXPECT_NE(weekday(lesson.day), 6) << "a lesson on a Sunday";
    }
}

TEST(DemoPlan, AbsencesAndGradesAgreeWithLessons)
{
    const Plan plan({3, 2});
    std::set<std::tuple<int, int, int>> absent; // student, discipline, day
    std::map<std::tuple<int, int, int>, int> present;
    for (const Absence& absence : plan.absences) {
        const Lesson& lesson = plan.lessons[static_cast<std::size_t>(absence.lesson)];
        const Student& student =
            plan.institution.students[static_cast<std::size_t>(absence.student - 1)];
        EXPECT_EQ(student.group, plan.workloadOf(lesson).group);
        EXPECT_TRUE(attends(student, plan.workloadOf(lesson), lesson.day));
        absent.insert({absence.student, plan.workloadOf(lesson).discipline, lesson.day});
    }
    for (const Lesson& lesson : plan.lessons)
        ++present[{plan.workloadOf(lesson).group, plan.workloadOf(lesson).discipline, lesson.day}];
    for (const Grade& grade : plan.grades) {
        EXPECT_TRUE(grade.mark >= 1 && grade.mark <= 5) << grade.mark;
        if (grade.kind != GradeKind::Current)
            continue;
        const auto& student =
            plan.institution.students[static_cast<std::size_t>(grade.student - 1)];
        const int lessonsThatDay = present[{student.group, grade.discipline, grade.day}];
        EXPECT_GT(lessonsThatDay, 0) << "a mark without a lesson";
        if (lessonsThatDay == 1) {
            EXPECT_FALSE(absent.contains({grade.student, grade.discipline, grade.day}))
                << "a mark for an absent student";
        }
    }
}

TEST(DemoPlan, ASeedGivesTheSameInstitutionAndAnotherAnother)
{
    const Plan first({3, 2}, 5);
    const Plan same({3, 2}, 5);
    const Plan other({3, 2}, 6);
    const auto names = [](const Plan& plan) {
        std::vector<std::string> list;
        for (const Student& student : plan.institution.students)
            list.push_back(student.name.withInitials());
        return list;
    };
    EXPECT_EQ(names(first), names(same));
    EXPECT_EQ(first.grades.size(), same.grades.size());
    EXPECT_NE(names(first), names(other));
}

TEST(DemoPlan, StudentsAreOfBothSexesSomeLeaveAndSomeLackAPatronymic)
{
    const Plan plan({40, 2});
    std::map<std::string, int> counts;
    for (const Student& student : plan.institution.students) {
        ++counts[student.name.male ? "male" : "female"];
        counts["expelled"] += student.expelledOn != 0;
        counts["bare"] += student.name.patronymic.empty();
        counts["truant"] += student.truant;
    }
    for (const char* kind : {"male", "female", "expelled", "bare", "truant"})
        EXPECT_GT(counts[kind], 0) << kind;
    EXPECT_LT(counts["expelled"], 60);
}

} // namespace
