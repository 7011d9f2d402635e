#pragma once

#include <cstdint>
#include <optional>

namespace jet {
class Database;
}

namespace refbooks {

// Where a workload row is taught, as the journals choose it.
struct WorkloadPlace
{
    int group = 0;
    int subgroup = 0; // 0 = the whole group
    int discipline = 0;
    friend bool operator==(const WorkloadPlace&, const WorkloadPlace&) = default;
};

// Nothing when the row is gone. Throws jet::Error.
std::optional<WorkloadPlace> workloadPlace(jet::Database& database, std::int64_t key);

} // namespace refbooks
