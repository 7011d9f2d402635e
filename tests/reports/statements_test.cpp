#include "data/settingsrow.h"
#include "journals/gradesheet.h"
#include "reports/report.h"
#include "tests/support/smalljournal.h"

#include <gtest/gtest.h>

using namespace reports;
using namespace Qt::StringLiterals;
using Grade = SmallJournal::Grade;

namespace {

// The filled cells of each row by their columns: "0:1|1:Иванов И. И.|2:4,50".
QStringList lines(const papers::Paper& paper)
{
    QStringList rows(static_cast<qsizetype>(paper.body.size()));
    for (const papers::PlacedCell& place : papers::placed(paper.body)) {
        const QString text = papers::shownText(*place.cell);
        if (text.isEmpty() || text == u"X")
            continue;
        QString& row = rows[place.row];
        row += (row.isEmpty() ? u""_s : u"|"_s) + QString::number(place.column) + u':' + text;
    }
    return rows;
}

// November 2022: Tuesday the 1st. Three students, one of each subgroup and one without; a fourth
// who was expelled and counts nowhere. Two lessons of algebra for all, one of physics for each
// subgroup at once: three lessons of two hours count.
class StatementTest : public testing::Test
{
protected:
    StatementTest()
    {
        file.options(true, 2);
        file.studyYear({2022, 9, 1}, {2023, 6, 30});
        jet::Transaction transaction(file.database());
        fillLessons();
        fillAbsences();
        fillGrades();
        transaction.commit();
    }

    void fillLessons()
    {
        file.lesson(group, algebra, day(1), 1);
        file.lesson(group, algebra, day(8), 1);
        file.lesson(group, physics, day(2), 1, 1);
        file.lesson(group, physics, day(2), 1, 2);
        file.lesson(group, english, {2022, 12, 5}, 1, 1);
    }
    void fillAbsences()
    {
        file.absence(first, algebra, day(1), 1, 2, 0);
        file.absence(second, algebra, day(1), 1, 0, 2);
        file.absence(second, algebra, day(8), 1, 0, 2);
        file.absence(second, algebra, {2022, 10, 4}, 1, 0, 2);
        file.absence(expelled, algebra, day(1), 1, 0, 2);
    }
    void fillGrades()
    {
        file.grade(first, algebra, day(1), 4);
        file.grade(first, algebra, day(8), 5);
        file.grade(second, algebra, day(8), 2);
        file.grade(third, algebra, day(1), journals::kPassGrade);
        file.grade(expelled, algebra, day(8), 2);
        file.grade(first, algebra, {2022, 10, 31}, 4, Grade::Monthly);
        file.grade(first, algebra, day(30), 5, Grade::Monthly);
        file.grade(second, algebra, day(30), 3, Grade::Monthly);
        file.grade(third, algebra, day(30), journals::kPassGrade, Grade::Monthly);
        file.grade(first, physics, day(30), 4, Grade::Monthly);
        file.grade(second, physics, day(30), 2, Grade::Monthly);
        file.grade(expelled, physics, day(30), 2, Grade::Monthly);
        file.grade(first, algebra, end, 5, Grade::Final);
        file.grade(second, algebra, end, 4, Grade::Final);
        file.grade(third, algebra, end, 3, Grade::Final);
        file.grade(first, physics, end, 4, Grade::Final);
        file.grade(second, physics, end, 2, Grade::Final);
        file.grade(first, english, end, 5, Grade::Final);
    }

    static QDate day(int number) { return {2022, 11, number}; }
    ReportRequest request(ReportKind kind, SubjectView view = SubjectView::Current) const
    {
        ReportRequest wanted;
        wanted.kind = kind;
        wanted.view = view;
        wanted.month = {2022, 11};
        wanted.group = journals::GroupId{group};
        if (kind == ReportKind::GradesSubject)
            wanted.discipline = journals::DisciplineId{algebra};
        return wanted;
    }
    papers::Document make(const ReportRequest& wanted)
    {
        const StatementSource source{file.database(), data::readSettingsRow(file.database()),
                                     wording};
        return makeReport(source, wanted).value();
    }
    papers::Paper paper(ReportKind kind, SubjectView view = SubjectView::Current)
    {
        return make(request(kind, view)).papers.front();
    }

    SmallJournal file;
    shell::Wording wording;
    const int group = file.group("А-1");
    const int third = file.student(group, "Васильев", "В", "В");
    const int second = file.student(group, "Борисов", "Борис", "Борисович", 2);
    const int first = file.student(group, "Алексеев", "Артем", "Петрович", 1);
    const int expelled = file.student(group, "Ушедший", "У", "У", 1, "пр. 7");
    const int physics = file.discipline("Физика");
    const int algebra = file.discipline("Алгебра");
    const int english = file.discipline("Английский");
    const QDate end{2023, 6, 30};
};

} // namespace

