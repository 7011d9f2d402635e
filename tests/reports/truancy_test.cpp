#include "reports/truancy.h"
#include "tests/support/smalljournal.h"

#include "data/convert.h"
#include "jet/sqltext.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

using namespace reports;
using namespace Qt::StringLiterals;
namespace sql = jet::sql;

namespace {

const std::string kEnrolled = R"((prikazOtch="" or prikazOtch is null))";

// A month of random lessons and absences: students with and without a subgroup, one who was
// expelled, lessons of two teachers at the same time, absences entered twice.
class TruancyTest : public testing::Test
{
protected:
    TruancyTest()
    {
        jet::Transaction transaction(file.database());
        for (const char* name : {"А-1", "Б-2", "В-3"})
            groups.push_back(file.group(name));
        for (const char* name : {"Математика", "Физика"})
            disciplines.push_back(file.discipline(name));
        for (const char* name : {"Яковлев", "Белов", "Ёлкин"})
            teachers.push_back(
                add("INSERT INTO SPPREP (FAMIO) VALUES (\"" + std::string(name) + "\");",
                    "SELECT Max(IDP) From SPPREP;"));
        for (int i = 0; i < 18; ++i)
            students.push_back(file.student(groups[pick(3)], "Ф" + std::to_string(i), "И", "О",
                                            static_cast<int>(pick(4)) - 1, i == 5 ? "пр. 7" : ""));
        for (int i = 0; i < 60; ++i) {
            const int lesson =
                file.lesson(groups[pick(3)], disciplines[pick(2)], day(),
                            1 + static_cast<int>(pick(4)), static_cast<int>(pick(3)));
            run("UPDATE UROKI SET IDP=" + sql::number(teachers[pick(3)])
                + (pick(5) == 0 ? ", IDGG=Null" : "") + " WHERE ID=" + sql::number(lesson) + ";");
        }
        for (int i = 0; i < 20; ++i) {
            const int row = file.workload(groups[pick(3)], disciplines[pick(2)], first, last,
                                          static_cast<int>(pick(3)));
            run("UPDATE SPNAGR SET IDP=" + sql::number(teachers[pick(3)])
                + " WHERE IDN=" + sql::number(row) + ";");
        }
        for (int i = 0; i < 150; ++i)
            file.absence(students[pick(18)], disciplines[pick(2)], day(),
                         1 + static_cast<int>(pick(4)), static_cast<int>(pick(2)) * 2,
                         static_cast<int>(pick(2)) * 2);
        file.absence(students[0], disciplines[0], first.addDays(-1), 1, 2, 2); // of October
        transaction.commit();
    }

    void run(const std::string& statement) { file.database().execute(statement); }
    int add(const std::string& statement, const std::string& key)
    {
        run(statement);
        auto rows = file.database().query(key);
        rows.next();
        return static_cast<int>(rows.integer(0));
    }
    std::size_t pick(std::size_t count) { return random() % count; }
    QDate day() { return first.addDays(static_cast<qint64>(pick(8))); }
    journals::Absence ask(const std::string& query)
    {
        auto rows = file.database().query(query);
        rows.next();
        return {static_cast<int>(rows.integer(0)), static_cast<int>(rows.integer(1))};
    }
    static std::string literal(QDate date) { return sql::date(data::toJet(date)); }

    // One query for the cell of a teacher and a date.
    std::string byLessons(const std::string& dates, const std::string& lessonDates, int teacher,
                          const std::string& group)
    {
        return "select sum (uv) as suv,sum(nuv) as snuv  from (select distinct uv,nuv, d.idg, "
               "d.idd, d.idgg, d.id , d.dat from  (select uv,nuv, idg, idd, idgg, pos.id, pos.dat "
               "from POS, spstud  where pos.id=spstud.id and "
               + kEnrolled + group + " and  dat " + dates
               + " ) as d left join uroki on uroki.idg=d.idg and d.idd=uroki.idd where  "
                 "d.idgg=uroki.idgg and uroki.dat "
               + lessonDates + " and idp=" + sql::number(teacher) + ");";
    }
    std::string byWorkload(const std::string& dates, int teacher, const std::string& group)
    {
        return "select sum(POS.uv) as suv, sum(POS.nuv) as snuv from ( select uv,nuv, idg, idd, "
               "idgg from POS , spstud where POS.id=spstud.id and  dat "
               + dates + " and " + kEnrolled + group
               + ") as d, spnagr where d.idd =spnagr.idd  and d.idg=spnagr.idg "
                 "and d.idgg=spnagr.idgg and idp="
               + sql::number(teacher) + ";";
    }
    int teacherOf(const QString& name) const
    {
        return teachers[name == u"Яковлев" ? 0 : name == u"Белов" ? 1 : 2];
    }
    int groupOf(const QString& name) const
    {
        return groups[name == u"А-1" ? 0 : name == u"Б-2" ? 1 : 2];
    }

