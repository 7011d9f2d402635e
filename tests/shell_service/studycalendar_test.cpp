#include "shell/service/studycalendar.h"

#include "data/journal.h"
#include "jet/database.h"
#include "shell/session.h"
#include "tests/support/smalljournal.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using shell::StudyCalendar;

TEST(StudyCalendar, KnowsOnlySundaysWithoutAJournal)
{
    shell::Session session;
    const StudyCalendar calendar = StudyCalendar::of(session);
    EXPECT_FALSE(calendar.hasStudyYear());
    EXPECT_FALSE(calendar.inStudyYear({2026, 9, 1}));
    EXPECT_TRUE(calendar.holidaysOfMonth(2026, 1).empty());
    EXPECT_EQ(calendar.describe({2026, 11, 21}).toStdString(), "Суббота, 21.11.2026.");
}

TEST(StudyCalendar, RepeatsHolidaysEveryYearButDatesThatNoYearHas)
{
    const StudyCalendar calendar({{29, 2, u"Високосный"_s},
                                  {31, 2, u"Никогда"_s},
                                  {0, 0, {}},
                                  {4, 11, u"День единства"_s},
                                  {4, 11, {}}},
                                 {}, {});
    EXPECT_EQ(calendar.holidaysOfMonth(2023, 2).size(), 0U);
    ASSERT_EQ(calendar.holidaysOfMonth(2024, 2).size(), 1U);
    EXPECT_EQ(calendar.holidaysOfMonth(2024, 2).front().first, QDate(2024, 2, 29));
    const QStringList both{u"День единства"_s, u"Праздничный день"_s};
    EXPECT_EQ(calendar.holidays({2021, 11, 4}), both);
    EXPECT_EQ(calendar.holidays({2035, 11, 4}), both);
    EXPECT_TRUE(calendar.holidays({2035, 4, 11}).isEmpty());
}

TEST(StudyCalendar, BoundsTheStudyYearByTheDatesThatAreGiven)
{
    struct Case
    {
        QDate begin, end, day;
        bool inside;
    };
    const QDate begin(2026, 9, 1);
    const QDate end(2027, 6, 30);
    const Case cases[] = {
        {begin, end, begin, true},
        {begin, end, end, true},
        {begin, end, begin.addDays(-1), false},
        {begin, end, end.addDays(1), false},
        {begin, {}, {2040, 1, 1}, true},
        {{}, end, {1990, 1, 1}, true},
        {{}, end, end.addDays(1), false},
        {{}, {}, begin, false},
        {end, begin, {2027, 1, 1}, false}, // ends exchanged: no day lies between
    };
    for (const Case& row : cases) {
        EXPECT_EQ(StudyCalendar({}, row.begin, row.end).inStudyYear(row.day), row.inside)
            << row.day.toString(Qt::ISODate).toStdString();
    }
}

TEST(StudyCalendar, ReadsTheHolidaysBook)
{
    SmallJournal file;
    file.database().execute("INSERT INTO HOLI ([DAY], [MN], NAIM) VALUES (9, 5, \"День Победы\");");
    file.database().execute("INSERT INTO HOLI ([DAY], [MN]) VALUES (1, 1);");
    file.database().execute("INSERT INTO HOLI (NAIM) VALUES (\"без даты\");");
    shell::Session session;
    session.openJournal(file.release());
    data::SettingsRow row = session.settings();
    row.yearBegin = {2026, 9, 1};
    row.yearEnd = {2027, 6, 30};
    session.saveSettings(row);

    const StudyCalendar calendar = StudyCalendar::of(session);
    EXPECT_EQ(calendar.holidays({2027, 5, 9}), QStringList{u"День Победы"_s});
    EXPECT_EQ(calendar.describe({2027, 5, 9}).toStdString(),
              "Воскресенье, 09.05.2027. Праздник: День Победы. Входит в учебный год.");
    EXPECT_EQ(calendar.describe({2027, 1, 1}).toStdString(),
              "Пятница, 01.01.2027. Праздник: Праздничный день. Входит в учебный год.");
    EXPECT_EQ(calendar.studyYearText().toStdString(), "Учебный год: 01.09.2026 – 30.06.2027.");
}