TEST_F(StatementTest, AttendanceOfAMonth)
{
    const papers::Paper whole = paper(ReportKind::Attendance);
    EXPECT_EQ(lines(whole), (QStringList{
                                u"0:1|1:Алексеев А. П.|2:2|32:2|33:2|35:66,7"_s,
                                u"0:2|1:Борисов Б. Б.|2:2|9:2|32:4|34:4|35:33,3"_s,
                                u"0:3|1:Васильев В. В.|35:100,0"_s,
                                u"0:Итого за день, час.|2:4|9:2|32:6|33:2|34:4|35:66,7"_s,
                                u"0:из них неуваж.|2:2|9:2|32:4"_s,
                            }));
    EXPECT_EQ(whole.head[0][2].shaded, false); // Tuesday
    EXPECT_EQ(whole.head[0][7].shaded, true);  // Sunday the 6th
    EXPECT_EQ(whole.body[0][2].ink, papers::Ink::Excused);
    EXPECT_EQ(whole.body[3][1].formula, u"SUM(C8:C10)"_s); // the label covers two columns
    EXPECT_EQ(whole.notes.first(4),
              (QStringList{
                  u"Списочный состав: 3. Выдано учебных часов: 6. Человеко-часов: 18."_s,
                  u"Пропущено часов: всего 6, по уважительным причинам 2, без уважительных 4; на "
                  "одного студента 2,0."_s,
                  u"Посещаемость 66,7 %; с учетом уважительных причин 77,8 %; студентов без "
                  "пропусков: 1."_s,
                  u"Без уважительной причины пропущено более 30 % часов: Борисов Б. Б. (66,7 %)."_s,
              }));

    ReportRequest wanted = request(ReportKind::Attendance);
    wanted.balances = true;
    const papers::Paper more = make(wanted).papers.front();
    EXPECT_EQ(lines(more)[1], u"0:2|1:Борисов Б. Б.|2:2|9:2|32:4|34:4|35:33,3|36:2|37:6"_s);
    EXPECT_TRUE(lines(more)[3].endsWith(u"|36:2|37:8"_s));
    EXPECT_EQ(more.body[1].back().formula, u"AK9+AG9"_s);
    EXPECT_EQ(more.widths.size(), whole.widths.size() + 2);

    wanted = request(ReportKind::Attendance);
    wanted.discipline = journals::DisciplineId{physics};
    const papers::Paper one = make(wanted).papers.front();
    EXPECT_EQ(papers::shownText(one.body[0][2]), u"X"_s); // no physics on the 1st
    EXPECT_EQ(papers::shownText(one.body[0][3]), QString());
    EXPECT_TRUE(one.notes.first().contains(u"Выдано учебных часов: 2."_s));
    wanted.discipline = journals::DisciplineId{english}; // not taught in the month
    EXPECT_TRUE(make(wanted).papers.front().notes[2].startsWith(
        u"Посещаемость —; с учетом уважительных причин —"_s));
}

TEST_F(StatementTest, GradesOfAMonth)
{
    const papers::Paper table = paper(ReportKind::GradesMonth);
    EXPECT_EQ(lines(table),
              (QStringList{
                  u"0:1|1:Алексеев А. П.|2:5|3:4|4:4,50|5:1|6:1|7:0|8:0|9:2"_s,
                  u"0:2|1:Борисов Б. Б.|2:3|3:2|4:2,50|5:0|6:0|7:1|8:1|9:4|10:4"_s,
                  u"0:3|1:Васильев В. В.|2:Зач.|5:0|6:0|7:0|8:0"_s,
                  u"0:Средний балл, всего|2:4,00|3:3,00|4:3,50|5:1|6:1|7:1|8:1|9:6|10:4"_s,
                  u"0:«5»|2:1|3:0"_s,
                  u"0:«4»|2:0|3:1"_s,
                  u"0:«3»|2:1|3:0"_s,
                  u"0:«2»|2:0|3:1"_s,
                  u"0:Зачет|2:1|3:0"_s,
                  u"0:Без оценки|2:0|3:1"_s,
                  u"0:Качественная, %|2:50,0|3:50,0|4:33,3"_s,
                  u"0:Общая, %|2:100,0|3:50,0|4:33,3"_s,
                  u"0:Преподаватель"_s,
              }));
    EXPECT_EQ(table.notes.first(),
              u"Всего студентов 3: на «5» - 0; на «4» и «5» - 1; с «3» - 0, из "
              "них с одной «3» - 0; имеют «2» - 1; без оценок - 1."_s);
}

