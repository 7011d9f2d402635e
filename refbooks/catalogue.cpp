#include "refbooks/catalogue.h"

#include "refbooks/worded.h"

#include <cassert>

using namespace Qt::StringLiterals;

namespace refbooks {

const std::array<BookInfo, kBookCodes>& catalogue()
{
    static const std::array<BookInfo, kBookCodes> books = {{
        {"SPNAGR", "IDN", u"Нагрузка"_s, u"Нагрузка"_s, "mnunagr"},
        {"SPOTD", "IDO", u"Специальность"_s, u"Специальности"_s, "mnuspez"},
        {"SPGRUP", "IDG", u"Группа"_s, u"Учебные группы"_s, "mnugrup"},
        {"SPPREP", "IDP", u"Преподаватель"_s, u"Преподаватели"_s, "mnuprepod"},
        {"SPKAUD", "IDA", u"Аудитория"_s, u"Аудитории"_s, "mnuSprAud"},
        {"SPAUD", "IDT", u"Тип аудитории"_s, u"Типы аудиторий"_s, "mnuSprTipAud"},
        {"SPPRED", "IDD", u"Дисциплина"_s, u"Дисциплины"_s, "mnuPred"},
        {"SPKAF", "IDK", u"Кафедра"_s, u"Кафедры"_s, "mnuSprKaf"},
        {"HOLI", "IDH", u"Праздник"_s, u"Праздничные дни"_s, "mnuSprHoli"},
        {"SPPRIH", "IDI", u"Причина запрета"_s, u"Причины запретов"_s, "mnuSprPrih"},
        {"UR_TIME", "IDUR", u"Время занятия"_s, u"Время занятий"_s, "mnuSprTime"},
        {"USERS", "IDU", u"Пользователь"_s, u"Пользователи"_s, "mnuSprUsers"},
        {"SPTIPZ", "IDZ", u"Тип занятия"_s, u"Типы занятий"_s, "mnuSprTipZan"},
        {},
        {"SPTIPG", "IDF", u"Тип группы"_s, u"Типы групп"_s, "mnuSprTipGrup"},
        {"SPSTUD", "ID", u"Студент"_s, u"Студенты"_s, "mnustud"},
        {"SPRASP", "IDR", u"Проект расписания"_s, u"Проекты расписаний"_s, "mnuSprRasp"},
        {"SPVID", "IDV", u"Вид обучения"_s, u"Виды обучения"_s, "mnuSprVid"},
        {"UROKI", "ID", {}, u"Занятия"_s, "mnuImpUr"},
    }};
    return books;
}

const BookInfo& bookInfo(Book book)
{
    const BookInfo& info = catalogue()[static_cast<std::size_t>(book)];
    assert(!info.table.empty());
    return info;
}

QString bookTitle(Book book, const shell::Wording& wording)
{
    return worded(wording, bookInfo(book).title);
}

QString bookNoun(Book book, const shell::Wording& wording)
{
    return worded(wording, bookInfo(book).noun);
}

} // namespace refbooks
