#include "refbooks/bookrecord.h"

#include "data/journal.h"
#include "jet/error.h"
#include "tests/refbooks/bookfixture.h"

using namespace Qt::StringLiterals;
using namespace refbooks;

namespace {

// A field by its name in the table, and what is entered in it.
struct Entry
{
    const char* field;
    FieldValue value;
};

FieldValue text(const QString& text)
{
    return {.text = text};
}

FieldValue choice(std::int64_t key)
{
    return {.choice = static_cast<int>(key)};
}

FieldValue date(int year, int month, int day)
{
    return {.date = QDate(year, month, day)};
}

void enter(BookRecord& record, const std::vector<Entry>& entries)
{
    for (const auto& [name, value] : entries) {
        const auto& fields = record.fields();
        int i = 0;
        while (i < static_cast<int>(fields.size())
               && fields[static_cast<std::size_t>(i)].field != name)
            ++i;
        ASSERT_LT(i, static_cast<int>(fields.size())) << name;
        switch (fields[static_cast<std::size_t>(i)].kind) {
        case FieldKind::List:
            record.setChoice(i, value.choice);
            break;
        case FieldKind::CheckBox:
            record.setChecked(i, value.checked);
            break;
        case FieldKind::Date:
            record.setDate(i, value.date);
            break;
        case FieldKind::TimeOfDay:
            record.setTime(i, value.time);
            break;
        default:
            record.setText(i, value.text);
        }
    }
}

class BookRecords : public BookFixture
{
protected:
    using BookFixture::BookFixture;

    std::unique_ptr<BookRecord> opened(Book book, RecordMode mode = RecordMode::New,
                                       std::int64_t key = 0)
    {
        auto record = BookRecord::open(session, prompt, book, mode, key);
        EXPECT_TRUE(record);
        return record;
    }
    // The field that a save of these entries goes back to, "" when it was stored.
    std::string failed(BookRecord& record, const std::vector<Entry>& entries)
    {
        enter(record, entries);
        if (record.save())
            return {};
        EXPECT_TRUE(prompt.done());
        return std::string(record.fields()[static_cast<std::size_t>(*record.failedField())].field);
    }
    // Adds a row as the dialog does; gives its key.
    std::int64_t stored(Book book, const std::vector<Entry>& entries)
    {
        const auto record = opened(book);
        EXPECT_EQ(failed(*record, entries), "");
        return record->key();
    }
    void refuses(const QString& text) { prompt.expect(Box::Exclamation, text); }