TEST_F(StatementTest, GradesBySubject)
{
    EXPECT_EQ(lines(paper(ReportKind::GradesSubject)),
              (QStringList{
                  u"0:1|1:Алексеев А. П.|2:4|9:5|32:4,50|33:5|34:2"_s,
                  u"0:2|1:Борисов Б. Б.|9:2|32:2,00|33:3|34:4"_s,
                  u"0:3|1:Васильев В. В.|2:з|33:Зач."_s,
                  u"0:Оценок за день, средний балл|2:1|9:2|32:3,67|33:4,00|34:6"_s,
                  u"0:Качественная, %|32:66,7|33:50,0"_s,
                  u"0:Общая, %|32:66,7|33:100,0"_s,
              }));
    const QStringList periodic = lines(paper(ReportKind::GradesSubject, SubjectView::Periodic));
    EXPECT_EQ(periodic.first(4), (QStringList{
                                     u"0:1|1:Алексеев А. П.|3:4|4:5|12:4,50|13:5"_s,
                                     u"0:2|1:Борисов Б. Б.|4:3|12:3,00|13:4"_s,
                                     u"0:3|1:Васильев В. В.|4:Зач.|13:3"_s,
                                     u"0:Средний балл|3:4,00|4:4,00|12:4,00|13:4,00"_s,
                                 }));
    EXPECT_EQ(periodic[4], u"0:Качественная, %|2:—|3:100,0|4:50,0|5:—|6:—|7:—|8:—|9:—|10:—|11:—|"
                           "12:66,7|13:66,7"_s);
    EXPECT_EQ(lines(paper(ReportKind::GradesSubject, SubjectView::Combined)),
              (QStringList{
                  u"0:1|1:Алгебра|3:4|4:1|5:1|6:1|7:0|8:1|9:0|10:4,00|11:66,7|12:100,0"_s,
                  u"0:2|1:Английский|3:0|4:0|5:0|6:0|7:0|8:0|9:3|11:—|12:—"_s,
                  u"0:3|1:Физика|3:2|4:0|5:1|6:0|7:1|8:0|9:1|10:3,00|11:50,0|12:50,0"_s,
                  u"0:Итого|3:6|4:1|5:2|6:1|7:1|8:1|10:3,60|11:60,0|12:80,0"_s,
              }));

    file.group("Б-2"); // has no algebra, so that of all groups only one gets a paper
    ReportRequest all = request(ReportKind::GradesSubject);
    all.group.reset();
    EXPECT_EQ(make(all).papers.size(), 1U);
}

TEST_F(StatementTest, CardsStandTwoOnAPageUntilTheyGrowTooLong)
{
    const papers::Document cards = make(request(ReportKind::Card));
    ASSERT_EQ(cards.papers.size(), 3U);
    EXPECT_EQ(lines(cards.papers[0]), (QStringList{
                                          u"0:1|1:Алгебра|2:4 5|3:5|4:2"_s,
                                          u"0:2|1:Физика|3:4"_s,
                                          u"0:Итого: средний балл за месяц, часы|3:4,50|4:2"_s,
                                      }));
    EXPECT_TRUE(cards.papers[0].half);
    EXPECT_EQ(cards.papers[0].name, cards.papers[2].name);
    ReportRequest one = request(ReportKind::Card);
    one.student = journals::StudentId{second};
    ASSERT_EQ(make(one).papers.size(), 1U);
    EXPECT_TRUE(make(one).papers[0].subtitle.contains(u"Борисов Борис Борисович"_s));
    for (int i = 0; i < 14; ++i)
        file.lesson(group, file.discipline("Предмет " + std::to_string(i)), day(3), 1 + i);
    EXPECT_FALSE(make(one).papers[0].half);
    // Hours of a discipline that is not taught in the month are not lost.
    file.absence(second, english, day(9), 1, 1, 0);
    EXPECT_TRUE(lines(make(one).papers[0]).back().endsWith(u"4:5|5:4"_s));
}

TEST_F(StatementTest, FinalGradesOfAYear)
{
    const papers::Paper table = paper(ReportKind::Final);
    EXPECT_EQ(lines(table),
              (QStringList{
                  u"0:1|1:Алексеев А. П.|2:5|3:5|4:4|5:4,67|6:2|7:1|8:0|9:0|10:0|11:2"_s,
                  u"0:2|1:Борисов Б. Б.|2:4|4:2|5:3,00|6:0|7:1|8:0|9:1|10:0|11:6|12:6"_s,
                  u"0:3|1:Васильев В. В.|2:3|3:н/а|4:н/а|5:3,00|6:0|7:0|8:1|9:0|10:2"_s,
                  u"0:Средний балл, всего|2:4,00|3:5,00|4:3,00|5:3,83|6:2|7:2|8:1|9:1|10:2|11:8|"
                  "12:6"_s,
                  u"0:Не аттестовано|2:0|3:1|4:1"_s,
                  u"0:Качественная, %|2:66,7|3:100,0|4:50,0|5:33,3"_s,
                  u"0:Общая, %|2:100,0|3:100,0|4:50,0|5:33,3"_s,
                  u"0:Преподаватель"_s,
              }));
    EXPECT_TRUE(table.notes.contains(u"Имеют задолженности: Борисов Б. Б. (Физика - 2); Васильев "
                                     "В. В. (Английский - н/а, Физика - н/а)."_s));
}

