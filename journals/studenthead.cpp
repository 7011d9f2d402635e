#include "journals/studenthead.h"

#include "journals/counted.h"
#include "journals/students.h"

#include "data/convert.h"
#include "jet/database.h"
#include "jet/sqltext.h"

#include <QStringList>

using namespace Qt::StringLiterals;

namespace journals {

std::optional<StudentHead> readStudentHead(jet::Database& database, StudentId student)
{
    auto rows = database.query(R"(SELECT SPSTUD.FAM, SPSTUD.IM, SPSTUD.OTCH, SPSTUD.IDG,
                                         SPSTUD.IDGG, SPGRUP.NAIM
                                  From SPSTUD, SPGRUP
                                  WHERE SPSTUD.idg = SPGRUP.idg and (((SPSTUD.ID)=)"
                               + jet::sql::number(keyNumber(student)) + "));");
    if (!rows.next())
        return std::nullopt;
    const QStringList names{data::fromUtf8(rows.text(0)), data::fromUtf8(rows.text(1)),
                            data::fromUtf8(rows.text(2))};
    return StudentHead{student, names.join(u' ').simplified(),
                       GroupId{static_cast<int>(rows.integer(3))}, data::fromUtf8(rows.text(5)),
                       static_cast<int>(rows.integer(4))};
}

QString stepText(const QString& what, const QString& fullName, QDate date)
{
    return what + u", "_s + withInitials(fullName) + u", "_s + date.toString(u"dd.MM"_s);
}

QString cellsStepText(const QString& what, int cells)
{
    return what + u", "_s + counted(cells, u"ячейка"_s, u"ячейки"_s, u"ячеек"_s);
}

} // namespace journals
