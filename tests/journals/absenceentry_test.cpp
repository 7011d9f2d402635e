#include "journals/absenceentry.h"
#include "journals/absences.h"
#include "journals/history.h"
#include "tests/support/smalljournal.h"

#include <gtest/gtest.h>

#include <string>

using namespace journals;
using namespace Qt::StringLiterals;

namespace {

// A student of subgroup 1; on the day maths for all, then physics for each subgroup, then maths
// again. Lessons of two hours.
class AbsenceEntryTest : public ::testing::Test
{
protected:
    AbsenceEntryTest()
    {
        file.options(true, 2);
        file.lesson(group, maths, day, 1);
        file.lesson(group, physics, day, 2, 1);
        file.lesson(group, physics, day, 2, 2);
        file.lesson(group, physics, day, 2, 2); // held twice by the file
        file.lesson(group, maths, day, 3);
        file.lesson(group, maths, day.addDays(1), 1);
    }
    AbsenceEntry entry(QDate date = QDate())
    {
        return {file.database(), readStudentHead(file.database(), StudentId{student}).value(),
                date.isValid() ? date : day};
    }
    void record(int discipline, int lesson, const char* subgroup, int excused, int unexcused)
    {
        file.database().execute(
            "INSERT INTO POS (ID, DAT, UR, IDD, IDDG, uv, nuv) VALUES (" + std::to_string(student)
            + ", #11/12/2022#, " + std::to_string(lesson) + ", " + std::to_string(discipline) + ", "
            + subgroup + ", " + std::to_string(excused) + ", " + std::to_string(unexcused) + ");");
    }
    // "discipline lesson subgroup uv/nuv" of the day, after the file was opened again.
    QStringList written()
    {
        file.reopen();
        QStringList lines;
        for (const auto& row : file.database().rows(
                 "SELECT IDD, UR, IDDG, uv, nuv FROM POS WHERE dat=#11/12/2022#;")) {
            QStringList parts;
            for (const jet::Value& value : row)
                parts << (value.isNull() ? u"-"_s : QString::fromStdString(value.toText()));
            lines << parts.mid(0, 3).join(u' ') + u' ' + parts[3] + u'/' + parts[4];
        }
        lines.sort();
        return lines;
    }
    QString line(int discipline, const QString& rest) const
    {
        return QString::number(discipline) + u' ' + rest;
    }

