#pragma once

#include "journals/keys.h"

#include <QString>

#include <optional>
#include <string>
#include <vector>

namespace jet {
class Database;
}

namespace journals {

// A student as every journal lists him.
struct Student
{
    StudentId id{};
    int subgroup = 0;
    QString name; // surname, first name, patronymic
};

// The enrolled students of the group, of one subgroup if it is given, in order of surname,
// first name, patronymic. Throws jet::Error.
std::vector<Student> readStudents(jet::Database& database, GroupId group,
                                  std::optional<int> subgroup);

// The condition of SPSTUD that leaves out who was expelled, and those of other subgroups if
// one is given; an empty subgroup counts as 0.
std::string enrolledCondition(std::optional<int> subgroup);

// "Иванов И. И." of "Иванов Иван Иванович"; initials stay as they are.
QString withInitials(const QString& name);

} // namespace journals
