#include "reports/ranking.h"
#include "tests/support/smalljournal.h"

#include "jet/error.h"
#include "jet/sqltext.h"

#include <gtest/gtest.h>

#include <string>

using namespace reports;
using namespace Qt::StringLiterals;

namespace {

class RankingTest : public testing::Test
{
protected:
    int speciality(const std::string& name)
    {
        run("INSERT INTO SPOTD (KOD, NAIM, SOKR) VALUES (\"01\", \"" + name + "\", \"" + name
            + "\");");
        auto rows = file.database().query("SELECT Max(IDO) From SPOTD;");
        rows.next();
        return static_cast<int>(rows.integer(0));
    }
    int group(int speciality, const std::string& name)
    {
        const int key = file.group(name);
        run("UPDATE SPGRUP SET IDO=" + std::to_string(speciality)
            + " WHERE IDG=" + std::to_string(key) + ";");
        return key;
    }
    void grade(int student, int value, QDate date, bool isFinal)
    {
        run("INSERT INTO USP (ID, IDD, OC, DAT, it, TEK) VALUES (" + std::to_string(student)
            + ", 1, " + std::to_string(value) + ", #" + date.toString(u"MM/dd/yyyy"_s).toStdString()
            + "#, " + (isFinal ? "True" : "False") + ", False);");
    }
    void run(const std::string& statement) { file.database().execute(statement); }
    static QStringList texts(const RankingRow& row)
    {
        QStringList all;
        for (std::size_t item = RankingItem::Name; item < RankingItem::Count; ++item)
            all << row.text(item);
        return all;
    }

    SmallJournal file;
    const QDate begin{2025, 1, 1};
    const QDate end{2025, 1, 31};
    const RankingRequest finals{begin, end, RankingGrades::Final};
};

} // namespace

// Worked out by hand. Speciality А: Петров 5 and 4, Иванов 3, Сидоров without grades and an
// expelled student with a 2; Б: Юрьев with a 4 on the last day; В without students.
TEST_F(RankingTest, ComputesEveryIndicator)
{
    file.options(true, 2);
    const int a = speciality("А"), b = speciality("Б");
    speciality("В");
    const int a1 = group(a, "А-1"), b1 = group(b, "Б-1");
    group(a, "А-2");
    const int petrov = file.student(a1, "Петров", "П", "П");
    const int ivanov = file.student(a1, "Иванов", "И", "И");
    file.student(a1, "Сидоров", "С", "С");
    const int expelled = file.student(a1, "Ушедший", "У", "У", -1, "пр. 7");
    const int yurev = file.student(b1, "Юрьев", "Ю", "Ю");
    grade(petrov, 5, begin, true);
    grade(petrov, 4, begin, true);
    grade(petrov, 1, begin, true);  // a pass is no mark
    grade(petrov, 2, begin, false); // monthly
    grade(ivanov, 3, begin, true);
    grade(expelled, 2, begin, true);
    grade(yurev, 4, end, true);
    const int lesson = file.discipline("Математика");
    for (const int subgroup : {0, 1, 2})
        file.lesson(a1, lesson, begin, 1 + subgroup, subgroup);
    file.lesson(a1, lesson, end, 1); // the end day is not of the period
    file.lesson(b1, lesson, begin, 1);
    file.absence(petrov, lesson, begin, 1, 2, 0);
    file.absence(ivanov, lesson, begin, 1, 0, 1);
    file.absence(ivanov, lesson, end, 1, 0, 2);
    file.absence(expelled, lesson, begin, 1, 0, 2);

    const auto rows = Ranking(file.database(), finals).specialities();
    ASSERT_EQ(rows.size(), 3U);
    // 3 grades, 2 of them high: 66,7; 2 of 3 students good; 2 lessons of 2 hours, 12 person-hours.
    EXPECT_EQ(texts(rows[0]).join(u' '),
              u"А 2 3 1 1 1 0 66,7 2 2 66,7 2 66,7 2 1 4 12 3 2 1 75 91,7 2 8 2"_s);
    EXPECT_EQ(texts(rows[1]).join(u' '),
              u"Б 1 1 0 1 0 0 100 1 1 100 1 100 1 0 2 2 0 0 0 100 100 1 4 1"_s);
    EXPECT_EQ(texts(rows[2]).join(u' '), u"В 0 0 0 0 0 0  3 0 0 3 0 3 0 0 0 0 0 0   3 12 3"_s);

    const auto groups = Ranking(file.database(), finals).groups(a);
    ASSERT_EQ(groups.size(), 2U);
    EXPECT_EQ(texts(groups[0]).join(u' '),
              u"А-1 3 3 1 1 1 0 66,7 1 2 66,7 1 66,7 1 1 4 12 3 2 1 75 91,7 1 4 1"_s);
    EXPECT_EQ(texts(groups[1]).first(3).join(u' '), u"А-2 0 0"_s);

    const auto monthly =
        Ranking(file.database(), {begin, begin.addDays(1), RankingGrades::Monthly}).specialities();
    EXPECT_EQ(monthly[0].text(RankingItem::Twos), u"1"_s);
    EXPECT_EQ(monthly[0].text(RankingItem::Grades), u"1"_s);
    EXPECT_EQ(Ranking(file.database(), {begin, begin, RankingGrades::Monthly})
                  .specialities()[0]
                  .text(RankingItem::Grades),
              u"0"_s);
}

TEST(RankingPlaces, TiesShareAPlaceAndValuesCompareAsWholeNumbers)
{
    std::vector<RankingRow> rows(4);
    const double shares[] = {85.4, 85.2, 90.5, 10};
    for (std::size_t i = 0; i < rows.size(); ++i)
        rows[i].values[RankingItem::HighShare] = shares[i];
    rows[3].values[RankingItem::AttendanceForgiving] = 91.5; // 92
    rows[2].values[RankingItem::AttendanceForgiving] = 92.4; // 92
    setPlaces(rows);
    QStringList places;
    for (const RankingRow& row : rows)
        places << row.text(RankingItem::HighPlace) + u'/' + row.text(RankingItem::AttendancePlace)
                      + u'/' + row.text(RankingItem::Points) + u'/'
                      + row.text(RankingItem::OverallPlace);
    EXPECT_EQ(places, (QStringList{u"2/3/7/2"_s, u"2/3/7/2"_s, u"1/1/4/1"_s, u"4/1/7/2"_s}));
}

TEST_F(RankingTest, MoreThanFiftySpecialitiesAreTooMany)
{
    for (int i = 0; i < 50; ++i)
        speciality("С" + std::to_string(i));
    EXPECT_EQ(Ranking(file.database(), finals).specialities().size(), 50U);
    speciality("С50");
    EXPECT_THROW(Ranking(file.database(), finals).specialities(), jet::Error);
}
