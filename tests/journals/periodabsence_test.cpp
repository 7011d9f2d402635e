#include "journals/periodabsence.h"

#include "journals/history.h"
#include "tests/support/scriptedprompt.h"
#include "tests/support/smalljournal.h"

#include <gtest/gtest.h>

#include <string>

using namespace journals;
using namespace Qt::StringLiterals;

namespace {

// Three days: maths and then physics by subgroups, each day; a single lesson on the last.
class PeriodAbsenceTest : public ::testing::Test
{
protected:
    PeriodAbsenceTest()
    {
        file.options(true, 2);
        for (int i = 0; i < 3; ++i) {
            file.lesson(group, maths, first.addDays(i), 1);
            file.lesson(group, physics, first.addDays(i), 2, 1);
            file.lesson(group, physics, first.addDays(i), 2, 2);
        }
        file.lesson(group, maths, first.addDays(2), 3);
        file.lesson(file.group("ИС-22"), maths, first, 4); // another group
    }
    PeriodRequest request(QDate from, QDate to, std::vector<int> students = {}) const
    {
        PeriodRequest asked{{}, from, to, AbsenceKind::Unexcused};
        for (const int key : students.empty() ? std::vector{ivanov} : students)
            asked.students.push_back(StudentId{key});
        return asked;
    }
    // As "date lesson discipline/subgroup uv/nuv" after opening the file again.
    QStringList written(int student)
    {
        file.reopen();
        QStringList lines;
        auto rows = file.database().query("SELECT dat, UR, IDD, IDDG, uv, nuv FROM POS WHERE ID="
                                          + std::to_string(student) + " ORDER BY dat, UR;");
        while (rows.next())
            lines << u"%1 %2 %3/%4 %5/%6"_s.arg(
                QString::number(rows.date(0).parts().day), QString::number(rows.integer(1)),
                rows.integer(2) == maths ? u"м"_s : u"ф"_s, QString::number(rows.integer(3)),
                QString::number(rows.integer(4)), QString::number(rows.integer(5)));
        return lines;
    }
    PeriodOutcome write(const PeriodAbsence& period)
    {
        History history(file.database());
        return period.write(history, status);
    }

