// Texts and rows expected here are written out by hand, not computed as the journal does.
#include "data/convert.h"
#include "jet/error.h"
#include "journals/gradebook.h"
#include "journals/grademodel.h"
#include "tests/support/scriptedprompt.h"
#include "tests/support/smalljournal.h"

#include <gtest/gtest.h>

#include <QAbstractItemModelTester>
#include <QMap>

#include <utility>

using namespace Qt::StringLiterals;
using namespace journals;

namespace {

// A group of three and an expelled fourth; mathematics from 7 November 2022 to 30 May 2023, by
// workload. The study year runs from 5 September 2022 to 25 June 2023.
class Grades : public testing::Test
{
protected:
    Grades()
        : group(file.group("ИС-21"))
        , maths(file.discipline("Математика"))
        , physics(file.discipline("Физика"))
        , ivanov(file.student(group, "Иванов", "Иван", "Иванович"))
        , petrov(file.student(group, "Петров", "Пётр", "Петрович", 1))
        , sidorov(file.student(group, "Сидоров", "Семён", "", 2))
        , gone(file.student(group, "Абрамов", "Антон", "", -1, "12-к"))
        , book(file.database(), shell::Wording(), prompt, status)
    {
        file.workload(group, maths, {2022, 11, 7}, {2023, 5, 30});
        settings("AvtSave = True, DATN = #09/05/2022#, DATK = #06/25/2023#, Uroki = False");
        selection.group = GroupId{group};
        selection.discipline = DisciplineId{maths};
        selection.month = {2022, 11};
        selection.year = {{2022, 9, 5}, {2023, 6, 25}};
    }

    void settings(const std::string& assignments)
    {
        file.database().execute("UPDATE RASP SET " + assignments + ";");
    }
    void row(int student, int discipline, int grade, const std::string& date, int isFinal,
             int isCurrent)
    {
        file.database().execute(
            "INSERT INTO USP (ID, IDD, OC, DAT, it, TEK) VALUES (" + std::to_string(student) + ", "
            + std::to_string(discipline) + ", " + std::to_string(grade) + ", #" + date + "#, "
            + std::to_string(isFinal) + ", " + std::to_string(isCurrent) + ");");
    }
    // "student discipline grade date it tek" with the names' first letters, sorted.
    QStringList stored()
    {
        auto rows = file.database().query("SELECT ID, IDD, OC, DAT, it, TEK FROM USP;");
        const QMap<int, QString> names{
            {ivanov, u"И"_s}, {petrov, u"П"_s}, {sidorov, u"С"_s}, {gone, u"А"_s}};
        QStringList lines;
        while (rows.next())
            lines << u"%1%2 %3 %4 %5 %6"_s.arg(names.value(static_cast<int>(rows.integer(0))))
                         .arg(rows.integer(1) == maths ? u"м"_s : u"ф"_s)
                         .arg(rows.integer(2))
                         .arg(data::toDate(rows.date(3)).toString(u"dd.MM.yy"_s))
                         .arg(rows.integer(4))
                         .arg(rows.integer(5));
        lines.sort();
        return lines;
    }
    void load(GradeMode mode, bool all = false)
    {
        selection.mode = mode;
        selection.allDisciplines = all;
        ASSERT_TRUE(book.load(selection)) << status.last().toStdString();
    }
    QString line(int student) const
    {
        QStringList texts;
        for (int column = 0; std::cmp_less(column, book.sheet()->columns.size()); ++column)
            texts << book.sheet()->cellText({student, column});
        return texts.join(u'|');
    }
    int set(int grade, const std::vector<GradePlace>& places) { return book.set(grade, places); }

