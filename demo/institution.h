#pragma once

#include "demo/calendar.h"
#include "demo/curriculum.h"
#include "demo/names.h"
#include "demo/random.h"

#include <array>
#include <string>
#include <tuple>
#include <vector>

namespace demo {

// How large the demonstration is.
struct Size
{
    int groups;
    int hoursPerLesson; // 2: lessons are pairs; 1: single hours, two in a row
};

// Keys are positions + 1 in their list throughout, as the file's counters give them.
struct Student
{
    int group;    // key
    int subgroup; // 1 or 2
    PersonName name;
    int born;       // day
    double ability; // mean mark
    bool truant;
    std::vector<Term> illnesses; // first and last day of each
    int expelledOn;              // day; 0 = studies
};

struct Teacher
{
    PersonName name;
    int room; // key
    int pairsPerWeek = 0;
    std::array<bool, 18> busy{}; // by slot of the week
};

struct Group
{
    int speciality; // key
    int course;
    std::string name;
    int curator;               // teacher's key
    std::vector<int> students; // keys
};

struct Discipline
{
    std::string name;
    std::vector<int> teachers; // keys of those who teach it
};

// A teacher teaches a discipline to a group or subgroup all the year; the file holds a row
// for each term.
struct Workload
{
    int teacher;
    int group;
    int discipline;
    int subgroup; // 0 = the whole group
    bool passMark;
    std::vector<int> slots; // of the week, ascending
};

struct Institution
{
    std::vector<Discipline> disciplines;
    std::vector<Teacher> teachers;
    std::vector<Group> groups;
    std::vector<Student> students;
    std::vector<Workload> workloads;
};

// Six days of three pairs.
inline constexpr int kSlotsPerDay = 3;
inline constexpr int kSlots = 18;

// Plans the whole institution: groups of several courses, their students, and a weekly
// timetable without clashes of groups, teachers or rooms.
Institution planInstitution(const Size& size, const Calendar& calendar, Random& random);

} // namespace demo
