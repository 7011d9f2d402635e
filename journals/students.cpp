#include "journals/students.h"

#include "data/convert.h"
#include "jet/database.h"
#include "jet/sqltext.h"

#include <QStringList>

#include <utility>

using namespace Qt::StringLiterals;
namespace sql = jet::sql;

namespace journals {

std::string enrolledCondition(std::optional<int> subgroup)
{
    const std::string enrolled = R"((prikazOtch="" or prikazOtch is null))";
    return subgroup ? enrolled + " and val(0 & idgg)=" + sql::number(*subgroup) : enrolled;
}

std::vector<Student> readStudents(jet::Database& database, GroupId group,
                                  std::optional<int> subgroup)
{
    auto rows =
        database.query(R"(SELECT ID, IDGG, FAM, IM, OTCH
                                  FROM SPSTUD
                                  WHERE ((SPSTUD.IDG)=)"
                       + sql::number(keyNumber(group)) + ") and " + enrolledCondition(subgroup)
                       + R"( ORDER BY SPSTUD.FAM, SPSTUD.IM, SPSTUD.OTCH, SPSTUD.ID;)");
    std::vector<Student> students;
    while (rows.next()) {
        Student student;
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

QString withInitials(const QString& name)
{
    const QStringList parts = name.split(u' ', Qt::SkipEmptyParts);
    QString text = parts.value(0);
    for (const QString& part : parts.mid(1))
        text += u' ' + (part.contains(u'.') ? part : part.first(1) + u'.');
    return text;
}

} // namespace journals
