#include "journals/autofinals.h"

#include "data/settingsrow.h"
#include "journals/history.h"
#include "shell/session.h"
#include "tests/support/scriptedprompt.h"
#include "tests/support/smalljournal.h"

#include <gtest/gtest.h>

#include <numeric>

using namespace journals;
using namespace Qt::StringLiterals;
using Grade = SmallJournal::Grade;

namespace {

const QString kReplaceQuestion =
    u"За выбранный период уже проставлены итоговые оценки. Продолжить автоматический расчет? "
    "\"Да\" - продолжить, оценки будут заменены, \"Нет\" - отменить."_s;

// A study year from 2 September 2024 to 30 June 2025 and one student with no grades yet.
class AutoFinalsTest : public testing::Test
{
protected:
    AutoFinalsTest()
    {
        file.studyYear(year.from, year.to);
        request.group = GroupId{group};
        request.discipline = DisciplineId{maths};
        request.period = year;
    }
    // After the rows of the test are in the file.
    void start()
    {
        session.openJournal(file.release());
        session.setMassActionGuard([this](const QString& action) {
            copies << action;
            return goOn;
        });
        finals.emplace(session, prompt);
        history.emplace(session.database());
    }
    FinalsPlan planned()
    {
        auto plan = finals->plan(request);
        EXPECT_TRUE(plan.has_value());
        return plan.value_or(FinalsPlan());
    }
    bool writeAll(const FinalsPlan& plan)
    {
        std::vector<std::size_t> rows(plan.rows.size());
        std::iota(rows.begin(), rows.end(), std::size_t{0});
        return finals->carryOut(plan, rows, *history);
    }
    // What is stored, as the next opening of the file finds it.
    QStringList stored()
    {
        history.reset();
        finals.reset();
        session.closeJournal();
        file.reopen();
        return file.grades();
    }
    QString line(int of, const QString& rest) const
    {
        return u"%1 %2 %3"_s.arg(of).arg(maths).arg(rest);
    }

