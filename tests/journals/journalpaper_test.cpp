#include "journals/journalpaper.h"

#include "data/settingsrow.h"
#include "journals/attendancemodel.h"
#include "journals/gradebook.h"
#include "journals/grademodel.h"
#include "tests/journals/attendancefixture.h"

#include <numeric>

using namespace journals;
using namespace Qt::StringLiterals;

namespace {

using JournalPaper = AttendanceFixture;

QString cellText(const papers::Row& row, std::size_t column)
{
    return shownText(row.at(column));
}

TEST_F(JournalPaper, AMonthOfAbsencesKeepsItsSignsAndFitsAPage)
{
    const int ivanov = student("Иванов");
    student("Петров", 1);
    journal.workload(groupKey, mathsKey, {2022, 11, 1}, {2022, 11, 20});
    journal.absence(ivanov, mathsKey, day, 1, 0, 2);
    journal.absence(ivanov, mathsKey, day.addDays(2), 1, 2, 0);
    data::SettingsRow settings = journal.journal().settings();
    settings.institution = u"Колледж"_s;
    settings.printHead = true;
    settings.printResponsible = true;
    AttendanceModel model(attendance, shell::Wording());
    ASSERT_TRUE(model.load(selection));

    const auto heading =
        attendanceHeading(selection, {u"ИС-21"_s, u"Математика"_s}, shell::Wording());
    const papers::Paper paper = journalPaper(model, heading, settings);
    EXPECT_EQ(paper.title, u"ЖУРНАЛ ПОСЕЩАЕМОСТИ"_s);
    EXPECT_EQ(paper.subtitle, u"Группа ИС-21 · Математика · ноябрь 2022 г."_s);
    EXPECT_EQ(paper.institution.value(0), u"Колледж"_s);
    EXPECT_FALSE(paper.approval.isEmpty());
    EXPECT_FALSE(paper.signatures.empty());

    ASSERT_EQ(paper.head.size(), 1U);
    const papers::Row& head = paper.head.front();
    ASSERT_EQ(head.size(), paper.widths.size());
    const std::size_t twelfth = kLeadColumns + 11;
    EXPECT_EQ(cellText(head, twelfth), u"12\nСб"_s);
    EXPECT_FALSE(head[twelfth].rotated);
    EXPECT_TRUE(head[twelfth + 1].shaded); // Sunday
    EXPECT_TRUE(head.back().rotated);
    EXPECT_LE(std::accumulate(paper.widths.begin(), paper.widths.end(), 0.0), 267.5);

    ASSERT_EQ(paper.body.size(), 4U); // two students, two rows of totals
    const papers::Row& row = paper.body.front();
    EXPECT_EQ(cellText(row, 1), u"Иванов И. И."_s);
    EXPECT_EQ(cellText(row, twelfth), u"2"_s);
    EXPECT_EQ(row[twelfth].ink, papers::Ink::Unexcused);
    EXPECT_EQ(row[twelfth + 2].ink, papers::Ink::Excused);
    EXPECT_EQ(cellText(row, kLeadColumns + 20), u"X"_s); // no longer taught
    EXPECT_EQ(cellText(paper.body[2], 1), u"Итого за день, час."_s);
    EXPECT_TRUE(paper.body[2][twelfth].bold);
}

TEST_F(JournalPaper, PassesAreShortEnoughForADay)
{
    journal.grade(student("Иванов"), mathsKey, day, kPassGrade);
    GradeBook book(journal.database(), shell::Wording(), prompt, status);
    GradeSelection shown;
    shown.group = GroupId{groupKey};
    shown.discipline = DisciplineId{mathsKey};
    shown.month = {2022, 11};
    shown.year = {{2022, 9, 1}, {2023, 6, 30}};
    ASSERT_TRUE(book.load(shown)) << status.last().toStdString();
    const GradeModel model(book, shell::Wording());
    const JournalNames names{u"8А"_s, u"Математика"_s};
    const shell::Wording school(shell::Institution::School);
    const papers::Paper paper = journalPaper(model, gradesHeading(shown, names, school), {});
    EXPECT_EQ(paper.subtitle, u"Класс 8А · Математика · ноябрь 2022 г."_s);
    EXPECT_EQ(paper.notes, QStringList{u"з - зачет; X - нет урока."_s});
    const auto& row = paper.body.at(0);
    EXPECT_TRUE(std::ranges::any_of(
        row, [](const papers::Cell& cell) { return shownText(cell) == u"з"_s; }));
    shown.mode = GradeMode::Final;
    EXPECT_EQ(gradesHeading(shown, names, school).about.last(), u"2022 - 2023 учебный год"_s);
}

} // namespace
