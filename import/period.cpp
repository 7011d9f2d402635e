#include "import/period.h"

using namespace Qt::StringLiterals;

namespace imports {
namespace {

constexpr int kLongestDays = 31;

} // namespace

Period monthOf(QDate day)
{
    return {QDate(day.year(), day.month(), 1), QDate(day.year(), day.month(), day.daysInMonth())};
}

bool tooLong(const Period& period)
{
    return period.from.daysTo(period.to) + 1 > kLongestDays;
}

QString problem(const Period& period)
{
    if (!period.from.isValid() || !period.to.isValid())
        return u"Укажите даты начала и окончания периода."_s;
    if (period.from > period.to)
        return u"Дата начала позже даты окончания."_s;
    return tooLong(period) ? u"Период не должен быть больше 31 дня."_s : QString();
}

} // namespace imports
