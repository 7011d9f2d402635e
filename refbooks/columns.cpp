#include "refbooks/columns.h"

#include "refbooks/worded.h"
#include "shell/wording.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace refbooks {
namespace {

constexpr Alignment kRight = Alignment::Right;
constexpr Alignment kCentre = Alignment::Centre;

std::vector<Column> schoolDisciplineColumns()
{
    return {
        {u"Наименование"_s, "NAIM", {}, 300},
        {u"Трудность"_s, "TRUD", kRight, 80},
    };
}

// A table of data: it grows with the catalogue, whatever its length.
// NOLINTNEXTLINE(readability-function-size)
std::array<std::vector<Column>, kBookCodes> allColumns()
{
    return {{
        // Workload
        {{u"Преподаватель"_s, "FAMIO", {}, 180},
         {u"Группа"_s, "SPGRUP_NAIM", {}, 90},
         {u"П/г"_s, "IDGG", kCentre, 40},
         {u"Дисциплина"_s, "SPPRED_NAIM", {}, 250},
         {u"Всего, час."_s, "CHSEM", kRight, 80},
         {u"Начало"_s, "DATNN", kCentre, 85},
         {u"Окончание"_s, "DATKK", kCentre, 85},
         {u"Примечание"_s, "spnagr_MEMO", {}, 150},
         {u"Номер связанной нагрузки"_s, "IDNN", kRight, 90},
         {u"Номер в БД"_s, "IDN", kRight, 80}},
        // Specialities
        {{u"Код"_s, "Kod", {}, 90},
         {u"Наименование специальности"_s, "Naim", {}, 400},
         {u"Сокращение"_s, "Sokr", {}, 120}},
        // Groups
        {{u"Специальность"_s, "SPOTD.NAIM", {}, 300},
         {u"Курс"_s, "KURS", kCentre, 50},
         {u"Группа"_s, "GR", {}, 100},
         {u"Кл. руководитель"_s, "FAMIO", {}, 180},
         {u"Примечание"_s, "SPGRUP.MEMO", {}, 200}},
        // Teachers
        {{u"Таб. №"_s, "TABNOM", {}, 80},
         {u"Фамилия И.О."_s, "FAMIO", {}, 250},
         {u"Примечание"_s, "MEMO", {}, 250}},
        // Rooms
        {{u"Аудитория"_s, "KAUDI", {}, 90},
         {u"Тип аудитории"_s, "TIP", {}, 150},
         {u"Вместимость, чел."_s, "KOL", kRight, 110},
         {u"Время открытия"_s, "OTKR", kCentre, 110},
         {u"Время закрытия"_s, "ZAKR", kCentre, 110},
         {u"Примечание"_s, "MEMO", {}, 200}},
        // RoomTypes
        {{u"Наименование"_s, "NAIM", {}, 250}, {u"Сокращение"_s, "SOKR", {}, 100}},
        // Disciplines
        {{u"Код"_s, "KOD", {}, 90},
         {u"Наименование"_s, "NAIM", {}, 300},
         {u"Полное наименование"_s, "MEMO", {}, 350}},
        // Departments
        {{u"Наименование"_s, "NAIM", {}, 350}},
        // Holidays
        {{u"День"_s, "DAY", kCentre, 60},
         {u"Месяц"_s, "MES", {}, 100},
         {u"Наименование"_s, "NAIM", {}, 300}},
        // BanReasons
        {{u"Наименование"_s, "NAIM", {}, 300},
         {u"Табель"_s, "TABEL", kCentre, 70},
         {u"Весь день"_s, "VESD", kCentre, 90},
         {u"Рабочий день"_s, "RABD", kCentre, 100}},
        // LessonTimes
        {{u"Номер урока"_s, "IDUR", kCentre, 90}, {u"Время"_s, "NAIM", {}, 200}},
        // Users
        {{u"Пользователь"_s, "NAIM", {}, 250}, {u"Роль"_s, "ROL", {}, 150}},
        // LessonTypes
        {{u"Наименование"_s, "NAIM", {}, 250}, {u"Примечание"_s, "MEMO", {}, 300}},
        {},
        // GroupTypes
        {{u"Наименование"_s, "NAIM", {}, 250}, {u"Примечание"_s, "MEMO", {}, 300}},
        // Students
        {{u"Фамилия"_s, "FAM", {}, 130},
         {u"Имя"_s, "IM", {}, 110},
         {u"Отчество"_s, "OTCH", {}, 130},
         {u"П/г"_s, "IDGG1", kCentre, 40},
         {u"Пол"_s, "POL1", kCentre, 40},
         {u"Дата рождения"_s, "D_R", kCentre, 100},
         {u"Адрес"_s, "ADR", {}, 200},
         {u"Телефон"_s, "TEL", {}, 140},
         {u"Удостоверение личности"_s, "DOC", {}, 150},
         {u"Примечание"_s, "MEMO", {}, 150},
         {u"Приказ об отчислении"_s, "prikazOtch", {}, 150},
         {u"Причина отчисления"_s, "prichOtch", {}, 150}},
        // TimetableProjects
        {{u"Начало"_s, "DAT1", kCentre, 100},
         {u"Окончание"_s, "DAT2", kCentre, 100},
         {u"Примечание"_s, "MEMO", {}, 300}},
        // StudyForms
        {{u"Наименование"_s, "NAIM", {}, 250}, {u"Примечание"_s, "MEMO", {}, 300}},
        // Lessons
        {{u"Дата"_s, "DAT", kCentre, 85},
         {u"№ урока"_s, "UR", kCentre, 65},
         {u"Преподаватель"_s, "FAMIO", {}, 180},
         {u"Группа"_s, "SPGRUP.NAIM", {}, 90},
         {u"Подгуппа"_s, "IDGG", kCentre, 75}, // spelled so since the first edition
         {u"Дисциплина"_s, "SPPRED.NAIM", {}, 250}},
    }};
}

std::string_view nameField(Book book)
{
    switch (book) {
    case Book::Workload:
        return "SPPRED_NAIM";
    case Book::Specialities:
        return "Naim";
    case Book::Groups:
        return "GR";
    case Book::Teachers:
        return "FAMIO";
    case Book::Disciplines:
        return "NAIM";
    default:
        return {};
    }
}

} // namespace

std::vector<Column> listColumns(Book book, const shell::Wording& wording)
{
    static const auto all = allColumns();
    const bool ownSchoolColumns = book == Book::Disciplines && wording.isSchool();
    std::vector<Column> columns =
        ownSchoolColumns ? schoolDisciplineColumns() : all[static_cast<std::size_t>(book)];
    for (Column& column : columns)
        column.header = worded(wording, column.header);
    return columns;
}

int nameColumn(Book book, const std::vector<Column>& columns)
{
    const auto found = std::ranges::find(columns, nameField(book), &Column::field);
    return found == columns.end() ? 0 : static_cast<int>(found - columns.begin());
}

} // namespace refbooks
