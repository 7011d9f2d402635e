#include "journals/month.h"

#include "shell/names.h"

#include <QStringList>

using namespace Qt::StringLiterals;

namespace journals {

QString problemOf(Month month)
{
    if (!month.chosen())
        return u"Ошибка: не выбран месяц."_s;
    if (!month.valid())
        return u"Ошибка: неверный месяц."_s;
    return month.validYear() ? QString() : u"Ошибка: неверный год."_s;
}

QString monthTitle(Month month)
{
    return shell::monthName(month.month) + u' ' + QString::number(month.year);
}

QString monthText(Month month)
{
    return monthTitle(month).toLower() + u" г."_s;
}

QString spokenDay(QDate date)
{
    static const QStringList names{u"января"_s,   u"февраля"_s, u"марта"_s,  u"апреля"_s,
                                   u"мая"_s,      u"июня"_s,    u"июля"_s,   u"августа"_s,
                                   u"сентября"_s, u"октября"_s, u"ноября"_s, u"декабря"_s};
    return QString::number(date.day()) + u' ' + names[date.month() - 1];
}

QString weekdayLetters(QDate date)
{
    static const QStringList letters{u"Пн"_s, u"Вт"_s, u"Ср"_s, u"Чт"_s, u"Пт"_s, u"Сб"_s, u"Вс"_s};
    return letters[date.dayOfWeek() - 1];
}

} // namespace journals
