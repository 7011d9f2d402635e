#include "refbooks/recordfields.h"

#include "refbooks/worded.h"
#include "shell/wording.h"

using namespace Qt::StringLiterals;

namespace refbooks {
namespace {

constexpr auto kRequired = Requirement::Required;
constexpr auto kUnique = Requirement::Unique;

RecordField text(const QString& caption, std::string_view field, int limit,
                 Requirement requirement = {}, bool wholeNumber = false)
{
    return {caption, field, FieldKind::Text, limit, requirement, wholeNumber};
}

RecordField list(const QString& caption, std::string_view field, Lookup lookup,
                 Requirement requirement = {})
{
    return {caption, field, FieldKind::List, 0, requirement, false, lookup};
}

RecordField other(const QString& caption, std::string_view field, FieldKind kind, int limit = 0,
                  Requirement requirement = {}, bool wholeNumber = false)
{
    return {caption, field, kind, limit, requirement, wholeNumber};
}

RecordField framed(const QString& frame, RecordField field)
{
    field.frame = frame;
    return field;
}

std::vector<RecordField> nameAndNote()
{
    return {text(u"! Наименование"_s, "NAIM", 50, kUnique), text(u"Примечание"_s, "MEMO", 150)};
}

std::vector<RecordField> workloadFields()
{
    return {list(u"! Преподаватель"_s, "IDP", Lookup::Teachers, kRequired),
            list(u"! Группа"_s, "IDG", Lookup::Groups, kRequired),
            list(u"! Подгруппа"_s, "IDGG", Lookup::Subgroups, kRequired),
            list(u"! Дисциплина"_s, "IDD", Lookup::Disciplines, kRequired),
            text(u"! Часов в семестре"_s, "CHSEM", 4, kRequired),
            other(u"Дата начала"_s, "DATNN", FieldKind::Date),
            other(u"Дата окончания"_s, "DATKK", FieldKind::Date),
            text(u"Примечание"_s, "MEMO", 50)};
}

std::vector<RecordField> specialityFields(bool school)
{
    std::vector<RecordField> fields = {text(u"! Наименование"_s, "Naim", 255, kUnique),
                                       text(u"! Сокращение"_s, "Sokr", 30, kUnique)};
    if (!school)
        fields.insert(fields.begin(), text(u"! Код"_s, "Kod", 12, kUnique));
    return fields;
}

std::vector<RecordField> disciplineFields(bool school)
{
    if (school)
        return {text(u"! Наименование"_s, "NAIM", 255, kUnique), text(u"Трудность"_s, "TRUD", 4)};
    return {text(u"Код"_s, "KOD", 20), text(u"! Наименование"_s, "NAIM", 255, kUnique),
            text(u"Полное наименование"_s, "MEMO", 255)};
}

std::vector<RecordField> groupFields()
{
    return {list(u"! Специальность"_s, "IDO", Lookup::Specialities, kRequired),
            text(u"! Курс"_s, "KURS", 27, kRequired, true),
            text(u"! Группа"_s, "NAIM", 30, kRequired), // unique in its speciality and course
            list(u"Кл. руководитель"_s, "IDP", Lookup::Teachers),
            text(u"Примечание"_s, "MEMO", 50)};
}

std::vector<RecordField> roomFields()
{
    return {text(u"! Аудитория"_s, "KAUDI", 10, kUnique),
            list(u"! Тип аудитории"_s, "IDT", Lookup::RoomTypes, kRequired),
            text(u"Вместимость, чел."_s, "KOL", 4, {}, true),
            other(u"Время открытия"_s, "TIM1", FieldKind::TimeOfDay),
            other(u"Время закрытия"_s, "TIM2", FieldKind::TimeOfDay),
            text(u"Примечание"_s, "MEMO", 20)};
}

std::vector<RecordField> banReasonFields()
{
    return {text(u"! Наименование"_s, "NAIM", 50, kUnique), text(u"Табель"_s, "TABEL", 2),
            other(u"Весь день"_s, "ALLDAY", FieldKind::CheckBox),
            other(u"Рабочий день"_s, "RABDAY", FieldKind::CheckBox)};
}

std::vector<RecordField> userFields()
{
    return {text(u"! Пользователь"_s, "NAIM", 50, kUnique), list(u"Роль"_s, "ROLE", Lookup::Roles),
            other(u"Пароль"_s, "PSSW", FieldKind::Password, 15),
            other(u"Подтверждение пароля"_s, "PSSW", FieldKind::Password, 15)};
}

std::vector<RecordField> studentFields()
{
    return {framed(u"Личные данные"_s, text(u"! Фамилия"_s, "FAM", 50, kRequired)),
            text(u"! Имя"_s, "IM", 50, kRequired),
            text(u"Отчество"_s, "OTCH", 50),
            list(u"! Группа"_s, "IDG", Lookup::Groups, kRequired),
            list(u"П/г"_s, "IDGG", Lookup::Subgroups),
            list(u"Пол"_s, "POL", Lookup::Sexes),
            other(u"Дата рождения"_s, "D_R", FieldKind::Date),
            text(u"Адрес"_s, "ADR", 255),
            text(u"Телефон"_s, "TEL", 255),
            text(u"Удостоверение личности"_s, "DOC", 100),
            text(u"Примечание"_s, "MEMO", 100),
            framed(u"Данные об отчислении"_s, text(u"Приказ об отчислении"_s, "prikazOtch", 255)),
            text(u"Причина отчисления"_s, "prichOtch", 255)};
}

// In the college's words.
std::vector<RecordField> fieldsOf(Book book, bool school)
{
    switch (book) {
    case Book::Workload:
        return workloadFields();
    case Book::Specialities:
        return specialityFields(school);
    case Book::Groups:
        return groupFields();
    case Book::Teachers:
        return {text(u"Таб. №"_s, "TABNOM", 10), text(u"! Фамилия И.О."_s, "FAMIO", 255, kUnique),
                text(u"Примечание"_s, "MEMO", 50)};
    case Book::Rooms:
        return roomFields();
    case Book::RoomTypes:
        return {text(u"! Наименование"_s, "NAIM", 20, kUnique),
                text(u"! Сокращение"_s, "SOKR", 2, kUnique)};
    case Book::Disciplines:
        return disciplineFields(school);
    case Book::Departments:
        return {text(u"! Наименование"_s, "NAIM", 50, kUnique)};
    case Book::Holidays:
        return {text(u"! День"_s, "DAY", 2, kRequired),
                list(u"! Месяц"_s, "MN", Lookup::Months, kRequired),
                text(u"Наименование"_s, "NAIM", 50)};
    case Book::BanReasons:
        return banReasonFields();
    case Book::LessonTimes:
        return {other(u"! Номер урока"_s, "IDUR", FieldKind::LessonTime, 2, kRequired, true),
                other(u"! Время"_s, "NAIM", FieldKind::LessonTime, 50, kRequired)};
    case Book::Users:
        return userFields();
    case Book::LessonTypes:
    case Book::GroupTypes:
    case Book::StudyForms:
        return nameAndNote();
    case Book::Students:
        return studentFields();
    case Book::TimetableProjects:
        return {other(u"Начало"_s, "DAT1", FieldKind::Date),
                other(u"Окончание"_s, "DAT2", FieldKind::Date), text(u"Примечание"_s, "MEMO", 50)};
    case Book::Lessons:
        break;
    }
    return {};
}

} // namespace

bool RecordField::isText() const
{
    return kind == FieldKind::Text || kind == FieldKind::LessonTime || kind == FieldKind::Password;
}

QString RecordField::name() const
{
    return caption.startsWith(u"! "_s) ? caption.sliced(2) : caption;
}

std::vector<RecordField> recordFields(Book book, const shell::Wording& wording)
{
    std::vector<RecordField> fields = fieldsOf(book, wording.isSchool());
    for (RecordField& field : fields)
        field.caption = worded(wording, field.caption);
    return fields;
}

} // namespace refbooks
