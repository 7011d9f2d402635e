#pragma once

#include <span>
#include <string_view>

namespace demo {

// How a discipline is taught and graded.
enum class Teaching {
    Whole,     // the whole group together
    Subgroups, // two subgroups, each with its own teacher
    PassMark,  // the whole group; the final grade is the pass mark
};

struct DisciplinePlan
{
    std::string_view name;
    Teaching teaching = Teaching::Whole;
};

struct SpecialityPlan
{
    std::string_view shortName;
    std::string_view code;
    std::string_view name;
    std::span<const DisciplinePlan> disciplines; // of courses 2 to 4
};

std::span<const SpecialityPlan> specialities();
// What every first course learns, and what every later course learns beside its own.
std::span<const DisciplinePlan> firstCourseDisciplines();
std::span<const DisciplinePlan> commonDisciplines();

} // namespace demo
