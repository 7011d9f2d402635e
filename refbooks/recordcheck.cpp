#include "refbooks/recordcheck.h"

#include "data/convert.h"
#include "jet/database.h"
#include "jet/sqltext.h"
#include "refbooks/phrase.h"
#include "refbooks/recordstore.h"
#include "shell/prompt.h"
#include "shell/session.h"

#include <algorithm>

using namespace Qt::StringLiterals;
namespace sql = jet::sql;

namespace refbooks {
namespace {

constexpr Phrase kWorkloadTwice{
    u"Такая нагрузка уже имеется в другой строке справочника (преподаватель, группа, п/г и "
    "дисциплина). Сохранить?"};
constexpr Phrase kGroupTwice{
    u"Группа \"%1\" специальность \"%2\" уже имеется в другой строке справочника. Измените "
    "наименование группы или выберите другую специальность, или измените курс."};
constexpr Phrase kLessonTwice{
    u"Занятие (урок) с таким номером уже имеется в другой строке справочника. Измените номер "
    "занятия (урока) или нажмите кнопку Отмена.",
    u"Урок с таким номером уже имеется в другой строке справочника. Измените номер урока или "
    "нажмите кнопку Отмена."};

QString quoted(const QString& text)
{
    return u'"' + text + u'"';
}

bool isDigits(const QString& text)
{
    return std::ranges::all_of(text, [](QChar sign) { return sign >= u'0' && sign <= u'9'; });
}

int daysIn(int month)
{
    constexpr int kLeapYear = 2024; // the 29th of February may be a holiday
    return QDate(kLeapYear, month, 1).daysInMonth();
}

} // namespace

RecordCheck::RecordCheck(const RecordDraft& draft, shell::Session& session, shell::Prompt& prompt)
    : m_draft(draft)
    , m_session(session)
    , m_prompt(prompt)
{}

std::optional<int> RecordCheck::failedField()
{
    static constexpr Failed (RecordCheck::*kSteps[])() = {
        &RecordCheck::required,          &RecordCheck::unique,       &RecordCheck::passwords,
        &RecordCheck::projectDates,      &RecordCheck::datesInOrder, &RecordCheck::wholeNumbers,
        &RecordCheck::workloadTwice,     &RecordCheck::holidays,     &RecordCheck::groupTwice,
        &RecordCheck::lessonNumberTwice, &RecordCheck::birthDate,    &RecordCheck::columns};
    for (const auto step : kSteps)
        if (const Failed failed = (this->*step)())
            return failed;
    return {};
}

RecordCheck::Failed RecordCheck::required()
{
    for (int i = 0; i < static_cast<int>(m_draft.fields.size()); ++i) {
        const RecordField& field = m_draft.fields[static_cast<std::size_t>(i)];
        if (field.requirement == Requirement::Optional)
            continue;
        if (field.isText() && m_draft.text(i).isEmpty())
            return refuse(u"Необходимо обязательно заполнить поле "_s + quoted(field.name()) + u'.',
                          i);
        if (field.kind == FieldKind::List && !m_draft.isChosen(i))
            return refuse(u"Необходимо обязательно выбрать строку в списке "_s
                              + quoted(field.name()) + u'.',
                          i);
    }
    return {};
}

RecordCheck::Failed RecordCheck::unique()
{
    for (int i = 0; i < static_cast<int>(m_draft.fields.size()); ++i) {
        const RecordField& field = m_draft.fields[static_cast<std::size_t>(i)];
        if (field.requirement != Requirement::Unique || !isTaken(field, m_draft.text(i)))
            continue;
        return refuse(u"Значение "_s + quoted(m_draft.text(i)) + u" поля "_s + quoted(field.name())
                          + u" уже имеется в другой строке справочника. Измените введенное "
                            "значение."_s,
                      i);
    }
    return {};
}

bool RecordCheck::isTaken(const RecordField& field, const QString& value)
{
    const std::string table(bookInfo(m_draft.book).table);
    const std::string query = "SELECT * FROM " + table + " WHERE (((" + table + "."
                              + std::string(field.field) + ")=" + sql::text(data::toUtf8(value))
                              + ") " + otherRows() + ");";
    return database().count(query) > 0;
}

RecordCheck::Failed RecordCheck::passwords()
{
    if (!isBook(Book::Users))
        return {};
    const int password = m_draft.position("PSSW");
    if (m_draft.text(password) == m_draft.text(password + 1))
        return {};
    return refuse(u"Пароль и подтверждение пароля не совпадают. Введите пароль заново."_s,
                  password);
}

RecordCheck::Failed RecordCheck::projectDates()
{
    if (!isBook(Book::TimetableProjects))
        return {};
    const QDate begin = m_draft.value("DAT1").date, end = m_draft.value("DAT2").date;
    const QDate yearBegin = m_session.yearBegin(), yearEnd = m_session.yearEnd();
    const auto isOutside = [&](QDate date) {
        return date.isValid()
               && ((yearBegin.isValid() && date < yearBegin)
                   || (yearEnd.isValid() && date > yearEnd));
    };
    const auto isBefore2000 = [](QDate date) { return date.isValid() && date.year() < 2000; };
    const struct
    {
        bool doubtful;
        QStringView what;
        std::string_view field;
    } doubts[] = {
        {isOutside(begin), u"начала проекта расписания находится за пределами учебного периода",
         "DAT1"},
        {isOutside(end), u"окончания проекта расписания находится за пределами учебного периода",
         "DAT2"},
        {isBefore2000(begin), u"начала проекта расписания раньше 2000 года", "DAT1"},
        {isBefore2000(end), u"окончания проекта расписания раньше 2000 года", "DAT2"},
        // Only of the end: a beginning after 2050 would stand behind it.
        {end.isValid() && end.year() > 2050, u"окончания проекта расписания позже 2050 года",
         "DAT2"},
    };
    const QString period = u". Скорее всего должна быть дата с "_s
                           + yearBegin.toString(u"dd.MM.yyyy"_s) + u" по "_s
                           + yearEnd.toString(u"dd.MM.yyyy"_s) + u". Сохранить?"_s;
    for (const auto& doubt : doubts)
        if (doubt.doubtful)
            if (const Failed failed = ask(u"Дата "_s + doubt.what.toString() + period, doubt.field))
                return failed;
    return {};
}

RecordCheck::Failed RecordCheck::datesInOrder()
{
    const bool isProject = isBook(Book::TimetableProjects);
    if (!isProject && !isBook(Book::Workload))
        return {};
    const std::string_view first = isProject ? "DAT1" : "DATNN";
    const QDate begin = m_draft.value(first).date;
    const QDate end = m_draft.value(isProject ? "DAT2" : "DATKK").date;
    if (!begin.isValid() || !end.isValid() || begin < end)
        return {};
    return refuse(u"Дата начала должна быть раньше даты окончания."_s, first);
}

RecordCheck::Failed RecordCheck::wholeNumbers()
{
    for (int i = 0; i < static_cast<int>(m_draft.fields.size()); ++i) {
        const RecordField& field = m_draft.fields[static_cast<std::size_t>(i)];
        if (field.wholeNumber && !isDigits(m_draft.text(i)))
            return refuse(u"Необходимо ввести целое положительное число в поле "_s
                              + quoted(field.name()) + u". Другие символы запрещены."_s,
                          i);
    }
    return {};
}

RecordCheck::Failed RecordCheck::workloadTwice()
{
    if (!isBook(Book::Workload))
        return {};
    const std::string query =
        "SELECT * FROM SPNAGR WHERE (((SPNAGR.IDP)=" + sql::number(m_draft.choice("IDP"))
        + ") AND ((SPNAGR.IDG)=" + sql::number(m_draft.choice("IDG"))
        + ") AND ((Val(0 & SPNAGR.IDGG))=" + sql::number(m_draft.choice("IDGG"))
        + ") AND ((SPNAGR.IDD)=" + sql::number(m_draft.choice("IDD")) + ")" + otherRows() + ");";
    if (database().count(query) == 0)
        return {};
    return ask(kWorkloadTwice.in(m_session.wording()), "IDP");
}

RecordCheck::Failed RecordCheck::holidays()
{
    if (!isBook(Book::Holidays))
        return {};
    const QString day = m_draft.text("DAY");
    const int month = m_draft.choice("MN");
    const int number = isDigits(day) ? day.toInt() : 0;
    if (number < 1 || number > daysIn(month))
        return refuse(u"День может иметь значение от 1 до "_s + QString::number(daysIn(month)),
                      "DAY");
    const std::string query = "SELECT * FROM HOLI WHERE (((HOLI.DAY)=" + sql::number(number)
                              + ") AND ((HOLI.MN)=" + sql::number(month) + ")" + otherRows() + ");";
    if (database().count(query) == 0)
        return {};
    return refuse(u"Нерабочий день "_s + quoted(day)
                      + u" уже имеется в другой строке. Измените день или месяц."_s,
                  "DAY");
}

// A group's name is unique only within its speciality and course.
RecordCheck::Failed RecordCheck::groupTwice()
{
    if (!isBook(Book::Groups))
        return {};
    const QString name = m_draft.text("NAIM");
    const std::string query = "SELECT * FROM SPGRUP WHERE IDO=" + sql::number(m_draft.choice("IDO"))
                              + " AND kurs=" + sql::number(m_draft.text("KURS").toDouble())
                              + " and naim=" + sql::text(data::toUtf8(name)) + otherRows() + " ;";
    if (database().count(query) == 0)
        return {};
    return refuse(kGroupTwice.in(m_session.wording()).arg(name, m_draft.choiceText("IDO")), "NAIM");
}

RecordCheck::Failed RecordCheck::lessonNumberTwice()
{
    if (!isBook(Book::LessonTimes))
        return {};
    const std::string query = "SELECT UR_TIME.* From UR_TIME WHERE (((UR_TIME.IDUR)="
                              + sql::number(m_draft.text("IDUR").toDouble()) + ")" + otherRows()
                              + ");";
    if (database().count(query) == 0)
        return {};
    return refuse(kLessonTwice.in(m_session.wording()), "IDUR");
}

RecordCheck::Failed RecordCheck::birthDate()
{
    if (!isBook(Book::Students) || !m_draft.value("D_R").date.isValid()
        || m_draft.value("D_R").date <= QDate::currentDate())
        return {};
    return refuse(u"Дата рождения больше текущей даты! Измените значение."_s, "D_R");
}

// What the file's column cannot keep would be cut or refused by the engine.
RecordCheck::Failed RecordCheck::columns()
{
    const jet::TableDef table = database().tableDef(bookInfo(m_draft.book).table);
    for (int i = 0; i < static_cast<int>(m_draft.fields.size()); ++i) {
        const RecordField& field = m_draft.fields[static_cast<std::size_t>(i)];
        if (!field.isText() || fitsColumn(m_draft.text(i), *table.field(field.field)))
            continue;
        return refuse(u"Значение "_s + quoted(m_draft.text(i)) + u" не подходит для поля "_s
                          + quoted(field.name()) + u". Измените введенное значение."_s,
                      i);
    }
    return {};
}

std::string RecordCheck::otherRows() const
{
    if (m_draft.mode != RecordMode::Edit)
        return {};
    const BookInfo& info = bookInfo(m_draft.book);
    return " AND ((" + std::string(info.table) + "." + std::string(info.key) + ")<>"
           + sql::number(m_draft.key) + ")";
}

RecordCheck::Failed RecordCheck::refuse(const QString& text, int field)
{
    m_prompt.exclamation(text);
    return field;
}

RecordCheck::Failed RecordCheck::refuse(const QString& text, std::string_view field)
{
    return refuse(text, m_draft.position(field));
}

RecordCheck::Failed RecordCheck::ask(const QString& text, std::string_view field)
{
    return m_prompt.question(text) ? Failed() : m_draft.position(field);
}

jet::Database& RecordCheck::database()
{
    return m_session.database();
}

} // namespace refbooks
