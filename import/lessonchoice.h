#pragma once

#include "import/timetable.h"

#include <array>
#include <vector>

namespace imports {

// What a lesson needs in the timetable to be imported, in the order in which it is looked for.
enum class Need { Teacher, Group, Speciality, Discipline, Workload, Count };
inline constexpr std::size_t kNeeds = static_cast<std::size_t>(Need::Count);

// Rows of the timetable's books that a lesson names, RowsByKey::kNone for those not there.
struct LessonPlace
{
    int teacher;
    int group;
    int discipline;
    Need missing; // the first, Need::Count when nothing is

    bool isComplete() const { return missing == Need::Count; }
    // Lessons of no known group or discipline are not shown, others are.
    bool isShown() const { return group >= 0 && discipline >= 0; }
};

// The lessons of a period and where they belong.
struct LessonChoice
{
    SourceTable lessons;
    std::vector<LessonPlace> places;   // of each lesson
    std::vector<std::size_t> shown;    // lessons of the preview
    std::size_t complete = 0;          // lessons that are imported
    std::array<int, kNeeds> missing{}; // lessons that are not, by what they lack first
    std::int64_t ofProjects = 0;       // lessons of the period beside these, in other projects
};

// Throws jet::Error.
LessonChoice chooseLessons(const Timetable& timetable, const Period& period);

} // namespace imports
