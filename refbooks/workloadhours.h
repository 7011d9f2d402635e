#pragma once

#include <QDate>
#include <QString>

#include <cstdint>
#include <span>
#include <vector>

namespace jet {
class Database;
}

namespace refbooks {

// The hours of one workload row: what was planned and what the lessons held make up.
struct WorkloadHours
{
    std::int64_t key = 0;
    QString teacher = {};
    QString group = {};
    int subgroup = 0; // 0 = the whole group
    QString discipline = {};
    int planned = 0;
    int held = 0;
    int left() const { return planned - held; } // negative when more was held than planned
    friend bool operator==(const WorkloadHours&, const WorkloadHours&) = default;
};

// Compares the hours planned with the hours held until `through`, that day included, or all
// when it is invalid; one row for each key that is there, in the order of the keys. A lesson
// belongs to the row that it names and, when it names a link, to every row of the link; lessons
// of one row at the same time count once, bans never. A lesson counts `hoursPerLesson`.
// Throws jet::Error.
std::vector<WorkloadHours> workloadHours(jet::Database& database,
                                         std::span<const std::int64_t> keys, QDate through,
                                         int hoursPerLesson);

// The sums over the rows; names are empty.
WorkloadHours totalHours(std::span<const WorkloadHours> rows);

} // namespace refbooks
