#include "journals/studyperiod.h"

#include "data/settingsrow.h"

namespace journals {

Period studyPeriod(const data::SettingsRow& settings, QDate today)
{
    const QDate middle = settings.yearBegin.isValid()     ? settings.yearBegin
                         : settings.yearEnd.isValid()     ? settings.yearEnd
                         : settings.workingDate.isValid() ? settings.workingDate
                                                          : today;
    const QDate september = monthOf(middle).balanceStart();
    return {settings.yearBegin.isValid() ? settings.yearBegin : september,
            settings.yearEnd.isValid() ? settings.yearEnd : september.addYears(1).addDays(-1)};
}

std::vector<Month> monthsOf(const Period& period)
{
    std::vector<Month> months;
    if (!period.valid())
        return months;
    for (QDate first = monthOf(period.from).first(); first <= period.to; first = first.addMonths(1))
        months.push_back(monthOf(first));
    return months;
}

Month monthOf(QDate date)
{
    return {date.year(), date.month()};
}

} // namespace journals
