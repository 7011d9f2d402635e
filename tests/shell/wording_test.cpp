#include "shell/wording.h"

#include <gtest/gtest.h>

using shell::Institution;
using shell::Wording;

namespace {

struct Case
{
    const char16_t* college;
    const char16_t* school;
    bool goOn = false;
    int occurrence = 0;
};

const Case kCases[] = {
    // capitals
    {u"Преподаватели", u"Учителя"},
    {u"преподаватели", u"учителя"},
    {u"ПРЕПОДАВАТЕЛЬ", u"Учитель"},
    {u"Отчет по Группам и группам", u"Отчет по Классам и Классам"},
    // protective rows
    {u"подгруппы", u"подгруппы"},
    {u"Подгруппа", u"Подгруппа"},
    {u"подгруппы", u"подкласса", false, 1},
    {u"подгруппы", u"подклассы", false, 2},
    // the reading of "группы" is the caller's
    {u"группы", u"класса"},
    {u"группы", u"классы", false, 1},
    {u"Группы", u"Классы", false, 1},
    {u"группы", u"класса", true},
    // longer phrases first
    {u"поточное занятие", u"поточный урок"},
    {u"Поточное занятие", u"Поточный урок"},
    {u"Учебные занятия", u"Уроки"},
    {u"Учебные группы", u"Классы"},
    {u"часов в семестре", u"часов в неделю"},
    // a row that stands inside a longer word applies there too
    {u"преподавателями", u"учителями"},
    {u"занятиями", u"уроками", false, 0},
    // several words: without going on, only the row that stands first in the table
    {u"Преподаватель и группа", u"Учитель и группа"},
    {u"Преподаватель и группа", u"Учитель и класс", true},
    {u"группа, специальность, дисциплина", u"класс, параллель, предмет", true},
    {u"кафедру и дисциплину", u"методическое объединение и предмет", true},
    {u"студент не найден", u"учащийся не найден"},
    {u"Студентов: 5", u"Учащихся: 5"},
    // an occurrence that is never reached changes nothing
    {u"студент", u"студент", false, 1},
    {u"студент", u"студент", true, 7},
    // nothing to translate
    {u"Месяц", u"Месяц"},
    {u"", u""},
    {u"   ", u"   "},
    {u"Ошибка: 5 > 4", u"Ошибка: 5 > 4"},
};

} // namespace

TEST(Wording, TurnsCollegeTextsIntoTheSchools)
{
    const Wording wording(Institution::School);
    for (const Case& one : kCases) {
        const auto text = QString::fromUtf16(one.college);
        EXPECT_EQ(wording.translate(text, one.goOn, one.occurrence).toStdString(),
                  QString::fromUtf16(one.school).toStdString())
            << text.toStdString() << ", occurrence " << one.occurrence << ", go on " << one.goOn;
    }
}

TEST(Wording, LeavesEveryTextOfACollegeAsItIs)
{
    const Wording wording;
    for (const Case& one : kCases) {
        const auto text = QString::fromUtf16(one.college);
        EXPECT_EQ(wording.translate(text, true, one.occurrence), text);
    }
}

TEST(Wording, LaterRowsSeeTheTranslatedText)
{
    const Wording wording(Institution::School);
    // The first "пара" row gives "час"; the row for "часов в семестре" must then see it.
    EXPECT_EQ(wording.translate(QStringLiteral("параов в семестре"), true).toStdString(),
              "часов в неделю");
}
