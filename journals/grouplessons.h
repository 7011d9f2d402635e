#pragma once

#include "journals/keys.h"

#include <QDate>
#include <QString>

#include <vector>

namespace jet {
class Database;
}

namespace journals {

// One lesson of a group, or of one of its subgroups, as the timetable holds it.
struct GroupLesson
{
    QDate date;
    int number = 0; // within the day
    DisciplineId discipline{};
    int subgroup = 0; // 0: the undivided group
    QString disciplineName;

    friend bool operator==(const GroupLesson&, const GroupLesson&) = default;
    // Whether a student of the subgroup attends; one without a subgroup may attend any.
    bool isFor(int studentSubgroup) const
    {
        return subgroup == 0 || studentSubgroup == 0 || subgroup == studentSubgroup;
    }
};

// The group's lessons from one date to another, both included, by date, number and subgroup. A
// lesson that the file holds twice is given once. Throws jet::Error.
std::vector<GroupLesson> readGroupLessons(jet::Database& database, GroupId group, QDate from,
                                          QDate to);

} // namespace journals
