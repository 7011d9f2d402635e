#include "shell/service/studycalendar.h"

#include "shell/session.h"

#include <QLocale>

using namespace Qt::StringLiterals;

namespace shell {

namespace {

const QString kDate = u"dd.MM.yyyy"_s;

QString weekday(QDate day)
{
    const QString name = QLocale(QLocale::Russian).dayName(day.dayOfWeek());
    return name.left(1).toUpper() + name.mid(1);
}

QString textOf(QDate date)
{
    return date.isValid() ? date.toString(kDate) : u"…"_s;
}

} // namespace

StudyCalendar::StudyCalendar(std::vector<data::Holiday> holidays, QDate yearBegin, QDate yearEnd)
    : m_holidays(std::move(holidays))
    , m_begin(yearBegin)
    , m_end(yearEnd)
{}

StudyCalendar StudyCalendar::of(Session& session)
{
    if (!session.isOpen()) {
        return {};
    }
    return {data::readHolidays(session.database()), session.yearBegin(), session.yearEnd()};
}

QStringList StudyCalendar::holidays(QDate day) const
{
    QStringList names;
    for (const data::Holiday& holiday : m_holidays) {
        if (holiday.day == day.day() && holiday.month == day.month()) {
            names << (holiday.name.isEmpty() ? u"Праздничный день"_s : holiday.name);
        }
    }
    return names;
}

bool StudyCalendar::inStudyYear(QDate day) const
{
    return hasStudyYear() && (!m_begin.isValid() || day >= m_begin)
           && (!m_end.isValid() || day <= m_end);
}

std::vector<std::pair<QDate, QString>> StudyCalendar::holidaysOfMonth(int year, int month) const
{
    std::vector<std::pair<QDate, QString>> days;
    const QDate first(year, month, 1);
    for (QDate day = first; day.isValid() && day.month() == month; day = day.addDays(1)) {
        if (const QStringList names = holidays(day); !names.isEmpty()) {
            days.emplace_back(day, names.join(u"; "_s));
        }
    }
    return days;
}

QString StudyCalendar::describe(QDate day) const
{
    QString text = u"%1, %2."_s.arg(weekday(day), day.toString(kDate));
    if (const QStringList names = holidays(day); !names.isEmpty()) {
        text += u" Праздник: %1."_s.arg(names.join(u"; "_s));
    }
    if (hasStudyYear()) {
        text += inStudyYear(day) ? u" Входит в учебный год."_s : u" Вне учебного года."_s;
    }
    return text;
}

QString StudyCalendar::studyYearText() const
{
    if (!hasStudyYear()) {
        return u"Учебный год не задан."_s;
    }
    return u"Учебный год: %1 – %2."_s.arg(textOf(m_begin), textOf(m_end));
}

} // namespace shell
