#include "import/timetable.h"

#include "data/convert.h"
#include "jet/database.h"
#include "jet/error.h"

#include <filesystem>
#include <system_error>
#include <utility>

namespace imports {
namespace {

// The order of the fields is that of the enumerations.
const SourceFields kSpecialities{"SPOTD", {"IDO", "SOKR", "NAIM"}, {"KOD"}};
const SourceFields kTeachers{"SPPREP", {"IDP", "FAMIO"}, {"TABNOM", "MEMO"}};
const SourceFields kLessonTypes{"SPTIPZ", {"NAIM"}, {"MEMO"}};
const SourceFields kGroups{"SPGRUP", {"IDG", "IDO", "KURS", "NAIM"}, {"IDP", "MEMO"}};
const SourceFields kDisciplines{"SPPRED", {"IDD", "NAIM"}, {"KOD", "MEMO"}};
const SourceFields kWorkload{
    "SPNAGR", {"IDN", "IDP", "IDG", "IDD"}, {"IDGG", "CHSEM", "DATNN", "DATKK", "MEMO", "IDNN"}};
const SourceFields kLessons{
    "UROKI", {"DAT", "UR", "IDP", "IDG", "IDD", "IDN"}, {"IDGG", "IDR", "ZP", "MORE", "HAND"}};

const SourceFields& checkedFirst(jet::Database& database)
{
    for (const SourceFields* fields : {&kSpecialities, &kTeachers, &kLessonTypes, &kGroups,
                                       &kDisciplines, &kWorkload, &kLessons})
        requireFields(database, *fields);
    return kSpecialities;
}

std::string within(const Period& period)
{
    return "((UROKI.DAT)>=" + data::toSql(period.from)
           + ") and ((UROKI.DAT)<=" + data::toSql(period.to) + ")";
}

} // namespace

std::unique_ptr<Timetable> Timetable::open(const QString& path, const QString& journalFile)
{
    const std::filesystem::path source = data::toPath(path);
    std::error_code none;
    // A second opening in one process would also let go of the journal's lock.
    if (std::filesystem::equivalent(source, data::toPath(journalFile), none))
        throw jet::Error(jet::Fault::Locked, "это файл открытого журнала");
    return std::unique_ptr<Timetable>(
        new Timetable(jet::Database::open(source, jet::OpenMode::ReadOnly)));
}

Timetable::Timetable(std::unique_ptr<jet::Database> database)
    : m_database(std::move(database))
    , m_specialities(*m_database, checkedFirst(*m_database))
    , m_teachers(*m_database, kTeachers)
    , m_lessonTypes(*m_database, kLessonTypes)
    , m_groups(*m_database, kGroups)
    , m_disciplines(*m_database, kDisciplines)
    , m_workload(*m_database, kWorkload)
{}

Timetable::~Timetable() = default;

SourceTable Timetable::lessons(const Period& period) const
{
    const std::string inPeriod = within(period);
    const std::string condition =
        hasField(*m_database, kLessons.table, "IDR")
            ? " WHERE  (" + inPeriod
                  + "  AND ((UROKI.IDR)=0)) OR (((UROKI.IDR) Is Null) AND "
                    "((IsNull([UROKI].[IDR]))<>False))"
            : " WHERE " + inPeriod;
    return {*m_database, kLessons, condition + " ORDER BY UROKI.DAT"};
}

std::int64_t Timetable::lessonsOfProjects(const Period& period) const
{
    if (!hasField(*m_database, kLessons.table, "IDR"))
        return 0;
    return m_database->count("SELECT UROKI.DAT FROM UROKI WHERE " + within(period)
                             + " AND ((UROKI.IDR)<>0);");
}

bool Timetable::isEmpty() const
{
    return m_specialities.size() + m_teachers.size() + m_lessonTypes.size() + m_groups.size()
               + m_disciplines.size() + m_workload.size()
           == 0;
}

} // namespace imports
