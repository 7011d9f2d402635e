#include "refbooks/catalogue.h"

#include "shell/wording.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using namespace refbooks;

namespace {

TEST(Catalogue, SpeaksTheInstitutionsWords)
{
    struct Case
    {
        Book book;
        QString title, noun;
    };
    const Case cases[] = {
        {Book::Groups, u"Классы"_s, u"Класс"_s},
        {Book::Teachers, u"Учителя"_s, u"Учитель"_s},
        {Book::Specialities, u"Параллели"_s, u"Параллель"_s},
        {Book::Departments, u"Методические объединения"_s, u"Методическое объединение"_s},
        {Book::LessonTypes, u"Типы уроков"_s, u"Тип урока"_s},
        {Book::GroupTypes, u"Типы классов"_s, u"Тип класса"_s},
        {Book::Students, u"Учащиеся"_s, u"Учащийся"_s},
        {Book::Lessons, u"Уроки"_s, u""_s},
    };
    const shell::Wording school(shell::Institution::School);
    for (const Case& row : cases) {
        EXPECT_EQ(bookTitle(row.book, school).toStdString(), row.title.toStdString());
        EXPECT_EQ(bookNoun(row.book, school).toStdString(), row.noun.toStdString());
    }
}

} // namespace
