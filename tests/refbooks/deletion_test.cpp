// Deleting rows of the reference books as a clerk meets it: the questions and messages in
// their order, then what the file holds.
#include "refbooks/deletion.h"

#include "jet/error.h"
#include "tests/refbooks/bookfixture.h"

using namespace Qt::StringLiterals;
using refbooks::Book;
using shell::Answer;

namespace {

class BookDeletion : public BookFixture
{
protected:
    int remove(Book book, const std::vector<std::int64_t>& keys)
    {
        return refbooks::Deletion(session, prompt, status).deleteSelected(book, keys);
    }
    void confirmOne() { expectQuestion(u"Удалить выделенную строку?"_s); }
    void confirmSeveral() { expectQuestion(u"Удалить выделенные строки?"_s); }
    std::int64_t department(const char* name) { return add("SPKAF", {{"NAIM", name}}); }
    std::int64_t usedDepartment(const char* name)
    {
        const std::int64_t key = department(name);
        add("SPPREP", {{"FAMIO", "Иванова И.И."}, {"IDK", static_cast<int>(key)}});
        return key;
    }
    QStringList departments() { return rows("SELECT NAIM FROM SPKAF ORDER BY NAIM"); }

    const QString others = u"\n\nУдалить остальные выделенные строки?"_s;
    const QString usedByTeachers = u"Невозможно удалить кафедру \"%1\", так как она указана в "
                                   "справочнике преподавателей."_s;
};

class SchoolBookDeletion : public BookFixture
{
protected:
    SchoolBookDeletion()
        : BookFixture(shell::Institution::School)
    {}
};

} // namespace

TEST_F(BookDeletion, AsksOnceAndTellsWhatItDid)
{
    const auto key = department("Физики");
    expectQuestion(u"Удалить выделенную строку?"_s, Answer::No);
    EXPECT_EQ(remove(Book::Departments, {key}), 0);
    EXPECT_TRUE(status.texts.isEmpty());
    EXPECT_EQ(departments(), QStringList{u"Физики"_s});

    confirmOne();
    EXPECT_EQ(remove(Book::Departments, {key}), 1);
    EXPECT_EQ(status.texts, (QStringList{u"Идет удаление строк..."_s, u"Строка удалена."_s,
                                         u"Удалено строк: 1"_s}));
    reopen();
    EXPECT_TRUE(departments().isEmpty());

    EXPECT_EQ(remove(Book::Departments, {}), 0); // nothing selected, nothing asked
    confirmOne();
    EXPECT_EQ(remove(Book::Departments, {key}), 0); // gone already: not counted
    EXPECT_EQ(status.last(), u"Удалено строк: 0"_s);
}

TEST_F(BookDeletion, RefusedRowAmongSeveralAsksWhetherToGoOn)
{
    const std::vector<std::int64_t> keys = {department("А"), usedDepartment("Б"), department("В"),
                                            usedDepartment("Г")};
    confirmSeveral();
    expectQuestion(usedByTeachers.arg(u"Б"_s) + others, Answer::No);
    EXPECT_EQ(remove(Book::Departments, keys), 1);
    EXPECT_EQ(status.last(), u"Удалено строк: 1"_s);
    reopen();
    EXPECT_EQ(departments(), (QStringList{u"Б"_s, u"В"_s, u"Г"_s}));

    confirmSeveral();
    expectQuestion(usedByTeachers.arg(u"Б"_s) + others, Answer::Yes);
    prompt.expect(Box::Exclamation, usedByTeachers.arg(u"Г"_s)); // the last one: nothing to ask
    EXPECT_EQ(remove(Book::Departments, {keys[1], keys[2], keys[3]}), 1);
    EXPECT_EQ(status.last(), u"Удалено строк: 1"_s);
    reopen();
    EXPECT_EQ(departments(), (QStringList{u"Б"_s, u"Г"_s}));
}

TEST_F(BookDeletion, NamesAreShownAsTheyAreWritten)
{
    const auto key = usedDepartment("Право; \"%1\" 'и' ]#");
    confirmOne();
    prompt.expect(Box::Exclamation, u"Невозможно удалить кафедру \"Право; \"%1\" 'и' ]#\", так как "
                                    "она указана в справочнике преподавателей."_s);
    EXPECT_EQ(remove(Book::Departments, {key}), 0);
}

TEST_F(BookDeletion, GroupIsNamedWithItsSpeciality)
{
    const auto speciality = add("SPOTD", {{"NAIM", "Программирование"}, {"KOD", "09.02.07"}});
    const auto key = add("SPGRUP", {{"NAIM", "%2-21"}, {"IDO", speciality}});
    const auto without = add("SPGRUP", {{"NAIM", "ИС-22"}, {"IDO", 999}});
    add("SPNAGR", {{"IDG", key}});
    add("UROKI", {{"IDG", without}, {"ZP", true}}); // a ban holds a group as a lesson does
    confirmSeveral();
    expectQuestion(u"Невозможно удалить группу \"%2-21\" специальность \"Программирование\", так "
                   "как она используется в справочнике нагрузки."_s
                   + others);
    prompt.expect(Box::Exclamation,
                  u"Невозможно удалить группу \"ИС-22\" специальность \"\", так как имеются "
                  "занятия или запреты группы в расписании."_s);
    EXPECT_EQ(remove(Book::Groups, {key, without}), 0);
}