    const QDate first{2022, 11, 14};
    SmallJournal file;
    RecordingStatusLine status;
    int group = file.group("ИС-21");
    int ivanov = file.student(group, "Иванов", "Иван", "Иванович", 2);
    int petrov = file.student(group, "Петров", "Пётр", "");
    int brother = file.student(group, "Иванов", "Игорь", "Иванович", 1);
    int maths = file.discipline("Математика");
    int physics = file.discipline("Физика");
};

TEST_F(PeriodAbsenceTest, EachConflictIsAskedWithTheOwnSubgroupOffered)
{
    PeriodAbsence period(file.database(), request(first, first.addDays(1)));
    EXPECT_EQ(period.problem(), QString());
    EXPECT_EQ(period.conflictsLeft(), 2);
    const auto conflict = period.conflict();
    ASSERT_TRUE(conflict);
    EXPECT_EQ(conflict->texts(),
              (QStringList{u"Выберите подгруппу для 2 занятия Физика (1 п/г)"_s,
                           u"Выберите подгруппу для 2 занятия Физика (2 п/г)"_s}));
    EXPECT_EQ(conflict->preset, 1U);
    EXPECT_EQ(conflict->lessons[0].date, first);
    period.choose(0, false);
    ASSERT_TRUE(period.conflict());
    EXPECT_EQ(period.conflict()->lessons[0].date, first.addDays(1));
    period.choose(1, false);
    EXPECT_FALSE(period.conflict());
    EXPECT_EQ(write(period).written, 4);
    EXPECT_EQ(written(ivanov), (QStringList{u"14 1 м/0 0/2"_s, u"14 2 ф/1 0/2"_s, u"15 1 м/0 0/2"_s,
                                            u"15 2 ф/2 0/2"_s}));
    EXPECT_EQ(written(brother), QStringList());
}

TEST_F(PeriodAbsenceTest, AChoiceForLaterSettlesTheDisciplineOnly)
{
    file.lesson(group, maths, first.addDays(1), 5, 1);
    file.lesson(group, maths, first.addDays(1), 5, 2);
    PeriodAbsence period(file.database(), request(first, first.addDays(2)));
    period.choose(1, true);
    ASSERT_EQ(period.conflictsLeft(), 1) << "maths is still asked";
    EXPECT_EQ(period.conflict()->lessons[0].number, 5);
    period.choose(0, true);
    EXPECT_EQ(write(period).written, 8);
    EXPECT_EQ(written(ivanov).filter(u"ф/2"_s).size(), 3);
    EXPECT_EQ(written(ivanov).filter(u"м/1"_s), QStringList{u"15 5 м/1 0/2"_s});
}

TEST_F(PeriodAbsenceTest, AChoiceForLaterReachesLessonsOfOtherSubgroupsToo)
{
    file.lesson(group, maths, first.addDays(2), 7, 1);
    file.lesson(group, physics, first.addDays(2), 7, 2);
    file.lesson(group, physics, first.addDays(2), 8, 3); // not of the chosen subgroup
    file.lesson(group, maths, first.addDays(2), 8, 1);
    PeriodAbsence period(file.database(), request(first, first.addDays(2)));
    period.choose(1, true);
    ASSERT_EQ(period.conflictsLeft(), 1);
    EXPECT_EQ(period.conflict()->lessons[0].number, 8);
    period.choose(0, false);
    write(period);
    EXPECT_TRUE(written(ivanov).contains(u"16 7 ф/2 0/2"_s));
}

TEST_F(PeriodAbsenceTest, ALessonHeldTwiceByTheFileIsNoConflict)
{
    file.lesson(group, maths, first, 1);
    PeriodAbsence period(file.database(), request(first, first));
    EXPECT_EQ(period.conflictsLeft(), 1) << "physics only";
}

TEST_F(PeriodAbsenceTest, ASecondRunLeavesOneRowALessonWithItsReason)
{
    file.absence(ivanov, physics, first, 1, 1, 1); // of another discipline, recorded twice
    file.absence(ivanov, physics, first, 1, 1, 1);
    file.absence(ivanov, maths, first, 9, 0, 2); // no lesson then
    for (const AbsenceKind reason : {AbsenceKind::Unexcused, AbsenceKind::Excused}) {
        PeriodRequest asked = request(first, first);
        asked.reason = reason;
        PeriodAbsence period(file.database(), asked);
        period.choose(1, false);
        const PeriodOutcome outcome = write(period);
        EXPECT_EQ(outcome.written, 2);
        EXPECT_EQ(outcome.replaced, reason == AbsenceKind::Unexcused ? 1 : 2);
    }
    EXPECT_EQ(written(ivanov),
              (QStringList{u"14 1 м/0 2/0"_s, u"14 2 ф/2 2/0"_s, u"14 9 м/0 0/2"_s}));
    EXPECT_EQ(status.last(), u"Записано пропусков: 2. Заменено прежних: 2.");
}

TEST_F(PeriodAbsenceTest, SeveralStudentsAreOneStepAndEachIsAsked)
{
    file.absence(petrov, maths, first, 1, 2, 0);
    const QStringList before = file.absences();
    PeriodAbsence period(file.database(), request(first, first.addDays(2), {ivanov, petrov}));
    EXPECT_EQ(period.conflictsLeft(), 6);
    period.choose(1, true);
    ASSERT_EQ(period.conflictsLeft(), 3) << "the choice holds for one student";
    EXPECT_EQ(period.conflict()->student.name, u"Петров Пётр");
    EXPECT_EQ(period.conflict()->preset, 0U);
    period.choose(0, true);
    History history(file.database());
    const PeriodOutcome outcome = period.write(history, status);
    EXPECT_EQ(outcome.text(), u"Записано пропусков: 14. Студентов: 2. Заменено прежних: 1.");
    EXPECT_TRUE(status.texts.contains(u"Запись пропусков: Петров П. (2 из 2)..."_s));
    EXPECT_EQ(history.undoText(), u"пропуск на период, студентов: 2, 14.11–16.11");
    EXPECT_EQ(file.absences().size(), 14);
    EXPECT_TRUE(history.undo());
    EXPECT_EQ(file.absences(), before);
    EXPECT_EQ(history.undoText(), QString());
}

TEST_F(PeriodAbsenceTest, GoesByTheFullNameWithinTheGroup)
{
    const int namesake = file.student(group, "Иванов", "Иван", "Иванович", 1);
    file.student(file.group("ИС-23"), "Иванов", "Иван", "Иванович");
    PeriodAbsence period(file.database(), request(first, first));
    EXPECT_EQ(period.namesakesQuestion(),
              u"Полные тезки в группе: Иванов Иван Иванович. Пропуски будут "
              "записаны каждому из них. Продолжить?");
    EXPECT_EQ(period.conflictsLeft(), 2);
    period.choose(1, false);
    period.choose(0, false);
    EXPECT_EQ(write(period).text(), u"Записано пропусков: 4. Студентов: 2."_s);
    EXPECT_EQ(written(ivanov), (QStringList{u"14 1 м/0 0/2"_s, u"14 2 ф/2 0/2"_s}));
    EXPECT_EQ(written(namesake), (QStringList{u"14 1 м/0 0/2"_s, u"14 2 ф/1 0/2"_s}));

    PeriodAbsence both(file.database(), request(first, first, {ivanov, namesake}));
    EXPECT_EQ(both.namesakesQuestion(), QString()) << "both were asked for";
    EXPECT_EQ(both.conflictsLeft(), 2);
}

TEST_F(PeriodAbsenceTest, SaysWhyNothingIsWritten)
{
    const struct
    {
        QDate from, to;
        bool nobody;
        QString problem;
    } cases[] = {
        {first.addDays(1), first, false,
         u"Дата начала позже даты окончания. Пропуски не записаны."_s},
        {first.addDays(10), first.addDays(20), false,
         u"За этот период занятий нет. Пропуски не записаны."_s},
        {QDate(), first, false, u"Укажите даты начала и окончания."_s},
        {first, first, true, u"Не отмечен ни один студент."_s},
    };
    for (const auto& each : cases) {
        PeriodRequest asked = request(each.from, each.to);
        if (each.nobody)
            asked.students.clear();
        const PeriodAbsence period(file.database(), asked);
        EXPECT_EQ(period.problem(), each.problem);
        EXPECT_EQ(write(period).written, 0);
    }
    EXPECT_EQ(file.absences(), QStringList());
}

} // namespace
