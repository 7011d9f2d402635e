#include "journals/absences.h"

#include "data/convert.h"
#include "data/settingsrow.h"
#include "jet/database.h"
#include "jet/sqltext.h"

#include <algorithm>
#include <string>
#include <vector>

namespace sql = jet::sql;

namespace journals {
namespace {

// "(IDD AND dat AND ID [AND UR])" of the place.
std::string placeCondition(const AbsencePlace& place)
{
    std::string condition = "(((POS.IDD)=" + sql::number(keyNumber(place.discipline))
                            + ") AND ((dat)=" + data::toSql(place.date)
                            + ") AND ((ID)=" + sql::number(keyNumber(place.student)) + ")";
    if (place.lesson)
        condition += " AND ((UR)=" + sql::number(*place.lesson) + ")";
    return condition + ")";
}

struct RecordedAbsence
{
    int lesson = 0;
    Absence hours;
};

std::vector<RecordedAbsence> recorded(jet::Database& database, const AbsencePlace& place)
{
    auto rows = database.query("SELECT * FROM POS WHERE " + placeCondition(place) + ";");
    std::vector<RecordedAbsence> absences;
    while (rows.next())
        absences.push_back(
            {static_cast<int>(rows.integer("UR")),
             {static_cast<int>(rows.integer("uv")), static_cast<int>(rows.integer("nuv"))}});
    return absences;
}

void insertAbsence(jet::Database& database, const AbsencePlace& place, const Absence& hours)
{
    database.execute("INSERT INTO POS (ID, DAT, UR, IDD, nuv, uv) VALUES ("
                     + sql::number(keyNumber(place.student)) + ", " + data::toSql(place.date) + ", "
                     + sql::number(place.lesson.value()) + ", "
                     + sql::number(keyNumber(place.discipline)) + ", "
                     + sql::number(hours.unexcused) + ", " + sql::number(hours.excused) + ");");
}

void updateAbsence(jet::Database& database, const AbsencePlace& place, const Absence& hours)
{
    database.execute("UPDATE POS SET nuv = " + sql::number(hours.unexcused) + ", uv = "
                     + sql::number(hours.excused) + " WHERE " + placeCondition(place) + ";");
}

Marked countDown(Absence hours)
{
    Marked marked;
    if (hours.unexcused > 0) {
        --hours.unexcused;
        marked.result = MarkResult::UnexcusedDown;
    } else {
        --hours.excused;
        marked.result = MarkResult::ExcusedDown;
    }
    if (hours.total() == 0)
        marked.result = MarkResult::NothingLeft;
    marked.left = hours;
    return marked;
}

} // namespace

int lessonHours(jet::Database& database)
{
    return std::clamp(data::readSettingsRow(database).hoursPerLesson, 1, kMostAbsenceHours);
}

Absence readAbsence(jet::Database& database, const AbsencePlace& place)
{
    Absence hours;
    for (const RecordedAbsence& absence : recorded(database, place))
        hours += absence.hours;
    return hours;
}

Marked markAbsence(jet::Database& database, const AbsencePlace& place, int lessonHours)
{
    const auto rows = recorded(database, place);
    Absence hours;
    for (const RecordedAbsence& row : rows)
        hours += row.hours;
    hours.unexcused = std::min(hours.unexcused, kMostAbsenceHours);
    hours.excused = std::min(hours.excused, kMostAbsenceHours);

    const Marked marked =
        hours.total() == 0 ? Marked{MarkResult::Added, {0, lessonHours}} : countDown(hours);
    if (rows.empty()) {
        insertAbsence(database, place, marked.left);
    } else if (rows.size() == 1) {
        updateAbsence(database, place, marked.left);
    } else { // a lesson recorded twice becomes one row, or an hour would count down in each
        jet::Transaction transaction(database);
        removeAbsence(database, place);
        insertAbsence(database, place, marked.left);
        transaction.commit();
    }
    return marked;
}

int lessonToMark(jet::Database& database, const AbsencePlace& place, GroupId group, int subgroup)
{
    auto rows = recorded(database, place);
    std::sort(rows.begin(), rows.end(), [](const auto& left, const auto& right) {
        const auto rank = [](const RecordedAbsence& row) {
            return row.hours.unexcused > 0 ? 0 : row.hours.excused > 0 ? 1 : 2;
        };
        return std::pair(rank(left), left.lesson) < std::pair(rank(right), right.lesson);
    });
    if (!rows.empty())
        return rows.front().lesson;

    const std::string own = sql::number(subgroup);
    auto lessons = database.query(R"(SELECT UROKI.UR
                                     FROM UROKI
                                     WHERE UROKI.IDG = )"
                                  + sql::number(keyNumber(group))
                                  + " AND UROKI.IDD = " + sql::number(keyNumber(place.discipline))
                                  + " AND UROKI.DAT = " + data::toSql(place.date)
                                  + " AND (val(0 & UROKI.IDGG) = 0 OR val(0 & UROKI.IDGG) = " + own
                                  + " OR " + own + " = 0) ORDER BY UROKI.UR;");
    constexpr int kFirstLesson = 1;
    return lessons.next() ? static_cast<int>(lessons.integer(0)) : kFirstLesson;
}

void makeExcused(jet::Database& database, const AbsencePlace& place)
{
    database.execute("UPDATE POS SET uv = nuv, nuv = 0 WHERE " + placeCondition(place)
                     + " AND nuv > 0;");
}

void makeUnexcused(jet::Database& database, const AbsencePlace& place)
{
    database.execute("UPDATE POS SET nuv = uv, uv = 0 WHERE " + placeCondition(place)
                     + " AND uv > 0;");
}

void removeAbsence(jet::Database& database, const AbsencePlace& place)
{
    database.execute("delete * FROM POS WHERE " + placeCondition(place) + ";");
}

} // namespace journals