    const QDate first{2024, 11, 1};
    const QDate last{2024, 11, 30};
    const journals::Period month{first, last};
    std::mt19937 random{20241101};
    SmallJournal file;
    std::vector<int> groups, disciplines, teachers, students;
};

std::string shown(const journals::Absence& hours)
{
    return std::to_string(hours.excused) + "/" + std::to_string(hours.unexcused);
}

} // namespace

TEST_F(TruancyTest, OnePassAgreesWithAQueryForEachCell)
{
    int filled = 0;
    for (const TruancyRule rule : {TruancyRule::Lessons, TruancyRule::Workload}) {
        const auto byDay = truancyReport(file.database(), TruancyKind::TeachersByDay, month, rule);
        ASSERT_EQ(byDay.rows, (std::vector{u"Белов"_s, u"Ёлкин"_s, u"Яковлев"_s}));
        ASSERT_EQ(byDay.columns.size(), 8U);
        for (std::size_t row = 0; row < byDay.rows.size(); ++row)
            for (std::size_t column = 0; column < byDay.columns.size(); ++column) {
                const QDate date = QDate::fromString(byDay.columns[column], u"dd.MM.yyyy"_s);
                const std::string on = "= " + literal(date);
                const int teacher = teacherOf(byDay.rows[row]);
                EXPECT_EQ(shown(byDay.cell(row, column)),
                          shown(ask(rule == TruancyRule::Lessons ? byLessons(on, on, teacher, "")
                                                                 : byWorkload(on, teacher, ""))));
                filled += byDay.cell(row, column).total() > 0;
            }
        const auto byGroup =
            truancyReport(file.database(), TruancyKind::TeachersByGroup, month, rule);
        const std::string within = "between " + literal(first) + " and " + literal(last);
        for (std::size_t row = 0; row < byGroup.rows.size(); ++row)
            for (std::size_t column = 0; column < byGroup.columns.size(); ++column) {
                const int teacher = teacherOf(byGroup.rows[row]);
                const std::string group =
                    " and spstud.idg=" + sql::number(groupOf(byGroup.columns[column]));
                const std::string query =
                    rule == TruancyRule::Lessons
                        ? byLessons(within, "=d.dat and uroki.dat " + within, teacher, group)
                        : byWorkload(within, teacher, group);
                EXPECT_EQ(shown(byGroup.cell(row, column)), shown(ask(query)));
            }
        EXPECT_EQ(shown(byGroup.total()), shown(byDay.total()));
    }
    EXPECT_GT(filled, 20); // or the comparison would say little
}

TEST_F(TruancyTest, GroupsAddUpToAllThatEnrolledStudentsMissed)
{
    const auto report =
        truancyReport(file.database(), TruancyKind::GroupsByDay, month, TruancyRule::Lessons);
    EXPECT_EQ(report.rows, (std::vector{u"А-1"_s, u"Б-2"_s, u"В-3"_s}));
    const std::string all = "SELECT sum(POS.uv) as suv, sum(POS.nuv) as snuv FROM POS, spstud  "
                            "where spstud.id=POS.id and "
                            + kEnrolled;
    for (std::size_t row = 0; row < report.rows.size(); ++row)
        for (std::size_t column = 0; column < report.columns.size(); ++column) {
            const QDate date = QDate::fromString(report.columns[column], u"dd.MM.yyyy"_s);
            EXPECT_EQ(shown(report.cell(row, column)),
                      shown(ask(all + " and spstud.idg= " + sql::number(groupOf(report.rows[row]))
                                + " and dat = " + literal(date) + ";")));
        }
    EXPECT_EQ(shown(report.total()), shown(ask(all + " and month(dat)=11 and year(dat)=2024;")));

    const journals::Period quiet{QDate(2025, 1, 1), QDate(2025, 1, 31)};
    const auto empty =
        truancyReport(file.database(), TruancyKind::GroupsByDay, quiet, TruancyRule::Lessons);
    EXPECT_EQ(empty.rows.size(), 3U);
    EXPECT_TRUE(empty.columns.empty());
    EXPECT_EQ(truancyRule(file.database(), month), TruancyRule::Lessons);
    EXPECT_EQ(truancyRule(file.database(), quiet), TruancyRule::Workload);
}
