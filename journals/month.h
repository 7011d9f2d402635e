#pragma once

#include <QDate>
#include <QString>

namespace journals {

// One calendar month. A month of 0 stands for "nothing chosen yet".
struct Month
{
    int year = 0;
    int month = 0;

    bool chosen() const { return month != 0; }
    bool valid() const { return month >= 1 && month <= 12; }
    bool validYear() const { return year >= 1900 && year <= 2199; }

    QDate first() const { return {year, month, 1}; }
    QDate last() const { return first().addMonths(1).addDays(-1); }
    int days() const { return first().daysInMonth(); }
    // 1 September on or before the month: absence balances start there, whatever the study
    // year of the settings says.
    QDate balanceStart() const { return {month >= 9 ? year : year - 1, 9, 1}; }

    friend bool operator==(const Month&, const Month&) = default;
};

// What the status line says of a month that nothing can be shown for; "" for a good one.
QString problemOf(Month month);
// "ноябрь 2025 г."
QString monthText(Month month);
// "Ноябрь 2025". Requires valid().
QString monthTitle(Month month);
// "12 ноября", as a date is read out.
QString spokenDay(QDate date);
// "Пн" for Monday to "Вс" for Sunday.
QString weekdayLetters(QDate date);

} // namespace journals
