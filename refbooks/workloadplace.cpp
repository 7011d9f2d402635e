#include "refbooks/workloadplace.h"

#include "jet/database.h"
#include "jet/sqltext.h"

namespace refbooks {

std::optional<WorkloadPlace> workloadPlace(jet::Database& database, std::int64_t key)
{
    auto rows = database.query("SELECT IDG, iif(isnull(IDGG),0,IDGG) AS SUBGROUP, IDD FROM SPNAGR"
                               " WHERE ((SPNAGR.IDN)="
                               + jet::sql::number(key) + ");");
    if (!rows.next())
        return {};
    return WorkloadPlace{static_cast<int>(rows.integer(0)), static_cast<int>(rows.integer(1)),
                         static_cast<int>(rows.integer(2))};
}

} // namespace refbooks
