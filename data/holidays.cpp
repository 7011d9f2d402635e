#include "data/holidays.h"

#include "data/convert.h"
#include "jet/database.h"
#include "jet/recordset.h"

namespace data {

std::vector<Holiday> readHolidays(jet::Database& database)
{
    std::vector<Holiday> holidays;
    auto rows = database.query("SELECT [DAY], [MN], NAIM FROM HOLI ORDER BY [MN], [DAY], IDH;");
    while (rows.next()) {
        holidays.push_back({static_cast<int>(rows.integer(0)), static_cast<int>(rows.integer(1)),
                            fromUtf8(rows.text(2)).trimmed()});
    }
    return holidays;
}

} // namespace data
