#include "shell/files/retention.h"

#include <QSet>

#include <algorithm>
#include <numeric>

namespace shell {

namespace {

constexpr qsizetype kLatest = 10;
constexpr int kDays = 30;

} // namespace

QList<qsizetype> outlived(const QList<QDateTime>& made, const QDate& today)
{
    QList<qsizetype> byAge(made.size());
    std::iota(byAge.begin(), byAge.end(), 0);
    std::ranges::stable_sort(byAge, [&](qsizetype a, qsizetype b) { return made[a] < made[b]; });

    QSet<QDate> days;
    QSet<QDate> months;
    QList<qsizetype> gone;
    for (qsizetype i = 0; i < byAge.size(); ++i) {
        const QDate day = made[byAge[i]].date();
        const QDate month(day.year(), day.month(), 1);
        const bool firstOfMonth = !months.contains(month);
        const bool firstOfDay = !days.contains(day) && day.daysTo(today) < kDays;
        months.insert(month);
        days.insert(day);
        if (!firstOfMonth && !firstOfDay && i + kLatest < byAge.size())
            gone.append(byAge[i]);
    }
    return gone;
}

} // namespace shell
