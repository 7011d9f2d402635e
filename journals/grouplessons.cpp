#include "journals/grouplessons.h"

#include "data/convert.h"
#include "jet/database.h"
#include "jet/sqltext.h"

#include <algorithm>

namespace sql = jet::sql;

namespace journals {

std::vector<GroupLesson> readGroupLessons(jet::Database& database, GroupId group, QDate from,
                                          QDate to)
{
    auto rows = database.query(R"(SELECT UROKI.DAT, UROKI.UR, UROKI.IDD, UROKI.IDGG, SPPRED.Naim
                                  FROM UROKI LEFT JOIN SPPRED ON UROKI.IDD = SPPRED.IDD
                                  WHERE (((UROKI.IDG)=)"
                               + sql::number(keyNumber(group)) + ") AND UROKI.DAT >= "
                               + data::toSql(from) + " AND UROKI.DAT <= " + data::toSql(to)
                               + ") ORDER BY UROKI.DAT, UROKI.UR, UROKI.IDGG, UROKI.ID;");
    std::vector<GroupLesson> lessons;
    while (rows.next()) {
        const GroupLesson lesson{data::toDate(rows.date(0)), static_cast<int>(rows.integer(1)),
                                 DisciplineId{static_cast<int>(rows.integer(2))},
                                 static_cast<int>(rows.integer(3)), data::fromUtf8(rows.text(4))};
        const auto sameTime =
            std::find_if(lessons.rbegin(), lessons.rend(), [&](const GroupLesson& earlier) {
                return earlier.date != lesson.date || earlier.number != lesson.number;
            }).base();
        if (std::find(sameTime, lessons.end(), lesson) == lessons.end())
            lessons.push_back(lesson);
    }
    return lessons;
}

} // namespace journals
