#include "journals/attendancequeries.h"

#include "data/convert.h"
#include "data/holidays.h"
#include "data/settingsrow.h"
#include "jet/database.h"
#include "jet/sqltext.h"

#include <algorithm>
#include <set>
#include <string>
#include <utility>

using namespace Qt::StringLiterals;
namespace sql = jet::sql;

namespace journals {
namespace {

const std::string kEnrolled = R"((prikazOtch="" or prikazOtch is null))";

std::string dateText(QDate date)
{
    return sql::date(data::toJet(date));
}

std::string groupText(const AttendanceSelection& selection)
{
    return sql::number(keyNumber(selection.group.value()));
}

// An empty subgroup counts as 0. "" when all students of the group are meant.
std::string studentSubgroupCondition(const AttendanceSelection& selection)
{
    const auto subgroup = selection.studentSubgroup();
    return subgroup ? " and val(0 & idgg)=" + sql::number(*subgroup) : std::string();
}

// "" for all disciplines.
std::string disciplineCondition(const AttendanceSelection& selection, const std::string& before,
                                const std::string& after)
{
    return selection.discipline ? before + sql::number(keyNumber(*selection.discipline)) + after
                                : std::string();
}

// The days of the month on which the group has a lesson (of the discipline, if one is
// chosen): a row counts only when its date carries no time of day.
std::set<QDate> daysWithLessons(jet::Database& database, const AttendanceSelection& selection)
{
    auto rows =
        database.query(R"(select distinct dat
                                  from uroki
                                  where IDG = )"
                       + groupText(selection) + disciplineCondition(selection, " and idd= ", "")
                       + " and dat between " + dateText(selection.month.first()) + " and "
                       + dateText(selection.month.last()) + ";");
    std::set<QDate> days;
    while (rows.next()) {
        const QDate day = data::toDate(rows.date(0));
        if (data::toJet(day) == rows.date(0))
            days.insert(day);
    }
    return days;
}

// First and last date of the group's first workload (in the discipline, if one is chosen).
// An end that the file leaves open is invalid and bounds nothing.
std::pair<QDate, QDate> workloadPeriod(jet::Database& database,
                                       const AttendanceSelection& selection)
{
    auto rows = database.query("select DATNN, DATKK from SPNAGR where IDG = " + groupText(selection)
                               + disciplineCondition(selection, " and idd= ", "") + ";");
    if (!rows.next())
        return {};
    return {data::toDate(rows.value(0)), data::toDate(rows.value(1))};
}

void markDaysOff(jet::Database& database, std::vector<AttendanceColumn>& columns)
{
    std::set<std::pair<int, int>> free;
    for (const data::Holiday& holiday : data::readHolidays(database))
        free.emplace(holiday.day, holiday.month);
    for (AttendanceColumn& column : columns)
        column.dayOff = column.date.dayOfWeek() == Qt::Sunday
                        || free.contains({column.date.day(), column.date.month()});
}

void markTwins(std::vector<AttendanceColumn>& columns)
{
    for (std::size_t i = 1; i < columns.size(); ++i)
        if (columns[i].date == columns[i - 1].date && columns[i].lesson == columns[i - 1].lesson)
            columns[i].twin = columns[i - 1].twin = true;
    for (AttendanceColumn& column : columns)
        if (column.twin && column.subgroup != 0)
            column.title += u' ' + QString::number(column.subgroup) + u" п/г"_s;
}

} // namespace

std::vector<AttendanceStudent> readStudents(jet::Database& database,
                                            const AttendanceSelection& selection)
{
    auto rows = database.query(R"(SELECT ID, IDGG, FAM, IM, OTCH
                                  FROM SPSTUD
                                  WHERE ((SPSTUD.IDG)=)"
                               + groupText(selection) + ") and " + kEnrolled
                               + studentSubgroupCondition(selection)
                               + R"( ORDER BY SPSTUD.FAM, SPSTUD.IM, SPSTUD.OTCH, SPSTUD.ID;)");
    std::vector<AttendanceStudent> students;
    while (rows.next()) {
        AttendanceStudent student;
        student.id = StudentId{static_cast<int>(rows.integer(0))};
        student.subgroup = static_cast<int>(rows.integer(1));
        student.name = QStringList{data::fromUtf8(rows.text(2)), data::fromUtf8(rows.text(3)),
                                   data::fromUtf8(rows.text(4))}
                           .join(u' ')
                           .simplified();
        students.push_back(std::move(student));
    }
    return students;
}