TEST_F(BookDeletion, UsesAreCheckedInTheirOrder)
{
    const auto key = add("SPPREP", {{"FAMIO", "Иванова И.И."}});
    add("SPNAGR", {{"IDP", key}});
    add("SPGRUP", {{"IDP", key}});
    add("UROKI", {{"IDP", key}});
    const std::pair<const char*, QString> places[] = {
        {"SPNAGR", u"он обнаружен в справочнике нагрузки."_s},
        {"SPGRUP", u"он обнаружен в справочнике групп в графе \"Классный руководитель\"."_s},
        {"UROKI", u"имеются занятия или запреты преподавателя в расписании."_s},
    };
    for (const auto& [table, reason] : places) {
        confirmOne();
        prompt.expect(Box::Exclamation,
                      u"Невозможно удалить преподавателя \"Иванова И.И.\", так как "_s + reason);
        EXPECT_EQ(remove(Book::Teachers, {key}), 0);
        session.database().execute(std::string("DELETE * FROM ") + table);
    }
    confirmOne();
    EXPECT_EQ(remove(Book::Teachers, {key}), 1);
}

TEST_F(BookDeletion, HolidaysAndLessonTimesGoWithoutAnyCheck)
{
    const auto holiday = add("HOLI", {{"DAY", 4}, {"MN", 11}});
    add("UR_TIME", {{"IDUR", 1}, {"NAIM", "8:30-10:00"}});
    add("UROKI", {{"UR", 1}, {"DAT", jet::DateTime::of(2022, 11, 4)}});
    confirmOne();
    EXPECT_EQ(remove(Book::Holidays, {holiday}), 1);
    confirmOne();
    EXPECT_EQ(remove(Book::LessonTimes, {1}), 1);
    reopen();
    EXPECT_TRUE(rows("SELECT IDH FROM HOLI WHERE DAY=4 AND MN=11").isEmpty());
    EXPECT_TRUE(rows("SELECT IDUR FROM UR_TIME").isEmpty());
    EXPECT_EQ(rows("SELECT UR FROM UROKI"), QStringList{u"1"_s});
}

TEST_F(BookDeletion, LessonsAreCoveredByNoRule)
{
    const auto lesson = add("UROKI", {{"UR", 1}});
    EXPECT_EQ(remove(Book::Lessons, {lesson}), 0);
    EXPECT_EQ(rows("SELECT UR FROM UROKI").size(), 1);
}

TEST_F(BookDeletion, FirstFourStudyFormsStay)
{
    const QString fixed =
        u"Первые 4 вида обучения нельзя удалять из справочника, так как будет нарушена "
        "возможность экспорта данных в программы государственной отчетности."_s;
    const auto fifth = add("SPVID", {{"NAIM", "Дистанционная"}});
    ASSERT_EQ(fifth, 5);
    confirmSeveral();
    for (int i = 0; i < 4; ++i)
        expectQuestion(fixed + others);
    EXPECT_EQ(remove(Book::StudyForms, {4, 3, 2, 1, fifth}), 1);
    reopen();
    EXPECT_EQ(rows("SELECT IDV FROM SPVID ORDER BY IDV"),
              (QStringList{u"1"_s, u"2"_s, u"3"_s, u"4"_s}));

    const auto used = add("SPVID", {{"NAIM", "Вечерняя"}});
    add("SPGRUP", {{"IDV", used}});
    confirmOne();
    prompt.expect(Box::Exclamation, u"Невозможно удалить вид обучения \"Вечерняя\", так как он "
                                    "используется в справочнике групп."_s);
    EXPECT_EQ(remove(Book::StudyForms, {used}), 0);
}

TEST_F(BookDeletion, OnlyWhoMayChangeBooksDeletes)
{
    const auto key = department("Физики");
    signIn(shell::Role::User);
    prompt.expect(Box::Exclamation,
                  u"Справочники может изменять только Администратор или Диспетчер (Оператор)."_s);
    EXPECT_EQ(remove(Book::Departments, {key}), 0);
    signIn(shell::Role::Operator);
    confirmOne();
    EXPECT_EQ(remove(Book::Departments, {key}), 1);
}

TEST_F(BookDeletion, FullDiskKeepsTheRowAndTellsTheCount)
{
    if (!FailingWrites::possible())
        GTEST_SKIP() << "no file size limit here";
    const auto first = add("SPNAGR", {{"CHSEM", 10}});
    const auto second = add("SPNAGR", {{"CHSEM", 20}});
    session.database().execute("UPDATE SPNAGR SET IDNN = " + std::to_string(first));
    confirmSeveral();
    {
        const FailingWrites noRoom;
        EXPECT_THROW(remove(Book::Workload, {first, second}), jet::Error);
    }
    EXPECT_EQ(status.last(), u"Удалено строк: 0"_s);
    reopen();
    const QString link = QString::number(first);
    EXPECT_EQ(rows("SELECT CHSEM, IDNN FROM SPNAGR ORDER BY IDN"),
              (QStringList{u"10 "_s + link, u"20 "_s + link})); // neither deleted nor released
}

TEST_F(SchoolBookDeletion, DepartmentAgreesWithItsPronounAndNamesStay)
{
    const auto key = add("SPKAF", {{"NAIM", "Кафедра группы"}});
    add("SPPREP", {{"IDK", key}});
    expectQuestion(u"Удалить выделенную строку?"_s);
    prompt.expect(Box::Exclamation, u"Невозможно удалить методическое объединение \"Кафедра "
                                    "группы\", так как оно указано в справочнике учителей."_s);
    const std::vector keys = {key};
    EXPECT_EQ(refbooks::Deletion(session, prompt, status).deleteSelected(Book::Departments, keys),
              0);
}