TEST_F(StatementTest, SummaryOfTheInstitution)
{
    file.group("Б-2");
    const QStringList rows = lines(paper(ReportKind::Summary));
    const QString figures = u"|3:3|4:0|5:1|6:0|7:1|8:1|9:33,3|10:33,3|11:3,50|12:6|13:18|14:6|15:2|"
                            "16:4|17:2,0|18:66,7|19:77,8"_s;
    EXPECT_EQ(rows, (QStringList{
                        u"0:Без специальности"_s,
                        u"0:1|1:А-1"_s + figures,
                        u"0:2|1:Б-2|3:0|4:0|5:0|6:0|7:0|8:0|9:—|10:—|12:0|13:0|14:0|15:0|16:0|17:—|"
                        "18:—|19:—"_s,
                        u"0:Итого по специальности"_s + figures,
                        u"0:ВСЕГО ПО УЧЕБНОМУ ЗАВЕДЕНИЮ"_s + figures,
                    }));
}

TEST_F(StatementTest, SummaryOfSeveralMonthsTakesEveryGradeAndHourOfThem)
{
    ReportRequest wanted = request(ReportKind::Summary);
    wanted.month = {2022, 10};
    wanted.months = 2;
    file.grade(first, physics, {2022, 10, 31}, 3, Grade::Monthly); // no longer on 4 and 5
    const papers::Document document = make(wanted);
    EXPECT_EQ(document.name, u"Сводный отчет 2022-10_2022-11"_s);
    EXPECT_EQ(document.papers.front().subtitle, u"за октябрь 2022 г. - ноябрь 2022 г."_s);
    // October has one lesson more missed; marks are 4 5 4 3, 3 2 and a pass.
    EXPECT_EQ(lines(document.papers.front()).at(1),
              u"0:1|1:А-1|3:3|4:0|5:0|6:1|7:1|8:1|9:0,0|10:33,3|11:3,50|12:6|13:18|14:8|15:2|"
              "16:6|17:2,7|18:55,6|19:66,7"_s);
    wanted.months = 13;
    EXPECT_TRUE(requestProblem(wanted));
}

TEST_F(StatementTest, StopsBetweenGroupsWhenCancelled)
{
    file.group("Б-2");
    const StatementSource source{file.database(), data::readSettingsRow(file.database()), wording};
    ReportRequest wanted = request(ReportKind::Final);
    wanted.group.reset();
    int calls = 0;
    EXPECT_FALSE(makeReport(source, wanted, [&calls](int) { return ++calls < 3; }));
    EXPECT_EQ(calls, 3) << "once at the beginning, then before each group";
    EXPECT_EQ(make(wanted).papers.size(), 2u);
    calls = 0;
    wanted.kind = ReportKind::Summary;
    EXPECT_FALSE(makeReport(source, wanted, [&calls](int) { return ++calls < 3; }));
}

TEST_F(StatementTest, ASchoolReadsItsOwnWordsAndKeepsItsData)
{
    wording = shell::Wording(shell::Institution::School);
    const papers::Paper school = paper(ReportKind::Attendance);
    EXPECT_TRUE(school.subtitle.startsWith(u"Класс А-1"_s));
    EXPECT_EQ(school.signatures.front().post, u"Классный руководитель"_s);
    for (const ReportKind kind :
         {ReportKind::Attendance, ReportKind::GradesMonth, ReportKind::GradesSubject,
          ReportKind::Card, ReportKind::Final, ReportKind::Summary})
        for (const SubjectView view : {SubjectView::Current, SubjectView::Combined}) {
            const papers::Paper each = paper(kind, view);
            const QString all = each.title + each.subtitle + each.notes.join(u' ');
            for (const QString& word : {u"студент"_s, u"группа"_s, u"группе"_s, u"дисциплин"_s,
                                        u"преподават"_s, u"учащийсяа"_s, u"предметм"_s, u"занят"_s})
                EXPECT_FALSE(all.contains(word, Qt::CaseInsensitive))
                    << word.toStdString() << " in " << all.toStdString();
        }
}
