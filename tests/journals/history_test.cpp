#include "journals/history.h"

#include "tests/support/smalljournal.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

using namespace journals;
using namespace Qt::StringLiterals;

namespace {

class HistoryTest : public ::testing::Test
{
protected:
    // Everything the student misses on the day in one go, as the entry of a day does.
    void rewriteDay(QDate date, const QStringList& lessonsAndHours)
    {
        const RowScope scope{JournalTable::Absences, StudentId{student}, std::nullopt, date, date};
        history.record(u"пропуски "_s + date.toString(u"dd.MM"_s), {{scope}}, [&] {
            file.database().execute("delete * from POS where ID=" + std::to_string(student)
                                    + " and dat=#" + date.toString(u"MM/dd/yyyy"_s).toStdString()
                                    + "#;");
            for (const QString& entry : lessonsAndHours)
                file.absence(student, discipline, date, entry.section(u' ', 0, 0).toInt(), 0,
                             entry.section(u' ', 1, 1).toInt());
        });
    }

    SmallJournal file;
    int group = file.group("ИС-21");
    int student = file.student(group, "Иванов", "Иван", "Иванович");
    int discipline = file.discipline("Математика");
    History history{file.database()};
    const QDate first{2024, 11, 12};
    const QDate second{2024, 11, 13};
};

TEST_F(HistoryTest, StepsGoBackAndForthToTheSameRows)
{
    file.absence(student, discipline, first, 1, 2, 0);
    file.absence(student, discipline, first, 1, 2, 0); // recorded twice, and so it comes back
    std::vector<QStringList> states{file.absences()};
    rewriteDay(first, {u"1 2"_s, u"3 1"_s});
    states.push_back(file.absences());
    rewriteDay(second, {u"2 2"_s});
    states.push_back(file.absences());
    rewriteDay(first, {});
    states.push_back(file.absences());
    EXPECT_EQ(history.undoText(), u"пропуски 12.11"_s);

    for (std::size_t i = states.size() - 1; i-- > 0;) {
        EXPECT_TRUE(history.undo());
        EXPECT_EQ(file.absences(), states[i]);
    }
    EXPECT_FALSE(history.undo());
    for (std::size_t i = 1; i < states.size(); ++i) {
        EXPECT_TRUE(history.redo());
        EXPECT_EQ(file.absences(), states[i]);
    }
    EXPECT_FALSE(history.redo());
}

TEST_F(HistoryTest, ANewStepForgetsWhatWasTakenBack)
{
    rewriteDay(first, {u"1 2"_s});
    rewriteDay(second, {u"2 2"_s});
    ASSERT_TRUE(history.undo());
    rewriteDay(second, {u"2 2"_s});
    rewriteDay(second, {u"2 2"_s}); // changes nothing and is no step
    EXPECT_EQ(history.redoText(), QString());
    EXPECT_TRUE(history.undo());
    EXPECT_EQ(history.undoText(), u"пропуски 12.11"_s);

    for (int i = 0; i < 250; ++i)
        rewriteDay(first, {u"1 %1"_s.arg(i % 2 + 3)});
    int steps = 0;
    while (history.undo())
        ++steps;
    EXPECT_EQ(steps, static_cast<int>(History::kMostSteps));
}

TEST_F(HistoryTest, RowsChangedElsewhereAreNotTouched)
{
    rewriteDay(first, {u"1 2"_s});
    rewriteDay(second, {u"2 2"_s});
    file.absence(student, discipline, second, 4, 0, 2);
    const QStringList before = file.absences();
    EXPECT_FALSE(history.undo());
    EXPECT_EQ(file.absences(), before);
    EXPECT_EQ(history.undoText(), QString());
}

TEST_F(HistoryTest, AFailedActionLeavesNothing)
{
    const RowScope scope{JournalTable::Absences, StudentId{student}, std::nullopt, first, first};
    EXPECT_THROW(history.record(u"пропуск"_s, {{scope}},
                                [&] {
                                    file.absence(student, discipline, first, 1, 0, 2);
                                    throw std::runtime_error("диск полон");
                                }),
                 std::runtime_error);
    EXPECT_EQ(file.absences(), QStringList());
    EXPECT_EQ(history.undoText(), QString());
}

} // namespace
