#pragma once

#include "import/period.h"
#include "import/sourcetable.h"

#include <cstdint>
#include <memory>

namespace jet {
class Database;
}

namespace imports {

// The fields that are read of each table of the timetable.
struct SpecialityField
{
    enum : std::size_t { Key, ShortName, Name, Code };
};
struct TeacherField
{
    enum : std::size_t { Key, Name, Number, Note };
};
struct LessonTypeField
{
    enum : std::size_t { Name, Note };
};
struct GroupField
{
    enum : std::size_t { Key, Speciality, Course, Name, Curator, Note };
};
struct DisciplineField
{
    enum : std::size_t { Key, Name, Code, Note };
};
struct WorkloadField
{
    enum : std::size_t {
        Key,
        Teacher,
        Group,
        Discipline,
        Subgroup,
        Hours,
        First,
        Last,
        Note,
        Link
    };
};
struct LessonField
{
    enum : std::size_t {
        Date,
        Number,
        Teacher,
        Group,
        Discipline,
        Workload,
        Subgroup,
        Project,
        Substitute,
        More,
        Manual
    };
};

// The database of the timetable program, open for reading only. The reference books are in
// memory, the lessons are read for each period.
class Timetable
{
public:
    // `journalFile` is the journal's own file, which is refused. Throws jet::Error: what
    // opening gives, or the table or field that is missing.
    static std::unique_ptr<Timetable> open(const QString& path, const QString& journalFile);
    ~Timetable();

    const SourceTable& specialities() const { return m_specialities; }
    const SourceTable& teachers() const { return m_teachers; }
    const SourceTable& lessonTypes() const { return m_lessonTypes; }
    const SourceTable& groups() const { return m_groups; }
    const SourceTable& disciplines() const { return m_disciplines; }
    const SourceTable& workload() const { return m_workload; }
    // By date: lessons of the period whose timetable project is 0, and lessons without a
    // project whatever their date. Throws jet::Error.
    SourceTable lessons(const Period& period) const;
    // How many lessons of the period belong to other projects, which is why they are not among
    // these. Throws jet::Error.
    std::int64_t lessonsOfProjects(const Period& period) const;

    // Nothing could be imported, whatever the period.
    bool isEmpty() const;

private:
    explicit Timetable(std::unique_ptr<jet::Database> database);

    std::unique_ptr<jet::Database> m_database;
    SourceTable m_specialities, m_teachers, m_lessonTypes, m_groups, m_disciplines, m_workload;
};

} // namespace imports
