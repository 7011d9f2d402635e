#pragma once

#include "journals/keys.h"
#include "journals/studyperiod.h"

#include <QString>

#include <optional>
#include <vector>

namespace jet {
class Database;
}

namespace journals {

template <class Key>
struct ListEntry
{
    Key key{};
    QString name;
    friend bool operator==(const ListEntry&, const ListEntry&) = default;
};

// What the selectors of both journals offer.
// Groups by name.
std::vector<ListEntry<GroupId>> groupList(jet::Database& database);
// "Все подгруппы", "(группа полностью)", then "1 п/г", "2 п/г" and what further subgroups
// the group's students have. The key is the subgroup, nothing for all of them.
std::vector<ListEntry<std::optional<int>>> subgroupList(jet::Database& database, GroupId group);
// The group's disciplines of the period by name, by lessons held or by workload in force.
std::vector<ListEntry<DisciplineId>> disciplineList(jet::Database& database, GroupId group,
                                                    std::optional<int> subgroup,
                                                    const Period& period);
// All disciplines that the group has workload, lessons or grades in, at any time, by name.
std::vector<ListEntry<DisciplineId>> disciplinesOfGroup(jet::Database& database, GroupId group);
// "" for one that is not in the file.
QString disciplineName(jet::Database& database, DisciplineId discipline);

} // namespace journals