    static constexpr int kTwelfth = 11; // column of 12 November
    SmallJournal file;
    ScriptedPrompt prompt;
    RecordingStatusLine status;
    int group, maths, physics, ivanov, petrov, sidorov, gone;
    GradeBook book;
    GradeSelection selection;
};

TEST_F(Grades, EachKindIsShownInItsModeAndNoExpelledStudent)
{
    row(ivanov, maths, 5, "11/12/2022", 0, -1);
    row(ivanov, maths, 4, "11/30/2022", 0, 0);
    row(ivanov, maths, 3, "06/25/2023", -1, 0);
    row(petrov, maths, 1, "11/14/2022", 0, -1);
    row(petrov, physics, 2, "11/14/2022", 0, -1); // another discipline
    row(petrov, maths, 2, "11/14/2021", 0, -1);   // another year
    row(petrov, maths, 2, "06/20/2022", -1, 0);   // final, but of the year before
    row(gone, maths, 5, "11/12/2022", 0, -1);

    load(GradeMode::Current);
    ASSERT_EQ(book.sheet()->students.size(), 3U);
    EXPECT_EQ(line(0), u"X|X|X|X|X|X||||||5"_s + u"|"_s.repeated(18));
    EXPECT_EQ(book.sheet()->cellText({1, 13}), u"Зачет");
    EXPECT_EQ(book.sheet()->finalsText(), u"Итоговые оценки выставлены(25.06.2023)");
    EXPECT_EQ(status.texts.mid(status.texts.size() - 3),
              (QStringList{u"Идет заполнение таблицы успеваемости..."_s,
                           u"Итоговые оценки выставлены(25.06.2023)"_s, u"Готово."_s}));
    EXPECT_TRUE(book.sheet()->columns[5].dayOff) << "Sunday, 6 November";
    EXPECT_FALSE(book.sheet()->columns[6].dayOff);

    load(GradeMode::Monthly);
    EXPECT_EQ(line(0), u"||4||||||||3");
    EXPECT_EQ(book.sheet()->columns[0].title, u"Сентябрь 2022");
    EXPECT_EQ(book.sheet()->columns[9].title, u"Июнь 2023");
    EXPECT_EQ(book.sheet()->columns[10].title, u"Итог");

    load(GradeMode::Final);
    EXPECT_EQ(line(0), u"3");
    EXPECT_EQ(line(1), u"");
}

TEST_F(Grades, ADayIsOpenByAnyWorkloadOrByItsLessonsAndWhereAGradeStandsAlready)
{
    file.workload(group, maths, {2022, 11, 1}, {2022, 11, 2}, 1);
    row(ivanov, maths, 4, "11/05/2022", 0, -1);
    load(GradeMode::Current);
    EXPECT_TRUE(line(0).startsWith(u"||X|X|4|X||")) << line(0).toStdString();
    EXPECT_TRUE(line(1).startsWith(u"||X|X|X|X||")) << line(1).toStdString();
    settings("Uroki = True");
    file.lesson(group, maths, {2022, 11, 2}, 1);
    file.lesson(group, maths, {2022, 11, 4}, 1); // outside the workload
    load(GradeMode::Current);
    EXPECT_TRUE(line(0).startsWith(u"X||X|X|4|X|X|")) << line(0).toStdString();
}

TEST_F(Grades, AGradeIsReplacedNotDoubledAndEachKindLeavesTheOthersAlone)
{
    struct Case
    {
        GradeMode mode;
        int column;
        const char* kind; // date, it and tek of the row
    };
    const Case cases[] = {{GradeMode::Current, kTwelfth, "12.11.22 0 -1"},
                          {GradeMode::Monthly, 0, "30.09.22 0 0"},
                          {GradeMode::Monthly, 9, "25.06.23 0 0"}, // the year ends before
                          {GradeMode::Final, 0, "25.06.23 -1 0"}};
    QStringList before;
    for (const Case& each : cases) {
        const QString kind = QString::fromUtf8(each.kind);
        load(each.mode);
        for (const int grade : {3, kPassGrade, 5}) {
            EXPECT_EQ(set(grade, {{0, each.column}}), 1);
            QStringList expected = before;
            expected << u"Им %1 %2"_s.arg(grade).arg(kind);
            expected.sort();
            EXPECT_EQ(stored(), expected) << each.kind;
        }
        set(kNoGrade, {{0, each.column}});
        EXPECT_EQ(stored(), before) << each.kind;
        set(kNoGrade, {{0, each.column}}); // nothing there
        EXPECT_EQ(stored(), before) << each.kind;
        set(2, {{0, each.column}});
        before = stored();
    }
    EXPECT_EQ(before, (QStringList{u"Им 2 12.11.22 0 -1"_s, u"Им 2 25.06.23 -1 0"_s,
                                   u"Им 2 25.06.23 0 0"_s, u"Им 2 30.09.22 0 0"_s}));
}

TEST_F(Grades, AGradeIsFoundByItsMonthOrYearWhateverItsDay)
{
    row(ivanov, maths, 3, "11/08/2022", 0, 0);
    row(ivanov, maths, 3, "01/20/2023", -1, 0);
    row(ivanov, maths, 5, "06/01/2023", -1, 0); // of the second half-year
    row(petrov, maths, 3, "11/30/2021", 0, 0);
    const QStringList before = stored();
    load(GradeMode::Monthly);
    set(4, {{0, 2}, {0, 10}, {1, 2}});
    EXPECT_EQ(stored(),
              (QStringList{u"Им 3 20.01.23 -1 0"_s, u"Им 4 01.06.23 -1 0"_s, u"Им 4 08.11.22 0 0"_s,
                           u"Пм 3 30.11.21 0 0"_s, u"Пм 4 30.11.22 0 0"_s}));
    book.undo(); // the month lies in the year of the final grade
    EXPECT_EQ(stored(), before);
}

TEST_F(Grades, WhatCannotBeChangedIsRefused)
{
    const QString refusal = u"Данные в этой ячейке невозможно изменить."_s;
    load(GradeMode::Current);
    for (const GradePlace place : {GradePlace{0, 0}, {0, -1}, {0, 30}, {3, 12}}) {
        prompt.expect(Box::Exclamation, refusal);
        EXPECT_EQ(set(5, {place}), 0);
        EXPECT_TRUE(prompt.done());
        EXPECT_EQ(status.last(), refusal);
    }
    EXPECT_EQ(set(5, {{0, 5}, {0, 6}, {1, 6}, {3, 6}}), 2) << "a block leaves out X and averages";
    load(GradeMode::Final, true);
    EXPECT_EQ(set(5, {{0, 0}}), 0);
    EXPECT_EQ(status.last(), u"Выберите дисциплину.");
    EXPECT_EQ(stored().size(), 2);
}

TEST_F(Grades, AnIncompleteSelectionSaysWhatIsMissing)
{
    struct Case
    {
        void (*spoil)(GradeSelection&);
        const char* text;
    };
    const Case cases[] = {
        {[](GradeSelection& s) { s.month.month = 0; }, "Ошибка: не выбран месяц."},
        {[](GradeSelection& s) { s.month.month = 13; }, "Ошибка: неверный месяц."},
        {[](GradeSelection& s) { s.month.year = 12; }, "Ошибка: неверный год."},
        {[](GradeSelection& s) { s.group.reset(); }, "Ошибка: не выбрана группа."},
        {[](GradeSelection& s) { s.discipline.reset(); }, "Выберите дисциплину."},
        {[](GradeSelection& s) {
             s.mode = GradeMode::Final;
             s.year.to = {2022, 9, 4};
         },
         "Ошибка: неверный учебный год."},
    };
    for (const Case& each : cases) {
        GradeSelection spoilt = selection;
        each.spoil(spoilt);
        EXPECT_FALSE(book.load(spoilt));
        EXPECT_EQ(status.last(), QString::fromUtf8(each.text));
        EXPECT_EQ(book.sheet(), nullptr);
    }
}

TEST_F(Grades, AveragesLeavePassesOut)
{
    struct Case
    {
        std::vector<int> grades;
        const char* text;
    };
    const Case cases[] = {{{}, ""},
                          {{1}, ""},
                          {{5}, "5,00"},
                          {{5, 4, 1}, "4,50"},
                          {{5, 4, 4}, "4,33"},
                          {{5, 5, 4}, "4,67"},
                          {{2, 2, 2, 2, 2, 2, 2, 3}, "2,13"}}; // 2.125
    for (const Case& each : cases) {
        MarkSum marks;
        for (const int grade : each.grades)
            marks.add(grade);
        EXPECT_EQ(marks.text(), QString::fromUtf8(each.text));
    }
    row(ivanov, maths, 5, "09/30/2022", 0, 0);
    row(ivanov, maths, 4, "10/31/2022", 0, 0);
    row(ivanov, maths, 2, "06/25/2023", -1, 0);
    row(petrov, maths, 2, "09/30/2022", 0, 0);
    row(sidorov, maths, 1, "09/30/2022", 0, 0);
    load(GradeMode::Monthly);
    EXPECT_EQ(book.sheet()->average(book.sheet()->students[0]).text(), u"4,50") << "without final";
    EXPECT_EQ(book.sheet()->columnAverage(0).text(), u"3,50");
}

TEST_F(Grades, AllDisciplinesStandInOneGrid)
{
    row(ivanov, maths, 5, "11/30/2022", 0, 0);
    row(ivanov, maths, 2, "12/31/2022", 0, 0);
    row(petrov, physics, 4, "11/10/2022", 0, 0); // without workload
    row(petrov, physics, 3, "05/31/2023", -1, 0);
    row(gone, physics, 2, "05/31/2023", -1, 0);
    load(GradeMode::Current, true); // which has none
    EXPECT_EQ(book.sheet()->selection.mode, GradeMode::Monthly);
    ASSERT_EQ(book.sheet()->columns.size(), 2U);
    EXPECT_EQ(book.sheet()->columns[1].title, u"Физика");
    EXPECT_EQ(line(0), u"5|");
    EXPECT_EQ(line(1), u"|4");
    load(GradeMode::Final, true);
    EXPECT_EQ(line(0), u"|");
    EXPECT_EQ(line(1), u"|3");
    EXPECT_EQ(book.sheet()->columnAverage(1).text(), u"3,00");
}

TEST_F(Grades, WithoutAutomaticSavingChangesWaitAndAreOneStep)
{
    settings("AvtSave = False");
    row(ivanov, maths, 3, "11/12/2022", 0, -1);
    load(GradeMode::Current);
    set(5, {{0, kTwelfth}});
    set(4, {{1, kTwelfth}, {2, kTwelfth}});
    EXPECT_EQ(book.unsaved(), 3);
    EXPECT_EQ(stored(), QStringList{u"Им 3 12.11.22 0 -1"_s});
    EXPECT_EQ(book.undoText(), u"оценка 4, 2 клетки");
    book.undo();
    EXPECT_EQ(book.unsaved(), 1);
    EXPECT_EQ(book.undoText(), u"оценка 5, Иванов И. И., 12.11");
    book.redo();
    EXPECT_EQ(book.redoText(), QString());

    const QString question =
        u"В журнале успеваемости есть несохраненные изменения: 3 оценки. Сохранить?"_s;
    prompt.expect(Box::SaveQuestion, question, shell::Answer::Cancel);
    EXPECT_FALSE(book.mayLeave());
    EXPECT_EQ(book.unsaved(), 3);
    prompt.expect(Box::SaveQuestion, question, shell::Answer::Yes);
    EXPECT_TRUE(book.mayLeave());
    const QStringList saved{u"Им 5 12.11.22 0 -1"_s, u"Пм 4 12.11.22 0 -1"_s,
                            u"См 4 12.11.22 0 -1"_s};
    EXPECT_EQ(stored(), saved);
    EXPECT_TRUE(book.mayLeave()) << "and nothing is asked";
    EXPECT_EQ(book.undoText(), u"сохранение, 3 оценки");
    book.undo();
    EXPECT_EQ(stored(), QStringList{u"Им 3 12.11.22 0 -1"_s});
    EXPECT_EQ(book.sheet()->cellText({0, kTwelfth}), u"3");
    book.redo();
    EXPECT_EQ(stored(), saved);

    set(kNoGrade, {{0, kTwelfth}});
    prompt.expectMatching(Box::SaveQuestion, u".*1 оценка.*"_s, shell::Answer::No);
    EXPECT_TRUE(book.mayLeave());
    EXPECT_EQ(book.sheet()->cellText({0, kTwelfth}), u"5");
    EXPECT_EQ(stored(), saved);
}

TEST_F(Grades, StepsAreTakenBackInOrderAndNamed)
{
    load(GradeMode::Current);
    set(5, {{0, kTwelfth}});
    set(kPassGrade, {{1, kTwelfth}});
    load(GradeMode::Monthly);
    set(4, {{2, 2}});
    set(kNoGrade, {{2, 2}});
    load(GradeMode::Final);
    set(3, {{0, 0}});
    const QStringList texts{u"оценка 3, Иванов И. И., итог"_s,
                            u"удаление оценки, Сидоров С., ноябрь"_s,
                            u"оценка 4, Сидоров С., ноябрь"_s, u"зачет, Петров П. П., 12.11"_s,
                            u"оценка 5, Иванов И. И., 12.11"_s};
    const QStringList all = stored();
    for (const QString& text : texts) {
        EXPECT_EQ(book.undoText(), text);
        book.undo();
        EXPECT_EQ(status.last(), u"Отменено: "_s + text);
    }
    EXPECT_EQ(stored(), QStringList());
    while (!book.redoText().isEmpty())
        book.redo();
    EXPECT_EQ(stored(), all);
    row(ivanov, maths, 2, "06/25/2023", -1, 0); // by somebody else
    book.undo();
    EXPECT_EQ(stored().size(), all.size() + 1);
    EXPECT_EQ(status.last(), u"Оценки с тех пор изменены, отменить или повторить нельзя.");
}

TEST_F(Grades, ASchoolHasItsWordsButKeepsNames)
{
    file.student(group, "Аапарин", "Пётр", ""); // "пара" is a word of colleges
    GradeBook school(file.database(), shell::Wording(shell::Institution::School), prompt, status);
    GradeSelection incomplete = selection;
    incomplete.discipline.reset();
    EXPECT_FALSE(school.load(incomplete));
    EXPECT_EQ(status.last(), u"Выберите предмет.");
    ASSERT_TRUE(school.load(selection));
    school.set(5, std::vector<GradePlace>{{0, kTwelfth}});
    school.undo();
    EXPECT_EQ(status.last(), u"Отменено: оценка 5, Аапарин П., 12.11");
}

TEST_F(Grades, AFullDiskLeavesFileAndSheetAsTheyWere)
{
    if (!FailingWrites::possible())
        GTEST_SKIP() << "the disk cannot be filled here";
    load(GradeMode::Current);
    set(4, {{0, kTwelfth}});
    {
        const FailingWrites full;
        EXPECT_THROW(set(5, {{0, kTwelfth}, {1, kTwelfth}}), jet::Error);
    }
    EXPECT_EQ(book.sheet()->cellText({0, kTwelfth}), u"4");
    file.reopen();
    EXPECT_EQ(stored(), QStringList{u"Им 4 12.11.22 0 -1"_s});
}

TEST_F(Grades, TheModelSpeaksItsCells)
{
    GradeModel model(book, shell::Wording());
    const QAbstractItemModelTester tester(&model,
                                          QAbstractItemModelTester::FailureReportingMode::Fatal);
    settings("AvtSave = False");
    selection.mode = GradeMode::Current;
    ASSERT_TRUE(model.load(selection));
    const QModelIndex twelfth = model.index(0, GradeModel::kLeadColumns + kTwelfth);
    const auto spoken = [](const QModelIndex& index) {
        return index.data(Qt::AccessibleTextRole).toString();
    };
    EXPECT_EQ(spoken(twelfth), u"Иванов Иван Иванович, 12 ноября, нет оценки");
    EXPECT_EQ(model.set(5, {twelfth}), 1);
    EXPECT_EQ(spoken(twelfth), u"Иванов Иван Иванович, 12 ноября, оценка 5, не сохранено");
    EXPECT_TRUE(twelfth.data(UnsavedRole).toBool());
    EXPECT_EQ(spoken(model.index(0, 2)), u"Иванов Иван Иванович, 1 ноября, нет занятия");
    EXPECT_EQ(model.index(0, 32).data().toString(), u"5,00");
    EXPECT_EQ(model.headerData(13, Qt::Horizontal, Qt::DisplayRole).toString(), u"12\nСб");
    model.save();
    model.undo();
    EXPECT_EQ(model.index(0, 13).data().toString(), QString());
    selection.mode = GradeMode::Final;
    ASSERT_TRUE(model.load(selection));
    EXPECT_EQ(model.columnCount(), 3) << "no average of a single grade";
}

} // namespace
