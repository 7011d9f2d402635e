#include "journals/graderows.h"

#include "data/convert.h"
#include "jet/database.h"
#include "jet/sqltext.h"
#include "journals/students.h"

#include <algorithm>
#include <string>

namespace sql = jet::sql;

namespace journals {
namespace {

// What finds the row; the two flags tell the kinds apart.
std::string rowCondition(const GradeRow& row)
{
    std::string condition = "id=" + sql::number(keyNumber(row.student));
    switch (row.kind) {
    case GradeKind::Current:
        condition += " AND dat=" + data::toSql(row.span.from);
        break;
    case GradeKind::Monthly:
        condition += " AND year(dat)=" + sql::number(row.span.from.year());
        condition += " AND month(dat)=" + sql::number(row.span.from.month());
        break;
    case GradeKind::Final:
        condition += " AND dat between " + data::toSql(row.span.from);
        condition += " and " + data::toSql(row.span.to);
        break;
    }
    condition += " and IDD=" + sql::number(keyNumber(row.discipline));
    condition += row.kind == GradeKind::Final ? " and it=-1" : " and it=0";
    condition += row.kind == GradeKind::Current ? " and tek=-1" : " and tek=0";
    return condition;
}

std::optional<jet::DateTime> latestDate(jet::Database& database, const std::string& where)
{
    auto rows = database.query("select dat from usp" + where + " order by dat desc;");
    return rows.next() ? std::optional(rows.date(0)) : std::nullopt;
}

void insertGrade(jet::Database& database, const GradeRow& row, int grade)
{
    database.execute(
        "INSERT INTO USP (ID, IDD, OC, it, TEK, DAT) VALUES (" + sql::number(keyNumber(row.student))
        + ", " + sql::number(keyNumber(row.discipline)) + ", " + sql::number(grade) + ", "
        + (row.kind == GradeKind::Final ? "-1" : "0") + ", "
        + (row.kind == GradeKind::Current ? "-1" : "0") + ", " + data::toSql(row.date) + ");");
}

std::string fromEnrolled(const GradeSelection& selection)
{
    return " FROM USP INNER JOIN SPSTUD ON USP.ID = SPSTUD.ID WHERE ((SPSTUD.IDG)="
           + sql::number(keyNumber(selection.group.value())) + ") and "
           + enrolledCondition(selection.studentSubgroup());
}

std::string disciplineCondition(const GradeSelection& selection)
{
    return selection.discipline
               ? " and ((USP.IDD)=" + sql::number(keyNumber(*selection.discipline)) + ")"
               : std::string();
}

// The days and the kinds of grades that the selection shows.
std::string kindCondition(const GradeSelection& selection)
{
    const Period span = selection.span();
    if (selection.mode == GradeMode::Current)
        return " and (year(usp.dat)=" + sql::number(span.from.year()) + ") and (month(usp.dat)="
               + sql::number(span.from.month()) + ") and USP.TEK=-1 and USP.it=0";
    std::string condition = " and usp.dat between " + data::toSql(span.from);
    condition += " and " + data::toSql(span.to) + " and USP.TEK=0";
    if (selection.allDisciplines || !selection.monthly())
        condition += selection.monthly() ? " and USP.it=0" : " and USP.it=-1";
    return condition;
}

} // namespace

void storeGrade(jet::Database& database, const GradeRow& row, int grade)
{
    const std::string where = " where " + rowCondition(row);
    if (grade == kNoGrade) {
        database.execute("delete * from usp" + where + ";");
        return;
    }
    if (const auto latest = latestDate(database, where))
        database.execute("update usp set oc=" + sql::number(grade) + where
                         + " and dat=" + sql::date(*latest) + ";");
    else
        insertGrade(database, row, grade);
}

std::vector<FoundGrade> readGrades(jet::Database& database, const GradeSelection& selection)
{
    auto rows = database.query("SELECT USP.ID, USP.IDD, USP.OC, USP.DAT, USP.it"
                               + fromEnrolled(selection) + disciplineCondition(selection)
                               + kindCondition(selection) + " ORDER BY USP.ID, USP.DAT;");
    std::vector<FoundGrade> grades;
    while (rows.next())
        grades.push_back({StudentId{static_cast<int>(rows.integer(0))},
                          DisciplineId{static_cast<int>(rows.integer(1))},
                          static_cast<int>(rows.integer(2)), data::toDate(rows.date(3)),
                          rows.integer(4) != 0});
    return grades;
}

QDate latestFinals(jet::Database& database, const GradeSelection& selection)
{
    auto rows = database.query("SELECT USP.DAT" + fromEnrolled(selection)
                               + disciplineCondition(selection) + " and ((USP.it)=True);");
    QDate latest;
    while (rows.next()) {
        const QDate date = data::toDate(rows.date(0));
        if (!latest.isValid() || date > latest)
            latest = date;
    }
    return latest;
}

} // namespace journals
