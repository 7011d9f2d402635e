#include "reports/choices.h"

#include "data/convert.h"
#include "jet/database.h"
#include "journals/students.h"

namespace reports {

using journals::DisciplineId;
using journals::ListEntry;
using journals::StudentId;

std::vector<ListEntry<DisciplineId>> disciplineChoices(jet::Database& database,
                                                       std::optional<journals::GroupId> group)
{
    if (group)
        return journals::disciplinesOfGroup(database, *group);
    std::vector<ListEntry<DisciplineId>> disciplines;
    auto rows = database.query(R"(SELECT IDD, Naim
                                  FROM SPPRED
                                  ORDER BY Naim, IDD;)");
    while (rows.next())
        disciplines.push_back(
            {DisciplineId{static_cast<int>(rows.integer(0))}, data::fromUtf8(rows.text(1))});
    return disciplines;
}

std::vector<ListEntry<StudentId>> studentChoices(jet::Database& database,
                                                 std::optional<journals::GroupId> group)
{
    std::vector<ListEntry<StudentId>> students;
    if (group)
        for (const journals::Student& student :
             journals::readStudents(database, *group, std::nullopt))
            students.push_back({student.id, student.name});
    return students;
}

} // namespace reports
