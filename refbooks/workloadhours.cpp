#include "refbooks/workloadhours.h"

#include "data/convert.h"
#include "jet/database.h"

#include <algorithm>
#include <string>
#include <unordered_map>
#include <utility>

namespace refbooks {
namespace {

struct Row
{
    WorkloadHours hours;
    std::int64_t link = 0;
};
// Days and numbers of lessons, by the key of their row or the number of their link.
using Times = std::vector<std::pair<double, std::int64_t>>;
using TimesByKey = std::unordered_map<std::int64_t, Times>;

// All workload rows by their keys.
std::unordered_map<std::int64_t, Row> readRows(jet::Database& database)
{
    auto rows =
        database.query("SELECT SPNAGR.IDN, SPNAGR.IDNN, SPNAGR.IDGG, SPNAGR.CHSEM, SPPREP.FAMIO, "
                       "SPGRUP.NAIM AS GRP, SPPRED.NAIM AS PRED "
                       "FROM ((SPNAGR LEFT JOIN SPPREP ON SPNAGR.IDP = SPPREP.IDP) "
                       "LEFT JOIN SPGRUP ON SPNAGR.IDG = SPGRUP.IDG) "
                       "LEFT JOIN SPPRED ON SPNAGR.IDD = SPPRED.IDD;");
    std::unordered_map<std::int64_t, Row> found;
    while (rows.next()) {
        const std::int64_t key = rows.integer(0);
        found[key] = {.hours = {.key = key,
                                .teacher = data::fromUtf8(rows.text(4)),
                                .group = data::fromUtf8(rows.text(5)),
                                .subgroup = static_cast<int>(rows.integer(2)),
                                .discipline = data::fromUtf8(rows.text(6)),
                                .planned = static_cast<int>(rows.integer(3))},
                      .link = rows.integer(1)};
    }
    return found;
}

// Adds the times of the lessons held to the keys and links that `byRow` and `byLink` name. One
// reading of all lessons: there may be a hundred thousand, with no index by workload.
void readTimes(jet::Database& database, QDate through, TimesByKey& byRow, TimesByKey& byLink)
{
    std::string condition = " WHERE (((UROKI.ZP)=False)";
    if (through.isValid())
        condition += " AND (UROKI.DAT < " + data::toSql(through.addDays(1)) + ")";
    auto lessons = database.query("SELECT UROKI.IDN, UROKI.IDNN, UROKI.DAT, UROKI.UR FROM UROKI"
                                  + condition + ");");
    while (lessons.next()) {
        const std::pair time(lessons.date(2).days, lessons.integer(3));
        if (const auto row = byRow.find(lessons.integer(0)); row != byRow.end())
            row->second.push_back(time);
        if (const auto link = byLink.find(lessons.integer(1)); link != byLink.end())
            link->second.push_back(time);
    }
}

int countDifferent(Times times)
{
    std::ranges::sort(times);
    return static_cast<int>(std::unique(times.begin(), times.end()) - times.begin());
}

} // namespace

std::vector<WorkloadHours> workloadHours(jet::Database& database,
                                         std::span<const std::int64_t> keys, QDate through,
                                         int hoursPerLesson)
{
    const auto rows = readRows(database);
    TimesByKey byRow, byLink;
    for (const std::int64_t key : keys) {
        const auto found = rows.find(key);
        if (found == rows.end())
            continue;
        byRow[key];
        if (found->second.link > 0)
            byLink[found->second.link];
    }
    readTimes(database, through, byRow, byLink);

    std::vector<WorkloadHours> hours;
    for (const std::int64_t key : keys) {
        const auto found = rows.find(key);
        if (found == rows.end())
            continue;
        Times times = byRow.at(key);
        if (const auto shared = byLink.find(found->second.link); shared != byLink.end())
            times.insert(times.end(), shared->second.begin(), shared->second.end());
        hours.push_back(found->second.hours);
        hours.back().held = countDifferent(std::move(times)) * hoursPerLesson;
    }
    return hours;
}

WorkloadHours totalHours(std::span<const WorkloadHours> rows)
{
    WorkloadHours total;
    for (const WorkloadHours& row : rows) {
        total.planned += row.planned;
        total.held += row.held;
    }
    return total;
}

} // namespace refbooks
