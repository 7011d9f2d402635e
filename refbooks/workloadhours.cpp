#include "refbooks/workloadhours.h"

#include "data/convert.h"
#include "jet/database.h"
#include "jet/sqltext.h"

#include <set>
#include <string>
#include <unordered_map>
#include <utility>

namespace sql = jet::sql;

namespace refbooks {
namespace {

// Day and number of a lesson.
using Times = std::set<std::pair<double, std::int64_t>>;
using TimesByKey = std::unordered_map<std::int64_t, Times>;

struct HeldLessons
{
    TimesByKey byRow;
    TimesByKey byLink;
};

// One reading of all lessons: a journal holds some ten thousands and no index by workload.
HeldLessons heldLessons(jet::Database& database, QDate through)
{
    std::string condition = " WHERE (((UROKI.ZP)=False)";
    if (through.isValid())
        condition += " AND (UROKI.DAT < " + sql::date(data::toJet(through.addDays(1))) + ")";
    auto rows = database.query("SELECT UROKI.IDN, UROKI.IDNN, UROKI.DAT, UROKI.UR FROM UROKI"
                               + condition + ");");
    HeldLessons lessons;
    while (rows.next()) {
        const std::pair time(rows.date(2).days, rows.integer(3));
        if (const std::int64_t row = rows.integer(0); row > 0)
            lessons.byRow[row].insert(time);
        if (const std::int64_t link = rows.integer(1); link > 0)
            lessons.byLink[link].insert(time);
    }
    return lessons;
}

std::size_t lessonsOf(const HeldLessons& lessons, std::int64_t row, std::int64_t link)
{
    const auto own = lessons.byRow.find(row);
    const auto shared = link > 0 ? lessons.byLink.find(link) : lessons.byLink.end();
    if (shared == lessons.byLink.end())
        return own == lessons.byRow.end() ? 0 : own->second.size();
    if (own == lessons.byRow.end())
        return shared->second.size();
    Times both = own->second;
    both.insert(shared->second.begin(), shared->second.end());
    return both.size();
}

} // namespace

std::vector<WorkloadHours> workloadHours(jet::Database& database,
                                         std::span<const std::int64_t> keys, QDate through,
                                         int hoursPerLesson)
{
    const HeldLessons lessons = heldLessons(database, through);
    std::vector<WorkloadHours> hours;
    for (const std::int64_t key : keys) {
        auto row = database.query(
            "SELECT SPNAGR.IDNN, SPNAGR.IDGG, SPNAGR.CHSEM, SPPREP.FAMIO, SPGRUP.NAIM AS GRP, "
            "SPPRED.NAIM AS PRED FROM ((SPNAGR LEFT JOIN SPPREP ON SPNAGR.IDP = SPPREP.IDP) "
            "LEFT JOIN SPGRUP ON SPNAGR.IDG = SPGRUP.IDG) "
            "LEFT JOIN SPPRED ON SPNAGR.IDD = SPPRED.IDD WHERE SPNAGR.IDN = "
            + sql::number(key) + ";");
        if (!row.next())
            continue;
        const auto held = static_cast<int>(lessonsOf(lessons, key, row.integer("IDNN")));
        hours.push_back({.key = key,
                         .teacher = data::fromUtf8(row.text("FAMIO")),
                         .group = data::fromUtf8(row.text("GRP")),
                         .subgroup = static_cast<int>(row.integer("IDGG")),
                         .discipline = data::fromUtf8(row.text("PRED")),
                         .planned = static_cast<int>(row.integer("CHSEM")),
                         .held = held * hoursPerLesson});
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