    std::int64_t speciality = add("SPOTD", {{"SOKR", "ИС"}, {"KOD", "09"}, {"NAIM", "Системы"}});
    std::int64_t teacher = add("SPPREP", {{"FAMIO", "Иванов И.И."}});
};

class SchoolBookRecords : public BookRecords
{
protected:
    SchoolBookRecords()
        : BookRecords(shell::Institution::School)
    {}
};

TEST_F(BookRecords, StoreEveryFieldOfANewStudent)
{
    const std::int64_t group = add("SPGRUP", {{"NAIM", "ИС-21"}});
    const auto record = opened(Book::Students);
    EXPECT_EQ(record->caption(), u"Студент: Новая"_s);
    record->preset({{}, static_cast<int>(group), 1});
    EXPECT_FALSE(record->isChanged());
    EXPECT_EQ(failed(*record, {{"FAM", text(u"О\"Хара-'О''Коннор' #1; ]["_s)},
                               {"IM", text(u"  Анна "_s)},
                               {"POL", choice(-1)},
                               {"D_R", date(2005, 2, 28)},
                               {"ADR", text(u"\"\""_s)}}),
              "");
    reopen();
    EXPECT_EQ(rows("SELECT ID, FAM, IM, OTCH, IDG, IDGG, POL, D_R, ADR, TEL, prikazOtch "
                   "FROM SPSTUD;"),
              (QStringList{u"1 О\"Хара-'О''Коннор' #1; ][ Анна - 1 1 -1 28.02.2005 \"\" - -"_s}));
    EXPECT_EQ(record->key(), 1);
    const auto again = opened(Book::Students, RecordMode::Edit, 1);
    EXPECT_EQ(again->caption(), u"Студент: О\"Хара-'О''Коннор' #1; ]["_s);
    EXPECT_EQ(failed(*again, {{"IDGG", {}}, {"D_R", {}}, {"ADR", {}}, {"POL", choice(0)}}), "");
    EXPECT_EQ(rows("SELECT FAM, IDGG, POL, D_R, ADR FROM SPSTUD;"),
              QStringList{u"О\"Хара-'О''Коннор' #1; ][ - 0 - -"_s});
}

TEST_F(BookRecords, TellTheRequiredFieldThatIsEmpty)
{
    const auto record = opened(Book::Students);
    refuses(u"Необходимо обязательно заполнить поле \"Фамилия\"."_s);
    EXPECT_EQ(failed(*record, {{"FAM", text(u"   "_s)}}), "FAM");
    refuses(u"Необходимо обязательно выбрать строку в списке \"Группа\"."_s);
    EXPECT_EQ(failed(*record, {{"FAM", text(u"А"_s)}, {"IM", text(u"Б"_s)}}), "IDG");
    EXPECT_EQ(session.database().rowCount("SPSTUD"), 0);
}

TEST_F(SchoolBookRecords, NameFieldsInTheSchoolsWords)
{
    const auto record = opened(Book::Students);
    EXPECT_EQ(record->caption(), u"Учащийся: Новая"_s);
    refuses(u"Необходимо обязательно выбрать строку в списке \"Класс\"."_s);
    EXPECT_EQ(failed(*record, {{"FAM", text(u"А"_s)}, {"IM", text(u"Б"_s)}}), "IDG");
    const auto group = opened(Book::Groups);
    refuses(u"Необходимо обязательно выбрать строку в списке \"Параллель\"."_s);
    EXPECT_EQ(failed(*group, {}), "IDO");
    const auto workload = opened(Book::Workload);
    EXPECT_EQ(workload->fields()[2].caption, u"! Подгруппа"_s);
    EXPECT_EQ(workload->fields()[4].caption, u"! Часов в неделю"_s);
    EXPECT_EQ(opened(Book::Specialities)->fields().size(), 2U) << "no code";
    EXPECT_EQ(opened(Book::Disciplines)->fields()[1].field, "TRUD");
}

TEST_F(BookRecords, KeepUniqueFieldsUnique)
{
    const auto edited = opened(Book::Teachers, RecordMode::Edit, teacher);
    EXPECT_EQ(failed(*edited, {{"MEMO", text(u"сам себе не мешает"_s)}}), "");
    const auto copy = opened(Book::Teachers, RecordMode::Copy, teacher);
    refuses(u"Значение \"Иванов И.И.\" поля \"Фамилия И.О.\" уже имеется в другой строке "
            "справочника. Измените введенное значение."_s);
    EXPECT_EQ(failed(*copy, {}), "FAMIO");
    refuses(u"Значение \"иванов и.и.\" поля \"Фамилия И.О.\" уже имеется в другой строке "
            "справочника. Измените введенное значение."_s);
    EXPECT_EQ(failed(*copy, {{"FAMIO", text(u" иванов и.и. "_s)}}), "FAMIO");
    EXPECT_EQ(failed(*copy, {{"FAMIO", text(u"\" or \"\"=\""_s)}}), "");
    const auto third = opened(Book::Teachers);
    refuses(u"Значение \"\" or \"\"=\"\" поля \"Фамилия И.О.\" уже имеется в другой строке "
            "справочника. Измените введенное значение."_s);
    EXPECT_EQ(failed(*third, {{"FAMIO", text(u"\" or \"\"=\""_s)}}), "FAMIO");
    EXPECT_EQ(
        rows("SELECT FAMIO, MEMO FROM SPPREP ORDER BY IDP;"),
        (QStringList{u"Иванов И.И. сам себе не мешает"_s, u"\" or \"\"=\" сам себе не мешает"_s}));
}

TEST_F(BookRecords, AskForThePasswordTwice)
{
    const auto record = opened(Book::Users);
    enter(*record, {{"NAIM", text(u"Новиков"_s)}, {"PSSW", text(u" тайна"_s)}});
    refuses(u"Пароль и подтверждение пароля не совпадают. Введите пароль заново."_s);
    EXPECT_FALSE(record->save());
    EXPECT_EQ(record->failedField(), 2);
    record->setText(3, u"тайна"_s);
    refuses(u"Пароль и подтверждение пароля не совпадают. Введите пароль заново."_s);
    EXPECT_FALSE(record->save());
    record->setText(3, u" тайна"_s);
    EXPECT_TRUE(record->save());
    EXPECT_EQ(rows("SELECT NAIM, ROLE, PSSW FROM USERS WHERE NAIM = \"Новиков\";"),
              QStringList{u"Новиков 2  тайна"_s});
    const auto edited = opened(Book::Users, RecordMode::Edit, record->key());
    EXPECT_EQ(failed(*edited, {{"ROLE", choice(1)}}), "") << "both hold the stored password";
    EXPECT_EQ(rows("SELECT ROLE, PSSW FROM USERS WHERE NAIM = \"Новиков\";"),
              QStringList{u"1  тайна"_s});
}

TEST_F(BookRecords, QuestionTheDatesOfATimetableProject)
{
    data::SettingsRow settings = session.settings();
    settings.yearBegin = {2022, 9, 1};
    settings.yearEnd = {2023, 6, 30};
    session.saveSettings(settings);
    const QString period =
        u" Скорее всего должна быть дата с 01.09.2022 по 30.06.2023. Сохранить?"_s;
    const QString outsideBegin =
        u"Дата начала проекта расписания находится за пределами учебного периода."_s + period;
    const QString outsideEnd =
        u"Дата окончания проекта расписания находится за пределами учебного периода."_s + period;
    const auto record = opened(Book::TimetableProjects);
    EXPECT_EQ(record->value(0).date, QDate(2022, 9, 1)) << "the study year is offered";

    expectQuestion(outsideBegin, shell::Answer::No);
    EXPECT_EQ(failed(*record, {{"DAT1", date(2022, 8, 31)}}), "DAT1");
    expectQuestion(outsideBegin);
    expectQuestion(outsideEnd, shell::Answer::No);
    EXPECT_EQ(failed(*record, {{"DAT2", date(2023, 7, 1)}}), "DAT2");
    expectQuestion(outsideBegin);
    expectQuestion(outsideEnd);
    expectQuestion(u"Дата начала проекта расписания раньше 2000 года."_s + period);
    expectQuestion(u"Дата окончания проекта расписания раньше 2000 года."_s + period);
    refuses(u"Дата начала должна быть раньше даты окончания."_s);
    EXPECT_EQ(failed(*record, {{"DAT1", date(1999, 12, 31)}, {"DAT2", date(1999, 12, 31)}}),
              "DAT1");
    expectQuestion(outsideBegin);
    expectQuestion(outsideEnd);
    expectQuestion(u"Дата окончания проекта расписания позже 2050 года."_s + period);
    EXPECT_EQ(failed(*record, {{"DAT1", date(2050, 12, 31)}, {"DAT2", date(2051, 1, 1)}}), "");
    EXPECT_EQ(
        rows("SELECT DAT1, DAT2 FROM SPRASP WHERE IDR = " + std::to_string(record->key()) + ";"),
        QStringList{u"31.12.2050 01.01.2051"_s});
    const auto inside = opened(Book::TimetableProjects);
    EXPECT_EQ(failed(*inside, {{"DAT1", date(2022, 9, 1)}, {"DAT2", date(2023, 6, 30)}}), "");
    const auto open = opened(Book::TimetableProjects);
    EXPECT_EQ(failed(*open, {{"DAT1", {}}, {"DAT2", {}}}), "") << "dates may be left empty";
}

TEST_F(BookRecords, TakeOnlyDigitsWhereTheyMust)
{
    struct Case
    {
        const char* course;
        const char* field; // that is refused, or ""
        const char* message;
    };
    const Case cases[] = {
        {"2а", "KURS",
         "Необходимо ввести целое положительное число в поле \"Курс\". Другие символы запрещены."},
        {"-2", "KURS",
         "Необходимо ввести целое положительное число в поле \"Курс\". Другие символы запрещены."},
        {"2,5", "KURS",
         "Необходимо ввести целое положительное число в поле \"Курс\". Другие символы запрещены."},
        {"99999999999999999999", "KURS",
         "Значение \"99999999999999999999\" не подходит для поля \"Курс\". Измените введенное "
         "значение."},
        {"32768", "KURS",
         "Значение \"32768\" не подходит для поля \"Курс\". Измените введенное значение."},
        {" 2 ", "", ""},
    };
    const auto record = opened(Book::Groups);
    enter(*record, {{"IDO", choice(speciality)}, {"NAIM", text(u"ИС-21"_s)}});
    for (const Case& row : cases) {
        if (*row.field)
            refuses(QString::fromUtf8(row.message));
        EXPECT_EQ(failed(*record, {{"KURS", text(QString::fromUtf8(row.course))}}), row.field)
            << row.course;
    }
    EXPECT_EQ(rows("SELECT KURS, NAIM, IDO, IDP FROM SPGRUP;"), QStringList{u"2 ИС-21 1 -"_s});
}

TEST_F(BookRecords, StoreRoomsWithTheirTimes)
{
    const std::int64_t type =
        stored(Book::RoomTypes, {{"NAIM", text(u"Лаборатория"_s)}, {"SOKR", text(u"Лаб"_s)}});
    EXPECT_EQ(rows("SELECT SOKR FROM SPAUD WHERE IDT = " + std::to_string(type) + ";"),
              QStringList{u"Ла"_s})
        << "a text box takes two characters";
    const auto record = opened(Book::Rooms);
    refuses(u"Необходимо ввести целое положительное число в поле \"Вместимость, чел.\". Другие "
            "символы запрещены."_s);
    EXPECT_EQ(failed(*record, {{"KAUDI", text(u"101"_s)},
                               {"IDT", choice(type)},
                               {"KOL", text(u"3x"_s)},
                               {"TIM1", {.time = QTime(8, 30)}}}),
              "KOL");
    EXPECT_EQ(failed(*record, {{"KOL", {}}}), "") << "may be left empty";
    const auto again = opened(Book::Rooms, RecordMode::Edit, record->key());
    EXPECT_EQ(again->value(3).time, QTime(8, 30));
    EXPECT_FALSE(again->value(4).time.isValid());
    EXPECT_EQ(failed(*again, {{"KOL", text(u"30"_s)}, {"TIM2", {.time = QTime(22, 0)}}}), "");
    EXPECT_EQ(rows("SELECT KOL, TIM1, TIM2, MEMO FROM SPKAUD;"),
              QStringList{u"30 8:30:00 22:00:00 -"_s});
}

TEST_F(BookRecords, AskBeforeTheSameWorkloadTwice)
{
    const std::int64_t group = add("SPGRUP", {{"NAIM", "ИС-21"}});
    const std::int64_t maths = add("SPPRED", {{"NAIM", "Математика"}});
    add("SPNAGR", {{"IDP", teacher}, {"IDG", group}, {"IDD", maths}, {"CHSEM", 10}});
    const QString question =
        u"Такая нагрузка уже имеется в другой строке справочника (преподаватель, группа, п/г и "
        "дисциплина). Сохранить?"_s;
    const std::vector<Entry> entries = {{"IDP", choice(teacher)},    {"IDG", choice(group)},
                                        {"IDD", choice(maths)},      {"CHSEM", text(u"72"_s)},
                                        {"DATNN", date(2022, 9, 1)}, {"DATKK", date(2022, 12, 30)}};
    const auto record = opened(Book::Workload);
    expectQuestion(question, shell::Answer::No);
    EXPECT_EQ(failed(*record, entries), "IDP") << "a missing subgroup counts as the whole group";
    EXPECT_EQ(failed(*record, {{"IDGG", choice(1)}}), "");
    const auto same = opened(Book::Workload, RecordMode::Copy, record->key());
    expectQuestion(question);
    EXPECT_EQ(failed(*same, {}), "");
    const auto edited = opened(Book::Workload, RecordMode::Edit, 1);
    EXPECT_EQ(edited->caption(), u"Нагрузка: Математика"_s);
    EXPECT_EQ(edited->value(2).choice, 0);
    refuses(u"Дата начала должна быть раньше даты окончания."_s);
    EXPECT_EQ(failed(*edited, {{"DATNN", date(2022, 9, 1)}, {"DATKK", date(2022, 9, 1)}}), "DATNN");
    EXPECT_EQ(failed(*edited, {{"DATKK", date(2022, 9, 2)}}), "") << "does not meet itself";
    refuses(u"Значение \"мног\" не подходит для поля \"Часов в семестре\". Измените введенное "
            "значение."_s);
    EXPECT_EQ(failed(*edited, {{"CHSEM", text(u"много"_s)}}), "CHSEM");
    reopen();
    EXPECT_EQ(
        rows("SELECT IDN, IDP, IDG, IDGG, IDD, CHSEM, DATNN, DATKK FROM SPNAGR ORDER BY IDN;"),
        (QStringList{u"1 1 1 0 1 10 01.09.2022 02.09.2022"_s,
                     u"2 1 1 1 1 72 01.09.2022 30.12.2022"_s,
                     u"3 1 1 1 1 72 01.09.2022 30.12.2022"_s}));
}

TEST_F(BookRecords, KnowTheDaysOfEveryMonth)
{
    struct Case
    {
        const char* day;
        int month;
        const char* bound; // "" = accepted
    };
    const Case cases[] = {
        {"0", 1, "31"}, {"32", 1, "31"}, {"30", 2, "29"}, {"31", 4, "30"},
        {"x", 4, "30"}, {"-1", 4, "30"}, {"29", 2, ""},   {"31", 1, ""},
    };
    session.database().execute("DELETE * FROM HOLI;");
    for (const Case& row : cases) {
        const auto record = opened(Book::Holidays);
        if (*row.bound)
            refuses(u"День может иметь значение от 1 до "_s + QString::fromUtf8(row.bound));
        EXPECT_EQ(
            failed(*record, {{"DAY", text(QString::fromUtf8(row.day))}, {"MN", choice(row.month)}}),
            *row.bound ? "DAY" : "")
            << row.day;
    }
    const auto again = opened(Book::Holidays);
    refuses(u"Нерабочий день \"29\" уже имеется в другой строке. Измените день или месяц."_s);
    EXPECT_EQ(failed(*again, {{"DAY", text(u"29"_s)}, {"MN", choice(2)}}), "DAY");
    const auto edited = opened(Book::Holidays, RecordMode::Edit, 1);
    EXPECT_EQ(failed(*edited, {{"NAIM", text(u"День"_s)}}), "");
    EXPECT_EQ(rows("SELECT DAY, MN, NAIM FROM HOLI ORDER BY MN;"),
              (QStringList{u"31 1 -"_s, u"29 2 День"_s}));
}

TEST_F(BookRecords, AllowAGroupsNameInAnotherSpecialityOrCourse)
{
    const std::int64_t other = add("SPOTD", {{"SOKR", "ПС"}, {"NAIM", "Право"}});
    const auto group = [&](std::int64_t key, const QString& course) {
        return std::vector<Entry>{{"IDO", choice(key)},
                                  {"KURS", text(course)},
                                  {"NAIM", text(u"Группа \"1\""_s)},
                                  {"IDP", choice(teacher)}};
    };
    const std::int64_t first = stored(Book::Groups, group(speciality, u"1"_s));
    stored(Book::Groups, group(speciality, u"2"_s));
    stored(Book::Groups, group(other, u"1"_s));
    const auto record = opened(Book::Groups);
    refuses(
        u"Группа \"Группа \"1\"\" специальность \"ИС\" уже имеется в другой строке справочника. "
        "Измените наименование группы или выберите другую специальность, или измените курс."_s);
    EXPECT_EQ(failed(*record, group(speciality, u"1"_s)), "NAIM");
    const auto edited = opened(Book::Groups, RecordMode::Edit, first);
    EXPECT_EQ(failed(*edited, {{"IDP", {}}}), "") << "the form teacher may be taken away";
    EXPECT_EQ(rows("SELECT IDO, KURS, IDP FROM SPGRUP ORDER BY IDG;"),
              (QStringList{u"1 1 -"_s, u"1 2 1"_s, u"2 1 1"_s}));
}

TEST_F(SchoolBookRecords, RewordMessagesButNotNames)
{
    const std::int64_t group =
        add("SPGRUP", {{"IDO", speciality}, {"KURS", 1}, {"NAIM", "Группа 1"}});
    const auto record = opened(Book::Groups, RecordMode::Copy, group);
    refuses(
        u"Класс \"Группа 1\" параллель \"ИС\" уже имеется в другой строке справочника. Измените "
        "наименование класса или выберите другую параллель, или измените год."_s);
    EXPECT_EQ(failed(*record, {}), "NAIM");
    const std::int64_t maths = add("SPPRED", {{"NAIM", "Математика"}});
    add("SPNAGR", {{"IDP", teacher}, {"IDG", group}, {"IDD", maths}, {"CHSEM", 10}});
    const auto workload = opened(Book::Workload, RecordMode::Copy, 1);
    expectQuestion(u"Такая нагрузка уже имеется в другой строке справочника (учитель, класс, п/г и "
                   "предмет). Сохранить?"_s,
                   shell::Answer::No);
    EXPECT_EQ(failed(*workload, {}), "IDP");
    session.database().execute("DELETE * FROM UR_TIME;");
    add("UR_TIME", {{"IDUR", 1}, {"NAIM", "8:30"}});
    const auto lesson = opened(Book::LessonTimes, RecordMode::Copy, 1);
    refuses(u"Урок с таким номером уже имеется в другой строке справочника. Измените номер урока "
            "или нажмите кнопку Отмена."_s);
    EXPECT_EQ(failed(*lesson, {}), "IDUR");
}

TEST_F(BookRecords, UseTheLessonNumberAsKey)
{
    session.database().execute("DELETE * FROM UR_TIME;");
    EXPECT_EQ(stored(Book::LessonTimes, {{"IDUR", text(u"1"_s)}, {"NAIM", text(u"8:30"_s)}}), 1);
    EXPECT_EQ(stored(Book::LessonTimes, {{"IDUR", text(u"2"_s)}, {"NAIM", text(u"9:25"_s)}}), 2);
    const auto record = opened(Book::LessonTimes, RecordMode::Edit, 2);
    refuses(u"Занятие (урок) с таким номером уже имеется в другой строке справочника. Измените "
            "номер занятия (урока) или нажмите кнопку Отмена."_s);
    EXPECT_EQ(failed(*record, {{"IDUR", text(u"01"_s)}}), "IDUR");
    refuses(u"Необходимо ввести целое положительное число в поле \"Номер урока\". Другие символы "
            "запрещены."_s);
    EXPECT_EQ(failed(*record, {{"IDUR", text(u"3."_s)}}), "IDUR");
    EXPECT_EQ(failed(*record, {{"IDUR", text(u"3"_s)}}), "");
    EXPECT_EQ(record->key(), 3);
    EXPECT_EQ(rows("SELECT IDUR, NAIM FROM UR_TIME ORDER BY IDUR;"),
              (QStringList{u"1 8:30"_s, u"3 9:25"_s}));
}

TEST_F(BookRecords, RefuseABirthInTheFuture)
{
    const std::int64_t group = add("SPGRUP", {{"NAIM", "ИС-21"}});
    const auto record = opened(Book::Students);
    const QDate today = QDate::currentDate();
    refuses(u"Дата рождения больше текущей даты! Измените значение."_s);
    EXPECT_EQ(failed(*record, {{"FAM", text(u"А"_s)},
                               {"IM", text(u"Б"_s)},
                               {"IDG", choice(group)},
                               {"D_R", {.date = today.addDays(1)}}}),
              "D_R");
    EXPECT_EQ(failed(*record, {{"D_R", {.date = today}}}), "");
}

TEST_F(BookRecords, SayThatARowIsGone)
{
    refuses(u"Не найдена редактируемая запись. Обновите окно (F3), выделите другую строку."_s);
    EXPECT_FALSE(BookRecord::open(session, prompt, Book::Groups, RecordMode::Edit, 5));
    refuses(u"Не найдена копируемая запись. Обновите окно (F3), выделите другую строку."_s);
    EXPECT_FALSE(BookRecord::open(session, prompt, Book::Groups, RecordMode::Copy, 5));
    const auto record = opened(Book::Teachers, RecordMode::Edit, teacher);
    session.database().execute("DELETE * FROM SPPREP;");
    refuses(u"Не найдена редактируемая запись. Обновите окно (F3), выделите другую строку."_s);
    enter(*record, {{"MEMO", text(u"поздно"_s)}});
    EXPECT_FALSE(record->save());
    EXPECT_EQ(session.database().rowCount("SPPREP"), 0);
}

TEST_F(BookRecords, KeepRolesApart)
{
    const QString books =
        u"Справочники может изменять только Администратор или Диспетчер (Оператор)."_s;
    const QString users = u"Справочник пользователей может изменять только Администратор."_s;
    signIn(shell::Role::User);
    refuses(books);
    EXPECT_FALSE(BookRecord::open(session, prompt, Book::Teachers, RecordMode::New));
    refuses(books);
    EXPECT_FALSE(BookRecord::open(session, prompt, Book::Teachers, RecordMode::Copy, teacher));
    EXPECT_TRUE(opened(Book::Teachers, RecordMode::Edit, teacher)->isViewOnly());
    refuses(users);
    EXPECT_FALSE(BookRecord::open(session, prompt, Book::Users, RecordMode::Edit, 1));
    signIn(shell::Role::Operator);
    EXPECT_FALSE(opened(Book::Teachers, RecordMode::Edit, teacher)->isViewOnly());
    refuses(users);
    EXPECT_FALSE(BookRecord::open(session, prompt, Book::Users, RecordMode::New));
    signIn(shell::Role::Administrator);
    EXPECT_FALSE(opened(Book::Users, RecordMode::Edit, 1)->isViewOnly());
}

TEST_F(BookRecords, KeepTextsThatTheDialogWouldNotTake)
{
    const std::string longDocument(200, 'x');
    const std::int64_t group = add("SPGRUP", {{"NAIM", "ИС-21"}});
    add("SPSTUD", {{"FAM", "А"}, {"IM", "Б"}, {"IDG", group}, {"DOC", longDocument}});
    const auto record = opened(Book::Students, RecordMode::Edit, 1);
    EXPECT_EQ(record->maxLength(9), 200);
    EXPECT_EQ(record->maxLength(10), 50) << "the note's column is shorter than its text box";
    EXPECT_EQ(failed(*record, {{"MEMO", text(QString(120, u'м'))}}), "");
    EXPECT_EQ(rows("SELECT DOC, MEMO FROM SPSTUD;"),
              QStringList{QString::fromStdString(longDocument) + u' ' + QString(50, u'м')});
}

TEST_F(BookRecords, LeaveFieldsOutsideTheDialogAlone)
{
    add("SPNAGR", {{"IDP", teacher},
                   {"IDG", add("SPGRUP", {{"NAIM", "ИС-21"}})},
                   {"IDD", add("SPPRED", {{"NAIM", "Физика"}})},
                   {"IDGG", 2},
                   {"CHSEM", 10},
                   {"IDNN", 7},
                   {"IDA", 3},
                   {"PRAKT", true}});
    const auto edited = opened(Book::Workload, RecordMode::Edit, 1);
    EXPECT_EQ(failed(*edited, {{"CHSEM", text(u"12"_s)}}), "");
    expectQuestion(
        u"Такая нагрузка уже имеется в другой строке справочника (преподаватель, группа, "
        "п/г и дисциплина). Сохранить?"_s);
    EXPECT_EQ(failed(*opened(Book::Workload, RecordMode::Copy, 1), {}), "");
    EXPECT_EQ(rows("SELECT CHSEM, IDGG, IDNN, IDA, PRAKT FROM SPNAGR ORDER BY IDN;"),
              (QStringList{u"12 2 7 3 -1"_s, u"12 2 - - 0"_s}))
        << "a copy is not linked";
}

TEST_F(BookRecords, KeepWhatWasTypedWhenTheFileCannotBeWritten)
{
    if (!FailingWrites::possible())
        GTEST_SKIP();
    const auto record = opened(Book::Teachers, RecordMode::Edit, teacher);
    enter(*record, {{"FAMIO", text(u"Петров П.П."_s)}});
    {
        const FailingWrites full;
        EXPECT_THROW(record->save(), jet::Error);
    }
    EXPECT_TRUE(record->isChanged());
    EXPECT_EQ(rows("SELECT FAMIO FROM SPPREP;"), QStringList{u"Иванов И.И."_s});
    EXPECT_TRUE(record->save());
    reopen();
    EXPECT_EQ(rows("SELECT FAMIO FROM SPPREP;"), QStringList{u"Петров П.П."_s});
}

TEST_F(BookRecords, RoundHoursOfAWorkloadAsTheFileDoes)
{
    const std::vector<Entry> entries = {{"IDP", choice(teacher)},
                                        {"IDG", choice(add("SPGRUP", {{"NAIM", "ИС-21"}}))},
                                        {"IDD", choice(add("SPPRED", {{"NAIM", "Физика"}}))}};
    const auto record = opened(Book::Workload);
    enter(*record, entries);
    EXPECT_EQ(failed(*record, {{"CHSEM", text(u"36,6"_s)}}), "") << "whole numbers are not asked";
    EXPECT_EQ(rows("SELECT CHSEM FROM SPNAGR;"), QStringList{u"37"_s});
}

TEST_F(BookRecords, OfEveryBookOpenNewAndStoreTheirSmallestRow)
{
    add("SPGRUP", {{"NAIM", "ИС-21"}});
    add("SPPRED", {{"NAIM", "Физика"}});
    add("SPAUD", {{"NAIM", "Класс"}, {"SOKR", "К"}});
    session.database().execute("DELETE * FROM HOLI;");
    session.database().execute("DELETE * FROM UR_TIME;");
    for (int code = 0; code < kBookCodes; ++code) {
        const BookInfo& info = catalogue()[static_cast<std::size_t>(code)];
        if (info.table.empty() || static_cast<Book>(code) == Book::Lessons)
            continue;
        const auto record = opened(static_cast<Book>(code));
        for (int i = 0; i < static_cast<int>(record->fields().size()); ++i) {
            const RecordField& field = record->fields()[static_cast<std::size_t>(i)];
            EXPECT_EQ(field.caption.startsWith(u"! "_s), field.requirement != Requirement::Optional)
                << field.caption.toStdString();
            if (field.requirement == Requirement::Optional)
                continue;
            if (field.isText())
                record->setText(i, u"7"_s);
            else
                record->setChoice(i, record->choices(i).back().key);
        }
        const std::int64_t before = session.database().rowCount(info.table);
        EXPECT_TRUE(record->save()) << code;
        EXPECT_EQ(session.database().rowCount(info.table), before + 1) << code;
        EXPECT_EQ(rows("SELECT " + std::string(info.key) + " FROM " + std::string(info.table)
                       + " WHERE " + std::string(info.key) + " = " + std::to_string(record->key())
                       + ";")
                      .size(),
                  1)
            << code;
    }
}

TEST_F(BookRecords, AreOnlyShownWhileAnotherUserHoldsTheFile)
{
    const auto key = add("SPKAF", {{"NAIM", std::string("Кафедра")}});
    const auto held = [&] {
        session.closeJournal();
        auto reader = data::Journal::openReadOnly(journal.path(), prompt);
        reader->standFor(u"Журнал.mdb"_s, nullptr);
        session.openJournal(std::move(reader));
    };
    held();
    prompt.expectMatching(Box::Exclamation,
                          u"^Извините, но эта строка .* Сейчас возможен только просмотр.$"_s);
    const auto record = BookRecord::open(session, prompt, Book::Departments, RecordMode::Edit, key);
    ASSERT_NE(record, nullptr);
    EXPECT_TRUE(record->isViewOnly());
    EXPECT_TRUE(prompt.done());
}

} // namespace
