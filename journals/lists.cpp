#include "journals/lists.h"

#include "data/convert.h"
#include "data/settingsrow.h"
#include "jet/database.h"
#include "jet/sqltext.h"

#include <algorithm>
#include <string>

using namespace Qt::StringLiterals;
namespace sql = jet::sql;

namespace journals {
namespace {

// " and val(0 & idgg)=N", where an empty subgroup counts as 0; "" for all subgroups.
std::string subgroupCondition(std::optional<int> subgroup)
{
    return subgroup ? " and val(0 & idgg)=" + sql::number(*subgroup) : std::string();
}

std::string disciplinesOfLessons(GroupId group, std::optional<int> subgroup, const Period& period)
{
    return R"(SELECT distinct uroki.IDG, SPPRED.Naim, SPPRED.IDD
              FROM uroki INNER JOIN SPPRED ON uroki.IDD = SPPRED.IDD
              where uroki.IDG = )"
           + sql::number(keyNumber(group)) + " And ((uroki.DAT between " + data::toSql(period.from)
           + " and " + data::toSql(period.to) + "))" + subgroupCondition(subgroup)
           + R"( GROUP BY uroki.IDG, SPPRED.Naim, SPPRED.IDD, uroki.DAt
                 ORDER BY SPPRED.Naim;)";
}

// Workload counts when its period overlaps the period in any way.
std::string disciplinesOfWorkload(GroupId group, std::optional<int> subgroup, const Period& period)
{
    const std::string first = data::toSql(period.from);
    const std::string last = data::toSql(period.to);
    return R"(SELECT SPNAGR.IDG, SPPRED.Naim, SPPRED.IDD
              FROM SPNAGR INNER JOIN SPPRED ON SPNAGR.IDD = SPPRED.IDD
              where SPNAGR.IDG = )"
           + sql::number(keyNumber(group)) + " And (((" + first + " >= SPNAGR.DATNN and " + first
           + " <= SPNAGR.DATKK) or (" + last + " >= SPNAGR.DATNN and " + last
           + " <= SPNAGR.DATKK)) or (SPNAGR.DATNN >= " + first + " and SPNAGR.DATKK <= " + last
           + "))" + subgroupCondition(subgroup) + R"( GROUP BY SPNAGR.IDG, SPPRED.Naim, SPPRED.IDD
                 ORDER BY SPPRED.Naim;)";
}

} // namespace

std::vector<ListEntry<GroupId>> groupList(jet::Database& database)
{
    std::vector<ListEntry<GroupId>> groups;
    auto rows = database.query(R"(SELECT IDG, NAIM
                                  FROM SPGRUP
                                  ORDER BY NAIM, IDG;)");
    while (rows.next())
        groups.push_back(
            {GroupId{static_cast<int>(rows.integer(0))}, data::fromUtf8(rows.text(1))});
    return groups;
}

std::vector<ListEntry<std::optional<int>>> subgroupList(jet::Database& database, GroupId group)
{
    auto rows = database.query(R"(SELECT max(IDGG)
                                  FROM SPSTUD
                                  WHERE IDG = )"
                               + sql::number(keyNumber(group)) + ";");
    constexpr std::int64_t kUsual = 2, kMost = 9;
    const std::int64_t most = rows.next() ? rows.integer(0) : 0;
    std::vector<ListEntry<std::optional<int>>> subgroups{
        {std::nullopt, u"Все подгруппы"_s},
        {0, u"(группа полностью)"_s},
    };
    for (int number = 1; number <= std::clamp(most, kUsual, kMost); ++number)
        subgroups.push_back({number, QString::number(number) + u" п/г"_s});
    return subgroups;
}

std::vector<ListEntry<DisciplineId>> disciplineList(jet::Database& database, GroupId group,
                                                    std::optional<int> subgroup,
                                                    const Period& period)
{
    const bool byLessons = data::readSettingsRow(database).useTimetable;
    std::vector<ListEntry<DisciplineId>> disciplines;
    auto rows = database.query(byLessons ? disciplinesOfLessons(group, subgroup, period)
                                         : disciplinesOfWorkload(group, subgroup, period));
    while (rows.next())
        disciplines.push_back(
            {DisciplineId{static_cast<int>(rows.integer(2))}, data::fromUtf8(rows.text(1))});
    return disciplines;
}

std::vector<ListEntry<DisciplineId>> disciplinesOfGroup(jet::Database& database, GroupId group)
{
    const std::string key = sql::number(keyNumber(group));
    auto rows = database.query("SELECT DISTINCT SPPRED.Naim, SPPRED.IDD"
                               " FROM SPPRED INNER JOIN (SELECT IDD FROM SPNAGR WHERE IDG = "
                               + key + " UNION SELECT IDD FROM UROKI WHERE IDG = " + key
                               + " UNION SELECT USP.IDD FROM USP INNER JOIN SPSTUD"
                                 " ON USP.ID = SPSTUD.ID WHERE SPSTUD.IDG = "
                               + key
                               + ") AS T ON SPPRED.IDD = T.IDD"
                                 " ORDER BY SPPRED.Naim, SPPRED.IDD;");
    std::vector<ListEntry<DisciplineId>> disciplines;
    while (rows.next())
        disciplines.push_back(
            {DisciplineId{static_cast<int>(rows.integer(1))}, data::fromUtf8(rows.text(0))});
    return disciplines;
}

QString disciplineName(jet::Database& database, DisciplineId discipline)
{
    auto rows = database.query(
        "SELECT NAIM FROM SPPRED WHERE IDD = " + sql::number(keyNumber(discipline)) + ";");
    return rows.next() ? data::fromUtf8(rows.text(0)) : QString();
}

} // namespace journals