    const Period year{{2024, 9, 2}, {2025, 6, 30}};
    const QDate november{2024, 11, 12};
    SmallJournal file;
    int group = file.group("ИС-21");
    int maths = file.discipline("Математика");
    int student = file.student(group, "Иванов", "Иван", "Иванович");
    ScriptedPrompt prompt;
    shell::Session session;
    FinalsRequest request;
    QStringList copies;
    bool goOn = true;
    std::optional<AutoFinals> finals;
    std::optional<History> history;
};

TEST_F(AutoFinalsTest, AveragesAreRoundedHalfToEvenWithoutPasses)
{
    struct Case
    {
        std::vector<int> marks;
        QString becomes; // "" for no result
        QString average;
        int counted;
    };
    const Case cases[] = {
        {{5, 4}, u"4"_s, u"4,50"_s, 2},
        {{3, 4}, u"4"_s, u"3,50"_s, 2},
        {{2, 3}, u"2"_s, u"2,50"_s, 2},
        {{3, 3, 3, 4, 4}, u"3"_s, u"3,40"_s, 5},
        {{4, 4, 4, 3, 3}, u"4"_s, u"3,60"_s, 5},
        {{5, 1, 4, 1}, u"4"_s, u"4,50"_s, 2},
        {{4, 4, 5}, u"4"_s, u"4,33"_s, 3},
        {{5}, u"5"_s, u"5,00"_s, 1},
        {{1, 1, 1}, u""_s, u""_s, 0},
        {{}, u""_s, u""_s, 0},
    };
    std::vector<int> students;
    for (const Case& each : cases) {
        students.push_back(file.student(group, "Яшин", "Ян", "Ильич"));
        for (int i = 0; const int mark : each.marks)
            file.grade(students.back(), maths, november.addDays(i++), mark);
    }
    start();
    const FinalsPlan plan = planned();
    QStringList expected;
    std::size_t row = 0;
    for (std::size_t i = 0; i < std::size(cases); ++i) {
        if (cases[i].becomes.isEmpty())
            continue;
        ASSERT_LT(row, plan.rows.size());
        EXPECT_EQ(plan.rows[row].student, StudentId{students[i]});
        EXPECT_EQ(becomesText(plan.rows[row]), cases[i].becomes) << i;
        EXPECT_EQ(plan.rows[row].marks.text(), cases[i].average) << i;
        EXPECT_EQ(plan.rows[row].marks.count, cases[i].counted) << i;
        expected << line(students[i], u"30.06.2025 "_s + cases[i].becomes + u" и"_s);
        ++row;
    }
    EXPECT_EQ(plan.rows.size(), row);
    EXPECT_TRUE(writeAll(plan));
    EXPECT_EQ(copies, QStringList{u"автоматическим расчетом итогов"_s});
    QStringList results = stored().filter(u" и"_s);
    expected.sort();
    EXPECT_EQ(results, expected);
}

TEST_F(AutoFinalsTest, EachChoiceCountsItsOwnDays)
{
    struct Case
    {
        FinalsKind kind;
        Period period;
        QStringList stored; // date, grade, kind
    };
    const QDate begin{2024, 9, 20}, end{2024, 11, 12};
    const Case cases[] = {
        {FinalsKind::Final, year, {u"30.06.2025 4 и"_s}},
        {FinalsKind::Final, {begin, end}, {u"12.11.2024 4 и"_s}},
        {FinalsKind::Month, {}, {u"30.11.2024 4 м"_s}},
        {FinalsKind::Year,
         {},
         {u"30.06.2025 5 м"_s, u"30.09.2024 4 м"_s, u"30.11.2024 4 м"_s, u"31.10.2024 2 м"_s}},
        {FinalsKind::Period,
         {begin, end},
         {u"12.11.2024 4 м"_s, u"30.09.2024 5 м"_s, u"31.10.2024 2 м"_s}},
    };
    const std::pair<QDate, int> marks[] = {
        {{2024, 9, 1}, 2}, // before the study year
        {{2024, 9, 2}, 3}, // its first day
        {begin, 5},          {{2024, 10, 8}, 2},  {end, 4},
        {{2024, 11, 13}, 4}, {{2024, 11, 30}, 5}, {{2025, 6, 30}, 5}, // its last day
        {{2025, 7, 1}, 2},
    };
    for (const auto& [date, mark] : marks)
        file.grade(student, maths, date, mark);
    const QStringList before = file.grades();
    request.month = {2024, 11};
    for (const Case& each : cases) {
        start();
        request.kind = each.kind;
        request.period = each.period;
        ASSERT_TRUE(writeAll(planned()));
        EXPECT_TRUE(history->undo()); // one step takes all of it back
        EXPECT_EQ(SmallJournal::grades(session.database()), before);
        EXPECT_TRUE(history->redo());
        QStringList results;
        for (const QString& row : stored())
            if (!before.contains(row))
                results << row.section(u' ', 2);
        results.sort();
        EXPECT_EQ(results, each.stored) << static_cast<int>(each.kind);
        file.database().execute("DELETE * FROM USP WHERE TEK=0;");
    }
}

TEST_F(AutoFinalsTest, ResultsAreReplacedOnlyWhenAskedAndTicked)
{
    const int second = file.student(group, "Петров", "Пётр", "");
    const int third = file.student(group, "Юдин", "Ян", ""); // no marks
    const int expelled = file.student(group, "Выбывший", "Ян", "", -1, "№ 5");
    const int physics = file.discipline("Физика");
    for (const int each : {student, second, third, expelled}) {
        if (each != third)
            file.grade(each, maths, november, 5);
        file.grade(each, maths, {2024, 11, 30}, 3, Grade::Monthly);
        file.grade(each, maths, {2025, 6, 1}, 2, Grade::Final);
        file.grade(each, physics, {2024, 11, 29}, 3, Grade::Monthly);
    }
    file.grade(student, maths, {2024, 11, 2}, 4, Grade::Monthly); // a second one by mistake
    const QStringList before = file.grades();
    request.kind = FinalsKind::Period;
    request.period = {{2024, 11, 1}, {2024, 11, 20}}; // the results stand outside it
    start();
    const FinalsPlan plan = planned();
    ASSERT_EQ(plan.rows.size(), 2U); // the third has nothing within the period
    EXPECT_EQ(nowText(plan.rows[0]), u"4, 3"_s);

    prompt.expect(Box::Question, kReplaceQuestion, shell::Answer::No);
    EXPECT_FALSE(writeAll(plan));
    goOn = false; // no copy could be made
    prompt.expect(Box::Question, kReplaceQuestion, shell::Answer::Yes);
    EXPECT_FALSE(writeAll(plan));
    EXPECT_EQ(SmallJournal::grades(session.database()), before);
    EXPECT_EQ(history->undoText(), QString());

    goOn = true;
    prompt.expect(Box::Question, kReplaceQuestion, shell::Answer::Yes);
    const std::size_t ticked[] = {0};
    EXPECT_TRUE(finals->carryOut(plan, ticked, *history));
    EXPECT_EQ(history->undoText(), u"автоматический расчет итогов"_s);
    QStringList expected = before;
    expected.removeOne(line(student, u"30.11.2024 3 м"_s));
    expected.removeOne(line(student, u"02.11.2024 4 м"_s));
    expected << line(student, u"20.11.2024 5 м"_s);
    expected.sort();
    EXPECT_EQ(SmallJournal::grades(session.database()), expected);

    request.kind = FinalsKind::Final;
    request.period = {year.from, {2024, 12, 31}}; // a half year leaves the other's results
    EXPECT_TRUE(writeAll(planned()));
    EXPECT_EQ(SmallJournal::grades(session.database()).filter(u"12.2024 5 и"_s).size(), 2);
    EXPECT_EQ(SmallJournal::grades(session.database()).filter(u"01.06.2025 2 и"_s).size(), 4);
    request.period = year; // a result within the period goes without a new one
    prompt.expect(Box::Question, kReplaceQuestion, shell::Answer::Yes);
    EXPECT_TRUE(writeAll(planned()));
    QStringList finalGrades = stored().filter(u" и"_s);
    QStringList left{line(student, u"30.06.2025 5 и"_s), line(second, u"30.06.2025 5 и"_s),
                     line(expelled, u"01.06.2025 2 и"_s)};
    left.sort();
    EXPECT_EQ(finalGrades, left);
    EXPECT_TRUE(prompt.done());
}

TEST_F(AutoFinalsTest, AnIncompleteRequestIsRefused)
{
    start();
    const auto refused = [&](FinalsRequest incomplete, const QString& text) {
        prompt.expect(Box::Exclamation, text);
        EXPECT_FALSE(finals->plan(incomplete).has_value());
    };
    FinalsRequest nothing;
    refused(nothing, u"Необходимо обязательно выбрать группу."_s);
    nothing.group = request.group;
    refused(nothing, u"Необходимо обязательно выбрать дисциплину."_s);
    request.period = {year.to, year.from};
    refused(request, u"Дата начала периода позже даты его окончания."_s);
    EXPECT_TRUE(prompt.done());
}

TEST_F(AutoFinalsTest, AFailedWriteLeavesTheOldResults)
{
    if (!FailingWrites::possible())
        GTEST_SKIP();
    file.grade(student, maths, november, 5);
    file.grade(student, maths, {2025, 6, 1}, 2, Grade::Final);
    const QStringList before = file.grades();
    start();
    const FinalsPlan plan = planned();
    prompt.expect(Box::Question, kReplaceQuestion, shell::Answer::Yes);
    {
        const FailingWrites fullDisk;
        EXPECT_ANY_THROW(writeAll(plan));
    }
    EXPECT_EQ(history->undoText(), QString());
    EXPECT_EQ(stored(), before);
}

TEST(StudyPeriod, MissingEndsAreThoseOfTheSchoolYear)
{
    const QDate today{2026, 8, 31};
    struct Case
    {
        QDate begin, end, working;
        Period period;
    };
    const Case cases[] = {
        {{2024, 9, 2}, {2025, 6, 30}, {}, {{2024, 9, 2}, {2025, 6, 30}}},
        {{2024, 9, 2}, {}, {2020, 1, 1}, {{2024, 9, 2}, {2025, 8, 31}}},
        {{}, {2025, 6, 30}, {2020, 1, 1}, {{2024, 9, 1}, {2025, 6, 30}}},
        {{}, {}, {2024, 9, 1}, {{2024, 9, 1}, {2025, 8, 31}}},
        {{}, {}, {}, {{2025, 9, 1}, {2026, 8, 31}}},
    };
    for (const Case& each : cases) {
        data::SettingsRow row;
        row.yearBegin = each.begin;
        row.yearEnd = each.end;
        row.workingDate = each.working;
        EXPECT_EQ(studyPeriod(row, today), each.period);
    }
    EXPECT_EQ(monthsOf({{2024, 11, 30}, {2025, 1, 1}}),
              (std::vector<Month>{{2024, 11}, {2024, 12}, {2025, 1}}));
}

} // namespace
