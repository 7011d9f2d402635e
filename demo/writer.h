#pragma once

#include "demo/records.h"

#include <vector>

namespace jet {
class Database;
}

namespace demo {

// Writes a planned institution into the tables of an empty journal. Requires an open
// transaction. Throws jet::Error.
class Writer
{
public:
    Writer(jet::Database& database, const Institution& institution, const Calendar& calendar,
           const Size& size, Random& random);

    void writeBooks();
    void writeLessons(const std::vector<Lesson>& lessons);
    void writeAbsences(const std::vector<Lesson>& lessons, const std::vector<Absence>& absences);
    void writeGrades(const std::vector<Grade>& grades);

private:
    void writeSettings();
    void writeCalendar();
    void writeSpecialities();
    void writeDisciplines();
    void writeTeachers();
    void writeRooms();
    void writeGroups();
    void writeStudents();
    void writeWorkload();
    int workloadKey(int workload, int term) const;

    jet::Database& m_database;
    const Institution& m_institution;
    const Calendar& m_calendar;
    const Size m_size;
    Random& m_random;
};

} // namespace demo
