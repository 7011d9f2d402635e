// Deleting students, users and workload, whose rules look beyond a count.
#include "refbooks/deletion.h"

#include "tests/refbooks/bookfixture.h"

using namespace Qt::StringLiterals;
using refbooks::Book;
using shell::Answer;

namespace {

class PeopleDeletion : public BookFixture
{
protected:
    explicit PeopleDeletion(shell::Institution institution = shell::Institution::College)
        : BookFixture(institution)
    {}
    int remove(Book book, const std::vector<std::int64_t>& keys)
    {
        return refbooks::Deletion(session, prompt, status).deleteSelected(book, keys);
    }
    void confirmOne() { expectQuestion(u"Удалить выделенную строку?"_s); }
    void confirmSeveral() { expectQuestion(u"Удалить выделенные строки?"_s); }
    std::int64_t student(const char* surname)
    {
        return add("SPSTUD", {{"FAM", surname}, {"IM", "Иван"}, {"OTCH", "Петрович"}});
    }
    QString asked(const QString& surname)
    {
        return u"У "_s + surname
               + u" Иван Петрович заполнен Журнал посещаемости и/или Журнал успеваемости. Удалить "
                 "студента вместе с посещаемостью и успеваемостью по всем дисциплинам без "
                 "возможности восстановления?"_s;
    }
    QStringList students() { return rows("SELECT FAM FROM SPSTUD ORDER BY FAM"); }
    QStringList links() { return rows("SELECT CHSEM, IDNN FROM SPNAGR ORDER BY CHSEM"); }
    std::int64_t workload(int hours, std::int64_t link = 0)
    {
        return add("SPNAGR", {{"CHSEM", hours}, {"IDNN", link}});
    }

    const QString others = u"\n\nУдалить остальные выделенные строки?"_s;
};

class SchoolPeopleDeletion : public PeopleDeletion
{
protected:
    SchoolPeopleDeletion()
        : PeopleDeletion(shell::Institution::School)
    {}
};

} // namespace

TEST_F(PeopleDeletion, StudentWithoutLessonsAndGradesGoesUnasked)
{
    const auto key = student("Сидоров");
    confirmOne();
    EXPECT_EQ(remove(Book::Students, {key}), 1);
    reopen();
    EXPECT_TRUE(students().isEmpty());
}

// The rule looks for the student's key in the field of the discipline, in the lessons and in
// the grades, and deletes by the same field. Grades of his own, under ID, play no part.
TEST_F(PeopleDeletion, StudentIsLookedForInTheFieldOfTheDiscipline)
{
    student("Первый");
    const auto own = student("Второй");
    const auto key = student("Третий");
    add("USP", {{"ID", own}, {"IDD", 77}, {"OC", 5}});
    add("USP", {{"ID", 88}, {"IDD", key}, {"OC", 4}});
    add("USP", {{"ID", key}, {"IDD", 77}, {"OC", 3}});
    add("UROKI", {{"IDD", key}, {"UR", 1}});
    add("UROKI", {{"IDD", 77}, {"UR", 2}});
    add("POS", {{"ID", key}, {"IDD", key}});
    confirmSeveral();
    expectQuestion(asked(u"Третий"_s));
    EXPECT_EQ(remove(Book::Students, {own, key}), 2);
    EXPECT_EQ(status.last(), u"Удалено строк: 2"_s);
    reopen();
    EXPECT_EQ(students(), QStringList{u"Первый"_s});
    EXPECT_EQ(rows("SELECT OC FROM USP ORDER BY OC"), (QStringList{u"3"_s, u"5"_s}));
    EXPECT_EQ(rows("SELECT UR FROM UROKI"), QStringList{u"2"_s});
    EXPECT_EQ(rows("SELECT ID FROM POS").size(), 1);
}

TEST_F(PeopleDeletion, RefusedStudentIsSkippedAndTheNextOneTaken)
{
    const auto kept = student("Кошкин");
    const auto gone = student("Мышкин");
    add("UROKI", {{"IDD", kept}});
    confirmSeveral();
    expectQuestion(asked(u"Кошкин"_s), Answer::No);
    EXPECT_EQ(remove(Book::Students, {kept, gone}), 1);
    reopen();
    EXPECT_EQ(students(), QStringList{u"Кошкин"_s});
    EXPECT_EQ(rows("SELECT ID FROM UROKI").size(), 1);
}

TEST_F(SchoolPeopleDeletion, StudentIsCalledAPupil)
{
    const auto key = student("Группа");
    add("USP", {{"ID", 1}, {"IDD", key}});
    confirmOne();
    expectQuestion(u"У Группа Иван Петрович заполнен Журнал посещаемости и/или Журнал "
                   "успеваемости. Удалить учащегося вместе с посещаемостью и успеваемостью по "
                   "всем предметам без возможности восстановления?"_s,
                   Answer::No);
    EXPECT_EQ(remove(Book::Students, {key}), 0);
    EXPECT_EQ(students().size(), 1);
}

