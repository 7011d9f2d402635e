#pragma once

#include "journals/keys.h"
#include "journals/studyperiod.h"

#include <QString>

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <unordered_map>

namespace jet {
class Database;
}

// What statements read beside the journals' sheets. Each function throws jet::Error.
namespace reports {

struct GroupRow
{
    QString name;
    QString curator; // "Иванова А. П."
    int course = 0;  // 0: not set
    QString specialityCode;
    QString speciality;
};

// Empty for a group that is not in the file.
GroupRow readGroup(jet::Database& database, journals::GroupId group);

// Who teaches what in the group by the workload that overlaps the period; several of a
// discipline, as of its subgroups, with commas between.
std::map<journals::DisciplineId, QString>
readTeachers(jet::Database& database, journals::GroupId group, const journals::Period& period);

// The lessons held of each group that satisfy the condition, by the key of the group. Lessons of
// the second subgroup run beside those of the first and do not count.
std::unordered_map<std::int64_t, int> countLessons(jet::Database& database,
                                                   const std::string& condition);

// The hours taught to the group in the period, in one discipline if it is given.
int taughtHours(jet::Database& database, journals::GroupId group, const journals::Period& period,
                std::optional<journals::DisciplineId> discipline = std::nullopt);

} // namespace reports
