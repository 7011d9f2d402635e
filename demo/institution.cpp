#include "demo/institution.h"

#include "demo/timetable.h"

#include <algorithm>
#include <map>

namespace demo {

namespace {

constexpr int kCourses = 4;

// Groups are spread over the specialities course by course, so that a small institution
// has several courses too.
std::vector<Group> planGroups(int count)
{
    const int specialityCount =
        std::clamp(count / kCourses, 1, static_cast<int>(specialities().size()));
    std::map<std::string, int> parallels;
    std::vector<Group> groups;
    for (int i = 0; i < count; ++i) {
        Group group;
        group.course = 1 + i % kCourses;
        group.speciality = 1 + (i / kCourses) % specialityCount;
        const auto& plan = specialities()[static_cast<std::size_t>(group.speciality - 1)];
        const std::string stem = std::string(plan.shortName) + "-" + std::to_string(group.course);
        group.name = stem + std::to_string(++parallels[stem]);
        group.curator = 0;
        groups.push_back(std::move(group));
    }
    std::ranges::sort(groups, {}, [](const Group& g) { return std::tie(g.speciality, g.name); });
    return groups;
}

std::vector<Term> randomIllnesses(const Calendar& calendar, Random& random)
{
    std::vector<Term> illnesses;
    const int count = random.between(0, 6);
    for (int i = 0; i < count; ++i) {
        const int first = random.between(calendar.yearStart(), calendar.yearEnd());
        illnesses.push_back({first, first + random.between(3, 12)});
    }
    return illnesses;
}

Student randomStudent(int group, int course, int subgroup, const Calendar& calendar, Random& random)
{
    Student student;
    student.group = group;
    student.subgroup = subgroup;
    student.name = randomName(random);
    student.born = calendar.yearStart() - 365 * (15 + course) - random.between(0, 364);
    student.ability = std::clamp(random.around(3.9, 0.9), 2.6, 4.9);
    student.truant = random.chance(0.06);
    student.illnesses = randomIllnesses(calendar, random);
    student.expelledOn = 0;
    if (random.chance(0.02))
        student.expelledOn = calendar.yearStart() + random.between(30, 250);
    return student;
}

void enrol(Institution& institution, const Calendar& calendar, Random& random)
{
    for (std::size_t g = 0; g < institution.groups.size(); ++g) {
        Group& group = institution.groups[g];
        const int count = random.between(22, 28);
        for (int i = 0; i < count; ++i) {
            institution.students.push_back(
                randomStudent(static_cast<int>(g) + 1, group.course, 1 + i % 2, calendar, random));
            group.students.push_back(static_cast<int>(institution.students.size()));
        }
    }
}

void appointCurators(Institution& institution)
{
    for (std::size_t g = 0; g < institution.groups.size(); ++g)
        for (const Workload& workload : institution.workloads)
            if (workload.group == static_cast<int>(g) + 1 && workload.subgroup == 0) {
                institution.groups[g].curator = workload.teacher;
                break;
            }
}

} // namespace

Institution planInstitution(const Size& size, const Calendar& calendar, Random& random)
{
    Institution institution;
    institution.groups = planGroups(size.groups);
    enrol(institution, calendar, random);
    planTimetable(institution, random);
    appointCurators(institution);
    return institution;
}

} // namespace demo
