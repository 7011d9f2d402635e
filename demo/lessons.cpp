#include "demo/records.h"

#include <algorithm>

namespace demo {

namespace {

constexpr int kHoursPerPair = 2;

// Positions of the workloads by slot of the week.
std::vector<std::vector<int>> workloadsBySlot(const Institution& institution)
{
    std::vector<std::vector<int>> bySlot(kSlots);
    for (std::size_t i = 0; i < institution.workloads.size(); ++i)
        for (const int slot : institution.workloads[i].slots)
            bySlot[static_cast<std::size_t>(slot)].push_back(static_cast<int>(i));
    return bySlot;
}

} // namespace

std::vector<Lesson> holdLessons(const Institution& institution, const Calendar& calendar,
                                int hoursPerLesson)
{
    const auto bySlot = workloadsBySlot(institution);
    const int lessonsPerPair = kHoursPerPair / hoursPerLesson;
    std::vector<Lesson> lessons;
    for (int term = 0; term < std::ssize(calendar.terms()); ++term)
        for (const int day : calendar.studyDays(calendar.terms()[static_cast<std::size_t>(term)]))
            for (int pair = 0; pair < kSlotsPerDay; ++pair)
                for (const int workload :
                     bySlot[static_cast<std::size_t>(weekday(day) * kSlotsPerDay + pair)])
                    for (int i = 0; i < lessonsPerPair; ++i)
                        lessons.push_back({day, pair * lessonsPerPair + i + 1, workload, term});
    std::ranges::stable_sort(lessons, {}, [&](const Lesson& lesson) {
        const int group = institution.workloads[static_cast<std::size_t>(lesson.workload)].group;
        return std::tuple(lesson.day, group, lesson.number);
    });
    return lessons;
}

bool attends(const Student& student, const Workload& workload, int day)
{
    const bool addressed = workload.subgroup == 0 || workload.subgroup == student.subgroup;
    return addressed && (student.expelledOn == 0 || day < student.expelledOn);
}

} // namespace demo
