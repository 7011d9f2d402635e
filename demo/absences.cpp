#include "demo/records.h"

#include <algorithm>

namespace demo {

namespace {

// What a student does on one day, the same for every lesson of it.
enum class Day { Present, Ill, DayOff, Truant };

// Draws that depend on student and day only, so that lessons can be walked in any order.
Random dayDraws(std::uint64_t seed, int student, int day)
{
    Random random(seed ^ (static_cast<std::uint64_t>(student) << 24)
                  ^ static_cast<std::uint64_t>(day));
    random.next();
    return random;
}

Day dayOfStudent(const Student& student, int day, Random& draws)
{
    for (const Term& illness : student.illnesses)
        if (day >= illness.first && day <= illness.last)
            return Day::Ill;
    if (draws.chance(0.012))
        return Day::DayOff;
    return student.truant && draws.chance(0.10) ? Day::Truant : Day::Present;
}

// A lesson cut by a student who is there that day: mostly the first or the last one.
bool cutsLesson(const Student& student, int number, int lastNumber, Random& draws)
{
    const double habit = student.truant ? 0.14 : 0.006;
    const bool edge = number == 1 || number == lastNumber;
    for (int i = 1; i < number; ++i)
        draws.next();
    return draws.chance(edge ? habit * 1.5 : habit);
}

} // namespace

std::vector<Absence> recordAbsences(const Institution& institution,
                                    const std::vector<Lesson>& lessons, int hoursPerLesson,
                                    std::uint64_t seed)
{
    const int lastNumber = kSlotsPerDay * 2 / hoursPerLesson;
    std::vector<Absence> absences;
    for (std::size_t l = 0; l < lessons.size(); ++l) {
        const Lesson& lesson = lessons[l];
        const Workload& workload = institution.workloads[static_cast<std::size_t>(lesson.workload)];
        for (const int key :
             institution.groups[static_cast<std::size_t>(workload.group - 1)].students) {
            const Student& student = institution.students[static_cast<std::size_t>(key - 1)];
            if (!attends(student, workload, lesson.day))
                continue;
            Random draws = dayDraws(seed, key, lesson.day);
            const Day day = dayOfStudent(student, lesson.day, draws);
            const bool excused = day == Day::Ill || day == Day::DayOff;
            if (excused || day == Day::Truant
                || cutsLesson(student, lesson.number, lastNumber, draws))
                absences.push_back({key, static_cast<int>(l), excused});
        }
    }
    return absences;
}

} // namespace demo
