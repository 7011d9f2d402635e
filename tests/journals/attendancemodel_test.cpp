#include "journals/attendancemodel.h"

#include "journals/hours.h"
#include "journals/worded.h"
#include "tests/journals/attendancefixture.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>

#include <set>

using namespace Qt::StringLiterals;
using namespace journals;

namespace {

class AttendanceModelTest : public AttendanceFixture
{
protected:
    AttendanceModelTest()
        : who(student("Иванов"))
        , model(attendance, shell::Wording())
        , tester(&model, QAbstractItemModelTester::FailureReportingMode::Fatal)
    {}

    QString cell(int row, int column) { return model.index(row, column).data().toString(); }
    AbsenceState state(int row, int column)
    {
        return static_cast<AbsenceState>(
            model.index(row, column).data(journals::StateRole).toInt());
    }
    QString spoken(int row, int column)
    {
        return model.index(row, column).data(Qt::AccessibleTextRole).toString();
    }
    QString header(int column)
    {
        return model.headerData(column, Qt::Horizontal, Qt::DisplayRole).toString();
    }

    int who;
    AttendanceModel model;
    QAbstractItemModelTester tester;
};

constexpr int kTwelfth = kLeadColumns + 11;

TEST_F(AttendanceModelTest, LaysOutStudentsDaysAndTotals)
{
    journal.absence(who, mathsKey, {2022, 10, 3}, 1, 1, 2);
    journal.absence(who, mathsKey, day, 1, 0, 2);
    journal.absence(who, mathsKey, {2022, 11, 14}, 1, 4, 0);
    ASSERT_TRUE(model.load(selection));
    ASSERT_EQ(model.rowCount(), 3);
    ASSERT_EQ(model.columnCount(), 3 + 30 + 3);
    const struct
    {
        int row;
        QStringList lead; // columns 0 to 2, the 12th and the last three
    } rows[] = {
        {0, {u"1"_s, u"Иванов Иван Иванович"_s, u"3"_s, u"2"_s, u"6"_s, u"9"_s, u"4"_s}},
        {1, {u""_s, u"Итого за день, час."_s, u"3"_s, u"2"_s, u"6"_s, u"9"_s, u"4"_s}},
        {2, {u""_s, u"в т.ч. неуважительных, час."_s, u"2"_s, u"2"_s, u"2"_s, u"4"_s, u"4"_s}},
    };
    for (const auto& row : rows) {
        QStringList shown;
        for (const int column : {0, 1, 2, kTwelfth, 33, 34, 35})
            shown << cell(row.row, column);
        EXPECT_EQ(shown, row.lead);
    }
    EXPECT_EQ(header(0), u"№ п.п");
    EXPECT_EQ(header(1), u"ФИО студента");
    EXPECT_EQ(header(2), u"На начало месяца, час.");
    EXPECT_EQ(header(kTwelfth), u"12\nСб");
    EXPECT_EQ(header(33), u"ИТОГО за месяц, час.");
    EXPECT_EQ(header(34), u"На конец месяца, час.");
    EXPECT_EQ(header(35), u"в т.ч. неуважительных, час.");
}

TEST_F(AttendanceModelTest, NamesStatesForLooksAndReadingOut)
{
    journal.workload(groupKey, mathsKey, {2022, 11, 2}, {2022, 11, 30});
    journal.absence(who, mathsKey, day, 1, 0, 2);
    journal.absence(who, mathsKey, {2022, 11, 14}, 1, 1, 0);
    journal.absence(who, mathsKey, {2022, 11, 15}, 1, 1, 4);
    ASSERT_TRUE(model.load(selection));
    const struct
    {
        int column;
        AbsenceState state;
        const char* spoken;
    } cells[] = {
        {3, AbsenceState::NotInForce, "1 ноября, нет занятия"},
        {4, AbsenceState::None, "2 ноября, нет пропусков"},
        {14, AbsenceState::Unexcused, "12 ноября, 2 часа, неуважительный"},
        {16, AbsenceState::Excused, "14 ноября, 1 час, уважительный"},
        {17, AbsenceState::Mixed, "15 ноября, 5 часов, из них неуважительных 4"},
        {35, AbsenceState::Unexcused, "в т.ч. неуважительных, час., 6 часов"},
    };
    for (const auto& row : cells) {
        EXPECT_EQ(state(0, row.column), row.state) << row.spoken;
        EXPECT_EQ(spoken(0, row.column), u"Иванов Иван Иванович, "_s + text(row.spoken));
    }
    EXPECT_EQ(state(2, 1), AbsenceState::Unexcused) << "the label of the unexcused part";
    EXPECT_TRUE(model.headerData(8, Qt::Horizontal, journals::DayOffRole).toBool());
    EXPECT_FALSE(model.headerData(9, Qt::Horizontal, journals::DayOffRole).toBool());
}

TEST_F(AttendanceModelTest, NumbersAgreeWithTheirNouns)
{
    const std::pair<int, const char*> cases[] = {
        {0, "0 часов"},   {1, "1 час"},     {2, "2 часа"},  {4, "4 часа"},   {5, "5 часов"},
        {11, "11 часов"}, {14, "14 часов"}, {21, "21 час"}, {22, "22 часа"}, {111, "111 часов"},
    };
    for (const auto& [hours, words] : cases)
        EXPECT_EQ(hoursText(hours), text(words));
}

TEST_F(AttendanceModelTest, FollowsAnActionAndAnnouncesIt)
{
    ASSERT_TRUE(model.load(selection));
    const QSignalSpy changes(&model, &QAbstractItemModel::dataChanged);
    EXPECT_EQ(model.apply(AbsenceAction::Mark, {model.index(0, kTwelfth)}), 1);
    std::set<std::pair<int, int>> announced;
    for (const auto& change : changes)
        for (int row = change[0].toModelIndex().row(); row <= change[1].toModelIndex().row(); ++row)
            for (int column = change[0].toModelIndex().column();
                 column <= change[1].toModelIndex().column(); ++column)
                announced.emplace(row, column);
    for (const int row : {0, 1, 2})
        for (const int column : {kTwelfth, 33, 34, 35})
            EXPECT_TRUE(announced.contains({row, column})) << row << ":" << column;
    EXPECT_EQ(cell(0, kTwelfth), u"2");
    EXPECT_EQ(cell(1, kTwelfth), u"2");
    EXPECT_EQ(cell(0, 33), u"2");
    EXPECT_TRUE(model.offers(AbsenceAction::MakeExcused, model.index(0, kTwelfth)));
    EXPECT_FALSE(model.offers(AbsenceAction::MakeUnexcused, model.index(0, kTwelfth)));
    EXPECT_FALSE(model.offers(AbsenceAction::MakeExcused, model.index(1, kTwelfth)));
}

TEST_F(AttendanceModelTest, IsEmptyWithoutACompleteSelection)
{
    ASSERT_TRUE(model.load(selection));
    selection.group.reset();
    EXPECT_FALSE(model.load(selection));
    EXPECT_EQ(model.rowCount(), 0);
    EXPECT_EQ(model.columnCount(), 0);
    EXPECT_EQ(model.apply(AbsenceAction::Mark, {}), 0);
}

TEST_F(AttendanceModelTest, KeepsItsSheetWhenReadingFails)
{
    ASSERT_TRUE(model.load(selection));
    journal.database().dropTable("POS");
    EXPECT_ANY_THROW(model.load(selection));
    EXPECT_EQ(model.rowCount(), 3);
}

TEST_F(AttendanceModelTest, SpeaksTheWordsOfASchool)
{
    const shell::Wording school(shell::Institution::School);
    const std::pair<const char*, const char*> cases[] = {
        {"ФИО студента", "ФИО учащегося"},
        {"Выберите группу", "Выберите класс"},
        {"Выберите подгруппу", "Выберите подгруппу"},
        {"Все подгруппы", "Все подгруппы"},
        {"Все дисциплины", "Все предметы"},
        {"Справочник занятий не заполнен на этот месяц.",
         "Справочник уроков не заполнен на этот месяц."},
        {"Ошибка: не выбрана группа.", "Ошибка: не выбран класс."},
        {"Для установки пропуска выберите дисциплину из списка.",
         "Для установки пропуска выберите предмет из списка."},
        {"Данные в этой ячейке невозможно изменить.", "Данные в этой ячейке невозможно изменить."},
    };
    for (const auto& [college, words] : cases) {
        EXPECT_EQ(worded(school, text(college)), text(words));
        EXPECT_EQ(worded(shell::Wording(), text(college)), text(college));
    }
}

} // namespace
