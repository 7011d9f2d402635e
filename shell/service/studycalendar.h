#pragma once

#include "data/holidays.h"

#include <QDate>
#include <QStringList>

#include <utility>
#include <vector>

namespace shell {

class Session;

// What a calendar has to say about a day: holidays, Sundays, the study year.
class StudyCalendar final
{
public:
    StudyCalendar() = default; // without a journal: Sundays only
    // An invalid end of the study year leaves that side open; two make no study year.
    StudyCalendar(std::vector<data::Holiday> holidays, QDate yearBegin, QDate yearEnd);
    // That of the open journal. Throws jet::Error.
    static StudyCalendar of(Session& session);

    // Names of the holidays of that day, "Праздничный день" for one without a name.
    QStringList holidays(QDate day) const;
    bool inStudyYear(QDate day) const;
    bool hasStudyYear() const { return m_begin.isValid() || m_end.isValid(); }
    // The month's holidays with the day's names joined by "; ".
    std::vector<std::pair<QDate, QString>> holidaysOfMonth(int year, int month) const;

    // "Суббота, 21.11.2026. Праздник: ...; учебный год".
    QString describe(QDate day) const;
    // "Учебный год: 01.09.2026 – 30.06.2027", or that there is none.
    QString studyYearText() const;

private:
    std::vector<data::Holiday> m_holidays;
    QDate m_begin;
    QDate m_end;
};

} // namespace shell