TEST_F(PeopleDeletion, UsersAreDeletedByAdministratorsOnly)
{
    for (const auto role : {shell::Role::Operator, shell::Role::User}) {
        signIn(role, 2);
        confirmOne();
        prompt.expect(Box::Exclamation,
                      u"Невозможно удалить пользователя без прав Администратора."_s);
        EXPECT_EQ(remove(Book::Users, {3}), 0);
    }
    signIn(shell::Role::Administrator, 1);
    confirmOne();
    EXPECT_EQ(remove(Book::Users, {3}), 1);
    reopen();
    EXPECT_EQ(rows("SELECT IDU, ROLE FROM USERS ORDER BY IDU"), (QStringList{u"1 0"_s, u"2 1"_s}));
}

TEST_F(PeopleDeletion, OwnAccountAndLastAdministratorStay)
{
    const QString own = u"Пользователь не может удалить свою учетную запись (под которой он вошел "
                        "в программу)."_s;
    const QString last =
        u"Нельзя удалить этого пользователя, так как после удаления в справочнике не останется "
        "ни одного пользователя с правами Администратора."_s;
    const auto second = add("USERS", {{"NAIM", "Завуч"}, {"ROLE", 0}});
    signIn(shell::Role::Administrator, second);
    confirmSeveral();
    expectQuestion(own + others);
    EXPECT_EQ(remove(Book::Users, {second, 1}), 1); // the other administrator may go

    signIn(shell::Role::Administrator, 2); // whose role in the book was lowered meanwhile
    confirmOne();
    prompt.expect(Box::Exclamation, last);
    EXPECT_EQ(remove(Book::Users, {second}), 0);
    reopen();
    EXPECT_EQ(rows("SELECT NAIM FROM USERS WHERE ROLE=0"), QStringList{u"Завуч"_s});
}

TEST_F(PeopleDeletion, WorkloadWithLessonsIsNamedByTeacherGroupAndDiscipline)
{
    const auto teacher = add("SPPREP", {{"FAMIO", "Иванова И.И."}});
    const auto group = add("SPGRUP", {{"NAIM", "ИС-21"}});
    const auto discipline = add("SPPRED", {{"NAIM", "Группа"}});
    const auto key = add("SPNAGR", {{"IDP", teacher}, {"IDG", group}, {"IDD", discipline}});
    const auto nameless = add("SPNAGR", {{"IDP", 999}});
    add("UROKI", {{"IDN", key}});
    add("UROKI", {{"IDN", nameless}});
    confirmSeveral();
    expectQuestion(u"Невозможно удалить нагрузку: Иванова И.И. - ИС-21 - Группа, так как такие "
                   "занятия имеются в расписании."_s
                   + others);
    prompt.expect(Box::Exclamation, u"Невозможно удалить нагрузку:  -  - , так как такие занятия "
                                    "имеются в расписании."_s);
    EXPECT_EQ(remove(Book::Workload, {key, nameless}), 0);
    reopen();
    EXPECT_EQ(rows("SELECT IDN FROM SPNAGR").size(), 2);
}

TEST_F(PeopleDeletion, LessonsOfTheLinkKeepEachOfItsRows)
{
    const auto head = workload(10);
    const auto other = workload(20, head);
    session.database().execute("UPDATE SPNAGR SET IDNN = IDN WHERE CHSEM = 10");
    add("UROKI", {{"IDN", head}, {"IDNN", head}});
    const auto free = workload(30);
    add("UROKI", {{"IDN", 999}, {"IDNN", 0}}); // no link is not a link that all share
    confirmSeveral();
    expectQuestion(u"Невозможно удалить нагрузку:  -  - , так как такие занятия имеются в "
                   "расписании."_s
                   + others);
    EXPECT_EQ(remove(Book::Workload, {other, free}), 1);
    reopen();
    const QString link = QString::number(head);
    EXPECT_EQ(links(), (QStringList{u"10 "_s + link, u"20 "_s + link}));
}

TEST_F(PeopleDeletion, NoLinkOfASingleRowIsLeft)
{
    const auto head = workload(10);
    session.database().execute("UPDATE SPNAGR SET IDNN = IDN");
    const auto second = workload(20, head);
    workload(30, head);
    workload(40, 999); // of a link of its own, which no deletion here touches
    const QString link = QString::number(head);

    confirmOne();
    EXPECT_EQ(remove(Book::Workload, {second}), 1);
    reopen();
    EXPECT_EQ(links(), (QStringList{u"10 "_s + link, u"30 "_s + link, u"40 999"_s}));
    confirmOne();
    EXPECT_EQ(remove(Book::Workload, {head}), 1);
    reopen();
    EXPECT_EQ(links(), (QStringList{u"30 0"_s, u"40 999"_s}));
}

TEST_F(SchoolPeopleDeletion, WorkloadWithLessonsSpeaksOfLessonsAsASchool)
{
    const auto key = workload(10);
    add("UROKI", {{"IDN", key}});
    confirmOne();
    prompt.expect(Box::Exclamation, u"Невозможно удалить нагрузку:  -  - , так как такие уроки "
                                    "имеются в расписании."_s);
    EXPECT_EQ(remove(Book::Workload, {key}), 0);
}
