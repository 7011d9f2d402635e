#include "journals/openday.h"

#include "data/convert.h"
#include "data/holidays.h"
#include "jet/database.h"
#include "jet/sqltext.h"

#include <string>

using namespace Qt::StringLiterals;
namespace sql = jet::sql;

namespace journals {
namespace {

// "" for all disciplines.
std::string disciplineCondition(std::optional<DisciplineId> discipline)
{
    return discipline ? " and idd= " + sql::number(keyNumber(*discipline)) : std::string();
}

} // namespace

QString closedCellText()
{
    return u"Данные в этой ячейке невозможно изменить."_s;
}

std::set<QDate> daysWithLessons(jet::Database& database, GroupId group,
                                std::optional<DisciplineId> discipline, const Period& period)
{
    auto rows = database.query(R"(select distinct dat
                                  from uroki
                                  where IDG = )"
                               + sql::number(keyNumber(group)) + disciplineCondition(discipline)
                               + " and dat between " + data::toSql(period.from) + " and "
                               + data::toSql(period.to) + ";");
    std::set<QDate> days;
    while (rows.next()) {
        const QDate day = data::toDate(rows.date(0));
        if (data::toJet(day) == rows.date(0))
            days.insert(day);
    }
    return days;
}

std::vector<Period> workloadPeriods(jet::Database& database, GroupId group,
                                    std::optional<DisciplineId> discipline)
{
    auto rows =
        database.query("select DATNN, DATKK from SPNAGR where IDG = "
                       + sql::number(keyNumber(group)) + disciplineCondition(discipline) + ";");
    std::vector<Period> periods;
    while (rows.next())
        periods.push_back({data::toDate(rows.value(0)), data::toDate(rows.value(1))});
    return periods;
}

bool inForce(const Period& workload, QDate day)
{
    return (!workload.from.isValid() || day >= workload.from)
           && (!workload.to.isValid() || day <= workload.to);
}

DaysOff::DaysOff(jet::Database& database)
{
    for (const data::Holiday& holiday : data::readHolidays(database))
        m_holidays.emplace(holiday.day, holiday.month);
}

bool DaysOff::contains(QDate day) const
{
    return day.dayOfWeek() == Qt::Sunday || m_holidays.contains({day.day(), day.month()});
}

} // namespace journals
