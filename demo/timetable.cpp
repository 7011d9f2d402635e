#include "demo/timetable.h"

#include <algorithm>
#include <numeric>

namespace demo {

namespace {

constexpr int kMostPairsPerWeek = 16; // of one teacher

// One discipline of a group: as many pairs a week as slots, each for the whole group or for
// both subgroups at once.
struct Course
{
    DisciplinePlan plan;
    int pairs;
};

std::vector<Course> coursesOf(const Group& group)
{
    std::vector<Course> courses;
    const auto add = [&](std::span<const DisciplinePlan> plans) {
        for (const DisciplinePlan& plan : plans)
            courses.push_back({plan, 1});
    };
    if (group.course == 1) {
        add(firstCourseDisciplines());
    } else {
        add(specialities()[static_cast<std::size_t>(group.speciality - 1)].disciplines);
        add(commonDisciplines());
    }
    // What is left of the week goes to the first disciplines, other ones in each course.
    const auto start = static_cast<std::size_t>(group.course);
    for (auto extra = courses.size(); extra < static_cast<std::size_t>(kSlots); ++extra)
        ++courses[(extra + start) % (courses.size() - 1)].pairs;
    return courses;
}

int disciplineKey(Institution& institution, std::string_view name)
{
    auto& list = institution.disciplines;
    const auto found = std::ranges::find(list, name, &Discipline::name);
    if (found != list.end())
        return static_cast<int>(found - list.begin()) + 1;
    list.push_back({std::string(name), {}});
    return static_cast<int>(list.size());
}

// The first `count` of the slots in which the teacher is free; fewer when there are not enough.
std::vector<int> freeSlots(const Teacher& teacher, const std::vector<int>& slots, int count)
{
    std::vector<int> result;
    for (const int slot : slots)
        if (!teacher.busy[static_cast<std::size_t>(slot)] && std::ssize(result) < count)
            result.push_back(slot);
    return result;
}

int newTeacher(Institution& institution, Discipline& discipline, Random& random)
{
    Teacher teacher;
    teacher.name = randomName(random);
    teacher.room = static_cast<int>(institution.teachers.size()) + 1;
    institution.teachers.push_back(std::move(teacher));
    discipline.teachers.push_back(static_cast<int>(institution.teachers.size()));
    return discipline.teachers.back();
}

// A teacher of the discipline who is free in `count` of the slots; those slots are chosen.
int findTeacher(Institution& institution, int discipline, const std::vector<int>& slots, int count,
                std::vector<int>& chosen, Random& random)
{
    Discipline& subject = institution.disciplines[static_cast<std::size_t>(discipline - 1)];
    for (const int key : subject.teachers) {
        const Teacher& teacher = institution.teachers[static_cast<std::size_t>(key - 1)];
        if (teacher.pairsPerWeek + count > kMostPairsPerWeek)
            continue;
        chosen = freeSlots(teacher, slots, count);
        if (std::ssize(chosen) == count)
            return key;
    }
    chosen.assign(slots.begin(), slots.begin() + count);
    return newTeacher(institution, subject, random);
}

void appoint(Institution& institution, const Workload& workload)
{
    Teacher& teacher = institution.teachers[static_cast<std::size_t>(workload.teacher - 1)];
    teacher.pairsPerWeek += static_cast<int>(workload.slots.size());
    for (const int slot : workload.slots)
        teacher.busy[static_cast<std::size_t>(slot)] = true;
    institution.workloads.push_back(workload);
}

void planCourse(Institution& institution, int group, const Course& course,
                std::vector<int>& openSlots, Random& random)
{
    Workload workload;
    workload.group = group;
    workload.discipline = disciplineKey(institution, course.plan.name);
    workload.passMark = course.plan.teaching == Teaching::PassMark;
    const bool divided = course.plan.teaching == Teaching::Subgroups;
    workload.subgroup = divided ? 1 : 0;

    std::vector<int> slots;
    workload.teacher =
        findTeacher(institution, workload.discipline, openSlots, course.pairs, slots, random);
    std::ranges::sort(slots);
    workload.slots = slots;
    appoint(institution, workload);
    if (divided) {
        std::vector<int> same;
        workload.subgroup = 2;
        workload.teacher =
            findTeacher(institution, workload.discipline, slots, course.pairs, same, random);
        appoint(institution, workload);
    }
    std::erase_if(openSlots, [&](int slot) { return std::ranges::count(slots, slot) > 0; });
}

void shuffle(std::vector<int>& list, Random& random)
{
    for (int i = static_cast<int>(list.size()) - 1; i > 0; --i)
        std::swap(list[static_cast<std::size_t>(i)],
                  list[static_cast<std::size_t>(random.between(0, i))]);
}

} // namespace

void planTimetable(Institution& institution, Random& random)
{
    for (std::size_t g = 0; g < institution.groups.size(); ++g) {
        std::vector<int> openSlots(kSlots);
        std::iota(openSlots.begin(), openSlots.end(), 0);
        shuffle(openSlots, random);
        for (const Course& course : coursesOf(institution.groups[g]))
            planCourse(institution, static_cast<int>(g) + 1, course, openSlots, random);
    }
}

} // namespace demo
