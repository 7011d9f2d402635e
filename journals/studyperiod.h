#pragma once

#include "journals/month.h"

#include <QDate>

#include <vector>

namespace data {
struct SettingsRow;
}

namespace journals {

// Days from the first to the last, both included.
struct Period
{
    QDate from;
    QDate to;

    bool valid() const { return from.isValid() && to.isValid() && from <= to; }
    bool contains(QDate date) const { return from <= date && date <= to; }
    // The day itself, or the nearest one of the period.
    QDate kept(QDate date) const { return date < from ? from : date > to ? to : date; }
    friend bool operator==(const Period&, const Period&) = default;
};

// The study year of the settings row. An end left empty is that of the school year, 1 September
// to 31 August, around the end that is set; with both empty, around the working date, or `today`
// where there is none. Not valid when the row has its ends the wrong way round.
Period studyPeriod(const data::SettingsRow& settings, QDate today = QDate::currentDate());

// Every month that has a day in the period; none for a period that is not valid.
std::vector<Month> monthsOf(const Period& period);
Month monthOf(QDate date);

} // namespace journals
