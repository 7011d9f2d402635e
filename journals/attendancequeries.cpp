#include "journals/attendancequeries.h"

#include "data/convert.h"
#include "data/settingsrow.h"
#include "jet/database.h"
#include "jet/sqltext.h"
#include "journals/openday.h"
#include "journals/students.h"

#include <set>
#include <string>
#include <utility>

using namespace Qt::StringLiterals;
namespace sql = jet::sql;

namespace journals {
namespace {

std::string groupText(const AttendanceSelection& selection)
{
    return sql::number(keyNumber(selection.group.value()));
}

// "" for all disciplines.
std::string disciplineCondition(const AttendanceSelection& selection, const std::string& before,
                                const std::string& after)
{
    return selection.discipline ? before + sql::number(keyNumber(*selection.discipline)) + after
                                : std::string();
}

// The hours of each student (in each discipline) from a day to the one before `end`.
std::vector<AbsenceRow> readSums(jet::Database& database, const AttendanceSelection& selection,
                                 QDate from, QDate end, bool byDiscipline = false)
{
    const std::string discipline = byDiscipline ? ", POS.IDD" : "";
    auto rows = database.query(
        "SELECT POS.ID, Sum(POS.uv) AS [Suv], Sum(POS.nuv) AS [Snuv]" + discipline
        + " FROM POS INNER JOIN SPSTUD ON POS.ID = SPSTUD.ID Where ("
        + disciplineCondition(selection, "((POS.IDD)=", ") AND ") + "((POS.dat) < "
        + data::toSql(end) + ") And ((POS.dat) >= " + data::toSql(from)
        + ") And ((SPSTUD.IDG) = " + groupText(selection) + ")) and "
        + enrolledCondition(selection.studentSubgroup()) + " GROUP BY POS.ID" + discipline + ";");
    std::vector<AbsenceRow> sums;
    while (rows.next()) {
        AbsenceRow row;
        row.student = StudentId{static_cast<int>(rows.integer(0))};
        row.hours = {static_cast<int>(rows.integer(1)), static_cast<int>(rows.integer(2))};
        if (byDiscipline)
            row.discipline = DisciplineId{static_cast<int>(rows.integer(3))};
        sums.push_back(row);
    }
    return sums;
}

void markDaysOff(jet::Database& database, std::vector<AttendanceColumn>& columns)
{
    const DaysOff daysOff(database);
    for (AttendanceColumn& column : columns)
        column.dayOff = daysOff.contains(column.date);
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
    std::vector<AttendanceStudent> students;
    for (Student& found :
         readStudents(database, selection.group.value(), selection.studentSubgroup())) {
        AttendanceStudent student;
        student.id = found.id;
        student.subgroup = found.subgroup;
        student.name = std::move(found.name);
        students.push_back(std::move(student));
    }
    return students;
}

std::vector<AttendanceColumn> readDayColumns(jet::Database& database,
                                             const AttendanceSelection& selection)
{
    const bool byLessons = data::readSettingsRow(database).useTimetable;
    const GroupId group = selection.group.value();
    std::set<QDate> lessons;
    std::vector<Period> workload;
    if (byLessons)
        lessons = daysWithLessons(database, group, selection.discipline,
                                  {selection.month.first(), selection.month.last()});
    else
        workload = workloadPeriods(database, group, selection.discipline);
    std::vector<AttendanceColumn> columns;
    for (int day = 1; day <= selection.month.days(); ++day) {
        AttendanceColumn column;
        column.date = selection.month.first().addDays(day - 1);
        column.title = QString::number(day);
        column.inForce = byLessons ? lessons.contains(column.date)
                                   : workload.empty() || inForce(workload.front(), column.date);
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
    return readSums(database, selection, selection.month.balanceStart(), selection.month.first());
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
        + " ((SPSTUD.IDG) = " + groupText(selection) + ")) and "
        + enrolledCondition(selection.studentSubgroup()) + " GROUP BY POS.ID, POS.dat" + lesson
        + " HAVING (((POS.dat)>=" + data::toSql(selection.month.first())
        + " And (POS.dat)<=" + data::toSql(selection.month.last()) + "));");
    const int hours = lesson.empty() ? 2 : 3;
    std::vector<AbsenceRow> absences;
    while (rows.next())
        absences.push_back(
            {StudentId{static_cast<int>(rows.integer(0))},
             {},
             data::toDate(rows.date(1)),
             lesson.empty() ? 0 : static_cast<int>(rows.integer(2)),
             {static_cast<int>(rows.integer(hours)), static_cast<int>(rows.integer(hours + 1))}});
    return absences;
}

std::vector<AbsenceRow> readAbsenceSums(jet::Database& database,
                                        const AttendanceSelection& selection, const Period& period)
{
    return readSums(database, selection, period.from, period.to.addDays(1));
}

std::vector<AbsenceRow> readDisciplineAbsences(jet::Database& database,
                                               const AttendanceSelection& selection)
{
    return readSums(database, selection, selection.month.first(), selection.month.last().addDays(1),
                    true);
}

} // namespace journals
