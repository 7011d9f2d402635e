#include "import/lessonchoice.h"

namespace imports {
namespace {

// Finds the place of each lesson in one pass over maps of keys, where a join of six tables
// would search for each.
class Places
{
public:
    explicit Places(const Timetable& timetable)
        : m_groupRows(timetable.groups())
        , m_teachers(timetable.teachers(), TeacherField::Key)
        , m_groups(timetable.groups(), GroupField::Key)
        , m_specialities(timetable.specialities(), SpecialityField::Key)
        , m_disciplines(timetable.disciplines(), DisciplineField::Key)
        , m_workload(timetable.workload(), WorkloadField::Key)
    {}

    LessonPlace of(const SourceTable& lessons, std::size_t row) const
    {
        LessonPlace place{
            .teacher = m_teachers.row(lessons.value(row, LessonField::Teacher)),
            .group = m_groups.row(lessons.value(row, LessonField::Group)),
            .discipline = m_disciplines.row(lessons.value(row, LessonField::Discipline)),
            .missing = Need::Count,
        };
        if (place.teacher < 0)
            place.missing = Need::Teacher;
        else if (place.group < 0)
            place.missing = Need::Group;
        else if (!hasSpeciality(place.group))
            place.missing = Need::Speciality;
        else if (place.discipline < 0)
            place.missing = Need::Discipline;
        else if (m_workload.row(lessons.value(row, LessonField::Workload)) < 0)
            place.missing = Need::Workload;
        return place;
    }

private:
    bool hasSpeciality(int group) const
    {
        return m_specialities.row(
                   m_groupRows.value(static_cast<std::size_t>(group), GroupField::Speciality))
               >= 0;
    }

    const SourceTable& m_groupRows;
    RowsByKey m_teachers, m_groups, m_specialities, m_disciplines, m_workload;
};

} // namespace

LessonChoice chooseLessons(const Timetable& timetable, const Period& period)
{
    LessonChoice choice{.lessons = timetable.lessons(period), .places = {}, .shown = {}};
    choice.ofProjects = timetable.lessonsOfProjects(period);
    const Places places(timetable);
    choice.places.reserve(choice.lessons.size());
    for (std::size_t row = 0; row < choice.lessons.size(); ++row) {
        const LessonPlace place = places.of(choice.lessons, row);
        choice.places.push_back(place);
        if (place.isShown())
            choice.shown.push_back(row);
        if (place.isComplete())
            ++choice.complete;
        else
            ++choice.missing[static_cast<std::size_t>(place.missing)];
    }
    return choice;
}

} // namespace imports
