#pragma once

#include "demo/institution.h"

#include <cstdint>
#include <vector>

namespace demo {

// What a year leaves in the journals. Keys as in the institution.
struct Lesson
{
    int day;
    int number;   // within the day
    int workload; // position in Institution::workloads
    int term;     // 0 or 1
};

struct Absence
{
    int student;
    int lesson; // position in the list of lessons
    bool excused;
};

enum class GradeKind : std::uint8_t { Current, Monthly, Final };

struct Grade
{
    int student;
    int discipline;
    int day;
    int mark; // 2 to 5; 1 is the pass mark
    GradeKind kind;
};

// Lessons of the year by date, then group, then number.
std::vector<Lesson> holdLessons(const Institution& institution, const Calendar& calendar,
                                int hoursPerLesson);
// By lesson. Illness in streaks, days off, habitual truants, single lessons cut.
std::vector<Absence> recordAbsences(const Institution& institution,
                                    const std::vector<Lesson>& lessons, int hoursPerLesson,
                                    std::uint64_t seed);
// Current grades by date, then monthly and final ones. Nobody gets a mark while absent.
std::vector<Grade> recordGrades(const Institution& institution, const Calendar& calendar,
                                const std::vector<Lesson>& lessons,
                                const std::vector<Absence>& absences, int hoursPerLesson,
                                std::uint64_t seed);

// Whether the student belongs to the lesson's group or subgroup and still studied then.
bool attends(const Student& student, const Workload& workload, int day);

} // namespace demo
