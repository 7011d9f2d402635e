#include "reports/statements/grouprows.h"

#include "data/convert.h"
#include "data/settingsrow.h"
#include "jet/database.h"
#include "jet/sqltext.h"
#include "journals/students.h"

#include <algorithm>

using namespace Qt::StringLiterals;
namespace sql = jet::sql;

namespace reports {

GroupRow readGroup(jet::Database& database, journals::GroupId group)
{
    auto rows =
        database.query("SELECT SPGRUP.NAIM, SPGRUP.KURS, SPPREP.FAMIO, SPOTD.KOD, SPOTD.NAIM"
                       " FROM (SPGRUP LEFT JOIN SPPREP ON SPGRUP.IDP = SPPREP.IDP)"
                       " LEFT JOIN SPOTD ON SPGRUP.IDO = SPOTD.IDO WHERE SPGRUP.IDG="
                       + sql::number(keyNumber(group)) + ";");
    GroupRow row;
    if (!rows.next())
        return row;
    row.name = data::fromUtf8(rows.text(0));
    row.course = static_cast<int>(rows.integer(1));
    row.curator = journals::withInitials(data::fromUtf8(rows.text(2)));
    row.specialityCode = data::fromUtf8(rows.text(3));
    row.speciality = data::fromUtf8(rows.text(4));
    return row;
}

std::map<journals::DisciplineId, QString>
readTeachers(jet::Database& database, journals::GroupId group, const journals::Period& period)
{
    auto rows = database.query(
        "SELECT DISTINCT SPNAGR.IDD, SPPREP.FAMIO"
        " FROM SPNAGR INNER JOIN SPPREP ON SPNAGR.IDP = SPPREP.IDP WHERE SPNAGR.IDG="
        + sql::number(keyNumber(group)) + " and (SPNAGR.DATNN is null or SPNAGR.DATNN <= "
        + data::toSql(period.to) + ") and (SPNAGR.DATKK is null or SPNAGR.DATKK >= "
        + data::toSql(period.from) + ") ORDER BY SPPREP.FAMIO;");
    std::map<journals::DisciplineId, QString> teachers;
    while (rows.next()) {
        const QString name = journals::withInitials(data::fromUtf8(rows.text(1)));
        QString& names = teachers[journals::DisciplineId{static_cast<int>(rows.integer(0))}];
        names += names.isEmpty() ? name : u", "_s + name;
    }
    return teachers;
}

std::unordered_map<std::int64_t, int> countLessons(jet::Database& database,
                                                   const std::string& condition)
{
    auto rows = database.query("SELECT UROKI.IDG, Count(UROKI.ID) From UROKI Where " + condition
                               + " and val(0 & UROKI.IDGG) in (0, 1) Group By UROKI.IDG;");
    std::unordered_map<std::int64_t, int> lessons;
    while (rows.next())
        lessons[rows.integer(0)] = static_cast<int>(rows.integer(1));
    return lessons;
}

int taughtHours(jet::Database& database, journals::GroupId group, const journals::Period& period,
                std::optional<journals::DisciplineId> discipline)
{
    std::string condition = "UROKI.IDG=" + sql::number(keyNumber(group))
                            + " and dat >= " + data::toSql(period.from) + " and dat < "
                            + data::toSql(period.to.addDays(1));
    if (discipline)
        condition += " and UROKI.IDD=" + sql::number(keyNumber(*discipline));
    const auto lessons = countLessons(database, condition);
    const auto found = lessons.find(keyNumber(group));
    return found == lessons.end()
               ? 0
               : found->second * std::max(1, data::readSettingsRow(database).hoursPerLesson);
}

} // namespace reports
