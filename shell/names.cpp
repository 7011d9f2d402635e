#include "shell/names.h"

#include "data/schema.h"

namespace shell {

QString monthName(int month)
{
    return monthNames().at(month - 1);
}

const QStringList& monthNames()
{
    static const QStringList names(data::monthNames().begin(), data::monthNames().end());
    return names;
}

const QStringList& gradeNames()
{
    static const QStringList names = [] {
        QStringList list;
        for (const auto& grade : data::gradeNames())
            list << grade.name;
        return list;
    }();
    return names;
}

QString gradeName(int grade)
{
    for (const auto& known : data::gradeNames())
        if (known.grade == grade)
            return known.name;
    return {};
}

} // namespace shell