    const QDate day{2022, 11, 12};
    SmallJournal file;
    int group = file.group("ИС-21");
    int student = file.student(group, "Иванов", "Иван", "Иванович", 1);
    int maths = file.discipline("Математика");
    int physics = file.discipline("Физика");
    History history{file.database()};
};

TEST_F(AbsenceEntryTest, TheHeadNamesStudentGroupAndSubgroup)
{
    const auto head = readStudentHead(file.database(), StudentId{student});
    ASSERT_TRUE(head);
    EXPECT_EQ(head->name, u"Иванов Иван Иванович");
    EXPECT_EQ(head->groupName, u"ИС-21");
    EXPECT_EQ(head->subgroup, 1);
    EXPECT_FALSE(readStudentHead(file.database(), StudentId{student + 1}));
}

TEST_F(AbsenceEntryTest, OnlyDigitsAreHours)
{
    const struct
    {
        QString typed;
        int hours; // -1: refused
    } cases[] = {{u""_s, 0},     {u"0"_s, 0},     {u"12"_s, 12}, {u"255"_s, 255}, {u"007"_s, 7},
                 {u"256"_s, -1}, {u"1000"_s, -1}, {u"-1"_s, -1}, {u"1 "_s, -1},   {u"1,5"_s, -1},
                 {u"1.5"_s, -1}, {u"два"_s, -1},  {u"٣"_s, -1},  {u"+2"_s, -1}};
    for (const auto& each : cases)
        EXPECT_EQ(typedHours(each.typed).value_or(-1), each.hours) << each.typed.toStdString();
}

TEST_F(AbsenceEntryTest, EachLessonOfTheDayGetsItsOwnAbsences)
{
    record(maths, 1, "NULL", 0, 2);
    record(maths, 3, "0", 1, 0);
    record(physics, 2, "1", 1, 0);
    record(physics, 2, "NULL", 0, 1); // as quick marking leaves it
    const DayAbsences read = entry().readDay();
    ASSERT_EQ(read.lessons.size(), 4U);
    const Absence expected[] = {{0, 2}, {1, 1}, {0, 0}, {1, 0}};
    for (std::size_t i = 0; i < 4; ++i)
        EXPECT_EQ(read.lessons[i].hours, expected[i]) << i;
    EXPECT_EQ(read.lessons[2].lesson.subgroup, 2);
    EXPECT_EQ(read.total(), (Absence{2, 3}));
    EXPECT_TRUE(read.unplaced.empty());
}

TEST_F(AbsenceEntryTest, AnAbsenceWithoutALessonIsNamedAndGoesWithSaving)
{
    record(physics, 1, "NULL", 0, 2); // the lesson is maths
    record(maths, 7, "NULL", 3, 0);
    record(physics, 2, "5", 1, 0);  // a subgroup without a lesson
    record(maths, 5, "NULL", 0, 0); // no hours: nothing is lost
    DayAbsences read = entry().readDay();
    EXPECT_EQ(read.total(), Absence());
    EXPECT_EQ(read.unplacedTexts(), (QStringList{u"№ 1 Физика, 2 часа, неуважительный"_s,
                                                 u"№ 2 Физика, 1 час, уважительный"_s,
                                                 u"№ 7 Математика, 3 часа, уважительный"_s}));
    read.lessons[0].hours = {0, 2};
    entry().saveDay(history, read);
    EXPECT_EQ(written(), QStringList{line(maths, u"1 0 0/2"_s)});
}

// Without a subgroup of his own the student might sit in either lesson.
TEST_F(AbsenceEntryTest, AnAbsenceOfTwoPossibleLessonsIsNobodys)
{
    file.database().execute("UPDATE SPSTUD SET IDGG = NULL;");
    record(physics, 2, "NULL", 0, 2);
    EXPECT_EQ(entry().readDay().unplaced.size(), 1U);
    file.database().execute("DELETE * FROM UROKI WHERE IDGG = 2;");
    EXPECT_TRUE(entry().readDay().unplaced.empty());
}

TEST_F(AbsenceEntryTest, AClickMarksTheOtherKindClearsAndASecondClickTakesBack)
{
    DayAbsences read = entry().readDay();
    read.toggle(0, AbsenceKind::Unexcused, 2);
    EXPECT_EQ(read.lessons[0].hours, (Absence{0, 2}));
    read.toggle(0, AbsenceKind::Excused, 2);
    EXPECT_EQ(read.lessons[0].hours, (Absence{2, 0}));
    read.toggle(0, AbsenceKind::Excused, 2);
    EXPECT_EQ(read.lessons[0].hours, Absence());
}

TEST_F(AbsenceEntryTest, SavingTheDayReplacesAllAndIsOneStep)
{
    record(maths, 1, "NULL", 0, 2);
    record(maths, 1, "NULL", 0, 2); // recorded twice
    file.absence(student, maths, day.addDays(1), 1, 2, 0);
    const QStringList before = file.absences();
    DayAbsences read = entry().readDay();
    EXPECT_EQ(read.lessons[0].hours, (Absence{0, 4}));
    read.lessons[0].hours = {};
    read.lessons[1].hours = {2, 0};
    read.lessons[3].hours = {300, 1}; // more than the file can hold
    entry().saveDay(history, read);
    EXPECT_EQ(history.undoText(), u"пропуски за день, Иванов И. И., 12.11");
    EXPECT_EQ(file.absences().size(), 3) << "the next day is left alone";
    EXPECT_TRUE(history.undo());
    EXPECT_EQ(file.absences(), before);
    EXPECT_TRUE(history.redo());
    EXPECT_EQ(written(), (QStringList{line(maths, u"3 0 255/1"_s), line(physics, u"2 1 2/0"_s)}));
}

TEST_F(AbsenceEntryTest, ADisciplineKeepsItsLessonAndSubgroup)
{
    const struct
    {
        int discipline;
        int recordedLesson; // 0: nothing recorded
        const char* recordedSubgroup;
        std::optional<int> wanted;
        QString saved;
    } cases[] = {
        {maths, 0, "", std::nullopt, u"1 0 1/2"_s},    {maths, 0, "", 3, u"3 0 1/2"_s},
        {maths, 3, "NULL", 1, u"3 0 1/2"_s},           {physics, 0, "", std::nullopt, u"2 1 1/2"_s},
        {physics, 2, "2", std::nullopt, u"2 2 1/2"_s},
    };
    for (const auto& each : cases) {
        file.database().execute("DELETE * FROM POS;");
        if (each.recordedLesson > 0)
            record(each.discipline, each.recordedLesson, each.recordedSubgroup, 0, 1);
        DisciplineAbsences read =
            entry().readDiscipline(DisciplineId{each.discipline}, each.wanted);
        EXPECT_EQ(read.hours, (Absence{0, each.recordedLesson > 0 ? 1 : 0}));
        read.hours = {1, 2};
        History steps(file.database());
        entry().saveDiscipline(steps, read);
        EXPECT_EQ(written(), QStringList{line(each.discipline, each.saved)});
    }
}

TEST_F(AbsenceEntryTest, ADisciplineWithoutHoursIsRemovedAndOthersStay)
{
    record(maths, 1, "NULL", 0, 2);
    record(maths, 3, "NULL", 2, 0);
    record(physics, 2, "NULL", 0, 2);
    DisciplineAbsences read = entry().readDiscipline(DisciplineId{maths});
    EXPECT_EQ(read.disciplineName, u"Математика");
    EXPECT_EQ(read.hours, (Absence{2, 2}));
    EXPECT_EQ(read.lessonsHeld, (std::vector<int>{1, 3}));
    read.hours = {};
    entry().saveDiscipline(history, read);
    EXPECT_EQ(written(), QStringList{line(physics, u"2 - 0/2"_s)});
}

TEST_F(AbsenceEntryTest, AllLessonsOfADayMeanThoseTheStudentAttends)
{
    record(maths, 3, "NULL", 1, 0);
    EXPECT_EQ(entry().markAllLessons(), 2);
    EXPECT_EQ(entry().markAllLessons(), 0);
    EXPECT_EQ(entry(day.addDays(5)).markAllLessons(), 0);
    EXPECT_EQ(written(), (QStringList{line(maths, u"1 0 0/2"_s), line(maths, u"3 - 1/0"_s),
                                      line(physics, u"2 1 0/2"_s)}));
}

} // namespace