std::vector<AttendanceColumn> readDayColumns(jet::Database& database,
                                             const AttendanceSelection& selection)
{
    const bool byLessons = data::readSettingsRow(database).useTimetable;
    const auto lessons = byLessons ? daysWithLessons(database, selection) : std::set<QDate>();
    const auto [begin, end] =
        byLessons ? std::pair<QDate, QDate>() : workloadPeriod(database, selection);
    std::vector<AttendanceColumn> columns;
    for (int day = 1; day <= selection.month.days(); ++day) {
        AttendanceColumn column;
        column.date = selection.month.first().addDays(day - 1);
        column.title = QString::number(day);
        const bool outside =
            (begin.isValid() && column.date < begin) || (end.isValid() && column.date > end);
        column.inForce = byLessons ? lessons.contains(column.date) : !outside;
        columns.push_back(std::move(column));
    }
    markDaysOff(database, columns);
    return columns;
}

std::vector<AttendanceColumn>
readLessonColumns(jet::Database& database, const AttendanceSelection& selection, int lessonHours)
{
    auto rows = database.query(R"(SELECT UROKI.DAT, UROKI.UR, UROKI.IDGG
                                  From UROKI
                                  WHERE (((UROKI.IDG)=)"
                               + groupText(selection) + ")"
                               + disciplineCondition(selection, " AND ((UROKI.IDD)=", ")")
                               + ") AND ((month(UROKI.DAT))=" + sql::number(selection.month.month)
                               + ") AND ((year(UROKI.DAT))=" + sql::number(selection.month.year)
                               + R"() ORDER BY UROKI.DAT, UROKI.UR, UROKI.IDGG;)");
    const QString unit = lessonHours == 1 ? u"часа"_s : u"пары"_s;
    std::vector<AttendanceColumn> columns;
    while (rows.next()) {
        AttendanceColumn column;
        column.date = data::toDate(rows.date(0));
        column.lesson = static_cast<int>(rows.integer(1));
        column.subgroup = static_cast<int>(rows.integer(2));
        column.title = column.date.toString(u"dd.MM.yyyy"_s) + u" № "_s
                       + QString::number(column.lesson) + u' ' + unit;
        columns.push_back(std::move(column));
    }
    markTwins(columns);
    markDaysOff(database, columns);
    return columns;
}

std::vector<AbsenceRow> readStartBalances(jet::Database& database,
                                          const AttendanceSelection& selection)
{
    auto rows = database.query(
        R"(SELECT POS.ID, Sum(POS.uv) AS [Suv], Sum(POS.nuv) AS [Snuv]
                                  FROM POS INNER JOIN SPSTUD ON POS.ID = SPSTUD.ID
                                  Where ()"
        + disciplineCondition(selection, "((POS.IDD)=", ") AND ") + "((POS.dat) < "
        + dateText(selection.month.first()) + ") And ((POS.dat) >= "
        + dateText(selection.month.balanceStart()) + ") And ((SPSTUD.IDG) = " + groupText(selection)
        + ")) and " + kEnrolled + studentSubgroupCondition(selection) + " GROUP BY POS.ID;");
    std::vector<AbsenceRow> balances;
    while (rows.next())
        balances.push_back(
            {StudentId{static_cast<int>(rows.integer(0))},
             QDate(),
             0,
             {static_cast<int>(rows.integer(1)), static_cast<int>(rows.integer(2))}});
    return balances;
}

std::vector<AbsenceRow> readMonthAbsences(jet::Database& database,
                                          const AttendanceSelection& selection)
{
    const std::string lesson = selection.mode == AttendanceMode::Lessons ? ", POS.UR" : "";
    auto rows = database.query(
        "SELECT POS.ID, POS.dat" + lesson + R"(, Sum(POS.uv) AS Suv, Sum(POS.nuv) AS Snuv
                                  FROM POS INNER JOIN SPSTUD ON POS.ID = SPSTUD.ID
                                  Where ()"
        + disciplineCondition(selection, "((POS.IDD)=", ") AND ")
        + " ((SPSTUD.IDG) = " + groupText(selection) + ")) and " + kEnrolled
        + studentSubgroupCondition(selection) + " GROUP BY POS.ID, POS.dat" + lesson
        + " HAVING (((POS.dat)>=" + dateText(selection.month.first())
        + " And (POS.dat)<=" + dateText(selection.month.last()) + "));");
    const int hours = lesson.empty() ? 2 : 3;
    std::vector<AbsenceRow> absences;
    while (rows.next())
        absences.push_back(
            {StudentId{static_cast<int>(rows.integer(0))},
             data::toDate(rows.date(1)),
             lesson.empty() ? 0 : static_cast<int>(rows.integer(2)),
             {static_cast<int>(rows.integer(hours)), static_cast<int>(rows.integer(hours + 1))}});
    return absences;
}

} // namespace journals
