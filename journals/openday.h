#pragma once

#include "journals/keys.h"
#include "journals/month.h"
#include "journals/studyperiod.h"

#include <QDate>
#include <QString>

#include <optional>
#include <set>
#include <utility>
#include <vector>

namespace jet {
class Database;
}

// On which days something can be entered, and which are free. Each function throws jet::Error.
namespace journals {

// What is said of a cell in which nothing can be entered.
QString closedCellText();

// The days of the period on which the group has a lesson (of the discipline, if one is given):
// a row counts only when its date carries no time of day.
std::set<QDate> daysWithLessons(jet::Database& database, GroupId group,
                                std::optional<DisciplineId> discipline, const Period& period);

// The spans of the group's workload (in the discipline, if one is given) in the order of the
// file. An end that the file leaves open is invalid and bounds nothing.
std::vector<Period> workloadPeriods(jet::Database& database, GroupId group,
                                    std::optional<DisciplineId> discipline);
bool inForce(const Period& workload, QDate day);

// Sundays and the holidays of the file.
class DaysOff
{
public:
    explicit DaysOff(jet::Database& database);
    bool contains(QDate day) const;

private:
    std::set<std::pair<int, int>> m_holidays; // day and month
};

} // namespace journals
