#include "tests/journals/attendancefixture.h"

#include "jet/error.h"

using namespace Qt::StringLiterals;
using namespace journals;

namespace {

const QString kRefused = u"Данные в этой ячейке невозможно изменить."_s;

class AttendanceActions : public AttendanceFixture
{
protected:
    AttendanceActions()
        : who(student("Иванов"))
    {}

    // The cell of the first student and the day of November.
    static GridCell cellOf(int dayOfMonth) { return {0, kLeadColumns + dayOfMonth - 1}; }

    int apply(AttendanceSheet& sheet, AbsenceAction action, std::vector<GridCell> cells)
    {
        return attendance.apply(action, sheet, cells);
    }
    int applyToDay(AttendanceSheet& sheet, AbsenceAction action)
    {
        return apply(sheet, action, {cellOf(day.day())});
    }
    // "uv/nuv" rows of the one student, by lesson: "1 0/2".
    QStringList recorded()
    {
        QStringList rows;
        for (const QString& line : journal.absences())
            rows << line.section(u' ', 3);
        return rows;
    }

    int who;
};

TEST_F(AttendanceActions, QuickMarkingAddsThenCountsDown)
{
    const struct
    {
        const char* what;
        std::optional<Absence> before;
        Absence after;
        const char* said;
    } cases[] = {
        {"nothing", std::nullopt, {0, 2}, "Готово."},
        {"no hours", Absence{0, 0}, {0, 2}, "Готово."},
        {"unexcused", Absence{0, 2}, {0, 1}, "Количество неуважительных пропусков: 1"},
        {"last unexcused", Absence{0, 1}, {0, 0}, "Количество пропусков: 0"},
        {"both", Absence{3, 1}, {3, 0}, "Количество неуважительных пропусков: 0"},
        {"excused", Absence{3, 0}, {2, 0}, "Количество уважительных пропусков: 2"},
        {"last excused", Absence{1, 0}, {0, 0}, "Количество пропусков: 0"},
    };
    for (const auto& row : cases) {
        journal.database().execute("DELETE * FROM POS;");
        if (row.before)
            journal.absence(who, mathsKey, day, 3, row.before->excused, row.before->unexcused);
        EXPECT_EQ(attendance.mark(StudentId{who}, DisciplineId{mathsKey}, day, 3), text(row.said))
            << row.what;
        EXPECT_EQ(journal.absences(), QStringList{u"%1 %2 12.11.2022 3 %3/%4"_s.arg(who)
                                                      .arg(mathsKey)
                                                      .arg(row.after.excused)
                                                      .arg(row.after.unexcused)})
            << row.what;
    }
}

TEST_F(AttendanceActions, QuickMarkingTouchesItsOwnLessonOnly)
{
    const int other = student("Петров");
    journal.absence(who, mathsKey, day, 1, 0, 2);
    journal.absence(who, physicsKey, day, 2, 0, 2);
    journal.absence(other, mathsKey, day, 2, 0, 2);
    journal.absence(who, mathsKey, day.addDays(1), 2, 0, 2);
    const QStringList before = journal.absences();
    attendance.mark(StudentId{who}, DisciplineId{mathsKey}, day, 2);
    QStringList after = journal.absences();
    EXPECT_EQ(after.size(), before.size() + 1);
    for (const QString& line : before)
        EXPECT_TRUE(after.removeOne(line)) << line.toStdString();
    journal.reopen();
    EXPECT_EQ(journal.absences().size(), before.size() + 1);
}

TEST_F(AttendanceActions, ALessonRecordedTwiceCountsDownOnce)
{
    journal.absence(who, mathsKey, day, 1, 0, 2);
    journal.absence(who, mathsKey, day, 1, 0, 2);
    EXPECT_EQ(attendance.mark(StudentId{who}, DisciplineId{mathsKey}, day, 1),
              u"Количество неуважительных пропусков: 3");
    EXPECT_EQ(recorded(), QStringList{u"1 0/3"_s});
}

TEST_F(AttendanceActions, MarkingADayTakesTheLessonThatFits)
{
    const struct
    {
        const char* what;
        std::vector<std::pair<int, Absence>> before;
        QStringList after;
    } cases[] = {
        {"the first lesson for all or the own subgroup", {}, {u"3 0/2"_s}},
        {"the recorded one", {{5, {0, 2}}}, {u"5 0/1"_s}},
        {"unexcused before excused", {{1, {2, 0}}, {5, {0, 2}}}, {u"1 2/0"_s, u"5 0/1"_s}},
        {"excused before none", {{1, {0, 0}}, {5, {2, 0}}}, {u"1 0/0"_s, u"5 1/0"_s}},
        {"the first without hours", {{5, {0, 0}}, {4, {0, 0}}}, {u"4 0/2"_s, u"5 0/0"_s}},
    };
    journal.options(true, 2);
    journal.database().execute("UPDATE SPSTUD SET IDGG = 1;");
    journal.lesson(groupKey, mathsKey, day, 2, 2); // of the other subgroup
    journal.lesson(groupKey, mathsKey, day, 3, 1);
    journal.lesson(groupKey, mathsKey, day, 4, 0);
    journal.lesson(groupKey, physicsKey, day, 1, 0);
    for (const auto& row : cases) {
        journal.database().execute("DELETE * FROM POS;");
        for (const auto& [lesson, hours] : row.before)
            journal.absence(who, mathsKey, day, lesson, hours.excused, hours.unexcused);
        AttendanceSheet sheet = load();
        EXPECT_EQ(applyToDay(sheet, AbsenceAction::Mark), 1);
        EXPECT_EQ(recorded(), row.after) << row.what;
        EXPECT_EQ(sheet.cellText(0, 11), load().cellText(0, 11)) << row.what;
    }
    journal.options(false, 2);
    journal.database().execute("DELETE * FROM POS;");
    journal.database().execute("DELETE * FROM UROKI;");
    AttendanceSheet sheet = load();
    applyToDay(sheet, AbsenceAction::Mark);
    EXPECT_EQ(recorded(), QStringList{u"1 0/2"_s}) << "without a lesson, the first of the day";
}

TEST_F(AttendanceActions, SheetAfterAnActionIsTheSheetReadAnew)
{
    journal.absence(who, mathsKey, {2022, 10, 3}, 1, 1, 1);
    journal.absence(student("Петров"), mathsKey, day, 1, 2, 0);
    AttendanceSheet sheet = load();
    for (const AbsenceAction action :
         {AbsenceAction::Mark, AbsenceAction::MakeExcused, AbsenceAction::Mark,
          AbsenceAction::MakeUnexcused, AbsenceAction::Mark, AbsenceAction::Remove}) {
        EXPECT_EQ(applyToDay(sheet, action), 1);
        const AttendanceSheet anew = load();
        EXPECT_EQ(sheet.columnTotals, anew.columnTotals);
        for (std::size_t row = 0; row < 2; ++row) {
            EXPECT_EQ(sheet.students[row].cells, anew.students[row].cells);
            EXPECT_EQ(sheet.students[row].month, anew.students[row].month);
        }
    }
}

TEST_F(AttendanceActions, KindChangesOnlyWhereAllHoursAreOfTheOtherKind)
{
    const struct
    {
        const char* what;
        std::vector<Absence> before; // by lesson from 1
        AbsenceAction action;
        QStringList after;
        int changed;
    } cases[] = {
        {"red", {{0, 2}, {0, 1}}, AbsenceAction::MakeExcused, {u"1 2/0"_s, u"2 1/0"_s}, 1},
        {"blue", {{2, 0}, {0, 0}}, AbsenceAction::MakeUnexcused, {u"1 0/2"_s, u"2 0/0"_s}, 1},
        {"red again", {{0, 2}}, AbsenceAction::MakeUnexcused, {u"1 0/2"_s}, 0},
        {"blue again", {{2, 0}}, AbsenceAction::MakeExcused, {u"1 2/0"_s}, 0},
        {"mixed", {{2, 0}, {0, 2}}, AbsenceAction::MakeExcused, {u"1 2/0"_s, u"2 0/2"_s}, 0},
        {"mixed", {{2, 1}}, AbsenceAction::MakeUnexcused, {u"1 2/1"_s}, 0},
        {"empty", {}, AbsenceAction::MakeExcused, {}, 0},
    };
    for (const auto& row : cases) {
        journal.database().execute("DELETE * FROM POS;");
        int lesson = 0;
        for (const Absence& hours : row.before)
            journal.absence(who, mathsKey, day, ++lesson, hours.excused, hours.unexcused);
        AttendanceSheet sheet = load();
        EXPECT_EQ(Attendance::offers(row.action, sheet, cellOf(12)), row.changed == 1) << row.what;
        EXPECT_EQ(applyToDay(sheet, row.action), row.changed) << row.what;
        EXPECT_EQ(recorded(), row.after) << row.what;
    }
}

TEST_F(AttendanceActions, RowsWithEmptyCountsAreCountedAsNone)
{
    journal.absence(who, mathsKey, day, 1, 0, 2);
    journal.database().execute("UPDATE POS SET uv = NULL;");
    AttendanceSheet sheet = load();
    EXPECT_EQ(sheet.state(0, 11), AbsenceState::Unexcused);
    applyToDay(sheet, AbsenceAction::MakeExcused);
    EXPECT_EQ(recorded(), QStringList{u"1 2/0"_s});
}

TEST_F(AttendanceActions, DeletionTakesTheDayOrTheOneLesson)
{
    journal.options(true, 2);
    journal.lesson(groupKey, mathsKey, day, 1);
    journal.lesson(groupKey, mathsKey, day, 2);
    const auto record = [this] {
        journal.database().execute("DELETE * FROM POS;");
        for (const int lesson : {1, 2})
            journal.absence(who, mathsKey, day, lesson, 0, 2);
        journal.absence(who, physicsKey, day, 3, 0, 2);
    };
    record();
    AttendanceSheet sheet = load();
    applyToDay(sheet, AbsenceAction::Remove);
    EXPECT_EQ(recorded(), QStringList{u"3 0/2"_s}) << "of the discipline only";
    EXPECT_EQ(sheet.cellText(0, 11), QString());

    record();
    selection.mode = AttendanceMode::Lessons;
    sheet = load();
    apply(sheet, AbsenceAction::Remove, {{0, kLeadColumns + 1}});
    EXPECT_EQ(recorded().size(), 2);
    EXPECT_TRUE(recorded().contains(u"1 0/2"_s));
    EXPECT_EQ(sheet.monthTotal().total(), 2);
}

TEST_F(AttendanceActions, RefusesWhatIsNoCellOfAStudentsLesson)
{
    journal.workload(groupKey, mathsKey, {2022, 11, 3}, {2022, 11, 28});
    student("Петров");
    AttendanceSheet sheet = load();
    const int days = static_cast<int>(sheet.columns.size());
    const struct
    {
        const char* what;
        GridCell cell;
    } cases[] = {
        {"number", {0, 0}},
        {"name", {0, 1}},
        {"start balance", {0, 2}},
        {"before the workload", cellOf(2)},
        {"after it", cellOf(29)},
        {"month total", {0, kLeadColumns + days}},
        {"end", {0, 4 + days}},
        {"unexcused", {0, 5 + days}},
        {"beyond", {0, 6 + days}},
        {"day total", {2, kLeadColumns + 4}},
        {"its part", {3, kLeadColumns + 4}},
        {"header", {-1, kLeadColumns + 4}},
    };
    for (const auto& row : cases)
        for (const AbsenceAction action : {AbsenceAction::Mark, AbsenceAction::Remove}) {
            status.texts.clear();
            prompt.expect(Box::Exclamation, kRefused);
            EXPECT_EQ(apply(sheet, action, {row.cell}), 0) << row.what;
            EXPECT_TRUE(prompt.done()) << row.what;
            EXPECT_EQ(status.texts, QStringList{kRefused}) << row.what;
        }
    EXPECT_TRUE(journal.absences().isEmpty());
}

TEST_F(AttendanceActions, WantsADiscipline)
{
    selection.discipline.reset();
    journal.absence(who, mathsKey, day, 1, 0, 2);
    AttendanceSheet sheet = load();
    for (const AbsenceAction action :
         {AbsenceAction::Mark, AbsenceAction::MakeExcused, AbsenceAction::Remove}) {
        prompt.expect(Box::Information, u"Для установки пропуска выберите дисциплину из списка."_s);
        EXPECT_EQ(applyToDay(sheet, action), 0);
    }
    EXPECT_EQ(recorded(), QStringList{u"1 0/2"_s});
}

TEST_F(AttendanceActions, ChecksWhatTheCellStandsFor)
{
    const struct
    {
        const char* said;
        void (*spoil)(AttendanceSheet&);
    } cases[] = {
        {"Ошибка: не выбран месяц.",
         [](AttendanceSheet& sheet) { sheet.selection.month.month = 0; }},
        {"Ошибка: неверный месяц.",
         [](AttendanceSheet& sheet) { sheet.selection.month.month = 13; }},
        {"Ошибка: неверный год.", [](AttendanceSheet& sheet) { sheet.selection.month.year = 0; }},
        {"Ошибка: неверный день.", [](AttendanceSheet& sheet) { sheet.columns[11].date = {}; }},
        {"Ошибка: невозможно идентифицировать студента.",
         [](AttendanceSheet& sheet) { sheet.students[0].id = {}; }},
    };
    for (const auto& row : cases) {
        AttendanceSheet sheet = load();
        row.spoil(sheet);
        EXPECT_EQ(applyToDay(sheet, AbsenceAction::Mark), 0);
        EXPECT_EQ(status.last(), text(row.said));
    }
    EXPECT_TRUE(journal.absences().isEmpty());
}

TEST_F(AttendanceActions, ABlockLeavesOutWhatCannotBeChanged)
{
    journal.workload(groupKey, mathsKey, {2022, 11, 3}, {2022, 11, 28});
    student("Петров");
    AttendanceSheet sheet = load();
    std::vector<GridCell> block;
    for (int row = 0; row < 4; ++row)
        for (int column = 1; column < kLeadColumns + 4; ++column)
            block.push_back({row, column});
    EXPECT_EQ(apply(sheet, AbsenceAction::Mark, block), 4) << "days 3 and 4 of two students";
    EXPECT_EQ(journal.absences().size(), 4);
    EXPECT_EQ(status.last(), u"Готово.");
    apply(sheet, AbsenceAction::MakeExcused, {cellOf(3)});
    EXPECT_EQ(apply(sheet, AbsenceAction::MakeExcused, block), 3) << "the rest";
    prompt.expect(Box::Exclamation, kRefused);
    EXPECT_EQ(apply(sheet, AbsenceAction::Mark, {{0, 1}, {0, 2}}), 0);
    EXPECT_EQ(sheet.monthTotal(), load().monthTotal());
}

TEST_F(AttendanceActions, ABlockOverTwinLessonsMarksOnce)
{
    journal.options(true, 2);
    journal.lesson(groupKey, mathsKey, day, 1, 1);
    journal.lesson(groupKey, mathsKey, day, 1, 2);
    selection.mode = AttendanceMode::Lessons;
    AttendanceSheet sheet = load();
    EXPECT_EQ(apply(sheet, AbsenceAction::Mark, {{0, kLeadColumns}, {0, kLeadColumns + 1}}), 1);
    EXPECT_EQ(recorded(), QStringList{u"1 0/2"_s});
    apply(sheet, AbsenceAction::Mark, {{0, kLeadColumns + 1}});
    EXPECT_EQ(sheet.cell(0, 0).unexcused, 1) << "shown where the student's hours are";
}

TEST_F(AttendanceActions, AFailedWriteLeavesFileAndSheetAsTheyWere)
{
    if (!FailingWrites::possible())
        GTEST_SKIP();
    journal.absence(who, mathsKey, day, 1, 0, 2);
    AttendanceSheet sheet = load();
    for (const AbsenceAction action :
         {AbsenceAction::Mark, AbsenceAction::MakeExcused, AbsenceAction::Remove}) {
        status.texts.clear();
        {
            const FailingWrites full;
            EXPECT_THROW(apply(sheet, action, {cellOf(12)}), jet::Error);
        }
        EXPECT_EQ(sheet.cell(0, 11), (Absence{0, 2}));
        EXPECT_TRUE(status.texts.isEmpty());
        EXPECT_EQ(recorded(), QStringList{u"1 0/2"_s});
    }
    EXPECT_EQ(applyToDay(sheet, AbsenceAction::Mark), 1) << "the next one works again";
    journal.reopen();
    EXPECT_EQ(recorded(), QStringList{u"1 0/1"_s});
}

} // namespace
