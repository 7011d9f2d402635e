// Deleting the whole workload, and planned against held hours.
#include "refbooks/workloadclear.h"
#include "refbooks/workloadhours.h"

#include "tests/refbooks/bookfixture.h"

using namespace Qt::StringLiterals;
using refbooks::WorkloadHours;
using shell::Answer;

namespace {

class Workload : public BookFixture
{
protected:
    explicit Workload(shell::Institution institution = shell::Institution::College)
        : BookFixture(institution)
    {}

    std::int64_t workload(int hours, std::int64_t link = 0)
    {
        return add("SPNAGR", {{"CHSEM", hours}, {"IDNN", link}});
    }
    void lesson(std::int64_t row, int day, int number, std::int64_t link = 0, bool ban = false)
    {
        add("UROKI", {{"IDN", row},
                      {"DAT", jet::DateTime::of(2022, 11, day)},
                      {"UR", number},
                      {"IDNN", link},
                      {"ZP", ban}});
    }
    bool clear() { return refbooks::deleteAllWorkload(session, prompt); }
    qsizetype left()
    {
        reopen();
        return rows("SELECT IDN FROM SPNAGR").size();
    }
    std::vector<int> held(const std::vector<std::int64_t>& keys, QDate through, int hours = 2)
    {
        std::vector<int> result;
        for (const auto& row : refbooks::workloadHours(session.database(), keys, through, hours))
            result.push_back(row.held);
        return result;
    }

    const QStringList questions = {
        u"Удалить всю нагрузку?"_s,
        u"Будут удалены ВСЕ записи у ВСЕХ преподавателей и групп. Вы уверены?"_s,
        u"Подтвердите удаление нагрузки. Удаляем?"_s};
    const QString refused = u"Нельзя удалить всю нагрузку, пока есть назначенные занятия."_s;
};

class SchoolWorkload : public Workload
{
protected:
    SchoolWorkload()
        : Workload(shell::Institution::School)
    {}
};

} // namespace

TEST_F(Workload, GoesOnlyAfterThreeYes)
{
    workload(10);
    workload(20);
    for (int no = 0; no < 3; ++no) {
        for (int i = 0; i <= no; ++i)
            expectQuestion(questions[i], i == no ? Answer::No : Answer::Yes);
        EXPECT_FALSE(clear());
    }
    EXPECT_EQ(left(), 2);
    lesson(1, 1, 1, 0, true); // a ban is no lesson
    for (const QString& question : questions)
        expectQuestion(question);
    EXPECT_TRUE(clear());
    EXPECT_EQ(left(), 0);
    EXPECT_EQ(rows("SELECT ID FROM UROKI").size(), 1);
}

TEST_F(Workload, StaysWhileThereIsALessonOrAGrade)
{
    workload(10);
    add("USP", {{"ID", 1}, {"IDD", 1}, {"OC", 5}});
    prompt.expect(Box::Critical, refused);
    EXPECT_FALSE(clear());
    session.database().execute("DELETE * FROM USP");
    lesson(999, 1, 1);
    prompt.expect(Box::Critical, refused);
    EXPECT_FALSE(clear());
    EXPECT_EQ(left(), 1);
}

TEST_F(Workload, IsCopiedBeforeItGoes)
{
    workload(10);
    QStringList copied;
    bool goOn = false;
    session.setMassActionGuard([&](const QString& action) {
        copied << action + u' ' + QString::number(rows("SELECT IDN FROM SPNAGR").size());
        return goOn;
    });
    for (const qsizetype rowsLeft : {1, 0}) {
        for (const QString& question : questions)
            expectQuestion(question);
        EXPECT_EQ(clear(), goOn);
        EXPECT_EQ(left(), rowsLeft);
        goOn = true;
    }
    EXPECT_EQ(copied, QStringList(2, u"удалением всей нагрузки 1"_s));
}

TEST_F(Workload, UsersDoNotDeleteIt)
{
    workload(10);
    signIn(shell::Role::User);
    prompt.expect(Box::Exclamation,
                  u"Справочники может изменять только Администратор или Диспетчер (Оператор)."_s);
    EXPECT_FALSE(clear());
    EXPECT_EQ(left(), 1);
}

TEST_F(SchoolWorkload, SpeaksOfTeachersAndClasses)
{
    workload(10);
    expectQuestion(questions[0]);
    expectQuestion(u"Будут удалены ВСЕ записи у ВСЕХ учителей и классов. Вы уверены?"_s);
    expectQuestion(questions[2], Answer::No);
    EXPECT_FALSE(clear());
    lesson(1, 1, 1);
    prompt.expect(Box::Critical, u"Нельзя удалить всю нагрузку, пока есть назначенные уроки."_s);
    EXPECT_FALSE(clear());
}

TEST_F(Workload, HeldHoursCountLessonsUpToTheDay)
{
    const auto key = workload(34);
    lesson(key, 10, 1);
    lesson(key, 10, 2);
    lesson(key, 11, 1);
    lesson(key, 12, 1);
    lesson(key, 10, 3, 0, true); // a ban
    lesson(key, 10, 1);          // imported twice
    lesson(key + 1, 10, 4);      // another row's
    EXPECT_EQ(held({key}, QDate(2022, 11, 9)), std::vector<int>{0});
    EXPECT_EQ(held({key}, QDate(2022, 11, 11)), std::vector<int>{6});
    EXPECT_EQ(held({key}, QDate()), std::vector<int>{8});
    EXPECT_EQ(held({key}, QDate(), 1), std::vector<int>{4});
}

TEST_F(Workload, LessonOfALinkCountsForEachOfItsRows)
{
    const auto head = workload(10, 1);
    ASSERT_EQ(head, 1);
    const auto second = workload(10, head);
    const auto free = workload(10);
    lesson(head, 10, 1, head);
    lesson(second, 10, 1, head); // the same hour, entered for the other row too
    lesson(second, 11, 1);       // of this row alone
    lesson(head, 12, 1, head);   // entered once for both
    EXPECT_EQ(held({head, second, free}, QDate()), (std::vector<int>{4, 6, 0}));
}

TEST_F(Workload, HoursAreShownWithTheRowsNamesAndSummed)
{
    const auto teacher = add("SPPREP", {{"FAMIO", "Иванова И.И."}});
    const auto group = add("SPGRUP", {{"NAIM", "ИС-21"}});
    const auto discipline = add("SPPRED", {{"NAIM", "Физика"}});
    const auto full =
        add("SPNAGR",
            {{"IDP", teacher}, {"IDG", group}, {"IDD", discipline}, {"IDGG", 2}, {"CHSEM", 34}});
    const auto bare = add("SPNAGR", {{"IDP", 999}});
    lesson(full, 10, 1);
    lesson(bare, 10, 2);
    const std::vector<std::int64_t> keys = {bare, 12345, full};
    const auto hours = refbooks::workloadHours(session.database(), keys, QDate(), 2);
    ASSERT_EQ(hours.size(), 2U); // a row that is gone is left out
    EXPECT_EQ(hours[0], (WorkloadHours{.key = bare, .held = 2}));
    EXPECT_EQ(hours[0].left(), -2);
    EXPECT_EQ(hours[1],
              (WorkloadHours{full, u"Иванова И.И."_s, u"ИС-21"_s, 2, u"Физика"_s, 34, 2}));
    EXPECT_EQ(refbooks::totalHours(hours), (WorkloadHours{.planned = 34, .held = 4}));
    EXPECT_EQ(refbooks::totalHours({}), WorkloadHours());
}
